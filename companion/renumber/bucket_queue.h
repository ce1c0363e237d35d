// Nodes by whole priorities, the highest first. Each step takes a time that does not depend on
// their number: a list for each priority, linked through the nodes themselves.
#pragma once

#include <cstdint>
#include <vector>

namespace kvx {

struct BucketQueue {
  std::vector<std::int32_t> first, last;   // [priorities] of each list; -1: it has no nodes
  std::vector<std::int32_t> next, before;  // [nodes] in its list; -1: none
  std::vector<std::int32_t> priority;      // [nodes]
  std::int32_t highest = -1;               // no list above it has nodes
};

// An empty queue for nodes 0 .. nodes - 1.
void InitQueue(std::int32_t nodes, BucketQueue& queue);

// Makes room for the priorities 0 .. priorities - 1. The queue must be empty.
void ReserveQueue(std::int32_t priorities, BucketQueue& queue);

// Adds the node, with the priority that it has there. Of equal ones the first to come goes first.
void PushNode(std::int32_t node, BucketQueue& queue);

void RemoveNode(std::int32_t node, BucketQueue& queue);

// Takes a node of the highest priority out. Returns -1 where the queue is empty.
std::int32_t PopNode(BucketQueue& queue);

}  // namespace kvx
