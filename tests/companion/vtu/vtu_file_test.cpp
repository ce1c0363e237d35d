// The bytes of VTU files. Expected layout: VTK XML Formats (Kitware), and what vtkXMLDataParser of
// VTK 9 does with the integers before the blocks.
#include "vtu/vtu_file.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <numeric>
#include <sstream>
#include <stdexcept>

namespace kvx::test {
namespace {

std::uint64_t WordAt(const std::string& bytes, std::size_t word, std::size_t begin = 0) {
  std::uint64_t value = 0;
  for (std::size_t k = 8; k > 0; --k) {
    value = value << 8U | static_cast<unsigned char>(bytes.at(begin + 8 * word + k - 1));
  }
  return value;
}

// The uncompressed bytes of an array that begins there; and where it ends.
struct Unpacked {
  std::vector<std::uint64_t> words;  // blocks, bytes of a block, of the last one, compressed sizes
  std::string bytes;
  std::size_t end = 0;
};

Unpacked Unpack(const std::string& file, std::size_t begin) {
  Unpacked array;
  const std::uint64_t blocks = WordAt(file, 0, begin);
  for (std::size_t k = 0; k < 3 + blocks; ++k) array.words.push_back(WordAt(file, k, begin));
  array.end = begin + 8 * array.words.size();
  for (std::size_t block = 0; block < blocks; ++block) {
    const std::uint64_t size = array.words[3 + block];
    std::string part(array.words[1], '\0');
    auto length = static_cast<uLongf>(part.size());
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(part.data()), &length,
                         reinterpret_cast<const Bytef*>(file.data() + array.end),
                         static_cast<uLong>(size)),
              Z_OK);
    array.bytes += part.substr(0, length);
    array.end += size;
  }
  return array;
}

std::string BytesOf(const VtuArray& array) {
  std::ostringstream stream;
  WriteVtuArray(array, {}, stream);
  return stream.str();
}

// A row of bytes that no compression shortens much, and the same as an array.
std::uint8_t ByteAt(std::size_t k) { return static_cast<std::uint8_t>((k * 2654435761U) >> 13U); }

VtuArray MakeBytes(std::size_t count) {
  const auto fill = [](std::size_t k, std::uint8_t* value) { *value = ByteAt(k); };
  return {"bytes", {}, 1, count, FillBytes(fill)};
}

// A block has 32768 bytes. Where the last one is full, its size is written as 0: readers add a
// block of this size otherwise.
TEST(VtuFile, CutsArraysIntoBlocks) {
  struct Case {
    std::size_t bytes;
    std::uint64_t blocks, last;
  };
  for (const Case& each : {Case{0, 0, 0}, Case{1, 1, 1}, Case{32767, 1, 32767}, Case{32768, 1, 0},
                           Case{32769, 2, 1}, Case{65536, 2, 0}}) {
    SCOPED_TRACE(each.bytes);
    const std::string file = BytesOf(MakeBytes(each.bytes));
    const Unpacked array = Unpack(file, 0);
    EXPECT_EQ(array.words[0], each.blocks);
    EXPECT_EQ(array.words[1], 32768U);
    EXPECT_EQ(array.words[2], each.last);
    EXPECT_EQ(array.end, file.size());
    ASSERT_EQ(array.bytes.size(), each.bytes);
    for (std::size_t k = 0; k < each.bytes; ++k) {
      ASSERT_EQ(static_cast<std::uint8_t>(array.bytes[k]), ByteAt(k)) << k;
    }
  }
}

// Every bit of a double is kept: signs of zero, the largest and the smallest, NaN with its sign and
// the bits behind it. The bytes are written out by hand, lowest first.
TEST(VtuFile, KeepsTheBitsOfDoubles) {
  const auto fill = [](std::size_t k, double* value) {
    const std::uint64_t bits[] = {0x8000000000000000U, 0x3ff0000000000001U, 0x7ff0000000000000U,
                                  0xfff8000000000001U, 0x0000000000000001U};
    std::memcpy(value, &bits[k], sizeof *value);
  };
  const Unpacked array = Unpack(BytesOf({"doubles", {}, 1, 5, FillDoubles(fill)}), 0);
  const std::string expected(
      "\0\0\0\0\0\0\0\x80"
      "\x01\0\0\0\0\0\xf0\x3f"
      "\0\0\0\0\0\0\xf0\x7f"
      "\x01\0\0\0\0\0\xf8\xff"
      "\x01\0\0\0\0\0\0\0",
      40);
  EXPECT_EQ(array.bytes, expected);
}

TEST(VtuFile, WritesNegativeIntegers) {
  const auto fill = [](std::size_t k, std::int64_t* value) { *value = k == 0 ? -1 : 258; };
  const Unpacked array = Unpack(BytesOf({"integers", {}, 1, 2, FillIntegers(fill)}), 0);
  EXPECT_EQ(array.bytes, std::string("\xff\xff\xff\xff\xff\xff\xff\xff\x02\x01\0\0\0\0\0\0", 16));
}

// 3 x 8 bytes do not divide a block: a tuple lies across its end.
TEST(VtuFile, CutsWithinTuples) {
  constexpr std::size_t Tuples = 3000;
  const auto fill = [](std::size_t k, double* values) {
    for (std::size_t i = 0; i < 3; ++i) values[i] = static_cast<double>(3 * k + i);
  };
  const Unpacked array = Unpack(BytesOf({"vectors", {}, 3, Tuples, FillDoubles(fill)}), 0);
  EXPECT_EQ(array.words[0], 3U);  // 72000 bytes
  EXPECT_EQ(array.words[2], 72000U - 2U * 32768U);
  ASSERT_EQ(array.bytes.size(), 72000U);
  for (std::size_t k = 0; k < 3 * Tuples; ++k) {
    double value = 0.0;
    std::memcpy(&value, array.bytes.data() + 8 * k, sizeof value);
    ASSERT_EQ(value, static_cast<double>(k));
  }
}

// Two points, one line between them.
VtuGrid MakeLine() {
  VtuGrid grid;
  const auto place = [](std::size_t point, double* xyz) {
    xyz[0] = static_cast<double>(point);
    xyz[1] = xyz[2] = 0.0;
  };
  const auto number = [](std::size_t k, std::int64_t* value) {
    *value = static_cast<std::int64_t>(k);
  };
  const auto two = [](std::size_t, std::int64_t* value) { *value = 2; };
  const auto line = [](std::size_t, std::uint8_t* value) { *value = VtkLine; };
  grid.points = {"Points", {}, 3, 2, FillDoubles(place)};
  grid.connectivity = {"connectivity", {}, 1, 2, FillIntegers(number)};
  grid.offsets = {"offsets", {}, 1, 1, FillIntegers(two)};
  grid.types = {"types", {}, 1, 1, FillBytes(line)};
  const auto force = [](std::size_t, double* values) {
    values[0] = 7.0;
    values[1] = 8.0;
  };
  grid.pointData.push_back({"node_id", {}, 1, 2, FillIntegers(number)});
  grid.cellData.push_back({"q", {"qx", "qy"}, 2, 1, FillDoubles(force)});
  return grid;
}

std::size_t OffsetOf(const std::string& head, const std::string& name) {
  const std::size_t at = head.find("Name=\"" + name + '"');
  const std::string key = "offset=\"";
  const std::size_t begin = head.find(key, at) + key.size();
  return std::stoul(head.substr(begin, head.find('"', begin) - begin));
}

TEST(VtuFile, HasAHeadThatLeadsToItsArrays) {
  std::ostringstream stream;
  WriteVtu(MakeLine(), {}, stream);
  const std::string file = stream.str();
  const std::string mark = "<AppendedData encoding=\"raw\">\n   _";
  const std::size_t data = file.find(mark) + mark.size();
  const std::string head = file.substr(0, data);
  EXPECT_EQ(
      head.rfind("<?xml version=\"1.0\"?>\n<VTKFile type=\"UnstructuredGrid\" version=\"1.0\" "
                 "byte_order=\"LittleEndian\" header_type=\"UInt64\" "
                 "compressor=\"vtkZLibDataCompressor\">\n",
                 0),
      0U);
  EXPECT_NE(head.find("<Piece NumberOfPoints=\"2\" NumberOfCells=\"1\">"), std::string::npos);
  EXPECT_NE(head.find("<DataArray type=\"Float64\" Name=\"q\" NumberOfComponents=\"2\" "
                      "ComponentName0=\"qx\" ComponentName1=\"qy\" format=\"appended\" offset=\""),
            std::string::npos);
  EXPECT_NE(head.find("type=\"UInt8\" Name=\"types\" format"), std::string::npos);

  // In the order of the head, without a gap.
  std::size_t next = 0;
  for (const char* name : {"node_id", "q", "Points", "connectivity", "offsets", "types"}) {
    EXPECT_EQ(OffsetOf(head, name), next) << name;
    next = Unpack(file, data + next).end - data;
  }
  EXPECT_EQ(file.substr(data + next), "\n  </AppendedData>\n</VTKFile>\n");
  EXPECT_EQ(Unpack(file, data + OffsetOf(head, "types")).bytes, std::string(1, '\x03'));
  const std::string seven("\0\0\0\0\0\0\x1c\x40\0\0\0\0\0\0\x20\x40", 16);
  EXPECT_EQ(Unpack(file, data + OffsetOf(head, "q")).bytes, seven);
}

TEST(VtuFile, TellsItsShareAndCanBeInterrupted) {
  VtuGrid grid = MakeLine();
  grid.pointData.push_back(MakeBytes(100000));
  std::vector<double> shares;
  std::ostringstream stream;
  WriteVtu(
      grid, [&](double share) { shares.push_back(share); }, stream);
  // One of each small array, four of the large one.
  ASSERT_EQ(shares.size(), 10U);
  for (std::size_t k = 0; k < shares.size(); ++k) {
    EXPECT_DOUBLE_EQ(shares[k], static_cast<double>(k) / 10.0);
  }
  const auto interrupt = [](double share) {
    if (share > 0.3) throw std::runtime_error("interrupted");
  };
  EXPECT_THROW(WriteVtu(grid, interrupt, stream), std::runtime_error);
}

// A stream that takes `room` bytes and no more.
struct SmallBuffer : std::stringbuf {
  explicit SmallBuffer(std::streamsize bytes) : room(bytes) {}
  std::streamsize xsputn(const char* text, std::streamsize count) override {
    if (count > room) return 0;
    room -= count;
    return std::stringbuf::xsputn(text, count);
  }
  std::streamsize room;
};

// On a full disk the rest is not made.
TEST(VtuFile, EndsWhereTheStreamFails) {
  std::size_t calls = 0;
  const auto fill = [&](std::size_t k, std::uint8_t* value) {
    ++calls;
    *value = ByteAt(k);
  };
  constexpr std::size_t Blocks = 40;
  SmallBuffer buffer(10000);
  std::ostream stream(&buffer);
  WriteVtuArray({"bytes", {}, 1, Blocks * 32768, FillBytes(fill)}, {}, stream);
  EXPECT_FALSE(stream);
  EXPECT_LT(calls, Blocks * 32768 / 2);
}

}  // namespace
}  // namespace kvx::test
