// displacements.bin: every bit comes back, and a file that does not fit is named with its reason.
#include "audit/displacement_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <filesystem>
#include <limits>

#include "support/expect_stop.h"
#include "support/read_bytes.h"
#include "support/same_bits.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::SameBits;
using korvex::test::TempFolder;
using korvex::test::WriteFile;

constexpr ModelFileId Id{1234, 0x0123456789abcdefU};

std::vector<double> TwoNodes() {
  return {1.0,
          -0.0,
          5e-324,
          std::numeric_limits<double>::infinity(),
          std::nan("7"),
          -std::nan(""),
          0.1,
          1e300,
          -2.5e-3,
          std::numeric_limits<double>::denorm_min(),
          std::numeric_limits<double>::max(),
          3.0};
}

struct Place {
  TempFolder folder;
  std::string file = (folder.Path() / ExactDisplacementFileName).string();
};

DisplacementReading Read(const Place& place, std::vector<double>& numbers,
                         const ModelFileId& id = Id, std::int32_t nodes = 2) {
  return ReadDisplacementFile(place.file, id, nodes, numbers);
}

void ExpectRefused(const Place& place, DisplacementFit fit, const std::string& reason,
                   const ModelFileId& id = Id, std::int32_t nodes = 2) {
  std::vector<double> numbers{1.0};
  const DisplacementReading reading = Read(place, numbers, id, nodes);
  EXPECT_EQ(reading.fit, fit) << reading.reason;
  EXPECT_EQ(reading.reason, place.file + ' ' + reason);
  EXPECT_TRUE(numbers.empty());
}

TEST(DisplacementFile, GivesBackEveryBit) {
  const Place place;
  WriteDisplacementFile(place.file, Id, TwoNodes());
  std::vector<double> numbers;
  const DisplacementReading reading = Read(place, numbers);
  EXPECT_EQ(reading.fit, DisplacementFit::Fits) << reading.reason;
  EXPECT_EQ(reading.reason, "");
  EXPECT_TRUE(SameBits(numbers, TwoNodes()));
}

// More numbers than a block holds (8192), and not a multiple of it.
TEST(DisplacementFile, HoldsManyNodes) {
  const Place place;
  std::vector<double> many(6 * 5001);
  for (std::size_t k = 0; k < many.size(); ++k) many[k] = std::sin(static_cast<double>(k));
  WriteDisplacementFile(place.file, Id, many);
  std::vector<double> numbers;
  EXPECT_EQ(Read(place, numbers, Id, 5001).fit, DisplacementFit::Fits);
  EXPECT_TRUE(SameBits(numbers, many));
}

TEST(DisplacementFile, HoldsAModelWithoutNodes) {
  const Place place;
  WriteDisplacementFile(place.file, Id, {});
  std::vector<double> numbers;
  EXPECT_EQ(Read(place, numbers, Id, 0).fit, DisplacementFit::Fits);
  EXPECT_TRUE(numbers.empty());
}

// The layout of the header's comment, byte by byte: 1.0 is 0x3ff0000000000000.
TEST(DisplacementFile, HasTheDocumentedBytes) {
  const Place place;
  WriteDisplacementFile(place.file, Id, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  const std::string bytes = ReadBytes(place.file);
  ASSERT_EQ(bytes.size(), 88U);
  EXPECT_EQ(bytes.substr(0, 8), "KVXDISPL");
  EXPECT_EQ(bytes.substr(8, 8), std::string("\x01\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(bytes.substr(16, 8), std::string("\xD2\x04\0\0\0\0\0\0", 8));  // 1234 = 0x4D2
  EXPECT_EQ(bytes.substr(24, 8), "\xEF\xCD\xAB\x89\x67\x45\x23\x01");
  EXPECT_EQ(bytes.substr(32, 8), std::string("\x01\0\0\0\0\0\0\0", 8));
  EXPECT_EQ(bytes.substr(40, 8), std::string("\0\0\0\0\0\0\xF0\x3F", 8));
}

TEST(DisplacementFile, IsRefusedWhereItEndsEarlyAtAnyByte) {
  const Place place;
  WriteDisplacementFile(place.file, Id, TwoNodes());
  const std::string bytes = ReadBytes(place.file);
  for (std::size_t size = 0; size < bytes.size(); ++size) {
    SCOPED_TRACE(size);
    WriteFile(place.file, bytes.substr(0, size));
    ExpectRefused(place, DisplacementFit::Truncated,
                  "is not whole: it ends before the last displacement.");
  }
}

TEST(DisplacementFile, IsRefusedWithAByteTooMany) {
  const Place place;
  WriteDisplacementFile(place.file, Id, TwoNodes());
  WriteFile(place.file, ReadBytes(place.file) + 'x');
  ExpectRefused(place, DisplacementFit::TooLong, "goes on after the last displacement.");
}

TEST(DisplacementFile, IsRefusedForAnotherModel) {
  const Place place;
  WriteDisplacementFile(place.file, Id, TwoNodes());
  const std::string reason = "belongs to another model file, or to an earlier state of this one.";
  ExpectRefused(place, DisplacementFit::OtherModel, reason, {1235, Id.hash});
  ExpectRefused(place, DisplacementFit::OtherModel, reason, {Id.size, Id.hash + 1});
  ExpectRefused(place, DisplacementFit::OtherModel, reason, Id, 1);
  ExpectRefused(place, DisplacementFit::OtherModel, reason, Id, 2147483647);
}

// Any byte of the header that is wrong is noticed.
TEST(DisplacementFile, IsRefusedWithAnyOtherHeader) {
  const Place place;
  WriteDisplacementFile(place.file, Id, TwoNodes());
  const std::string bytes = ReadBytes(place.file);
  for (std::size_t k = 0; k < 40; ++k) {
    SCOPED_TRACE(k);
    std::string other = bytes;
    other[k] = static_cast<char>(other[k] ^ 0x10);
    WriteFile(place.file, other);
    std::vector<double> numbers;
    const DisplacementFit fit = Read(place, numbers).fit;
    EXPECT_EQ(fit, k < 8    ? DisplacementFit::NotOurs
                   : k < 12 ? DisplacementFit::OtherVersion
                            : DisplacementFit::OtherModel);
  }
  std::string other = bytes;
  other[8] = 2;
  WriteFile(place.file, other);
  ExpectRefused(place, DisplacementFit::OtherVersion,
                "has version 2; this program reads version 1.");
}

TEST(DisplacementFile, IsRefusedWhereItIsSomethingElse) {
  const Place place;
  ExpectRefused(place, DisplacementFit::Missing, "does not exist.");
  WriteFile(place.file, "          Node             dx             dy\n");
  ExpectRefused(place, DisplacementFit::NotOurs, "is no file of displacements.");
  WriteFile(place.file, "KVXM");
  ExpectRefused(place, DisplacementFit::NotOurs, "is no file of displacements.");
  fs::remove(place.file);
  fs::create_directory(place.file);
  ExpectRefused(place, DisplacementFit::Unreadable, "cannot be read.");
}

TEST(DisplacementFile, ReplacesAnOlderOneAndLeavesNothingBeside) {
  const Place place;
  WriteFile(place.file, "old");
  WriteFile(place.file + ".part", "left over from a run that was killed");
  WriteDisplacementFile(place.file, Id, TwoNodes());
  std::vector<double> numbers;
  EXPECT_EQ(Read(place, numbers).fit, DisplacementFit::Fits);
  EXPECT_FALSE(fs::exists(place.file + ".part"));
}

TEST(DisplacementFile, CannotBeWrittenWithoutItsFolder) {
  const TempFolder folder;
  const std::string file = (folder.Path() / "none" / ExactDisplacementFileName).string();
  korvex::test::ExpectStop([&] { WriteDisplacementFile(file, Id, TwoNodes()); },
                           file + " cannot be written: No such file or directory.",
                           korvex::StopKind::ResultFile);
}

TEST(DisplacementFile, CannotTakeThePlaceOfAFolder) {
  const Place place;
  fs::create_directory(place.file);
  EXPECT_THROW(WriteDisplacementFile(place.file, Id, TwoNodes()), korvex::Stop);
  EXPECT_TRUE(fs::is_directory(place.file));
  EXPECT_FALSE(fs::exists(place.file + ".part"));
}

}  // namespace
}  // namespace kvx::test
