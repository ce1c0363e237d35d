// Times the VTU file of a plate of 40,000 shells with 5,000 beams, and measures its memory.
//
//   vtu_bench FOLDER
//
// FOLDER: where the file goes, so that its disk is measured; it is removed afterwards. The model is
// not solved: displacements are a smooth field, from which stresses are recovered, so that the
// numbers are as irregular as those of results. Beside it the time in which the disk takes as many
// bytes as there are numbers, and as many as the file has: by the clock, flushed. All other times
// are processor times. Each is the middle of five.
#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <vector>

#include "audit/reactions.h"
#include "audit/section_forces.h"
#include "audit/solved_model.h"
#include "audit/whole_file.h"
#include "deck/write_tables.h"
#include "measure.h"
#include "results/average_stresses.h"
#include "results/shell_stresses.h"
#include "vtu/mesh_vtu.h"

namespace {

constexpr std::int32_t Side = 200;  // shells along each side
constexpr std::int32_t BeamLines = 25;

std::int32_t NodeAt(std::int32_t i, std::int32_t j) { return i * (Side + 1) + j; }

void MakeTables(korvex::ModelTables& tables) {
  tables.Materials.push_back({206000.0, 0.3, 7.85e-9});
  tables.ShellThicknesses.push_back({10.0});
  tables.TBeamSections.push_back({200.0, 10.0, 100.0, 10.0});
  korvex::NodalRestraint clamp;
  clamp.fixed.fill(1);
  for (std::int32_t i = 0; i <= Side; ++i) {
    for (std::int32_t j = 0; j <= Side; ++j) tables.Nodes.push_back({50.0 * i, 50.0 * j, 0.0});
    clamp.node = NodeAt(0, i);
    tables.NodalRestraints.push_back(clamp);
  }
  for (std::int32_t i = 0; i < Side; ++i) {
    for (std::int32_t j = 0; j < Side; ++j) {
      tables.Shell4SurfaceLoads.push_back({Side * i + j, {0.01, 0.01, 0.01}});
      for (const std::int32_t node :
           {NodeAt(i, j), NodeAt(i + 1, j), NodeAt(i + 1, j + 1), NodeAt(i, j + 1)}) {
        tables.Shell4Nodes.push_back(node);
      }
      tables.Shell4Properties.push_back({0, 0});
    }
    for (std::int32_t line = 0; line < BeamLines; ++line) {
      const std::int32_t j = line * Side / BeamLines;
      tables.BeamNodes.insert(tables.BeamNodes.end(), {NodeAt(i, j), NodeAt(i + 1, j)});
      tables.BeamSectionRefs.push_back({korvex::BeamSecTypeT, 0, 0.0, false});
      tables.BeamProperties.push_back({{0.0, 0.0, -1.0}, 0});
    }
  }
}

std::vector<double> MakeDisplacements(const korvex::ModelTables& tables) {
  std::vector<double> displacements;
  for (const korvex::Node& node : tables.Nodes) {
    const double x = node.x / 1e4, y = node.y / 1e4;
    displacements.insert(
        displacements.end(),
        {0.1 * std::sin(x + y), 0.1 * std::cos(x * y), std::sin(3.0 * x) * y * y,
         2.0 * std::sin(3.0 * x) * y / 1e4, -3.0 * std::cos(3.0 * x) * y * y / 1e4, 1e-5 * x * y});
  }
  return displacements;
}

double MedianOf(const std::function<double()>& measure) {
  std::vector<double> times;
  for (int k = 0; k < 5; ++k) times.push_back(measure());
  return korvex::bench::Median(times);
}

double Time(const std::function<void()>& work) {
  return MedianOf([&] { return korvex::bench::Measure(work); });
}

void Flush(const std::string& file) {
  const int descriptor = open(file.c_str(), O_RDONLY);
  if (descriptor < 0 || fsync(descriptor) != 0) std::perror(file.c_str());
  close(descriptor);
}

// Seconds by the clock until these bytes are on the disk.
double TimePlainly(const std::string& file, double megabytes) {
  const std::vector<char> bytes(static_cast<std::size_t>(megabytes * 1e6), 'x');
  return MedianOf([&] {
    const auto begin = std::chrono::steady_clock::now();
    std::ofstream stream(file, std::ios::binary);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    Flush(file);
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  });
}

double CountMegabytes(const kvx::VtuGrid& grid) {
  double bytes = 0.0;
  const auto add = [&](const kvx::VtuArray& array) {
    const bool isByte = std::holds_alternative<kvx::FillBytes>(array.fill);
    bytes += static_cast<double>(array.tuples * array.width) * (isByte ? 1.0 : 8.0);
  };
  for (const kvx::VtuArray& array : grid.pointData) add(array);
  for (const kvx::VtuArray& array : grid.cellData) add(array);
  for (const kvx::VtuArray* array :
       {&grid.points, &grid.connectivity, &grid.offsets, &grid.types}) {
    add(*array);
  }
  return bytes / 1e6;
}

long PeakKilobytes() {
  rusage usage{};
  getrusage(RUSAGE_SELF, &usage);
  return usage.ru_maxrss;
}

void MeasureGrid(const kvx::MeshResults& results, bool isShared, const std::string& file) {
  const long before = PeakKilobytes();
  kvx::MeshGrid mesh;
  const double build = Time([&] { kvx::BuildMeshGrid(results, isShared, mesh); });
  const double write = Time([&] {
    kvx::WriteWholeFile(file, [&](std::ostream& stream) { kvx::WriteVtu(mesh.grid, {}, stream); });
  });
  const long after = PeakKilobytes();
  const double size = static_cast<double>(std::filesystem::file_size(file)) / 1e6;
  const double raw = CountMegabytes(mesh.grid);
  std::printf(
      "%s: %.1f MB of numbers, a file of %.1f MB\n"
      "  prepared in %.3f s, written in %.3f s: %.0f MB of numbers a second\n"
      "  the disk alone: %.3f s for these numbers, %.3f s for the file\n"
      "  memory: %.1f MB more\n",
      isShared ? "shared" : "by corners", raw, size, build, write, raw / write,
      TimePlainly(file, raw), TimePlainly(file, size), static_cast<double>(after - before) / 1e3);
  std::filesystem::remove(file);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::puts("vtu_bench FOLDER");
    return 1;
  }
  kvx::SolvedModel solved;
  std::vector<double> displacements;
  {
    korvex::ModelTables tables;
    MakeTables(tables);
    displacements = MakeDisplacements(tables);
    tables.NMT = tables.NTK = tables.NTBS = 1;
    tables.NPOIN = static_cast<std::int32_t>(tables.Nodes.size());
    tables.NELEM_S_4ND = static_cast<std::int32_t>(tables.Shell4Properties.size());
    tables.NELEM_B = static_cast<std::int32_t>(tables.BeamProperties.size());
    tables.NRN = static_cast<std::int32_t>(tables.NodalRestraints.size());
    tables.NDL_S_4ND = static_cast<std::int32_t>(tables.Shell4SurfaceLoads.size());
    kvx::CompleteFromDisplacements(korvex::WriteTables(tables), std::move(displacements), solved);
  }
  korvex::RecoverShellStresses(solved.model);
  korvex::AverageNodeStresses(solved.model);
  kvx::Reactions reactions;
  kvx::ComputeReactions(solved, reactions);
  std::vector<kvx::BeamForces> forces;
  kvx::ComputeBeamForces(solved.model, forces);
  const std::vector<std::int32_t> parts(
      solved.model.Shell4Elements.size() + solved.model.BeamElements.size(), 1);
  const kvx::MeshResults results{solved, reactions, forces, parts};
  const std::string file = std::string(argv[1]) + "/vtu_bench.vtu";
  for (const bool isShared : {false, true}) MeasureGrid(results, isShared, file);
  return 0;
}
