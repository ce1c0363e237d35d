// For systems without MUMPS and METIS: this program was built without the sparse engine.
#include "report/stop.h"
#include "sparse/node_order.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

[[noreturn]] void StopMissing() {
  throw korvex::Stop{korvex::StopKind::Notice, std::string("There is no solution: ") +
                                                   NoSparseEngine + ". Use --engine skyline."};
}

}  // namespace

bool HasSparseEngine() { return false; }

std::string WhyNotLoaded() { return NoSparseEngine; }

void FindSparseOrder(const NodeGraph& /*graph*/, std::vector<std::int32_t>& /*order*/) {
  StopMissing();
}

void AnalyseMatrix(const UpperMatrix& /*A*/, const std::vector<std::int32_t>& /*places*/,
                   const FactorSettings& /*settings*/, SparseFactor& /*factor*/) {
  StopMissing();
}

void FactorMatrix(const UpperMatrix& /*A*/, const FactorSettings& /*settings*/,
                  SparseFactor& /*factor*/) {
  StopMissing();
}

void SolveColumns(SparseFactor& /*factor*/, std::int32_t /*columns*/, double* /*x*/) {
  StopMissing();
}

void FindNullVector(SparseFactor& /*factor*/, std::size_t /*rank*/, std::vector<double>& /*v*/) {
  StopMissing();
}

}  // namespace kvx
