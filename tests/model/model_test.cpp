// The release of the model.
#include "model/model.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

void ExpectReleased(const Model& model) {
  EXPECT_EQ(model.Nodes.capacity(), 0U);
  EXPECT_EQ(model.NodalRestraints.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.Values.capacity(), 0U);
  EXPECT_EQ(model.LoadVector.capacity(), 0U);
  EXPECT_EQ(model.Displacements.capacity(), 0U);
  EXPECT_EQ(model.Shell4SurfaceLoads.capacity(), 0U);
  EXPECT_EQ(model.Shell3SurfaceLoads.capacity(), 0U);
  EXPECT_EQ(model.BeamLineLoads.capacity(), 0U);
  EXPECT_EQ(model.NodalForces.capacity(), 0U);
  EXPECT_EQ(model.Materials.capacity(), 0U);
  EXPECT_EQ(model.ShellThicknesses.capacity(), 0U);
  EXPECT_EQ(model.TBeamSections.capacity(), 0U);
  EXPECT_EQ(model.LBeamSections.capacity(), 0U);
  EXPECT_EQ(model.CBeamSections.capacity(), 0U);
  EXPECT_EQ(model.Shell4Elements.capacity(), 0U);
  EXPECT_EQ(model.Shell4Nodes.capacity(), 0U);
  EXPECT_EQ(model.Shell3Elements.capacity(), 0U);
  EXPECT_EQ(model.Shell3Nodes.capacity(), 0U);
  EXPECT_EQ(model.BeamElements.capacity(), 0U);
  EXPECT_EQ(model.BeamNodes.capacity(), 0U);
  EXPECT_EQ(model.BeamSectionRefs.capacity(), 0U);
  EXPECT_EQ(model.BeamShellModels.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.ColumnHeights.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.DiagonalAddress.capacity(), 0U);
}

TEST(Model, ReleaseFreesEveryTableAndMayBeRepeated) {
  Model model;
  model.Nodes.resize(2);
  model.NodalRestraints.resize(2);
  model.Stiffness.Values.resize(2);
  model.LoadVector.resize(2);
  model.Displacements.resize(2);
  model.Shell4SurfaceLoads.resize(2);
  model.Shell3SurfaceLoads.resize(2);
  model.BeamLineLoads.resize(2);
  model.NodalForces.resize(2);
  model.Materials.resize(2);
  model.ShellThicknesses.resize(2);
  model.TBeamSections.resize(2);
  model.LBeamSections.resize(2);
  model.CBeamSections.resize(2);
  model.Shell4Elements.resize(2);
  model.Shell4Nodes.resize(2);
  model.Shell3Elements.resize(2);
  model.Shell3Nodes.resize(2);
  model.BeamElements.resize(2);
  model.BeamNodes.resize(2);
  model.BeamSectionRefs.resize(2);
  model.BeamShellModels.resize(2);
  model.Stiffness.ColumnHeights.resize(2);
  model.Stiffness.DiagonalAddress.resize(2);
  ReleaseModel(model);
  ExpectReleased(model);
  ReleaseModel(model);
  ExpectReleased(model);
}

TEST(Model, EmptyModelMayBeReleased) {
  Model model;
  ReleaseModel(model);
  ExpectReleased(model);
}

}  // namespace
}  // namespace korvex
