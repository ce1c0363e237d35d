// The routines of shell_lanes.h for any number of lanes.
#pragma once

#include "shell/element_parts.h"
#include "shell/lanes/lane_number-inl.h"
#include "shell/lanes/shell_lanes.h"
#include "shell/quad_membrane-inl.h"
#include "shell/quad_plate-inl.h"
#include "shell/shell_stress-inl.h"

namespace korvex {
namespace {

// What SetUpPart reads of an element.
template <typename Number>
struct ShellGeometry {
  std::array<Number, 12> Coordinates;
  FrameOf<Number> Frame;
  Number E, Mu, TK;
};

template <typename Number>
void LoadGeometry(const double* numbers, ShellGeometry<Number>& geometry) {
  const auto load = [&numbers](Number& number) {
    number = LoadLanes<Number>(numbers);
    numbers += Number::Lanes;
  };
  for (std::size_t i = 0; i < 12; ++i) load(geometry.Coordinates[i]);
  for (std::size_t i = 0; i < 9; ++i) load(geometry.Frame[i]);
  load(geometry.E), load(geometry.Mu), load(geometry.TK);
}

// The two parts of an element's stiffness in its local axes. The dofs of a node are two triples,
// its displacements and its rotations, and the parts are uncoupled.
enum Part { Membrane, Plate };
template <typename Number>
struct ShellParts {
  QuadMembraneOf<Number> membrane;
  QuadPlateOf<Number> plate;
};
constexpr Part PartOf[2][3] = {{Membrane, Membrane, Plate}, {Plate, Plate, Membrane}};
constexpr std::int32_t PlaceInPart[2][3] = {{0, 1, 0}, {1, 2, 2}};  // among the node's three dofs

// Whether the tables say the same as those of the single routine.
constexpr bool HavePlacesOfParts() {
  for (std::int32_t dof = 0; dof < 6; ++dof) {
    const std::int32_t triple = dof / 3, i = dof % 3;
    const std::int32_t* const places = PartOf[triple][i] == Membrane ? MembranePlace : PlatePlace;
    if (places[PlaceInPart[triple][i]] != dof) return false;
  }
  return true;
}
static_assert(HavePlacesOfParts());

// Forms the block of the triples RowTriple of node a and ColumnTriple of node b in global axes: as
// RotateMatrixToGlobal does, in its order, but without the terms with entries that are zero because
// the parts are uncoupled. They would change nothing: a sum that begins with 0.0 is never -0.
template <int RowTriple, int ColumnTriple, typename Number>
[[gnu::always_inline]] inline void FormBlock(const ShellParts<Number>& parts,
                                             const FrameOf<Number>& frame, std::int32_t a,
                                             std::int32_t b, Number (&block)[3][3]) {
  const Number* const R = frame.data();
  Number rotated[3][3];  // L^T K
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      const Part part = PartOf[ColumnTriple][j];
      const Number* const K = part == Membrane ? &parts.membrane.K[0] : &parts.plate.K[0];
      Number sum = 0.0;
      for (int k = 0; k < 3; ++k) {
        if (PartOf[RowTriple][k] != part) continue;
        sum += R[3 * i + k] *
               K[(3 * a + PlaceInPart[RowTriple][k]) * 12 + 3 * b + PlaceInPart[ColumnTriple][j]];
      }
      rotated[i][j] = sum;
    }
  }
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      block[i][j] = 0.0 + rotated[i][0] * R[3 * j] + rotated[i][1] * R[3 * j + 1] +
                    rotated[i][2] * R[3 * j + 2];
    }
  }
}

// Forms a block, as above, and adds it to the systems; of a block on the diagonal, the upper
// triangle. nodes: of the shell; the other arguments as for AddShells.
template <int RowTriple, int ColumnTriple, typename Number>
void AddBlock(const ShellParts<Number>& parts, const FrameOf<Number>& R, std::int32_t a,
              std::int32_t b, const std::int32_t* nodes, const std::int64_t* diagonalAddress,
              double* values) {
  Number block[3][3];
  FormBlock<RowTriple, ColumnTriple>(parts, R, a, b, block);
  const bool isDiagonal = a == b && RowTriple == ColumnTriple;
  for (int i = 0; i < 3; ++i) {
    for (int j = 0; j < 3; ++j) {
      if (isDiagonal && i > j) continue;
      const std::int64_t row = nodes[a] * 6 + 3 * RowTriple + i;
      const std::int64_t column = nodes[b] * 6 + 3 * ColumnTriple + j;
      const std::int64_t hi = row > column ? row : column, lo = row > column ? column : row;
      double* const entry = values + (diagonalAddress[hi] + (hi - lo)) * Number::Lanes;
      StoreLanes(entry, LoadLanes<Number>(entry) + block[i][j]);
    }
  }
}

// Adds the blocks of the pairs of nodes a <= b.
template <typename Number>
void AddBlocks(const ShellParts<Number>& parts, const FrameOf<Number>& R, const std::int32_t* nodes,
               const std::int64_t* diagonalAddress, double* values) {
  for (std::int32_t a = 0; a < 4; ++a) {
    for (std::int32_t b = a; b < 4; ++b) {
      AddBlock<0, 0>(parts, R, a, b, nodes, diagonalAddress, values);
      AddBlock<0, 1>(parts, R, a, b, nodes, diagonalAddress, values);
      if (a != b) AddBlock<1, 0>(parts, R, a, b, nodes, diagonalAddress, values);
      AddBlock<1, 1>(parts, R, a, b, nodes, diagonalAddress, values);
    }
  }
}

template <typename Number>
void AddShells(const ShellLanes& shells, const std::int64_t* diagonalAddress, double* values) {
  ShellGeometry<Number> geometry;
  ShellParts<Number> parts;
  for (std::int64_t e = 0; e < shells.count; ++e) {
    LoadGeometry(shells.numbers + e * ShellNumbers * Number::Lanes, geometry);
    SetUpPart<4>(geometry, parts.membrane);
    parts.membrane.template Stiffness<Extent::UpperNodes>();
    SetUpPart<4>(geometry, parts.plate);
    parts.plate.template Stiffness<Extent::UpperNodes>();
    AddBlocks(parts, geometry.Frame, shells.nodes + 4 * e, diagonalAddress, values);
  }
}

// Forms the rows of the triple RowTriple of node a.
template <int RowTriple, typename Number>
void FormRows(const ShellParts<Number>& parts, const FrameOf<Number>& R, std::int32_t a,
              Number (&rows)[3][24]) {
  Number block[3][3];
  const auto copy = [&](std::int32_t column) {
    for (int i = 0; i < 3; ++i) {
      for (int j = 0; j < 3; ++j) rows[i][column + j] = block[i][j];
    }
  };
  for (std::int32_t b = 0; b < 4; ++b) {
    FormBlock<RowTriple, 0>(parts, R, a, b, block);
    copy(6 * b);
    FormBlock<RowTriple, 1>(parts, R, a, b, block);
    copy(6 * b + 3);
  }
}

// Copies rows `first` to first + 2 to the lanes' matrices, and adds them to the sums.
template <typename Number>
void StoreRows(const Number (&rows)[3][24], std::int32_t first, double* const* matrices,
               Number& sum) {
  for (int i = 0; i < 3; ++i) {
    double numbers[24 * Number::Lanes];
    for (int j = 0; j < 24; ++j) {
      sum += rows[i][j];
      StoreLanes(numbers + j * Number::Lanes, rows[i][j]);
    }
    for (int lane = 0; lane < Number::Lanes; ++lane) {
      double* const row = matrices[lane] + (first + i) * 24;
      // cppcheck-suppress uninitvar; StoreLanes writes them
      for (int j = 0; j < 24; ++j) row[j] = numbers[j * Number::Lanes + lane];
    }
  }
}

template <typename Number>
void FormShells(const double* numbers, double* const* matrices, double* sums) {
  static_assert(Number::Lanes <= MaxShellLanes);
  ShellGeometry<Number> geometry;
  ShellParts<Number> parts;
  LoadGeometry(numbers, geometry);
  SetUpPart<4>(geometry, parts.membrane);
  parts.membrane.Stiffness();
  SetUpPart<4>(geometry, parts.plate);
  parts.plate.Stiffness();
  Number sum = 0.0, rows[3][24];
  for (std::int32_t a = 0; a < 4; ++a) {
    FormRows<0>(parts, geometry.Frame, a, rows);
    StoreRows(rows, 6 * a, matrices, sum);
    FormRows<1>(parts, geometry.Frame, a, rows);
    StoreRows(rows, 6 * a + 3, matrices, sum);
  }
  StoreLanes(sums, sum);
}

// Computes the stresses of the shells at one place. terms: scratch.
template <typename Number>
void RecoverPlace(const ShellGeometry<Number>& geometry, const std::int32_t* nodes,
                  const double* displacements, ShellStressTerms<Number>& terms, double* stresses) {
  Number d[24];
  for (std::int32_t i = 0; i < 24; ++i) {
    const std::int64_t equation = std::int64_t{nodes[i / 6]} * 6 + i % 6;
    d[i] = LoadLanes<Number>(displacements + equation * Number::Lanes);
  }
  SetUpTerms(geometry, d, terms);
  for (std::int32_t k = 0; k < 4; ++k) {
    std::array<StressOf<Number>, 2> faces;
    FormShell4Stress(geometry, terms, CornerXi[k], CornerEta[k], faces[0], faces[1]);
    for (const StressOf<Number>& face : faces) {
      for (const Number& component : face) {
        StoreLanes(stresses, component);
        stresses += Number::Lanes;
      }
    }
  }
}

template <typename Number>
void RecoverShells(const ShellLanes& shells, const double* displacements, double* stresses) {
  ShellGeometry<Number> geometry;
  ShellStressTerms<Number> terms;
  for (std::int64_t e = 0; e < shells.count; ++e) {
    LoadGeometry(shells.numbers + e * ShellNumbers * Number::Lanes, geometry);
    RecoverPlace(geometry, shells.nodes + 4 * e, displacements, terms,
                 stresses + e * ShellStresses * Number::Lanes);
  }
}

}  // namespace
}  // namespace korvex
