#include "mesh/abaqus/import_abaqus.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "mesh/abaqus/abaqus_deck.h"
#include "mesh/abaqus/abaqus_elements.h"
#include "mesh/abaqus/abaqus_groups.h"
#include "mesh/abaqus/abaqus_keywords.h"
#include "mesh/abaqus/abaqus_materials.h"
#include "mesh/abaqus/abaqus_mesh.h"
#include "mesh/abaqus/abaqus_nodes.h"
#include "mesh/abaqus/abaqus_parts.h"
#include "mesh/abaqus/abaqus_placing.h"
#include "mesh/abaqus/abaqus_sections.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/abaqus/abaqus_steps.h"
#include "mesh/unknown_names.h"

namespace kvx {

namespace {

// What the lists of a deck may hold in all, for each node and element: two hundred load cases that
// load all of them. And some for small decks.
constexpr std::size_t EntriesForEach = 200;
constexpr std::size_t EntriesAtLeast = 1000000;

void ReportOtherKeywords(const AbaqusDeck& deck, ImportReport& report) {
  const std::vector<std::string> taken = TakenKeywords();
  UnknownNames unknown;
  for (const AbaqusKeyword& keyword : deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    const AbaqusKeywordKind kind = KindOfKeyword(keyword.name);
    if (kind.isTaken) continue;
    const std::string reason = kind.reason == UnknownKeyword
                                   ? ReasonOfUnknown(UnknownKeyword, keyword.name, taken, unknown)
                                   : std::string(kind.reason);
    ReportCard("*" + keyword.name, kind.fate, reason, keyword.place, {}, report);
  }
}

// Puts the report's entries in the order of their first places. They were made routine by routine.
void SortEntries(ImportReport& report) {
  std::vector<std::size_t> order(report.entries.size());
  for (std::size_t k = 0; k < order.size(); ++k) order[k] = k;
  std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    const SourcePlace p = report.entries[a].first;
    const SourcePlace q = report.entries[b].first;
    return p.file != q.file ? p.file < q.file : p.line < q.line;
  });
  std::vector<std::size_t> rowOf(order.size());
  std::vector<ReportEntry> sorted;
  for (const std::size_t k : order) {
    rowOf[k] = sorted.size();
    sorted.push_back(std::move(report.entries[k]));
  }
  report.entries = std::move(sorted);
  for (auto& [key, row] : report.entryRows) row = rowOf[row];
}

}  // namespace

void ImportAbaqus(const SourceFile& file, const IncludeReader& include, ImportModel& model,
                  ImportReport& report) {
  AbaqusDeck deck;
  ReadAbaqusDeck(file, include, deck, report);
  MarkAbaqusScopes(deck, report);
  model.format = "Abaqus deck";
  AbaqusMesh mesh;
  mesh.budget = EntriesAtLeast;
  AbaqusImport import{deck, mesh, model, report};
  TakeAbaqusPlacing(import);
  TakeAbaqusNodes(import);
  TakeAbaqusElements(import);
  mesh.budget += EntriesForEach * (mesh.nodes.entries.size() + mesh.elements.entries.size());
  TakeAbaqusSets(import);
  MakeAbaqusGroups(import);
  AbaqusMaterials materials;
  TakeAbaqusMaterials(import, materials);
  AbaqusSections sections;
  TakeAbaqusSections(import, materials, sections);
  TakeAbaqusSteps(import, sections);
  ReportOtherKeywords(deck, report);
  SortEntries(report);
}

}  // namespace kvx
