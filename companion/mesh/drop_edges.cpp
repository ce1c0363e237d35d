#include "mesh/drop_edges.h"

#include <cstddef>
#include <string>
#include <vector>

#include "mesh/element_names.h"
#include "mesh/remove_elements.h"

namespace kvx {

namespace {

constexpr const char* EdgeReason = "lines without a section are edges, not beams";
constexpr const char* ForgottenReason = "the map gives these lines no section, support or load";

bool IsEdge(const ImportBeam& beam) {
  return beam.section < 0 && beam.material < 0 && korvex::Length(beam.orientation) == 0.0;
}

// isLeft: [beams] edges that are not reported yet.
void ReportEdges(const ImportModel& model, const std::string& card, SourcePlace place,
                 const std::vector<std::int32_t>& beams, Fate fate, std::vector<char>& isLeft,
                 ImportReport& report) {
  std::size_t count = 0;
  std::string example;
  for (const std::int32_t beam : beams) {
    char& isOne = isLeft[static_cast<std::size_t>(beam)];
    if (isOne == 0) continue;
    isOne = 0;
    if (count++ == 0) example = NameBeam(model, beam);
  }
  if (count == 0) return;
  const char* reason = fate == Fate::Lost ? ForgottenReason : EdgeReason;
  ReportCard(card, fate, reason, place, example, report, count);
}

}  // namespace

void DropEdges(ImportModel& model, ImportReport& report) {
  std::vector<char> isKept(model.beams.size(), 1), isLeft(model.beams.size(), 0);
  std::vector<std::int32_t> all;
  for (std::size_t k = 0; k < model.beams.size(); ++k) {
    if (!IsEdge(model.beams[k])) continue;
    isKept[k] = 0;
    isLeft[k] = 1;
    all.push_back(static_cast<std::int32_t>(k));
  }
  if (all.empty()) return;
  // A line may stand in two groups: one that uses it is enough.
  for (const bool isEdge : {true, false}) {
    for (const ImportGroup& group : model.groups) {
      if (group.isEdge != isEdge) continue;
      ReportEdges(model, NameGroup(group), group.place, group.beams,
                  isEdge ? Fate::NoEffect : Fate::Lost, isLeft, report);
    }
  }
  ReportEdges(model, "lines of no group", {}, all, Fate::NoEffect, isLeft, report);
  RemoveElements(std::vector<char>(model.shells.size(), 1), isKept, model);
}

}  // namespace kvx
