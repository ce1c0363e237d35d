// A convergence table: quantities on finer and finer meshes, beside their references.
//
// One column for each mesh. Each quantity has a row of results, a row of result / reference, a row
// for its second reference if it has one, and a row of published ratios if there are any.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace korvex::book {

// Short leaves out the fine meshes.
enum class Extent { Short, Full };

// One quantity on all meshes of a table.
struct Quantity {
  std::string name;
  std::string reference;                    // as its source prints it; results are divided by it
  std::function<double(int mesh)> solve;    // the result on a mesh
  std::vector<std::string> published = {};  // result / reference of another element, by mesh
  std::string otherReference = {};          // a second reference; empty where there is none
};

struct ConvergenceCase {
  std::vector<int> meshes;  // as `solve` takes them
  std::function<std::string(int)> nameMesh;
  int finestShort = 0;  // meshes beyond this one are computed with Extent::Full alone
  std::vector<Quantity> quantities;
};

// Solves the case as far as `extent` goes. Returns the table in Markdown (FormatTable).
std::string ComputeTable(const ConvergenceCase& c, Extent extent);

// "8"; "8 x 8"
std::string NameCount(int mesh);
std::string NameSquare(int mesh);

}  // namespace korvex::book
