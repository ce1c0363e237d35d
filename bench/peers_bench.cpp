// The solver beside direct solvers that others use, on the same matrices in the same run.
//
// Banded Cholesky from LAPACK (OpenBLAS), supernodal sparse Cholesky (CHOLMOD, with its own choice
// of ordering) and a multifrontal sparse L D L^T (MUMPS, its own choice of ordering), all on one
// thread. The sparse solvers renumber the equations; the skyline is solved as the nodes come. Times
// are medians, of analysis, factorisation and solution together.
#include <cholmod.h>
#include <dmumps_c.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <vector>

#include "plate_system.h"
#include "system/solve_skyline.h"

// LAPACK and OpenBLAS; the Fortran symbols spare a header.
extern "C" {
void dpbtrf_(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info);
void dpbtrs_(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
             const int* ldab, double* b, const int* ldb, int* info);
void openblas_set_num_threads(int threads);
}

namespace {

using korvex::Model;
using korvex::SkylineMatrix;

double Entry(const SkylineMatrix& K, std::size_t j, std::size_t above) {
  return K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + above];
}

// What a solver needs and leaves: the time, and the solution to compare.
struct Timing {
  double seconds = 0.0;
  std::vector<double> u;
};

double Measure(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

Timing SolveOurs(const Model& model) {
  SkylineMatrix K = model.Stiffness;
  std::vector<double> F = model.LoadVector;
  Timing t;
  t.u.resize(F.size());
  t.seconds = Measure([&] { korvex::SolveSkyline(K, F, t.u, korvex::SolverProgress::Silent); });
  return t;
}

Timing SolveBanded(const Model& model) {
  const SkylineMatrix& K = model.Stiffness;
  const auto n = static_cast<int>(model.NEQ);
  const int kd = *std::max_element(K.ColumnHeights.begin(), K.ColumnHeights.end()) - 1;
  const int ldab = kd + 1;
  std::vector<double> ab(static_cast<std::size_t>(n) * static_cast<std::size_t>(ldab), 0.0);
  for (std::size_t j = 0; j < K.ColumnHeights.size(); ++j) {
    for (std::size_t above = 0; above < static_cast<std::size_t>(K.ColumnHeights[j]); ++above) {
      ab[j * static_cast<std::size_t>(ldab) + static_cast<std::size_t>(kd) - above] =
          Entry(K, j, above);
    }
  }
  Timing t;
  t.u = model.LoadVector;
  const int one = 1;
  int info = 0;
  t.seconds = Measure([&] {
    dpbtrf_("U", &n, &kd, ab.data(), &ldab, &info);
    dpbtrs_("U", &n, &kd, &one, ab.data(), &ldab, t.u.data(), &n, &info);
  });
  return t;
}

// The entries of the upper triangle that are not zero, column by column, rows ascending.
void ListEntries(const SkylineMatrix& K, std::vector<int>& columns, std::vector<int>& rows,
                 std::vector<double>& values) {
  for (std::size_t j = 0; j < K.ColumnHeights.size(); ++j) {
    for (auto above = static_cast<std::size_t>(K.ColumnHeights[j]); above-- > 0;) {
      const double value = Entry(K, j, above);
      if (value == 0.0 && above > 0) continue;
      columns.push_back(static_cast<int>(j));
      rows.push_back(static_cast<int>(j - above));
      values.push_back(value);
    }
  }
}

Timing SolveCholmod(const Model& model) {
  std::vector<int> columns, rows;
  std::vector<double> values;
  ListEntries(model.Stiffness, columns, rows, values);
  const auto n = static_cast<std::size_t>(model.NEQ);
  std::vector<int> first(n + 1, 0);
  for (const int column : columns) ++first[static_cast<std::size_t>(column) + 1];
  for (std::size_t j = 0; j < n; ++j) first[j + 1] += first[j];

  cholmod_common common;
  cholmod_start(&common);
  common.supernodal = CHOLMOD_SUPERNODAL;
  cholmod_sparse A{};
  A.nrow = A.ncol = n;
  A.nzmax = values.size();
  A.p = first.data();
  A.i = rows.data();
  A.x = values.data();
  A.stype = 1;
  A.itype = CHOLMOD_INT;
  A.xtype = CHOLMOD_REAL;
  A.dtype = CHOLMOD_DOUBLE;
  A.sorted = 1;
  A.packed = 1;
  std::vector<double> load = model.LoadVector;
  cholmod_dense b{};
  b.nrow = b.d = b.nzmax = n;
  b.ncol = 1;
  b.x = load.data();
  b.xtype = CHOLMOD_REAL;
  b.dtype = CHOLMOD_DOUBLE;
  Timing t;
  t.seconds = Measure([&] {
    cholmod_factor* factor = cholmod_analyze(&A, &common);
    cholmod_factorize(&A, factor, &common);
    cholmod_dense* x = cholmod_solve(CHOLMOD_A, factor, &b, &common);
    const auto* values_ = static_cast<const double*>(x->x);
    t.u.assign(values_, values_ + n);
    cholmod_free_dense(&x, &common);
    cholmod_free_factor(&factor, &common);
  });
  cholmod_finish(&common);
  return t;
}

Timing SolveMumps(const Model& model) {
  std::vector<int> columns, rows;
  std::vector<double> values;
  ListEntries(model.Stiffness, columns, rows, values);
  for (int& column : columns) ++column;
  for (int& row : rows) ++row;

  DMUMPS_STRUC_C id{};
  id.comm_fortran = -987654;  // the whole world, in the library's words
  id.par = 1;
  id.sym = 1;  // symmetric positive definite
  id.job = -1;
  dmumps_c(&id);
  id.n = model.NEQ;
  id.nnz = static_cast<decltype(id.nnz)>(values.size());
  id.irn = rows.data();
  id.jcn = columns.data();
  id.a = values.data();
  id.icntl[0] = id.icntl[1] = id.icntl[2] = -1;  // no printing
  id.icntl[3] = 0;
  Timing t;
  t.u = model.LoadVector;
  id.rhs = t.u.data();
  id.nrhs = 1;
  id.lrhs = model.NEQ;
  t.seconds = Measure([&] {
    id.job = 6;  // analysis, factorisation, solution
    dmumps_c(&id);
  });
  if (id.infog[0] < 0) std::printf("MUMPS: error %d\n", id.infog[0]);
  id.job = -2;
  dmumps_c(&id);
  return t;
}

// The largest difference from ours, as a share of the largest entry.
double Difference(const std::vector<double>& u, const std::vector<double>& ours) {
  double difference = 0.0, largest = 0.0;
  for (std::size_t i = 0; i < u.size(); ++i) {
    difference = std::max(difference, std::fabs(u[i] - ours[i]));
    largest = std::max(largest, std::fabs(ours[i]));
  }
  return difference / largest;
}

constexpr int Runs = 3;

void Compare(std::int32_t columns, std::int32_t rows) {
  Model model;
  korvex::bench::BuildPlateSystem(columns, rows, model);
  std::printf("\n%d x %d nodes, %d equations\n", columns, rows, model.NEQ);
  struct Solver {
    const char* name;
    Timing (*solve)(const Model&);
  };
  std::vector<double> ours;
  double oursSeconds = 0.0;
  for (const Solver& solver : {Solver{"Korvex", SolveOurs}, Solver{"LAPACK, banded", SolveBanded},
                               Solver{"CHOLMOD", SolveCholmod}, Solver{"MUMPS", SolveMumps}}) {
    std::vector<double> seconds;
    Timing t;
    for (int run = 0; run < Runs; ++run) {
      t = solver.solve(model);
      seconds.push_back(t.seconds);
    }
    std::sort(seconds.begin(), seconds.end());
    const double median = seconds[Runs / 2];
    if (ours.empty()) {
      ours = t.u;
      oursSeconds = median;
    }
    std::printf("%-16s %9.3f s  %6.2f of ours  difference %.0e\n", solver.name, median,
                median / oursSeconds, Difference(t.u, ours));
    std::fflush(stdout);
  }
}

}  // namespace

int main() {
  openblas_set_num_threads(1);
  Compare(80, 125);
  Compare(60, 1000);
  Compare(200, 200);
  return 0;
}
