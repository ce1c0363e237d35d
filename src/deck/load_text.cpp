// Files are opened in binary mode, so that the same bytes are seen on every system: to the reader a
// carriage return is white space.
#include "deck/load_text.h"

#include "report/check_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

constexpr const char* Failure = "Preprocessor file read error!";

// The file is read in blocks of this size.
constexpr std::size_t BlockSize = std::size_t{1} << 16U;

// Makes room for `size` bytes of the file.
void ReserveText(std::size_t size, std::string& text) {
  AllocateOrStop("the text of the model file", size, 1, [&] { text.reserve(size); });
}

// The size that the file has; 0 for a file without one, such as a device.
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
  if (!stream.is_open()) return false;
  stream.peek();
  return !stream.bad();
}

// A device may go on for ever: memory is asked for before each doubling of the text.
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
