#include "mesh/gmsh/gmsh_nodes.h"

#include <cstddef>
#include <string>

namespace kvx {

namespace {

// The fewest bytes of a node, in text: "1 0 0 0" and a line end.
constexpr std::size_t ShortestNode = 8;

void TakeNumber(GmshText& text, GmshMesh& mesh) {
  const std::int64_t number = TakeTag(text, "the number of a node");
  if (number == 0) FailAt(text, "a node has the number 0; they begin with 1");
  mesh.nodeNumbers.push_back(number);
  mesh.nodeLines.push_back(static_cast<std::uint32_t>(PlaceIn(text).line));
}

void TakeCoordinates(GmshText& text, GmshMesh& mesh) {
  korvex::Node node;
  node.x = TakeReal(text, "a coordinate of a node");
  node.y = TakeReal(text, "a coordinate of a node");
  node.z = TakeReal(text, "a coordinate of a node");
  mesh.nodes.push_back(node);
}

void Reserve(std::size_t count, GmshMesh& mesh) {
  mesh.hasNodes = true;
  mesh.nodes.reserve(count);
  mesh.nodeNumbers.reserve(count);
  mesh.nodeLines.reserve(count);
}

// How many parameters follow a node in format 2.2. Those in volumes have none.
int ParametersOf(GmshText& text) {
  const std::int64_t dimension = TakeInt(text, "the dimension of a node's entity");
  if (dimension < 0 || dimension > 3) FailAt(text, "a node's entity has the dimension 0 to 3");
  TakeInt(text, "the tag of a node's entity");
  return dimension == 3 ? 0 : static_cast<int>(dimension);
}

void TakeBlock(GmshText& text, std::size_t announced, GmshMesh& mesh) {
  BeginRow(text);
  const std::int64_t dimension = TakeInt(text, "the dimension of an entity");
  TakeInt(text, "the tag of an entity");
  const std::int64_t parametric = TakeInt(text, "0, or 1 for nodes with parameters");
  const std::int64_t count = TakeSize(text, "the number of nodes");
  if (dimension < 0 || dimension > 3) FailAt(text, "an entity has the dimension 0 to 3");
  if (parametric != 0 && parametric != 1)
    FailAt(text, "0 or 1 tells whether nodes have parameters");
  if (count > static_cast<std::int64_t>(announced - mesh.nodes.size())) {
    FailAt(text, "the blocks of $Nodes have more nodes than it announces");
  }
  EndRow(text);
  const std::int64_t parameters = parametric == 1 ? dimension : 0;
  for (std::int64_t k = 0; k < count; ++k) {
    BeginRow(text);
    TakeNumber(text, mesh);
    EndRow(text);
  }
  for (std::int64_t k = 0; k < count; ++k) {
    BeginRow(text);
    TakeCoordinates(text, mesh);
    for (std::int64_t u = 0; u < parameters; ++u) TakeReal(text, "a parameter of a node");
    EndRow(text);
  }
}

}  // namespace

void ReadGmshNodes22(GmshText& text, GmshMesh& mesh) {
  const std::size_t count = TakeTextCount(text, ShortestNode, "nodes");
  Reserve(count, mesh);
  for (std::size_t k = 0; k < count; ++k) {
    BeginRow(text);
    TakeNumber(text, mesh);
    TakeCoordinates(text, mesh);
    EndRow(text);
  }
}

void ReadGmshParametricNodes22(GmshText& text, GmshMesh& mesh) {
  const std::size_t count = TakeTextCount(text, ShortestNode, "nodes");
  Reserve(count, mesh);
  for (std::size_t k = 0; k < count; ++k) {
    BeginRow(text);
    TakeNumber(text, mesh);
    TakeCoordinates(text, mesh);
    const int parameters = ParametersOf(text);
    for (int u = 0; u < parameters; ++u) TakeReal(text, "a parameter of a node");
    EndRow(text);
  }
}

void ReadGmshNodes41(GmshText& text, GmshMesh& mesh) {
  BeginRow(text);
  const std::int64_t blocks = TakeSize(text, "the number of blocks");
  const std::size_t count =
      BelieveCount(text, TakeSize(text, "the number of nodes"), ShortestNode, "nodes");
  TakeSize(text, "the smallest number of a node");
  TakeSize(text, "the largest number of a node");
  EndRow(text);
  Reserve(count, mesh);
  for (std::int64_t k = 0; k < blocks; ++k) TakeBlock(text, count, mesh);
  if (mesh.nodes.size() == count) return;
  FailAt(text, "$Nodes announces " + std::to_string(count) + " nodes, its blocks have " +
                   std::to_string(mesh.nodes.size()));
}

}  // namespace kvx
