#include "view/results_block.h"

namespace kvx {

namespace {

void CollectReactions(const Reactions& reactions, CaseResults& results) {
  for (const Support& support : reactions.supports) {
    results.reactionNodes.push_back(support.node);
    results.reactions.insert(results.reactions.end(), support.force.begin(), support.force.end());
  }
}

void CollectForces(const std::vector<BeamForces>& beams, CaseResults& results) {
  for (const BeamForces& beam : beams) {
    for (const Cubic& curve : beam.curves) {
      results.forces.insert(results.forces.end(), curve.begin(), curve.end());
    }
  }
}

}  // namespace

void CollectResults(const SolvedModel& solved, CaseResults& results) {
  Reactions reactions;
  ComputeReactions(solved, reactions);
  std::vector<BeamForces> beams;
  ComputeBeamForces(solved.model, beams);
  CollectResults(solved, reactions, beams, results);
}

void CollectResults(const SolvedModel& solved, const Reactions& reactions,
                    const std::vector<BeamForces>& beams, CaseResults& results) {
  const korvex::Model& model = solved.model;
  results = {};
  results.displacements = model.Displacements;
  CollectReactions(reactions, results);
  StressRowTable table;
  AddStressCorners(model.Shell4Elements, table, results.shells);
  AddStressCorners(model.Shell3Elements, table, results.shells);
  CollectForces(beams, results);
  for (const DetailStress& detail : solved.details.stresses) {
    results.detailStresses.push_back(detail.vonMises);
  }
}

void AddResults(const CaseResults& results, PageBlock& block) {
  AddDecimals("displacements", results.displacements, block, 6);
  AddIntegers("reactionNodes", results.reactionNodes, block);
  AddDecimals("reactions", results.reactions, block, 6);
  AddStressColumns("shells", results.shells, block);
  AddDecimals("forces", results.forces, block, 24);
  if (!results.detailStresses.empty()) {
    AddDecimals("detailStresses", results.detailStresses, block);
  }
}

}  // namespace kvx
