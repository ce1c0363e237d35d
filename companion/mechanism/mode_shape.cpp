#include "mechanism/mode_shape.h"

#include <algorithm>
#include <cmath>

namespace kvx {

using korvex::DofsPerNode;
using korvex::Vector3;

namespace {

// Nodes that move less than this beside the farthest one stand still.
constexpr double StandsStill = 1e-4;

// A rigid body's nodes are where they should be within this part of the farthest motion: to be
// told so in words, and to be tried as one. Beside parts that are 1e8 times as stiff, a mode of
// thin plates has errors of some percent.
constexpr double ToldAsRigid = 1e-3;
constexpr double TriedAsRigid = 0.1;

// As many elements as a message names.
constexpr std::size_t MostElements = 6;

const double* DofsOf(const std::vector<double>& v, std::size_t node) {
  return &v[node * DofsPerNode];
}

double SizeOf(const double* dofs, double length) {
  return std::max({std::abs(dofs[0]), std::abs(dofs[1]), std::abs(dofs[2]),
                   length * std::abs(dofs[3]), length * std::abs(dofs[4]),
                   length * std::abs(dofs[5])});
}

// Centroid, radius and largest coordinate of the nodes.
Body MeasureBody(const korvex::ModelTables& tables, const std::vector<std::int32_t>& nodes) {
  Body body;
  const auto count = static_cast<double>(nodes.size());
  for (const std::int32_t node : nodes) {
    const Vector3 place = PlaceOf(tables, node);
    for (std::size_t i = 0; i < 3; ++i) {
      body.centroid[i] += place[i] / count;
      body.largest = std::max(body.largest, std::abs(place[i]));
    }
  }
  double sum = 0.0;
  for (const std::int32_t node : nodes) {
    const Vector3 r = korvex::Subtract(PlaceOf(tables, node), body.centroid);
    sum += (r[0] * r[0] + r[1] * r[1] + r[2] * r[2]) / count;
  }
  body.radius = std::sqrt(sum);
  return body;
}

// Whether all nodes move with u = t + w x r, theta = w, with the mean of t and w. tolerance: over
// the farthest motion.
bool IsRigid(const korvex::ModelTables& tables, const Mechanism& mechanism, double tolerance,
             Vector3& t, Vector3& w) {
  t = {}, w = {};
  const auto count = static_cast<double>(mechanism.nodes.size());
  double farthest = 0.0;
  for (const std::array<double, 6>& u : mechanism.displacements) {
    for (std::size_t i = 0; i < 3; ++i) {
      t[i] += u[i] / count;
      w[i] += u[3 + i] / count;
    }
    farthest = std::max(farthest, SizeOf(u.data(), mechanism.body.radius));
  }
  for (std::size_t k = 0; k < mechanism.nodes.size(); ++k) {
    const Vector3 r =
        korvex::Subtract(PlaceOf(tables, mechanism.nodes[k]), mechanism.body.centroid);
    const Vector3 turn = korvex::Cross(w, r);
    std::array<double, 6> rest = mechanism.displacements[k];
    for (std::size_t i = 0; i < 3; ++i) {
      rest[i] -= t[i] + turn[i];
      rest[3 + i] -= w[i];
    }
    if (SizeOf(rest.data(), mechanism.body.radius) > tolerance * farthest) return false;
  }
  return true;
}

// Fills nodes, displacements and body.
void ListMovingNodes(const korvex::Model& model, const std::vector<double>& v,
                     Mechanism& mechanism) {
  const auto nodes = static_cast<std::size_t>(model.Tables.NPOIN);
  // Rotations count with the size of what moves at all, which is first taken as all that moves.
  std::vector<std::int32_t> moving;
  for (std::size_t node = 0; node < nodes; ++node) {
    if (SizeOf(DofsOf(v, node), 1.0) > 0.0) moving.push_back(static_cast<std::int32_t>(node));
  }
  const double length = MeasureBody(model.Tables, moving).radius;
  double farthest = 0.0;
  for (const std::int32_t node : moving) {
    farthest = std::max(farthest, SizeOf(DofsOf(v, static_cast<std::size_t>(node)), length));
  }
  for (const std::int32_t node : moving) {
    const double* dofs = DofsOf(v, static_cast<std::size_t>(node));
    // With one moving node the length is 0: then it moves by whatever it does.
    if (length > 0.0 && !(SizeOf(dofs, length) > StandsStill * farthest)) continue;
    mechanism.nodes.push_back(node);
    mechanism.displacements.push_back({dofs[0], dofs[1], dofs[2], dofs[3], dofs[4], dofs[5]});
  }
  mechanism.body = MeasureBody(model.Tables, mechanism.nodes);
}

}  // namespace

void DescribeMode(const korvex::Model& model, const std::vector<double>& v, Mechanism& mechanism) {
  ListMovingNodes(model, v, mechanism);
  Vector3 t{}, w{};
  if (IsRigid(model.Tables, mechanism, ToldAsRigid, t, w)) {
    mechanism.motions = {MakeRigidMotion(mechanism.body, t, w)};
  }
}

bool MakeRigid(const korvex::Model& model, std::vector<double>& v) {
  Mechanism mechanism;
  ListMovingNodes(model, v, mechanism);
  Vector3 t{}, w{};
  if (!IsRigid(model.Tables, mechanism, TriedAsRigid, t, w)) return false;
  std::fill(v.begin(), v.end(), 0.0);
  for (const std::int32_t node : mechanism.nodes) {
    const Vector3 turn =
        korvex::Cross(w, korvex::Subtract(PlaceOf(model.Tables, node), mechanism.body.centroid));
    double* u = &v[static_cast<std::size_t>(node) * DofsPerNode];
    for (std::size_t i = 0; i < 3; ++i) {
      u[i] = t[i] + turn[i];
      u[3 + i] = w[i];
    }
  }
  return true;
}

void ListElementsBeside(const korvex::Model& model, Mechanism& mechanism) {
  std::vector<bool> moves(static_cast<std::size_t>(model.Tables.NPOIN), false);
  for (const std::int32_t node : mechanism.nodes) moves[static_cast<std::size_t>(node)] = true;
  std::vector<ElementRef> atNode;
  ForAllElements(model.Tables, [&](const ElementRef& ref, const ElementNodes& element) {
    const std::int32_t* end = element.nodes + element.count;
    const auto moving =
        static_cast<std::size_t>(std::count_if(element.nodes, end, [&](std::int32_t node) {
          return moves[static_cast<std::size_t>(node)];
        }));
    if (moving > 0 && moving < element.count && mechanism.elements.size() < MostElements) {
      mechanism.elements.push_back(ref);
    }
    if (atNode.size() < MostElements && std::find(element.nodes, end, mechanism.node) != end) {
      atNode.push_back(ref);
    }
  });
  if (mechanism.elements.empty()) mechanism.elements = atNode;
}

}  // namespace kvx
