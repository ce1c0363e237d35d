// K310 to K312: the deep check. What moves within a part although the part is supported, what
// nearly does, and elements whose stiffness is not a number.
#pragma once

#include "check/checked_model.h"
#include "finding/finding.h"
#include "mechanism/find_mechanisms.h"

namespace kvx {

// Finds the mechanisms of the model, and turns them into findings. To be called behind CheckModel;
// the findings are to be sorted again. It takes the time and memory of a factorisation
// (factor_work.h). Where it cannot be done, model.notChecked says why.
// reorders: the nodes are taken in their best order instead of the given one, which would take far
// more time and memory.
void CheckMechanisms(bool reorders, CheckedModel& model, FindingList& findings);

// The findings of a report. Motions of whole parts are left out where K301, K302 or K306 has been
// found: these name them.
void AddMechanismFindings(const CheckedModel& model, const MechanismReport& report,
                          FindingList& findings);

}  // namespace kvx
