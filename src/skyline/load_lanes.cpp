#include "skyline/load_lanes.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <memory>

#include "report/check_memory.h"
#include "skyline/factor_skyline.h"
#include "skyline/panel/panel_routine.h"
#include "skyline/row_block.h"
#include "skyline/solve_skyline_plain.h"
#include "skyline/substitute_back.h"
#include "workers/run_threads.h"

namespace korvex {

namespace {

// Bytes. Rows of lanes begin at multiples of it: a vector across two cache lines takes twice the
// time to load.
constexpr std::size_t CacheLine = 64;

constexpr auto GroupSize = static_cast<std::size_t>(MaxLanes);

// Loads that are solved together: loads[first .. first + count - 1].
struct LoadGroup {
  std::size_t first, count;
};

std::int64_t CountLanes(const LoadGroup& group) {
  const auto count = static_cast<std::int64_t>(group.count);
  return (count + LaneStep - 1) / LaneStep * LaneStep;
}

void AddEntryWork(const SkylineMatrix& K, std::int64_t first, std::int64_t end, WorkShare* work) {
  if (work != nullptr) AddWork(CountEntryUnits(K, first, end), *work);
}

// Rows that are copied together, so that their lanes stay in the second-level cache.
constexpr std::size_t CopiedRows = 1024;

// Calls copy(lane, number) for each number of a vector of each load of the group and its lane.
// vectorOf(load): the vector.
template <typename VectorOf, typename Copy>
void CopyLanes(const LaneArrays& arrays, const std::vector<LoadedSystem>& loads,
               const LoadGroup& group, const VectorOf& vectorOf, const Copy& copy) {
  const auto n = static_cast<std::size_t>(arrays.K.n);
  const auto lanes = static_cast<std::size_t>(arrays.lanes);
  for (std::size_t begin = 0; begin < n; begin += CopiedRows) {
    const std::size_t end = std::min(begin + CopiedRows, n);
    for (std::size_t lane = 0; lane < group.count; ++lane) {
      double* numbers = vectorOf(loads[group.first + lane])->data();
      for (std::size_t i = begin; i < end; ++i) copy(arrays.values[i * lanes + lane], numbers[i]);
    }
  }
}

std::vector<double>* LoadOf(const LoadedSystem& load) { return load.F; }
std::vector<double>* SolutionOf(const LoadedSystem& load) { return load.u; }

void CopyIn(double& lane, double number) { lane = number; }
void CopyOut(double lane, double& number) { number = lane; }

void Reduce(const LaneRoutines& routines, const SkylineMatrix& K, const LaneArrays& arrays,
            WorkShare* work) {
  const std::int64_t n = CountColumns(K);
  for (std::int64_t first = 0; first < n; first += PanelColumns) {
    const std::int64_t end = std::min(first + PanelColumns, n);
    routines.reduce(arrays, first, end);
    AddEntryWork(K, first, end, work);
  }
}

void Substitute(const LaneRoutines& routines, const SkylineMatrix& K, const LaneArrays& arrays,
                WorkShare* work) {
  RowBlock block;
  std::vector<double> multipliers;
  block.begin = block.end = CountColumns(K);
  while (block.begin > 0) {
    MoveUp(K, arrays.values, arrays.lanes, block);
    const std::size_t size = block.columns.size() * static_cast<std::size_t>(BlockRows);
    if (multipliers.size() < size) {
      AllocateItems("the multipliers of a block of rows", 2 * size, multipliers);
    }
    routines.substitute(arrays,
                        {block.begin, block.end, block.columns.data(),
                         static_cast<std::int64_t>(block.columns.size()), multipliers.data()});
    AddEntryWork(K, block.begin, block.end, work);
  }
}

// For each lane 0, or NaN if one of its values is an infinity or a NaN.
std::array<double, GroupSize> FindNotFinite(const LaneArrays& arrays) {
  std::array<double, GroupSize> sums{};
  const double* value = arrays.values;
  for (std::int64_t i = 0; i < arrays.K.n; ++i) {
    for (std::int64_t lane = 0; lane < arrays.lanes; ++lane) {
      sums[static_cast<std::size_t>(lane)] += 0.0 * *value++;
    }
  }
  return sums;
}

// Solves one load by the routines that a single load has.
void SolveAlone(const SkylineMatrix& K, const LoadedSystem& load, WorkShare* work) {
  ReduceLoadPlain(K, 0, *load.F);
  AddEntryWork(K, 0, CountColumns(K), work);
  SubstituteBack(K, *load.F, *load.u, work);
}

// The doubles that the lanes of a group take, with a margin for their alignment.
std::size_t CountLaneValues(const SkylineMatrix& K, const LoadGroup& group) {
  return static_cast<std::size_t>(CountColumns(K) * CountLanes(group)) + CacheLine / sizeof(double);
}

void ReserveLanes(std::size_t size, std::vector<double>& memory) {
  if (memory.capacity() >= size) return;
  AllocateOrStop("the lanes of the loads", size, sizeof(double), [&] { memory.reserve(size); });
}

// Makes the lanes of a group, all zero, in `memory`.
LaneArrays MakeLanes(SkylineMatrix& K, const LoadGroup& group, std::vector<double>& memory) {
  const std::int64_t lanes = CountLanes(group);
  const auto size = static_cast<std::size_t>(CountColumns(K) * lanes);
  ReserveLanes(CountLaneValues(K, group), memory);
  memory.assign(CountLaneValues(K, group), 0.0);
  void* start = memory.data();
  std::size_t space = memory.size() * sizeof(double);
  std::align(CacheLine, size * sizeof(double), start, space);
  const SkylineArrays factors = {CountColumns(K), K.ColumnHeights.data(), K.DiagonalAddress.data(),
                                 K.Values.data(), nullptr};
  return {factors, K.SkylineSize, lanes, static_cast<double*>(start)};
}

// Each F keeps its load until it is known that the solution is finite; y waits in u.
// memory: for the lanes.
void SolveGroup(const LaneRoutines& routines, SkylineMatrix& K,
                const std::vector<LoadedSystem>& loads, const LoadGroup& group,
                std::vector<double>& memory, WorkShare* work) {
  const LaneArrays arrays = MakeLanes(K, group, memory);
  CopyLanes(arrays, loads, group, LoadOf, CopyIn);
  Reduce(routines, K, arrays, work);
  CopyLanes(arrays, loads, group, SolutionOf, CopyOut);
  Substitute(routines, K, arrays, work);
  const std::array<double, GroupSize> notFinite = FindNotFinite(arrays);
  for (std::size_t lane = 0; lane < group.count; ++lane) {
    const LoadedSystem& load = loads[group.first + lane];
    if (!std::isnan(notFinite[lane])) load.F->swap(*load.u);
  }
  CopyLanes(arrays, loads, group, SolutionOf, CopyOut);
  for (std::size_t lane = 0; lane < group.count; ++lane) {
    if (!std::isnan(notFinite[lane])) continue;
    if (work != nullptr) work->rest += 2.0 * CountEntryUnits(K, 0, CountColumns(K));
    SolveAlone(K, loads[group.first + lane], work);
  }
}

std::size_t CountGroups(const std::vector<LoadedSystem>& loads) {
  return (loads.size() + GroupSize - 1) / GroupSize;
}

LoadGroup GroupOf(const std::vector<LoadedSystem>& loads, std::size_t number) {
  const std::size_t first = number * GroupSize;
  return {first, std::min(GroupSize, loads.size() - first)};
}

// The bytes of the lanes of one group, the largest.
std::uint64_t CountLaneBytes(const SkylineMatrix& K, const std::vector<LoadedSystem>& loads) {
  return loads.empty() ? 0 : CountLaneValues(K, GroupOf(loads, 0)) * sizeof(double);
}

// Groups that several threads solve side by side.
struct SharedGroups {
  const LaneRoutines& routines;
  SkylineMatrix& K;  // is only read
  const std::vector<LoadedSystem>& loads;
  WorkShare* work;                          // of the caller's thread
  std::vector<std::vector<double>> memory;  // [threads] for the lanes
  std::atomic<std::size_t> next{0};         // the first group that nobody has taken
  std::atomic<int> uncounted{0};            // groups that other threads have solved
  std::atomic<bool> isStopped{false};       // nobody takes another group
};

void CountOthersGroups(SharedGroups& shared) {
  const int groups = shared.uncounted.exchange(0);
  if (groups == 0 || shared.work == nullptr) return;
  AddWork(2.0 * groups * CountEntryUnits(shared.K, 0, CountColumns(shared.K)), *shared.work);
}

void TakeGroups(int number, SharedGroups& shared) {
  const bool isCaller = number == 0;
  while (!shared.isStopped) {
    const std::size_t group = shared.next.fetch_add(1);
    if (group >= CountGroups(shared.loads)) return;
    SolveGroup(shared.routines, shared.K, shared.loads, GroupOf(shared.loads, group),
               shared.memory[static_cast<std::size_t>(number)], isCaller ? shared.work : nullptr);
    if (isCaller) {
      CountOthersGroups(shared);
    } else {
      ++shared.uncounted;
    }
  }
}

// How many threads can solve groups at once: the memory has room for the lanes of all of them. They
// are counted together, because memory that is granted and not yet used still counts as free.
int CountThreadsWithLanes(const SkylineMatrix& K, const std::vector<LoadedSystem>& loads,
                          int threads) {
  const auto useful = std::min(CountGroups(loads), static_cast<std::size_t>(std::max(threads, 1)));
  return CountThreadsInMemory(static_cast<int>(useful), 0, CountLaneBytes(K, loads));
}

// The lanes of all threads are allocated before they begin.
void SolveGroupsOnThreads(const LaneRoutines& routines, SkylineMatrix& K,
                          const std::vector<LoadedSystem>& loads, WorkShare* work, int threads) {
  SharedGroups shared{routines, K, loads, work, {}};
  shared.memory.resize(static_cast<std::size_t>(threads));
  for (std::vector<double>& memory : shared.memory) {
    ReserveLanes(CountLaneValues(K, GroupOf(loads, 0)), memory);
  }
  RunThreads(threads, [&](int number) {
    try {
      TakeGroups(number, shared);
    } catch (...) {
      shared.isStopped = true;
      throw;
    }
  });
  CountOthersGroups(shared);
}

}  // namespace

void SolveLanes(int vectorBits, SkylineMatrix& K, const std::vector<LoadedSystem>& loads,
                WorkShare* work, int threads) {
  const LaneRoutines routines = FindLaneRoutines(vectorBits);
  if (routines.reduce == nullptr) {
    for (const LoadedSystem& load : loads) SolveAlone(K, load, work);
    return;
  }
  const int useful = CountThreadsWithLanes(K, loads, threads);
  if (useful > 1) {
    SolveGroupsOnThreads(routines, K, loads, work, useful);
    return;
  }
  std::vector<double> memory;
  for (std::size_t group = 0; group < CountGroups(loads); ++group) {
    SolveGroup(routines, K, loads, GroupOf(loads, group), memory, work);
  }
}

void FactorAndSolve(int vectorBits, SkylineMatrix& K, const std::vector<LoadedSystem>& loads,
                    ColumnCounter& columns, int threads) {
  if (loads.size() == 1) {
    FactorSkyline(vectorBits, K, *loads[0].F, columns, threads);
    SubstituteBack(K, *loads[0].F, *loads[0].u, columns.work);
  } else {
    // The lanes come afterwards and must find room beside what threads leave behind.
    FactorSkyline(vectorBits, K, columns,
                  CountThreadsInMemory(threads, CountLaneBytes(K, loads), 0));
    SolveLanes(vectorBits, K, loads, columns.work, threads);
  }
}

double CountSubstitutionUnits(const SkylineMatrix& K, std::size_t loads) {
  const std::size_t groups = (loads + GroupSize - 1) / GroupSize;
  const double passes = loads == 1 ? 1.0 : 2.0 * static_cast<double>(groups);
  return passes * CountEntryUnits(K, 0, CountColumns(K));
}

}  // namespace korvex
