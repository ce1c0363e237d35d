#include "mesh/gmsh/gmsh_elements.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "mesh/gmsh/gmsh_element_types.h"
#include "mesh/gmsh/gmsh_entities.h"
#include "mesh/gmsh/gmsh_partitions.h"

namespace kvx {

namespace {

// The fewest bytes of an element: "1 1" and a line end in format 4.1.
constexpr std::size_t ShortestElement = 4;

// Reserves for no more elements than there can be if rows are of the usual length: the shortest
// ones would let a wrong count ask for many times the size of the file.
void ReserveElements(const GmshText& text, std::size_t count, GmshMesh& mesh) {
  constexpr std::size_t UsualElement = 16;
  mesh.elements.reserve(std::min(count, (text.bytes.size() - text.at) / UsualElement));
}

// An element's numbers in front of its nodes.
struct ElementHead {
  std::int64_t number = 0;
  std::int64_t type = 0;
  std::int64_t physical = 0;
  std::int64_t entity = NoEntity;
};

// Reads an element's nodes. Elements that are not taken are reported; of an unknown type the rest
// of the line is its nodes, but in binary files nobody knows where it ends.
void TakeNodes(GmshText& text, const ElementHead& head, const GmshTypeKind* kind, GmshMesh& mesh,
               ImportReport& report) {
  const std::string card = GmshCard(head.type);
  CountCard(card, PlaceIn(text), report);
  if (kind != nullptr && kind->isTaken) {
    GmshElement element;
    element.number = head.number;
    element.type = kind->type;
    element.line = static_cast<std::uint32_t>(PlaceIn(text).line);
    element.physical = static_cast<std::int32_t>(head.physical);
    element.entity = static_cast<std::int32_t>(head.entity);
    for (std::size_t k = 0; k < kind->nodeCount; ++k) {
      element.nodes[k] = TakeTag(text, "a node of an element");
    }
    mesh.elements.push_back(element);
    return;
  }
  ReportCard(card, kind == nullptr ? Fate::Refused : kind->fate,
             kind == nullptr ? UnknownGmshType : kind->reason, PlaceIn(text),
             "element " + std::to_string(head.number), report);
  if (kind != nullptr) {
    for (std::size_t k = 0; k < kind->nodeCount; ++k) TakeTag(text, "a node of an element");
  } else {
    while (!AtLineEnd(text)) TakeTag(text, "a node of an element");
  }
}

// The kind of an element; nullptr where it is not known, which ends the import of a binary file.
const GmshTypeKind* KindOrFail(const GmshText& text, std::int64_t type) {
  const GmshTypeKind* kind = FindGmshType(type);
  if (kind == nullptr && text.isBinary) {
    FailAt(text, GmshCard(type) + ": " + std::string(UnknownGmshType));
  }
  return kind;
}

// The tags of format 2.2: physical group, entity, number of partitions, partitions, where a ghost's
// are negative. Each may be missing.
void TakeTags22(GmshText& text, std::int64_t count, ElementHead& head,
                std::vector<std::int32_t>& partitions, GmshMesh& mesh) {
  partitions.clear();
  std::int64_t announced = 0;
  for (std::int64_t k = 0; k < count; ++k) {
    const std::int64_t tag = TakeInt(text, "a tag of an element");
    if (k == 0) head.physical = tag;
    if (k == 1) head.entity = tag;
    if (k == 2) announced = tag;
    if (k > 2 && k - 3 < announced) partitions.push_back(PartitionOf(tag));
  }
  if (!partitions.empty()) NarrowPartitions(partitions, mesh);
}

void TakeTextElement22(GmshText& text, std::vector<std::int32_t>& partitions, GmshMesh& mesh,
                       ImportReport& report) {
  BeginRow(text);
  ElementHead head;
  head.number = TakeTag(text, "the number of an element");
  head.type = TakeInt(text, "the type of an element");
  const std::int64_t tags = TakeInt(text, "the number of tags");
  if (tags < 0) FailAt(text, "the number of tags is negative");
  TakeTags22(text, tags, head, partitions, mesh);
  TakeNodes(text, head, KindOrFail(text, head.type), mesh, report);
  EndRow(text);
}

// Binary elements of format 2.2 stand in blocks of the same type and number of tags.
std::int64_t TakeBinaryBlock22(GmshText& text, std::int64_t left,
                               std::vector<std::int32_t>& partitions, GmshMesh& mesh,
                               ImportReport& report) {
  const std::int64_t type = TakeInt(text, "the type of elements");
  const std::int64_t count = TakeInt(text, "the number of elements");
  const std::int64_t tags = TakeInt(text, "the number of tags");
  const GmshTypeKind* kind = KindOrFail(text, type);
  if (count <= 0 || count > left) {
    FailAt(text, "a block has " + std::to_string(count) + " elements where 1 to " +
                     std::to_string(left) + " are expected");
  }
  if (tags < 0) FailAt(text, "the number of tags is negative");
  for (std::int64_t k = 0; k < count; ++k) {
    ElementHead head;
    head.number = TakeTag(text, "the number of an element");
    head.type = type;
    TakeTags22(text, tags, head, partitions, mesh);
    TakeNodes(text, head, kind, mesh, report);
  }
  return count;
}

// Reads a block of format 4.1: elements of one type on one entity. Returns how many.
std::int64_t TakeBlock41(GmshText& text, std::int64_t left, GmshMesh& mesh, ImportReport& report) {
  BeginRow(text);
  ElementHead head;
  const std::int64_t dimension = TakeInt(text, "the dimension of an entity");
  const std::int64_t tag = TakeInt(text, "the tag of an entity");
  head.type = TakeInt(text, "the type of elements");
  const std::int64_t count = TakeSize(text, "the number of elements");
  const GmshTypeKind* kind = KindOrFail(text, head.type);
  head.entity = FindEntity(mesh, dimension, tag);
  if (count > left) FailAt(text, "the blocks of $Elements have more elements than it announces");
  if (kind != nullptr && kind->dimension != dimension) {
    FailAt(text, GmshCard(head.type) + " does not belong on an entity of dimension " +
                     std::to_string(dimension));
  }
  if (head.entity == NoEntity && mesh.hasEntities) {
    FailAt(text, "entity " + std::to_string(tag) + " of dimension " + std::to_string(dimension) +
                     " is not in $Entities");
  }
  EndRow(text);
  for (std::int64_t k = 0; k < count; ++k) {
    BeginRow(text);
    head.number = TakeTag(text, "the number of an element");
    TakeNodes(text, head, kind, mesh, report);
    EndRow(text);
  }
  return count;
}

}  // namespace

std::string GmshCard(std::int64_t type) { return "element type " + std::to_string(type); }

void ReadGmshElements22(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  const std::size_t count = TakeTextCount(text, ShortestElement, "elements");
  mesh.hasElements = true;
  ReserveElements(text, count, mesh);
  std::vector<std::int32_t> partitions;
  auto left = static_cast<std::int64_t>(count);
  while (left > 0) {
    if (text.isBinary) {
      left -= TakeBinaryBlock22(text, left, partitions, mesh, report);
    } else {
      TakeTextElement22(text, partitions, mesh, report);
      --left;
    }
  }
}

void ReadGmshElements41(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  BeginRow(text);
  const std::int64_t blocks = TakeSize(text, "the number of blocks");
  const std::int64_t announced = TakeSize(text, "the number of elements");
  const std::size_t count = BelieveCount(text, announced, ShortestElement, "elements");
  TakeSize(text, "the smallest number of an element");
  TakeSize(text, "the largest number of an element");
  EndRow(text);
  mesh.hasElements = true;
  ReserveElements(text, count, mesh);
  std::int64_t left = announced;
  for (std::int64_t k = 0; k < blocks; ++k) left -= TakeBlock41(text, left, mesh, report);
  if (left == 0) return;
  FailAt(text, "$Elements announces " + std::to_string(announced) + " elements, its blocks have " +
                   std::to_string(announced - left));
}

}  // namespace kvx
