#include "commands/structure_difference.h"

#include <cstdint>
#include <cstring>
#include <vector>

#include "check/describe.h"
#include "deck/row_formats.h"
#include "tables/held_dofs.h"

namespace kvx {

using korvex::ModelTables;
using korvex::Section;

namespace {

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

bool IsSameNumber(double a, double b) { return BitsOf(a) == BitsOf(b); }

bool IsSame(const korvex::Material& a, const korvex::Material& b) {
  return IsSameNumber(a.E, b.E) && IsSameNumber(a.Mu, b.Mu) && IsSameNumber(a.Density, b.Density);
}

bool IsSame(const korvex::ShellThickness& a, const korvex::ShellThickness& b) {
  return IsSameNumber(a.TK, b.TK);
}

bool IsSame(const korvex::BeamSection& a, const korvex::BeamSection& b) {
  return IsSameNumber(a.Hw, b.Hw) && IsSameNumber(a.Tw, b.Tw) && IsSameNumber(a.Bf, b.Bf) &&
         IsSameNumber(a.Tf, b.Tf);
}

bool IsSame(const korvex::CBeamSection& a, const korvex::CBeamSection& b) {
  return IsSameNumber(a.R, b.R) && IsSameNumber(a.T, b.T);
}

bool IsSame(const korvex::Node& a, const korvex::Node& b) {
  return IsSameNumber(a.x, b.x) && IsSameNumber(a.y, b.y) && IsSameNumber(a.z, b.z);
}

bool IsSame(const korvex::ShellRowProperties& a, const korvex::ShellRowProperties& b) {
  return a.material == b.material && a.thickness == b.thickness;
}

bool IsSame(const korvex::BeamSectionRef& a, const korvex::BeamSectionRef& b) {
  return a.BeamSecType == b.BeamSecType && a.BeamSecIndex == b.BeamSecIndex &&
         IsSameNumber(a.BeamSecOz, b.BeamSecOz) && a.BeamSecMirrored == b.BeamSecMirrored;
}

bool IsSame(const korvex::BeamRowProperties& a, const korvex::BeamRowProperties& b) {
  return a.material == b.material && IsSameNumber(a.orientation[0], b.orientation[0]) &&
         IsSameNumber(a.orientation[1], b.orientation[1]) &&
         IsSameNumber(a.orientation[2], b.orientation[2]);
}

constexpr std::size_t None = static_cast<std::size_t>(-1);

// The first row that differs; the tables have the same length.
template <typename Table>
std::size_t FindDifference(const Table& a, const Table& b) {
  for (std::size_t row = 0; row < a.size(); ++row) {
    if (!IsSame(a[row], b[row])) return row;
  }
  return None;
}

// By rows of `width` nodes.
std::size_t FindOtherNodes(const std::vector<std::int32_t>& a, const std::vector<std::int32_t>& b,
                           std::size_t width) {
  for (std::size_t at = 0; at < a.size(); ++at) {
    if (a[at] != b[at]) return at / width;
  }
  return None;
}

// "has 12 nodal points, not 10"
std::string DescribeCounts(const ModelTables& a, const ModelTables& b) {
  for (const korvex::SectionFormat& format : korvex::SectionFormats) {
    if (format.section >= Section::Restraints) break;
    const std::int32_t counted = CountRows(a, format.section), other = CountRows(b, format.section);
    if (counted == other) continue;
    return "has " + std::to_string(other) + ' ' + format.rows + ", not " + std::to_string(counted);
  }
  return "";
}

// "has another material 3"
std::string OtherRow(const char* what, std::size_t row) {
  return row == None ? "" : std::string("has another ") + what + ' ' + std::to_string(row);
}

std::string OtherNodes(const char* what, std::size_t row) {
  return row == None ? "" : std::string("has other nodes at ") + what + ' ' + std::to_string(row);
}

std::string OtherProperties(const char* what, std::size_t row) {
  return row == None ? ""
                     : std::string("has other properties at ") + what + ' ' + std::to_string(row);
}

std::string OtherPlace(const ModelTables& a, const ModelTables& b) {
  const std::size_t node = FindDifference(a.Nodes, b.Nodes);
  if (node == None) return "";
  const korvex::Node &at = a.Nodes[node], &other = b.Nodes[node];
  return "has node " + std::to_string(node) + " at " + PointText({other.x, other.y, other.z}) +
         ", not at " + PointText({at.x, at.y, at.z});
}

std::string OtherSupport(const ModelTables& a, const ModelTables& b) {
  const std::vector<std::uint8_t> held = ListHeldDofs(a), other = ListHeldDofs(b);
  for (std::size_t node = 0; node < held.size(); ++node) {
    if (held[node] != other[node]) return "holds node " + std::to_string(node) + " otherwise";
  }
  return "";
}

}  // namespace

std::string DescribeDifference(const ModelTables& model, const ModelTables& other) {
  const ModelTables &a = model, &b = other;
  std::string counts = DescribeCounts(a, b);
  if (!counts.empty()) return counts;
  for (const std::string& difference :
       {OtherRow("material", FindDifference(a.Materials, b.Materials)),
        OtherRow("thickness", FindDifference(a.ShellThicknesses, b.ShellThicknesses)),
        OtherRow("T section", FindDifference(a.TBeamSections, b.TBeamSections)),
        OtherRow("L section", FindDifference(a.LBeamSections, b.LBeamSections)),
        OtherRow("tube section", FindDifference(a.CBeamSections, b.CBeamSections)),
        OtherPlace(a, b), OtherNodes("shell", FindOtherNodes(a.Shell4Nodes, b.Shell4Nodes, 4)),
        OtherProperties("shell", FindDifference(a.Shell4Properties, b.Shell4Properties)),
        OtherNodes("triangle", FindOtherNodes(a.Shell3Nodes, b.Shell3Nodes, 3)),
        OtherProperties("triangle", FindDifference(a.Shell3Properties, b.Shell3Properties)),
        OtherNodes("beam", FindOtherNodes(a.BeamNodes, b.BeamNodes, 2)),
        OtherProperties("beam", FindDifference(a.BeamSectionRefs, b.BeamSectionRefs)),
        OtherProperties("beam", FindDifference(a.BeamProperties, b.BeamProperties)),
        OtherSupport(a, b)}) {
    if (!difference.empty()) return difference;
  }
  return "";
}

}  // namespace kvx
