// Model files for tests: the tables of a model, and the text of its file.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "deck/model_tables.h"

namespace korvex::test {

// The tables of a model file. Rows are numbered from 0 in their order.
struct ModelText {
  struct Beam {
    int node1 = 0, node2 = 1;
    std::array<double, 3> orientation{0.0, 0.0, 1.0};
    int material = 0;
    int BeamSecType = BeamSecTypeT, BeamSecIndex = 0;
    double BeamSecOz = 0.0;
    int BeamSecMirrored = 0;
  };
  struct Restraint {
    int node = 0;
    std::array<int, 6> fixed{1, 1, 1, 1, 1, 1};  // by dof: Ux, Uy, Uz, Rx, Ry, Rz
  };
  struct Force {
    int node = 0;
    std::array<double, 6> components{};  // Fx, Fy, Fz, Mx, My, Mz
  };
  struct BeamLoad {
    int element = 0;
    double q1 = 0.0, q2 = 0.0;
  };
  struct ShellLoad {
    int element = 0;
    std::array<double, 3> q{};
  };
  template <int Nodes>
  struct Shell {
    std::array<int, Nodes> nodes{};
    int material = 0, thickness = 0;
  };

  std::string release = "3.0";
  std::vector<std::array<double, 3>> materials;  // E, Mu, Density
  std::vector<double> thicknesses;
  std::vector<std::array<double, 4>> tSections;  // Hw, Tw, Bf, Tf
  std::vector<std::array<double, 4>> lSections;  // Hw, Tw, Bf, Tf
  std::vector<std::array<double, 2>> cSections;  // R, T
  std::vector<std::array<double, 3>> nodes;
  std::vector<Shell<4>> shells4;
  std::vector<Shell<3>> shells3;
  std::vector<Beam> beams;
  std::vector<Restraint> restraints;
  std::vector<Force> forces;
  std::vector<ShellLoad> shell4Loads;
  std::vector<ShellLoad> shell3Loads;
  std::vector<BeamLoad> beamLoads;
};

// A load with this one component of Fx, Fy, Fz, Mx, My, Mz.
inline std::array<double, 6> SingleLoad(std::size_t component, double value) {
  std::array<double, 6> load{};
  load[component] = value;
  return load;
}

// The model file. Numbers are written so that they read back exactly.
std::string WriteModel(const ModelText& model);

}  // namespace korvex::test
