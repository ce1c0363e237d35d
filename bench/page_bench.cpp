// Measures kvx view on a deck of 100,000 shells and 5,000 beams: page_bench FOLDER
//
// FOLDER gets the model and its displacements, once, and the page, deck.html. The time of the page
// runs from the solved model to the file: kvx view reads the model, recovers all stresses, checks
// and writes. Then its size, block by block. A model of 1,000,000 shells has to be refused.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "audit/displacement_file.h"
#include "audit/solved_model.h"
#include "commands/commands.h"
#include "measure.h"

namespace {

namespace fs = std::filesystem;
using korvex::bench::Measure;

constexpr int Across = 50;      // elements along y
constexpr int Along = 2000;     // along x
constexpr double Size = 100.0;  // of an element, mm
constexpr const char* ModelFile = "fem_solving.txt";

struct Grid {
  int along = 0;   // elements
  int across = 0;  // elements
  int Node(int i, int j) const { return i * (across + 1) + j; }
};

// Folded along two lines, cambered across and waved along.
double Height(const Grid& grid, int i, int j) {
  const double pi = std::acos(-1.0);
  const int fold = grid.across / 5;
  const int beyond = std::max(0, fold - j) + std::max(0, j - (grid.across - fold));
  return 60.0 * beyond + 150.0 * std::sin(pi * j / grid.across) +
         3000.0 * std::sin(2.0 * pi * i / grid.along);
}

std::string Count(const char* title, const char* key, std::size_t rows) {
  return std::string("Number of ") + title + ':' + key + '=' + std::to_string(rows) + '\n';
}

// Girders along x on two lines of nodes, frames across on every hundredth: four sections.
std::vector<std::string> ListBeams(const Grid& grid) {
  std::vector<std::string> rows;
  const auto add = [&](int a, int b, int type, int index, bool isMirrored) {
    rows.push_back(std::to_string(a) + ',' + std::to_string(b) + "<0,0,-1>[0,BeamSecType=" +
                   std::to_string(type) + ",BeamSecIndex=" + std::to_string(index) +
                   ",BeamSecOz=7,BeamSecMirrored=" + (isMirrored ? "1]" : "0]"));
  };
  for (const int j : {grid.across / 4, 3 * grid.across / 4}) {
    for (int i = 0; i < grid.along; ++i) {
      add(grid.Node(i, j), grid.Node(i + 1, j), 0, i < grid.along / 2 ? 0 : 1, false);
    }
  }
  for (int i = 50; i < grid.along; i += 100) {
    for (int j = 0; j < grid.across; ++j) {
      add(grid.Node(i, j), grid.Node(i, j + 1), 1, 0, j < grid.across / 2);
    }
  }
  return rows;
}

void WriteTop(const Grid& grid, std::ostream& out) {
  out << "### Toln_Korvex release=3.0 ###\nNumber of materials:NMT=1\n"
         "#0:\nE=206000\nMu=0.3\nDensity=7.85e-9\n"
      << Count("shell thicknesses", "NTK", 3) << "#0:\nTK=12\n#1:\nTK=14\n#2:\nTK=18\n"
      << Count("T_beam sections", "NTBS", 2) << "girder\nHw=400\nTw=12\nBf=150\nTf=16\n"
      << "flat bar\nHw=200\nTw=14\nBf=0\nTf=0\n"
      << Count("L_beam sections", "NLBS", 1) << "frame\nHw=300\nTw=11\nBf=90\nTf=16\n"
      << Count("C_beam sections", "NCBS", 0)
      << Count("nodal points", "NPOIN",
               static_cast<std::size_t>((grid.along + 1) * (grid.across + 1)));
  for (int i = 0; i <= grid.along; ++i) {
    for (int j = 0; j <= grid.across; ++j) {
      out << grid.Node(i, j) << ':' << i * Size << ',' << j * Size << ',' << Height(grid, i, j)
          << '\n';
    }
  }
}

void WriteElements(const Grid& grid, std::ostream& out) {
  const auto shells = static_cast<std::size_t>(grid.along * grid.across);
  out << Count("four-nodes shell elements", "NELEM_S_4ND", shells);
  for (int i = 0; i < grid.along; ++i) {
    for (int j = 0; j < grid.across; ++j) {
      out << i * grid.across + j << ':' << grid.Node(i, j) << ',' << grid.Node(i + 1, j) << ','
          << grid.Node(i + 1, j + 1) << ',' << grid.Node(i, j + 1) << "[0," << i / 200 % 3 << "]\n";
    }
  }
  out << Count("three-nodes shell elements", "NELEM_S_3ND", 0);
  const std::vector<std::string> beams = ListBeams(grid);
  out << Count("beam elements", "NELEM_B", beams.size());
  for (std::size_t k = 0; k < beams.size(); ++k) out << k << ':' << beams[k] << '\n';
}

// Its long edges rest on supports; pressure on all shells.
void WriteModel(const Grid& grid, const fs::path& file) {
  constexpr int SupportPitch = 50;
  std::ofstream out(file, std::ios::binary);
  out.precision(9);
  WriteTop(grid, out);
  WriteElements(grid, out);
  out << Count("restricted nodal points", "NRN",
               2 * static_cast<std::size_t>(grid.along / SupportPitch + 1));
  for (int i = 0; i <= grid.along; i += SupportPitch) {
    out << grid.Node(i, 0) << ": 1 1 1 0 0 0\n" << grid.Node(i, grid.across) << ": 0 0 1 0 0 0\n";
  }
  const int shells = grid.along * grid.across;
  out << Count("forces", "NFOR", 0)
      << Count("distributed loads on four-nodes shell elements", "NDL_S_4ND",
               static_cast<std::size_t>(shells));
  for (int e = 0; e < shells; ++e) out << e << ":-0.01,-0.01,-0.01\n";
  out << Count("distributed loads on three-nodes shell elements", "NDL_S_3ND", 0)
      << Count("distributed loads on beam elements", "NDL_B", 0);
}

std::string ReadFile(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void Solve(const fs::path& folder) {
  const std::string text = ReadFile(folder / ModelFile);
  kvx::SolvedModel solved;
  kvx::SolveInMemory(text, {}, solved);
  kvx::WriteDisplacementFile((folder / kvx::ExactDisplacementFileName).string(), solved.file,
                             solved.model.Displacements);
}

// Each script of the page with an id: the model's JSON and the blocks.
void PrintSizes(const fs::path& page) {
  constexpr double Megabyte = 1e6, Shells = 1e5;
  const std::string html = ReadFile(page);
  std::printf("%-22s %8.2f MB\n", "the page", static_cast<double>(html.size()) / Megabyte);
  constexpr const char* Mark = " id=\"kvx-";
  for (std::size_t at = html.find(Mark); at != std::string::npos; at = html.find(Mark, at + 1)) {
    const std::size_t id = html.find('"', at) + 1;
    const std::size_t begin = html.find('>', id) + 1;
    const auto bytes = static_cast<double>(html.find("</script", begin) - begin);
    std::printf("  %-20s %8.2f MB, %5.1f bytes a shell\n",
                html.substr(id, html.find('"', id) - id).c_str(), bytes / Megabyte, bytes / Shells);
  }
}

kvx::ExitStatus View(const fs::path& folder, const fs::path& page) {
  kvx::ViewCommand command;
  command.places = {folder.string()};
  command.output = page.string();
  return kvx::RunView(command);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: page_bench FOLDER\n");
    return 64;
  }
  const fs::path folder = fs::absolute(argv[1]);
  const fs::path deck = folder / "deck", million = folder / "million";
  fs::create_directories(deck);
  fs::create_directories(million);
  if (!fs::exists(deck / kvx::ExactDisplacementFileName)) {
    WriteModel({Along, Across}, deck / ModelFile);
    std::printf("%-22s %8.1f s\n", "solving", Measure([&] { Solve(deck); }));
  }
  const fs::path page = folder / "deck.html";
  std::printf("%-22s %8.2f s\n", "kvx view", Measure([&] { View(deck, page); }));
  PrintSizes(page);

  WriteModel({20 * Along, Across / 2}, million / ModelFile);
  std::printf("1,000,000 shells:\n");
  std::printf("%-22s %8.2f s\n", "kvx view",
              Measure([&] { View(million, folder / "million.html"); }));
  return 0;
}
