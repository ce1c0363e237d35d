#include "check/normals.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>

#include "check/describe.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

using korvex::Cross;
using korvex::Section;
using korvex::Subtract;
using korvex::Vector3;

namespace {

// A fold of more than 60 degrees is sharp: its two faces are different plates.
constexpr double SharpCosine = 0.5;

// Where three or more shells meet, two that fold by less than 20 degrees run on as one plate.
constexpr double ContinuingCosine = 0.94;

// Joints of plates have fewer shells at an edge. More are a heap of doubled shells, and the time
// would grow with the square of their number.
constexpr std::size_t MostShellsOfAJoint = 16;

// Two shells with a common edge.
struct SharedEdge {
  std::uint32_t a = 0, b = 0;
  bool isOpposite = false;  // their normals
  bool isAlone = false;     // no other shell has the edge
};
SharedEdge MakeSharedEdge(const ShellEdge& a, const ShellEdge& b, bool isAlone) {
  return {ShellOf(a), ShellOf(b), RunsDown(a) == RunsDown(b), isAlone};
}

std::size_t CountShells(const CheckedModel& model) {
  return static_cast<std::size_t>(CountRows(model.tables, Section::Shells4)) +
         static_cast<std::size_t>(CountRows(model.tables, Section::Shells3));
}

bool IsSound(const CheckedModel& model, std::uint32_t shell) {
  const ShellRow at = RowOfShell(model, shell);
  return StateOf(model, at.section, at.row) == ElementState::Sound;
}

// Of no particular length.
Vector3 NormalOf(const CheckedModel& model, std::uint32_t shell) {
  const ShellRow at = RowOfShell(model, shell);
  const ElementNodes element = NodesOf(model.tables, at.section, at.row);
  std::array<Vector3, 4> c{};
  for (std::size_t k = 0; k < element.count; ++k) c[k] = PlaceOf(model.tables, element.nodes[k]);
  if (element.count == 3) return Cross(Subtract(c[1], c[0]), Subtract(c[2], c[0]));
  return Cross(Subtract(c[2], c[0]), Subtract(c[3], c[1]));
}

// 1 where both lie in one plane, 0 at a right angle, -1 where one lies on the other. NaN where a
// normal has no length.
double FoldCosine(const CheckedModel& model, const SharedEdge& edge) {
  const Vector3 a = NormalOf(model, edge.a), b = NormalOf(model, edge.b);
  const double product = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  const double cosine = product / (korvex::Length(a) * korvex::Length(b));
  return edge.isOpposite ? -cosine : cosine;
}

bool IsSharp(const CheckedModel& model, const SharedEdge& edge) {
  return !(FoldCosine(model, edge) >= SharpCosine);
}

// Calls visit(edge) for the pairs of [first, end), the shells at one edge, that run on in each
// other. A shell that could run on in several others is in no pair.
template <typename Visit>
void VisitContinuingPairs(const CheckedModel& model, const ShellEdge* first, const ShellEdge* end,
                          const Visit& visit) {
  constexpr int None = -1, Several = -2;
  const int count = static_cast<int>(end - first);
  std::array<int, MostShellsOfAJoint> partners{};
  partners.fill(None);
  const auto add = [&](int of, int partner) {
    int& at = partners[static_cast<std::size_t>(of)];
    at = at == None ? partner : Several;
  };
  for (int i = 0; i < count; ++i) {
    for (int j = i + 1; j < count; ++j) {
      const SharedEdge edge = MakeSharedEdge(first[i], first[j], false);
      if (!(FoldCosine(model, edge) >= ContinuingCosine)) continue;
      add(i, j);
      add(j, i);
    }
  }
  for (int i = 0; i < count; ++i) {
    const int j = partners[static_cast<std::size_t>(i)];
    if (j > i && partners[static_cast<std::size_t>(j)] == i) {
      visit(MakeSharedEdge(first[i], first[j], false));
    }
  }
}

// Calls visit(edge) for each two shells whose normals are compared. Edges with a shell that a
// finding names are left out: its shape says nothing.
template <typename Visit>
void VisitSharedEdges(const CheckedModel& model, const EdgeTable& edges, const Visit& visit) {
  const auto nodeCount = static_cast<std::int32_t>(model.tables.Nodes.size());
  for (std::int32_t node = 0; node < nodeCount; ++node) {
    VisitEdgesOf(edges, node, [&](std::int32_t, const ShellEdge* first, const ShellEdge* end) {
      const auto count = static_cast<std::size_t>(end - first);
      if (count < 2 || count > MostShellsOfAJoint) return;
      for (const ShellEdge* at = first; at != end; ++at) {
        // A shell that has the edge twice stands next to itself.
        if (!IsSound(model, ShellOf(*at))) return;
        if (at != first && ShellOf(at[0]) == ShellOf(at[-1])) return;
      }
      if (count == 2) {
        visit(MakeSharedEdge(first[0], first[1], true));
      } else {
        VisitContinuingPairs(model, first, end, visit);
      }
    });
  }
}

// Each shell is two numbers: 2 k for the shell as it is, 2 k + 1 for the shell reversed. Numbers in
// one set have their normals on the same side.
void JoinNormals(const SharedEdge& edge, korvex::DisjointSets& sides) {
  const auto a = static_cast<std::int32_t>(2 * edge.a), b = static_cast<std::int32_t>(2 * edge.b);
  korvex::JoinSets(sides, a, edge.isOpposite ? b + 1 : b);
  korvex::JoinSets(sides, a + 1, edge.isOpposite ? b : b + 1);
}

// Where a shell stands in its patch.
struct Side {
  std::int32_t patch = 0;   // the lowest shell of the patch
  bool isReversed = false;  // against that shell
  bool hasTwoSides = true;  // the surface of the patch
};
Side SideOf(korvex::DisjointSets& sides, std::size_t shell) {
  const auto number = static_cast<std::int32_t>(2 * shell);
  const std::int32_t asIs = korvex::FindSet(sides, number);
  const std::int32_t reversed = korvex::FindSet(sides, number + 1);
  return {std::min(asIs, reversed) / 2, asIs > reversed, asIs != reversed};
}

// How many shells each patch has, and how many of them are reversed against its lowest one.
struct PatchCounts {
  std::vector<std::int32_t> all, reversed;  // [shells] by the patch's lowest shell
};

// Which shells are on the smaller side of their patch. Of two equal sides the one without the
// lowest shell is named.
void FindSmallerSides(korvex::DisjointSets& sides, std::size_t shells, PatchCounts& counts,
                      std::vector<bool>& isOnSmallerSide) {
  counts.all.assign(shells, 0);
  counts.reversed.assign(shells, 0);
  for (std::size_t shell = 0; shell < shells; ++shell) {
    const Side side = SideOf(sides, shell);
    const auto patch = static_cast<std::size_t>(side.patch);
    ++counts.all[patch];
    if (side.isReversed) ++counts.reversed[patch];
  }
  isOnSmallerSide.assign(shells, false);
  for (std::size_t shell = 0; shell < shells; ++shell) {
    const Side side = SideOf(sides, shell);
    const auto patch = static_cast<std::size_t>(side.patch);
    const bool reversedAreFewer = 2 * counts.reversed[patch] <= counts.all[patch];
    isOnSmallerSide[shell] = side.hasTwoSides && side.isReversed == reversedAreFewer;
  }
}

// [shells] The sign of the pressure along the normal, that of its largest value; 0: no pressure.
std::vector<signed char> FindPressureSigns(const CheckedModel& model) {
  const std::size_t shells = CountShells(model);
  std::vector<double> largest(shells, 0.0);
  const auto quads = CountRows(model.tables, Section::Shells4);
  const auto mark = [&](const auto& loads, std::int32_t first, std::int32_t rows) {
    for (const korvex::ShellSurfaceLoad& load : loads) {
      if (load.element < 0 || load.element >= rows) continue;
      double& at =
          largest[static_cast<std::size_t>(first) + static_cast<std::size_t>(load.element)];
      for (const double q : load.q) at = std::abs(q) > std::abs(at) ? q : at;
    }
  };
  mark(model.tables.Shell4SurfaceLoads, 0, quads);
  mark(model.tables.Shell3SurfaceLoads, quads, CountRows(model.tables, Section::Shells3));
  std::vector<signed char> signs(shells, 0);
  for (std::size_t shell = 0; shell < shells; ++shell) {
    if (largest[shell] != 0.0) signs[shell] = largest[shell] > 0.0 ? 1 : -1;
  }
  return signs;
}

// The pressures on one side of a patch.
struct SidePressure {
  std::int32_t shells = 0;   // with pressure
  std::int32_t balance = 0;  // those along the normal less those against it
};
void AddPressure(signed char sign, SidePressure& sum) {
  sum.shells += sign != 0 ? 1 : 0;
  sum.balance += sign;
}

// "four-node shells 3, 5, 7, ..."
// kind: in the singular.
std::string ListRows(const char* kind, const std::vector<std::int32_t>& rows) {
  constexpr std::size_t Most = 10;
  std::string text = kind;
  if (rows.size() != 1) text += 's';
  for (std::size_t k = 0; k < std::min(rows.size(), Most); ++k) {
    text += (k == 0 ? " " : ", ") + std::to_string(rows[k]);
  }
  return rows.size() > Most ? text + ", ..." : text;
}

// The smaller side of a patch.
struct NamedShells {
  std::int32_t patchSize = 0;
  std::vector<std::uint32_t> shells;  // ascending
  SidePressure pressure, others;      // on them, on the rest of the patch
  bool dividesPlate = false;          // an edge of two shells lies between the sides
};

enum class PressureCase {
  None,      // on the named shells
  OnlyHere,  // on some named shells, on no other one of the patch
  OtherWay,  // on both sides, in opposite directions
  SameWay,   // on both sides, with opposite signs: in the same direction
};
PressureCase CaseOf(const NamedShells& named) {
  if (named.pressure.shells == 0) return PressureCase::None;
  if (named.others.shells == 0) return PressureCase::OnlyHere;
  const bool differ = (named.pressure.balance > 0 && named.others.balance < 0) ||
                      (named.pressure.balance < 0 && named.others.balance > 0);
  return differ ? PressureCase::SameWay : PressureCase::OtherWay;
}

std::string DescribePressure(const NamedShells& named) {
  const bool isOne = named.shells.size() == 1;
  const PressureCase pressureCase = CaseOf(named);
  if (pressureCase == PressureCase::None) {
    return isOne ? "its upper and lower faces are swapped."
                 : "their upper and lower faces are swapped.";
  }
  const std::string them = isOne ? "it" : "them";
  std::string text = "pressure acts on ";
  if (!isOne) {
    const bool isAll = static_cast<std::size_t>(named.pressure.shells) == named.shells.size();
    text += (isAll ? "all" : std::to_string(named.pressure.shells)) + " of ";
  }
  text += them;
  if (pressureCase == PressureCase::OnlyHere) return text + " and on none of the others.";
  if (pressureCase == PressureCase::OtherWay) {
    return text + ", in the direction opposite to that on the shells around " + them + ".";
  }
  return text + " with the opposite sign, so in the same direction as on the shells around " +
         them + ".";
}

// Nobody shall turn a pressure round to suit shells that carry none.
std::string AdviseNormals(const NamedShells& named) {
  const std::size_t count = named.shells.size();
  const std::size_t others = static_cast<std::size_t>(named.patchSize) - count;
  const std::string these = count == 1 ? "this shell" : "these shells";
  switch (CaseOf(named)) {
    case PressureCase::OnlyHere:
      return "Make the normals agree. The side with the pressure decides which is right: if the "
             "pressure acts as meant, write the nodes of the other " +
             (others == 1 ? "shell" : std::to_string(others) + " shells") +
             " in the opposite order; if not, those of " + these + ".";
    case PressureCase::SameWay:
      return "Write the nodes of " + these + " in the opposite order, and change the sign of " +
             (count == 1 ? "its pressure." : "their pressure.");
    default:
      return "Write the nodes of " + these + " in the opposite order.";
  }
}

// All nodes of the shells, each once, ascending.
void CollectNodes(const CheckedModel& model, const std::vector<std::uint32_t>& shells,
                  std::vector<std::int32_t>& nodes) {
  nodes.clear();
  for (const std::uint32_t shell : shells) {
    const ShellRow at = RowOfShell(model, shell);
    const ElementNodes element = NodesOf(model.tables, at.section, at.row);
    nodes.insert(nodes.end(), element.nodes, element.nodes + element.count);
  }
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
}

// The finding's table is that of the first shell; the message has the rows of both kinds.
Finding MakeNormals(const CheckedModel& model, const NamedShells& named) {
  std::array<std::vector<std::int32_t>, 2> rows;
  for (const std::uint32_t shell : named.shells) {
    const ShellRow at = RowOfShell(model, shell);
    rows[KindOf(at.section)].push_back(at.row);
  }
  const ShellRow first = RowOfShell(model, named.shells[0]);
  Finding finding = MakeRowFinding("K206", model, first.section, first.row);
  CollectNodes(model, named.shells, finding.nodes);
  finding.rows = rows[KindOf(first.section)];

  const std::size_t count = named.shells.size();
  const bool isOpen = CaseOf(named) == PressureCase::OnlyHere;  // which side is wrong
  finding.message = std::to_string(count) + " of " + std::to_string(named.patchSize) +
                    " shells of the patch at " + PointText(finding.position) +
                    (count == 1 ? " has its normal " : " have their normals ") +
                    (isOpen ? "opposite to the others: " : "reversed: ");
  if (!rows[0].empty()) finding.message += ListRows("four-node shell", rows[0]);
  if (!rows[0].empty() && !rows[1].empty()) finding.message += "; ";
  if (!rows[1].empty()) finding.message += ListRows("three-node shell", rows[1]);
  finding.message += "; " + DescribePressure(named);
  finding.remedy = AdviseNormals(named);
  // The two halves of a flange, or two bays, may be drawn from their web outwards; without pressure
  // that changes nothing but the names of the faces.
  const bool isPressed = named.pressure.shells + named.others.shells > 0;
  if (!named.dividesPlate && !isPressed) finding.severity = Severity::Hint;
  return finding;
}

// One entry for each patch that has shells on its smaller side.
void CollectPatches(const CheckedModel& model, const EdgeTable& edges, korvex::DisjointSets& sides,
                    const PatchCounts& counts, const std::vector<bool>& isOnSmallerSide,
                    const std::vector<signed char>& signs, std::vector<NamedShells>& patches) {
  std::vector<std::int32_t> indexOf(isOnSmallerSide.size(), -1);
  const auto find = [&](std::size_t shell) -> std::int32_t& {
    return indexOf[static_cast<std::size_t>(SideOf(sides, shell).patch)];
  };
  for (std::size_t shell = 0; shell < isOnSmallerSide.size(); ++shell) {
    if (!isOnSmallerSide[shell]) continue;
    std::int32_t& index = find(shell);
    if (index < 0) {
      index = static_cast<std::int32_t>(patches.size());
      patches.emplace_back();
      patches.back().patchSize = counts.all[static_cast<std::size_t>(SideOf(sides, shell).patch)];
    }
    patches[static_cast<std::size_t>(index)].shells.push_back(static_cast<std::uint32_t>(shell));
  }
  for (std::size_t shell = 0; shell < isOnSmallerSide.size(); ++shell) {
    const std::int32_t index = find(shell);
    if (index < 0) continue;
    NamedShells& named = patches[static_cast<std::size_t>(index)];
    AddPressure(signs[shell], isOnSmallerSide[shell] ? named.pressure : named.others);
  }
  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) {
    const std::int32_t index = find(edge.a);
    if (index < 0 || !edge.isOpposite || !edge.isAlone || IsSharp(model, edge)) return;
    patches[static_cast<std::size_t>(index)].dividesPlate = true;
  });
}

// Two plates meet at a sharp fold alone, and pressure of the same sign acts on both, but on one
// from inside the corner and on the other one from outside. Both may be meant, so it is said once.
// isNamed: shells that a finding names already.
void NamePressedFolds(const CheckedModel& model, const EdgeTable& edges,
                      const std::vector<bool>& isNamed, const std::vector<signed char>& signs,
                      FindingList& findings) {
  std::size_t count = 0;
  SharedEdge first;
  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) {
    const bool isPressed = signs[edge.a] != 0 && signs[edge.a] == signs[edge.b];
    if (!edge.isOpposite || !isPressed || isNamed[edge.a] || isNamed[edge.b]) return;
    if (!IsSharp(model, edge)) return;
    if (count++ == 0) first = edge;
  });
  if (count == 0) return;
  const ShellRow a = RowOfShell(model, first.a), b = RowOfShell(model, first.b);
  Finding finding = MakeRowFinding("K206", model, a.section, a.row);
  finding.severity = Severity::Hint;
  CollectNodes(model, {first.a, first.b}, finding.nodes);
  if (a.section == b.section) finding.rows = {a.row, b.row};
  finding.message = DescribeElement(model, a.section, a.row) + " and " +
                    DescribeElement(model, b.section, b.row) +
                    " meet at a sharp fold, and their normals are on opposite sides of it: "
                    "pressure acts on one of them from inside the corner, on the other one from "
                    "outside";
  if (count > 1) {
    finding.message += "; so it is at " + std::to_string(count) + " edges altogether";
  }
  finding.message += ".";
  finding.remedy = "That may be meant: look whether the pressures act as meant.";
  AddFinding(std::move(finding), findings);
}

// Says where the first surface with one side only is, and how many there are.
void NoteOneSidedPatches(korvex::DisjointSets& sides, std::size_t shells, CheckedModel& model) {
  std::size_t count = 0, first = 0;
  for (std::size_t shell = shells; shell-- > 0;) {
    const Side side = SideOf(sides, shell);
    if (side.hasTwoSides || static_cast<std::size_t>(side.patch) != shell) continue;
    ++count;
    first = shell;
  }
  if (count == 0) return;
  const ShellRow at = RowOfShell(model, static_cast<std::uint32_t>(first));
  model.notChecked.push_back("Whether normals agree on " + std::to_string(count) +
                             (count == 1 ? " surface" : " surfaces") +
                             " with one side only (Moebius's strip), beginning with " +
                             DescribeElement(model, at.section, at.row) + ".");
}

}  // namespace

void NameOppositeNormals(const EdgeTable& edges, CheckedModel& model, FindingList& findings) {
  bool any = false;
  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) { any = any || edge.isOpposite; });
  if (!any) return;

  const std::size_t shells = CountShells(model);
  const std::vector<signed char> signs = FindPressureSigns(model);
  korvex::DisjointSets sides;
  korvex::InitSets(sides, static_cast<std::int32_t>(2 * shells));
  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) {
    if (!IsSharp(model, edge)) JoinNormals(edge, sides);
  });
  NoteOneSidedPatches(sides, shells, model);
  PatchCounts counts;
  std::vector<bool> isReversed;
  FindSmallerSides(sides, shells, counts, isReversed);
  std::vector<NamedShells> patches;
  CollectPatches(model, edges, sides, counts, isReversed, signs, patches);
  for (const NamedShells& named : patches) AddFinding(MakeNormals(model, named), findings);
  NamePressedFolds(model, edges, isReversed, signs, findings);
}

}  // namespace kvx
