#include "beamshell/solve_beam_lanes.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <string>

#include "base/release_vector.h"
#include "beamshell/solve_beam_shell.h"
#include "report/check_memory.h"
#include "shell/lanes/load_shell.h"
#include "shell/lanes/shell_lanes.h"
#include "skyline/panel/panel_routine.h"

namespace korvex {

namespace {

// Bytes. Vectors begin at multiples of their length: one across two cache lines takes twice the
// time to load.
constexpr std::size_t CacheLine = 64;

// Models that are solved side by side.
struct LaneModels {
  ShellRoutines shells;
  SystemRoutines systems;
  SumRoutine sum = nullptr;
  std::size_t lanes = 1;
  std::vector<LaneBeam> beams;  // [lanes] lanes without a beam of their own repeat the first
  std::vector<char> isFinite;   // [lanes]
  SystemLanes arrays{};
  std::int64_t entries = 0;    // of each system
  std::size_t stepShells = 0;  // of each step of the extrusion
  double* numbers = nullptr;   // shells x ShellNumbers x lanes
  double* stresses = nullptr;  // stepShells x ShellStresses x lanes
};

// Fills the profile of the models, and finds the last column that reaches each row.
void BuildProfile(const BeamShellModel& model, BeamLanes& memory) {
  BuildBeamShellColumns(model, memory.profile);
  std::int64_t known = CountColumns(memory.profile);  // rows from this one on
  memory.reach.resize(static_cast<std::size_t>(known));
  for (std::int64_t j = known - 1; j >= 0; --j) {
    for (const std::int64_t top = TopRow(memory.profile, j); known > top; --known) {
      memory.reach[static_cast<std::size_t>(known - 1)] = j;
    }
  }
}

// Sets the arrays of `models` in `memory`. Their values are undefined, loads are zero.
// Returns false where there is no room.
bool PlaceArrays(BeamLanes& memory, LaneModels& models) {
  const SkylineMatrix& K = memory.profile;
  const std::size_t L = models.lanes, n = K.ColumnHeights.size();
  models.entries = K.SkylineSize;
  const std::size_t values = static_cast<std::size_t>(K.SkylineSize) * L;
  const std::size_t numbers =
      models.beams[0].model->Shells.size() * static_cast<std::size_t>(ShellNumbers) * L;
  const std::size_t stresses = models.stepShells * static_cast<std::size_t>(ShellStresses) * L;
  const auto highest = *std::max_element(K.ColumnHeights.begin(), K.ColumnHeights.end());
  const std::size_t multipliers =
      static_cast<std::size_t>(highest) * static_cast<std::size_t>(MaxGroupColumns) * L;
  const std::size_t size =
      values + n * L + numbers + stresses + multipliers + CacheLine / sizeof(double);
  if (memory.values.capacity() < size) {
    ReleaseVector(memory.values);  // first: memory may not hold the old values and the new
    if (!HasMemory(size, sizeof(double))) return false;
    memory.values.reserve(size);
  }
  memory.values.resize(size);
  void* start = memory.values.data();
  std::size_t space = size * sizeof(double);
  std::align(CacheLine, sizeof(double), start, space);
  models.arrays = {static_cast<std::int64_t>(n),
                   K.ColumnHeights.data(),
                   K.DiagonalAddress.data(),
                   static_cast<double*>(start),
                   static_cast<double*>(start) + values,
                   static_cast<double*>(start) + values + n * L};
  std::fill_n(models.arrays.loads, n * L, 0.0);
  models.numbers = models.arrays.multipliers + multipliers;
  models.stresses = models.numbers + numbers;
  return true;
}

// Returns false where the memory is too small.
bool PrepareSystems(BeamLanes& memory, LaneModels& models) {
  try {
    BuildProfile(*models.beams[0].model, memory);
    return PlaceArrays(memory, models);
  } catch (const std::bad_alloc&) {
    return false;
  }
}

// Returns the steps of a model that is extruded.
std::size_t StepsOf(const BeamShellModel& model) {
  return static_cast<std::size_t>((model.NodeCount - 2) / model.ProfileNodeCount - 1);
}

ShellLanes StepOf(std::size_t step, const LaneModels& models) {
  const std::size_t first = step * models.stepShells;
  return {static_cast<std::int64_t>(models.stepShells),
          models.numbers + first * static_cast<std::size_t>(ShellNumbers) * models.lanes,
          &models.beams[0].model->ShellNodes[first * 4]};
}

// Copies the numbers of the shells of a step.
void LoadStep(std::size_t step, const LaneModels& models) {
  const std::size_t first = step * models.stepShells;
  const std::size_t size = static_cast<std::size_t>(ShellNumbers) * models.lanes;
  for (std::size_t lane = 0; lane < models.lanes; ++lane) {
    for (std::size_t e = first; e < first + models.stepShells; ++e) {
      LoadShell(models.beams[lane].model->Shells[e], models.lanes,
                models.numbers + e * size + lane);
    }
  }
}

// Adds the links of one end of a model, and imposes its displacements.
void AddLaneEnd(std::size_t lane, BeamEnd end, const LaneModels& models) {
  const SystemLanes& arrays = models.arrays;
  const LaneBeam& beam = models.beams[lane];
  double* const values = arrays.values + lane;
  const auto addressOf = [&](std::int64_t i, std::int64_t j) {
    return (arrays.diagonalAddress[j] + (j - i)) * static_cast<std::int64_t>(models.lanes);
  };
  const auto add = [&](const double* ke, const std::int32_t* g, std::int32_t n) {
    for (std::int32_t r = 0; r < n; ++r) {
      for (std::int32_t c = r; c < n; ++c) {
        values[addressOf(std::min(g[r], g[c]), std::max(g[r], g[c]))] += ke[r * n + c];
      }
    }
  };
  const auto drive = [&](std::size_t equation, double diagonal, double load) {
    const auto j = static_cast<std::int64_t>(equation);
    values[addressOf(j, j)] = diagonal;
    arrays.loads[equation * models.lanes + lane] = load;
  };
  HandOverLinks(*beam.model, end, add);
  DriveEnd(*beam.model, end, end == BeamEnd::First ? beam.u1 : beam.u2, drive);
}

// Marks the lanes that have an infinity or a NaN among `count` values of all lanes.
void MarkNotFinite(const double* values, std::int64_t count, LaneModels& models) {
  const auto L = static_cast<std::int64_t>(models.lanes);
  if (std::isfinite(models.sum(values, count))) return;
  for (std::int64_t i = 0; i < count; ++i) {
    if (!std::isfinite(values[i])) models.isFinite[static_cast<std::size_t>(i % L)] = 0;
  }
}

// Where the values of column j begin; j = n: where they end.
std::int64_t ColumnStart(std::int64_t j, const LaneModels& models) {
  const std::int64_t entry =
      j < models.arrays.n ? models.arrays.diagonalAddress[j] : models.entries;
  return entry * static_cast<std::int64_t>(models.lanes);
}

// Sets the columns first .. end - 1 to zero.
void ClearColumns(std::int64_t first, std::int64_t end, const LaneModels& models) {
  double* const values = models.arrays.values;
  std::fill(values + ColumnStart(first, models), values + ColumnStart(end, models), 0.0);
}

// Assembles and factorises the systems, step by step of the extrusion. So the columns are in the
// second-level cache while they are worked on. When the shells of a step are added, and the links
// of an end that it has, nothing more comes to its first station. Every entry receives its terms in
// the order of SolveBeamShell.
void FactorLanes(LaneModels& models) {
  const BeamShellModel& pattern = *models.beams[0].model;
  const std::int64_t station = std::int64_t{pattern.ProfileNodeCount} * pattern.DofsPerNode;
  const std::size_t steps = StepsOf(pattern);
  const auto addEnd = [&](BeamEnd end) {
    for (std::size_t lane = 0; lane < models.lanes; ++lane) AddLaneEnd(lane, end, models);
  };
  std::int64_t begin = 0, end = pattern.DofsPerNode;  // columns that a step finishes
  for (std::size_t step = 0; step < steps; ++step) {
    const bool isLast = step == steps - 1;
    end += station;
    ClearColumns(step == 0 ? 0 : end, isLast ? models.arrays.n : end + station, models);
    LoadStep(step, models);
    models.shells.add(StepOf(step, models), models.arrays.diagonalAddress, models.arrays.values);
    if (step == 0) addEnd(BeamEnd::First);
    if (isLast) addEnd(BeamEnd::Second);
    if (isLast) end = models.arrays.n;
    const std::int64_t start = ColumnStart(begin, models);
    MarkNotFinite(models.arrays.values + start, ColumnStart(end, models) - start, models);
    models.systems.factor(models.arrays, begin, end);
    begin = end;
  }
}

void KeepDisplacements(std::size_t lane, const LaneModels& models) {
  const auto n = static_cast<std::size_t>(models.arrays.n);
  std::vector<double>& u = models.beams[lane].model->Displacements;
  AllocateItems("the " + std::to_string(n) + " equations of a detail model", n, u);
  for (std::size_t i = 0; i < n; ++i) u[i] = models.arrays.loads[i * models.lanes + lane];
}

// stress: ShellStresses x lanes, from the shell's lane on.
void KeepStresses(const double* stress, std::size_t lanes, Shell4Element& shell) {
  for (std::size_t k = 0; k < 4; ++k) {
    for (StressVector* face : {&shell.NodeStressTop[k], &shell.NodeStressBottom[k]}) {
      for (double& component : *face) {
        component = *stress;
        stress += lanes;
      }
    }
  }
}

// beams: lanes that have a beam of their own.
void RecoverLanes(std::size_t beams, LaneModels& models) {
  const std::size_t size = static_cast<std::size_t>(ShellStresses) * models.lanes;
  for (std::size_t step = 0; step < StepsOf(*models.beams[0].model); ++step) {
    models.shells.recover(StepOf(step, models), models.arrays.loads, models.stresses);
    MarkNotFinite(models.stresses, static_cast<std::int64_t>(models.stepShells * size), models);
    for (std::size_t lane = 0; lane < beams; ++lane) {
      Shell4Element* const shells = &models.beams[lane].model->Shells[step * models.stepShells];
      for (std::size_t e = 0; e < models.stepShells; ++e) {
        KeepStresses(models.stresses + e * size + lane, models.lanes, shells[e]);
      }
    }
  }
}

}  // namespace

int CountBeamLanes(int vectorBits) { return FindShellRoutines(vectorBits).lanes; }

std::vector<LaneBeam> SolveBeamLanes(int vectorBits, const std::vector<LaneBeam>& beams,
                                     BeamLanes& memory) {
  LaneModels models;
  models.shells = FindShellRoutines(vectorBits);
  models.systems = FindSystemRoutines(vectorBits);
  models.sum = FindPanelRoutines(vectorBits).sum;
  models.lanes = static_cast<std::size_t>(models.shells.lanes);
  models.beams = beams;
  models.beams.resize(models.lanes, beams[0]);
  models.isFinite.assign(models.lanes, 1);
  models.stepShells = beams[0].model->Shells.size() / StepsOf(*beams[0].model);
  if (!PrepareSystems(memory, models)) return beams;
  FactorLanes(models);
  models.systems.substitute(models.arrays, memory.reach.data());
  MarkNotFinite(models.arrays.loads, models.arrays.n * models.shells.lanes, models);
  for (std::size_t lane = 0; lane < beams.size(); ++lane) KeepDisplacements(lane, models);
  RecoverLanes(beams.size(), models);

  std::vector<LaneBeam> alone;
  for (std::size_t lane = 0; lane < beams.size(); ++lane) {
    if (models.isFinite[lane] == 0) alone.push_back(beams[lane]);
  }
  return alone;
}

}  // namespace korvex
