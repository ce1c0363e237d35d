// A case of the book: what is computed, where the reference comes from, and rows of results on
// finer and finer meshes.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace korvex::book {

// Whether the fine meshes are computed as well.
enum class Extent { Short, Full };

// One quantity on all meshes of a case.
struct Quantity {
  std::string name;
  std::string reference;                    // as the source gives it; its value is the divisor
  std::function<double(int mesh)> solve;    // the result on a mesh
  std::vector<std::string> published = {};  // ratios of another program, by mesh
  std::string otherReference = {};          // a second value for the same quantity, if there is one
};

struct ConvergenceCase {
  std::string title;
  std::string statement;    // geometry, load, units, supports, where the result is read
  std::string source;       // of the reference
  std::vector<int> meshes;  // as `solve` takes them
  std::function<std::string(int)> nameMesh;
  int finestShort = 0;  // meshes beyond this one belong to the long run
  std::vector<Quantity> quantities;
  std::string comment;  // what the rows show; may be empty
};

// The case with its figures, computed as far as `extent` goes.
std::string WriteCase(const ConvergenceCase& c, Extent extent);

// "8"; "8 x 8"
std::string NameCount(int mesh);
std::string NameSquare(int mesh);

}  // namespace korvex::book
