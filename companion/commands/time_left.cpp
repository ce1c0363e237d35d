#include "commands/time_left.h"

#include <algorithm>
#include <limits>

namespace kvx {

namespace {

// Seconds: the least length of the window, once so much time has gone by; and the length before
// which nothing is told, since a shorter window may hold the begin of one stage alone.
constexpr double UsualWhile = 2.0, ShortestWhile = 0.5;

// Of the work, in this while: less is no speed to rely on.
constexpr double LeastShare = 0.005;

// Samples of a while, about.
constexpr double SamplesEach = 50.0;

}  // namespace

double ForeseeTimeLeft(const ShareSample& now, ShareHistory& history) {
  std::vector<ShareSample>& samples = history.samples;
  const double span = std::max(UsualWhile, 0.5 * now.seconds);
  // The oldest one that stays is as old as the while, or older.
  auto first = samples.begin();
  while (first != samples.end() && first + 1 != samples.end() &&
         now.seconds - (first + 1)->seconds >= span) {
    ++first;
  }
  samples.erase(samples.begin(), first);
  if (samples.empty() || now.seconds - samples.back().seconds >= span / SamplesEach) {
    samples.push_back(now);
  }
  const double seconds = now.seconds - samples.front().seconds;
  const double share = now.share - samples.front().share;
  if (seconds < ShortestWhile || share < LeastShare) {
    return std::numeric_limits<double>::quiet_NaN();
  }
  return (1.0 - now.share) * seconds / share;
}

}  // namespace kvx
