// The loads that are in force at the end of a step as rows of a case.
#pragma once

#include "mesh/abaqus/abaqus_loads.h"
#include "mesh/abaqus/abaqus_sections.h"
#include "mesh/abaqus/abaqus_transforms.h"

namespace kvx {

// Adds all loads to the case. Gravity that acts on all elements alike is an acceleration; one that
// acts on some becomes loads of the elements.
void AddCaseLoads(AbaqusImport& import, const AbaqusTransforms& transforms,
                  const AbaqusSections& sections, const AbaqusLoads& loads, ImportCase& made);

}  // namespace kvx
