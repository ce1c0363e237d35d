#include "audit/displacement_file.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string_view>

#include "audit/whole_file.h"
#include "base/dof_counts.h"
#include "report/check_memory.h"

namespace kvx {

namespace {

static_assert(sizeof(double) == 8 && std::numeric_limits<double>::is_iec559);

constexpr std::string_view Magic = "KVXDISPL";
constexpr std::uint64_t Version = 1;
constexpr std::size_t NumberSize = 8;

// Where the integers of the header begin, behind the magic; the version has four bytes and four
// unused ones behind it, the others have eight.
constexpr std::size_t VersionSize = 4;
constexpr std::size_t VersionAt = 8, SizeAt = 16, HashAt = 24, NodesAt = 32, HeaderSize = 40;
static_assert(VersionAt == Magic.size());

// Numbers are converted and written in blocks of this many.
constexpr std::size_t BlockNumbers = 8192;

void PutInteger(std::uint64_t value, std::size_t bytes, char* to) {
  for (std::size_t k = 0; k < bytes; ++k) {
    to[k] = static_cast<char>(static_cast<unsigned char>(value >> (8 * k)));
  }
}

std::uint64_t TakeInteger(const char* from, std::size_t bytes) {
  std::uint64_t value = 0;
  for (std::size_t k = 0; k < bytes; ++k) {
    value |= static_cast<std::uint64_t>(static_cast<unsigned char>(from[k])) << (8 * k);
  }
  return value;
}

using Header = std::array<char, HeaderSize>;

Header MakeHeader(const ModelFileId& file, std::uint64_t nodes) {
  Header header{};
  std::copy(Magic.begin(), Magic.end(), header.begin());
  PutInteger(Version, VersionSize, &header[VersionAt]);
  PutInteger(file.size, NumberSize, &header[SizeAt]);
  PutInteger(file.hash, NumberSize, &header[HashAt]);
  PutInteger(nodes, NumberSize, &header[NodesAt]);
  return header;
}

// A file on its way to be read.
struct Reader {
  std::string name;
  std::ifstream stream;
};

// Reads `count` bytes; returns how many there were.
std::size_t ReadBytes(Reader& reader, char* to, std::size_t count) {
  reader.stream.read(to, static_cast<std::streamsize>(count));
  return static_cast<std::size_t>(reader.stream.gcount());
}

DisplacementReading Refuse(DisplacementFit fit, const std::string& name, const std::string& what) {
  return {fit, name + ' ' + what + '.'};
}

DisplacementReading RefuseTruncated(const std::string& name) {
  return Refuse(DisplacementFit::Truncated, name,
                "is not whole: it ends before the last displacement");
}

DisplacementReading Open(Reader& reader) {
  std::error_code ignored;
  if (!std::filesystem::exists(reader.name, ignored)) {
    return Refuse(DisplacementFit::Missing, reader.name, "does not exist");
  }
  reader.stream.open(reader.name, std::ios::binary);
  // Some systems can open a folder as a file, but none can read it.
  if (reader.stream.is_open()) reader.stream.peek();
  if (!reader.stream.is_open() || reader.stream.bad() ||
      std::filesystem::is_directory(reader.name, ignored)) {
    return Refuse(DisplacementFit::Unreadable, reader.name, "cannot be read");
  }
  reader.stream.clear();
  return {DisplacementFit::Fits, ""};
}

// Whether the first `size` bytes of the header, which were read, are those of such a file.
DisplacementReading CheckMagic(const std::string& name, const Header& header, std::size_t size) {
  const std::size_t magic = std::min(size, Magic.size());
  if (std::string_view(header.data(), magic) != Magic.substr(0, magic)) {
    return Refuse(DisplacementFit::NotOurs, name, "is no file of displacements");
  }
  if (size < HeaderSize) return RefuseTruncated(name);
  const std::uint64_t version = TakeInteger(&header[VersionAt], VersionSize);
  if (version != Version) {
    return Refuse(DisplacementFit::OtherVersion, name,
                  "has version " + std::to_string(version) + "; this program reads version " +
                      std::to_string(Version));
  }
  return {DisplacementFit::Fits, ""};
}

// Opens the file and reads its header.
DisplacementReading ReadHeader(Reader& reader, Header& header) {
  DisplacementReading reading = Open(reader);
  if (reading.fit != DisplacementFit::Fits) return reading;
  const std::size_t size = ReadBytes(reader, header.data(), HeaderSize);
  return CheckMagic(reader.name, header, size);
}

DisplacementReading ReadNumbers(Reader& reader, std::size_t count, std::vector<double>& numbers) {
  korvex::AllocateOrStop("the displacements of " + reader.name, count, NumberSize,
                         [&] { numbers.resize(count); });
  std::vector<char> block(BlockNumbers * NumberSize);
  for (std::size_t done = 0; done < count; done += BlockNumbers) {
    const std::size_t size = std::min(BlockNumbers, count - done) * NumberSize;
    if (ReadBytes(reader, block.data(), size) != size) return RefuseTruncated(reader.name);
    for (std::size_t at = 0; at < size; at += NumberSize) {
      const std::uint64_t bits = TakeInteger(&block[at], NumberSize);
      std::memcpy(&numbers[done + at / NumberSize], &bits, NumberSize);
    }
  }
  if (ReadBytes(reader, block.data(), 1) != 0) {
    return Refuse(DisplacementFit::TooLong, reader.name, "goes on after the last displacement");
  }
  return {DisplacementFit::Fits, ""};
}

DisplacementReading ReadAll(const std::string& fileName, const Header& expected, std::size_t count,
                            std::vector<double>& numbers) {
  Reader reader{fileName, {}};
  Header header{};
  DisplacementReading reading = ReadHeader(reader, header);
  if (reading.fit != DisplacementFit::Fits) return reading;
  if (header != expected) {
    return Refuse(DisplacementFit::OtherModel, fileName,
                  "belongs to another model file, or to an earlier state of this one");
  }
  return ReadNumbers(reader, count, numbers);
}

}  // namespace

void WriteDisplacementFile(const std::string& fileName, const ModelFileId& file,
                           const std::vector<double>& displacements) {
  const Header header = MakeHeader(file, displacements.size() / korvex::DofsPerNode);
  WriteWholeFile(fileName, [&](std::ostream& stream) {
    stream.write(header.data(), HeaderSize);
    std::vector<char> block;
    for (std::size_t done = 0; done < displacements.size() && stream; done += BlockNumbers) {
      const std::size_t count = std::min(BlockNumbers, displacements.size() - done);
      block.resize(count * NumberSize);
      for (std::size_t k = 0; k < count; ++k) {
        std::uint64_t bits = 0;
        std::memcpy(&bits, &displacements[done + k], NumberSize);
        PutInteger(bits, NumberSize, &block[k * NumberSize]);
      }
      stream.write(block.data(), static_cast<std::streamsize>(block.size()));
    }
  });
}

DisplacementReading ReadDisplacementFile(const std::string& fileName, const ModelFileId& file,
                                         std::int32_t nodes, std::vector<double>& displacements) {
  displacements.clear();
  const auto count = static_cast<std::uint64_t>(std::max(nodes, 0));
  DisplacementReading reading =
      ReadAll(fileName, MakeHeader(file, count),
              static_cast<std::size_t>(count) * korvex::DofsPerNode, displacements);
  if (reading.fit != DisplacementFit::Fits) displacements = {};
  return reading;
}

DisplacementFit ReadModelOfDisplacements(const std::string& fileName, ModelFileId& file) {
  Reader reader{fileName, {}};
  Header header{};
  const DisplacementFit fit = ReadHeader(reader, header).fit;
  if (fit == DisplacementFit::Fits) {
    file = {TakeInteger(&header[SizeAt], NumberSize), TakeInteger(&header[HashAt], NumberSize)};
  }
  return fit;
}

}  // namespace kvx
