// ReleaseModel frees all memory of a model.
#include "model/model.h"

#include <gtest/gtest.h>

namespace korvex {
namespace {

void ExpectReleased(const Model& model) {
  EXPECT_EQ(model.Tables.Nodes.capacity(), 0U);
  EXPECT_EQ(model.Tables.NodalRestraints.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.Values.capacity(), 0U);
  EXPECT_EQ(model.LoadVector.capacity(), 0U);
  EXPECT_EQ(model.Displacements.capacity(), 0U);
  EXPECT_EQ(model.Tables.Shell4SurfaceLoads.capacity(), 0U);
  EXPECT_EQ(model.Tables.Shell3SurfaceLoads.capacity(), 0U);
  EXPECT_EQ(model.Tables.BeamLineLoads.capacity(), 0U);
  EXPECT_EQ(model.Tables.NodalForces.capacity(), 0U);
  EXPECT_EQ(model.Tables.Materials.capacity(), 0U);
  EXPECT_EQ(model.Tables.ShellThicknesses.capacity(), 0U);
  EXPECT_EQ(model.Tables.TBeamSections.capacity(), 0U);
  EXPECT_EQ(model.Tables.LBeamSections.capacity(), 0U);
  EXPECT_EQ(model.Tables.CBeamSections.capacity(), 0U);
  EXPECT_EQ(model.Shell4Elements.capacity(), 0U);
  EXPECT_EQ(model.Tables.Shell4Nodes.capacity(), 0U);
  EXPECT_EQ(model.Shell3Elements.capacity(), 0U);
  EXPECT_EQ(model.Tables.Shell3Nodes.capacity(), 0U);
  EXPECT_EQ(model.BeamElements.capacity(), 0U);
  EXPECT_EQ(model.Tables.BeamNodes.capacity(), 0U);
  EXPECT_EQ(model.Tables.BeamSectionRefs.capacity(), 0U);
  EXPECT_EQ(model.BeamShellModels.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.ColumnHeights.capacity(), 0U);
  EXPECT_EQ(model.Stiffness.DiagonalAddress.capacity(), 0U);
}

TEST(Model, ReleaseFreesEveryTableAndMayBeRepeated) {
  Model model;
  model.Tables.Nodes.resize(2);
  model.Tables.NodalRestraints.resize(2);
  model.Stiffness.Values.resize(2);
  model.LoadVector.resize(2);
  model.Displacements.resize(2);
  model.Tables.Shell4SurfaceLoads.resize(2);
  model.Tables.Shell3SurfaceLoads.resize(2);
  model.Tables.BeamLineLoads.resize(2);
  model.Tables.NodalForces.resize(2);
  model.Tables.Materials.resize(2);
  model.Tables.ShellThicknesses.resize(2);
  model.Tables.TBeamSections.resize(2);
  model.Tables.LBeamSections.resize(2);
  model.Tables.CBeamSections.resize(2);
  model.Shell4Elements.resize(2);
  model.Tables.Shell4Nodes.resize(2);
  model.Shell3Elements.resize(2);
  model.Tables.Shell3Nodes.resize(2);
  model.BeamElements.resize(2);
  model.Tables.BeamNodes.resize(2);
  model.Tables.BeamSectionRefs.resize(2);
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
