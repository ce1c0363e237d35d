// Fuzz target of the reader of gmsh's meshes: any bytes as a mesh file. They must be read or end
// with a Stop, and what is read must hold together. A part of a mesh must not be read as the whole:
// without its last mark a file is none.
#include <algorithm>
#include <cstdlib>
#include <string>

#include "fuzz_target.h"
#include "mesh/gmsh/import_gmsh.h"
#include "report/stop.h"

namespace {

// Whether all rows lie in a table of `size`.
template <typename Rows>
bool AreRows(const Rows& rows, std::size_t size) {
  return std::all_of(rows.begin(), rows.end(), [&](std::int32_t row) {
    return row >= 0 && static_cast<std::size_t>(row) < size;
  });
}

bool HoldsTogether(const kvx::ImportModel& model) {
  const std::size_t nodes = model.nodes.size();
  bool holds = model.nodeNumbers.size() == nodes;
  for (const kvx::ImportShell& shell : model.shells) {
    auto corners = shell.nodes;
    if (corners[3] < 0) corners[3] = corners[2];
    holds = holds && AreRows(corners, nodes);
  }
  for (const kvx::ImportBeam& beam : model.beams) holds = holds && AreRows(beam.nodes, nodes);
  for (const kvx::ImportGroup& group : model.groups) {
    holds = holds && AreRows(group.nodes, nodes) && AreRows(group.shells, model.shells.size()) &&
            AreRows(group.beams, model.beams.size()) && !group.name.empty();
  }
  return holds;
}

// Whether the text is read as a mesh that holds together.
bool IsMesh(const std::string& text) {
  kvx::ImportModel model;
  kvx::ImportReport report;
  try {
    kvx::ImportGmsh({"mesh.msh", text}, model, report);
  } catch (const korvex::Stop&) {  // a correct end for a wrong file
    return false;
  }
  if (!HoldsTogether(model)) std::abort();
  return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  if (!IsMesh(text)) return 0;
  const std::size_t mark = text.rfind("$EndElements");
  if (mark != std::string::npos && IsMesh(text.substr(0, mark))) std::abort();
  return 0;
}
