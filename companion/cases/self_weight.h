// Self-weight and other accelerations as loads of a model file.
//
// Force = density x volume x acceleration of each element; volume as kvx check weighs it: shells
// thickness x area, beams A L about the line through their centroids. Total force and moment are
// exact, and so are the displacements of the nodes of prismatic beams.
//
// Shells: the area of a quadrilateral is the mean of its two divisions into triangles, each of
// which gives a third to each of its nodes. So node i gets (A_i-1 + A_i + A_i+1) / 6 of it, with
// A_i the triangle at corner i: for a plane one the integral of the shape function N_i. There are
// no nodal moments.
//
// Beams, with g = density A acceleration per length, and e from the node to the centroid:
//   along local z: the line load g_z, which the section forces between the ends follow;
//   along local x and y: g L / 2 at each node, and g_y L^2 / 12 about local z, the fixed-end
//   moments (Roark 1989, table 3, case 2d). Section forces know them at the nodes alone: N, Vy and
//   Mz between the ends of one element are those of the nodal loads;
//   in all directions: moments e x g L / 2 at each node, which move all of it to the centroids.
#pragma once

#include "base/vector3.h"
#include "deck/model_tables.h"
#include "model/model.h"

namespace kvx {

// Appends the loads to the tables of `loads`: one row of NodalForces to a node, ascending, and one
// row of BeamLineLoads to a beam; rows of zeros are left out.
// model: tables and elements, as read. acceleration: global. Beams of a section type without a
// table have no weight.
void AddSelfWeight(const korvex::Model& model, const korvex::Vector3& acceleration,
                   korvex::ModelTables& loads);

}  // namespace kvx
