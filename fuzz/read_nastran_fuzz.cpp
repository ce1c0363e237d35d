// Fuzz target of the reader of bulk data: any bytes as a deck. A deck may include itself once under
// another name ("again"). What is read must refer to what is there.
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz_target.h"
#include "mesh/nastran/import_nastran.h"
#include "report/stop.h"

namespace {

bool IsRow(std::int32_t row, std::size_t count) {
  return row >= -1 && (row < 0 || static_cast<std::size_t>(row) < count);
}

void CheckElements(const kvx::ImportModel& model) {
  bool isWhole = model.nodes.size() == model.nodeNumbers.size();
  for (const kvx::ImportShell& shell : model.shells) {
    for (const std::int32_t node : shell.nodes) isWhole = isWhole && IsRow(node, model.nodes.size());
    isWhole = isWhole && IsRow(shell.material, model.materials.size()) &&
              IsRow(shell.thickness, model.thicknesses.size());
  }
  for (const kvx::ImportBeam& beam : model.beams) {
    for (const std::int32_t node : beam.nodes) isWhole = isWhole && IsRow(node, model.nodes.size());
    isWhole = isWhole && IsRow(beam.material, model.materials.size()) &&
              IsRow(beam.section, model.sections.size());
  }
  if (!isWhole) std::abort();
}

void CheckCases(const kvx::ImportModel& model) {
  bool isWhole = true;
  for (const kvx::ImportCase& loads : model.cases) {
    isWhole = isWhole && IsRow(loads.supports, model.supports.size());
    for (const korvex::NodalForce& force : loads.forces) {
      isWhole = isWhole && IsRow(force.node, model.nodes.size());
    }
    for (const kvx::ImportPressure& pressure : loads.pressures) {
      isWhole = isWhole && IsRow(pressure.shell, model.shells.size());
    }
    for (const korvex::BeamLineLoad& line : loads.lineLoads) {
      isWhole = isWhole && IsRow(line.element, model.beams.size());
    }
  }
  if (!isWhole) std::abort();
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const kvx::SourceFile deck{"deck.bdf", {reinterpret_cast<const char*>(data), size}};
  const auto include = [&deck](const std::string& name, std::string& text) {
    if (name != "again") return false;
    text = deck.text;
    return true;
  };
  kvx::ImportModel model;
  kvx::ImportReport report;
  try {
    kvx::ImportNastran(deck, include, model, report);
  } catch (const korvex::Stop&) {  // a correct end for a wrong file
    return 0;
  }
  CheckElements(model);
  CheckCases(model);
  return 0;
}
