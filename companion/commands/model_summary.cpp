#include "commands/model_summary.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>

#include "check/describe.h"
#include "deck/row_formats.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Section;

namespace {

struct Kind {
  Section section;
  const char* one;
  const char* several;
};

// "3363 nodes, 320 beams" of those kinds that there are.
std::string ListKinds(const CheckedModel& model, std::initializer_list<Kind> kinds) {
  std::string text;
  for (const Kind& kind : kinds) {
    const auto count = static_cast<std::size_t>(CountRows(model.tables, kind.section));
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + CountText(count, kind.one, kind.several);
  }
  return text;
}

// The vector without what rounding left of a component that is 0 in truth.
korvex::Vector3 Tidy(korvex::Vector3 vector) {
  constexpr double Rounding = 1e-9;  // of the largest component; six digits are shown
  double largest = 0.0;
  for (const double x : vector) largest = std::max(largest, std::abs(x));
  for (double& x : vector) x = std::abs(x) < Rounding * largest ? 0.0 : x;
  return vector;
}

// Empty where there are no loads.
std::string LoadsText(const LoadSums& loads) {
  const std::array<double, 6>& F = loads.sums;
  if (std::all_of(F.begin(), F.end(), [](double sum) { return sum == 0.0; })) return "";
  return "sum of loads " + PointText(Tidy({F[0], F[1], F[2]})) + ", moments about the origin " +
         PointText(Tidy({F[3], F[4], F[5]}));
}

// Empty where the loads have no resulting force.
std::string LineOfActionText(const LoadSums& loads) {
  if (!loads.hasLine) return "";
  std::string text = "line of action of the loads through " + PointText(Tidy(loads.point));
  constexpr double Rounding = 1e-9;  // six digits are shown
  const korvex::Vector3 moment{loads.sums[3], loads.sums[4], loads.sums[5]};
  if (std::abs(loads.couple) > Rounding * korvex::Length(moment)) {
    text += ", with a couple of " + NumberText(loads.couple) + " about it";
  }
  return text;
}

// Empty where there are no densities.
std::string WeightText(const ModelWeight& weight) {
  if (weight.mass == 0.0) return "";
  return "mass " + NumberText(weight.mass) + ", centre of gravity " +
         PointText(Tidy(weight.centre));
}

// Empty where the matrix is so small that its size does not matter.
std::string SizeText(const SolutionSize& size) {
  constexpr double NoticeableGigabytes = 0.001;
  if (size.gigabytes < NoticeableGigabytes) return "";
  return "matrix " + DescribeSize(size.gigabytes, size.seconds);
}

}  // namespace

std::vector<std::pair<std::string, std::size_t>> CountTables(const CheckedModel& model) {
  std::vector<std::pair<std::string, std::size_t>> counts;
  counts.reserve(korvex::SectionFormats.size());
  for (const korvex::SectionFormat& format : korvex::SectionFormats) {
    counts.emplace_back(format.key,
                        static_cast<std::size_t>(CountRows(model.tables, format.section)));
  }
  return counts;
}

std::vector<std::string> SummarizeModel(const CheckReport& report) {
  const CheckedModel& model = report.model;
  std::vector<std::string> lines{
      ListKinds(model, {{Section::Nodes, "node", "nodes"},
                        {Section::Shells4, "four-node shell", "four-node shells"},
                        {Section::Shells3, "three-node shell", "three-node shells"},
                        {Section::Beams, "beam", "beams"}}),
      ListKinds(model, {{Section::Materials, "material", "materials"},
                        {Section::ShellThicknesses, "shell thickness", "shell thicknesses"},
                        {Section::TBeamSections, "T section", "T sections"},
                        {Section::LBeamSections, "L section", "L sections"},
                        {Section::CBeamSections, "tube section", "tube sections"}}),
      ListKinds(model,
                {{Section::Restraints, "restraint", "restraints"},
                 {Section::Forces, "force", "forces"},
                 {Section::Shell4Loads, "load on four-node shells", "loads on four-node shells"},
                 {Section::Shell3Loads, "load on three-node shells", "loads on three-node shells"},
                 {Section::BeamLoads, "load on beams", "loads on beams"}}),
      LoadsText(report.loads),
      LineOfActionText(report.loads),
      WeightText(report.weight),
      SizeText(report.size)};
  std::vector<std::string> said;
  for (std::string& line : lines) {
    if (!line.empty()) said.push_back(std::move(line));
  }
  if (said.empty() && model.notChecked.empty()) said.emplace_back("The model is empty.");
  return said;
}

}  // namespace kvx
