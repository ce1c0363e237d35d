// What `kvx forces` says of shells, as tables, sentences and JSON.
//
// Conventions are those of audit/shell_resultants.h and shell_frame.h. A point is the centre of an
// element, or a corner; CSV and JSON give the same numbers of it under the same names. Angles are
// in degrees, from axis 1 towards axis 2.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "audit/end_forces.h"
#include "audit/shell_resultants.h"
#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

// What is said of frames and signs below the tables, in CSV and in JSON.
std::vector<std::string> ListShellNotes(const FrameChoice& choice);

struct ShellResult {
  ElementRef element;
  ShellResultants values;
};

// element: Shell4 or Shell3. Throws a Stop as ComputeShell4Resultants does.
void MakeShellResult(const korvex::Model& model, const ElementRef& element,
                     const FrameChoice& choice, ShellResult& result);

// The largest force, moment and stress of shells: smaller ones by 1e-9 are shown as 0.
struct ShellScales {
  double force = 0.0, moment = 0.0, stress = 0.0;
};
void RaiseShellScales(const ShellResult& result, ShellScales& scales);

// For people: forces and moments, and stresses of the faces. hasCorners: of the corners, too.
struct ShellTables {
  ResultTable forces, stresses;
};
void BeginShellTables(ShellTables& tables);
void AddToShellTables(const korvex::Model& model, const ShellResult& result, bool hasCorners,
                      const ShellScales& scales, ShellTables& tables);

// The smallest and the largest of each component at the centres of shells, and where.
struct ShellPeak {
  double value = 0.0;
  ElementRef element;
  korvex::Vector3 place{};
};
inline constexpr std::size_t ShellPeakCount = 11;
struct ShellExtremes {
  std::array<bool, ShellPeakCount> hasAny{};
  std::array<ShellPeak, ShellPeakCount> smallest, largest;
};
void RaiseShellExtremes(const ShellResult& result, ShellExtremes& extremes);
// origin: of the model, where it was imported.
ResultTable MakeExtremesTable(const ModelOrigin& origin, const ShellExtremes& extremes,
                              const ShellScales& scales);

// A row for each point. The names of the columns, then the rows of an element.
void BeginShellCsv(const FrameChoice& choice, ResultTable& table);
void AddShellRows(const korvex::Model& model, const ShellResult& result, bool hasCorners,
                  ResultTable& table);

// {"shell" or "triangle", "nodes", "thickness", "frame", "axes": [[3], [3], [3]], "centre": {..},
// "corners": [{..}]}; corners are left out unless they are asked for. Of an imported model
// "deck_element" and "deck_nodes" behind "nodes".
nlohmann::ordered_json ShellJson(const korvex::Model& model, const ModelOrigin& origin,
                                 const ShellResult& result, bool hasCorners);

// "element", "axis", "global x", "global y": what axis 1 is the projection of.
const char* NameOf(FrameSource source);

}  // namespace kvx
