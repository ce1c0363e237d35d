// Fuzz target of the reader of Abaqus and CalculiX decks: any bytes as a deck. What it reads must
// refer to what is there, and must go through the checks and into tables without a fault. A deck
// that includes a file gets its own bytes once more, or nothing.
#include <cstdlib>
#include <string>

#include "fuzz_target.h"
#include "mesh/abaqus/import_abaqus.h"
#include "mesh/build_tables.h"
#include "report/stop.h"

namespace {

void Expect(bool isSo) {
  if (!isSo) std::abort();
}

void ExpectRow(std::int32_t row, std::size_t count) {
  Expect(row >= 0 && static_cast<std::size_t>(row) < count);
}

void ExpectReferences(const kvx::ImportModel& model) {
  Expect(model.nodes.size() == model.nodeNumbers.size());
  for (const kvx::ImportShell& shell : model.shells) {
    for (std::size_t k = 0; k < kvx::CornersOf(shell); ++k) {
      ExpectRow(shell.nodes[k], model.nodes.size());
    }
    ExpectRow(shell.type, model.typeNames.size());
  }
  for (const kvx::ImportBeam& beam : model.beams) {
    for (const std::int32_t node : beam.nodes) ExpectRow(node, model.nodes.size());
    ExpectRow(beam.type, model.typeNames.size());
  }
  for (const kvx::ImportGroup& group : model.groups) {
    for (const std::int32_t node : group.nodes) ExpectRow(node, model.nodes.size());
    for (const std::int32_t shell : group.shells) ExpectRow(shell, model.shells.size());
    for (const std::int32_t beam : group.beams) ExpectRow(beam, model.beams.size());
  }
  for (const kvx::ImportCase& loads : model.cases) {
    Expect(loads.supports < static_cast<std::int32_t>(model.supports.size()));
    for (const auto& force : loads.forces) ExpectRow(force.node, model.nodes.size());
    for (const auto& pressure : loads.pressures) ExpectRow(pressure.shell, model.shells.size());
    for (const auto& line : loads.lineLoads) ExpectRow(line.element, model.beams.size());
    for (const auto& moved : loads.prescribed) ExpectRow(moved.node, model.nodes.size());
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  const auto include = [&text](const std::string& name, std::string& content) {
    if (name.size() > 1) return false;
    content = text;
    return true;
  };
  kvx::ImportModel model;
  kvx::ImportReport report;
  try {
    kvx::ImportAbaqus({"deck.inp", text}, include, model, report);
    ExpectReferences(model);
    kvx::CheckComplete(model, report);
    if (kvx::CountFate(report, kvx::Fate::Refused) > 0) return 0;
    kvx::BuiltModel built;
    kvx::BuildTables(model, report, built);
  } catch (const korvex::Stop&) {  // a correct end for a wrong deck
  }
  return 0;
}
