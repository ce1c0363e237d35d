#include "check/check_rigid_motions.h"

#include <algorithm>
#include <cmath>

#include "check/describe.h"
#include "check/motion_text.h"
#include "check/unknown_rows.h"

namespace kvx {

using korvex::Section;
using korvex::Vector3;

namespace {

// A part is hardly held where the supports see less than this of its motion. Loads then move it
// 1e5 times as far as the supports' own distance suggests, and five of the sixteen digits are lost
// twice, in the lever arm and in the force.
constexpr double LeastGrip = 1e-5;

// Squares of coordinates must not overflow.
constexpr double LargestCoordinate = 1e150;

// The nodes of one part that are supported.
using Supports = std::vector<SupportPoint>;

std::vector<Supports> CollectSupports(const CheckedModel& model, const Parts& parts,
                                      const std::vector<std::uint8_t>& masks) {
  std::vector<Supports> supports(parts.nodeCounts.size());
  for (std::size_t node = 0; node < masks.size(); ++node) {
    if (masks[node] == 0 || parts.partOfNode[node] < 0) continue;
    supports[static_cast<std::size_t>(parts.partOfNode[node])].push_back(
        {PlaceOf(model.tables, static_cast<std::int32_t>(node)), masks[node]});
  }
  return supports;
}

// "part 2 (34 nodes, node 17 at (0, 0, 5) among them)"
std::string DescribePart(const CheckedModel& model, const Parts& parts, std::size_t part,
                         std::int32_t lowest) {
  const std::int32_t nodes = parts.nodeCounts[part];
  const std::string name = "part " + std::to_string(part + 1);
  if (static_cast<std::size_t>(nodes) == model.tables.Nodes.size()) {
    return name + " (all " + std::to_string(nodes) + " nodes)";
  }
  return name + " (" + std::to_string(nodes) + " nodes, among them " + DescribeNode(model, lowest) +
         ")";
}

std::string RemedyFor(const std::vector<RigidMotion>& motions, bool hasSupports) {
  if (!hasSupports) {
    return "Support this part, at best at three nodes that are far apart and not in one line, or "
           "connect it with the part that should hold it: parts that only touch are not connected.";
  }
  const bool turns = std::any_of(motions.begin(), motions.end(),
                                 [](const RigidMotion& motion) { return motion.turns; });
  const bool moves = std::any_of(motions.begin(), motions.end(),
                                 [](const RigidMotion& motion) { return !motion.turns; });
  std::string remedy;
  if (moves) remedy += "Fix the displacement along that direction at one node or more. ";
  if (turns) {
    remedy +=
        "Against turning, fix a displacement square to the lever arm at a node far from that line, "
        "or the rotation about it at a node.";
  }
  if (remedy.back() == ' ') remedy.pop_back();
  return remedy;
}

// The lowest node of each part.
std::vector<std::int32_t> FindLowestNodes(const Parts& parts) {
  std::vector<std::int32_t> lowest(parts.nodeCounts.size(), -1);
  for (std::size_t node = parts.partOfNode.size(); node-- > 0;) {
    const std::int32_t part = parts.partOfNode[node];
    if (part >= 0) lowest[static_cast<std::size_t>(part)] = static_cast<std::int32_t>(node);
  }
  return lowest;
}

Finding MakePartFinding(const char* code, const CheckedModel& model, std::int32_t lowest) {
  Finding finding = MakeFinding(code);
  finding.nodes = {lowest};
  finding.hasPosition = true;
  finding.position = PlaceOf(model.tables, lowest);
  return finding;
}

bool IsMeasurable(const Body& body) { return body.largest <= LargestCoordinate; }

// Returns whether K301 tells of the part.
bool CheckPart(const CheckedModel& model, const Parts& parts, std::size_t part, const Body& body,
               const Supports& supports, std::int32_t lowest, FindingList& findings) {
  Holding holding;
  FindFreeMotions(body, supports, holding);
  const std::string name = DescribePart(model, parts, part, lowest);
  if (!holding.freeMotions.empty()) {
    Finding finding = MakePartFinding("K301", model, lowest);
    finding.message = name + ": may " + MotionsText(body, holding.freeMotions) +
                      "; its displacements are meaningless or NaN.";
    finding.remedy = RemedyFor(holding.freeMotions, !supports.empty());
    AddFinding(std::move(finding), findings);
  } else if (holding.grip < LeastGrip) {
    Finding finding = MakePartFinding("K306", model, lowest);
    finding.message = name + ": its supports hardly hold it: it can all but " +
                      MotionText(body, holding.weakest) +
                      ". Small loads move it far, and digits are lost.";
    finding.remedy = RemedyFor({holding.weakest}, true);
    AddFinding(std::move(finding), findings);
  }
  return !holding.freeMotions.empty();
}

// Whether fewer motions are free with the supports as meant than as the solver fixes them.
bool StandsOnOddFlags(const Body& body, const Supports& fixed, const Supports& meant) {
  const bool same =
      std::equal(fixed.begin(), fixed.end(), meant.begin(), meant.end(),
                 [](const SupportPoint& a, const SupportPoint& b) { return a.fixed == b.fixed; });
  if (same) return false;
  Holding real, wanted;
  FindFreeMotions(body, fixed, real);
  FindFreeMotions(body, meant, wanted);
  return real.freeMotions.size() > wanted.freeMotions.size();
}

}  // namespace

std::vector<Body> MeasureBodies(const CheckedModel& model, const Parts& parts) {
  std::vector<Body> bodies(parts.nodeCounts.size());
  const auto forNodes = [&](const auto& visit) {
    for (std::size_t node = 0; node < parts.partOfNode.size(); ++node) {
      if (parts.partOfNode[node] < 0) continue;
      const auto part = static_cast<std::size_t>(parts.partOfNode[node]);
      visit(PlaceOf(model.tables, static_cast<std::int32_t>(node)), bodies[part],
            static_cast<double>(parts.nodeCounts[part]));
    }
  };
  forNodes([](const Vector3& place, Body& body, double count) {
    for (std::size_t i = 0; i < 3; ++i) {
      body.centroid[i] += place[i] / count;
      // Not std::max, which would lose a NaN.
      if (!(std::abs(place[i]) <= body.largest)) body.largest = std::abs(place[i]);
      if (std::isnan(place[i])) body.largest = HUGE_VAL;
    }
  });
  forNodes([](const Vector3& place, Body& body, double count) {
    if (!IsMeasurable(body)) return;
    for (std::size_t i = 0; i < 3; ++i) {
      const double distance = place[i] - body.centroid[i];
      body.radius += distance * distance / count;
    }
  });
  for (Body& body : bodies) body.radius = std::sqrt(body.radius);
  return bodies;
}

void CheckRigidMotions(CheckedModel& model, const Parts& parts, const FixedDofs& dofs,
                       std::vector<char>& moves, std::vector<char>& partsOnOddFlags,
                       FindingList& findings) {
  moves.assign(parts.nodeCounts.size(), 0);
  partsOnOddFlags.assign(parts.nodeCounts.size(), 0);
  const auto isOutside = [&](const korvex::NodalRestraint& row) {
    return !IsNode(model, row.node) && row.fixed != std::array<std::int32_t, 6>{};
  };
  const auto& restraints = model.tables.NodalRestraints;
  if (HasUnknownElements(model) || HasLostRows(model, Section::Nodes) ||
      HasLostRows(model, Section::Restraints) ||
      std::any_of(restraints.begin(), restraints.end(), isOutside)) {
    model.notChecked.push_back(
        "Whether the supports hold every part was not checked, because rows of nodes, elements or "
        "restraints are not known.");
    return;
  }
  const std::vector<Body> bodies = MeasureBodies(model, parts);
  const std::vector<Supports> fixed = CollectSupports(model, parts, dofs.fixed);
  const std::vector<Supports> meant = CollectSupports(model, parts, dofs.meant);
  const std::vector<std::int32_t> lowest = FindLowestNodes(parts);
  bool beyond = false;
  for (std::size_t part = 0; part < bodies.size(); ++part) {
    if (!IsMeasurable(bodies[part])) {
      beyond = true;
      continue;
    }
    const bool isLoose =
        CheckPart(model, parts, part, bodies[part], meant[part], lowest[part], findings);
    moves[part] = isLoose ? 1 : 0;
    partsOnOddFlags[part] = StandsOnOddFlags(bodies[part], fixed[part], meant[part]) ? 1 : 0;
  }
  if (beyond) {
    model.notChecked.push_back(
        "Whether the supports hold a part was not checked where coordinates are not finite or "
        "beyond 1e150.");
  }
}

}  // namespace kvx
