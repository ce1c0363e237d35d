#include "mesh/map_loads.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <string>

#include "mesh/case_supports.h"
#include "mesh/element_names.h"
#include "mesh/equivalent_loads.h"

namespace kvx {

namespace {

using korvex::Vector3;

// The name of the deck's own loads where the map adds cases to a deck that names none.
constexpr const char* DeckCaseName = "deck";

bool HasLoad(const MapGroup& said) {
  return said.pressure || said.lineLoad || said.edgeLoad || said.force || said.totalForce;
}

// The line of the group's first load.
std::size_t LineOfLoad(const MapGroup& said) {
  if (said.pressure) return said.pressure->line;
  if (said.lineLoad) return said.lineLoad->line;
  if (said.edgeLoad) return said.edgeLoad->line;
  return said.force ? said.force->line : said.totalForce->line;
}

// Cases by name.
using CaseRows = std::map<std::string, std::size_t>;

void AddCase(const std::string& name, ImportModel& model, CaseRows& rows) {
  const std::size_t row = model.cases.size();
  if (!rows.emplace(name, row).second) return;
  ImportCase made;
  made.name = name;
  made.supports = FindSupports(model);
  model.cases.push_back(made);
}

// Adds the cases that the map declares, and to a mesh without cases those that its groups name. A
// deck's case without a name gets one where it does not stay alone.
void AddCases(const MapFile& map, const std::vector<MapTarget>& targets, ImportModel& model,
              CaseRows& rows) {
  const bool isOfDeck = !model.cases.empty();
  const std::size_t before = model.cases.size();
  for (std::size_t k = 0; k < before; ++k) rows.emplace(model.cases[k].name, k);
  for (const MapCase& each : map.cases) AddCase(each.name, model, rows);
  for (const MapTarget& target : targets) {
    const Maybe<std::string>& name = target.said.loadCase;
    if (!name) continue;
    if (name->value.empty()) StopAtLine(name->line, NameTarget(target) + ": \"case\" is empty.");
    if (!isOfDeck) AddCase(name->value, model, rows);
  }
  if (model.cases.size() <= before) return;
  for (std::size_t k = 0; k < before; ++k) {
    if (!model.cases[k].name.empty()) continue;
    rows.erase("");
    model.cases[k].name = DeckCaseName;
    rows.emplace(DeckCaseName, k);
  }
}

std::vector<std::string> ListCases(const ImportModel& model) {
  std::vector<std::string> names;
  for (const ImportCase& each : model.cases) names.push_back(each.name);
  return names;
}

// The case of loads that name none; makes it where the model has none at all.
std::size_t FindOnlyCase(std::size_t line, const std::string& owner, ImportModel& model,
                         CaseRows& rows) {
  if (model.cases.empty()) AddCase("", model, rows);
  if (model.cases.size() == 1) return 0;
  StopAtLine(line, owner + " has loads, and there are several cases: say whose they are." +
                       SuggestWord("", ListCases(model)) +
                       " Write it as in: case = " + InQuotes(model.cases.front().name));
}

std::size_t FindCase(const MapTarget& target, ImportModel& model, CaseRows& rows) {
  const Maybe<std::string>& name = target.said.loadCase;
  if (!name) return FindOnlyCase(LineOfLoad(target.said), NameTarget(target), model, rows);
  const auto at = rows.find(name->value);
  if (at != rows.end()) return at->second;
  StopAtLine(name->line, NameTarget(target) + ": there is no case " + InQuotes(name->value) +
                             ". A new one is declared by [case." + name->value + "]." +
                             SuggestWord(name->value, ListCases(model)));
}

void AddAccelerations(const MapFile& map, ImportModel& model, CaseRows& rows) {
  const auto add = [&](const Vector3& acceleration, ImportCase& loads) {
    loads.hasAcceleration = true;
    loads.acceleration = acceleration;
  };
  for (const MapCase& each : map.cases) {
    if (each.acceleration) add(each.acceleration->value, model.cases[rows.at(each.name)]);
  }
  if (!map.acceleration) return;
  const std::size_t row = FindOnlyCase(map.acceleration->line, "the map", model, rows);
  add(map.acceleration->value, model.cases[row]);
}

void AddPressures(const ImportModel& model, const MapTarget& target, ImportCase& loads) {
  const double p = target.said.pressure->value;
  for (const std::int32_t shell : GroupOf(model, target).shells) {
    AddPressure(model, shell, {p, p, p, p}, loads);
  }
}

void AddLineLoads(const ImportModel& model, const MapTarget& target, ImportCase& loads) {
  const Placed<double>& q = *target.said.lineLoad;
  for (const std::int32_t row : GroupOf(model, target).beams) {
    const ImportBeam& beam = model.beams[static_cast<std::size_t>(row)];
    const Vector3 web = BeamAxes(model, beam)[2];
    if (korvex::Length(web) == 0.0) {
      const bool isGiven = korvex::Length(beam.orientation) > 0.0;
      StopAtLine(
          q.line,
          NameTarget(target) + ": a line_load acts along the web, and " + NameBeam(model, row) +
              (isGiven ? " has an orientation parallel to its axis." : " has no orientation."));
    }
    AddBeamLoad(model, {row, web, false, 0.0, 1.0, q.value, q.value}, loads);
  }
}

// Beams carry it as beams do; edges of shells give half of it to each end.
void AddEdgeLoads(const ImportModel& model, const MapTarget& target, ImportCase& loads) {
  const Vector3& q = target.said.edgeLoad->value;
  const double size = korvex::Length(q);
  if (size == 0.0) return;
  for (const std::int32_t row : GroupOf(model, target).beams) {
    const ImportBeam& beam = model.beams[static_cast<std::size_t>(row)];
    if (beam.section >= 0) {
      const Vector3 direction{q[0] / size, q[1] / size, q[2] / size};
      AddBeamLoad(model, {row, direction, false, 0.0, 1.0, size, size}, loads);
      continue;
    }
    const Vector3 d =
        korvex::Subtract(PlaceOf(model, beam.nodes[1]), PlaceOf(model, beam.nodes[0]));
    const double half = korvex::Length(d) / 2.0;
    for (const std::int32_t node : beam.nodes) {
      loads.forces.push_back({node, {half * q[0], half * q[1], half * q[2], 0.0, 0.0, 0.0}});
    }
  }
}

void AddForces(const ImportModel& model, const MapTarget& target, ImportCase& loads) {
  const std::vector<std::int32_t>& nodes = GroupOf(model, target).nodes;
  if (target.said.force) {
    for (const std::int32_t node : nodes) loads.forces.push_back({node, target.said.force->value});
  }
  if (!target.said.totalForce) return;
  std::array<double, 6> share = target.said.totalForce->value;
  for (double& each : share) each /= static_cast<double>(nodes.size());
  for (const std::int32_t node : nodes) loads.forces.push_back({node, share});
}

}  // namespace

void GiveRestraints(const std::vector<MapTarget>& targets, ImportModel& model) {
  const auto isSaid = [](const MapTarget& target) { return target.said.restraint.has_value(); };
  if (std::none_of(targets.begin(), targets.end(), isSaid)) return;
  const auto own = static_cast<std::int32_t>(model.supports.size());
  bool needsOwn = model.supports.empty();
  for (ImportCase& each : model.cases) {
    if (each.supports >= 0) continue;
    each.supports = own;
    needsOwn = true;
  }
  if (needsOwn) model.supports.push_back({"map", {}});
  for (SupportSet& set : model.supports) {
    for (const MapTarget& target : targets) {
      if (!target.said.restraint) continue;
      for (const std::int32_t node : GroupOf(model, target).nodes) {
        set.restraints.push_back({target.said.restraint->value, node});
      }
    }
  }
}

void GiveLoads(const MapFile& map, const std::vector<MapTarget>& targets, ImportModel& model) {
  CaseRows rows;
  AddCases(map, targets, model, rows);
  AddAccelerations(map, model, rows);
  for (const MapTarget& target : targets) {
    if (!HasLoad(target.said)) continue;
    ImportCase& loads = model.cases[FindCase(target, model, rows)];
    if (target.said.pressure) AddPressures(model, target, loads);
    if (target.said.lineLoad) AddLineLoads(model, target, loads);
    if (target.said.edgeLoad) AddEdgeLoads(model, target, loads);
    AddForces(model, target, loads);
  }
}

}  // namespace kvx
