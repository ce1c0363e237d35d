// Membrane forces, moments, transverse shear forces and stresses of a shell element, at its centre
// and at its corners.
//
// With z along the element's normal e3, from the middle face to the upper face at z = t/2
// (Timoshenko & Woinowsky-Krieger 1959, sec. 21, where z points down):
//
//   nx, ny, nxy = integral of sx, sy, txy dz        force/length
//   mx, my, mxy = integral of sx, sy, txy times z dz  moment/length
//   qx, qy      = integral of txz, tyz dz           force/length
//
// So nx > 0 is tension, and mx > 0 gives tension along x on the upper face, compression on the
// lower one: the stresses are n/t +- 6 m/t^2. mx bends about the y axis. Equilibrium:
// qx = dmx/dx + dmxy/dy, and dqx/dx + dqy/dy = -p with p the pressure along e3.
//
// The stresses are those of the solver's own routines (results/corner_stress.h), n and m are made
// of them. All is in the frame that the caller asks for (shell_frame.h).
//
// Triangles: the moments vary over the element, and each point has its own. The stress files show
// the first corner's at all three. The membrane forces of a triangle are constant.
//
// Shear: the four-node element has the strains that it assumes for its stiffness (quad_plate.h), on
// every cross-section G t / 1.2 times the strain. They are exact for a constant shear at the centre
// of any quadrilateral, and all over a parallelogram. At the corners of other shapes they are off,
// by 12 to 30 % in quadrilaterals with angles between 56 and 124 degrees. Take the centre. The
// triangle is a thin plate and has no transverse shear.
//
// Accuracy on a mesh of size h: at the centre of a quadrilateral moments and shear are exact to
// second order, at corners and in triangles to first order. At a clamped edge the moment across it
// is that of the quadrilateral's centre, half an element inside: 12 % short with 32 elements along
// the side of a square plate under uniform pressure, 6 % with 64; triangles: 0.9 % and 0.4 %. To
// reach the edge, extrapolate from the centres of two rows: within 0.3 % with 64 quadrilaterals.
#pragma once

#include <array>
#include <cstdint>

#include "audit/plane_tensor.h"
#include "audit/shell_frame.h"
#include "model/model.h"

namespace kvx {

enum class Face { Upper, Lower, Middle };

inline constexpr std::size_t FaceCount = 3;

struct FaceState {
  korvex::StressVector stress{};  // SX .. TYZ, global axes; upper and lower: the solver's bits
  PlaneTensor local;              // the same in the frame
  PrincipalValues principal;      // of `local`; the third principal stress is 0
  // Of the larger principal stress, global, unit length; the frame's first axis where there is no
  // direction. The smaller one acts along the frame's normal x direction.
  korvex::Vector3 direction{};
  double vonMises = 0.0;  // korvex::EquivalentStress of `stress`
};

struct ShellPoint {
  korvex::Vector3 place{};  // global; on a warped quadrilateral of its four nodes, not of its plane
  PlaneTensor n;            // nx, ny, nxy, force/length
  PlaneTensor m;            // mx, my, mxy, moment/length
  double qx = 0.0, qy = 0.0;               // force/length; NaN without shear
  PlaneTensor membrane;                    // stress n/t: that of the middle face
  PlaneTensor bending;                     // stress 6 m/t^2: of the upper face, less the membrane's
  std::array<FaceState, FaceCount> faces;  // by Face
};

struct ShellResultants {
  ShellFrame frame;
  double thickness = 0.0;
  bool hasShear = false;             // four-node elements
  std::int32_t corners = 0;          // 4 or 3
  ShellPoint centre;                 // xi = eta = 0, or the centroid of the triangle
  std::array<ShellPoint, 4> corner;  // the first `corners`, in the element's node order
};

// Fills `out` for element e of the four-node (three-node) table from model.Displacements. Stresses
// need not be recovered before. NaN displacements, a shape without area and a thickness of zero
// give NaN.
// Throws a korvex::Stop where e, its nodes or the displacements do not fit, and where the axis has
// no direction.
void ComputeShell4Resultants(const korvex::Model& model, std::int32_t e, const FrameChoice& choice,
                             ShellResultants& out);
void ComputeShell3Resultants(const korvex::Model& model, std::int32_t e, const FrameChoice& choice,
                             ShellResultants& out);

// The resultants at the centre alone, with the same bits, in a fifth of the time.
struct CentreResultants {
  PlaneTensor n, m;           // as in ShellPoint
  double qx = 0.0, qy = 0.0;  // NaN without shear
};
void ComputeShell4Centre(const korvex::Model& model, std::int32_t e, const FrameChoice& choice,
                         CentreResultants& out);
void ComputeShell3Centre(const korvex::Model& model, std::int32_t e, const FrameChoice& choice,
                         CentreResultants& out);

// qx and qy of a four-node element in its own frame at (xi, eta).
// displacements: 24, global axes, element dof order.
void Shell4TransverseShear(const korvex::Shell4Element& element, const double* displacements,
                           double xi, double eta, double& qx, double& qy);

}  // namespace kvx
