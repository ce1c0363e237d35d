#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "report/check_memory.h"
#include "report/stop.h"
#include "sparse/mumps_error.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

constexpr MUMPS_INT WorldCommunicator = -987654;  // that of MPI, as MUMPS wants it named
constexpr std::size_t OutOfCoreControl = 22;      // of ICNTL
constexpr std::uint64_t Million = 1000000;

enum Job : MUMPS_INT { Begin = -1, End = -2, Analyse = 1, Factor = 2, Solve = 3 };

// MUMPS with the arrays that it reads.
struct MumpsJob {
  DMUMPS_STRUC_C id{};
  std::vector<MUMPS_INT> rows, columns, order;
  std::vector<double> scales;
  bool hasBegun = false;

  MumpsJob() = default;
  ~MumpsJob() {
    if (!hasBegun) return;
    id.job = End;
    dmumps_c(&id);
  }
  MumpsJob(const MumpsJob&) = delete;
  MumpsJob& operator=(const MumpsJob&) = delete;
};

MumpsJob& JobOf(SparseFactor& factor) { return *static_cast<MumpsJob*>(factor.job.get()); }

// Numbers of the manual, from 1 on.
MUMPS_INT& Icntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.icntl[number - 1]; }
double& Cntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.cntl[number - 1]; }
MUMPS_INT Infog(const DMUMPS_STRUC_C& id, std::size_t number) { return id.infog[number - 1]; }

void Call(Job what, DMUMPS_STRUC_C& id) {
  id.job = what;
  dmumps_c(&id);
}

[[noreturn]] void StopFailed(const DMUMPS_STRUC_C& id) {
  constexpr MUMPS_INT FileFailed = -90;
  const MUMPS_INT status = Infog(id, 1);
  throw korvex::Stop{status == FileFailed ? korvex::StopKind::ResultFile : korvex::StopKind::Notice,
                     DescribeMumpsError(status, Infog(id, 2), id.icntl[OutOfCoreControl - 1] == 1)};
}

void CallOrStop(Job what, DMUMPS_STRUC_C& id) {
  Call(what, id);
  if (Infog(id, 1) >= 0) return;
  StopFailed(id);
}

void SetFolder(const std::string& folder, DMUMPS_STRUC_C& id) {
  Icntl(id, OutOfCoreControl) = 1;
  if (folder.size() >= sizeof id.ooc_tmpdir) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "The name of the folder for the factors is too long: \"" + folder + "\"."};
  }
  std::copy(folder.begin(), folder.end(), id.ooc_tmpdir);
  id.ooc_tmpdir[folder.size()] = '\0';
  const std::string prefix = "factors";
  std::copy(prefix.begin(), prefix.end(), id.ooc_prefix);
  id.ooc_prefix[prefix.size()] = '\0';
  // KEEP(99) = 3: files are written at once, not by a thread, which would lose that a disk is full.
  id.keep[98] = 3;
}

void SetControls(DMUMPS_STRUC_C& id) {
  for (std::size_t stream = 1; stream <= 4; ++stream) Icntl(id, stream) = stream == 4 ? 0 : -1;
  Icntl(id, 6) = 0;    // no exchange of columns
  Icntl(id, 7) = 1;    // the order is given
  Icntl(id, 8) = -1;   // and so are the scales
  Icntl(id, 12) = 1;   // an order of rows, not of pairs of them
  Icntl(id, 13) = 1;   // the last front is one like the others
  Icntl(id, 24) = 1;   // null pivots are left out and listed
  Icntl(id, 27) = 32;  // columns of the right side at a time
  // Pivots are taken as they come: no other is 1e30 times as large. With 0, null pivots would end
  // the factorisation.
  Cntl(id, 1) = 1e-30;
  Cntl(id, 3) = NullPivot;
  Cntl(id, 4) = -1.0;  // and not changed
}

// Powers of two near 1 / sqrt(A(i, i)): they change no digit.
void FindScales(const UpperMatrix& A, std::vector<double>& scales) {
  scales.assign(static_cast<std::size_t>(CountRows(A)), 1.0);
  for (std::size_t i = 0; i < scales.size(); ++i) {
    const double diagonal = std::fabs(A.values[static_cast<std::size_t>(A.begins[i])]);
    if (diagonal > 0.0) scales[i] = std::ldexp(1.0, -std::ilogb(diagonal) / 2);
  }
}

void ListEntries(const UpperMatrix& A, MumpsJob& job) {
  const std::size_t entries = A.columns.size();
  korvex::AllocateOrStop("the places of the stiffness", entries, 2 * sizeof(MUMPS_INT), [&] {
    job.rows.resize(entries);
    job.columns.resize(entries);
  });
  for (std::size_t i = 0; i + 1 < A.begins.size(); ++i) {
    for (auto k = static_cast<std::size_t>(A.begins[i]);
         k < static_cast<std::size_t>(A.begins[i + 1]); ++k) {
      job.rows[k] = static_cast<MUMPS_INT>(i) + 1;
      job.columns[k] = A.columns[k] + 1;
    }
  }
}

std::uint64_t MegabytesOf(MUMPS_INT megabytes) {
  return static_cast<std::uint64_t>(std::max<MUMPS_INT>(megabytes, 0)) * Million;
}

// What the factorisation will take, with the space that MUMPS adds for safety.
void CheckFactorMemory(const FactorSettings& settings, const DMUMPS_STRUC_C& id) {
  const bool isOutOfCore = !settings.outOfCore.empty();
  const std::uint64_t bytes = MegabytesOf(Infog(id, isOutOfCore ? 26 : 16));
  if (settings.memory > 0 && bytes > settings.memory) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       DescribeMemory(bytes, settings.memory, isOutOfCore)};
  }
  korvex::CheckMemory("the factor of the stiffness", bytes, 1);
}

}  // namespace

bool HasSparseEngine() { return true; }

void AnalyseMatrix(const UpperMatrix& A, const std::vector<std::int32_t>& places,
                   const FactorSettings& settings, SparseFactor& factor) {
  factor = {};
  factor.n = CountRows(A);
  const auto job = std::make_shared<MumpsJob>();
  factor.job = job;
  ListEntries(A, *job);
  FindScales(A, job->scales);
  job->order.reserve(places.size());
  for (const std::int32_t place : places) job->order.push_back(place + 1);

  DMUMPS_STRUC_C& id = job->id;
  id.sym = 2;  // for positive definite ones, 1, null pivots end it
  id.par = 1;
  id.comm_fortran = WorldCommunicator;
  CallOrStop(Begin, id);
  job->hasBegun = true;
  SetControls(id);
  if (!settings.outOfCore.empty()) SetFolder(settings.outOfCore, id);
  id.n = factor.n;
  id.nnz = static_cast<MUMPS_INT8>(A.columns.size());
  id.irn = job->rows.data();
  id.jcn = job->columns.data();
  id.perm_in = job->order.data();
  CallOrStop(Analyse, id);
  job->order = {};
  if (Infog(id, 7) != 1) {
    throw korvex::Stop{korvex::StopKind::Notice, "MUMPS did not take the order of the equations."};
  }
  CheckFactorMemory(settings, id);
}

void FactorMatrix(const UpperMatrix& A, const FactorSettings& settings, SparseFactor& factor) {
  constexpr MUMPS_INT MostSpace = 640;  // per cent more than foreseen
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  // MUMPS reads them only.
  id.a = const_cast<double*>(A.values.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  id.colsca = id.rowsca = job.scales.data();
  Call(Factor, id);
  while (IsSpaceTooSmall(Infog(id, 1)) && Icntl(id, 14) < MostSpace) {
    Icntl(id, 14) = std::min(MostSpace, 2 * std::max<MUMPS_INT>(Icntl(id, 14), 20));
    Call(Factor, id);
  }
  if (Infog(id, 1) < 0) StopFailed(id);
  id.a = nullptr;
  id.irn = id.jcn = nullptr;
  job.rows = {};
  job.columns = {};
  factor.bytes = MegabytesOf(Infog(id, 19));
  factor.flops = id.rinfog[2];
  if (!settings.outOfCore.empty()) {
    // INFOG(9): entries, or where negative millions of them
    const MUMPS_INT entries = Infog(id, 9);
    factor.diskBytes = sizeof(double) *
                       (entries < 0 ? MegabytesOf(-entries) : static_cast<std::uint64_t>(entries));
  }
  for (MUMPS_INT k = 0; k < Infog(id, 28); ++k) factor.nullPivots.push_back(id.pivnul_list[k] - 1);
}

void SolveColumns(SparseFactor& factor, std::int32_t columns, double* x) {
  DMUMPS_STRUC_C& id = JobOf(factor).id;
  Icntl(id, 25) = 0;
  id.rhs = x;
  id.nrhs = columns;
  id.lrhs = factor.n;
  CallOrStop(Solve, id);
}

void FindNullVector(SparseFactor& factor, std::size_t rank, std::vector<double>& v) {
  DMUMPS_STRUC_C& id = JobOf(factor).id;
  v.assign(static_cast<std::size_t>(factor.n), 0.0);
  Icntl(id, 25) = static_cast<MUMPS_INT>(rank) + 1;
  id.rhs = v.data();
  id.nrhs = 1;
  id.lrhs = factor.n;
  CallOrStop(Solve, id);
  Icntl(id, 25) = 0;
}

}  // namespace kvx
