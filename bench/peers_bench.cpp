// The solver beside direct solvers that others use, on the same matrices in the same run.
//
// Banded Cholesky from LAPACK (OpenBLAS), supernodal sparse Cholesky (CHOLMOD, with its own choice
// of ordering) and a multifrontal sparse L D L^T (MUMPS, its own choice of ordering), all on one
// thread. The sparse solvers renumber the equations; the skyline is solved as the nodes come. In
// every round each of them solves the system once, so that a machine that others share slows all
// alike. Times are processor times of analysis, factorisation and solution together, medians over
// the rounds.
#include <cholmod.h>
#include <dmumps_c.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "measure.h"
#include "skyline/solve_skyline.h"
#include "skyline_systems.h"

// LAPACK and OpenBLAS, whose Fortran symbols spare a header, and the compiler's library of threads.
extern "C" {
void dpbtrf_(const char* uplo, const int* n, const int* kd, double* ab, const int* ldab, int* info);
void dpbtrs_(const char* uplo, const int* n, const int* kd, const int* nrhs, const double* ab,
             const int* ldab, double* b, const int* ldb, int* info);
void openblas_set_num_threads(int threads);
void omp_set_max_active_levels(int levels);
}

namespace {

using korvex::SkylineMatrix;
using korvex::bench::Measure;
using korvex::bench::Median;
using korvex::bench::SkylineCase;
using korvex::bench::SkylineCases;
using korvex::bench::SkylineSystem;

double Entry(const SkylineMatrix& K, std::size_t j, std::size_t above) {
  return K.Values[static_cast<std::size_t>(K.DiagonalAddress[j]) + above];
}

// What a solver takes and leaves. Where it gives up, error is its own number for the reason, and
// there is no solution; with 0 there is one.
struct Timing {
  double seconds = 0.0;
  int error = 0;
  std::vector<double> u;
};

Timing SolveOurs(const SkylineSystem& system) {
  SkylineMatrix K = system.K;
  std::vector<double> F = system.F;
  Timing t;
  t.u.resize(F.size());
  t.seconds = Measure([&] { korvex::SolveSkyline(K, F, t.u, {}); });
  return t;
}

Timing SolveBanded(const SkylineSystem& system) {
  const SkylineMatrix& K = system.K;
  const auto n = static_cast<int>(system.F.size());
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
  t.u = system.F;
  const int one = 1;
  t.seconds = Measure([&] {
    dpbtrf_("U", &n, &kd, ab.data(), &ldab, &t.error);
    if (t.error != 0) return;
    dpbtrs_("U", &n, &kd, &one, ab.data(), &ldab, t.u.data(), &n, &t.error);
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

Timing SolveCholmod(const SkylineSystem& system) {
  std::vector<int> columns, rows;
  std::vector<double> values;
  ListEntries(system.K, columns, rows, values);
  const auto n = system.F.size();
  std::vector<int> first(n + 1, 0);
  for (const int column : columns) ++first[static_cast<std::size_t>(column) + 1];
  for (std::size_t j = 0; j < n; ++j) first[j + 1] += first[j];

  cholmod_common common;
  cholmod_start(&common);
  common.supernodal = CHOLMOD_SUPERNODAL;
  common.print = 0;
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
  std::vector<double> load = system.F;
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
    t.error = common.status;
    if (t.error == CHOLMOD_OK) {
      cholmod_dense* x = cholmod_solve(CHOLMOD_A, factor, &b, &common);
      const auto* solution = static_cast<const double*>(x->x);
      t.u.assign(solution, solution + n);
      cholmod_free_dense(&x, &common);
    }
    cholmod_free_factor(&factor, &common);
  });
  cholmod_finish(&common);
  return t;
}

Timing SolveMumps(const SkylineSystem& system) {
  std::vector<int> columns, rows;
  std::vector<double> values;
  ListEntries(system.K, columns, rows, values);
  for (int& column : columns) ++column;
  for (int& row : rows) ++row;

  DMUMPS_STRUC_C id{};
  id.comm_fortran = -987654;  // the whole world, in the library's words
  id.par = 1;
  id.sym = 1;  // symmetric positive definite
  id.job = -1;
  dmumps_c(&id);
  id.n = static_cast<decltype(id.n)>(system.F.size());
  id.nnz = static_cast<decltype(id.nnz)>(values.size());
  id.irn = rows.data();
  id.jcn = columns.data();
  id.a = values.data();
  id.icntl[0] = id.icntl[1] = id.icntl[2] = -1;  // no printing
  id.icntl[3] = 0;
  Timing t;
  t.u = system.F;
  id.rhs = t.u.data();
  id.nrhs = 1;
  id.lrhs = id.n;
  t.seconds = Measure([&] {
    id.job = 6;  // analysis, factorisation, solution
    dmumps_c(&id);
  });
  t.error = std::min(id.infog[0], 0);  // above are warnings
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

constexpr int Rounds = 3;

struct Solver {
  const char* name;
  Timing (*solve)(const SkylineSystem&);
};

// Ours is the first: the others are compared with it.
constexpr std::array<Solver, 4> Solvers{{{"Korvex", SolveOurs},
                                         {"LAPACK, banded", SolveBanded},
                                         {"CHOLMOD", SolveCholmod},
                                         {"MUMPS", SolveMumps}}};

void Compare(const SkylineSystem& system) {
  std::printf("\n%s: %zu equations\n", system.title.c_str(), system.F.size());
  std::array<std::vector<double>, Solvers.size()> seconds;
  std::array<Timing, Solvers.size()> last;
  for (int round = 0; round < Rounds; ++round) {
    for (std::size_t i = 0; i < Solvers.size(); ++i) {
      last[i] = Solvers[i].solve(system);
      seconds[i].push_back(last[i].seconds);
    }
  }
  for (std::size_t i = 0; i < Solvers.size(); ++i) {
    if (last[i].error != 0) {
      std::printf("%-16s gives up with error %d\n", Solvers[i].name, last[i].error);
      continue;
    }
    const double median = Median(seconds[i]);
    std::printf("%-16s %9.4f s  %6.2f of ours  difference %.0e\n", Solvers[i].name, median,
                median / Median(seconds[0]), Difference(last[i].u, last[0].u));
  }
  std::fflush(stdout);
}

// Must come before the first solution.
void UseOneThread() {
  openblas_set_num_threads(1);
  // CHOLMOD asks for four threads in its loops, whatever number is set: no loop may have any.
  omp_set_max_active_levels(0);
  // Scotch, which orders for MUMPS, takes one for each core otherwise.
  setenv("SCOTCH_PTHREAD_NUMBER", "1", 1);
}

}  // namespace

// Arguments: names of cases; without any, all but the detail models, which are too small to tell.
int main(int count, char** arguments) {
  UseOneThread();
  for (int i = 1; i < count; ++i) {
    const bool isCase = std::any_of(
        SkylineCases.begin(), SkylineCases.end(),
        [&](const SkylineCase& each) { return std::strcmp(arguments[i], each.name) == 0; });
    if (isCase) continue;
    std::fprintf(stderr, "No case has the name %s.\n", arguments[i]);
    return 2;
  }
  for (const SkylineCase& each : SkylineCases) {
    bool isWanted = count == 1 && std::strcmp(each.name, "details") != 0;
    for (int i = 1; i < count; ++i) {
      isWanted = isWanted || std::strcmp(arguments[i], each.name) == 0;
    }
    if (isWanted) Compare(each.make());
  }
  return 0;
}
