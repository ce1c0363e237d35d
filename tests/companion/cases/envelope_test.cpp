// Envelopes against a brute-force list on random values with ties, NaNs and absent components.
#include "cases/envelope.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/same_bits.h"

namespace kvx::test {
namespace {

using korvex::test::SameBits;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// Cases with their numbers, in the order in which they are added.
struct Cases {
  std::size_t items = 0, components = 0;
  std::vector<std::uint8_t> isAbsent;
  std::vector<std::int32_t> numbers;
  std::vector<std::vector<double>> values;
};

// Few different values, so that many are equal; some that are no numbers.
double RollValue(Dice& dice) {
  if (RollYes(dice, 0.05)) return Nan;
  if (RollYes(dice, 0.03)) return RollYes(dice) ? Inf : -Inf;
  return 0.5 * RollInteger(dice, -4, 4);
}

Cases RollCases(std::uint32_t seed) {
  Dice dice = MakeDice(seed);
  Cases cases;
  cases.items = static_cast<std::size_t>(RollInteger(dice, 0, 12));
  cases.components = static_cast<std::size_t>(RollInteger(dice, 1, 8));
  const std::size_t size = cases.items * cases.components;
  if (RollYes(dice)) {
    for (std::size_t i = 0; i < size; ++i) cases.isAbsent.push_back(RollYes(dice, 0.2) ? 1 : 0);
  }
  const int count = RollInteger(dice, 0, 9);
  for (int k = 0; k < count; ++k) {
    cases.numbers.push_back((5 * k + 3) % 11);  // neither from 0 nor ascending
    std::vector<double> values(size);
    for (double& value : values) value = RollValue(dice);
    cases.values.push_back(values);
  }
  return cases;
}

Envelope MakeEnvelope(const Cases& cases) {
  Envelope envelope;
  InitEnvelope(cases.items, cases.components, cases.isAbsent, envelope);
  for (std::size_t k = 0; k < cases.values.size(); ++k) {
    AddCase(cases.values[k], cases.numbers[k], envelope);
  }
  return envelope;
}

// The cases with a finite value at this entry, sorted by it; equal ones keep their order. sign: 1:
// the smallest first, -1: the largest first.
std::vector<std::size_t> RankCases(const Cases& cases, std::size_t at, double sign) {
  std::vector<std::size_t> ranked;
  if (!cases.isAbsent.empty() && cases.isAbsent[at] != 0) return ranked;
  for (std::size_t k = 0; k < cases.values.size(); ++k) {
    if (std::isfinite(cases.values[k][at])) ranked.push_back(k);
  }
  std::stable_sort(ranked.begin(), ranked.end(), [&](std::size_t a, std::size_t b) {
    return sign * cases.values[a][at] < sign * cases.values[b][at];
  });
  return ranked;
}

void ExpectEntry(const Cases& cases, std::size_t at, double sign, double value, std::int32_t number,
                 const double* with) {
  const std::vector<std::size_t> ranked = RankCases(cases, at, sign);
  const std::size_t n = cases.components;
  const std::vector<double> found(with, with + n);
  if (ranked.empty()) {
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(number, NoCase);
    for (const double other : found) EXPECT_TRUE(std::isnan(other));
    return;
  }
  const std::vector<double>& best = cases.values[ranked.front()];
  EXPECT_EQ(value, best[at]);
  EXPECT_EQ(number, cases.numbers[ranked.front()]);
  const auto first = best.begin() + static_cast<std::ptrdiff_t>(at - at % n);
  EXPECT_TRUE(SameBits(found, {first, first + static_cast<std::ptrdiff_t>(n)}));
}

std::size_t CountNotFinite(const Cases& cases) {
  std::size_t count = 0;
  for (const auto& values : cases.values) {
    for (std::size_t at = 0; at < values.size(); ++at) {
      const bool isThere = cases.isAbsent.empty() || cases.isAbsent[at] == 0;
      if (isThere && !std::isfinite(values[at])) ++count;
    }
  }
  return count;
}

TEST(Envelope, AgreesWithABruteForceList) {
  std::size_t ties = 0, empty = 0;
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    const Cases cases = RollCases(seed);
    const Envelope envelope = MakeEnvelope(cases);
    EXPECT_EQ(envelope.cases, cases.numbers);
    EXPECT_EQ(envelope.notFinite, CountNotFinite(cases));
    const std::size_t n = cases.components;
    for (std::size_t at = 0; at < cases.items * n; ++at) {
      ExpectEntry(cases, at, 1.0, envelope.smallest[at], envelope.smallestCase[at],
                  &envelope.withSmallest[n * at]);
      ExpectEntry(cases, at, -1.0, envelope.largest[at], envelope.largestCase[at],
                  &envelope.withLargest[n * at]);
      const auto ranked = RankCases(cases, at, 1.0);
      if (ranked.empty()) ++empty;
      if (ranked.size() > 1 && cases.values[ranked[0]][at] == cases.values[ranked[1]][at]) ++ties;
    }
  }
  EXPECT_GT(ties, 100U);
  EXPECT_GT(empty, 100U);
}

// The first item with the extreme value, or their number.
TEST(Envelope, FindsTheItemsThatGovern) {
  for (std::uint32_t seed = 0; seed < 300; ++seed) {
    SCOPED_TRACE(seed);
    const Cases cases = RollCases(seed);
    const Envelope envelope = MakeEnvelope(cases);
    for (std::size_t c = 0; c < cases.components; ++c) {
      double low = Inf, high = -Inf;
      std::size_t lowItem = cases.items, highItem = cases.items;
      for (std::size_t item = cases.items; item-- > 0;) {
        for (const auto& values : cases.values) {
          const std::size_t at = item * cases.components + c;
          if (!cases.isAbsent.empty() && cases.isAbsent[at] != 0) continue;
          if (!std::isfinite(values[at])) continue;
          if (values[at] <= low) low = values[at], lowItem = item;
          if (values[at] >= high) high = values[at], highItem = item;
        }
      }
      EXPECT_EQ(FindSmallestItem(envelope, c), lowItem);
      EXPECT_EQ(FindLargestItem(envelope, c), highItem);
    }
  }
}

TEST(Envelope, BeginsAnewWhenItIsInitialisedAgain) {
  Envelope envelope;
  InitEnvelope(1, 2, {}, envelope);
  AddCase({1.0, Nan}, 4, envelope);
  InitEnvelope(1, 1, {}, envelope);
  EXPECT_TRUE(envelope.cases.empty());
  EXPECT_EQ(envelope.notFinite, 0U);
  AddCase({7.0}, 5, envelope);
  EXPECT_EQ(envelope.smallest, std::vector<double>{7.0});
  EXPECT_EQ(envelope.largestCase, std::vector<std::int32_t>{5});
}

TEST(Envelope, RefusesAnotherSize) {
  Envelope envelope;
  InitEnvelope(2, 3, {}, envelope);
  korvex::test::ExpectStop(
      [&] {
        AddCase({1.0, 2.0}, 0, envelope);
      },
      "An envelope has 6 values, but the case has 2.");
  korvex::test::ExpectStop([&] { InitEnvelope(2, 3, {1}, envelope); },
                           "An envelope has 6 values, but the case has 1.");
}

}  // namespace
}  // namespace kvx::test
