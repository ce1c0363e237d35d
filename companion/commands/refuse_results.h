// Solutions of which nothing can be said, and why.
#pragma once

#include <string>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/exit_status.h"

namespace kvx {

// Returns ExitFine where the model has supports and all displacements are numbers. Otherwise
// ExitUnusableData, after a complaint on standard error that names the cause.
// who: "kvx reactions"; reading: how displacements.bin fits.
ExitStatus RefuseResults(const std::string& who, const DisplacementReading& reading,
                         const SolvedModel& solved);

}  // namespace kvx
