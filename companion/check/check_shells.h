// K115 .. K120: the shapes of shells, in the words of findings. The judgement is in shell_shape.h.
// Where a node alone explains the bad shapes of all its shells, they are one finding.
#pragma once

#include "check/checked_model.h"
#include "check/shell_shape.h"
#include "finding/finding.h"

namespace kvx {

// The shape of a shell whose nodes are known. section: Shells4 or Shells3.
ShellShape JudgeShell(const CheckedModel& model, korvex::Section section, std::int32_t row);

// An element that is named is broken afterwards.
void CheckShells(CheckedModel& model, FindingList& list);

}  // namespace kvx
