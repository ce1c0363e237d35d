#include "view/corners_block.h"

#include <algorithm>
#include <array>

#include "audit/check_solved.h"
#include "audit/plane_tensor.h"
#include "audit/shell_resultants.h"

namespace kvx {

namespace {

void AddInPlane(const korvex::ElementFrame& frame, const korvex::StressVector& stress,
                std::vector<double>& values) {
  const PlaneTensor local = PlaneOf(StressInFrame(frame, stress));
  values.insert(values.end(), {local.x, local.y, local.xy});
}

template <std::int32_t Nodes>
void CollectFaces(const std::vector<korvex::ShellElement<Nodes>>& shells, CornerStresses& corners) {
  for (const korvex::ShellElement<Nodes>& shell : shells) {
    for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
      AddInPlane(shell.Frame, shell.NodeStressTop[k], corners.upper);
      AddInPlane(shell.Frame, shell.NodeStressBottom[k], corners.lower);
    }
  }
}

void CollectShear(const korvex::Model& model, std::size_t e, CornerStresses& corners) {
  std::array<double, korvex::Shell4Dofs> d{};
  for (std::size_t k = 0; k < 4; ++k) {
    const auto node = static_cast<std::size_t>(model.Tables.Shell4Nodes[4 * e + k]);
    std::copy_n(&model.Displacements[node * korvex::DofsPerNode], korvex::DofsPerNode,
                &d[k * korvex::DofsPerNode]);
  }
  double qx = 0.0, qy = 0.0;
  Shell4TransverseShear(model.Shell4Elements[e], d.data(), 0.0, 0.0, qx, qy);
  corners.shear.insert(corners.shear.end(), {qx, qy});
}

}  // namespace

void CollectCorners(const korvex::Model& model, CornerStresses& corners) {
  CheckSolvedModel(model);
  corners = {};
  CollectFaces(model.Shell4Elements, corners);
  CollectFaces(model.Shell3Elements, corners);
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) CollectShear(model, e, corners);
}

void AddCorners(const CornerStresses& corners, PageBlock& block) {
  AddDecimals("upper", corners.upper, block, 3);
  AddDecimals("lower", corners.lower, block, 3);
  AddDecimals("shear", corners.shear, block, 2);
}

}  // namespace kvx
