#include "engine/free_motion.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string>

#include "base/dof_counts.h"
#include "base/finite.h"
#include "check/describe.h"
#include "mechanism/mode_strain.h"
#include "report/stop.h"
#include "sparse/prescribed.h"

namespace kvx {

namespace {

// The strain of mechanisms is 3e-16 at most, that of sound modes with small pivots 4e-7 at least,
// as mechanism/find_mechanisms.cpp has it.
constexpr double NoStrain = 1e-13;

// From here on a mode is looked at; a mechanism whose pivot is all roundings has 1e9 at least.
constexpr double LargeCondition = 1e7;

constexpr std::size_t MostNamed = 6;

constexpr const char* Remedy =
    " Support it, or connect it; kvx check --deep names all nodes that move.";

// "node 17 at (100, 0, 50) may move along x"
std::string NameMotion(const korvex::Model& model, std::int32_t equation) {
  constexpr std::array<const char*, korvex::DofsPerNode> Ways{"move along x", "move along y",
                                                              "move along z", "turn about x",
                                                              "turn about y", "turn about z"};
  const std::int32_t node = equation / korvex::DofsPerNode;
  return "node " + std::to_string(node) + " at " + PointText(PlaceOf(model.Tables, node)) +
         " may " + Ways[static_cast<std::size_t>(equation % korvex::DofsPerNode)];
}

[[noreturn]] void StopNotice(const std::string& text) {
  throw korvex::Stop{korvex::StopKind::Notice, text};
}

// x: of the free dofs.
bool IsFree(const korvex::Model& model, const FreeDofs& dofs, const std::vector<double>& x) {
  std::vector<double> v(dofs.places.size(), 0.0);
  TakeFree(dofs, x.data(), v);
  return !IsStrained(model, v, NoStrain);
}

void Append(const std::string& item, std::string& list) {
  if (!list.empty()) list += ", ";
  list += item;
}

}  // namespace

void StopWhereFree(const korvex::Model& model, const FreeDofs& dofs, SparseFactor& factor) {
  const std::size_t count = factor.nullPivots.size();
  if (count == 0) return;
  std::string free, soft;
  for (std::size_t rank = 0; rank < std::min(count, MostNamed); ++rank) {
    std::vector<double> x;
    FindNullVector(factor, rank, x);
    const auto row = static_cast<std::size_t>(factor.nullPivots[rank]);
    const bool isFree = !korvex::AreFinite(x.data(), x.size()) || IsFree(model, dofs, x);
    Append(NameMotion(model, dofs.equations[row]), isFree ? free : soft);
  }
  if (count > MostNamed) {
    Append("and " + std::to_string(count - MostNamed) + " more", free.empty() ? soft : free);
  }
  if (free.empty()) {
    StopNotice(
        "The structure is so soft somewhere that no digit of its displacements would be "
        "right: " +
        soft + "." + Remedy);
  }
  if (!soft.empty()) soft = " So soft that rounding errors are all: " + soft + ".";
  StopNotice("The structure can move: " + free + "." + soft + Remedy);
}

void StopWhereModeIsFree(const korvex::Model& model, const FreeDofs& dofs,
                         const ConditionEstimate& estimate) {
  if (estimate.value < LargeCondition) return;
  if (!korvex::AreFinite(estimate.mode.data(), estimate.mode.size())) {
    StopNotice(
        std::string("The structure can move: the factorisation has numbers that are not finite.") +
        Remedy);
  }
  if (!IsFree(model, dofs, estimate.mode)) return;
  const auto larger = [](double a, double b) { return std::fabs(a) < std::fabs(b); };
  const auto row =
      std::max_element(estimate.mode.begin(), estimate.mode.end(), larger) - estimate.mode.begin();
  StopNotice("The structure can move: " +
             NameMotion(model, dofs.equations[static_cast<std::size_t>(row)]) + "." + Remedy);
}

}  // namespace kvx
