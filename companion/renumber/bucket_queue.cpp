#include "renumber/bucket_queue.h"

#include <algorithm>

namespace kvx {

namespace {

constexpr std::int32_t None = -1;

std::size_t At(std::int32_t index) { return static_cast<std::size_t>(index); }

}  // namespace

void InitQueue(std::int32_t nodes, BucketQueue& queue) {
  queue.first.clear();
  queue.last.clear();
  queue.next.assign(At(nodes), None);
  queue.before.assign(At(nodes), None);
  queue.priority.assign(At(nodes), 0);
  queue.highest = None;
}

void ReserveQueue(std::int32_t priorities, BucketQueue& queue) {
  queue.first.resize(std::max(queue.first.size(), At(priorities)), None);
  queue.last.resize(queue.first.size(), None);
}

void PushNode(std::int32_t node, BucketQueue& queue) {
  const std::int32_t priority = queue.priority[At(node)];
  std::int32_t& last = queue.last[At(priority)];
  queue.before[At(node)] = last;
  queue.next[At(node)] = None;
  (last == None ? queue.first[At(priority)] : queue.next[At(last)]) = node;
  last = node;
  queue.highest = std::max(queue.highest, priority);
}

void RemoveNode(std::int32_t node, BucketQueue& queue) {
  const std::int32_t next = queue.next[At(node)], before = queue.before[At(node)];
  const std::size_t priority = At(queue.priority[At(node)]);
  (next == None ? queue.last[priority] : queue.before[At(next)]) = before;
  (before == None ? queue.first[priority] : queue.next[At(before)]) = next;
}

std::int32_t PopNode(BucketQueue& queue) {
  while (queue.highest >= 0 && queue.first[At(queue.highest)] == None) --queue.highest;
  if (queue.highest < 0) return None;
  const std::int32_t node = queue.first[At(queue.highest)];
  RemoveNode(node, queue);
  return node;
}

}  // namespace kvx
