// Times kvx import on a plate of a million shells in each format, and measures its memory.
//
//   import_bench KVX FOLDER [SIDE]
//
// KVX: the program. FOLDER: where the decks and the models go; what it writes is removed. SIDE:
// shells along each side, else 1000. The nodes are numbered along the second axis first, but every
// 61st is swapped with its neighbour, so that an order has to be found. Each run is a process of
// its own: processor time, time by the clock, largest resident memory.
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

struct Plate {
  std::int32_t side = 1000;
  std::vector<std::int64_t> numbers;  // [(side + 1)^2] of the nodes, along y first, from 1
};

Plate MakePlate(std::int32_t side) {
  Plate plate;
  plate.side = side;
  const std::int64_t nodes = static_cast<std::int64_t>(side + 1) * (side + 1);
  for (std::int64_t k = 1; k <= nodes; ++k) plate.numbers.push_back(k);
  for (std::size_t k = 60; k < plate.numbers.size(); k += 61) {
    std::swap(plate.numbers[k - 1], plate.numbers[k]);
  }
  return plate;
}

std::int64_t NumberAt(const Plate& plate, std::int32_t i, std::int32_t j) {
  return plate.numbers[static_cast<std::size_t>(i) * static_cast<std::size_t>(plate.side + 1) +
                       static_cast<std::size_t>(j)];
}

std::array<std::int64_t, 4> CornersAt(const Plate& plate, std::int32_t i, std::int32_t j) {
  return {NumberAt(plate, i, j), NumberAt(plate, i + 1, j), NumberAt(plate, i + 1, j + 1),
          NumberAt(plate, i, j + 1)};
}

// Calls node(number, x, y) for each node and shell(number, corners) for each shell, nodes first.
// Numbers of shells follow those of the nodes.
template <typename OfNode, typename Between, typename OfShell>
void WriteMesh(const Plate& plate, const OfNode& node, const Between& between,
               const OfShell& shell) {
  for (std::int32_t i = 0; i <= plate.side; ++i) {
    for (std::int32_t j = 0; j <= plate.side; ++j) {
      node(NumberAt(plate, i, j), 12.5 * i, 12.5 * j);
    }
  }
  between();
  std::int64_t number = static_cast<std::int64_t>(plate.numbers.size());
  for (std::int32_t i = 0; i < plate.side; ++i) {
    for (std::int32_t j = 0; j < plate.side; ++j) shell(++number, CornersAt(plate, i, j));
  }
}

// A text file that is written through a buffer of C's library: printf is fast enough.
struct Output {
  std::FILE* file = nullptr;
  explicit Output(const fs::path& name) : file(std::fopen(name.c_str(), "wb")) {
    if (file == nullptr) std::abort();
  }
  ~Output() { std::fclose(file); }
  Output(const Output&) = delete;
  Output& operator=(const Output&) = delete;
};

void WriteNastran(const Plate& plate, const fs::path& name) {
  const Output out(name);
  std::fputs("SOL 101\nCEND\nSPC = 1\nLOAD = 2\nBEGIN BULK\n", out.file);
  WriteMesh(
      plate,
      [&](std::int64_t number, double x, double y) {
        std::fprintf(out.file, "GRID    %8d        %8.1f%8.1f%8.1f\n", static_cast<int>(number), x,
                     y, 0.0);
      },
      [] {},
      [&](std::int64_t number, const std::array<std::int64_t, 4>& n) {
        std::fprintf(out.file, "CQUAD4  %8d%8d%8d%8d%8d%8d\n", static_cast<int>(number), 1,
                     static_cast<int>(n[0]), static_cast<int>(n[1]), static_cast<int>(n[2]),
                     static_cast<int>(n[3]));
      });
  std::fprintf(out.file,
               "PSHELL,1,1,10.,1,,1\nMAT1,1,206000.,,.3\nSPC1,1,123456,1,THRU,%d\n"
               "FORCE,2,%d,,1.,0.,0.,-1000.\nENDDATA\n",
               plate.side + 1, static_cast<int>(plate.numbers.size()));
}

void WriteAbaqus(const Plate& plate, const fs::path& name) {
  const Output out(name);
  std::fputs("*NODE\n", out.file);
  WriteMesh(
      plate,
      [&](std::int64_t number, double x, double y) {
        std::fprintf(out.file, "%d, %.1f, %.1f, 0.\n", static_cast<int>(number), x, y);
      },
      [&] { std::fputs("*ELEMENT, TYPE=S4, ELSET=PLATE\n", out.file); },
      [&](std::int64_t number, const std::array<std::int64_t, 4>& n) {
        std::fprintf(out.file, "%d, %d, %d, %d, %d\n", static_cast<int>(number),
                     static_cast<int>(n[0]), static_cast<int>(n[1]), static_cast<int>(n[2]),
                     static_cast<int>(n[3]));
      });
  std::fprintf(
      out.file,
      "*NSET, NSET=EDGE, GENERATE\n1, %d, 1\n*MATERIAL, NAME=STEEL\n*ELASTIC\n206000., .3\n"
      "*SHELL SECTION, ELSET=PLATE, MATERIAL=STEEL\n10.,\n*BOUNDARY\nEDGE, 1, 6\n"
      "*STEP\n*STATIC\n*CLOAD\n%d, 3, -1000.\n*END STEP\n",
      plate.side + 1, static_cast<int>(plate.numbers.size()));
}

template <typename Number>
void WriteBinary(std::FILE* file, const Number& number) {
  std::fwrite(&number, sizeof(number), 1, file);
}

void WriteGmsh2(const Plate& plate, const fs::path& name, bool isBinary) {
  const Output out(name);
  const auto shells = static_cast<std::int64_t>(plate.side) * plate.side;
  std::fprintf(out.file, "$MeshFormat\n2.2 %d 8\n", isBinary ? 1 : 0);
  if (isBinary) {
    WriteBinary(out.file, 1);
    std::fputc('\n', out.file);
  }
  std::fprintf(out.file,
               "$EndMeshFormat\n$PhysicalNames\n1\n2 1 \"plate\"\n$EndPhysicalNames\n"
               "$Nodes\n%zu\n",
               plate.numbers.size());
  WriteMesh(
      plate,
      [&](std::int64_t number, double x, double y) {
        if (!isBinary) {
          std::fprintf(out.file, "%d %.16g %.16g 0\n", static_cast<int>(number), x, y);
          return;
        }
        WriteBinary(out.file, static_cast<std::int32_t>(number));
        for (const double coordinate : {x, y, 0.0}) WriteBinary(out.file, coordinate);
      },
      [&] {
        std::fprintf(out.file, "%s$EndNodes\n$Elements\n%d\n", isBinary ? "\n" : "",
                     static_cast<int>(shells));
        if (!isBinary) return;
        for (const int head : {3, static_cast<int>(shells), 2}) WriteBinary(out.file, head);
      },
      [&](std::int64_t number, const std::array<std::int64_t, 4>& n) {
        if (!isBinary) {
          std::fprintf(out.file, "%d 3 2 1 1 %d %d %d %d\n", static_cast<int>(number),
                       static_cast<int>(n[0]), static_cast<int>(n[1]), static_cast<int>(n[2]),
                       static_cast<int>(n[3]));
          return;
        }
        for (const std::int64_t value :
             {number, std::int64_t{1}, std::int64_t{1}, n[0], n[1], n[2], n[3]}) {
          WriteBinary(out.file, static_cast<std::int32_t>(value));
        }
      });
  std::fprintf(out.file, "%s$EndElements\n", isBinary ? "\n" : "");
}

void WriteGmsh4(const Plate& plate, const fs::path& name, bool isBinary) {
  const Output out(name);
  const std::uint64_t nodes = plate.numbers.size();
  const auto shells =
      static_cast<std::uint64_t>(plate.side) * static_cast<std::uint64_t>(plate.side);
  const double size = 12.5 * plate.side;
  std::fprintf(out.file, "$MeshFormat\n4.1 %d 8\n", isBinary ? 1 : 0);
  if (isBinary) {
    WriteBinary(out.file, 1);
    std::fputc('\n', out.file);
  }
  std::fputs("$EndMeshFormat\n$PhysicalNames\n1\n2 1 \"plate\"\n$EndPhysicalNames\n$Entities\n",
             out.file);
  if (isBinary) {
    for (const std::uint64_t count : {0, 0, 1, 0}) WriteBinary(out.file, count);
    WriteBinary(out.file, 1);
    for (const double x : {0.0, 0.0, 0.0, size, size, 0.0}) WriteBinary(out.file, x);
    WriteBinary(out.file, std::uint64_t{1});
    WriteBinary(out.file, 1);
    WriteBinary(out.file, std::uint64_t{0});
    std::fputs("\n$EndEntities\n$Nodes\n", out.file);
    for (const std::uint64_t count : {std::uint64_t{1}, nodes, std::uint64_t{1}, nodes})
      WriteBinary(out.file, count);
    for (const int head : {2, 1, 0}) WriteBinary(out.file, head);
    WriteBinary(out.file, nodes);
  } else {
    std::fprintf(
        out.file,
        "0 0 1 0\n1 0 0 0 %.16g %.16g 0 1 1 0\n$EndEntities\n$Nodes\n1 %zu 1 %zu\n2 1 0 %zu\n",
        size, size, static_cast<std::size_t>(nodes), static_cast<std::size_t>(nodes),
        static_cast<std::size_t>(nodes));
  }
  // All numbers first, then all coordinates.
  const auto coordinates = [&](bool numbersNow) {
    return [&out, isBinary, numbersNow](std::int64_t number, double x, double y) {
      if (numbersNow && isBinary) WriteBinary(out.file, static_cast<std::uint64_t>(number));
      if (numbersNow && !isBinary) std::fprintf(out.file, "%d\n", static_cast<int>(number));
      if (!numbersNow && isBinary) {
        for (const double value : {x, y, 0.0}) WriteBinary(out.file, value);
      }
      if (!numbersNow && !isBinary) std::fprintf(out.file, "%.16g %.16g 0\n", x, y);
    };
  };
  const auto noShell = [](std::int64_t, const std::array<std::int64_t, 4>&) {};
  WriteMesh(
      plate, coordinates(true), [] {}, noShell);
  WriteMesh(
      plate, coordinates(false),
      [&] {
        std::fprintf(out.file, "%s$EndNodes\n$Elements\n", isBinary ? "\n" : "");
        if (isBinary) {
          for (const std::uint64_t count :
               {std::uint64_t{1}, shells, std::uint64_t{1}, nodes + shells})
            WriteBinary(out.file, count);
          for (const int head : {2, 1, 3}) WriteBinary(out.file, head);
          WriteBinary(out.file, shells);
        } else {
          std::fprintf(out.file, "1 %zu 1 %zu\n2 1 3 %zu\n", static_cast<std::size_t>(shells),
                       static_cast<std::size_t>(nodes + shells), static_cast<std::size_t>(shells));
        }
      },
      [&](std::int64_t number, const std::array<std::int64_t, 4>& n) {
        if (!isBinary) {
          std::fprintf(out.file, "%d %d %d %d %d\n", static_cast<int>(number),
                       static_cast<int>(n[0]), static_cast<int>(n[1]), static_cast<int>(n[2]),
                       static_cast<int>(n[3]));
          return;
        }
        for (const std::int64_t value : {number, n[0], n[1], n[2], n[3]}) {
          WriteBinary(out.file, static_cast<std::uint64_t>(value));
        }
      });
  std::fprintf(out.file, "%s$EndElements\n", isBinary ? "\n" : "");
}

// Runs the import; says what it took. Returns whether it has left a model: the check says that a
// mesh of gmsh has no support, with status 1.
bool MeasureImport(const std::string& kvx, const fs::path& folder, const std::string& deck,
                   double shells) {
  std::vector<std::string> words{
      kvx, "import", (folder / deck).string(), "-o", (folder / "model").string(), "--force"};
  if (fs::path(deck).extension() == ".msh") {
    words.insert(words.end(), {"--map", (folder / "map.toml").string()});
  }
  std::vector<char*> arguments;
  for (std::string& word : words) arguments.push_back(word.data());
  arguments.push_back(nullptr);
  const auto start = std::chrono::steady_clock::now();
  const pid_t child = fork();
  if (child == 0) {
    const int out = open((folder / "out.txt").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    dup2(out, 1);
    execv(kvx.c_str(), arguments.data());
    _exit(127);
  }
  int status = 0;
  rusage usage{};
  wait4(child, &status, 0, &usage);
  const double wall =
      std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + 1e-6 * static_cast<double>(time.tv_usec);
  };
  const double cpu = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  const double bytes = 1024.0 * static_cast<double>(usage.ru_maxrss);  // Linux: kilobytes
  const double size = static_cast<double>(fs::file_size(folder / deck));
  const bool isFine = WIFEXITED(status) && WEXITSTATUS(status) <= 1;
  std::printf("%-18s %8.1f MB  %6.2f s processor  %6.2f s clock  %6.0f bytes a shell%s\n",
              deck.c_str(), size / 1e6, cpu, wall, bytes / shells,
              isFine ? "" : "  FAILED, see out.txt");
  std::fflush(stdout);
  return isFine;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fputs("usage: import_bench KVX FOLDER [SIDE]\n", stderr);
    return 64;
  }
  const std::string kvx = fs::absolute(argv[1]).string();
  const fs::path folder = fs::absolute(argv[2]);
  const Plate plate = MakePlate(argc > 3 ? std::atoi(argv[3]) : 1000);
  fs::create_directories(folder);
  std::ofstream(folder / "map.toml")
      << "[material.steel]\nE = 206000\npoisson = 0.3\n[group.plate]\nthickness = 10\n"
         "material = \"steel\"\npressure = 0.01\n";
  struct Deck {
    const char* name;
    void (*write)(const Plate& plate, const fs::path& name);
  };
  const std::array<Deck, 6> decks{{
      {"nastran.bdf", WriteNastran},
      {"abaqus.inp", WriteAbaqus},
      {"gmsh22.msh", [](const Plate& p, const fs::path& n) { WriteGmsh2(p, n, false); }},
      {"gmsh22binary.msh", [](const Plate& p, const fs::path& n) { WriteGmsh2(p, n, true); }},
      {"gmsh41.msh", [](const Plate& p, const fs::path& n) { WriteGmsh4(p, n, false); }},
      {"gmsh41binary.msh", [](const Plate& p, const fs::path& n) { WriteGmsh4(p, n, true); }},
  }};
  bool isFine = true;
  for (const Deck& deck : decks) {
    deck.write(plate, folder / deck.name);
    isFine &= MeasureImport(kvx, folder, deck.name, static_cast<double>(plate.side) * plate.side);
    fs::remove(folder / deck.name);
    fs::remove_all(folder / "model");
  }
  return isFine ? 0 : 1;
}
