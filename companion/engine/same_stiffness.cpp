#include "engine/same_stiffness.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kvx {

namespace {

constexpr std::int32_t FixedFlag = 1;  // of a restraint's row; any other number leaves free

// Records of numbers alone, without padding: their bytes are their bits.
template <typename Record>
bool HaveSameBits(const Record& a, const Record& b) {
  const void *first = &a, *second = &b;
  return std::memcmp(first, second, sizeof a) == 0;
}
static_assert(sizeof(korvex::SectionProperties) == 13 * sizeof(double), "numbers alone");

template <std::int32_t Nodes>
bool IsSameElement(const korvex::ShellElement<Nodes>& a, const korvex::ShellElement<Nodes>& b) {
  return HaveSameBits(a.Coordinates, b.Coordinates) && HaveSameBits(a.E, b.E) &&
         HaveSameBits(a.Mu, b.Mu) && HaveSameBits(a.TK, b.TK) && HaveSameBits(a.Frame, b.Frame);
}

// The offset along z and the side of the flange are in the section's properties.
bool IsSameElement(const korvex::BeamElement& a, const korvex::BeamElement& b) {
  return HaveSameBits(a.NodeI, b.NodeI) && HaveSameBits(a.NodeJ, b.NodeJ) &&
         HaveSameBits(a.RefPoint, b.RefPoint) && HaveSameBits(a.E, b.E) &&
         HaveSameBits(a.Mu, b.Mu) && HaveSameBits(a.Section, b.Section);
}

template <typename Element>
bool AreSameElements(const std::vector<Element>& a, const std::vector<Element>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](const Element& x, const Element& y) { return IsSameElement(x, y); });
}

// isHeld: [NPOIN x 6]. Returns false where a restraint holds a node that does not exist.
bool ListHeldDofs(const korvex::ModelTables& tables, std::vector<bool>& isHeld) {
  const std::size_t nodes = tables.Nodes.size();
  isHeld.assign(nodes * korvex::DofsPerNode, false);
  for (std::size_t row = 0; row < tables.NodalRestraints.size(); ++row) {
    const korvex::NodalRestraint& restraint = tables.NodalRestraints[row];
    for (std::size_t d = 0; d < korvex::DofsPerNode; ++d) {
      if (restraint.fixed[d] != FixedFlag) continue;
      if (restraint.node < 0 || static_cast<std::size_t>(restraint.node) >= nodes) return false;
      isHeld[static_cast<std::size_t>(restraint.node) * korvex::DofsPerNode + d] = true;
    }
  }
  return true;
}

bool HaveSameSupports(const korvex::ModelTables& a, const korvex::ModelTables& b) {
  std::vector<bool> heldA, heldB;
  return ListHeldDofs(a, heldA) && ListHeldDofs(b, heldB) && heldA == heldB;
}

}  // namespace

bool HaveSameStiffness(const korvex::Model& a, const korvex::Model& b) {
  const korvex::ModelTables &s = a.Tables, &t = b.Tables;
  return s.NPOIN == t.NPOIN && s.Shell4Nodes == t.Shell4Nodes && s.Shell3Nodes == t.Shell3Nodes &&
         s.BeamNodes == t.BeamNodes && AreSameElements(a.Shell4Elements, b.Shell4Elements) &&
         AreSameElements(a.Shell3Elements, b.Shell3Elements) &&
         AreSameElements(a.BeamElements, b.BeamElements) && HaveSameSupports(s, t);
}

}  // namespace kvx
