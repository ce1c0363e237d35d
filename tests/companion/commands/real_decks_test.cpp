// Decks that other projects publish, where they lie beside this one (../shared/decks); they are not
// part of it. Each is imported, or refused for the reason that a reader of its format would give.
//
// The cards of each deck are counted here, too, in the simplest way, and compared with the report:
// a card that is missing there would be lost without a word.
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ReadFile;
using korvex::test::TempFolder;
using Counts = std::map<std::string, std::size_t>;

// What a reader of the format expects.
struct RealDeck {
  const char* file;
  int status;  // 0 a model that kvx check passes, 1 one with errors, 65 none
  // Parts of reasons, each of one entry at least; with their fates before them.
  std::vector<std::string> reasons;
};

void PrintTo(const RealDeck& deck, std::ostream* out) { *out << deck.file; }

fs::path DecksFolder() { return fs::path(KORVEX_SOURCE).parent_path() / "shared" / "decks"; }

std::string UpperCase(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// Bulk data: a line that begins with a letter is a card. Its name ends at a star, a comma, a blank
// or behind eight letters. Behind ENDDATA nothing counts; before BEGIN BULK, where there is one,
// stand commands.
void CountBulk(const fs::path& file, bool isBulk, Counts& counts) {
  std::istringstream lines(ReadFile(file));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || std::isalpha(static_cast<unsigned char>(line[0])) == 0) continue;
    const std::string name =
        UpperCase(line.substr(0, std::min<std::size_t>(8, line.find_first_of("*, \t=\r"))));
    if (name == "BEGIN") {
      isBulk = true;
      continue;
    }
    if (!isBulk) continue;
    ++counts[name];
    if (name == "ENDDATA") return;
    if (name != "INCLUDE") continue;
    const std::size_t begin = line.find('\'') + 1;
    CountBulk(file.parent_path() / line.substr(begin, line.find('\'', begin) - begin), true,
              counts);
  }
}

// A keyword begins with one star; two are a comment.
void CountKeywords(const fs::path& file, Counts& counts) {
  std::istringstream lines(ReadFile(file));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] != '*' || line.rfind("**", 0) == 0) continue;
    std::string name = line.substr(0, line.find(','));
    name.erase(name.find_last_not_of(" \r\t") + 1);
    ++counts[UpperCase(name)];
  }
}

struct RealDecks : testing::TestWithParam<RealDeck> {
  TempFolder base;
  nlohmann::json report;
  int status = -1;

  // Imports the deck; false where there is none.
  bool Import() {
    const fs::path deck = DecksFolder() / GetParam().file;
    if (!fs::exists(deck)) return false;
    const korvex::test::ProgramRun run = korvex::test::RunProgram(
        KVX_PROGRAM, base.Path(), "", {"import", deck.u8string(), "-o", "model", "--json"});
    status = run.exitStatus;
    if (run.out.empty()) {
      report = {{"error", run.err}};
    } else {
      report = nlohmann::json::parse(run.out);
    }
    return true;
  }
};

TEST_P(RealDecks, AreTakenOrRefusedForTheReasonOfTheirFormat) {
  if (!Import()) GTEST_SKIP() << "there is no " << GetParam().file << " beside the project";
  EXPECT_EQ(status, GetParam().status) << report.dump(2);
  std::string said = report.value("error", std::string());
  for (const nlohmann::json& entry : report.value("entries", nlohmann::json::array())) {
    said += entry.at("fate").get<std::string>() + ": " + entry.at("card").get<std::string>() +
            ": " + entry.at("reason").get<std::string>() + '\n';
  }
  for (const std::string& reason : GetParam().reasons) {
    EXPECT_NE(said.find(reason), std::string::npos) << reason << " is not in\n" << said;
  }
}

TEST_P(RealDecks, HaveEachCardInTheReport) {
  if (!Import()) GTEST_SKIP() << "there is no " << GetParam().file << " beside the project";
  if (report.contains("error")) GTEST_SKIP() << "not read to its end";
  const fs::path deck = DecksFolder() / GetParam().file;
  Counts expected;
  if (deck.extension() == ".inp") {
    CountKeywords(deck, expected);
  } else {
    CountBulk(deck, ReadFile(deck).find("BEGIN BULK") == std::string::npos, expected);
  }
  Counts counted;
  for (const auto& [card, count] : report.at("cards").items()) {
    // Commands above the bulk data have names of two words and are not compared.
    if (card.find(' ') == std::string::npos || deck.extension() == ".inp") {
      counted[card] = count.at("count").get<std::size_t>();
    }
  }
  EXPECT_EQ(counted, expected);
}

// What a reader of the format says of each deck:
//   pbarl_*, pbeaml_l, CQUAD04_: nothing holds the structure, so the check finds an error.
//   bar_static_large, PBEAM-test: PBAR and PBEAM give areas and moments of inertia, no plates.
//   cbarao_cbeam_static: its bars are solid and round.
//   static_solid_shell_bar: the file that it includes is not there.
//   mesh: its last element has a node 2 that the deck does not have, and nothing gives a section.
//   plate_with_hole: its second step holds other nodes than the first.
INSTANTIATE_TEST_SUITE_P(
    Nastran, RealDecks,
    testing::Values(
        RealDeck{"nastran/cquad4.bdf", 0, {"limited: PSHELL: MID2 is blank"}},
        RealDeck{"nastran/ctria3.bdf", 0, {"no effect: LOAD: no subcase asks for its set"}},
        RealDeck{"nastran/pbarl_t.bdf", 1, {"limited: CBAR: its offset along its axis"}},
        RealDeck{"nastran/pbarl_tube.bdf", 1, {}},
        RealDeck{"nastran/pbeaml_l.bdf", 1, {"limited: CBEAM: its offset along its axis"}},
        RealDeck{"nastran/cbar_orientation.bdf",
                 0,
                 {"limited: PBARL: BAR", "lost: acceleration: no material has a density"}},
        RealDeck{"nastran/loads.bdf",
                 0,
                 {"limited: PSHELL: MID3 is blank", "limited: PLOAD: no shell has its corners"}},
        RealDeck{"nastran/static_solid_shell_bar.bdf",
                 65,
                 {"line 27: the included file 'geom.inc' cannot be read"}},
        RealDeck{"nastran/cbarao_cbeam_static.bdf",
                 65,
                 {"lost: CONM2", "refused: PBARL 1: PBARL ROD", "refused: PBEAML 3: PBEAML ROD",
                  "no effect: EIGRL", "no effect: CBARAO"}},
        RealDeck{"nastran/CQUAD04_.nas", 1, {"lost: RBE2: rigid elements"}},
        RealDeck{"nastran/PBEAM-test.nas", 65, {"refused: PBEAM 10", "refused: PBEAM 1:"}},
        RealDeck{"nastran/bar_tube2.bdf", 0, {"no effect: DEBUG"}},
        RealDeck{"nastran/cquad4_pshell_center.bdf", 0, {"limited: PSHELL: its non-structural"}},
        RealDeck{"nastran/bar_static_large.bdf", 65, {"refused: PBAR 1"}}));

INSTANTIATE_TEST_SUITE_P(
    Abaqus, RealDecks,
    testing::Values(RealDeck{"abaqus/mesh.inp",
                             65,
                             {"limited: *ELEMENT: B33", "an element has a node that does not exist",
                              "there is no section"}},
                    RealDeck{"abaqus/plate_with_hole.inp",
                             65,
                             {"refused: step 2: its supports differ", "lost: *MASS",
                              "limited: *PLASTIC", "limited: *STEP: NLGEOM"}}));

}  // namespace
}  // namespace kvx::test
