#include <metis.h>

#include <limits>
#include <string>

#include "report/check_memory.h"
#include "report/stop.h"
#include "sparse/held_signals.h"
#include "sparse/node_order.h"

namespace kvx {

namespace {

[[noreturn]] void StopOrder(const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::Notice, "METIS finds no order of the nodes: " + reason +
                                                   " The skyline needs none: --engine skyline."};
}

}  // namespace

void FindSparseOrder(const NodeGraph& graph, std::vector<std::int32_t>& order) {
  idx_t count = CountNodes(graph);
  order.clear();
  if (graph.neighbours.size() > static_cast<std::size_t>(std::numeric_limits<idx_t>::max())) {
    StopOrder("the mesh has too many edges for it.");
  }
  // METIS takes several copies of the graph; tried: 5 at most.
  constexpr std::uint64_t Copies = 6;
  std::vector<idx_t> begins, neighbours, places;
  korvex::AllocateOrStop("the order of the nodes",
                         (graph.neighbours.size() + graph.begins.size()) * Copies, sizeof(idx_t),
                         [&] {
                           begins.assign(graph.begins.begin(), graph.begins.end());
                           neighbours.assign(graph.neighbours.begin(), graph.neighbours.end());
                           places.resize(static_cast<std::size_t>(count));
                           order.resize(static_cast<std::size_t>(count));
                         });
  if (graph.neighbours.empty()) {  // METIS wants edges
    for (std::size_t i = 0; i < order.size(); ++i) order[i] = static_cast<std::int32_t>(i);
    return;
  }
  int status = METIS_OK;
  CallHeld([&] {
    status = METIS_NodeND(&count, begins.data(), neighbours.data(), nullptr, nullptr, order.data(),
                          places.data());
  });
  if (status == METIS_ERROR_MEMORY) {
    korvex::StopOutOfMemory("the order of the nodes", graph.neighbours.size() * Copies,
                            sizeof(idx_t));
  }
  if (status != METIS_OK) StopOrder("it ends with status " + std::to_string(status) + '.');
}

}  // namespace kvx
