// The routines of quad_plate.h for any kind of number.
#pragma once

#include <cmath>

#include "shell/quad_plate.h"

namespace korvex {

// A unit vector in the element's plane.
template <typename Number>
struct PlaneDirection {
  Number cosine, sine;
};

template <typename Number>
inline PlaneDirection<Number> NormaliseDirection(Number dx, Number dy) {
  using std::sqrt;
  const Number length = sqrt(dx * dx + dy * dy);
  return {dx / length, dy / length};
}

// The directions of an element's mid-lines.
template <typename Number>
struct MidLines {
  PlaneDirection<Number> xi, eta;
};

// x, y: 4 each, local node coordinates.
template <typename Number>
inline MidLines<Number> FindMidLines(const ArrayOf4<Number>& x, const ArrayOf4<Number>& y) {
  return {NormaliseDirection((x[1] + x[2]) / 2.0 - (x[0] + x[3]) / 2.0,
                             (y[1] + y[2]) / 2.0 - (y[0] + y[3]) / 2.0),
          NormaliseDirection((x[2] + x[3]) / 2.0 - (x[0] + x[1]) / 2.0,
                             (y[2] + y[3]) / 2.0 - (y[0] + y[1]) / 2.0)};
}

template <typename Number>
void QuadPlateOf<Number>::Init() {
  nodes = 4;
  dofsPerNode = 3;
  dimension = 2;
  curvatures = 3;
  dofs = 12;
}

template <typename Number>
void QuadPlateOf<Number>::ShapeFunctions(double xi, double eta) {
  BilinearFunctions(xi, eta, N);
  BilinearDerivatives(xi, eta, dN);
}

template <typename Number>
void QuadPlateOf<Number>::Jacobian() {
  BilinearJacobian(dN, x, y, J, detJ, Jinv, dNdx);
}

template <typename Number>
void QuadPlateOf<Number>::CurvatureMatrix() {
  Bb.fill(0.0);
  for (std::size_t k = 0; k < 4; ++k) {
    const Number dx = dNdx[k];
    const Number dy = dNdx[4 + k];
    Bb[3 * k + 2] = dx;        // kx = d(ry)/dx
    Bb[12 + 3 * k + 1] = -dy;  // ky = -d(rx)/dy
    Bb[24 + 3 * k + 1] = -dx;  // kxy = d(ry)/dy - d(rx)/dx
    Bb[24 + 3 * k + 2] = dy;
  }
}

template <typename Number>
void QuadPlateOf<Number>::BendingRigidity() {
  PlateRigidityMatrix(E, Mu, TK, Db);
}

// The covariant shear strains at the midpoints of the edges are interpolated linearly between
// opposite edges and transformed into gxz and gyz. The transformation uses the directions of the
// element's mid-lines for xi and eta, not the directions at the point; in a distorted element the
// two differ, and this is a property of the element.
// plate: its coordinates are read, and its Bs is filled; lines: its mid-lines; the others as for
// ShearStrainMatrix.
template <typename Number>
inline void FillShearStrains(const MidLines<Number>& lines, Number detJPoint, double xi, double eta,
                             QuadPlateOf<Number>& plate) {
  using std::fabs;
  using std::sqrt;
  const Number x1 = plate.x[0], x2 = plate.x[1], x3 = plate.x[2], x4 = plate.x[3];
  const Number y1 = plate.y[0], y2 = plate.y[1], y3 = plate.y[2], y4 = plate.y[3];

  // 4 dx/dxi = ax + cx eta, 4 dx/deta = bx + cx xi, and the same of y.
  const Number ax = -x1 + x2 + x3 - x4, bx = -x1 - x2 + x3 + x4, cx = x1 - x2 + x3 - x4;
  const Number ay = -y1 + y2 + y3 - y4, by = -y1 - y2 + y3 + y4, cy = y1 - y2 + y3 - y4;
  const Number xXi = ax + cx * eta, yXi = ay + cy * eta;
  const Number xEta = bx + cx * xi, yEta = by + cy * xi;
  const Number Pxi = 0.125 * sqrt(xXi * xXi + yXi * yXi) / fabs(detJPoint);
  const Number Peta = 0.125 * sqrt(xEta * xEta + yEta * yEta) / fabs(detJPoint);
  const Number fA = (1.0 - xi) * Pxi, fB = (1.0 + xi) * Pxi;
  const Number gA = (1.0 - eta) * Peta, gB = (1.0 + eta) * Peta;

  // Columns: w, rx, ry of each node. Each has one term from the node's edge along xi (gA, gB) and
  // one from its edge along eta (fA, fB).
  const Number sinA = lines.xi.sine, cosA = lines.xi.cosine;
  const Number sinB = lines.eta.sine, cosB = lines.eta.cosine;
  plate.Bs = {
      // gxz
      -0.5 * (gA * sinB - fA * sinA), -0.25 * ((y2 - y1) * gA * sinB - (y4 - y1) * fA * sinA),
      0.25 * ((x2 - x1) * gA * sinB - (x4 - x1) * fA * sinA), 0.5 * (fB * sinA + gA * sinB),
      -0.25 * ((y2 - y1) * gA * sinB - (y3 - y2) * fB * sinA),
      0.25 * ((x2 - x1) * gA * sinB - (x3 - x2) * fB * sinA), 0.5 * (gB * sinB - fB * sinA),
      -0.25 * ((y3 - y4) * gB * sinB - (y3 - y2) * fB * sinA),
      0.25 * ((x3 - x4) * gB * sinB - (x3 - x2) * fB * sinA), -0.5 * (gB * sinB + fA * sinA),
      -0.25 * ((y3 - y4) * gB * sinB - (y4 - y1) * fA * sinA),
      0.25 * ((x3 - x4) * gB * sinB - (x4 - x1) * fA * sinA),
      // gyz
      0.5 * (gA * cosB - fA * cosA), 0.25 * ((y2 - y1) * gA * cosB - (y4 - y1) * fA * cosA),
      -0.25 * ((x2 - x1) * gA * cosB - (x4 - x1) * fA * cosA), -0.5 * (fB * cosA + gA * cosB),
      0.25 * ((y2 - y1) * gA * cosB - (y3 - y2) * fB * cosA),
      -0.25 * ((x2 - x1) * gA * cosB - (x3 - x2) * fB * cosA), -0.5 * (gB * cosB - fB * cosA),
      0.25 * ((y3 - y4) * gB * cosB - (y3 - y2) * fB * cosA),
      -0.25 * ((x3 - x4) * gB * cosB - (x3 - x2) * fB * cosA), 0.5 * (gB * cosB + fA * cosA),
      0.25 * ((y3 - y4) * gB * cosB - (y4 - y1) * fA * cosA),
      -0.25 * ((x3 - x4) * gB * cosB - (x4 - x1) * fA * cosA)};
}

template <typename Number>
void QuadPlateOf<Number>::ShearStrainMatrix(Number detJPoint, double xi, double eta) {
  FillShearStrains(FindMidLines(x, y), detJPoint, xi, eta, *this);
}

template <typename Number>
template <Extent extent>
void QuadPlateOf<Number>::Stiffness() {
  using std::fabs;
  BendingRigidity();
  const Number c = E * TK / ((Mu + 1.0) * 2.0 * ShearCorrectionDivisor);
  Ds = {c, 0.0, 0.0, c};
  K.fill(0.0);
  const MidLines<Number> lines = FindMidLines(x, y);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      ShapeFunctions(GaussPoints[i], GaussPoints[j]);
      Jacobian();
      CurvatureMatrix();
      const Number s = fabs(detJ) * GaussWeights[i] * GaussWeights[j];
      AddStiffnessProduct<3, 12, 3, extent>(Bb.data(), Db.data(), s, K.data());
      FillShearStrains(lines, detJ, GaussPoints[i], GaussPoints[j], *this);
      AddStiffnessProduct<2, 12, 3, extent>(Bs.data(), Ds.data(), s, K.data());
    }
  }
}

}  // namespace korvex
