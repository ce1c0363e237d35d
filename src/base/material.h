// An isotropic linear-elastic material, one row of the material table.
//
// Units are those of the model file. The shear modulus is G = E / (2 (1 + Mu)) wherever it is used.
#pragma once

namespace korvex {

struct Material {
  double E = 0.0;        // Young's modulus, force per area
  double Mu = 0.0;       // Poisson's ratio
  double Density = 0.0;  // part of the file format; no load is made from it
};

}  // namespace korvex
