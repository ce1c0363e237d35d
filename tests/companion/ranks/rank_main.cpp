// The main program of tests that MPI starts on several ranks: rank 0 runs the tests, the others
// help it, as in kvx-mpi.
#include <gtest/gtest.h>

#include "engine/serve_ranks.h"
#include "ranks/ranks.h"

int main(int argc, char** argv) {
  kvx::BeginRanks(argc, argv);
  int status = 0;
  if (kvx::RankOfThis() == 0) {
    testing::InitGoogleTest(&argc, argv);
    status = RUN_ALL_TESTS();
    kvx::Tell(kvx::RankTask::End);
  } else {
    kvx::ServeRanks([](const auto& call, const auto& /*cleanUp*/) { call(); });
  }
  kvx::EndRanks();
  return status;
}
