#include <dmumps_c.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "platform/free_memory.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "sparse/mumps_error.h"
#include "sparse/mumps_library.h"
#include "sparse/refined_columns.h"
#include "sparse/sparse_factor.h"

namespace kvx {

namespace {

constexpr MUMPS_INT WorldCommunicator = -987654;  // that of MPI, as MUMPS wants it named
constexpr std::size_t OutOfCoreControl = 22;      // of ICNTL
constexpr std::size_t SpaceControl = 14;          // per cent more than foreseen
constexpr std::size_t MemoryControl = 23;         // megabytes that MUMPS may take
constexpr std::uint64_t Million = 1000000;

enum Job : MUMPS_INT { Begin = -1, End = -2, Analyse = 1, Factor = 2, Solve = 3 };

// MUMPS with the arrays that it reads.
struct MumpsJob {
  DMUMPS_STRUC_C id{};
  std::vector<MUMPS_INT> rows, columns, order;
  std::vector<double> scales;
  decltype(&dmumps_c) run = nullptr;
  FactorMemory memory;
  bool hasBegun = false;

  MumpsJob() = default;
  ~MumpsJob() {
    if (!hasBegun) return;
    id.job = End;
    run(&id);
  }
  MumpsJob(const MumpsJob&) = delete;
  MumpsJob& operator=(const MumpsJob&) = delete;
};

MumpsJob& JobOf(SparseFactor& factor) { return *static_cast<MumpsJob*>(factor.job.get()); }

// Numbers of the manual, from 1 on.
MUMPS_INT& Icntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.icntl[number - 1]; }
double& Cntl(DMUMPS_STRUC_C& id, std::size_t number) { return id.cntl[number - 1]; }
MUMPS_INT Infog(const DMUMPS_STRUC_C& id, std::size_t number) { return id.infog[number - 1]; }

void Call(Job what, MumpsJob& job) {
  job.id.job = what;
  job.run(&job.id);
}

[[noreturn]] void StopFailed(const MumpsJob& job) {
  constexpr MUMPS_INT FileFailed = -90;
  const MUMPS_INT status = Infog(job.id, 1);
  throw korvex::Stop{status == FileFailed ? korvex::StopKind::ResultFile : korvex::StopKind::Notice,
                     DescribeMumpsError(status, Infog(job.id, 2), job.memory)};
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
  const std::string prefix = "factors";
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
  // Columns of the right side at a time: all that are given, so that the factors are read once.
  Icntl(id, 27) = static_cast<MUMPS_INT>(BlockColumns + FirstColumns);
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

// Bytes that MUMPS may take now.
std::uint64_t FindBudget(const FactorSettings& settings) {
  const std::uint64_t free = korvex::ReadFreeMemory();
  const std::uint64_t budget = free - std::min(free, settings.coming);
  if (settings.memory == 0) return budget;
  return std::min(budget, settings.memory - std::min(settings.memory, settings.beside));
}

// Bytes that MUMPS foresees, with the space that it adds for safety.
std::uint64_t ReadForeseen(const DMUMPS_STRUC_C& id) {
  return MegabytesOf(Infog(id, id.icntl[OutOfCoreControl - 1] == 1 ? 26 : 16));
}

void NoteMemory(const FactorSettings& settings, std::uint64_t bytes, std::uint64_t budget,
                FactorMemory& memory) {
  memory.isOutOfCore = !settings.outOfCore.empty();
  memory.isLimitGiven = settings.memory > 0 && budget + settings.beside >= settings.memory;
  memory.needed = bytes + (memory.isLimitGiven ? settings.beside : settings.coming);
  memory.allowed = memory.isLimitGiven ? settings.memory : budget + settings.coming;
}

void CheckFactorMemory(const FactorSettings& settings, MumpsJob& job) {
  const std::uint64_t bytes = ReadForeseen(job.id), budget = FindBudget(settings);
  NoteMemory(settings, bytes, budget, job.memory);
  if (bytes <= budget) return;
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
  const std::uint64_t foreseen = ReadForeseen(id), budget = FindBudget(settings);
  const MUMPS_INT first = Icntl(id, SpaceControl);
  std::uint64_t bytes = std::min(foreseen, budget);
  for (;;) {
    NoteMemory(settings, bytes, budget, job.memory);
    Icntl(id, MemoryControl) = static_cast<MUMPS_INT>(bytes / Million);
    Call(Factor, job);
    if (!IsSpaceTooSmall(Infog(id, 1)) || Icntl(id, SpaceControl) >= MostSpace) return;
    Icntl(id, SpaceControl) =
        std::min(MostSpace, 2 * std::max(Icntl(id, SpaceControl), LeastSpace));
    const std::uint64_t grown = GrowForeseen(foreseen, first, Icntl(id, SpaceControl));
    NoteMemory(settings, std::max(grown, budget + 1), budget, job.memory);
    if (bytes >= budget) return;
    bytes = std::min(grown, budget);
  }
}

}  // namespace

bool HasSparseEngine() { return true; }

void AnalyseMatrix(const UpperMatrix& A, const std::vector<std::int32_t>& places,
                   const FactorSettings& settings, SparseFactor& factor) {
  factor = {};
  factor.n = CountRows(A);
  const auto job = std::make_shared<MumpsJob>();
  factor.job = job;
  // NOLINTNEXTLINE(cppcoreguidelines-pro-type-reinterpret-cast): as the system's interface is
  job->run = reinterpret_cast<decltype(&dmumps_c)>(LoadMumps());
  ListEntries(A, *job);
  FindScales(A, job->scales);
  job->order.reserve(places.size());
  for (const std::int32_t place : places) job->order.push_back(place + 1);

  DMUMPS_STRUC_C& id = job->id;
  id.sym = 2;  // for positive definite ones, 1, null pivots end it
  id.par = 1;
  id.comm_fortran = WorldCommunicator;
  CallOrStop(Begin, *job);
  job->hasBegun = true;
  SetControls(id);
  if (!settings.outOfCore.empty()) SetFolder(settings.outOfCore, id);
  id.n = factor.n;
  id.nnz = static_cast<MUMPS_INT8>(A.columns.size());
  id.irn = job->rows.data();
  id.jcn = job->columns.data();
  id.perm_in = job->order.data();
  CallOrStop(Analyse, *job);
  job->order = {};
  if (Infog(id, 7) != 1) {
    throw korvex::Stop{korvex::StopKind::Notice, "MUMPS did not take the order of the equations."};
  }
  CheckFactorMemory(settings, *job);
}

void FactorMatrix(const UpperMatrix& A, const FactorSettings& settings, SparseFactor& factor) {
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  // MUMPS reads them only.
  id.a = const_cast<double*>(A.values.data());  // NOLINT(cppcoreguidelines-pro-type-const-cast)
  id.colsca = id.rowsca = job.scales.data();
  FactorInBudget(settings, job);
  if (Infog(id, 1) < 0) StopFailed(job);
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
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  Icntl(id, 25) = 0;
  id.rhs = x;
  id.nrhs = columns;
  id.lrhs = factor.n;
  CallOrStop(Solve, job);
}

void FindNullVector(SparseFactor& factor, std::size_t rank, std::vector<double>& v) {
  MumpsJob& job = JobOf(factor);
  DMUMPS_STRUC_C& id = job.id;
  v.assign(static_cast<std::size_t>(factor.n), 0.0);
  Icntl(id, 25) = static_cast<MUMPS_INT>(rank) + 1;
  id.rhs = v.data();
  id.nrhs = 1;
  id.lrhs = factor.n;
  CallOrStop(Solve, job);
  Icntl(id, 25) = 0;
}

}  // namespace kvx
