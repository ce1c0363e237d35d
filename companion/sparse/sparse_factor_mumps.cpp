#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "base/release_vector.h"
#include "platform/free_memory.h"
#include "ranks/ranks.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "sparse/blas_threads.h"
#include "sparse/mumps_error.h"
#include "sparse/mumps_library.h"
#include "sparse/refined_columns.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

constexpr MUMPS_INT WorldCommunicator = -987654;  // that of MPI, as MUMPS wants it named
constexpr std::size_t OutOfCoreControl = 22;      // of ICNTL
constexpr std::size_t SpaceControl = 14;          // per cent more than foreseen
constexpr std::size_t MemoryControl = 23;         // millions of bytes that MUMPS may take
constexpr std::uint64_t Million = 1000000;

enum Job : MUMPS_INT { Begin = -1, End = -2, Analyse = 1, Factor = 2, Solve = 3 };

// MUMPS with the arrays that it reads.
struct MumpsJob {
  DMUMPS_STRUC_C id{};
  std::vector<MUMPS_INT> rows, columns, order;
  std::vector<double> scales, values;
  decltype(&dmumps_c) run = nullptr;
  FactorMemory memory;
  bool hasBegun = false;
  bool isShared = false;  // other ranks have parts of it

  MumpsJob() = default;
  ~MumpsJob() {
    if (!hasBegun) return;
    id.job = End;
    run(&id);
  }
  MumpsJob(const MumpsJob&) = delete;
  MumpsJob& operator=(const MumpsJob&) = delete;

  // They do the same then.
  void TellOthers(RankTask task) const {
    if (isShared && RankOfThis() == 0) Tell(task);
  }
};

MumpsJob& JobOf(SparseFactor& factor) { return *static_cast<MumpsJob*>(factor.job.get()); }

// Numbers of the manual, from 1 on.
MUMPS_INT& Icntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.icntl[number - 1]; }
double& Cntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.cntl[number - 1]; }
MUMPS_INT Infog(const DMUMPS_STRUC_C& id, std::size_t number) { return id.infog[number - 1]; }
MUMPS_INT Info(const DMUMPS_STRUC_C& id, std::size_t number) { return id.info[number - 1]; }

void Call(Job what, MumpsJob& job) {
  job.id.job = what;
  job.run(&job.id);
}

[[noreturn]] void StopFailed(const MumpsJob& job) {
  constexpr MUMPS_INT FileFailed = -90;
  const MUMPS_INT status = Infog(job.id, 1);
  std::string rank;
  if (CountRanks() > 1) {
    const bool isElsewhere = Info(job.id, 1) == -1;
    rank = "Rank " + std::to_string(isElsewhere ? Info(job.id, 2) : RankOfThis()) + ": ";
  }
  throw korvex::Stop{status == FileFailed ? korvex::StopKind::ResultFile : korvex::StopKind::Notice,
                     rank + DescribeMumpsError(status, Infog(job.id, 2), job.memory)};
}

void CallOrStop(Job what, MumpsJob& job) {
  Call(what, job);
  if (Infog(job.id, 1) < 0) StopFailed(job);
}

void SetFolder(const std::string& folder, DMUMPS_STRUC_C& id) {
  Icntl(id, OutOfCoreControl) = 1;
  if (folder.size() >= sizeof id.ooc_tmpdir) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "The name of the folder for the factors is too long: \"" + folder + "\"."};
  }
  std::copy(folder.begin(), folder.end(), id.ooc_tmpdir);
  id.ooc_tmpdir[folder.size()] = '\0';
  const std::string prefix = FactorFilePrefix;
  std::copy(prefix.begin(), prefix.end(), id.ooc_prefix);
  id.ooc_prefix[prefix.size()] = '\0';
  // KEEP(99) = 3: files are written at once, not by a thread, which would lose that a disk is full.
  id.keep[98] = 3;
}

void SetControls(DMUMPS_STRUC_C& id) {
  for (std::size_t stream = 1; stream <= 4; ++stream) Icntl(id, stream) = stream == 4 ? 0 : -1;
  Icntl(id, 6) = 0;   // no exchange of columns
  Icntl(id, 7) = 1;   // the order is given
  Icntl(id, 8) = -1;  // and so are the scales
  Icntl(id, 12) = 1;  // an order of rows, not of pairs of them
  Icntl(id, 13) = 1;  // the last front is one like the others
  Icntl(id, 24) = 1;  // null pivots are left out and listed
  Icntl(id, 28) = 1;  // one rank analyses
  // Columns of the right side at a time: all that are given, so that the factors are read once.
  Icntl(id, 27) = static_cast<MUMPS_INT>(BlockColumns + ModeColumns);
  // Pivots are taken as they come: no other is 1e30 times as large. With 0, null pivots would end
  // the factorisation.
  Cntl(id, 1) = 1e-30;
  Cntl(id, 3) = NullPivot;
  Cntl(id, 4) = -1.0;  // and not changed
}

// Powers of two near 1 / sqrt(A(i, i)): they change no digit. All ranks get those of all rows.
void FindScales(const UpperMatrix& A, std::vector<double>& scales) {
  for (std::size_t row = 0; row < CountRowsHere(A); ++row) {
    const double diagonal = std::fabs(A.values[static_cast<std::size_t>(A.begins[row])]);
    double& scale = scales[RowOf(A, row)];
    scale = diagonal > 0.0 ? std::ldexp(1.0, -std::ilogb(diagonal) / 2) : 1.0;
  }
  if (!A.isPart) return;
  AddToFirst(scales.data(), scales.size());
  const std::size_t bytes = scales.size() * sizeof(double);
  if (RankOfThis() == 0) return SendToAll(scales.data(), bytes);
  ReceiveFromFirst(scales.data(), bytes);
}

// The entries of the scaled matrix: MUMPS takes no scales for parts of a matrix.
void ScaleEntries(const UpperMatrix& A, MumpsJob& job) {
  korvex::AllocateItems("the scaled stiffness", A.values.size(), job.values);
  for (std::size_t k = 0; k < A.values.size(); ++k) {
    const auto row = static_cast<std::size_t>(job.rows[k] - 1);
    const auto column = static_cast<std::size_t>(job.columns[k] - 1);
    job.values[k] = A.values[k] * job.scales[row] * job.scales[column];
  }
}

// For a matrix that was scaled so: between its solutions and those of A. x: columns of n.
void ScaleColumns(const MumpsJob& job, std::int32_t columns, double* x) {
  for (std::int32_t k = 0; k < columns; ++k) {
    for (const double scale : job.scales) *x++ *= scale;
  }
}

void ListEntries(const UpperMatrix& A, MumpsJob& job) {
  const std::size_t entries = A.columns.size();
  korvex::AllocateOrStop("the places of the stiffness", entries, 2 * sizeof(MUMPS_INT), [&] {
    job.rows.resize(entries);
    job.columns.resize(entries);
  });
  for (std::size_t i = 0; i < CountRowsHere(A); ++i) {
    for (auto k = static_cast<std::size_t>(A.begins[i]);
         k < static_cast<std::size_t>(A.begins[i + 1]); ++k) {
      job.rows[k] = static_cast<MUMPS_INT>(RowOf(A, i)) + 1;
      job.columns[k] = A.columns[k] + 1;
    }
  }
}

// MUMPS counts bytes in millions, and entries where there are many.
std::uint64_t FromMillions(MUMPS_INT millions) {
  return static_cast<std::uint64_t>(std::max<MUMPS_INT>(millions, 0)) * Million;
}

// What MUMPS may take and will take, of the rank that takes most; the same on all ranks.
struct Budget {
  std::uint64_t allowed = 0;   // bytes, now
  std::uint64_t foreseen = 0;  // bytes, with the space that MUMPS adds for safety
};

// Bytes that MUMPS may take on this rank.
std::uint64_t FindAllowed(const FactorSettings& settings) {
  const std::uint64_t free =
      korvex::ReadFreeMemory() / static_cast<std::uint64_t>(CountRanksHere());
  const std::uint64_t allowed = free - std::min(free, settings.coming);
  if (settings.memory == 0) return allowed;
  return std::min(allowed, settings.memory - std::min(settings.memory, settings.beside));
}

// After the analysis. All ranks have to call MUMPS as often as each other: so rank 0 decides.
Budget FindBudget(const FactorSettings& settings, const MumpsJob& job) {
  Budget budget;
  budget.allowed = FindAllowed(settings);
  budget.foreseen = FromMillions(Infog(job.id, settings.outOfCore.empty() ? 16 : 26));
  if (!job.isShared) return budget;
  std::vector<std::uint64_t> all(static_cast<std::size_t>(CountRanks()));
  Gather(&budget.allowed, sizeof budget.allowed, all.data());
  budget.allowed = *std::min_element(all.begin(), all.end());
  if (RankOfThis() == 0) {
    SendToAll(&budget, sizeof budget);
  } else {
    ReceiveFromFirst(&budget, sizeof budget);
  }
  return budget;
}

void NoteMemory(const FactorSettings& settings, std::uint64_t bytes, std::uint64_t allowed,
                FactorMemory& memory) {
  memory.isOutOfCore = !settings.outOfCore.empty();
  memory.isLimitGiven = settings.memory > 0 && allowed + settings.beside >= settings.memory;
  memory.needed = bytes + (memory.isLimitGiven ? settings.beside : settings.coming);
  memory.allowed = memory.isLimitGiven ? settings.memory : allowed + settings.coming;
}

void CheckFactorMemory(const FactorSettings& settings, MumpsJob& job) {
  const Budget budget = FindBudget(settings, job);
  NoteMemory(settings, budget.foreseen, budget.allowed, job.memory);
  if (budget.foreseen <= budget.allowed) return;
  throw korvex::Stop{korvex::StopKind::Notice, DescribeMemory(job.memory)};
}

// Bytes for a space of so many per cent more than foreseen; `space` per cent are part of that.
std::uint64_t GrowForeseen(std::uint64_t foreseen, MUMPS_INT space, MUMPS_INT larger) {
  return foreseen / static_cast<std::uint64_t>(100 + space) *
         static_cast<std::uint64_t>(100 + larger);
}

// Factorises in the space that was foreseen, and in larger ones where that is too small and the
// budget holds them.
void FactorInBudget(const FactorSettings& settings, MumpsJob& job) {
  constexpr MUMPS_INT MostSpace = 640, LeastSpace = 20;  // per cent
  DMUMPS_STRUC_C& id = job.id;
  const Budget budget = FindBudget(settings, job);
  const MUMPS_INT first = Icntl(id, SpaceControl);
  std::uint64_t bytes = std::min(budget.foreseen, budget.allowed);
  for (;;) {
    NoteMemory(settings, bytes, budget.allowed, job.memory);
    Icntl(id, MemoryControl) = static_cast<MUMPS_INT>(bytes / Million);
    Call(Factor, job);
    if (!IsSpaceTooSmall(Infog(id, 1)) || Icntl(id, SpaceControl) >= MostSpace) return;
    Icntl(id, SpaceControl) =
        std::min(MostSpace, 2 * std::max(Icntl(id, SpaceControl), LeastSpace));
    const std::uint64_t grown = GrowForeseen(budget.foreseen, first, Icntl(id, SpaceControl));
    NoteMemory(settings, std::max(grown, budget.allowed + 1), budget.allowed, job.memory);
    if (bytes >= budget.allowed) return;
    bytes = std::min(grown, budget.allowed);
  }
}

// What this rank has of the work, on rank 0 with that of all others. flops: of both kinds, that of
// the fronts is nearly all.
void GatherShares(const UpperMatrix& A, double flops, MUMPS_INT millions, SparseFactor& factor) {
  RankShare mine;
  mine.entries = A.columns.size();
  mine.flops = flops;
  mine.bytes = FromMillions(millions);
  std::vector<RankShare> all(static_cast<std::size_t>(CountRanks()));
  Gather(&mine, sizeof mine, all.data());
  if (RankOfThis() == 0) factor.ranks = std::move(all);
}

void GiveEntries(const UpperMatrix& A, MumpsJob& job) {
  DMUMPS_STRUC_C& id = job.id;
  if (A.isPart) {
    Icntl(id, 18) = 3;  // each rank gives those that it has
    id.nnz_loc = static_cast<MUMPS_INT8>(A.columns.size());
    id.irn_loc = job.rows.data();
    id.jcn_loc = job.columns.data();
  } else {
    id.nnz = static_cast<MUMPS_INT8>(A.columns.size());
    id.irn = job.rows.data();
    id.jcn = job.columns.data();
  }
}

// What rank 0 says of all.
bool IsOutOfCore(const FactorSettings& settings) {
  bool isOutOfCore = !settings.outOfCore.empty();
  if (RankOfThis() == 0) {
    SendToAll(&isOutOfCore, sizeof isOutOfCore);
  } else {
    ReceiveFromFirst(&isOutOfCore, sizeof isOutOfCore);
  }
  return isOutOfCore;
}

void GiveValues(const UpperMatrix& A, MumpsJob& job) {
  if (A.isPart) {
    DoTogether([&] { ScaleEntries(A, job); });
    Icntl(job.id, 8) = 0;
    job.id.a_loc = job.values.data();
    return;
  }
  // MUMPS reads them only.
  job.id.a = const_cast<double*>(A.values.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  job.id.colsca = job.id.rowsca = job.scales.data();
}

}  // namespace

bool HasSparseEngine() { return true; }

std::string WhyNotLoaded() { return WhyNoMumps(); }

void AnalyseMatrix(const UpperMatrix& A, const std::vector<std::int32_t>& places,
                   const FactorSettings& settings, SparseFactor& factor) {
  factor = {};
  factor.n = CountRows(A);
  const auto job = std::make_shared<MumpsJob>();
  factor.job = job;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  job->run = reinterpret_cast<decltype(&dmumps_c)>(LoadMumps());
  job->isShared = A.isPart;
  job->TellOthers(RankTask::Analyse);
  DoTogether([&] {
    if (RankOfThis() != 0) PrepareBlas(1, 0);  // rank 0 has done so, for its own number of threads
    ListEntries(A, *job);
    korvex::AllocateItems("the scales", static_cast<std::size_t>(factor.n), job->scales);
    korvex::ReserveItems("the order of the equations", places.size(), job->order);
    for (const std::int32_t place : places) job->order.push_back(place + 1);
  });
  FindScales(A, job->scales);

  DMUMPS_STRUC_C& id = job->id;
  id.sym = 2;  // for positive definite ones, 1, null pivots end it
  id.par = 1;
  id.comm_fortran = WorldCommunicator;
  CallOrStop(Begin, *job);
  job->hasBegun = true;
  SetControls(id);
  DoTogether([&] {
    if (!settings.outOfCore.empty()) SetFolder(settings.outOfCore, id);
  });
  GiveEntries(A, *job);
  id.n = factor.n;
  id.perm_in = job->order.data();
  CallOrStop(Analyse, *job);
  korvex::ReleaseVector(job->order);
  if (Infog(id, 7) != 1) {
    throw korvex::Stop{korvex::StopKind::Notice, "MUMPS did not take the order of the equations."};
  }
  CheckFactorMemory(settings, *job);
  if (A.isPart) GatherShares(A, id.rinfo[0], Info(id, IsOutOfCore(settings) ? 17 : 15), factor);
}

void FactorMatrix(const UpperMatrix& A, const FactorSettings& settings, SparseFactor& factor) {
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  job.TellOthers(RankTask::Factor);
  GiveValues(A, job);
  FactorInBudget(settings, job);
  if (Infog(id, 1) < 0) StopFailed(job);
  id.a = id.a_loc = nullptr;
  id.irn = id.jcn = id.irn_loc = id.jcn_loc = nullptr;
  korvex::ReleaseVector(job.rows);
  korvex::ReleaseVector(job.columns);
  korvex::ReleaseVector(job.values);
  factor.bytes = FromMillions(Infog(id, 19));
  factor.flops = id.rinfog[2];
  if (!settings.outOfCore.empty()) {
    // INFOG(9): entries, or where negative millions of them
    const MUMPS_INT entries = Infog(id, 9);
    factor.diskBytes = sizeof(double) *
                       (entries < 0 ? FromMillions(-entries) : static_cast<std::uint64_t>(entries));
  }
  if (A.isPart) GatherShares(A, id.rinfo[2], Info(id, 16), factor);
  if (RankOfThis() != 0) return;
  for (MUMPS_INT k = 0; k < Infog(id, 28); ++k) factor.nullPivots.push_back(id.pivnul_list[k] - 1);
}

void SolveColumns(SparseFactor& factor, std::int32_t columns, double* x) {
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  job.TellOthers(RankTask::Solve);
  if (job.isShared) ScaleColumns(job, columns, x);
  Icntl(id, 25) = 0;
  id.rhs = x;
  id.nrhs = columns;
  id.lrhs = factor.n;
  CallOrStop(Solve, job);
  if (job.isShared) ScaleColumns(job, columns, x);
}

void FindNullVector(SparseFactor& factor, std::size_t rank, std::vector<double>& v) {
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  v.assign(static_cast<std::size_t>(factor.n), 0.0);
  job.TellOthers(RankTask::Solve);
  Icntl(id, 25) = static_cast<MUMPS_INT>(rank) + 1;
  id.rhs = v.data();
  id.nrhs = 1;
  id.lrhs = factor.n;
  CallOrStop(Solve, job);
  Icntl(id, 25) = 0;
  if (job.isShared) ScaleColumns(job, 1, v.data());
}

}  // namespace kvx
