#include "check/rigid_motions.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace kvx {

using korvex::Cross;
using korvex::Length;
using korvex::Subtract;
using korvex::Vector3;

namespace {

constexpr double Epsilon = std::numeric_limits<double>::epsilon();

// t and s w.
using Vector6 = std::array<double, 6>;
using Matrix6 = std::array<Vector6, 6>;

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

double DotRotation(const Vector6& a, const Vector6& b) {
  return a[3] * b[3] + a[4] * b[4] + a[5] * b[5];
}

// Adds factor * a to b.
template <typename Vector>
void AddScaled(double factor, const Vector& a, Vector& b) {
  for (std::size_t i = 0; i < a.size(); ++i) b[i] += factor * a[i];
}

// Where the columns' rotations and lengths refer to.
struct Reference {
  Vector3 origin{};
  double scale = 1.0;
};

Reference ChooseReference(const Body& body, const std::vector<SupportPoint>& supports) {
  Reference reference;
  for (const SupportPoint& support : supports) {
    AddScaled(1.0 / static_cast<double>(supports.size()), support.place, reference.origin);
  }
  double reach = 0.0;
  for (const SupportPoint& support : supports) {
    reach = std::max(reach, Length(Subtract(support.place, reference.origin)));
  }
  // Supports within some roundings of one place are at one place.
  constexpr double RoundingsApart = 64.0;
  if (reach <= RoundingsApart * Epsilon * body.largest) reach = body.radius;
  reference.scale = reach > 0.0 ? reach : 1.0;
  return reference;
}

// The row of a fixed dof: displacement or rotation d at the place r from the origin, over the
// scale.
Vector6 RowOf(const Vector3& r, std::size_t dof) {
  Vector6 row{};
  row[dof] = 1.0;
  if (dof >= 3) return row;
  Vector3 axis{};
  axis[dof] = 1.0;
  const Vector3 moment = Cross(r, axis);
  std::copy(moment.begin(), moment.end(), row.begin() + 3);
  return row;
}

// Rotates the row into the upper triangle R: afterwards R^T R has grown by row^T row.
void AddRow(Vector6 row, Matrix6& R) {
  for (std::size_t k = 0; k < 6; ++k) {
    if (row[k] == 0.0) continue;
    // Entries are of the order of 1: no square overflows, as it might without the scale.
    const double length = std::sqrt(R[k][k] * R[k][k] + row[k] * row[k]);
    const double c = R[k][k] / length, s = row[k] / length;
    for (std::size_t j = k; j < 6; ++j) {
      const double above = R[k][j], below = row[j];
      R[k][j] = c * above + s * below;
      row[j] = c * below - s * above;
    }
    row[k] = 0.0;
  }
}

// The singular values of R and its right singular vectors, V[k] the vector of values[k].
struct Singular {
  Vector6 values{};
  Matrix6 V{};
};

// Turns the columns a and b of R, and the vectors with them, until the columns are orthogonal.
// Returns whether there was anything to turn. columns: of R, columns[k] is column k.
bool TurnPair(std::size_t a, std::size_t b, Matrix6& columns, Matrix6& V) {
  double alpha = 0.0, beta = 0.0, gamma = 0.0;
  for (std::size_t i = 0; i < 6; ++i) {
    alpha += columns[a][i] * columns[a][i];
    beta += columns[b][i] * columns[b][i];
    gamma += columns[a][i] * columns[b][i];
  }
  if (std::abs(gamma) <= Epsilon * std::sqrt(alpha * beta)) return false;
  const double zeta = (beta - alpha) / (2.0 * gamma);
  const double t = std::copysign(1.0 / (std::abs(zeta) + std::hypot(1.0, zeta)), zeta);
  const double c = 1.0 / std::hypot(1.0, t), s = c * t;
  for (Matrix6* matrix : {&columns, &V}) {
    for (std::size_t i = 0; i < 6; ++i) {
      double& x = (*matrix)[a][i];
      double& y = (*matrix)[b][i];
      const double old = x;
      x = c * old - s * y;
      y = s * old + c * y;
    }
  }
  return true;
}

Singular Decompose(const Matrix6& R) {
  Matrix6 columns{};
  Singular singular;
  for (std::size_t k = 0; k < 6; ++k) {
    for (std::size_t i = 0; i < 6; ++i) columns[k][i] = R[i][k];
    singular.V[k][k] = 1.0;
  }
  // Some six sweeps suffice for order 6; the bound is for numbers that never settle.
  constexpr int MaxSweeps = 40;
  bool turned = true;
  for (int sweep = 0; turned && sweep < MaxSweeps; ++sweep) {
    turned = false;
    for (std::size_t a = 0; a < 5; ++a) {
      for (std::size_t b = a + 1; b < 6; ++b) turned |= TurnPair(a, b, columns, singular.V);
    }
  }
  for (std::size_t k = 0; k < 6; ++k) {
    double sum = 0.0;
    for (const double entry : columns[k]) sum += entry * entry;
    singular.values[k] = std::sqrt(sum);
  }
  return singular;
}

// The rows of all supports, reduced to a triangle, and how many they are.
struct Constraints {
  Matrix6 R{};
  double rows = 0.0;
  std::uint8_t directions = 0;  // dofs that are fixed anywhere
};

Constraints ReduceRows(const std::vector<SupportPoint>& supports, const Reference& reference) {
  Constraints constraints;
  for (const SupportPoint& support : supports) {
    Vector3 r = Subtract(support.place, reference.origin);
    for (double& value : r) value /= reference.scale;
    constraints.directions |= support.fixed;
    for (std::size_t d = 0; d < 6; ++d) {
      if ((support.fixed >> d & 1U) == 0) continue;
      AddRow(RowOf(r, d), constraints.R);
      constraints.rows += 1.0;
    }
  }
  return constraints;
}

// What rounding can make of a singular value of 0: each coordinate is off by half a unit in the
// last place, so the matrix by less than Epsilon * largest / scale * sqrt(rows), and the rotations
// add some Epsilon each. The factor 8 is a margin.
double RankTolerance(const Body& body, const Reference& reference, double rows) {
  constexpr double Margin = 8.0;
  return Margin * Epsilon * (rows + std::sqrt(rows) * (1.0 + body.largest / reference.scale));
}

bool IsFree(const Constraints& constraints, std::size_t axis) {
  return (constraints.directions >> axis & 1U) == 0;
}

// A turning motion as the screw nearest to the body. moving: its displacement at the centroid, for
// a turn of 1 about the unit vector `axis`. As motions along the free global axes are named
// already, they may be added: so that the pitch is 0, and the axis passes near the centroid.
RigidMotion MakeScrew(const Body& body, const Constraints& constraints, const Vector3& axis,
                      Vector3 moving) {
  Vector3 slide{};  // the axis, projected on the free directions
  for (std::size_t d = 0; d < 3; ++d) {
    if (!IsFree(constraints, d)) continue;
    moving[d] = 0.0;
    slide[d] = axis[d];
  }
  // An axis that is all but square to the free directions gains nothing from them.
  constexpr double Square = 1e-9;
  const double share = Dot(slide, slide);
  if (share > Square) AddScaled(-Dot(moving, axis) / share, slide, moving);
  RigidMotion motion;
  motion.turns = true;
  motion.direction = axis;
  motion.pitch = Dot(moving, axis);
  const Vector3 toAxis = Cross(axis, moving);
  for (std::size_t i = 0; i < 3; ++i) motion.point[i] = body.centroid[i] + toAxis[i];
  // A pitch below a millionth of the size is rounding.
  constexpr double NoPitch = 1e-6;
  if (std::abs(motion.pitch) < NoPitch * (body.radius + Length(moving))) motion.pitch = 0.0;
  return motion;
}

RigidMotion MakeTranslation(const Vector3& along) {
  RigidMotion motion;
  motion.direction = korvex::Normalise(along);
  return motion;
}

// The motion t, s w at the origin. constraints: its free directions may be added.
RigidMotion MakeMotion(const Body& body, const Reference& reference, const Constraints& constraints,
                       const Vector6& vector) {
  const double turn = std::sqrt(DotRotation(vector, vector));
  const Vector3 t{vector[0], vector[1], vector[2]};
  if (turn <= Epsilon) return MakeTranslation(t);
  const Vector3 axis{vector[3] / turn, vector[4] / turn, vector[5] / turn};
  Vector3 moving = Cross(axis, Subtract(body.centroid, reference.origin));
  AddScaled(reference.scale / turn, t, moving);
  return MakeScrew(body, constraints, axis, moving);
}

// Makes the rotations of the vectors orthonormal (Gram & Schmidt, twice, the largest first). Those
// without a rotation go to `others`: displacements of a body whose axis is out of sight.
void SeparateRotations(std::vector<Vector6>& vectors, std::vector<Vector6>& others) {
  constexpr double NoTurn = 1e-10;
  for (std::size_t k = 0; k < vectors.size(); ++k) {
    const auto first = vectors.begin() + static_cast<std::ptrdiff_t>(k);
    std::iter_swap(first, std::max_element(first, vectors.end(), [](const auto& a, const auto& b) {
                     return DotRotation(a, a) < DotRotation(b, b);
                   }));
    const double length = std::sqrt(DotRotation(*first, *first));
    if (length <= NoTurn) {
      others.assign(first, vectors.end());
      vectors.erase(first, vectors.end());
      return;
    }
    for (double& value : *first) value /= length;
    for (auto other = first + 1; other != vectors.end(); ++other) {
      for (int pass = 0; pass < 2; ++pass) AddScaled(-DotRotation(*first, *other), *first, *other);
    }
  }
}

// The directions in which the axes of the free rotations are named: global axes where they may be.
std::vector<Vector3> ChooseAxes(const std::vector<Vector6>& vectors) {
  const auto rotation = [&](std::size_t k) {
    return Vector3{vectors[k][3], vectors[k][4], vectors[k][5]};
  };
  if (vectors.size() == 3) return {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
  if (vectors.size() == 1) return {rotation(0)};
  if (vectors.empty()) return {};
  // Two: in the plane across n. The global axis nearest to the plane, projected on it.
  const Vector3 n = Cross(rotation(0), rotation(1));
  const auto nearest = static_cast<std::size_t>(
      std::min_element(n.begin(), n.end(),
                       [](double a, double b) { return std::abs(a) < std::abs(b); }) -
      n.begin());
  Vector3 first{};
  first[nearest] = 1.0;
  AddScaled(-n[nearest], n, first);
  first = korvex::Normalise(first);
  return {first, Cross(n, first)};
}

void ListFreeMotions(const Body& body, const Reference& reference, const Constraints& constraints,
                     std::vector<Vector6>& turns, Holding& holding) {
  for (std::size_t d = 0; d < 3; ++d) {
    if (!IsFree(constraints, d)) continue;
    Vector3 axis{};
    axis[d] = 1.0;
    holding.freeMotions.push_back(MakeTranslation(axis));
  }
  std::vector<Vector6> others;
  SeparateRotations(turns, others);
  for (const Vector6& other : others) {
    holding.freeMotions.push_back(MakeTranslation({other[0], other[1], other[2]}));
  }
  for (const Vector3& axis : ChooseAxes(turns)) {
    Vector6 vector{};
    for (const Vector6& turn : turns) {
      AddScaled(axis[0] * turn[3] + axis[1] * turn[4] + axis[2] * turn[5], turn, vector);
    }
    holding.freeMotions.push_back(MakeMotion(body, reference, constraints, vector));
  }
}

// The motion that the supports hold worst, with lengths over the body's radius: only then does
// `grip` compare with the motion of the body.
void FindWeakest(const Body& body, const std::vector<SupportPoint>& supports, Holding& holding) {
  Reference reference{body.centroid, body.radius > 0.0 ? body.radius : 1.0};
  const Constraints constraints = ReduceRows(supports, reference);
  const Singular singular = Decompose(constraints.R);
  const auto least = static_cast<std::size_t>(
      std::min_element(singular.values.begin(), singular.values.end()) - singular.values.begin());
  holding.grip = singular.values[least] / std::sqrt(static_cast<double>(supports.size()));
  holding.weakest = MakeMotion(body, reference, constraints, singular.V[least]);
}

}  // namespace

void FindFreeMotions(const Body& body, const std::vector<SupportPoint>& supports,
                     Holding& holding) {
  holding = {};
  constexpr std::uint8_t Clamped = 0x3F;
  if (std::any_of(supports.begin(), supports.end(),
                  [](const SupportPoint& support) { return support.fixed == Clamped; })) {
    return;
  }
  const Reference reference = ChooseReference(body, supports);
  const Constraints constraints = ReduceRows(supports, reference);
  const Singular singular = Decompose(constraints.R);
  const double tolerance = RankTolerance(body, reference, constraints.rows);
  std::vector<Vector6> turns;
  bool isFree = false;
  for (std::size_t k = 0; k < 6; ++k) {
    if (singular.values[k] > tolerance) continue;
    isFree = true;
    // A global axis along which nothing is fixed is an empty column, which no rotation changes:
    // its vector is the axis itself.
    if (k < 3 && IsFree(constraints, k)) continue;
    turns.push_back(singular.V[k]);
  }
  if (isFree) {
    ListFreeMotions(body, reference, constraints, turns, holding);
  } else {
    FindWeakest(body, supports, holding);
  }
}

RigidMotion MakeRigidMotion(const Body& body, const Vector3& displacement,
                            const Vector3& rotation) {
  // An axis a million radii away is out of sight.
  constexpr double OutOfSight = 1e-6;
  const double turn = Length(rotation);
  if (turn * body.radius <= OutOfSight * Length(displacement)) return MakeTranslation(displacement);
  Constraints noFreeAxes;
  noFreeAxes.directions = 0x07;
  Vector3 axis = rotation, moving = displacement;
  for (std::size_t i = 0; i < 3; ++i) {
    axis[i] /= turn;
    moving[i] /= turn;
  }
  return MakeScrew(body, noFreeAxes, axis, moving);
}

}  // namespace kvx
