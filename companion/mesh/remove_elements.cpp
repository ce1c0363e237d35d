#include "mesh/remove_elements.h"

#include <algorithm>
#include <cstdint>

namespace kvx {

namespace {

// Takes the rows out; returns the new row of each, -1 for those that are gone.
template <typename Row>
std::vector<std::int32_t> Compact(const std::vector<char>& isKept, std::vector<Row>& rows) {
  std::vector<std::int32_t> places(rows.size(), -1);
  std::size_t kept = 0;
  for (std::size_t k = 0; k < rows.size(); ++k) {
    if (isKept[k] == 0) continue;
    rows[kept] = rows[k];
    places[k] = static_cast<std::int32_t>(kept++);
  }
  rows.resize(kept);
  return places;
}

void MoveRows(const std::vector<std::int32_t>& places, std::vector<std::int32_t>& rows) {
  for (std::int32_t& row : rows) row = places[static_cast<std::size_t>(row)];
  rows.erase(std::remove(rows.begin(), rows.end(), -1), rows.end());
}

// member: what refers to the element.
template <typename Load>
std::size_t MoveLoads(const std::vector<std::int32_t>& places, std::int32_t Load::*member,
                      std::vector<Load>& loads) {
  const std::size_t before = loads.size();
  for (Load& each : loads) each.*member = places[static_cast<std::size_t>(each.*member)];
  loads.erase(std::remove_if(loads.begin(), loads.end(),
                             [member](const Load& each) { return each.*member < 0; }),
              loads.end());
  return before - loads.size();
}

}  // namespace

std::size_t RemoveElements(const std::vector<char>& isShellKept,
                           const std::vector<char>& isBeamKept, ImportModel& model) {
  const std::vector<std::int32_t> shells = Compact(isShellKept, model.shells);
  const std::vector<std::int32_t> beams = Compact(isBeamKept, model.beams);
  for (ImportGroup& group : model.groups) {
    MoveRows(shells, group.shells);
    MoveRows(beams, group.beams);
  }
  std::size_t loads = 0;
  for (ImportCase& each : model.cases) {
    loads += MoveLoads(shells, &ImportPressure::shell, each.pressures);
    loads += MoveLoads(beams, &korvex::BeamLineLoad::element, each.lineLoads);
  }
  return loads;
}

}  // namespace kvx
