// Square plates under uniform and hydrostatic pressure, simply supported and clamped, thin and
// thick: on three meshes, halving the size each time, towards the exact deflection.
//
// What is compared are factors f of w = f p L^4 / D: at the centre for the uniform pressure p, at
// x = 3L/4 of the centre line for the hydrostatic pressure p x/L. Halving the mesh must divide the
// error by about four, for both elements: their curvatures are exact to first order (Bathe &
// Dvorkin 1985; Batoz, Bathe & Ho 1980).
#include <gtest/gtest.h>

#include <cmath>

#include "support/dof_names.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace korvex::test {
namespace {

constexpr double E = 2.1e5, Mu = 0.3, L = 10.0;
constexpr double Pressure = 1e-3;
constexpr double Pi = 3.14159265358979323846;

double Rigidity(double t) { return E * t * t * t / (12 * (1 - Mu * Mu)); }

enum class Edges { Supported, Clamped };
enum class PressureShape { Uniform, Hydrostatic };

struct Plate {
  std::string name;
  Cells cells;
  Edges edges;
  double slenderness;  // t / L
  PressureShape load;
  double exact;  // f
};

std::ostream& operator<<(std::ostream& out, const Plate& plate) { return out << plate.name; }

// Navier's series (Timoshenko & Woinowsky-Krieger 1959, sec. 30) at x, on the centre line y = L/2.
// Where the edges' rotations about their normals are held as well, each term of a plate that shears
// is the thin plate's times 1 + D k^2 / (5/6 G t) (Wang, Reddy & Lee 2000, ch. 6).
double SumNavierSeries(PressureShape load, double slenderness, double x) {
  const double t = slenderness * L;
  const double shear = Rigidity(t) / (5.0 / 6.0 * E / (2 * (1 + Mu)) * t);
  double f = 0.0;
  // The terms fall as m^-4 at least, in alternating signs: 200 of them give nine digits.
  for (int m = 1; m < 200; ++m) {
    for (int n = 1; n < 200; n += 2) {
      if (load == PressureShape::Uniform && m % 2 == 0) continue;
      // The load's own coefficients, in p: 16 / (pi^2 m n) for odd m, and of p x/L half of that
      // for every m, in alternating signs.
      double q = 16 / (Pi * Pi * m * n);
      if (load == PressureShape::Hydrostatic) q *= m % 2 == 1 ? 0.5 : -0.5;
      const double k2 = Pi * Pi * (m * m + n * n);  // k^2 L^2
      f += q / (k2 * k2) * (1 + shear / (L * L) * k2) * std::sin(m * Pi * x / L) *
           std::sin(n * Pi / 2);
    }
  }
  return f;
}

// Half of the plate, cut along the centre line y = L/2; n cells across the half, 2 n along x. The
// plane's own displacements and the rotations about z are held: nothing strains there.
ModelText BuildPlate(const Plate& plate, int n) {
  ModelText model = BuildGrid(n, 2 * n, plate.cells, [](double s, double t) {
    // The short side runs along y; so that the normal is +z, from the centre line to the edge.
    return Point3{L * t, L / 2 * (1 - s), 0.0};
  });
  model.materials = {{E, Mu, 0.0}};
  model.thicknesses = {plate.slenderness * L};
  const bool clamped = plate.edges == Edges::Clamped;
  for (int j = 0; j <= 2 * n; ++j) {
    for (int i = 0; i <= n; ++i) {
      std::array<int, 6> fixed{};
      fixed[Ux] = fixed[Uy] = fixed[Rz] = 1;
      const bool edgeX = j == 0 || j == 2 * n, edgeY = i == n, middle = i == 0;
      if (edgeX || edgeY) fixed[Uz] = 1;
      if (edgeX || middle || (clamped && edgeY)) fixed[Rx] = 1;  // dw/dy = 0
      if (edgeY || (clamped && edgeX)) fixed[Ry] = 1;            // dw/dx = 0
      model.restraints.push_back({GridNode(n, i, j), fixed});
    }
  }
  return model;
}

template <typename Shells>
std::vector<ModelText::ShellLoad> LoadShells(const ModelText& model, const Shells& shells,
                                             PressureShape load) {
  std::vector<ModelText::ShellLoad> loads;
  for (std::size_t e = 0; e < shells.size(); ++e) {
    ModelText::ShellLoad row{static_cast<int>(e), {}};
    for (std::size_t k = 0; k < 3; ++k) {
      const double x = model.nodes[static_cast<std::size_t>(shells[e].nodes[k])][0];
      row.q[k] = load == PressureShape::Uniform ? Pressure : Pressure * x / L;
    }
    loads.push_back(row);
  }
  return loads;
}

// f on the mesh of n cells across the half.
double ComputeDeflection(const Plate& plate, int n) {
  ModelText text = BuildPlate(plate, n);
  text.shell4Loads = LoadShells(text, text.shells4, plate.load);
  text.shell3Loads = LoadShells(text, text.shells3, plate.load);
  Model model;
  SolveModel(text, model);
  const int row = plate.load == PressureShape::Uniform ? n : 3 * n / 2;
  const double w = NodeDisplacements(model, GridNode(n, 0, row))[Uz];
  return w * Rigidity(plate.slenderness * L) / (Pressure * L * L * L * L);
}

constexpr double Thin = 1e-3, Thick = 0.1;

// Clamped plates have no series of this kind. Their deflections are those of a Ritz solution, found
// apart: polynomials (1 - X^2)^2 (1 - Y^2)^2 Pi(X) Pj(Y) for the thin plate, X and Y from -1 to 1
// and P of Legendre; (1 - X^2) (1 - Y^2) Pi(X) Pj(Y) for the deflection and either slope of the
// thick one; i, j < 14, which leaves the digits given unchanged from 12. Published are 1.26532e-3
// (Taylor & Govindjee 2004) and 1.505e-3 (Wang, Reddy & Lee 2000).
constexpr double ClampedThinUniform = 1.265319e-3, ClampedThinHydrostatic = 4.426633e-4;
constexpr double ClampedThickUniform = 1.504625e-3, ClampedThickHydrostatic = 5.60828e-4;

std::vector<Plate> AllPlates() {
  std::vector<Plate> plates;
  const auto add = [&](Cells cells, Edges edges, double slenderness, PressureShape load,
                       double exact) {
    const std::string name = std::string(slenderness == Thin ? "Thin" : "Thick") +
                             (edges == Edges::Clamped ? "Clamped" : "Supported") +
                             (load == PressureShape::Uniform ? "Uniform" : "Hydrostatic") +
                             NameCells(cells);
    plates.push_back({name, cells, edges, slenderness, load, exact});
  };
  for (const Cells cells : {Cells::Quads, Cells::Triangles}) {
    for (const double slenderness : {Thin, Thick}) {
      // The triangle is a thin plate at any thickness.
      if (cells == Cells::Triangles && slenderness == Thick) continue;
      for (const PressureShape load : {PressureShape::Uniform, PressureShape::Hydrostatic}) {
        const double x = load == PressureShape::Uniform ? L / 2 : 3 * L / 4;
        add(cells, Edges::Supported, slenderness, load, SumNavierSeries(load, slenderness, x));
      }
    }
    add(cells, Edges::Clamped, Thin, PressureShape::Uniform, ClampedThinUniform);
    add(cells, Edges::Clamped, Thin, PressureShape::Hydrostatic, ClampedThinHydrostatic);
    if (cells == Cells::Triangles) continue;
    add(cells, Edges::Clamped, Thick, PressureShape::Uniform, ClampedThickUniform);
    add(cells, Edges::Clamped, Thick, PressureShape::Hydrostatic, ClampedThickHydrostatic);
  }
  return plates;
}

class Plates : public testing::TestWithParam<Plate> {};

INSTANTIATE_TEST_SUITE_P(All, Plates, testing::ValuesIn(AllPlates()),
                         [](const auto& plate) { return plate.param.name; });

// Cells across half of the plate.
constexpr std::array<int, 3> Meshes{4, 8, 16};

// Behind the leading term of the error comes one of the fourth power of the mesh size, whose share
// falls to a quarter from one pair of meshes to the next: measured orders from 1.94 to 2.14 between
// the first two, from 1.98 to 2.06 between the second two.
constexpr std::array<double, 2> OrderBounds{0.15, 0.07};

TEST_P(Plates, ConvergeWithTheSquareOfTheMeshSize) {
  const Plate& plate = GetParam();
  std::array<double, 3> errors{};
  for (std::size_t mesh = 0; mesh < 3; ++mesh) {
    errors[mesh] = ComputeDeflection(plate, Meshes[mesh]) / plate.exact - 1;
  }
  for (std::size_t mesh = 0; mesh < 2; ++mesh) {
    EXPECT_NEAR(std::log2(errors[mesh] / errors[mesh + 1]), 2.0, OrderBounds[mesh])
        << "errors " << errors[mesh] << " and " << errors[mesh + 1];
  }
  // The worst of them, a clamped plate off its centre.
  EXPECT_LT(std::fabs(errors[2]), 4e-3);
}

struct PublishedRow {
  Edges edges;
  double reference;              // f
  std::array<double, 3> ratios;  // f / reference, 8, 16 and 32 elements a side
};

// Thin plates of four-node elements with assumed shear strains, as this one (Ko, Lee, Lee & Bathe
// 2017, the MITC4 element). They are published with the reference 1.267e-3 for the clamped plate,
// which the Ritz solution above does not confirm. Half a unit of the fourth digit is the rounding
// of the publication.
TEST(PublishedPlates, AreMetToFourDigits) {
  const std::array<PublishedRow, 2> rows{{{Edges::Clamped, 1.267e-3, {.9871, .9958, .9980}},
                                          {Edges::Supported, 4.062e-3, {.9949, .9988, .9998}}}};
  for (const PublishedRow& row : rows) {
    const Plate plate{"", Cells::Quads, row.edges, Thin, PressureShape::Uniform, row.reference};
    for (std::size_t mesh = 0; mesh < 3; ++mesh) {
      EXPECT_NEAR(ComputeDeflection(plate, Meshes[mesh]) / row.reference, row.ratios[mesh], 0.5e-4)
          << "mesh " << mesh;
    }
  }
}

}  // namespace
}  // namespace korvex::test
