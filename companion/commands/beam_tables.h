// What `kvx forces` says of beams, as tables, sentences and JSON.
//
// Conventions are those of audit/section_forces.h and section_stresses.h. A station is a place
// along the beam; CSV and JSON give the same numbers of it under the same names.
#pragma once

#include <nlohmann/json_fwd.hpp>

#include "audit/beam_advice.h"
#include "audit/detail_stress.h"
#include "audit/section_stresses.h"
#include "commands/result_table.h"
#include "tables/model_origin.h"

namespace kvx {

// What is said of frames and signs below the tables, in CSV and in JSON.
std::vector<std::string> ListBeamNotes();

// One beam with all that is said of it.
struct BeamResult {
  std::int32_t beam = 0;
  BeamForces forces;
  SectionShape shape;
  std::vector<double> stations;  // s = x / length, ascending
  BeamStresses stresses;

  bool hasDetail = false;  // whether its detail model was asked for
  DetailStress detail;
  std::int32_t pieces = 0;  // into so many it should be divided; 0: it need not
  bool isShort = false;     // its detail model has no undisturbed middle (ShortDetail)
};

// forces: of the beam. divisions: as in ListStations. Fills all but the detail model and the
// advice. Throws a Stop where the section's row is outside its table.
void MakeBeamResult(const korvex::Model& model, std::int32_t beam, const BeamForces& forces,
                    int divisions, BeamResult& result);

// The largest force, moment and stress of beams: smaller ones by 1e-9 are shown as 0.
struct BeamScales {
  double force = 0.0, moment = 0.0, stress = 0.0;
};
void RaiseBeamScales(const BeamResult& result, BeamScales& scales);

// "web edge", "flange tip": a point of a section, in words.
const char* SectionPlaceName(SectionPlace place);

// What all beams have of a component, for the columns of the summary.
struct ComponentRange {
  double largest = 0.0;    // |value|
  double variation = 0.0;  // the largest difference along one beam
};
using ComponentRanges = std::array<ComponentRange, SectionForceCount>;
void RaiseRanges(const BeamForces& forces, ComponentRanges& ranges);

// One row for each beam: the components that matter, which are those that reach a thousandth of the
// largest force or moment anywhere, and stresses. A component that varies along any beam has its
// smallest and its largest value, others have one. Components left out are named in a note.
struct BeamSummary {
  ResultTable table;
  std::array<int, SectionForceCount> shown{};  // columns of each component: 0, 1 or 2
};
void BeginBeamSummary(const ComponentRanges& ranges, const BeamScales& scales,
                      BeamSummary& summary);
void AddToBeamSummary(const korvex::Model& model, const BeamResult& result,
                      const BeamScales& scales, BeamSummary& summary);

// The stations of one beam, and below them its largest stresses, its detail model and what to do.
// origin: of the model, where it was imported.
ResultTable MakeStationTable(const korvex::Model& model, const ModelOrigin& origin,
                             const BeamResult& result, const BeamScales& scales);

// A row for each station. The names of the columns, then the rows of a beam.
void BeginBeamCsv(ResultTable& table);
void AddBeamRows(const korvex::Model& model, const BeamResult& result, ResultTable& table);

// {"beam", "nodes", "section", "length", "ends": [[N, Vy, Vz, T, My, Mz], [..]], "stations":
// [{..}], "detail": {..} or null, "divide_into": .. or null}; of an imported model "deck_element"
// and "deck_nodes" behind "nodes".
nlohmann::ordered_json BeamJson(const korvex::Model& model, const ModelOrigin& origin,
                                const BeamResult& result);

}  // namespace kvx
