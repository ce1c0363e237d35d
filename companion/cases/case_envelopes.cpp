#include "cases/case_envelopes.h"

#include <cmath>
#include <limits>
#include <string>

#include "audit/check_solved.h"
#include "audit/plane_tensor.h"
#include "audit/section_stresses.h"
#include "audit/shell_resultants.h"
#include "audit/unbalanced_elements.h"
#include "report/stop.h"
#include "results/corner_stress.h"

namespace kvx {

using korvex::Model, korvex::StressVector, korvex::Vector3;

namespace {

constexpr std::size_t DofsPerNode = korvex::DofsPerNode;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

// For its stresses. Those of tubes bent about both axes, and shear and von Mises stresses, are
// largest at places where no section force has zero slope: 4 divisions missed up to 1.2 % of them,
// 16 miss less than 0.1 %.
constexpr int StressDivisions = 16;

const std::array<std::vector<const char*>, EnvelopeKindCount> Components{{
    {"ux", "uy", "uz", "rx", "ry", "rz"},
    {"Fx", "Fy", "Fz", "Mx", "My", "Mz"},
    {"N", "Vy", "Vz", "T", "My", "Mz"},
    {"sigma_max", "sigma_min", "tau_max", "von_mises", "detail_von_mises"},
    {"nx", "ny", "nxy", "mx", "my", "mxy", "qx", "qy"},
    {"upper_von_mises", "lower_von_mises", "middle_von_mises", "principal_max", "principal_min"},
}};

double StationAt(int k) { return static_cast<double>(k) / DefaultDivisions; }

EnvelopeItem MakeItem(Holder holder, std::size_t number, const Vector3& place) {
  EnvelopeItem item;
  item.holder = holder;
  item.number = static_cast<std::int32_t>(number);
  item.place = place;
  return item;
}

// nodes: `count` node indices, the element's.
Vector3 ShellPlace(const Model& model, const std::int32_t* nodes, std::size_t count) {
  Vector3 mean{};
  for (std::size_t k = 0; k < count; ++k) {
    const Vector3 place = PlaceOfNode(model, nodes[k]);
    for (std::size_t i = 0; i < 3; ++i) mean[i] += place[i] / static_cast<double>(count);
  }
  return mean;
}

bool IsHeld(const SolvedModel& solved, std::size_t node, std::size_t dof) {
  return solved.isHeld[DofsPerNode * node + dof] != 0;
}

void ListSupports(const SolvedModel& solved, EnvelopeItems::Kind& supports) {
  for (std::size_t node = 0; node < solved.model.Tables.Nodes.size(); ++node) {
    bool isSupport = false;
    for (std::size_t dof = 0; dof < DofsPerNode; ++dof)
      isSupport = isSupport || IsHeld(solved, node, dof);
    if (!isSupport) continue;
    supports.items.push_back(
        MakeItem(Holder::Node, node, PlaceOfNode(solved.model, static_cast<std::int32_t>(node))));
    for (std::size_t dof = 0; dof < DofsPerNode; ++dof) {
      supports.isAbsent.push_back(IsHeld(solved, node, dof) ? 0 : 1);
    }
  }
}

void ListBeams(const Model& model, EnvelopeItems& items) {
  for (std::size_t beam = 0; beam < model.BeamElements.size(); ++beam) {
    for (int k = 0; k <= DefaultDivisions; ++k) {
      const double s = StationAt(k);
      EnvelopeItem item =
          MakeItem(Holder::Beam, beam, PlaceOnBeam(model, static_cast<std::int32_t>(beam), s));
      item.station = s;
      items.kinds[EnvelopeBeamForces].items.push_back(item);
    }
    items.kinds[EnvelopeBeamStresses].items.push_back(
        MakeItem(Holder::Beam, beam, PlaceOnBeam(model, static_cast<std::int32_t>(beam), 0.5)));
  }
}

void ListShells(const Model& model, EnvelopeItems& items) {
  EnvelopeItems::Kind& forces = items.kinds[EnvelopeShellForces];
  const std::size_t components = Components[EnvelopeShellForces].size();
  const auto& tables = model.Tables;
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
    forces.items.push_back(
        MakeItem(Holder::Shell4, e, ShellPlace(model, &tables.Shell4Nodes[4 * e], 4)));
  }
  const std::size_t quads = forces.items.size();
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    forces.items.push_back(
        MakeItem(Holder::Shell3, e, ShellPlace(model, &tables.Shell3Nodes[3 * e], 3)));
  }
  if (forces.items.size() > quads) {
    forces.isAbsent.assign(components * forces.items.size(), 0);
    for (std::size_t item = quads; item < forces.items.size(); ++item) {
      // qx and qy are the last two.
      forces.isAbsent[components * (item + 1) - 2] = 1;
      forces.isAbsent[components * (item + 1) - 1] = 1;
    }
  }
  items.kinds[EnvelopeShellStresses].items = forces.items;
}

void ComputeReactionValues(const SolvedModel& solved, const Reactions& reactions,
                           std::vector<double>& values) {
  for (const Support& support : reactions.supports) {
    for (std::size_t dof = 0; dof < DofsPerNode; ++dof) {
      const auto node = static_cast<std::size_t>(support.node);
      values.push_back(IsHeld(solved, node, dof) ? support.force[dof] : Nan);
    }
  }
}

void AddBeam(const SolvedModel& solved, std::size_t beam, const BeamForces& forces,
             CaseValues& values) {
  const Model& model = solved.model;
  auto& sections = values[EnvelopeBeamForces];
  for (int k = 0; k <= DefaultDivisions; ++k) {
    const SectionForces at = ForcesAt(forces, StationAt(k));
    sections.insert(sections.end(), at.begin(), at.end());
  }
  const SectionShape shape = MakeSectionShape(model.Tables, model.BeamElements[beam], beam);
  const BeamStresses found = FindBeamStresses(shape, forces, ListStations(forces, StressDivisions));
  const double detail = solved.details.stresses[beam].vonMises;
  auto& stresses = values[EnvelopeBeamStresses];
  stresses.insert(stresses.end(), {found.tension.fibre.sigma, found.compression.fibre.sigma,
                                   found.shear.fibre.tau, found.vonMises.fibre.vonMises, detail});
}

void AddResultants(const CentreResultants& at, std::vector<double>& values) {
  values.insert(values.end(), {at.n.x, at.n.y, at.n.xy, at.m.x, at.m.y, at.m.xy, at.qx, at.qy});
}

// The larger of a and b; NaN if one of them is.
double LargerOf(double a, double b) { return a >= b || std::isnan(a) ? a : b; }

void RaisePrincipal(const korvex::ElementFrame& frame, const StressVector& face, double& larger,
                    double& smaller) {
  const PrincipalValues principal = FindPrincipalValues(PlaneOf(StressInFrame(frame, face)));
  larger = LargerOf(larger, principal.larger);
  smaller = -LargerOf(-smaller, -principal.smaller);
}

// The same values as those of the search for maxima (peak_offers.h), in one pass.
template <std::int32_t Nodes>
void AddStresses(const korvex::ShellElement<Nodes>& shell, std::vector<double>& values) {
  constexpr double Low = -std::numeric_limits<double>::infinity();
  double upper = Low, lower = Low, middle = Low, larger = Low, smaller = -Low;
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    const StressVector &top = shell.AvgStressTop[k], &bottom = shell.AvgStressBottom[k];
    StressVector mean{};
    for (std::size_t i = 0; i < mean.size(); ++i) mean[i] = (top[i] + bottom[i]) / 2.0;
    upper = LargerOf(upper, korvex::EquivalentStress(top));
    lower = LargerOf(lower, korvex::EquivalentStress(bottom));
    middle = LargerOf(middle, korvex::EquivalentStress(mean));
    RaisePrincipal(shell.Frame, top, larger, smaller);
    RaisePrincipal(shell.Frame, bottom, larger, smaller);
  }
  values.insert(values.end(), {upper, lower, middle, larger, smaller});
}

void AddShells(const Model& model, CaseValues& values) {
  CentreResultants centre;
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
    ComputeShell4Centre(model, static_cast<std::int32_t>(e), {}, centre);
    AddResultants(centre, values[EnvelopeShellForces]);
    AddStresses(model.Shell4Elements[e], values[EnvelopeShellStresses]);
  }
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    ComputeShell3Centre(model, static_cast<std::int32_t>(e), {}, centre);
    AddResultants(centre, values[EnvelopeShellForces]);
    AddStresses(model.Shell3Elements[e], values[EnvelopeShellStresses]);
  }
}

void ExpectOfEachBeam(const char* what, std::size_t found, std::size_t beams) {
  if (found == beams) return;
  throw korvex::Stop{korvex::StopKind::Notice, "The solved model has " + std::to_string(found) +
                                                   " " + what + " for " + std::to_string(beams) +
                                                   " beam elements."};
}

void CheckHeld(const SolvedModel& solved) {
  CheckSolvedModel(solved.model);
  if (solved.isHeld.size() == solved.model.Displacements.size()) return;
  throw korvex::Stop{korvex::StopKind::Notice, "The supports of the solved model are not known."};
}

}  // namespace

const std::vector<const char*>& ListComponents(EnvelopeKind kind) { return Components[kind]; }

void ListEnvelopeItems(const SolvedModel& solved, EnvelopeItems& items) {
  CheckHeld(solved);
  const Model& model = solved.model;
  items = {};
  for (std::size_t node = 0; node < model.Tables.Nodes.size(); ++node) {
    items.kinds[EnvelopeDisplacements].items.push_back(
        MakeItem(Holder::Node, node, PlaceOfNode(model, static_cast<std::int32_t>(node))));
  }
  ListSupports(solved, items.kinds[EnvelopeReactions]);
  ListBeams(model, items);
  ListShells(model, items);
}

void ComputeCaseValues(const SolvedModel& solved, const Reactions& reactions,
                       const std::vector<BeamForces>& beams, CaseValues& values) {
  CheckHeld(solved);
  const Model& model = solved.model;
  ExpectOfEachBeam("section forces", beams.size(), model.BeamElements.size());
  ExpectOfEachBeam("detail models", solved.details.stresses.size(), model.BeamElements.size());
  for (std::vector<double>& of : values) of.clear();
  values[EnvelopeDisplacements] = model.Displacements;
  ComputeReactionValues(solved, reactions, values[EnvelopeReactions]);
  for (std::size_t beam = 0; beam < beams.size(); ++beam)
    AddBeam(solved, beam, beams[beam], values);
  AddShells(model, values);
}

void InitCaseEnvelopes(const EnvelopeItems& items, CaseEnvelopes& envelopes) {
  for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
    const EnvelopeItems::Kind& of = items.kinds[kind];
    InitEnvelope(of.items.size(), Components[kind].size(), of.isAbsent, envelopes[kind]);
  }
}

void AddCaseValues(const CaseValues& values, std::int32_t caseNumber, CaseEnvelopes& envelopes) {
  for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
    AddCase(values[kind], caseNumber, envelopes[kind]);
  }
}

}  // namespace kvx
