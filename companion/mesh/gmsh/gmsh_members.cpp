#include "mesh/gmsh/gmsh_members.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <tuple>

#include "mesh/gmsh/gmsh_element_types.h"
#include "mesh/gmsh/gmsh_elements.h"
#include "mesh/gmsh/gmsh_same_elements.h"

namespace kvx {

namespace {

void AddMember(const GmshMesh& mesh, std::int64_t physical, std::size_t element,
               std::vector<GmshMember>& members) {
  if (physical == 0) return;
  const std::int64_t tag = physical < 0 ? -physical : physical;
  members.push_back({FindGmshType(mesh.elements[element].type)->dimension,
                     static_cast<std::int32_t>(tag), static_cast<std::uint32_t>(element)});
}

void ReportBothWays(const GmshElement& element, ImportReport& report) {
  if (element.type == GmshPoint) return;
  ReportCard(GmshCard(element.type), Fate::Limited,
             "its groups have it both ways round; the first group's way is taken",
             {0, element.line}, "element " + std::to_string(element.number), report);
}

void ListMembers22(GmshMesh& mesh, ImportReport& report, std::vector<GmshMember>& members,
                   std::vector<GmshUse>& uses) {
  std::vector<GmshSameElement> same;
  FindSameElements(mesh, same);
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    const GmshElement& element = mesh.elements[k];
    AddMember(mesh, element.physical, same[k].first, members);
    if (same[k].first == k) continue;
    uses[k] = GmshUse::Again;
    if (same[k].isReversed) ReportBothWays(element, report);
  }
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    if (mesh.elements[k].physical < 0) TurnElement(mesh.elements[k]);
  }
}

void ListMembers41(GmshMesh& mesh, ImportReport& report, std::vector<GmshMember>& members,
                   std::vector<GmshUse>& uses) {
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    GmshElement& element = mesh.elements[k];
    if (element.entity == GhostEntity) uses[k] = GmshUse::Ghost;
    if (element.entity < 0) continue;
    const GmshEntity& entity = mesh.entities[static_cast<std::size_t>(element.entity)];
    if (entity.isInterface) {
      uses[k] = GmshUse::Interface;
      continue;
    }
    bool isFirst = true;
    bool isTurned = false;
    bool isBoth = false;
    for (const std::int32_t physical : entity.physicals) {
      AddMember(mesh, physical, k, members);
      if (physical == 0) continue;
      if (isFirst) isTurned = physical < 0;
      isBoth = isBoth || isTurned != (physical < 0);
      isFirst = false;
    }
    if (isTurned) TurnElement(element);
    if (isBoth) ReportBothWays(element, report);
  }
}

void FailOnSameNumbers(const GmshMesh& mesh, const ImportReport& report,
                       const std::vector<GmshUse>& uses) {
  std::vector<std::pair<std::int64_t, std::size_t>> numbers;
  numbers.reserve(mesh.elements.size());
  for (std::size_t k = 0; k < mesh.elements.size(); ++k) {
    if (uses[k] == GmshUse::Whole) numbers.emplace_back(mesh.elements[k].number, k);
  }
  std::sort(numbers.begin(), numbers.end());
  for (std::size_t k = 1; k < numbers.size(); ++k) {
    if (numbers[k].first != numbers[k - 1].first) continue;
    StopImport(report, {0, mesh.elements[numbers[k].second].line},
               "element " + std::to_string(numbers[k].first) + " stands twice in the file");
  }
}

}  // namespace

void ListGmshMembers(GmshMesh& mesh, ImportReport& report, std::vector<GmshMember>& members,
                     std::vector<GmshUse>& uses) {
  uses.assign(mesh.elements.size(), GmshUse::Whole);
  if (mesh.version == GmshVersion::V22) {
    ListMembers22(mesh, report, members, uses);
  } else {
    ListMembers41(mesh, report, members, uses);
  }
  FailOnSameNumbers(mesh, report, uses);
  const auto order = [](const GmshMember& member) {
    return std::tuple(member.dimension, member.tag, member.element);
  };
  std::sort(members.begin(), members.end(),
            [&](const GmshMember& a, const GmshMember& b) { return order(a) < order(b); });
  const auto isSame = [&](const GmshMember& a, const GmshMember& b) {
    return order(a) == order(b);
  };
  members.erase(std::unique(members.begin(), members.end(), isSame), members.end());
}

}  // namespace kvx
