#include "commands/reactions_tables.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>

#include "check/describe.h"
#include "commands/element_words.h"
#include "commands/number_json.h"
#include "commands/origin_columns.h"
#include "commands/origin_words.h"
#include "commands/tidy_number.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Model;
using Json = nlohmann::ordered_json;

namespace {

// The prescribed displacements of a node, as in the tables of all commands.
constexpr std::array<const char*, 6> PrescribedNames{"ux", "uy", "uz", "rx", "ry", "rz"};

// So many elements are named one by one; a mesh of a curved shell may have thousands.
constexpr std::size_t MostNamed = 10;

void AddPlaceCells(const korvex::Vector3& place, std::vector<Cell>& cells) {
  for (const double coordinate : place) cells.emplace_back(coordinate);
}

void AddColumns(const std::vector<const char*>& names, ResultTable& table) {
  table.columns.insert(table.columns.end(), names.begin(), names.end());
}

void AddForceColumns(ResultTable& table) {
  table.columns.insert(table.columns.end(), ForceNames.begin(), ForceNames.end());
}

// All six with their digits.
void AddForceCells(const ForceSum& force, std::vector<Cell>& cells) {
  for (const double component : force) cells.emplace_back(component);
}

void AddTidyCells(const ForceSum& force, const ForceScales& scales, std::vector<Cell>& cells) {
  for (std::size_t i = 0; i < force.size(); ++i) {
    cells.emplace_back(TidyNumber(force[i], i < 3 ? scales.force : scales.moment));
  }
}

// The cells of a support, empty at dofs that are free. scales: null for all digits.
void AddSupportCells(const Support& support, const ForceScales* scales, std::vector<Cell>& cells) {
  ForceSum force = support.force;
  for (std::size_t i = 0; i < force.size(); ++i) {
    if (scales != nullptr) force[i] = TidyNumber(force[i], i < 3 ? scales->force : scales->moment);
    cells.push_back(support.held[i] != 0 ? Cell(force[i]) : Cell());
  }
}

struct NamedSum {
  const char* name;
  ForceSum sum{};
};

// In the order of the rows.
std::vector<NamedSum> ListSums(const Reactions& reactions) {
  std::vector<NamedSum> sums{{"loads", reactions.loads}, {"reactions", reactions.reactions}};
  if (!reactions.unbalanced.empty()) sums.push_back({"elements", SumOfElements(reactions)});
  sums.push_back({"left over", LeftOver(reactions)});
  return sums;
}

// By node: the prescribed displacements, NaN where there is none.
using Prescribed = std::map<std::int32_t, std::array<double, 6>>;

Prescribed IndexPrescribed(const Reactions& reactions) {
  constexpr double None = std::numeric_limits<double>::quiet_NaN();
  Prescribed prescribed;
  for (const MovedSupport& moved : reactions.moved) {
    const auto at = prescribed.try_emplace(
        moved.node, std::array<double, 6>{None, None, None, None, None, None});
    at.first->second[static_cast<std::size_t>(moved.dof)] = moved.prescribed;
  }
  return prescribed;
}

ForceSum Opposite(const ForceSum& sum) {
  ForceSum opposite{};
  for (std::size_t i = 0; i < sum.size(); ++i) opposite[i] = 0.0 - sum[i];  // no -0
  return opposite;
}

std::string SixText(const double* six) {
  return PointText({six[0], six[1], six[2]}) + " and " + PointText({six[3], six[4], six[5]});
}

std::string UnbalancedText(const Model& model, const ModelOrigin& origin,
                           const UnbalancedElement& element) {
  const std::string name = DescribeElement(model, origin, element.element);
  const ForceSum sum = Opposite(element.sum);
  if (element.hasNodeTwice) {
    return name + " has a node twice; it leaves the force and moment " + SixText(sum.data()) + ".";
  }
  return name + " is warped: its third node stands " + NumberText(std::fabs(element.offset)) +
         " off the plane of the others; it leaves the couple " +
         PointText({sum[3], sum[4], sum[5]}) + ".";
}

Json UnbalancedJson(const UnbalancedElement& element) {
  Json json;
  json["kind"] = KindWord(element.element.kind);
  json["element"] = element.element.row;
  json["offset"] = NumberJson(element.offset);
  json["node_twice"] = element.hasNodeTwice;
  json["sum"] = NumbersJson(Opposite(element.sum));
  return json;
}

}  // namespace

ForceSum SumOfElements(const Reactions& reactions) { return Opposite(reactions.unbalancedSum); }

ForceSum LeftOver(const Reactions& reactions) {
  ForceSum left{};
  for (std::size_t i = 0; i < left.size(); ++i) {
    left[i] = reactions.loads[i] + reactions.reactions[i] - reactions.unbalancedSum[i];
  }
  return left;
}

ResultTable MakeSupportTable(const Reactions& reactions) {
  ResultTable table;
  table.title = "Support forces at " + CountText(reactions.supports.size(), "node", "nodes") + ":";
  AddColumns({"node", "x", "y", "z"}, table);
  AddForceColumns(table);
  for (const Support& support : reactions.supports) {
    table.cells.emplace_back(std::int64_t{support.node});
    AddPlaceCells(support.place, table.cells);
    AddSupportCells(support, &reactions.endScales, table.cells);
  }
  return table;
}

ResultTable MakeSumTable(const Reactions& reactions) {
  ResultTable table;
  table.title = "Sums, moments about the global origin:";
  AddColumns({"sum"}, table);
  AddForceColumns(table);
  const std::vector<NamedSum> sums = ListSums(reactions);
  for (const NamedSum& named : sums) {
    table.cells.emplace_back(std::string(named.name));
    if (&named == &sums.back()) {
      AddForceCells(named.sum, table.cells);  // rounding is what it shows
    } else {
      AddTidyCells(named.sum, reactions.endScales, table.cells);
    }
  }
  return table;
}

ResultTable MakeMovedTable(const Model& model, const Reactions& reactions) {
  ResultTable table;
  table.title = "Prescribed displacements (rotations in radians):";
  AddColumns({"node", "x", "y", "z", "dof", "prescribed", "reached"}, table);
  for (const MovedSupport& moved : reactions.moved) {
    table.cells.emplace_back(std::int64_t{moved.node});
    AddPlaceCells(PlaceOfNode(model, moved.node), table.cells);
    table.cells.emplace_back(std::string(DofNames[static_cast<std::size_t>(moved.dof)]));
    table.cells.emplace_back(moved.prescribed);
    table.cells.emplace_back(moved.displacement);
  }
  return table;
}

std::vector<std::string> ListBalanceNotes(const Model& model, const ModelOrigin& origin,
                                          const Reactions& reactions) {
  std::vector<std::string> notes;
  const std::string part = NumberText(reactions.imbalance) + " of them.";
  if (IsBalanced(reactions)) {
    notes.push_back("Loads and reactions balance: what is left over is " + part);
  } else {
    notes.push_back("Loads and reactions do NOT balance: what is left over is " + part +
                    " \"kvx audit\" tells more.");
  }
  const std::size_t count = reactions.unbalanced.size();
  for (std::size_t i = 0; i < std::min(count, MostNamed); ++i) {
    notes.push_back("Not in equilibrium by itself: " +
                    UnbalancedText(model, origin, reactions.unbalanced[i]));
  }
  if (count > MostNamed) {
    notes.push_back("And " + std::to_string(count - MostNamed) +
                    " more elements are not in equilibrium by themselves; --json names all.");
  }
  if (count > 0) {
    notes.push_back(
        "What these elements leave over, the supports do not get: the row \"elements\" is their "
        "sum. Divide warped quadrilaterals into triangles, or mesh finer.");
  }
  return notes;
}

ResultTable MakeReactionsCsv(const Model& model, const ModelOrigin& origin,
                             const Reactions& reactions) {
  ResultTable table;
  table.notes = {ReactionSigns,
                 "Empty: free to move. ux .. rz: as prescribed, rotations in radians. The sums "
                 "add up to what is left over."};
  for (std::string& note : ListBalanceNotes(model, origin, reactions)) table.notes.push_back(note);
  AddColumns({"kind", "node", "x", "y", "z"}, table);
  AddForceColumns(table);
  table.columns.insert(table.columns.end(), PrescribedNames.begin(), PrescribedNames.end());
  const Prescribed prescribed = IndexPrescribed(reactions);
  for (const Support& support : reactions.supports) {
    table.cells.emplace_back(std::string("support"));
    table.cells.emplace_back(std::int64_t{support.node});
    AddPlaceCells(support.place, table.cells);
    AddSupportCells(support, nullptr, table.cells);
    const auto moved = prescribed.find(support.node);
    for (std::size_t d = 0; d < 6; ++d) {
      const bool isMoved = moved != prescribed.end() && !std::isnan(moved->second[d]);
      table.cells.push_back(isMoved ? Cell(moved->second[d]) : Cell());
    }
  }
  for (const NamedSum& named : ListSums(reactions)) {
    table.cells.emplace_back("sum: " + std::string(named.name));
    table.cells.resize(table.cells.size() + 4);
    AddForceCells(named.sum, table.cells);
    table.cells.resize(table.cells.size() + 6);
  }
  AddOriginColumns(origin, ColumnReader::Program, table);
  return table;
}

Json ReactionsJson(const Model& model, const ModelOrigin& origin, const Reactions& reactions) {
  Json supports = Json::object(), places = Json::object(), prescribed = Json::object();
  for (const Support& support : reactions.supports) {
    const std::string node = std::to_string(support.node);
    supports[node] = SupportJson(support);
    places[node] = VectorJson(support.place);
  }
  for (const auto& [node, six] : IndexPrescribed(reactions)) {
    prescribed[std::to_string(node)] = NumbersJson(six);
  }
  Json elements = Json::array();
  for (const auto& element : reactions.unbalanced) elements.push_back(UnbalancedJson(element));

  Json json;
  json["supports"] = std::move(supports);
  json["places"] = std::move(places);
  json["prescribed"] = std::move(prescribed);
  if (HasOrigin(origin)) {
    Json& numbers = json["deck_nodes"] = Json::object();
    for (const Support& support : reactions.supports) {
      numbers[std::to_string(support.node)] = DeckNumberJson(origin, support.node);
    }
  }
  json["loads"] = NumbersJson(reactions.loads);
  json["reactions"] = NumbersJson(reactions.reactions);
  json["unbalanced"] = std::move(elements);
  json["elements"] = NumbersJson(SumOfElements(reactions));
  json["left_over"] = NumbersJson(LeftOver(reactions));
  json["imbalance"] = NumberJson(reactions.imbalance);
  json["balanced"] = IsBalanced(reactions);
  json["notes"] = Json::array({ReactionSigns});
  for (std::string& note : ListBalanceNotes(model, origin, reactions))
    json["notes"].push_back(note);
  return json;
}

}  // namespace kvx
