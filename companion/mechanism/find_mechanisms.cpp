#include "mechanism/find_mechanisms.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>
#include <utility>

#include "base/finite.h"
#include "mechanism/free_system.h"
#include "mechanism/mode_shape.h"
#include "mechanism/mode_strain.h"
#include "renumber/node_graph.h"
#include "renumber/orders.h"
#include "renumber/permute_nodes.h"
#include "report/stop.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

using korvex::DofsPerNode;

namespace {

// Pivots below this share of their diagonals are looked at. A pivot that should be 0 has 1e-15 from
// roundings mostly, 3e-9 at the end of a chain of 1000 slender beams, and 6e-7 where a plate hangs
// on one that is 1e8 times as stiff (tried).
constexpr double SmallPivot = 1e-5;

// The other dofs of a node where a mechanism was found are looked at sooner: there the roundings of
// parts that are 1e8 times as stiff reached 6e-4.
constexpr double PivotBesideMechanism = 1e-2;

// A sound pivot below this share spoils the displacements: their relative error is 1e-14 to 3e-13
// over the share (tried on soft plates that carry stiff ones, against long double).
constexpr double LossyPivot = 1e-11;
constexpr double LossyError = 1e-13;

// The strain of mechanisms is 3e-16 at most; that of sound modes with small pivots 4e-7 at least,
// and of shells thinner than a thousandth of their elements it falls with the square of that ratio.
constexpr double NoStrain = 1e-13;

// Mechanisms that are told one by one, and small pivots that are looked at.
constexpr std::size_t MostMechanisms = 30;
constexpr int MostPivots = 300;

void FixSupports(FreeSystem& system) {
  system.fixed.assign(static_cast<std::size_t>(system.model.NEQ), 0);
  for (const korvex::NodalRestraint& row : system.model.Tables.NodalRestraints) {
    if (row.node < 0 || row.node >= system.model.Tables.NPOIN) continue;
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      if (row.fixed[d] != 1) continue;
      system.fixed[static_cast<std::size_t>(row.node) * DofsPerNode + d] = Supported;
    }
  }
}

// The nodes with elements that have a dof without stiffness: bit d.
std::vector<std::uint8_t> FixLooseDofs(FreeSystem& system) {
  const auto nodes = static_cast<std::size_t>(system.model.Tables.NPOIN);
  std::vector<bool> hasElement(nodes, false);
  ForAllElements(system.model.Tables, [&](const ElementRef&, const ElementNodes& element) {
    for (std::size_t k = 0; k < element.count; ++k) {
      hasElement[static_cast<std::size_t>(element.nodes[k])] = true;
    }
  });
  std::vector<std::uint8_t> loose(nodes, 0);
  for (std::size_t node = 0; node < nodes; ++node) {
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      const std::size_t at = node * DofsPerNode + d;
      if (system.fixed[at] != 0 || system.diagonal[at] > 0.0) continue;
      system.fixed[at] = Loose;
      if (hasElement[node]) loose[node] = static_cast<std::uint8_t>(loose[node] | 1U << d);
    }
  }
  return loose;
}

// One mechanism for each region of such nodes that elements connect.
void ListLooseRegions(const FreeSystem& system, const std::vector<std::uint8_t>& loose,
                      MechanismReport& report) {
  korvex::DisjointSets sets;
  korvex::InitSets(sets, static_cast<std::int32_t>(loose.size()));
  ForAllElements(system.model.Tables, [&](const ElementRef&, const ElementNodes& element) {
    std::int32_t last = -1;
    for (std::size_t k = 0; k < element.count; ++k) {
      if (loose[static_cast<std::size_t>(element.nodes[k])] == 0) continue;
      if (last >= 0) korvex::JoinSets(sets, last, element.nodes[k]);
      last = element.nodes[k];
    }
  });
  std::vector<std::int32_t> regionOf(loose.size(), -1);
  for (std::size_t node = 0; node < loose.size(); ++node) {
    if (loose[node] == 0) continue;
    const auto number = static_cast<std::int32_t>(node);
    const auto root = static_cast<std::size_t>(korvex::FindSet(sets, number));
    if (root == node) {
      if (report.mechanisms.size() == MostMechanisms) {
        report.more = true;
        continue;
      }
      regionOf[node] = static_cast<std::int32_t>(report.mechanisms.size());
      Mechanism mechanism;
      mechanism.kind = MechanismKind::NoStiffness;
      mechanism.node = number;
      report.mechanisms.push_back(mechanism);
    }
    if (regionOf[root] < 0) continue;
    Mechanism& mechanism = report.mechanisms[static_cast<std::size_t>(regionOf[root])];
    mechanism.dofs |= loose[node];
    mechanism.nodes.push_back(number);
    std::array<double, 6> free{};
    for (std::size_t d = 0; d < DofsPerNode; ++d)
      free[d] = (loose[node] >> d & 1U) != 0 ? 1.0 : 0.0;
    mechanism.displacements.push_back(free);
  }
  for (Mechanism& mechanism : report.mechanisms) ListElementsBeside(system.model, mechanism);
}

// Whether the supports let the displacements be.
bool KeepsSupports(const FreeSystem& system, const std::vector<double>& v) {
  constexpr double Rest = 1e-9;
  double farthest = 0.0, atSupports = 0.0;
  for (std::size_t at = 0; at < v.size(); ++at) {
    double& largest = system.fixed[at] == Supported ? atSupports : farthest;
    largest = std::max(largest, std::abs(v[at]));
  }
  return atSupports <= Rest * farthest;
}

// Whether the mode is a mechanism: itself, or the rigid-body motion that it nearly is. Beside parts
// that are far stiffer, the errors of v strain soft elements by more than roundings.
bool MeetsNoResistance(const FreeSystem& system, std::vector<double>& v) {
  const korvex::Model& model = system.model;
  if (!IsStrained(model, v, NoStrain)) return true;
  std::vector<double> rigid = v;
  if (!MakeRigid(model, rigid) || !KeepsSupports(system, rigid) ||
      IsStrained(model, rigid, NoStrain)) {
    return false;
  }
  v = rigid;
  return true;
}

// Adds the mode, or joins it with the mechanism found last where it is the same node's.
void AddMotion(Mechanism mechanism, MechanismReport& report) {
  if (!report.mechanisms.empty()) {
    Mechanism& last = report.mechanisms.back();
    if (last.kind == mechanism.kind && last.node == mechanism.node &&
        last.nodes.size() == mechanism.nodes.size()) {
      last.dofs |= mechanism.dofs;
      last.motions.insert(last.motions.end(), mechanism.motions.begin(), mechanism.motions.end());
      last.error = std::max(last.error, mechanism.error);
      return;
    }
  }
  if (report.mechanisms.size() == MostMechanisms) {
    report.more = true;
  } else {
    report.mechanisms.push_back(std::move(mechanism));
  }
}

// Looks at the small pivot of column j, which is factorised. Returns whether it is a mechanism;
// then dof j is to be fixed.
bool ExaminePivot(const FreeSystem& system, std::int64_t j, double pivot, MechanismReport& report) {
  std::vector<double> v;
  FindMode(system, j, v);
  if (!korvex::AreFinite(v.data(), v.size())) {
    std::fill(v.begin(), v.end(), 0.0);  // beyond all numbers: no more is known than the dof
    v[static_cast<std::size_t>(j)] = 1.0;
  }
  const double share = std::abs(pivot) / system.diagonal[static_cast<std::size_t>(j)];
  const bool isMechanism = MeetsNoResistance(system, v) || !std::isfinite(share);
  if (!isMechanism && share >= LossyPivot) return false;
  Mechanism mechanism;
  mechanism.kind = isMechanism ? MechanismKind::Motion : MechanismKind::Soft;
  mechanism.node = static_cast<std::int32_t>(j / DofsPerNode);
  mechanism.dofs = static_cast<std::uint8_t>(1U << (j % DofsPerNode));
  if (!isMechanism) mechanism.error = std::min(1.0, LossyError / share);
  DescribeMode(system.model, v, mechanism);
  ListElementsBeside(system.model, mechanism);
  AddMotion(std::move(mechanism), report);
  return isMechanism || !(pivot > 0.0);
}

// From the first small pivot on, column by column.
void ExaminePivots(FreeSystem& system, MechanismReport& report) {
  const std::int64_t first = FindSmallPivot(system, 0, SmallPivot);
  RestoreColumns(system, first);
  int examined = 0;
  std::int64_t mechanismAt = -1;  // the node of the last one
  for (std::int64_t j = first; j < system.model.NEQ && !report.more; ++j) {
    const double pivot = FactoriseColumn(system, j);
    const auto at = static_cast<std::size_t>(j);
    const double small = j / DofsPerNode == mechanismAt ? PivotBesideMechanism : SmallPivot;
    if (system.fixed[at] != 0 || pivot >= small * system.diagonal[at]) continue;
    // Of many small pivots that are sound, as in a very long chain, the rest is not looked at
    // before digits are lost.
    const bool isTiny = !(std::abs(pivot) >= LossyPivot * system.diagonal[at]);
    if (++examined > MostPivots && !isTiny) continue;
    if (examined > 2 * MostPivots) {
      report.more = true;
      return;
    }
    if (!ExaminePivot(system, j, pivot, report)) continue;
    FixDof(system, j);
    mechanismAt = j / DofsPerNode;
  }
}

void Examine(FreeSystem& system, MechanismReport& report) {
  BuildElements(system.model);
  FixSupports(system);
  std::vector<bool> isFinite;
  SumDiagonal(system, [&](bool finite) { isFinite.push_back(finite); });
  std::size_t at = 0;
  ForAllElements(system.model.Tables, [&](const ElementRef& element, const ElementNodes&) {
    if (!isFinite[at++]) report.brokenElements.push_back(element);
  });
  const std::vector<std::uint8_t> loose = FixLooseDofs(system);
  ListLooseRegions(system, loose, report);
  if (system.model.NEQ == 0 || report.more) return;
  Factorise(system);
  ExaminePivots(system, report);
}

void ExamineTables(korvex::ModelTables&& tables, MechanismReport& report) {
  report = {};
  FreeSystem system;
  system.model.Tables = std::move(tables);
  try {
    Examine(system, report);
  } catch (const korvex::Stop& stop) {
    report.notExamined = stop.text;
  }
}

// order[k]: the number that node k of the report has in the tables.
void GiveNumbersBack(const std::vector<std::int32_t>& order, Mechanism& mechanism) {
  mechanism.node = order[static_cast<std::size_t>(mechanism.node)];
  std::vector<std::pair<std::int32_t, std::array<double, 6>>> rows;
  for (std::size_t k = 0; k < mechanism.nodes.size(); ++k) {
    rows.emplace_back(order[static_cast<std::size_t>(mechanism.nodes[k])],
                      mechanism.displacements[k]);
  }
  std::sort(rows.begin(), rows.end());
  for (std::size_t k = 0; k < rows.size(); ++k) {
    std::tie(mechanism.nodes[k], mechanism.displacements[k]) = rows[k];
  }
}

}  // namespace

void FindMechanisms(const korvex::ModelTables& tables, MechanismReport& report) {
  ExamineTables(korvex::ModelTables(tables), report);
}

void FindMechanismsReordered(const korvex::ModelTables& tables, MechanismReport& report) {
  NodeGraph graph;
  BuildNodeGraph(tables, graph);
  BestOrder best;
  FindBestOrder(tables, graph, best);
  korvex::ModelTables ordered = tables;
  PermuteNodes(best.order, ordered);
  ExamineTables(std::move(ordered), report);
  for (Mechanism& mechanism : report.mechanisms) GiveNumbersBack(best.order, mechanism);
}

}  // namespace kvx
