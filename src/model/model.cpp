// The release of the model.
#include "model/model.h"

namespace korvex {

namespace {

// Clearing alone would keep the memory.
template <typename Table>
void Free(Table& table) {
  Table().swap(table);
}

}  // namespace

void ReleaseModel(Model& model) {
  Free(model.Nodes);
  Free(model.NodalRestraints);
  Free(model.Stiffness.Values);
  Free(model.LoadVector);
  Free(model.Displacements);
  Free(model.Shell4SurfaceLoads);
  Free(model.Shell3SurfaceLoads);
  Free(model.BeamLineLoads);
  Free(model.NodalForces);
  Free(model.Materials);
  Free(model.ShellThicknesses);
  Free(model.TBeamSections);
  Free(model.LBeamSections);
  Free(model.CBeamSections);
  Free(model.Shell4Elements);
  Free(model.Shell4Nodes);
  Free(model.Shell3Elements);
  Free(model.Shell3Nodes);
  Free(model.BeamElements);
  Free(model.BeamNodes);
  Free(model.BeamSectionRefs);
  Free(model.BeamShellModels);
  Free(model.Stiffness.ColumnHeights);
  Free(model.Stiffness.DiagonalAddress);
}

}  // namespace korvex
