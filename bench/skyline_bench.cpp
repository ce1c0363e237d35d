// The factorisation in vectors of each length, and the substitution, beside the plain routine.
//
// In every round each of them solves the same system, so that a machine that others share slows all
// alike; times are processor times, medians over the rounds. The peak is what one core multiplies
// and subtracts in the same vectors in registers, measured right before and after. Factors and
// solutions are compared with the plain routine's, bit for bit.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "platform/vector_bits.h"
#include "skyline_systems.h"
#include "system/factor_skyline.h"
#include "system/solve_skyline_plain.h"
#include "system/substitute_back.h"
#include "vector_peak.h"

namespace {

using namespace korvex;
using namespace korvex::bench;

constexpr int Plain = 0;  // in place of a vector length
constexpr double Giga = 1e9;

double Measure(const std::function<void()>& work) {
  const std::clock_t start = std::clock();
  work();
  return static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Products, differences and quotients of the factorisation and the forward reduction.
double CountOperations(const SkylineMatrix& K) {
  double count = 0.0;
  const auto n = static_cast<std::int64_t>(K.ColumnHeights.size());
  for (std::int64_t j = 0; j < n; ++j) {
    const std::int64_t top = TopRow(K, j);
    for (std::int64_t i = top; i < j; ++i) {
      count += 2.0 * static_cast<double>(i - std::max(TopRow(K, i), top));
    }
    count += 5.0 * static_cast<double>(j - top);
  }
  return count;
}

// A number that depends on every bit of the values (Fowler, Noll & Vo, by words).
std::uint64_t HashBits(const std::vector<double>& values) {
  std::uint64_t hash = 14695981039346656037U;
  for (const double value : values) {
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    hash = (hash ^ bits) * 1099511628211U;
    hash ^= hash >> 32;
  }
  return hash;
}

// What one routine took and gave.
struct Record {
  int vectorBits = Plain;
  std::vector<double> factor, substitute;  // seconds, by round
  std::vector<double> peak;                // operations a second, by round
  std::uint64_t hash = 0;                  // of factor, reduced load and solution
};

// Solves all copies of the system and adds the times to the record.
void Solve(const SkylineSystem& system, Record& record) {
  const auto copies = static_cast<std::size_t>(system.copies);
  std::vector<SkylineMatrix> K(copies, system.K);
  std::vector<std::vector<double>> F(copies, system.F), u(copies, system.F);
  const bool isPlain = record.vectorBits == Plain;
  double peak = isPlain ? 0.0 : MeasurePeak(record.vectorBits);
  record.factor.push_back(Measure([&] {
    for (std::size_t i = 0; i < copies; ++i) {
      FactorSkyline(record.vectorBits, K[i], F[i], SolverProgress::Silent);
    }
  }));
  if (!isPlain) peak = 0.5 * (peak + MeasurePeak(record.vectorBits));
  record.peak.push_back(peak);
  record.substitute.push_back(Measure([&] {
    for (std::size_t i = 0; i < copies; ++i) {
      if (isPlain) {
        SubstituteBackPlain(K[i], F[i], u[i]);
      } else {
        SubstituteBack(K[i], F[i], u[i]);
      }
    }
  }));
  record.hash = HashBits(K[0].Values) ^ HashBits(F[0]) ^ HashBits(u[0]);
}

void PrintRecord(const Record& record, const Record& plain, double operations) {
  const double factor = Median(record.factor), substitute = Median(record.substitute);
  if (record.vectorBits == Plain) {
    std::printf("plain     %9.4f s %6.1f Gflop/s                              %9.4f s\n", factor,
                operations / factor / Giga, substitute);
    return;
  }
  std::vector<double> shares;
  for (std::size_t round = 0; round < record.peak.size(); ++round) {
    shares.push_back(operations / record.factor[round] / record.peak[round]);
  }
  std::printf(
      "%3d bits  %9.4f s %6.1f Gflop/s %5.1f x plain  %3.0f %% of %5.1f  %9.4f s %6.1f x%s\n",
      record.vectorBits, factor, operations / factor / Giga, Median(plain.factor) / factor,
      100.0 * Median(shares), Median(record.peak) / Giga, substitute,
      Median(plain.substitute) / substitute, record.hash == plain.hash ? "" : "  OTHER BITS");
}

// Whether all routines gave the same bits.
bool Compare(const SkylineSystem& system, int rounds) {
  const double operations = CountOperations(system.K) * system.copies;
  std::printf("\n%s: %zu equations, %.1f million entries, %.2f Gflop\n", system.name.c_str(),
              system.F.size(), static_cast<double>(system.K.SkylineSize) * 1e-6, operations / Giga);
  std::vector<Record> records(1);
  for (int bits = 128; bits <= WidestVectorBits(); bits *= 2) {
    records.emplace_back();
    records.back().vectorBits = bits;
  }
  for (int round = 0; round < rounds; ++round) {
    for (Record& record : records) Solve(system, record);
  }
  bool isSame = true;
  for (const Record& record : records) {
    PrintRecord(record, records[0], operations);
    isSame = isSame && record.hash == records[0].hash;
  }
  std::fflush(stdout);
  return isSame;
}

struct Case {
  const char* name;
  SkylineSystem (*make)();
};

constexpr Case Cases[] = {
    {"plate", [] { return MakePlate(80, 125); }},
    {"stiffened", [] { return MakeStiffenedPlate(60, 100); }},
    {"cylinder", [] { return MakeCylinder(60, 120); }},
    {"shuffled", [] { return MakeShuffledPlate(24); }},
    {"details", [] { return MakeDetailModels(500); }},
    {"strip", [] { return MakePlate(60, 1000); }},
    {"square", [] { return MakePlate(200, 200); }},
};

}  // namespace

// Arguments: the number of rounds, 3 without one, and the names of cases, all without any. The
// exit status is 1 where bits differ.
int main(int count, char** arguments) {
  const int rounds = count > 1 ? std::max(1, std::atoi(arguments[1])) : 3;
  std::printf("          factorisation                                          substitution\n");
  bool isSame = true;
  for (const Case& each : Cases) {
    bool isWanted = count <= 2;
    for (int i = 2; i < count; ++i)
      isWanted = isWanted || std::strcmp(arguments[i], each.name) == 0;
    if (isWanted) isSame = Compare(each.make(), rounds) && isSame;
  }
  return isSame ? 0 : 1;
}
