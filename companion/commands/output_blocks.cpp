#include "commands/output_blocks.h"

#include "commands/progress.h"
#include "commands/speak.h"

namespace kvx {

namespace {

constexpr std::size_t BlockBytes = 1'000'000;

void WriteBlock(OutputBlocks& blocks) {
  if (blocks.stream != nullptr) {
    *blocks.stream << blocks.waiting;
  } else if (blocks.status == ExitFine) {
    blocks.status = WriteOutput(blocks.waiting);
  }
  blocks.waiting.clear();
}

}  // namespace

void AddOutput(const std::string& text, OutputBlocks& blocks) {
  StopIfInterrupted();
  if (blocks.status != ExitFine) return;
  blocks.waiting += text;
  if (blocks.waiting.size() >= BlockBytes) WriteBlock(blocks);
}

ExitStatus EndOutput(OutputBlocks& blocks) {
  if (!blocks.waiting.empty()) WriteBlock(blocks);
  return blocks.status;
}

}  // namespace kvx
