#include "check/normals.h"

#include <algorithm>
#include <string>

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

// An edge with exactly two shells.
struct SharedEdge {
  std::uint32_t a = 0, b = 0;
  bool isOpposite = false;  // their normals
};

std::size_t CountShells(const CheckedModel& model) {
  return static_cast<std::size_t>(CountRows(model.tables, Section::Shells4)) +
         static_cast<std::size_t>(CountRows(model.tables, Section::Shells3));
}

bool IsSound(const CheckedModel& model, std::uint32_t shell) {
  const ShellRow at = RowOfShell(model, shell);
  return StateOf(model, at.section, at.row) == ElementState::Sound;
}

// Calls visit(edge) for all edges that two sound shells share.
template <typename Visit>
void VisitSharedEdges(const CheckedModel& model, const EdgeTable& edges, const Visit& visit) {
  const auto nodeCount = static_cast<std::int32_t>(model.tables.Nodes.size());
  for (std::int32_t node = 0; node < nodeCount; ++node) {
    VisitEdgesOf(edges, node, [&](std::int32_t, const ShellEdge* first, const ShellEdge* end) {
      if (end - first != 2 || ShellOf(first[0]) == ShellOf(first[1])) return;
      const SharedEdge edge{ShellOf(first[0]), ShellOf(first[1]),
                            RunsDown(first[0]) == RunsDown(first[1])};
      if (IsSound(model, edge.a) && IsSound(model, edge.b)) visit(edge);
    });
  }
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

bool IsSharp(const CheckedModel& model, const SharedEdge& edge) {
  const Vector3 a = NormalOf(model, edge.a), b = NormalOf(model, edge.b);
  const double product = a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
  const double cosine = product / (korvex::Length(a) * korvex::Length(b));
  // Not smooth where a normal has no length either.
  return !((edge.isOpposite ? -cosine : cosine) >= SharpCosine);
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

// Which shells are on the smaller side of their patch. isTurned: shells that count as turned round.
// Of two equal sides the one without the lowest shell is named.
void FindSmallerSides(korvex::DisjointSets& sides, const std::vector<bool>& isTurned,
                      PatchCounts& counts, std::vector<bool>& isOnSmallerSide) {
  const std::size_t shells = isTurned.size();
  counts.all.assign(shells, 0);
  counts.reversed.assign(shells, 0);
  const auto isReversed = [&](std::size_t shell, const Side& side) {
    return (side.isReversed != isTurned[shell]) != isTurned[static_cast<std::size_t>(side.patch)];
  };
  for (std::size_t shell = 0; shell < shells; ++shell) {
    const Side side = SideOf(sides, shell);
    const auto patch = static_cast<std::size_t>(side.patch);
    ++counts.all[patch];
    if (isReversed(shell, side)) ++counts.reversed[patch];
  }
  isOnSmallerSide.assign(shells, false);
  for (std::size_t shell = 0; shell < shells; ++shell) {
    const Side side = SideOf(sides, shell);
    const auto patch = static_cast<std::size_t>(side.patch);
    const bool reversedAreFewer = 2 * counts.reversed[patch] <= counts.all[patch];
    isOnSmallerSide[shell] = side.hasTwoSides && isReversed(shell, side) == reversedAreFewer;
  }
}

// Shells under a pressure that is not zero.
std::vector<bool> FindPressedShells(const CheckedModel& model) {
  std::vector<bool> isPressed(CountShells(model), false);
  const auto quads = CountRows(model.tables, Section::Shells4);
  const auto mark = [&](const auto& loads, std::int32_t first, std::int32_t rows) {
    for (const korvex::ShellSurfaceLoad& load : loads) {
      const bool isZero =
          std::all_of(std::begin(load.q), std::end(load.q), [](double q) { return q == 0.0; });
      if (isZero || load.element < 0 || load.element >= rows) continue;
      isPressed[static_cast<std::size_t>(first) + static_cast<std::size_t>(load.element)] = true;
    }
  };
  mark(model.tables.Shell4SurfaceLoads, 0, quads);
  mark(model.tables.Shell3SurfaceLoads, quads, CountRows(model.tables, Section::Shells3));
  return isPressed;
}

// "four-node shells 3, 5, 7, ..."
std::string ListRows(const char* kind, const std::vector<std::int32_t>& rows) {
  constexpr std::size_t Most = 10;
  std::string text = kind;
  for (std::size_t k = 0; k < std::min(rows.size(), Most); ++k) {
    text += (k == 0 ? " " : ", ") + std::to_string(rows[k]);
  }
  return rows.size() > Most ? text + ", ..." : text;
}

// The shells of one finding.
struct NamedShells {
  std::int32_t patchSize = 0;
  std::vector<std::uint32_t> shells;  // ascending
};

// The finding's table is that of the first shell; the message has the rows of both kinds.
Finding MakeNormals(const CheckedModel& model, const NamedShells& named, bool isFace,
                    const std::vector<bool>& isPressed) {
  std::array<std::vector<std::int32_t>, 2> rows;
  std::size_t pressed = 0;
  const ShellRow first = RowOfShell(model, named.shells[0]);
  Finding finding = MakeRowFinding("K206", model, first.section, first.row);
  finding.nodes.clear();
  for (const std::uint32_t shell : named.shells) {
    const ShellRow at = RowOfShell(model, shell);
    rows[KindOf(at.section)].push_back(at.row);
    pressed += isPressed[shell] ? 1 : 0;
    const ElementNodes element = NodesOf(model.tables, at.section, at.row);
    finding.nodes.insert(finding.nodes.end(), element.nodes, element.nodes + element.count);
  }
  std::sort(finding.nodes.begin(), finding.nodes.end());
  finding.nodes.erase(std::unique(finding.nodes.begin(), finding.nodes.end()), finding.nodes.end());
  finding.rows = rows[KindOf(first.section)];

  const std::size_t count = named.shells.size();
  finding.message = std::to_string(count) + " of " + std::to_string(named.patchSize) +
                    " shells of the patch at " + PointText(finding.position);
  if (isFace) {
    finding.message += count == 1 ? " has its normal" : " have their normals";
    finding.message += " opposite to those beyond a sharp fold: ";
  } else {
    finding.message += count == 1 ? " has its normal reversed: " : " have their normals reversed: ";
  }
  if (!rows[0].empty()) finding.message += ListRows("four-node shells", rows[0]);
  if (!rows[0].empty() && !rows[1].empty()) finding.message += "; ";
  if (!rows[1].empty()) finding.message += ListRows("three-node shells", rows[1]);
  finding.message += pressed == 0 ? "; their upper and lower faces are swapped."
                                  : "; pressure acts on " + std::to_string(pressed) +
                                        " of them, in the opposite direction.";
  finding.remedy = "Write the nodes of these shells in the opposite order.";
  if (isFace) finding.severity = Severity::Hint;
  return finding;
}

// One finding for each patch that has shells on its smaller side.
void NamePatches(const CheckedModel& model, korvex::DisjointSets& sides, const PatchCounts& counts,
                 const std::vector<bool>& isOnSmallerSide, bool isFace,
                 const std::vector<bool>& isPressed, FindingList& findings) {
  std::vector<std::int32_t> indexOf(isOnSmallerSide.size(), -1);
  std::vector<NamedShells> patches;
  for (std::size_t shell = 0; shell < isOnSmallerSide.size(); ++shell) {
    if (!isOnSmallerSide[shell]) continue;
    const auto patch = static_cast<std::size_t>(SideOf(sides, shell).patch);
    if (indexOf[patch] < 0) {
      indexOf[patch] = static_cast<std::int32_t>(patches.size());
      patches.push_back({counts.all[patch], {}});
    }
    patches[static_cast<std::size_t>(indexOf[patch])].shells.push_back(
        static_cast<std::uint32_t>(shell));
  }
  for (const NamedShells& named : patches) {
    AddFinding(MakeNormals(model, named, isFace, isPressed), findings);
  }
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
  const std::vector<bool> isPressed = FindPressedShells(model);
  korvex::DisjointSets sides;
  korvex::InitSets(sides, static_cast<std::int32_t>(2 * shells));
  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) {
    if (!IsSharp(model, edge)) JoinNormals(edge, sides);
  });
  NoteOneSidedPatches(sides, shells, model);
  PatchCounts counts;
  std::vector<bool> isReversed, isOfReversedFace;
  FindSmallerSides(sides, std::vector<bool>(shells, false), counts, isReversed);
  NamePatches(model, sides, counts, isReversed, false, isPressed, findings);

  VisitSharedEdges(model, edges, [&](const SharedEdge& edge) { JoinNormals(edge, sides); });
  FindSmallerSides(sides, isReversed, counts, isOfReversedFace);
  NamePatches(model, sides, counts, isOfReversedFace, true, isPressed, findings);
}

}  // namespace kvx
