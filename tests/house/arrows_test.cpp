// The plan of src and companion: which folder may include which. Arrows run downward only.
//
// Every include of every source is looked at. The table below is the plan; a folder that includes
// what stands beside or above it fails the test, and so does a permission that nothing uses.
//
// Includes are written relative to src or to companion. The folders of companion stand above those
// of src, so nothing in src can include them.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace korvex::test {
namespace {

namespace fs = std::filesystem;

struct Room {
  std::string name;                // folder under src or companion; "" is src/main.cpp
  std::vector<std::string> below;  // folders that it may include, besides its own
};

// From the ground upward: a room may include rooms that stand before it in this list, if it names
// them.
const std::vector<Room>& Rooms() {
  static const std::vector<Room> rooms{
      {"base", {}},
      {"platform", {}},
      {"workers", {}},
      {"report", {"base", "platform"}},
      {"beam", {"base"}},
      {"shell", {"base"}},
      {"shell/lanes", {"shell"}},
      {"deck", {"base", "report", "beam", "shell"}},
      {"skyline/panel", {"platform"}},
      {"skyline", {"base", "platform", "workers", "report", "skyline/panel"}},
      {"model", {"base", "report", "beam", "shell", "deck", "skyline"}},
      {"system",
       {"base", "platform", "workers", "report", "beam", "shell", "shell/lanes", "deck", "skyline",
        "model"}},
      {"results", {"base", "workers", "report", "shell", "model"}},
      {"beamshell",
       {"base", "platform", "workers", "report", "beam", "shell", "shell/lanes", "skyline",
        "skyline/panel", "model", "system", "results"}},
      {"run", {"platform", "report", "deck", "skyline", "model", "system", "results", "beamshell"}},
      {"", {"run"}},
      {"finding", {"base", "platform"}},
      {"toml", {"finding", "report"}},
      {"tables", {"base", "deck"}},
      {"check", {"finding", "tables", "base", "report", "beam", "shell", "deck", "skyline"}},
      {"renumber", {"base", "deck"}},
      {"mechanism",
       {"finding", "check", "renumber", "base", "platform", "report", "beam", "shell", "deck",
        "skyline", "model", "system"}},
      {"ranks", {"report"}},
      {"sparse",
       {"finding", "renumber", "tables", "ranks", "base", "platform", "deck", "report", "skyline",
        "model", "system"}},
      {"size", {"finding", "check", "renumber", "base", "report", "deck", "skyline", "beamshell"}},
      {"audit",
       {"base", "platform", "report", "beam", "shell", "deck", "skyline", "model", "system",
        "results", "beamshell", "run", "tables"}},
      {"engine",
       {"finding", "check", "base", "platform", "report", "skyline", "model", "system", "run",
        "mechanism", "renumber", "ranks", "sparse", "size", "audit"}},
      {"cases", {"finding", "toml", "base", "report", "beam", "deck", "model", "results", "audit"}},
      {"mesh", {"finding", "toml", "tables", "base", "report", "beam", "shell", "deck"}},
      {"mesh/gmsh", {"mesh", "base", "deck"}},
      {"mesh/nastran", {"mesh", "base", "shell"}},
      {"mesh/abaqus", {"mesh", "base"}},
      {"view",
       {"base", "report", "beam", "shell", "deck", "model", "results", "beamshell", "tables",
        "audit"}},
      {"vtu", {"base", "report", "shell", "skyline", "model", "results", "audit", "tables"}},
      {"commands",
       {"finding", "check",  "mechanism", "renumber", "size",      "audit",        "engine",
        "ranks",   "sparse", "cases",     "mesh",     "mesh/gmsh", "mesh/nastran", "mesh/abaqus",
        "view",    "vtu",    "tables",    "base",     "platform",  "report",       "beam",
        "deck",    "model",  "system",    "results",  "beamshell", "run"}},
      {"companion", {"commands", "engine", "ranks", "sparse"}},
  };
  return rooms;
}

// The folder of a source: "skyline/panel" of "skyline/panel/panel.h", "companion" of
// "companion/main.cpp".
std::string RoomOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? "" : path.substr(0, slash);
}

// The included names: between quotes, or with `brackets` between angle brackets.
std::vector<std::string> FindIncludes(const std::string& text, bool brackets) {
  const std::string begin = brackets ? "#include <" : "#include \"";
  std::vector<std::string> names;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.rfind(begin, 0) != 0) continue;
    const std::size_t end = line.find(brackets ? '>' : '"', begin.size());
    names.push_back(line.substr(begin.size(), end - begin.size()));
  }
  return names;
}

// The sources by the names with which they are included, and main.cpp of companion as
// "companion/main.cpp".
std::map<std::string, std::string> ReadSources() {
  std::map<std::string, std::string> sources;
  for (const char* part : {"src", "companion"}) {
    const fs::path root = fs::path(KORVEX_SOURCE) / part;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
      const std::string extension = entry.path().extension().string();
      if (extension != ".h" && extension != ".cpp") continue;
      const fs::path path = fs::relative(entry.path(), root);
      const bool isSecondMain = root.filename() == "companion" && !path.has_parent_path();
      sources[(isSecondMain ? part / path : path).generic_string()] = ReadFile(entry.path());
    }
  }
  return sources;
}

// A folder name in both parts would hide the sources of one.
TEST(Arrows, NoFolderIsInBothParts) {
  for (const auto& entry : fs::directory_iterator(fs::path(KORVEX_SOURCE) / "companion")) {
    if (!entry.is_directory()) continue;
    EXPECT_FALSE(fs::exists(fs::path(KORVEX_SOURCE) / "src" / entry.path().filename()))
        << entry.path();
  }
}

TEST(Arrows, ThePlanHasNoneGoingUp) {
  std::set<std::string> before;
  for (const Room& room : Rooms()) {
    for (const std::string& name : room.below) {
      EXPECT_EQ(before.count(name), 1U) << room.name << " -> " << name;
    }
    before.insert(room.name);
  }
}

TEST(Arrows, EveryIncludeIsInThePlan) {
  std::map<std::string, std::set<std::string>> used;
  for (const auto& [path, text] : ReadSources()) {
    const std::string room = RoomOf(path);
    const auto plan = std::find_if(Rooms().begin(), Rooms().end(),
                                   [&](const Room& other) { return other.name == room; });
    ASSERT_NE(plan, Rooms().end()) << path << " stands in a folder that is not in the plan";
    for (const std::string& name : FindIncludes(text, false)) {
      const std::string to = RoomOf(name);
      used[room].insert(to);
      const bool isAllowed =
          to == room || std::find(plan->below.begin(), plan->below.end(), to) != plan->below.end();
      EXPECT_TRUE(isAllowed) << path << " includes " << name;
    }
  }
  for (const Room& room : Rooms()) {
    for (const std::string& name : room.below) {
      EXPECT_EQ(used[room.name].count(name), 1U)
          << "nothing in \"" << room.name << "\" includes " << name;
    }
  }
}

// What a user reads, hears or answers goes through the run, and where systems differ through the
// notice; in the companion through the commands. Everything else is silent: it has not even the
// headers to speak.
TEST(Arrows, OnlyTheRunAndTheCommandsSpeak) {
  for (const auto& [path, text] : ReadSources()) {
    const bool maySpeak = path == "main.cpp" || path == "companion/main.cpp" ||
                          RoomOf(path) == "run" || RoomOf(path) == "commands" ||
                          path == "companion/main_mpi.cpp" || path.rfind("platform/notice", 0) == 0;
    if (maySpeak) continue;
    for (const std::string& name : FindIncludes(text, true)) {
      EXPECT_TRUE(name != "iostream" && name != "cstdio" && name != "stdio.h" && name != "print")
          << path << " includes <" << name << '>';
    }
    for (const char* word : {"std::cout", "std::cerr", "printf(", "puts(", "getchar("}) {
      EXPECT_EQ(text.find(word), std::string::npos) << path << ": " << word;
    }
    if (path.rfind("platform/", 0) == 0) continue;
    for (const char* word : {"std::exit(", "std::abort(", "std::terminate(", "std::system("}) {
      EXPECT_EQ(text.find(word), std::string::npos) << path << ": " << word;
    }
  }
}

// CLI11 and toml11 take long to compile: one unit alone has each. src has the standard library
// alone.
TEST(Arrows, LibrariesStandInOneUnitEach) {
  std::map<std::string, std::set<std::string>> users;
  for (const auto& [path, text] : ReadSources()) {
    for (const std::string& name : FindIncludes(text, true)) {
      for (const char* library :
           {"CLI/", "nlohmann/", "toml/", "zlib.h", "metis.h", "dmumps_c.h", "mpi.h"}) {
        if (name.rfind(library, 0) == 0) users[library].insert(path);
      }
    }
  }
  EXPECT_EQ(users["CLI/"], std::set<std::string>{"commands/command_line.cpp"});
  EXPECT_EQ(users["toml/"], std::set<std::string>{"toml/toml_tree.cpp"});
  EXPECT_EQ(users["zlib.h"], (std::set<std::string>{"view/page_block.cpp", "vtu/vtu_file.cpp"}));
  EXPECT_EQ(users["metis.h"], std::set<std::string>{"sparse/node_order_metis.cpp"});
  EXPECT_EQ(users["dmumps_c.h"], (std::set<std::string>{"sparse/mumps_library_linked.cpp",
                                                        "sparse/sparse_factor_mumps.cpp"}));
  EXPECT_EQ(users["mpi.h"], std::set<std::string>{"ranks/ranks_mpi.cpp"});
  EXPECT_FALSE(users["nlohmann/"].empty());
  for (const std::string& path : users["nlohmann/"]) EXPECT_EQ(RoomOf(path), "commands") << path;
}

// The walk sees something: an empty list would pass all the tests above.
TEST(Arrows, SourcesAreFound) {
  const auto sources = ReadSources();
  EXPECT_GT(sources.size(), 100U);
  EXPECT_EQ(sources.count("run/run_driver.cpp"), 1U);
  EXPECT_EQ(sources.count("main.cpp"), 1U);
  EXPECT_EQ(sources.count("companion/main.cpp"), 1U);
  EXPECT_EQ(sources.count("commands/check_model.cpp"), 1U);
  EXPECT_EQ(FindIncludes("#include \"a/b.h\"\n#include <c>\n", false),
            std::vector<std::string>{"a/b.h"});
  EXPECT_EQ(RoomOf("skyline/panel/panel.h"), "skyline/panel");
}

}  // namespace
}  // namespace korvex::test
