// The findings K7xx about a solved model and its result files, made from what an audit has
// computed.
//
// places: the tables of the solved model, and the lines of their rows where these are known. One
// slip gives one finding: what another finding explains is not named again.
#pragma once

#include "check/checked_model.h"
#include "commands/audit_report.h"

namespace kvx {

// Displacements that are at least this part of the model's extent are named: a cantilever whose tip
// moves by a tenth of its length has linear displacements that are 0.6 % too large (Bisshopp &
// Drucker 1945). Rules for structures allow 1/150 of a span or less, so that 1/50 is no usual one.
inline constexpr double LargeShare = 0.1;
inline constexpr double NotableShare = 0.02;

// Radians. The sine of a rotation of 0.5 is 0.479, that of 0.1 is 0.0998.
inline constexpr double LargeRotation = 0.5;
inline constexpr double NotableRotation = 0.1;

// What may be left over at a free node, of the largest force at the end of any element.
inline constexpr double ResidualTolerance = 1e-6;

// Couples of unbalanced elements, of the moments of the loads: from the first on they are named,
// since nothing that the report shows has more digits; from the second on they spoil the third
// digit of support forces.
inline constexpr double NotableCouple = 1e-9;
inline constexpr double LargeCouple = 0.01;

// Digits that a result needs: with fewer than the first the fourth or fifth is wrong in what the
// files show, or sums of differences, such as section forces, are; with fewer than the second it is
// no result.
inline constexpr double NotableDigits = 6.0;
inline constexpr double LeastDigits = 3.0;

// What may be missing of a prescribed displacement.
inline constexpr double MissingDisplacement = 1e-3;

// Of all unbalanced elements: the larger of what they leave over together and of what a single one
// does, over the scales of the sums.
double WeighUnbalanced(const Reactions& reactions);

// Whether a free node is not in equilibrium. Without loads, what is left of a structure that its
// supports move as a whole is rounding.
bool HasResidual(const Reactions& reactions);

// Whether there are no loads, and support forces that are no more than rounding.
bool IsRoundingAlone(const Reactions& reactions);

// What to do where a solution is none and no cause is known: remove displacements.bin where it is
// what was read, or look for what can move.
std::string AdviseOnNoSolution(const DisplacementReading& reading, const SolvedModel& solved);

// K701 .. K709.
void AddSolutionFindings(const AuditOptions& options, const CheckedModel& places,
                         const SolvedModel& solved, AuditReport& report);

// Why files that differ are not called stale.
inline constexpr const char* SparseFilesReason =
    "The sparse engine has written them (solution.json), and without displacements.bin there is "
    "the skyline alone to compare with, whose last digits may differ.";

// K711 .. K717.
void AddFileFindings(const AuditOptions& options, AuditReport& report);

// K721 .. K723.
void AddStressFindings(const CheckedModel& places, AuditReport& report);

}  // namespace kvx
