#include "audit/reactions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <utility>

#include "report/stop.h"
#include "tables/node_box.h"

namespace kvx {

using korvex::DofsPerNode;
using korvex::Model;
using korvex::Vector3;

namespace {

double LengthOf(const double* three) { return korvex::Length({three[0], three[1], three[2]}); }

// Forms r, K u - F, from the elements' forces; on the way lists unbalanced elements and finds the
// scales of end forces. sizes: [NEQ] on return |K| |u| + |F|.
void FormR(const SolvedModel& solved, int threads, std::vector<double>& sizes, Reactions& out) {
  const Model& model = solved.model;
  out.r.resize(model.LoadVector.size());
  sizes.resize(out.r.size());
  for (std::size_t i = 0; i < out.r.size(); ++i) {
    out.r[i] = -model.LoadVector[i];
    sizes[i] = std::fabs(model.LoadVector[i]);
    double& scale = i % DofsPerNode < 3 ? out.endScales.force : out.endScales.moment;
    scale = LargerMagnitude(scale, sizes[i]);
  }
  const auto add = [&](const StiffForces& forces) {
    for (std::int32_t i = 0; i < forces.n; ++i) {
      const auto equation = static_cast<std::size_t>(forces.g[i]);
      out.r[equation] += forces.stiff[i];
      sizes[equation] += forces.size[i];
    }
    RaiseScales(model, forces.element, forces.stiff, out.endScales);
    AddIfUnbalanced(model, forces, out.centre, out.unbalanced);
  };
  FormStiffForces(model, add, threads);
}

void ListSupports(const SolvedModel& solved, Reactions& out) {
  const std::int32_t nodes = solved.model.Tables.NPOIN;
  for (std::int32_t node = 0; node < nodes; ++node) {
    const std::size_t first = static_cast<std::size_t>(node) * DofsPerNode;
    const std::uint8_t* held = &solved.isHeld[first];
    if (std::none_of(held, held + DofsPerNode, [](std::uint8_t flag) { return flag != 0; })) {
      continue;
    }
    Support support;
    support.node = node;
    support.place = PlaceOfNode(solved.model, node);
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      support.held[d] = held[d];
      if (held[d] != 0) support.force[d] = out.r[first + d];
    }
    out.supports.push_back(support);
  }
}

void ListMoved(const SolvedModel& solved, Reactions& out) {
  std::map<std::pair<std::int32_t, std::int32_t>, double> values;
  for (const PrescribedMotion& row : solved.prescribed) values[{row.node, row.dof}] += row.value;
  for (const auto& [where, value] : values) {
    const auto equation = static_cast<std::size_t>(where.first) * DofsPerNode +
                          static_cast<std::size_t>(where.second);
    out.moved.push_back({where.first, where.second, value, solved.model.Displacements[equation]});
  }
}

// The forces at nodes: their sum about the centre, and the sums of |F| and |M|.
struct NodalSum {
  ForceSum sum{};
  double F = 0.0, M = 0.0;
};
void AddAt(const Vector3& place, const Vector3& centre, const double* six, NodalSum& total) {
  AddForceAt(place, centre, six, total.sum);
  total.F += LengthOf(six);
  total.M += LengthOf(six + 3);
}

// The same forces with moments about the global origin.
ForceSum MoveToOrigin(const ForceSum& sum, const Vector3& centre) {
  ForceSum moved{};
  AddForceAt(centre, {}, sum.data(), moved);
  return moved;
}

double LargestOf(const double* three) {
  return LargerMagnitude(LargerMagnitude(std::fabs(three[0]), std::fabs(three[1])),
                         std::fabs(three[2]));
}

// The larger of the largest force and moment, each over its scale.
double CompareWithScales(const ForceSum& sum, const ForceScales& scales) {
  return LargerMagnitude(RatioOf(LargestOf(sum.data()), scales.force),
                         RatioOf(LargestOf(&sum[3]), scales.moment));
}

void SumUp(const SolvedModel& solved, Reactions& out) {
  NodalSum loads, reactions;
  for (std::int32_t node = 0; node < solved.model.Tables.NPOIN; ++node) {
    AddAt(PlaceOfNode(solved.model, node), out.centre,
          &solved.model.LoadVector[static_cast<std::size_t>(node) * DofsPerNode], loads);
  }
  out.isLoaded = loads.F + loads.M != 0.0;
  for (const Support& support : out.supports) {
    AddAt(support.place, out.centre, support.force.data(), reactions);
  }
  ForceSum unbalanced{};
  for (const UnbalancedElement& element : out.unbalanced) {
    for (std::size_t i = 0; i < 6; ++i) unbalanced[i] += element.sum[i];
  }
  for (std::size_t i = 0; i < 6; ++i) {
    out.imbalanceSum[i] = loads.sum[i] + reactions.sum[i] - unbalanced[i];
  }
  out.loads = MoveToOrigin(loads.sum, out.centre);
  out.reactions = MoveToOrigin(reactions.sum, out.centre);
  out.unbalancedSum = MoveToOrigin(unbalanced, out.centre);
  const auto scale = [&](const NodalSum& sum) { return sum.F + RatioOf(sum.M, out.size); };
  out.sumScales.force = LargerMagnitude(scale(loads), scale(reactions));
  out.sumScales.moment = out.sumScales.force * out.size;
  out.imbalance = CompareWithScales(out.imbalanceSum, out.sumScales);
}

// sizes: |K| |u| + |F|.
void EstimateRounding(const SolvedModel& solved, const std::vector<double>& sizes, Reactions& out) {
  ForceSum squares{};
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const std::size_t dof = i % DofsPerNode;
    const double square = sizes[i] * sizes[i];
    squares[dof] += square;
    if (dof >= 3) continue;
    // A force along an axis has a moment about the two others.
    const Vector3 arm = korvex::Subtract(
        PlaceOfNode(solved.model, static_cast<std::int32_t>(i / DofsPerNode)), out.centre);
    const std::size_t b = (dof + 1) % 3, c = (dof + 2) % 3;
    squares[3 + b] += arm[c] * arm[c] * square;
    squares[3 + c] += arm[b] * arm[b] * square;
  }
  for (std::size_t i = 0; i < 6; ++i) {
    out.roundingSum[i] = std::numeric_limits<double>::epsilon() * std::sqrt(squares[i]);
  }
  out.rounding = CompareWithScales(out.roundingSum, out.sumScales);
}

// sizes: |K| |u| + |F|.
void FindBackwardError(const SolvedModel& solved, const std::vector<double>& sizes,
                       Reactions& out) {
  std::array<double, 2> residual{}, size{};  // of forces, of moments
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    const std::size_t kind = i % DofsPerNode < 3 ? 0 : 1;
    if (solved.isHeld[i] == 0) residual[kind] = LargerMagnitude(residual[kind], out.r[i]);
    size[kind] = LargerMagnitude(size[kind], sizes[i]);
  }
  out.backwardError = LargerMagnitude(RatioOf(residual[0], size[0]), RatioOf(residual[1], size[1]));
}

void RequireComplete(const SolvedModel& solved) {
  const std::size_t n = solved.model.Tables.Nodes.size() * DofsPerNode;
  const bool isComplete = solved.model.Displacements.size() == n &&
                          solved.model.LoadVector.size() == n && solved.isHeld.size() == n;
  if (isComplete) return;
  throw korvex::Stop{korvex::StopKind::Notice, "The solved model is not complete."};
}

}  // namespace

void ComputeReactions(const SolvedModel& solved, Reactions& reactions, int threads) {
  RequireComplete(solved);
  reactions = {};
  const NodeBox box = MeasureNodeBox(solved.model.Tables);
  reactions.centre = box.middle;
  reactions.size = 0.5 * box.diagonal;
  std::vector<double> sizes;
  FormR(solved, threads, sizes, reactions);
  ListSupports(solved, reactions);
  ListMoved(solved, reactions);
  SumUp(solved, reactions);
  EstimateRounding(solved, sizes, reactions);
  FindBackwardError(solved, sizes, reactions);
  reactions.residual = FindLargestDof(reactions.r, reactions.endScales, &solved.isHeld);
}

}  // namespace kvx
