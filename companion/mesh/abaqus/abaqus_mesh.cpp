#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

void SpendEntries(AbaqusImport& import, std::size_t count, SourcePlace place) {
  if (count > import.mesh.budget) {
    StopImport(import.report, place,
               "the sets and loads of the deck name more nodes and elements than can be meant");
  }
  import.mesh.budget -= count;
}

std::string ExampleOf(const AbaqusImport& import, std::int32_t code) {
  const ImportModel& model = import.model;
  const auto row = static_cast<std::size_t>(RowOfCode(code));
  const auto text = [&](std::int32_t type, std::int64_t number) {
    return model.typeNames[static_cast<std::size_t>(type)] + " " + std::to_string(number);
  };
  if (KindOfCode(code) == AbaqusElementKind::Shell) {
    return text(model.shells[row].type, model.shells[row].number);
  }
  if (KindOfCode(code) == AbaqusElementKind::Beam) {
    return text(model.beams[row].type, model.beams[row].number);
  }
  return {};
}

}  // namespace kvx
