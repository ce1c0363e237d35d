#include "view/structure_block.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <tuple>

#include "beam/beam_frame.h"
#include "tables/held_dofs.h"

namespace kvx {

using korvex::ModelTables;

namespace {

bool IsRow(std::int32_t row, std::size_t count) {
  return row >= 0 && static_cast<std::size_t>(row) < count;
}

std::int32_t RowOrNone(std::int32_t row, std::size_t count) { return IsRow(row, count) ? row : -1; }

bool HasSection(const ModelTables& tables, const korvex::BeamSectionRef& ref) {
  switch (ref.BeamSecType) {
    case korvex::BeamSecTypeT:
      return IsRow(ref.BeamSecIndex, tables.TBeamSections.size());
    case korvex::BeamSecTypeL:
      return IsRow(ref.BeamSecIndex, tables.LBeamSections.size());
    case korvex::BeamSecTypeC:
      return IsRow(ref.BeamSecIndex, tables.CBeamSections.size());
    default:
      return false;
  }
}

std::uint64_t BitsOf(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

// The nodes of elements with `corners` nodes each; wrong ones replaced by a right one of the same
// element, or by node 0 where it has none.
std::vector<std::int32_t> MendNodes(const std::vector<std::int32_t>& nodes, std::size_t corners,
                                    std::size_t nodeCount) {
  std::vector<std::int32_t> mended = nodes;
  for (std::size_t at = 0; at + corners <= mended.size(); at += corners) {
    const auto begin = mended.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = begin + static_cast<std::ptrdiff_t>(corners);
    const auto isRight = [&](std::int32_t node) { return IsRow(node, nodeCount); };
    const auto right = std::find_if(begin, end, isRight);
    const std::int32_t stand = right == end ? 0 : *right;
    std::replace_if(
        begin, end, [&](std::int32_t node) { return !isRight(node); }, stand);
  }
  return mended;
}

std::vector<std::int32_t> PartsOf(const std::vector<std::int32_t>& nodes, std::size_t corners,
                                  const std::vector<std::int32_t>& partOfNode) {
  std::vector<std::int32_t> parts;
  parts.reserve(nodes.size() / corners);
  for (std::size_t at = 0; at < nodes.size(); at += corners) {
    const std::int32_t node = nodes[at];
    const bool isKnown = IsRow(node, partOfNode.size());
    parts.push_back(isKnown ? partOfNode[static_cast<std::size_t>(node)] : -1);
  }
  return parts;
}

void AddNodes(const ModelTables& tables, PageBlock& block) {
  std::vector<double> coordinates;
  coordinates.reserve(3 * tables.Nodes.size());
  for (std::size_t k = 0; k < tables.Nodes.size(); ++k) {
    const korvex::Node& node = tables.Nodes[k];
    coordinates.insert(coordinates.end(), {node.x, node.y, node.z});
  }
  AddDoubles("coordinates", coordinates, block, 3);
}

// name: "shells" or "triangles".
void AddShells(const std::string& name, const std::vector<std::int32_t>& nodes, std::size_t corners,
               const std::vector<korvex::ShellRowProperties>& properties, const ModelTables& tables,
               const RowKnowledge& rows, PageBlock& block) {
  const std::vector<std::int32_t> mended = MendNodes(nodes, corners, tables.Nodes.size());
  std::vector<std::int32_t> thickness, material;
  for (const korvex::ShellRowProperties& row : properties) {
    thickness.push_back(RowOrNone(row.thickness, tables.ShellThicknesses.size()));
    material.push_back(RowOrNone(row.material, tables.Materials.size()));
  }
  AddIntegers(name + ".nodes", mended, block, corners);
  AddIntegers(name + ".thickness", thickness, block);
  AddIntegers(name + ".material", material, block);
  AddIntegers(name + ".part", PartsOf(mended, corners, rows.partOfNode), block);
}

// The local z of a beam, global; NaN where it has no direction.
korvex::Vector3 DirectBeam(const ModelTables& tables, std::size_t beam) {
  const std::int32_t i = tables.BeamNodes[2 * beam], j = tables.BeamNodes[2 * beam + 1];
  constexpr double None = std::numeric_limits<double>::quiet_NaN();
  if (!IsRow(i, tables.Nodes.size()) || !IsRow(j, tables.Nodes.size())) return {None, None, None};
  const korvex::Node& from = tables.Nodes[static_cast<std::size_t>(i)];
  const korvex::Node& to = tables.Nodes[static_cast<std::size_t>(j)];
  korvex::BeamFrame frame{};
  korvex::ComputeBeamFrame({to.x - from.x, to.y - from.y, to.z - from.z},
                           tables.BeamProperties[beam].orientation, frame);
  return {frame[6], frame[7], frame[8]};
}

void AddBeams(const ModelTables& tables, const BeamSections& sections, const RowKnowledge& rows,
              PageBlock& block) {
  const std::vector<std::int32_t> nodes = MendNodes(tables.BeamNodes, 2, tables.Nodes.size());
  std::vector<std::int32_t> material;
  std::vector<double> z;
  for (std::size_t b = 0; b < tables.BeamProperties.size(); ++b) {
    material.push_back(RowOrNone(tables.BeamProperties[b].material, tables.Materials.size()));
    const korvex::Vector3 direction = DirectBeam(tables, b);
    z.insert(z.end(), direction.begin(), direction.end());
  }
  AddIntegers("beams.nodes", nodes, block, 2);
  AddIntegers("beams.section", sections.groupOfBeam, block);
  AddIntegers("beams.material", material, block);
  AddIntegers("beams.part", PartsOf(nodes, 2, rows.partOfNode), block);
  AddDoubles("beams.z", z, block, 3);
}

// Nodes of which something is held.
void AddSupports(const ModelTables& tables, PageBlock& block) {
  const std::vector<std::uint8_t> held = ListHeldDofs(tables);
  std::vector<std::int32_t> nodes, flags;
  for (std::size_t node = 0; node < held.size(); ++node) {
    if (held[node] == 0) continue;
    nodes.push_back(static_cast<std::int32_t>(node));
    flags.push_back(held[node]);
  }
  AddIntegers("supportNodes", nodes, block);
  AddIntegers("supportFlags", flags, block);
}

bool FollowOneAnother(const std::vector<std::uint32_t>& lines) {
  for (std::size_t k = 1; k < lines.size(); ++k) {
    if (lines[k] != lines[0] + k) return false;
  }
  return true;
}

}  // namespace

void GroupBeamSections(const ModelTables& tables, BeamSections& sections) {
  sections = {};
  // Offsets by their bits: one that is not a number is like itself.
  std::map<std::tuple<std::int32_t, std::int32_t, std::uint64_t, bool>, std::int32_t> groupOf;
  for (const korvex::BeamSectionRef& ref : tables.BeamSectionRefs) {
    if (!HasSection(tables, ref)) {
      sections.groupOfBeam.push_back(-1);
      continue;
    }
    const auto key = std::make_tuple(ref.BeamSecType, ref.BeamSecIndex, BitsOf(ref.BeamSecOz),
                                     ref.BeamSecMirrored);
    const auto next = static_cast<std::int32_t>(sections.groups.size());
    const auto [found, isNew] = groupOf.emplace(key, next);
    if (isNew) sections.groups.push_back(ref);
    sections.groupOfBeam.push_back(found->second);
  }
}

std::array<std::uint32_t, PageKinds> FirstLines(const RowKnowledge& rows) {
  std::array<std::uint32_t, PageKinds> first{};
  for (std::size_t kind = 0; kind < PageKinds; ++kind) {
    if (!rows.lines[kind].empty()) first[kind] = rows.lines[kind].front();
  }
  return first;
}

void AddStructure(const ModelTables& tables, const BeamSections& sections, const RowKnowledge& rows,
                  PageBlock& block) {
  AddNodes(tables, block);
  AddShells("shells", tables.Shell4Nodes, 4, tables.Shell4Properties, tables, rows, block);
  AddShells("triangles", tables.Shell3Nodes, 3, tables.Shell3Properties, tables, rows, block);
  AddBeams(tables, sections, rows, block);
  AddSupports(tables, block);
  constexpr std::array<const char*, PageKinds> Names{"lines.node", "lines.shell", "lines.triangle",
                                                     "lines.beam"};
  for (std::size_t kind = 0; kind < PageKinds; ++kind) {
    const std::vector<std::uint32_t>& lines = rows.lines[kind];
    if (FollowOneAnother(lines)) continue;
    AddIntegers(Names[kind], std::vector<std::int32_t>(lines.begin(), lines.end()), block);
  }
}

}  // namespace kvx
