#include "commands/element_words.h"

#include "audit/unbalanced_elements.h"
#include "check/describe.h"
#include "commands/origin_words.h"

namespace kvx {

namespace {

Holder HolderOf(ElementKind kind) {
  if (kind == ElementKind::Shell4) return Holder::Shell4;
  return kind == ElementKind::Shell3 ? Holder::Shell3 : Holder::Beam;
}

}  // namespace

const char* NameOf(Holder holder) {
  switch (holder) {
    case Holder::Node:
      return "node";
    case Holder::Shell4:
      return "four-node shell";
    case Holder::Shell3:
      return "three-node shell";
    case Holder::Beam:
      break;
  }
  return "beam";
}

const char* NameOf(ElementKind kind) { return NameOf(HolderOf(kind)); }

const char* KindWord(Holder holder) {
  if (holder == Holder::Shell4) return "shell";
  return holder == Holder::Shell3 ? "triangle" : NameOf(holder);
}

const char* KindWord(ElementKind kind) { return KindWord(HolderOf(kind)); }

std::string SectionName(std::int32_t type, std::int32_t row) {
  if (!korvex::HasSectionTable(type)) return "none";
  const char* const table = type == korvex::BeamSecTypeT   ? "T "
                            : type == korvex::BeamSecTypeL ? "L "
                                                           : "C ";
  return table + std::to_string(row);
}

std::string SectionName(const korvex::Model& model, std::int32_t beam) {
  const korvex::BeamSectionRef& ref = model.Tables.BeamSectionRefs[static_cast<std::size_t>(beam)];
  return SectionName(ref.BeamSecType, ref.BeamSecIndex);
}

std::string DescribeElement(const korvex::Model& model, const ModelOrigin& origin,
                            const ElementRef& element) {
  const std::string name = std::string(NameOf(element.kind)) + " " + std::to_string(element.row) +
                           InDeck(origin, element);
  const NodeSpan span = NodesOfElement(model, element);
  if (element.kind == ElementKind::Beam) {
    return name + " at " + PointText(PlaceOfNode(model, span.nodes[0])) + " .. " +
           PointText(PlaceOfNode(model, span.nodes[1]));
  }
  korvex::Vector3 middle{};
  for (std::int32_t k = 0; k < span.count; ++k) {
    const korvex::Vector3 place = PlaceOfNode(model, span.nodes[k]);
    for (std::size_t i = 0; i < 3; ++i) middle[i] += place[i] / span.count;
  }
  return name + " at " + PointText(middle);
}

std::string DescribeNode(const korvex::Model& model, const ModelOrigin& origin, std::int32_t node) {
  return "node " + std::to_string(node) + InDeck(origin, node) + " at " +
         PointText(PlaceOfNode(model, node));
}

std::string DescribeElement(const korvex::Model& model, const ElementRef& element) {
  return DescribeElement(model, {}, element);
}

std::string DescribeNode(const korvex::Model& model, std::int32_t node) {
  return DescribeNode(model, {}, node);
}

}  // namespace kvx
