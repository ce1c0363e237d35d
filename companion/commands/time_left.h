// The time that long work will still take, from the share of it that is done.
//
// Stages of the same work go at different speeds: memory is provided in one go, element matrices
// are formed, several threads factorise. So the speed is that of the last while, not of all since
// the beginning; and before a while has gone by nothing is foreseen.
#pragma once

#include <vector>

namespace kvx {

struct ShareSample {
  double seconds = 0.0;  // since the work began
  double share = 0.0;    // done by then, 0 .. 1
};

// The last while: half of the time since the begin, but two seconds at least once there were so
// many; oldest first.
struct ShareHistory {
  std::vector<ShareSample> samples;
};

// Seconds that are left; NaN where too little is known to tell. To be called now and then with the
// latest sample, later and no smaller than the one before.
double ForeseeTimeLeft(const ShareSample& now, ShareHistory& history);

}  // namespace kvx
