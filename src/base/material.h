// An isotropic linear-elastic material, one row of the material table.
#pragma once

namespace korvex {

struct Material {
  double E = 0.0;        // Young's modulus, force per area
  double Mu = 0.0;       // Poisson's ratio
  double Density = 0.0;  // read and carried; no load is made from it
};

}  // namespace korvex
