// Measures the factorisation on several threads against what the machine gives at all.
//
// Two cores of a virtual machine are often two halves of one, and cores share a cache and memory:
// twice the speed is not there to be had. What is there is shown by two copies of the factorisation
// side by side, each on one thread and with a matrix of its own. In each round:
//   one    one thread
//   pair   two such factorisations side by side, until both have ended
//   two    one factorisation on two threads
// two / (pair / 2) is 1 where the threads never wait for each other; it is below 1 where they
// profit from sharing a matrix. Times are elapsed times. Other programs disturb them, so the ratio
// is taken of the same round, and the median of the rounds is printed. The processor time beside it
// leaves out both other programs and waiting.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>
#include <vector>

#include "measure.h"
#include "platform/vector_bits.h"
#include "skyline/factor_skyline.h"
#include "skyline_systems.h"
#include "workers/run_threads.h"

namespace {

using namespace korvex;
using namespace korvex::bench;

constexpr int UsageError = 2;  // exit status

struct Time {
  double elapsed = 0.0, processor = 0.0;  // seconds
};

Time MeasureBoth(const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const Clock::time_point start = Clock::now();
  Time time;
  time.processor = Measure(work);
  time.elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  return time;
}

// Copies of one system, which the measurements factorise in turn.
struct Copies {
  const SkylineSystem& original;
  SkylineMatrix K[2];
  std::vector<double> F[2];
};

void Restore(Copies& copies) {
  for (int i = 0; i < 2; ++i) {
    copies.K[i] = copies.original.K;
    copies.F[i] = copies.original.F;
  }
}

void Factor(int threads, SkylineMatrix& K, std::vector<double>& F) {
  ColumnCounter columns;
  FactorSkyline(WidestVectorBits(), K, F, columns, threads);
}

template <typename Numbers>
bool HaveSameBits(const Numbers& a, const Numbers& b) {
  return std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

// Returns whether the factors of both copies, from one thread and from two, have the same bits.
bool MeasureSystem(const SkylineSystem& system, int rounds) {
  std::printf("%s: %zu equations\n%8s %8s %8s %18s %18s\n", system.title.c_str(), system.F.size(),
              "one, s", "pair", "two", "two / (pair / 2)", "of processor time");
  Copies copies{system, {}, {}};
  std::vector<double> ones, pairs, twos, ratios, processorRatios;
  bool areSame = true;
  for (int round = 0; round < rounds; ++round) {
    Restore(copies);
    const Time pair = MeasureBoth(
        [&] { RunThreads(2, [&](int number) { Factor(1, copies.K[number], copies.F[number]); }); });
    Restore(copies);
    const Time one = MeasureBoth([&] { Factor(1, copies.K[0], copies.F[0]); });
    const Time two = MeasureBoth([&] { Factor(2, copies.K[1], copies.F[1]); });
    areSame = areSame && HaveSameBits(copies.K[0].Values, copies.K[1].Values) &&
              HaveSameBits(copies.F[0], copies.F[1]);
    ones.push_back(one.elapsed);
    pairs.push_back(pair.elapsed);
    twos.push_back(two.elapsed);
    ratios.push_back(two.elapsed / (pair.elapsed / 2.0));
    processorRatios.push_back(two.processor / (pair.processor / 2.0));
    std::printf("%8.3f %8.3f %8.3f %18.3f %18.3f\n", ones.back(), pairs.back(), twos.back(),
                ratios.back(), processorRatios.back());
    std::fflush(stdout);
  }
  std::printf("%8.3f %8.3f %8.3f %18.3f %18.3f  medians%s\n\n", Median(ones), Median(pairs),
              Median(twos), Median(ratios), Median(processorRatios), areSame ? "" : "  OTHER BITS");
  return areSame;
}

}  // namespace

// Arguments: the number of rounds, 5 without it, and "plate" or "square" for one of the two models
// alone. The exit status is 1 if bits differ.
int main(int count, char** arguments) {
  const int rounds = count > 1 ? std::atoi(arguments[1]) : 5;
  const std::string model = count > 2 ? arguments[2] : "";
  if (rounds < 1 || (!model.empty() && model != "plate" && model != "square")) {
    std::fprintf(stderr, "usage: threads_bench [ROUNDS [plate|square]]\n");
    return UsageError;
  }
  bool areSame = true;
  if (model != "square") areSame = MeasureSystem(MakeSlopingPlate(80, 125), rounds) && areSame;
  if (model != "plate") areSame = MeasureSystem(MakeSlopingPlate(200, 200), rounds) && areSame;
  return areSame ? 0 : 1;
}
