#include "cases/load_tables.h"

#include <algorithm>
#include <utility>

#include "deck/row_formats.h"
#include "deck/write_tables.h"
#include "report/stop.h"

namespace kvx {

namespace {

using korvex::ModelTables;

constexpr std::string_view Blanks = " \t\r\n\v\f";

std::string_view WithoutBlanks(std::string_view text) {
  const std::size_t begin = text.find_first_not_of(Blanks);
  return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

// "Number of forces:NFOR="
std::string_view ForcesTitle() {
  const std::string_view title = korvex::FormatOf(korvex::Section::Forces).title;
  return title.substr(0, title.find('%'));
}

// The begin of the line with the count of forces; npos where there is none.
std::size_t FindForces(std::string_view text) {
  for (std::size_t begin = 0; begin < text.size();) {
    const std::string_view rest = text.substr(begin);
    const std::size_t end = std::min(rest.find('\n'), rest.size() - 1) + 1;
    if (WithoutBlanks(rest.substr(0, end)).rfind(ForcesTitle(), 0) == 0) return begin;
    begin += end;
  }
  return std::string_view::npos;
}

std::size_t CountLines(std::string_view text) {
  return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

template <typename Table>
void AppendRows(const Table& rows, Table& to) {
  Table both;
  both.reserve(to.size() + rows.size());
  both.insert(both.end(), to.begin(), to.end());
  both.insert(both.end(), rows.begin(), rows.end());
  to.swap(both);
}

template <typename Load>
void ScaleElementLoads(double factor, korvex::ZeroedTable<Load>& loads) {
  for (Load& load : loads) {
    for (double& q : load.q) q *= factor;
  }
}

void CountLoads(ModelTables& tables) {
  tables.NFOR = static_cast<std::int32_t>(tables.NodalForces.size());
  tables.NDL_S_4ND = static_cast<std::int32_t>(tables.Shell4SurfaceLoads.size());
  tables.NDL_S_3ND = static_cast<std::int32_t>(tables.Shell3SurfaceLoads.size());
  tables.NDL_B = static_cast<std::int32_t>(tables.BeamLineLoads.size());
}

void CopyLoads(const ModelTables& from, ModelTables& to) {
  to.NodalForces = from.NodalForces;
  to.Shell4SurfaceLoads = from.Shell4SurfaceLoads;
  to.Shell3SurfaceLoads = from.Shell3SurfaceLoads;
  to.BeamLineLoads = from.BeamLineLoads;
  CountLoads(to);
}

// The text from the count of forces on.
std::string WriteLoads(const ModelTables& tables) {
  ModelTables loads;
  CopyLoads(tables, loads);
  const std::string text = korvex::WriteTables(loads);
  return text.substr(FindForces(text));
}

}  // namespace

void IsolateLoads(std::string_view loads, LoadText& isolated) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (loads.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    loads.remove_prefix(ByteOrderMark.size());
  }
  const std::size_t begin = FindForces(loads);
  const std::string_view first = WithoutBlanks(loads);
  const bool isModel = first.rfind("###", 0) == 0;
  const bool isLoads = first.rfind(ForcesTitle(), 0) == 0;
  if (begin == std::string_view::npos || !(isModel || isLoads)) {
    const std::size_t line = CountLines(loads.substr(0, loads.size() - first.size())) + 1;
    throw korvex::Stop{korvex::StopKind::Notice,
                       "line " + std::to_string(line) + ": a file of loads begins with \"" +
                           std::string(ForcesTitle()) + "...\", or is a whole model file."};
  }
  const std::string empty = korvex::WriteTables({});
  isolated.text = empty.substr(0, FindForces(empty));
  isolated.emptyLines = CountLines(isolated.text);
  isolated.skippedLines = CountLines(loads.substr(0, begin));
  isolated.text += loads.substr(begin);
}

bool HasLoads(const ModelTables& tables) {
  return !tables.NodalForces.empty() || !tables.Shell4SurfaceLoads.empty() ||
         !tables.Shell3SurfaceLoads.empty() || !tables.BeamLineLoads.empty();
}

void SwapLoads(ModelTables& a, ModelTables& b) {
  a.NodalForces.swap(b.NodalForces);
  a.Shell4SurfaceLoads.swap(b.Shell4SurfaceLoads);
  a.Shell3SurfaceLoads.swap(b.Shell3SurfaceLoads);
  a.BeamLineLoads.swap(b.BeamLineLoads);
  std::swap(a.NFOR, b.NFOR);
  std::swap(a.NDL_S_4ND, b.NDL_S_4ND);
  std::swap(a.NDL_S_3ND, b.NDL_S_3ND);
  std::swap(a.NDL_B, b.NDL_B);
}

void AddScaledLoads(const ModelTables& from, double factor, ModelTables& to) {
  ModelTables scaled;
  CopyLoads(from, scaled);
  for (korvex::NodalForce& force : scaled.NodalForces) {
    for (double& component : force.components) component *= factor;
  }
  ScaleElementLoads(factor, scaled.Shell4SurfaceLoads);
  ScaleElementLoads(factor, scaled.Shell3SurfaceLoads);
  ScaleElementLoads(factor, scaled.BeamLineLoads);
  AppendRows(scaled.NodalForces, to.NodalForces);
  AppendRows(scaled.Shell4SurfaceLoads, to.Shell4SurfaceLoads);
  AppendRows(scaled.Shell3SurfaceLoads, to.Shell3SurfaceLoads);
  AppendRows(scaled.BeamLineLoads, to.BeamLineLoads);
  CountLoads(to);
}

std::string ComposeModelText(std::string_view structure, const ModelTables& tables) {
  const std::size_t begin = FindForces(structure);
  if (begin == std::string_view::npos) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "the structure has no line \"" + std::string(ForcesTitle()) + "...\"."};
  }
  return std::string(structure.substr(0, begin)) + WriteLoads(tables);
}

}  // namespace kvx
