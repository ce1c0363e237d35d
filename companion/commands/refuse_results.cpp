#include "commands/refuse_results.h"

#include <algorithm>

#include "audit/verdict.h"
#include "check/describe.h"
#include "commands/element_words.h"
#include "commands/result_findings.h"
#include "commands/speak.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

std::string CauseText(const DisplacementReading& reading, const SolvedModel& solved,
                      const NotFinite& bad) {
  const korvex::Model& model = solved.model;
  if (bad.hasElement) {
    return "The stiffness of " + DescribeElement(model, bad.element) +
           " is not a number: mend its shape, section or material.";
  }
  if (bad.loadNode >= 0) {
    return "The load on " + DescribeNode(model, bad.loadNode) + " is not a number: mend it.";
  }
  if (bad.lonelyNode >= 0) {
    return "No element holds " + DescribeNode(model, bad.lonelyNode) +
           ": connect it, or remove it.";
  }
  return AdviseOnNoSolution(reading, solved);
}

}  // namespace

ExitStatus RefuseResults(const std::string& who, const DisplacementReading& reading,
                         const SolvedModel& solved) {
  const auto isOne = [](std::uint8_t held) { return held != 0; };
  if (std::none_of(solved.isHeld.begin(), solved.isHeld.end(), isOne)) {
    Complain(who,
             "the model has no supports: nothing holds it, so that its displacements mean "
             "nothing. Support it in the table NRN.");
    return ExitUnusableData;
  }
  Verdict verdict;
  JudgeSolution(solved, verdict);
  const NotFinite& bad = verdict.notFinite;
  if (bad.nodes == 0) return ExitFine;
  Complain(who, "the displacements of " +
                    CountText(static_cast<std::size_t>(bad.nodes), "node", "nodes") +
                    " are not numbers, first " + DofNames[static_cast<std::size_t>(bad.dof)] +
                    " of " + DescribeNode(solved.model, bad.node) + ". " +
                    CauseText(reading, solved, bad));
  return ExitUnusableData;
}

}  // namespace kvx
