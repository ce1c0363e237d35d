#include "audit/solved_model.h"

#include <utility>

#include "audit/assemble_watched.h"
#include "deck/check_reference.h"
#include "model/read_input_file.h"
#include "report/stop.h"
#include "skyline/solve_loads.h"
#include "system/load_vector.h"
#include "system/profile.h"
#include "system/supports.h"
#include "tables/held_dofs.h"
#include "tables/node_box.h"
#include "tables/prescribed_displacements.h"

namespace kvx {

using korvex::DofsPerNode;

namespace {

static_assert(Penalty == korvex::PenaltyStiffness);

// Lists the prescribed displacements and takes their forces out of `forces`, the table of nodal
// forces.
void SeparatePrescribed(SolvedModel& solved, korvex::ZeroedTable<korvex::NodalForce>& forces) {
  const double extent = MeasureNodeBox(solved.model.Tables).diagonal;
  solved.prescribed.clear();
  for (std::size_t row = 0; row < forces.size(); ++row) {
    korvex::NodalForce& force = forces[row];
    korvex::CheckReference("Force", static_cast<std::int32_t>(row), "node", force.node,
                           {"nodal points", solved.model.Tables.NPOIN});
    const std::size_t first = static_cast<std::size_t>(force.node) * DofsPerNode;
    for (std::size_t d = 0; d < DofsPerNode; ++d) {
      double& component = force.components[d];
      if (solved.isHeld[first + d] == 0 || !IsPrescribing(d, component, extent)) continue;
      solved.prescribed.push_back({static_cast<std::int32_t>(row), force.node,
                                   static_cast<std::int32_t>(d),
                                   component / korvex::PenaltyStiffness});
      component = 0.0;
    }
  }
}

// The loads by the solver's own routine, which takes the forces from the tables: those that
// prescribe displacements are left out of the tables meanwhile.
void AssembleLoads(SolvedModel& solved) {
  korvex::ZeroedTable<korvex::NodalForce> forces = solved.model.Tables.NodalForces;
  SeparatePrescribed(solved, forces);
  forces.swap(solved.model.Tables.NodalForces);
  try {
    korvex::AssembleLoadVector(solved.model);
  } catch (const korvex::Stop&) {
    forces.swap(solved.model.Tables.NodalForces);
    throw;
  }
  forces.swap(solved.model.Tables.NodalForces);
}

// connectivity: elements x nodesPerElement node indices.
void CheckElementNodes(const char* rowKind, const std::vector<std::int32_t>& connectivity,
                       std::int32_t nodesPerElement, std::size_t elements, std::int32_t nodes) {
  const auto step = static_cast<std::size_t>(nodesPerElement);
  if (connectivity.size() != elements * step) {
    throw korvex::Stop{
        korvex::StopKind::Notice,
        std::string("The numbers of nodes and of elements do not fit: ") + rowKind + '.'};
  }
  for (std::size_t at = 0; at < connectivity.size(); ++at) {
    korvex::CheckReference(rowKind, static_cast<std::int32_t>(at / step), "node", connectivity[at],
                           {"nodal points", nodes});
  }
}

// The reader has checked all references; a record that was filled otherwise may have any.
void CheckElements(const korvex::Model& model) {
  const korvex::ModelTables& tables = model.Tables;
  CheckElementNodes("Four-node shell element", tables.Shell4Nodes, korvex::NodesPerShell4,
                    model.Shell4Elements.size(), tables.NPOIN);
  CheckElementNodes("Three-node shell element", tables.Shell3Nodes, korvex::NodesPerShell3,
                    model.Shell3Elements.size(), tables.NPOIN);
  CheckElementNodes("Beam element", tables.BeamNodes, korvex::NodesPerBeam,
                    model.BeamElements.size(), tables.NPOIN);
}

}  // namespace

std::uint64_t HashBytes(std::string_view bytes) {
  std::uint64_t hash = 14695981039346656037U;  // offset basis
  for (const char byte : bytes) {
    hash ^= static_cast<unsigned char>(byte);
    hash *= 1099511628211U;  // prime
  }
  return hash;
}

ModelFileId IdentifyModelFile(std::string_view modelText) {
  return {modelText.size(), HashBytes(modelText)};
}

void SolveInMemory(std::string_view modelText, const korvex::ShareCallback& share,
                   SolvedModel& solved, int threads) {
  korvex::Model model;
  korvex::WorkShare work;
  work.report = share;
  korvex::ReadInputText(modelText, model);
  korvex::NumberEquations(model);
  AssembleWatched(model, 1, work, threads);
  korvex::AssembleLoadVector(model);
  korvex::ImposeSupports(model);
  korvex::ColumnCounter columns = {{}, model.NEQ, 0, &work};
  korvex::SolveLoads(model.Stiffness, {{&model.LoadVector, &model.Displacements}}, columns,
                     threads);
  solved.file = IdentifyModelFile(modelText);
  solved.model = std::move(model);
  CompleteSolvedModel(solved);
}

void CompleteFromDisplacements(std::string_view modelText, std::vector<double> displacements,
                               SolvedModel& solved) {
  solved.model = {};
  korvex::ReadInputText(modelText, solved.model);
  korvex::NumberEquations(solved.model);
  solved.file = IdentifyModelFile(modelText);
  solved.model.Displacements = std::move(displacements);
  CompleteSolvedModel(solved);
}

void CompleteSolvedModel(SolvedModel& solved) {
  korvex::Model& model = solved.model;
  model.Stiffness = {};
  const std::size_t nodes = model.Tables.Nodes.size();
  if (model.Displacements.size() != nodes * DofsPerNode ||
      static_cast<std::size_t>(model.NEQ) != nodes * DofsPerNode ||
      static_cast<std::size_t>(model.Tables.NPOIN) != nodes) {
    throw korvex::Stop{korvex::StopKind::Notice, "There are " +
                                                     std::to_string(model.Displacements.size()) +
                                                     " displacements for " + std::to_string(nodes) +
                                                     " nodal points, which need six each."};
  }
  CheckElements(model);
  solved.isHeld.assign(static_cast<std::size_t>(model.NEQ), 0);
  MarkHeldDofs(model.Tables, solved.isHeld);
  AssembleLoads(solved);
}

}  // namespace kvx
