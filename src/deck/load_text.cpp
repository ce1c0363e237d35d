// Files are opened in binary mode, so that the reader gets the same bytes on every system. The
// reader takes a carriage return as white space.
#include "deck/load_text.h"

#include "report/check_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

constexpr const char* Failure = "Preprocessor file read error!";

// The file is read in blocks of this size.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

void ReserveText(std::size_t size, std::string& text) {
  AllocateOrStop("the text of the model file", size, 1, [&] { text.reserve(size); });
}

// Returns the size of the file in bytes; 0 for a file without a size, such as a device.
std::size_t FindSize(std::ifstream& stream) {
  stream.seekg(0, std::ios::end);
  const std::streamoff size = stream.tellg();
  stream.clear();
  stream.seekg(0);
  stream.clear();
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

}  // namespace

bool OpenInputFile(const std::string& fileName, std::ifstream& stream) {
  stream.open(fileName, std::ios::in | std::ios::binary);
  if (!stream.is_open()) {
    CheckOpeningMemory();
    return false;
  }
  stream.peek();
  return !stream.bad();
}

// The text's capacity is doubled with a check of the memory: a device may never end.
void LoadText(const std::string& fileName, std::string& text) {
  std::ifstream stream;
  if (!OpenInputFile(fileName, stream)) throw Stop{StopKind::Notice, Failure};
  ReserveText(FindSize(stream) + BlockSize, text);
  std::string block;
  AllocateOrStop("a block of the model file", BlockSize, 1, [&] { block.resize(BlockSize); });
  while (stream) {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto size = static_cast<std::size_t>(stream.gcount());
    if (text.size() + size > text.capacity()) ReserveText(2 * text.capacity(), text);
    text.append(block, 0, size);
  }
  if (stream.bad()) throw Stop{StopKind::Notice, Failure};
}

}  // namespace korvex
