// An interrupt while METIS works: it has handlers of its own, which must not see it. POSIX only.
#include "sparse/held_signals.h"

#include <gtest/gtest.h>

#include <atomic>
#include <csignal>
#include <stdexcept>
#include <thread>

#include "report/stop.h"
#include "sparse/node_order.h"
#include "sparse/sparse_factor.h"

namespace kvx::test {
namespace {

volatile std::sig_atomic_t Signals = 0;

void Count(int /*signal*/) { Signals = Signals + 1; }

// Counts signals while it lives.
struct Counting {
  Counting() {
    Signals = 0;
    std::signal(SIGTERM, Count);
  }
  ~Counting() { std::signal(SIGTERM, SIG_DFL); }
  Counting(const Counting&) = delete;
  Counting& operator=(const Counting&) = delete;
};

TEST(HeldSignals, ComeAfterTheCall) {
  const Counting counting;
  int within = 0;
  CallHeld([&] {
    std::raise(SIGTERM);
    within = Signals;
  });
  EXPECT_EQ(within, 0);
  EXPECT_EQ(Signals, 1);
  EXPECT_THROW(CallHeld([] { throw std::runtime_error("x"); }), std::runtime_error);
  std::raise(SIGTERM);
  EXPECT_EQ(Signals, 2);
}

// A grid of nodes, each beside four others.
NodeGraph MakeGrid(std::int32_t side) {
  NodeGraph graph;
  graph.begins.push_back(0);
  for (std::int32_t y = 0; y < side; ++y) {
    for (std::int32_t x = 0; x < side; ++x) {
      const std::int32_t node = y * side + x;
      if (y > 0) graph.neighbours.push_back(node - side);
      if (x > 0) graph.neighbours.push_back(node - 1);
      if (x + 1 < side) graph.neighbours.push_back(node + 1);
      if (y + 1 < side) graph.neighbours.push_back(node + side);
      graph.begins.push_back(
          static_cast<decltype(graph.begins)::value_type>(graph.neighbours.size()));
    }
  }
  return graph;
}

// The signal comes all the time to the thread that METIS works in.
TEST(HeldSignals, DoNotDisturbTheOrderOfTheNodes) {
  if (!HasSparseEngine()) GTEST_SKIP() << "there is no sparse engine";
  const NodeGraph graph = MakeGrid(120);
  std::vector<std::int32_t> expected, order;
  FindSparseOrder(graph, expected);
  const Counting counting;
  const pthread_t worker = pthread_self();
  std::atomic<bool> isOver{false};
  std::thread sender;
  CallHeld([&] {
    sender = std::thread([&] {
      while (!isOver) {
        pthread_kill(worker, SIGTERM);
        std::this_thread::yield();
      }
    });
  });
  EXPECT_NO_THROW(FindSparseOrder(graph, order));
  isOver = true;
  sender.join();
  EXPECT_GT(Signals, 0);
  EXPECT_EQ(order, expected);
}

}  // namespace
}  // namespace kvx::test
