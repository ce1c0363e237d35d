#include "engine/solution_quality.h"

#include <cmath>
#include <new>

#include "report/stop.h"
#include "sparse/column_quality.h"
#include "sparse/free_matrix.h"
#include "sparse/prescribed.h"

namespace kvx {

namespace {

void MeasureLoads(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                  const std::vector<std::vector<double>>& displacements, SolutionRecord& record) {
  NodeGraph graph;
  BuildNodeGraph(model.Tables, graph);
  FreeDofs dofs;
  ListFreeDofs(model.Tables, dofs);
  UpperMatrix A;
  FixedRows C;
  AssembleFree(model, graph, dofs, {}, A, C, record.threads);
  QualityTable table;
  BeginQuality(A, table);
  std::vector<double> b(dofs.equations.size()), x(b.size()), r(b.size());
  for (std::size_t k = 0; k < loads.size(); ++k) {
    MakeRightSide(dofs, C, loads[k], displacements[k], b.data());
    for (std::size_t i = 0; i < x.size(); ++i) {
      x[i] = displacements[k][static_cast<std::size_t>(dofs.equations[i])];
    }
    const ColumnQuality quality = MeasureColumn(A, x.data(), b.data(), table, r.data());
    record.loads[k].residual = quality.residual;
    record.loads[k].backwardError = quality.backwardError;
  }
}

}  // namespace

void MeasureSolution(const korvex::Model& model, const std::vector<std::vector<double>>& loads,
                     const std::vector<std::vector<double>>& displacements,
                     SolutionRecord& record) {
  try {
    MeasureLoads(model, loads, displacements, record);
  } catch (const korvex::Stop&) {
    record.loads.assign(loads.size(), {});
  } catch (const std::bad_alloc&) {
    record.loads.assign(loads.size(), {});
  }
}

void SetCondition(double condition, SolutionRecord& record) {
  for (LoadQuality& load : record.loads) {
    if (load.condition != 0.0) load.condition = condition;
    load.digitsLost = load.condition < 1.0 ? 0.0 : std::log10(load.condition);
  }
}

}  // namespace kvx
