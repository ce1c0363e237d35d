// The in-process runs of solve_model.h.
#include "support/solve_model.h"

#include <sstream>

#include "support/temp_folder.h"
#include "system/assemble_system.h"
#include "system/solve_skyline.h"

namespace korvex::test {

void AssembleModel(const ModelText& text, Model& model) {
  const WorkingFolder folder;
  WriteFile("fem_solving.txt", WriteModel(text));
  std::ostringstream log;
  AssembleSystem(model, log);
}

void SolveModel(const ModelText& text, Model& model) {
  AssembleModel(text, model);
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, SolverProgress::Silent);
}

}  // namespace korvex::test
