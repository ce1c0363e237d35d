// *INSTANCE: where the part stands in the assembly.
#pragma once

#include "base/vector3.h"
#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// Takes parts and instances: which part is used, and how its instance stands. One instance alone
// can be taken, as names and numbers repeat from instance to instance.
void TakeAbaqusPlacing(AbaqusImport& import);

// A direction of the part, turned as its instance is.
korvex::Vector3 TurnDirection(const AbaqusImport& import, const AbaqusKeyword& keyword,
                              const korvex::Vector3& direction);

// A point of the part where its instance has it.
korvex::Vector3 PlacePoint(const AbaqusImport& import, const AbaqusKeyword& keyword,
                           const korvex::Vector3& point);

}  // namespace kvx
