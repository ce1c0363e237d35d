#include "vtu/vtu_file.h"

#include <zlib.h>

#include <array>
#include <cstring>
#include <limits>
#include <new>
#include <type_traits>

namespace kvx {

namespace {

static_assert(sizeof(double) == 8 && std::numeric_limits<double>::is_iec559);

constexpr std::size_t BlockBytes = 32768;
constexpr std::size_t HeaderWords = 3;
constexpr std::size_t WordBytes = 8;

// Of 1 to 9. Doubles of results have few bytes that repeat: higher levels take several times as
// long for some per cent.
constexpr int CompressionLevel = 1;

// zlib's state and the block on its way.
struct BlockWriter {
  z_stream zlib{};
  bool isOpen = false;
  std::vector<unsigned char> block, compressed;
  std::size_t filled = 0;            // bytes of the block
  std::vector<std::uint64_t> sizes;  // of the compressed blocks

  BlockWriter() = default;
  ~BlockWriter() {
    if (isOpen) deflateEnd(&zlib);
  }
  BlockWriter(const BlockWriter&) = delete;
  BlockWriter& operator=(const BlockWriter&) = delete;
};

void OpenBlocks(BlockWriter& writer) {
  if (deflateInit(&writer.zlib, CompressionLevel) != Z_OK) throw std::bad_alloc();
  writer.isOpen = true;
  writer.block.resize(BlockBytes);
  writer.compressed.resize(compressBound(BlockBytes));
}

void WriteBytes(const unsigned char* bytes, std::size_t count, std::ostream& stream) {
  // char may alias unsigned char.
  stream.write(reinterpret_cast<const char*>(bytes), static_cast<std::streamsize>(count));
}

// Compresses the block and writes it. The block is empty then.
void WriteBlock(BlockWriter& writer, std::ostream& stream) {
  deflateReset(&writer.zlib);
  writer.zlib.next_in = writer.block.data();
  writer.zlib.avail_in = static_cast<uInt>(writer.filled);
  writer.zlib.next_out = writer.compressed.data();
  writer.zlib.avail_out = static_cast<uInt>(writer.compressed.size());
  deflate(&writer.zlib, Z_FINISH);  // the bound is never exceeded
  const std::size_t size = writer.compressed.size() - writer.zlib.avail_out;
  WriteBytes(writer.compressed.data(), size, stream);
  writer.sizes.push_back(size);
  writer.filled = 0;
}

void PutWord(std::uint64_t word, unsigned char* to) {
  for (std::size_t k = 0; k < WordBytes; ++k) to[k] = static_cast<unsigned char>(word >> (8 * k));
}

// Each returns how many bytes the number takes.
std::size_t PutNumber(double number, unsigned char* to) {
  std::uint64_t word = 0;
  std::memcpy(&word, &number, sizeof word);
  PutWord(word, to);
  return WordBytes;
}

std::size_t PutNumber(std::int64_t number, unsigned char* to) {
  PutWord(static_cast<std::uint64_t>(number), to);
  return WordBytes;
}

std::size_t PutNumber(std::uint8_t number, unsigned char* to) {
  *to = number;
  return 1;
}

void WriteWords(const std::vector<std::uint64_t>& words, std::ostream& stream) {
  std::vector<unsigned char> bytes(words.size() * WordBytes);
  for (std::size_t k = 0; k < words.size(); ++k) PutWord(words[k], &bytes[k * WordBytes]);
  WriteBytes(bytes.data(), bytes.size(), stream);
}

std::size_t NumberBytes(const VtuArray& array) {
  return std::holds_alternative<FillBytes>(array.fill) ? 1 : WordBytes;
}

std::size_t CountBytes(const VtuArray& array) {
  return array.tuples * array.width * NumberBytes(array);
}

std::size_t CountBlocks(const VtuArray& array) {
  return (CountBytes(array) + BlockBytes - 1) / BlockBytes;
}

// Number: double, std::int64_t or std::uint8_t. All numbers have a size that divides a block.
template <typename Number, typename Fill>
void WriteBlocks(const VtuArray& array, const Fill& fill, const std::function<void()>& before,
                 BlockWriter& writer, std::ostream& stream) {
  std::array<Number, MostWidth> values{};
  const auto write = [&] {
    if (before) before();
    WriteBlock(writer, stream);
  };
  for (std::size_t tuple = 0; tuple < array.tuples; ++tuple) {
    fill(tuple, values.data());
    for (std::size_t k = 0; k < array.width; ++k) {
      writer.filled += PutNumber(values[k], &writer.block[writer.filled]);
      if (writer.filled == BlockBytes) write();
    }
    if (!stream) return;
  }
  if (writer.filled > 0) write();
}

void WriteAnyBlocks(const VtuArray& array, const std::function<void()>& before, BlockWriter& writer,
                    std::ostream& stream) {
  std::visit(
      [&](const auto& fill) {
        using Fill = std::decay_t<decltype(fill)>;
        using Number = std::conditional_t<
            std::is_same_v<Fill, FillDoubles>, double,
            std::conditional_t<std::is_same_v<Fill, FillIntegers>, std::int64_t, std::uint8_t>>;
        WriteBlocks<Number>(array, fill, before, writer, stream);
      },
      array.fill);
}

void WriteArray(const VtuArray& array, const std::function<void()>& before, BlockWriter& writer,
                std::ostream& stream) {
  const std::size_t count = CountBlocks(array);
  std::vector<std::uint64_t> words{count, BlockBytes, CountBytes(array) % BlockBytes};
  words.resize(HeaderWords + count);
  const std::streampos begin = stream.tellp();
  WriteWords(words, stream);
  writer.sizes.clear();
  WriteAnyBlocks(array, before, writer, stream);
  if (!stream) return;
  words.resize(HeaderWords);
  words.insert(words.end(), writer.sizes.begin(), writer.sizes.end());
  stream.seekp(begin);
  WriteWords(words, stream);
  stream.seekp(0, std::ios::end);
}

const char* TypeName(const VtuArray& array) {
  if (std::holds_alternative<FillDoubles>(array.fill)) return "Float64";
  return std::holds_alternative<FillIntegers>(array.fill) ? "Int64" : "UInt8";
}

// Where the file has the place of an array, which is not known before the others are written.
struct OffsetGap {
  const VtuArray* array;
  std::streampos at;
};

// The longest offset, and the quote behind it.
constexpr std::size_t GapWidth = 21;

void WriteArrayHead(const VtuArray& array, std::vector<OffsetGap>& gaps, std::ostream& stream) {
  std::string text = std::string("        <DataArray type=\"") + TypeName(array) + '"';
  if (!array.name.empty()) text += " Name=\"" + array.name + '"';
  if (array.width > 1) text += " NumberOfComponents=\"" + std::to_string(array.width) + '"';
  for (std::size_t k = 0; k < array.components.size(); ++k) {
    text += " ComponentName" + std::to_string(k) + "=\"" + array.components[k] + '"';
  }
  stream << text << " format=\"appended\" offset=\"";
  gaps.push_back({&array, stream.tellp()});
  stream << std::string(GapWidth, ' ') << "/>\n";
}

void WriteArrayHeads(const char* element, const std::vector<const VtuArray*>& arrays,
                     std::vector<OffsetGap>& gaps, std::ostream& stream) {
  stream << "      <" << element << ">\n";
  for (const VtuArray* array : arrays) WriteArrayHead(*array, gaps, stream);
  stream << "      </" << element << ">\n";
}

std::vector<const VtuArray*> PointersTo(const std::vector<VtuArray>& arrays) {
  std::vector<const VtuArray*> pointers;
  pointers.reserve(arrays.size());
  for (const VtuArray& array : arrays) pointers.push_back(&array);
  return pointers;
}

void WriteHead(const VtuGrid& grid, std::vector<OffsetGap>& gaps, std::ostream& stream) {
  stream << "<?xml version=\"1.0\"?>\n"
            "<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" byte_order=\"LittleEndian\" "
            "header_type=\"UInt64\" compressor=\"vtkZLibDataCompressor\">\n"
            "  <UnstructuredGrid>\n"
            "    <Piece NumberOfPoints=\""
         << std::to_string(grid.points.tuples) << "\" NumberOfCells=\""
         << std::to_string(grid.types.tuples) << "\">\n";
  WriteArrayHeads("PointData", PointersTo(grid.pointData), gaps, stream);
  WriteArrayHeads("CellData", PointersTo(grid.cellData), gaps, stream);
  WriteArrayHeads("Points", {&grid.points}, gaps, stream);
  WriteArrayHeads("Cells", {&grid.connectivity, &grid.offsets, &grid.types}, gaps, stream);
  stream << "    </Piece>\n"
            "  </UnstructuredGrid>\n"
            "  <AppendedData encoding=\"raw\">\n"
            "   _";  // offsets count from behind this character
}

}  // namespace

void WriteVtuArray(const VtuArray& array, const std::function<void()>& before,
                   std::ostream& stream) {
  BlockWriter writer;
  OpenBlocks(writer);
  WriteArray(array, before, writer, stream);
}

void WriteVtu(const VtuGrid& grid, const korvex::ShareCallback& share, std::ostream& stream) {
  std::vector<OffsetGap> gaps;
  WriteHead(grid, gaps, stream);
  std::size_t blocks = 0, done = 0;
  for (const OffsetGap& gap : gaps) blocks += CountBlocks(*gap.array);
  const auto before = [&] {
    if (share) share(static_cast<double>(done++) / static_cast<double>(blocks));
  };
  BlockWriter writer;
  OpenBlocks(writer);
  const std::streampos begin = stream.tellp();
  std::vector<std::string> offsets;
  for (const OffsetGap& gap : gaps) {
    offsets.push_back(std::to_string(static_cast<std::streamoff>(stream.tellp() - begin)) + '"');
    WriteArray(*gap.array, before, writer, stream);
    if (!stream) return;
  }
  stream << "\n  </AppendedData>\n</VTKFile>\n";
  for (std::size_t k = 0; k < gaps.size(); ++k) {
    stream.seekp(gaps[k].at);
    stream << offsets[k];
  }
  stream.seekp(0, std::ios::end);
}

}  // namespace kvx
