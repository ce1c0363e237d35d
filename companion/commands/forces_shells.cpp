// kvx forces: shells.
#include <functional>
#include <nlohmann/json.hpp>

#include "commands/element_words.h"
#include "commands/forces.h"
#include "commands/origin_columns.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Model;

namespace {

// More shells than this are shown by their extremes, unless they are named: nobody reads a page of
// numbers that he did not ask for.
constexpr std::size_t MostShown = 50;

// Calls `take` with the numbers of each shell of the choice.
void ForEachShell(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                  const std::function<void(const ShellResult& result)>& take) {
  ShellResult result;
  for (const ElementRef& element : choice.shells) {
    MakeShellResult(model, element, command.axis, result);
    take(result);
  }
}

// Which shells have another axis 1 than the one that was asked for.
struct OtherFrames {
  std::size_t count = 0;
  ElementRef first;
};

void CountOtherFrame(const ShellResult& result, OtherFrames& others) {
  const FrameSource source = result.values.frame.source;
  if (source != FrameSource::GlobalX && source != FrameSource::GlobalY) return;
  if (others.count++ == 0) others.first = result.element;
}

std::string OtherFramesText(const Model& model, const ModelOrigin& origin,
                            const OtherFrames& others) {
  return "The axis is normal to " + CountText(others.count, "shell", "shells") + ", first " +
         DescribeElement(model, origin, others.first) +
         ": there axis 1 is the projection of global x, or of global y where x is normal as well.";
}

}  // namespace

void AddShellText(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                  OutputBlocks& blocks) {
  const TextStyle style = ChooseStyle(ColorChoice::Never);
  ShellScales scales;
  ShellExtremes extremes;
  OtherFrames others;
  ForEachShell(model, command, choice, [&](const ShellResult& result) {
    RaiseShellScales(result, scales);
    RaiseShellExtremes(result, extremes);
    CountOtherFrame(result, others);
  });
  if (choice.hasShellList || choice.shells.size() <= MostShown) {
    ShellTables tables;
    BeginShellTables(tables);
    ForEachShell(model, command, choice, [&](const ShellResult& result) {
      AddToShellTables(model, result, command.corners, scales, tables);
    });
    for (ResultTable* table : {&tables.forces, &tables.stresses}) {
      AddOriginColumns(choice.origin, ColumnReader::Person, *table);
    }
    AddOutput(TableText(tables.forces, style) + '\n' + TableText(tables.stresses, style), blocks);
  } else {
    ResultTable table = MakeExtremesTable(choice.origin, extremes, scales);
    table.notes.emplace_back("\"kvx forces --shell 5-8\" shows shells one by one.");
    AddOutput(TableText(table, style), blocks);
  }
  std::vector<std::string> notes = ListShellNotes(command.axis);
  if (others.count > 0)
    notes.insert(notes.begin() + 1, OtherFramesText(model, choice.origin, others));
  for (const std::string& note : notes) AddOutput(WrapText(note, style.width, "", ""), blocks);
}

void AddShellCsv(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                 OutputBlocks& blocks) {
  ResultTable table;
  OriginColumns origins;
  BeginShellCsv(command.axis, table);
  BeginOriginColumns(choice.origin, ColumnReader::Program, table, origins);
  AddOutput(CsvHead(table), blocks);
  ForEachShell(model, command, choice, [&](const ShellResult& result) {
    table.cells.clear();
    AddShellRows(model, result, command.corners, table);
    AddOriginCells(origins, table.cells);
    AddOutput(CsvRows(table), blocks);
  });
}

void AddShellJson(const Model& model, const ForcesCommand& command, const ForcesChoice& choice,
                  ElementKind kind, OutputBlocks& blocks) {
  std::string separator;
  AddOutput("[", blocks);
  ForEachShell(model, command, choice, [&](const ShellResult& result) {
    if (result.element.kind != kind) return;
    AddOutput(separator + JsonLine(ShellJson(model, choice.origin, result, command.corners)),
              blocks);
    separator = ",";
  });
  AddOutput("]", blocks);
}

}  // namespace kvx
