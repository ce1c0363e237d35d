#include "shell/quad_plate.h"

#include <cmath>

#include "shell/part_products.h"

namespace korvex {

namespace {

// A unit vector in the element's plane.
struct Direction {
  double cosine, sine;
};

Direction NormaliseDirection(double dx, double dy) {
  const double length = std::sqrt(dx * dx + dy * dy);
  return {dx / length, dy / length};
}

}  // namespace

void QuadPlate::Init() {
  nodes = 4;
  dofsPerNode = 3;
  dimension = 2;
  curvatures = 3;
  dofs = 12;
}

void QuadPlate::ShapeFunctions(double xi, double eta) {
  BilinearFunctions(xi, eta, N);
  BilinearDerivatives(xi, eta, dN);
}

void QuadPlate::Jacobian() { BilinearJacobian(dN, x, y, J, detJ, Jinv, dNdx); }

void QuadPlate::CurvatureMatrix() {
  Bb.fill(0.0);
  for (std::size_t k = 0; k < 4; ++k) {
    const double dx = dNdx[k];
    const double dy = dNdx[4 + k];
    Bb[3 * k + 2] = dx;        // kx = d(ry)/dx
    Bb[12 + 3 * k + 1] = -dy;  // ky = -d(rx)/dy
    Bb[24 + 3 * k + 1] = -dx;  // kxy = d(ry)/dy - d(rx)/dx
    Bb[24 + 3 * k + 2] = dy;
  }
}

void QuadPlate::BendingRigidity() { PlateRigidityMatrix(E, Mu, TK, Db); }

// The covariant shear strains at the midpoints of the edges are interpolated linearly between
// opposite edges and transformed into gxz and gyz. The transformation uses the directions of the
// element's mid-lines for xi and eta, not the directions at the point; in a distorted element the
// two differ, and this is a property of the element.
void QuadPlate::ShearStrainMatrix(double detJPoint, double xi, double eta) {
  const double x1 = x[0], x2 = x[1], x3 = x[2], x4 = x[3];
  const double y1 = y[0], y2 = y[1], y3 = y[2], y4 = y[3];
  const Direction a = NormaliseDirection((x2 + x3) / 2.0 - (x1 + x4) / 2.0,
                                         (y2 + y3) / 2.0 - (y1 + y4) / 2.0);  // along xi
  const Direction b = NormaliseDirection((x3 + x4) / 2.0 - (x1 + x2) / 2.0,
                                         (y3 + y4) / 2.0 - (y1 + y2) / 2.0);  // along eta

  // 4 dx/dxi = ax + cx eta, 4 dx/deta = bx + cx xi, and the same of y.
  const double ax = -x1 + x2 + x3 - x4, bx = -x1 - x2 + x3 + x4, cx = x1 - x2 + x3 - x4;
  const double ay = -y1 + y2 + y3 - y4, by = -y1 - y2 + y3 + y4, cy = y1 - y2 + y3 - y4;
  const double xXi = ax + cx * eta, yXi = ay + cy * eta;
  const double xEta = bx + cx * xi, yEta = by + cy * xi;
  const double Pxi = 0.125 * std::sqrt(xXi * xXi + yXi * yXi) / std::fabs(detJPoint);
  const double Peta = 0.125 * std::sqrt(xEta * xEta + yEta * yEta) / std::fabs(detJPoint);
  const double fA = (1.0 - xi) * Pxi, fB = (1.0 + xi) * Pxi;
  const double gA = (1.0 - eta) * Peta, gB = (1.0 + eta) * Peta;

  // Columns: w, rx, ry of each node. Each has one term from the node's edge along xi (gA, gB) and
  // one from its edge along eta (fA, fB).
  const double sinA = a.sine, cosA = a.cosine, sinB = b.sine, cosB = b.cosine;
  Bs = {// gxz
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

void QuadPlate::Stiffness() {
  BendingRigidity();
  const double c = E * TK / ((Mu + 1.0) * 2.0 * ShearCorrectionDivisor);
  Ds = {c, 0.0, 0.0, c};
  K.fill(0.0);
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      ShapeFunctions(GaussPoints[i], GaussPoints[j]);
      Jacobian();
      CurvatureMatrix();
      const double s = std::fabs(detJ) * GaussWeights[i] * GaussWeights[j];
      AddStiffnessProduct<3, 12>(Bb.data(), Db.data(), s, K.data());
      ShearStrainMatrix(detJ, GaussPoints[i], GaussPoints[j]);
      AddStiffnessProduct<2, 12>(Bs.data(), Ds.data(), s, K.data());
    }
  }
}

}  // namespace korvex
