// kvx forces: beams.
#include <nlohmann/json.hpp>

#include "audit/beam_advice.h"
#include "audit/beam_details.h"
#include "commands/forces.h"
#include "commands/origin_columns.h"
#include "commands/progress.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Model;

namespace {

// What is found for all beams before the first is shown.
struct BeamGround {
  std::vector<BeamForces> forces;     // [NELEM_B]
  std::vector<std::int32_t> pieces;   // [NELEM_B]
  std::vector<bool> isShort;          // [NELEM_B]
  std::vector<DetailStress> details;  // of the chosen beams; empty unless they are named
};

void FindDetails(const Model& model, const ForcesChoice& choice, BeamGround& ground) {
  Progress progress;
  BeginProgress(MakingDetailModels, progress);
  const auto count = static_cast<double>(choice.beams.size());
  FindDetailStresses(
      model, choice.beams,
      [&](std::size_t i) { ShowShare(static_cast<double>(i) / count, progress); }, ground.details);
}

void PrepareBeams(const Model& model, const ForcesChoice& choice, BeamGround& ground) {
  ComputeBeamForces(model, ground.forces);
  std::vector<UndividedBeam> undivided;
  FindUndividedBeams(model, ground.forces, undivided);
  ground.pieces.assign(ground.forces.size(), 0);
  for (const UndividedBeam& beam : undivided) {
    ground.pieces[static_cast<std::size_t>(beam.beam)] = beam.pieces;
  }
  std::vector<ShortDetail> shortOnes;
  FindShortDetails(model, shortOnes);
  ground.isShort.assign(ground.forces.size(), false);
  for (const ShortDetail& beam : shortOnes) {
    ground.isShort[static_cast<std::size_t>(beam.beam)] = true;
  }
  if (choice.hasBeamList) FindDetails(model, choice, ground);
}

// at: index in the choice.
BeamResult ResultOf(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                    const BeamGround& ground, std::size_t at) {
  const auto row = static_cast<std::size_t>(choice.beams[at]);
  BeamResult result;
  MakeBeamResult(model, choice.beams[at], ground.forces[row], command.divisions, result);
  result.hasDetail = choice.hasBeamList;
  if (result.hasDetail) result.detail = ground.details[at];
  result.pieces = ground.pieces[row];
  result.isShort = ground.isShort[row];
  return result;
}

// Of all beams of the model, so that a beam looks the same whichever others are shown.
BeamScales FindScales(const Model& model, const BeamGround& ground, ComponentRanges& ranges) {
  BeamScales scales;
  ranges = {};
  for (std::size_t row = 0; row < ground.forces.size(); ++row) {
    BeamResult result;
    MakeBeamResult(model, static_cast<std::int32_t>(row), ground.forces[row], 1, result);
    RaiseBeamScales(result, scales);
    RaiseRanges(result.forces, ranges);
  }
  return scales;
}

void AddBeamText(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                 const BeamGround& ground, OutputBlocks& blocks) {
  const TextStyle style = ChooseStyle(ColorChoice::Never);
  ComponentRanges ranges{};
  const BeamScales scales = FindScales(model, ground, ranges);
  BeamSummary summary;
  BeginBeamSummary(ranges, scales, summary);
  for (std::size_t i = 0; i < choice.beams.size(); ++i) {
    const BeamResult result = ResultOf(model, command, choice, ground, i);
    if (choice.hasBeamList) {
      const ResultTable table = MakeStationTable(model, choice.origin, result, scales);
      AddOutput(TableText(table, style) + '\n', blocks);
    } else {
      AddToBeamSummary(model, result, scales, summary);
    }
  }
  if (!choice.hasBeamList) {
    summary.table.title =
        CountText(choice.beams.size(), "beam", "beams") + ", the extremes along each:";
    summary.table.notes.emplace_back("\"kvx forces --beam 5\" shows beam 5 along its length.");
    AddOriginColumns(choice.origin, ColumnReader::Person, summary.table);
    AddOutput(TableText(summary.table, style), blocks);
  }
  for (const std::string& note : ListBeamNotes()) {
    AddOutput(WrapText(note, style.width, "", ""), blocks);
  }
}

}  // namespace

void AddBeamOutput(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                   OutputBlocks& blocks) {
  BeamGround ground;
  PrepareBeams(model, choice, ground);
  if (command.form == OutputForm::Text) {
    AddBeamText(model, command, choice, ground, blocks);
    return;
  }
  ResultTable table;
  OriginColumns origins;
  BeginBeamCsv(table);
  BeginOriginColumns(choice.origin, ColumnReader::Program, table, origins);
  const bool isJson = command.form == OutputForm::Json;
  AddOutput(isJson ? "[" : CsvHead(table), blocks);
  for (std::size_t i = 0; i < choice.beams.size(); ++i) {
    const BeamResult result = ResultOf(model, command, choice, ground, i);
    if (isJson) {
      AddOutput((i > 0 ? "," : "") + JsonLine(BeamJson(model, choice.origin, result)), blocks);
    } else {
      table.cells.clear();
      AddBeamRows(model, result, table);
      AddOriginCells(origins, table.cells);
      AddOutput(CsvRows(table), blocks);
    }
  }
  if (isJson) AddOutput("]", blocks);
}

}  // namespace kvx
