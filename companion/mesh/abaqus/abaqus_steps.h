// *STEP: each static step becomes a load case with what is in force at its end.
#pragma once

#include "mesh/abaqus/abaqus_mesh.h"
#include "mesh/abaqus/abaqus_sections.h"

namespace kvx {

// Takes supports and loads of the model part and of all steps. A deck without steps that has
// supports gets one case without loads.
void TakeAbaqusSteps(AbaqusImport& import, const AbaqusSections& sections);

}  // namespace kvx
