// Small imported models, built by hand.
#pragma once

#include <string>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx::test {

// Adds a node with the number 1001 + row. Returns its row.
std::int32_t AddNode(double x, double y, double z, ImportModel& model);

// Adds a shell of three or four nodes with the number 4001 + row and the type "CQUAD4" or "CTRIA3";
// without material and thickness.
std::int32_t AddShell(const std::vector<std::int32_t>& nodes, ImportModel& model);

// Adds a beam with the number 7001 + row and the type "CBAR"; without anything.
std::int32_t AddBeam(std::int32_t first, std::int32_t second, ImportModel& model);

// Adds a group of elements with their nodes. Returns its row.
std::int32_t AddGroup(const std::string& name, const std::vector<std::int32_t>& shells,
                      const std::vector<std::int32_t>& beams, ImportModel& model);

// Two squares of side 2 side by side along x, in the plane z = 0, normals up: nodes 0 1 2 at y = 0
// and 3 4 5 at y = 2; shells 0 and 1; on the line y = 0 the beams 0 and 1. Groups: "deck" (both
// shells), "left" (shell 0), "stiffeners" (both beams), "corner" (node 5 alone). Format gmsh 4.1.
ImportModel StiffenedPlate();

// The same with material, thickness, section and orientation, so that it is complete. Format
// "Nastran bulk data".
ImportModel CompletePlate();

// The entry with this card and a reason that holds the text; nullptr: none.
const ReportEntry* FindEntry(const ImportReport& report, const std::string& card,
                             const std::string& reason);

// All entries, for messages: "card | fate | reason | count | example" by line.
std::string ListEntries(const ImportReport& report);

}  // namespace kvx::test
