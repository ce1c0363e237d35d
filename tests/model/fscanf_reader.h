// The model file as the C library's fscanf reads it, as a reference for our own reader.
//
// All fields of the file are stored unchanged, also those that the model does not use. A field that
// cannot be read is 0. References are neither checked nor followed.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace korvex::test {

struct FileMaterial {
  std::int32_t label = 0;
  double E = 0.0, Mu = 0.0, Density = 0.0;
};
struct FileThickness {
  std::int32_t label = 0;
  double TK = 0.0;
};
struct FileBeamSection {
  double Hw = 0.0, Tw = 0.0, Bf = 0.0, Tf = 0.0;
};
struct FileTubeSection {
  double R = 0.0, T = 0.0;
};
struct FileNode {
  std::int32_t number = 0;
  std::array<double, 3> position{};
};
template <std::size_t Nodes>
struct FileShell {
  std::int32_t number = 0;
  std::array<std::int32_t, Nodes> nodes{};
  std::int32_t material = 0, thickness = 0;
};
struct FileBeam {
  std::int32_t number = 0;
  std::array<std::int32_t, 2> nodes{};
  std::array<double, 3> orientation{};
  std::int32_t material = 0, BeamSecType = 0, BeamSecIndex = 0;
  double BeamSecOz = 0.0;
  std::int32_t BeamSecMirrored = 0;
};
struct FileRestraint {
  std::int32_t node = 0;
  std::array<std::int32_t, 6> fixed{};
};
struct FileForce {
  std::int32_t node = 0;
  std::array<double, 6> components{};
};
template <std::size_t Values>
struct FileLoad {
  std::int32_t element = 0;
  std::array<double, Values> q{};
};

// A count of the file and its rows. A negative count has no rows.
template <typename Row>
struct FileTable {
  std::int32_t count = 0;
  std::vector<Row> rows;
};

enum class FileEnd {
  Complete,       // all sections read
  WrongRelease,   // nothing read but the header
  NegativeCount,  // read up to this count, which is kept
  TooManyRows,    // read up to a count above the bound
};

struct FileTables {
  FileEnd end = FileEnd::Complete;
  double release = 0.0;
  FileTable<FileMaterial> materials;
  FileTable<FileThickness> thicknesses;
  FileTable<FileBeamSection> tSections, lSections;
  FileTable<FileTubeSection> cSections;
  FileTable<FileNode> nodes;
  FileTable<FileShell<4>> shells4;
  FileTable<FileShell<3>> shells3;
  FileTable<FileBeam> beams;
  FileTable<FileRestraint> restraints;
  FileTable<FileForce> forces;
  FileTable<FileLoad<3>> shell4Loads, shell3Loads;
  FileTable<FileLoad<2>> beamLoads;
};

// Whether this C library's scanf reads incomplete numbers as our scanner does. In the C standard
// "1e+" is no number; the GNU C library reads it as 1, but a later one may follow the standard.
bool ReadsBrokenNumbersAlike();

// Reads the file, which must exist, up to the first wrong release, negative count of materials,
// thicknesses, nodes or restraints, or count above `rowsAtMost`.
FileTables ReadWithFscanf(const std::string& fileName, std::int32_t rowsAtMost);

}  // namespace korvex::test
