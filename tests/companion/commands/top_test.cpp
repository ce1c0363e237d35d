// kvx top as its user meets it: what it lists is looked up in the result files of a run, which the
// solver's own stages write.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <set>
#include <sstream>

#include "check/describe.h"
#include "commands/quantity_names.h"
#include "report/stop.h"
#include "run/file_names.h"
#include "run/stages.h"
#include "support/good_models.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using Arguments = std::vector<std::string>;
using Json = nlohmann::json;
using korvex::test::ModelText;
using korvex::test::ProgramRun;
using korvex::test::ReadFile;
using korvex::test::TempFolder;

bool Holds(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

std::string ReadExample(const std::string& name) {
  return ReadFile(KORVEX_EXAMPLES "/" + name + "/fem_solving.txt");
}

bool HasShells(const ModelText& model) { return !model.shells4.empty() || !model.shells3.empty(); }

// A folder with a model, and with the files of a run if there is one.
struct Deck {
  TempFolder folder;

  explicit Deck(const std::string& text, bool isSolved = true) {
    korvex::test::WriteFile(folder.Path() / "fem_solving.txt", text);
    if (!isSolved) return;
    korvex::Job job;
    job.folder = folder.Path().string() + '/';
    korvex::ForAllStages([&](const korvex::Stage& stage) { stage.work(job); });
  }

  ProgramRun Top(Arguments arguments) const {
    arguments.insert(arguments.begin(), "top");
    ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", arguments);
    run.out.erase(std::remove(run.out.begin(), run.out.end(), '\r'), run.out.end());
    return run;
  }

  // The lists of --json.
  Json Lists(Arguments arguments) const {
    arguments.emplace_back("--json");
    const ProgramRun run = Top(arguments);
    EXPECT_EQ(run.exitStatus, 0) << run.err;
    EXPECT_EQ(run.err, "");
    return Json::parse(run.out)["lists"];
  }
};

// The models that most tests go through: shells and beams of all kinds.
std::vector<std::string> ManyModels() {
  std::vector<std::string> models{ReadExample("stiffened-panel"), ReadExample("water-trough")};
  for (std::uint32_t seed = 1; seed <= 5; ++seed) {
    models.push_back(WriteModel(MakeGoodModel(seed)));
  }
  return models;
}

// An element as the answers name it: "shell", 7.
using Element = std::pair<std::string, int>;

// A von Mises stress as a result file shows it: the number, and the characters.
struct Shown {
  double value = 0.0;
  std::string text;
};
inline bool operator<(const Shown& a, const Shown& b) { return a.value < b.value; }

Shown ToShown(const std::string& text) { return {std::stod(text), text}; }

// The largest of each shell in one of the two stress files. face: 0 upper, 1 lower, 2 both.
std::map<Element, Shown> ReadStressFile(const fs::path& path, int face) {
  std::map<Element, Shown> largest;
  Element element;
  int lines = 0;
  std::istringstream stream(ReadFile(path));
  for (std::string line; std::getline(stream, line);) {
    const bool isTitle = Holds(line, "element:");
    if (isTitle) {
      element = {Holds(line, "Four") ? "shell" : "triangle",
                 std::stoi(line.substr(line.find(':') + 1))};
      lines = 0;
    }
    if (isTitle || Holds(line, "Node")) continue;
    const bool isAsked = face == 2 || lines % 2 == face;
    ++lines;
    if (!isAsked) continue;
    const std::string last = line.substr(line.rfind(' ') + 1);
    const auto place = largest.emplace(element, ToShown(last)).first;
    place->second = std::max(place->second, ToShown(last));
  }
  return largest;
}

std::vector<double> ReadNumbers(std::istream& stream) {
  std::string line, word;
  std::getline(stream, line);
  std::istringstream words(line);
  std::vector<double> numbers;
  while (std::getline(words, word, ',')) numbers.push_back(std::stod(word));
  return numbers;
}

int ReadCount(std::istream& stream) {
  std::string line;
  std::getline(stream, line);
  return std::stoi(line.substr(line.find('=') + 1));
}

// "SND(0,0,0)"
korvex::Vector3 ReadPoint(std::istream& stream) {
  std::string line;
  std::getline(stream, line);
  std::istringstream numbers(line.substr(4, line.size() - 5));
  const std::vector<double> p = ReadNumbers(numbers);
  return {p.at(0), p.at(1), p.at(2)};
}

// The places of a detail model's nodes, as parts of the beam's length.
std::vector<double> ReadStations(std::istream& stream) {
  const korvex::Vector3 begin = ReadPoint(stream);
  const korvex::Vector3 axis = korvex::Subtract(ReadPoint(stream), begin);
  const double square = axis[0] * axis[0] + axis[1] * axis[1] + axis[2] * axis[2];
  std::vector<double> stations;
  const int nodes = ReadCount(stream);
  for (int n = 0; n < nodes; ++n) {
    const std::vector<double> p = ReadNumbers(stream);
    double along = 0.0;
    for (std::size_t i = 0; i < 3; ++i) along += (p.at(i) - begin[i]) * axis[i] / square;
    stations.push_back(along);
  }
  for (int n = 0; n < nodes; ++n) ReadNumbers(stream);  // displacements
  return stations;
}

// The largest stress of each beam in the file of the detail models, everywhere or at mid-length;
// beams without a station there are left out.
std::map<Element, Shown> ReadDetailFile(const fs::path& path, bool everywhere) {
  std::istringstream stream(ReadFile(path));
  std::string line;
  while (std::getline(stream, line) && line.rfind("NELEM_B=", 0) != 0) continue;
  const int beams = std::stoi(line.substr(line.find('=') + 1));
  std::map<Element, Shown> largest;
  for (int beam = 0; beam < beams; ++beam) {
    EXPECT_EQ(ReadCount(stream), beam);
    const std::vector<double> stations = ReadStations(stream);
    const int shells = ReadCount(stream);
    for (int shell = 0; shell < shells; ++shell) {
      for (const double node : ReadNumbers(stream)) {
        // The file has six digits, and a step is longer than a hundredth of a beam.
        constexpr double SamePlace = 1e-3;
        const double along = stations.at(static_cast<std::size_t>(node));
        for (int face = 0; face < 2; ++face) {
          std::getline(stream, line);
          if (!everywhere && std::fabs(along - 0.5) > SamePlace) continue;
          const Shown stress = ToShown(line.substr(line.rfind(',') + 1));
          const auto place = largest.emplace(Element{"beam", beam}, stress).first;
          place->second = std::max(place->second, stress);
        }
      }
    }
  }
  return largest;
}

Element ElementOf(const Json& peak) { return {peak["kind"], peak["element"]}; }

// The list has all elements of the file, the largest first, each with the number of the file.
void ExpectList(const Json& list, const std::map<Element, Shown>& file) {
  ASSERT_EQ(list["peaks"].size(), file.size());
  EXPECT_EQ(list["compared"], file.size());
  EXPECT_EQ(list["not_finite"], 0);
  Shown before;
  int rank = 0;
  for (const Json& peak : list["peaks"]) {
    EXPECT_EQ(peak["rank"], ++rank);
    const Shown& shown = file.at(ElementOf(peak));
    EXPECT_EQ(NumberText(peak["value"].get<double>()), shown.text);
    if (rank > 1) {
      EXPECT_LE(shown.value, before.value) << rank;
    }
    before = shown;
  }
}

const Arguments Unlimited{"-n", "1000000000"};

// The list; one without peaks where the model does not have the quantity.
Json OnlyList(const Deck& deck, Arguments arguments) {
  arguments.insert(arguments.end(), Unlimited.begin(), Unlimited.end());
  const Json lists = deck.Lists(arguments);
  if (lists.empty()) return {{"peaks", Json::array()}, {"compared", 0}, {"not_finite", 0}};
  EXPECT_EQ(lists.size(), 1U);
  return lists.at(0);
}

TEST(KvxTop, ListsWhatTheStressFilesShow) {
  for (const std::string& model : ManyModels()) {
    const Deck deck(model);
    const fs::path averaged = deck.folder.Path() / korvex::AverageNodeStressFileName;
    const fs::path single = deck.folder.Path() / korvex::StressFileName;
    ExpectList(OnlyList(deck, {"--of", "shells"}), ReadStressFile(averaged, 2));
    ExpectList(OnlyList(deck, {"--of", "shells", "--unaveraged"}), ReadStressFile(single, 2));
    ExpectList(OnlyList(deck, {"--of", "upper"}), ReadStressFile(averaged, 0));
    ExpectList(OnlyList(deck, {"--of", "lower"}), ReadStressFile(averaged, 1));
  }
}

TEST(KvxTop, ListsWhatTheFileOfDetailModelsShows) {
  std::size_t compared = 0;
  for (const std::string& model : ManyModels()) {
    const Deck deck(model);
    const fs::path file = deck.folder.Path() / korvex::AverageStressFileName;
    ExpectList(OnlyList(deck, {"--of", "beams", "--everywhere"}), ReadDetailFile(file, true));
    // Elsewhere mid-length lies between two stations, and its value is in no file.
    const std::map<Element, Shown> middle = ReadDetailFile(file, false);
    const Json list = OnlyList(deck, {"--of", "beams"});
    for (const Json& peak : list["peaks"]) {
      const auto shown = middle.find(ElementOf(peak));
      if (shown == middle.end()) continue;
      EXPECT_EQ(NumberText(peak["value"].get<double>()), shown->second.text);
      ++compared;
    }
  }
  EXPECT_GT(compared, 30U);
}

TEST(KvxTop, ListsWhatTheFileOfDisplacementsShows) {
  for (const std::string& model : ManyModels()) {
    const Deck deck(model);
    std::map<int, std::array<std::string, 6>> rows;
    std::istringstream stream(ReadFile(deck.folder.Path() / korvex::DisplacementFileName));
    std::string line, number;
    std::getline(stream, line);  // titles
    while (stream >> number) {
      for (std::string& word : rows[std::stoi(number)]) stream >> word;
    }
    const std::array<const char*, 6> names{"ux", "uy", "uz", "rx", "ry", "rz"};
    for (std::size_t d = 0; d < 6; ++d) {
      const Json list = OnlyList(deck, {"--of", names[d]});
      ASSERT_EQ(list["peaks"].size(), rows.size());
      double before = 0.0;
      for (const Json& peak : list["peaks"]) {
        const double value = peak["value"];
        EXPECT_EQ(NumberText(value), rows.at(peak["node"])[d]);
        if (peak["rank"] > 1) {
          EXPECT_LE(std::fabs(value), before);
        }
        before = std::fabs(value);
      }
    }
    const Json sizes = OnlyList(deck, {"--of", "displacement"});
    for (const Json& peak : sizes["peaks"]) {
      const auto& row = rows.at(peak["node"]);
      const double size = std::hypot(std::stod(row[0]), std::stod(row[1]), std::stod(row[2]));
      EXPECT_NEAR(peak["value"], size, 1e-5 * size);  // six digits
    }
  }
}

// The default: shells, beams by detail model and by section forces, 20 of each, with the places of
// their corners.
TEST(KvxTop, ListsShellsAndBeams) {
  const Deck deck(ReadExample("stiffened-panel"));
  const Json lists = deck.Lists({});
  ASSERT_EQ(lists.size(), 3U);
  EXPECT_EQ(lists[0]["quantity"], "shells");
  EXPECT_EQ(lists[1]["quantity"], "beams");
  EXPECT_EQ(lists[2]["quantity"], "section");
  for (const Json& list : lists) EXPECT_EQ(list["peaks"].size(), 20U);
  // The panel's largest stress is in the middle of a long edge of the plate, at the girders.
  const Json& shell = lists[0]["peaks"][0];
  std::istringstream stream(ReadExample("stiffened-panel"));
  std::string line;
  while (std::getline(stream, line) && line.rfind("Number of nodal points", 0) != 0) continue;
  for (int node = 0; node <= shell["node"]; ++node) std::getline(stream, line);
  std::istringstream coordinates(line.substr(line.find(':') + 1));
  EXPECT_EQ(ReadNumbers(coordinates), (std::vector<double>{shell["x"], shell["y"], shell["z"]}));
  EXPECT_EQ(lists[1]["peaks"][0]["section"], "T 0");
  EXPECT_EQ(lists[1]["peaks"][0]["plate"], "flange");
}

// A beam on two supports under a line load downwards, q = 1000, L = 4; its web points up.
ModelText SimpleBeam() {
  ModelText model;
  model.materials = {{2e11, 0.3, 0.0}};
  model.tSections = {{0.3, 0.01, 0.1, 0.02}};
  model.nodes = {{0, 0, 0}, {4, 0, 0}};
  model.beams = {{}};
  model.restraints = {{0, {1, 1, 1, 1, 0, 0}}, {1, {0, 1, 1, 0, 0, 0}}};
  model.beamLoads = {{0, -1000.0, -1000.0}};
  return model;
}

// By hand: A = 0.3 0.01 + 0.1 0.02 = 0.005; centroid (0.003 0.15 + 0.002 0.31) / A = 0.214 above
// the web's edge; Iy = 0.01 0.3^3 / 12 + 0.003 0.064^2 + 0.1 0.02^3 / 12 + 0.002 0.096^2;
// M = q L^2 / 8 in the middle, where there is no shear: sigma = M 0.214 / Iy at the web's edge.
TEST(KvxTop, ListsBeamsBySectionForces) {
  const double Iy =
      0.01 * 0.027 / 12 + 0.003 * 0.064 * 0.064 + 0.1 * 8e-6 / 12 + 0.002 * 0.096 * 0.096;
  const double sigma = 1000.0 * 16.0 / 8.0 * 0.214 / Iy;
  const Deck deck(WriteModel(SimpleBeam()), false);
  const Json list = OnlyList(deck, {"--of", "section", "--yield", "8e6"});
  ASSERT_EQ(list["peaks"].size(), 1U);
  EXPECT_EQ(list["compared"], 1);
  EXPECT_EQ(list["beyond_yield"], 1);
  const Json& peak = list["peaks"][0];
  EXPECT_NEAR(peak["value"], sigma, 1e-9 * sigma);  // rounding of the solution
  EXPECT_NEAR(peak["utilisation"], sigma / 8e6, 1e-9);
  EXPECT_NEAR(peak["station"], 0.5, 1e-9);
  EXPECT_NEAR(peak["x"], 2.0, 1e-8);
  EXPECT_EQ(peak["y"], 0.0);
  EXPECT_EQ(peak["z"], 0.0);
  EXPECT_EQ(peak["element"], 0);
  EXPECT_EQ(peak["section"], "T 0");
  EXPECT_EQ(peak["point"], "web edge");
  for (const char* other : {"corner", "node", "face", "thickness", "plate", "detail_shell"}) {
    EXPECT_EQ(peak[other], nullptr) << other;
  }
  const ProgramRun text = deck.Top({"--yield", "8e6"});
  EXPECT_TRUE(Holds(text.out, "\nBeams: von Mises stress from section forces. All 1.\n"));
  EXPECT_TRUE(Holds(text.out, "\n1 of 1 beam exceeds 8e+06 by section forces.\n")) << text.out;
}

// The same numbers as kvx forces has at its stations, at its ends and between: none is larger.
TEST(KvxTop, SectionForcesAreThoseOfKvxForces) {
  for (std::uint32_t seed = 1; seed <= 8; ++seed) {
    const ModelText model = MakeGoodModel(seed);
    if (model.beams.empty()) continue;
    const Deck deck(WriteModel(model), false);
    const ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, deck.folder.Path(), "",
                                                    {"forces", "--beam", "all", "--json"});
    ASSERT_EQ(run.exitStatus, 0) << run.err;
    std::map<int, double> largest;
    const Json forces = Json::parse(run.out);
    for (const Json& beam : forces["beams"]) {
      double& stress = largest[beam.at("beam")];
      for (const Json& station : beam["stations"]) {
        stress = std::max(stress, station["von_mises"].get<double>());
      }
    }
    const Json list = OnlyList(deck, {"--of", "section"});
    ASSERT_EQ(list["peaks"].size(), model.beams.size());
    double before = std::numeric_limits<double>::infinity();
    for (const Json& peak : list["peaks"]) {
      // Places of zero slope of sigma lie between stations where two moments come together.
      EXPECT_GE(peak["value"].get<double>(), largest.at(peak["element"]) * (1.0 - 1e-12));
      EXPECT_LE(peak["value"].get<double>(), before);
      before = peak["value"];
    }
  }
}

// Each count says what it counts: the detail models do not see what the section forces show.
TEST(KvxTop, CountsDetailModelsAndSectionForcesApart) {
  const Deck deck(ReadExample("stiffened-panel"), false);
  const ProgramRun run = deck.Top({"--yield", "150", "-n", "1"});
  EXPECT_TRUE(Holds(run.out, "\nNone of 228 detail models at mid-length exceeds 150.\n"));
  const Json lists = deck.Lists({"--of", "section", "--yield", "150", "-n", "228"});
  const auto& peaks = lists[0]["peaks"];
  const auto count = std::count_if(peaks.begin(), peaks.end(),
                                   [](const Json& peak) { return peak["value"] > 150.0; });
  ASSERT_GT(count, 1);
  EXPECT_TRUE(Holds(run.out,
                    '\n' + std::to_string(count) + " of 228 beams exceed 150 by section forces.\n"))
      << run.out;
  const ProgramRun along = deck.Top({"--of", "beams", "--everywhere", "--yield", "1000"});
  EXPECT_TRUE(Holds(along.out, "\nNone of 228 detail models exceeds 1000.\n")) << along.out;
}

// The elements above a limit between two stresses of the file, counted there.
TEST(KvxTop, CountsWhatExceedsTheYieldStress) {
  const Deck deck(ReadExample("stiffened-panel"));
  const auto file = ReadStressFile(deck.folder.Path() / korvex::AverageNodeStressFileName, 2);
  for (const double yield : {50.0, 100.0, 120.0}) {
    const auto count = std::count_if(file.begin(), file.end(),
                                     [&](const auto& row) { return row.second.value > yield; });
    ASSERT_GT(count, 1);
    const std::string limit = NumberText(yield);
    const Json lists = deck.Lists({"--of", "shells", "--yield", limit, "-n", "1"});
    EXPECT_EQ(lists[0]["beyond_yield"], count);
    const Json& peak = lists[0]["peaks"][0];
    EXPECT_EQ(peak["utilisation"], peak["value"].get<double>() / yield);
    const ProgramRun run = deck.Top({"--of", "shells", "--yield", limit, "-n", "0"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_TRUE(
        Holds(run.out, "\n" + std::to_string(count) + " of 1008 shells exceed " + limit + ".\n"))
        << run.out;
  }
  const ProgramRun none = deck.Top({"--of", "shells", "--yield", "235"});
  EXPECT_TRUE(Holds(none.out, "\nNone of 1008 shells exceeds 235.\n")) << none.out;
  EXPECT_EQ(deck.Lists({"--of", "shells"})[0]["beyond_yield"], nullptr);
}

// A structure without loads has the same value everywhere: the numbers of the elements decide.
TEST(KvxTop, EqualValuesStandByNumber) {
  ModelText model = MakeGoodModel(3);
  ASSERT_FALSE(model.shells4.empty());
  for (auto& force : model.forces) force.components = {};
  for (auto& load : model.shell4Loads) load.q = {};
  for (auto& load : model.shell3Loads) load.q = {};
  for (auto& load : model.beamLoads) load.q1 = load.q2 = 0.0;
  const Deck deck(WriteModel(model), false);
  const Json lists = deck.Lists({"-n", "1000000"});
  int four = 0, three = 0, beams = 0;
  for (const Json& list : lists) {
    beams = 0;  // they have two lists
    for (const Json& peak : list["peaks"]) {
      EXPECT_EQ(peak["value"], 0.0);
      int& next = peak["kind"] == "beam" ? beams : peak["kind"] == "shell" ? four : three;
      EXPECT_EQ(peak["element"], next++);
      EXPECT_TRUE(peak["kind"] != "shell" || three == 0);
    }
  }
  EXPECT_EQ(four, static_cast<int>(model.shells4.size()));
  EXPECT_EQ(three, static_cast<int>(model.shells3.size()));
  EXPECT_EQ(beams, static_cast<int>(model.beams.size()));
}

// The elements of a list of each group, with the largest of them.
using Groups = std::map<std::string, std::set<Element>>;

// Every element of a quantity stands in the list of its group, and in no other.
void ExpectGroups(const Deck& deck, const std::string& by, const std::string& of,
                  const Groups& groups) {
  const Json lists = deck.Lists({"--of", of, "--by", by, "-n", "1000000"});
  ASSERT_EQ(lists.size(), groups.size()) << by;
  const Json whole = OnlyList(deck, {"--of", of});
  for (const Json& list : lists) {
    const std::set<Element>& expected = groups.at(list["group"]);
    std::set<Element> found;
    std::vector<double> values, expectedValues;
    for (const Json& peak : list["peaks"]) {
      found.insert(ElementOf(peak));
      values.push_back(peak["value"]);
    }
    EXPECT_EQ(found, expected) << list["group"];
    for (const Json& peak : whole["peaks"]) {
      if (expected.count(ElementOf(peak)) > 0) expectedValues.push_back(peak["value"]);
    }
    EXPECT_EQ(values, expectedValues);
  }
}

Groups GroupShells(const ModelText& model, const char* word, bool byMaterial) {
  Groups groups;
  const auto add = [&](const auto& shells, const char* kind) {
    for (std::size_t e = 0; e < shells.size(); ++e) {
      const int row = byMaterial ? shells[e].material : shells[e].thickness;
      groups[word + std::to_string(row)].insert({kind, static_cast<int>(e)});
    }
  };
  add(model.shells4, "shell");
  add(model.shells3, "triangle");
  return groups;
}

Groups GroupBeams(const ModelText& model) {
  Groups groups;
  for (std::size_t b = 0; b < model.beams.size(); ++b) {
    const auto& beam = model.beams[b];
    const std::array<const char*, 3> kinds{"section T ", "section L ", "section C "};
    groups[kinds.at(static_cast<std::size_t>(beam.BeamSecType)) + std::to_string(beam.BeamSecIndex)]
        .insert({"beam", static_cast<int>(b)});
  }
  return groups;
}

// The elements and their nodes.
std::map<Element, std::vector<int>> ListElements(const ModelText& model) {
  std::map<Element, std::vector<int>> elements;
  for (std::size_t e = 0; e < model.shells4.size(); ++e) {
    const auto& nodes = model.shells4[e].nodes;
    elements[{"shell", static_cast<int>(e)}] = {nodes.begin(), nodes.end()};
  }
  for (std::size_t e = 0; e < model.shells3.size(); ++e) {
    const auto& nodes = model.shells3[e].nodes;
    elements[{"triangle", static_cast<int>(e)}] = {nodes.begin(), nodes.end()};
  }
  for (std::size_t b = 0; b < model.beams.size(); ++b) {
    elements[{"beam", static_cast<int>(b)}] = {model.beams[b].node1, model.beams[b].node2};
  }
  return elements;
}

// Connected parts, numbered from 1 by their lowest nodes: the lowest number spreads until nothing
// changes.
Groups GroupParts(const ModelText& model, const std::set<std::string>& kinds) {
  const auto elements = ListElements(model);
  std::vector<int> lowest(model.nodes.size());
  for (std::size_t n = 0; n < lowest.size(); ++n) lowest[n] = static_cast<int>(n);
  for (bool isChanged = true; isChanged;) {
    isChanged = false;
    for (const auto& [element, nodes] : elements) {
      int least = lowest[0] + static_cast<int>(lowest.size());
      for (const int n : nodes) least = std::min(least, lowest[static_cast<std::size_t>(n)]);
      for (const int n : nodes) {
        isChanged = isChanged || lowest[static_cast<std::size_t>(n)] != least;
        lowest[static_cast<std::size_t>(n)] = least;
      }
    }
  }
  std::map<int, int> numbers;
  for (const auto& [element, nodes] : elements) {
    numbers[lowest[static_cast<std::size_t>(nodes[0])]] = 0;
  }
  int next = 0;
  for (auto& [root, number] : numbers) number = ++next;
  Groups groups;
  for (const auto& [element, nodes] : elements) {
    if (kinds.count(element.first) == 0) continue;
    const int part = numbers.at(lowest[static_cast<std::size_t>(nodes[0])]);
    groups["part " + std::to_string(part)].insert(element);
  }
  return groups;
}

TEST(KvxTop, GroupsAreThoseOfTheModel) {
  std::size_t most = 0;
  for (std::uint32_t seed = 1; seed <= 8; ++seed) {
    const ModelText model = MakeGoodModel(seed);
    const Deck deck(WriteModel(model), false);
    if (HasShells(model)) {
      ExpectGroups(deck, "thickness", "shells", GroupShells(model, "thickness ", false));
      ExpectGroups(deck, "material", "shells", GroupShells(model, "material ", true));
      const Groups parts = GroupParts(model, {"shell", "triangle"});
      ExpectGroups(deck, "part", "upper", parts);
      most = std::max(most, parts.size());
    }
    if (!model.beams.empty()) {
      ExpectGroups(deck, "section", "beams", GroupBeams(model));
      ExpectGroups(deck, "section", "section", GroupBeams(model));
      ExpectGroups(deck, "part", "section", GroupParts(model, {"beam"}));
      ExpectGroups(deck, "part", "beams", GroupParts(model, {"beam"}));
    }
  }
  EXPECT_GT(most, 1U);
}

// A thickness is one of shells, a section one of beams: the other list is left out.
TEST(KvxTop, GroupsWhatHasTheGroup) {
  const Deck deck(ReadExample("stiffened-panel"), false);
  for (const Json& list : deck.Lists({"--by", "thickness"})) EXPECT_EQ(list["quantity"], "shells");
  for (const Json& list : deck.Lists({"--by", "section"})) EXPECT_NE(list["quantity"], "shells");
  EXPECT_EQ(deck.Lists({"--by", "material"}).size(), 3U);
  EXPECT_EQ(deck.Lists({"--by", "whole"})[0]["group"], nullptr);
  const ProgramRun run = deck.Top({"--by", "section", "-n", "1"});
  EXPECT_TRUE(Holds(run.out, "\nBeams of section T 0 (400x10/160x16): von Mises")) << run.out;
  const ProgramRun shells = deck.Top({"--by", "thickness", "-n", "1"});
  EXPECT_TRUE(Holds(shells.out, "\nShells of thickness 0 (10): von Mises")) << shells.out;
}

std::vector<std::string> SplitCsv(const std::string& line) {
  std::vector<std::string> fields;
  std::istringstream stream(line + ',');
  for (std::string field; std::getline(stream, field, ',');) fields.push_back(field);
  return fields;
}

// A number of JSON and a field of CSV are the same double, other values the same text.
void ExpectSameCell(const Json& value, const std::string& field) {
  if (value.is_null()) {
    EXPECT_EQ(field, "");
  } else if (value.is_string()) {
    EXPECT_EQ(field, value);
  } else {
    EXPECT_EQ(std::stod(field), value.get<double>());
  }
}

TEST(KvxTop, FormsHaveTheSameNumbers) {
  const Deck deck(ReadExample("stiffened-panel"), false);
  for (const Arguments& options :
       {Arguments{"--yield", "235", "-n", "7"}, Arguments{"--by", "section", "-n", "3"},
        Arguments{"--of", "section", "-n", "50"}, Arguments{"--of", "bending"},
        Arguments{"--of", "rz"}}) {
    Arguments arguments = options;
    const Json lists = deck.Lists(arguments);
    const ProgramRun text = deck.Top(arguments);
    arguments.emplace_back("--csv");
    std::istringstream csv(deck.Top(arguments).out);
    std::string line;
    while (std::getline(csv, line) && line.rfind("# ", 0) == 0) continue;
    const std::vector<std::string> columns = SplitCsv(line);
    ASSERT_EQ(columns.size(), 19U);
    for (const Json& list : lists) {
      for (const Json& peak : list["peaks"]) {
        ASSERT_TRUE(std::getline(csv, line));
        const std::vector<std::string> fields = SplitCsv(line);
        ASSERT_EQ(fields.size(), columns.size());
        EXPECT_EQ(fields[0], list["quantity"]);
        ExpectSameCell(list["group"], fields[1]);
        ASSERT_EQ(peak.size(), columns.size() - 2);
        for (std::size_t c = 2; c < columns.size(); ++c) {
          ExpectSameCell(peak.at(columns[c]), fields[c]);
        }
        EXPECT_TRUE(Holds(text.out, ' ' + NumberText(peak["value"].get<double>()) + ' '));
      }
    }
    EXPECT_FALSE(std::getline(csv, line)) << line;
  }
}

// The vector of beam 0 along its axis: the connected structure has no displacements.
TEST(KvxTop, NamesWhatIsNotANumber) {
  ModelText model = MakeGoodModel(1);
  for (std::uint32_t seed = 2; model.beams.empty() || model.shells4.empty(); ++seed) {
    model = MakeGoodModel(seed);
  }
  auto& beam = model.beams[0];
  const auto at = [&](int node) { return model.nodes[static_cast<std::size_t>(node)]; };
  for (std::size_t i = 0; i < 3; ++i) beam.orientation[i] = at(beam.node2)[i] - at(beam.node1)[i];
  const Deck deck(WriteModel(model), false);
  const ProgramRun text = deck.Top({"-n", "0"});
  EXPECT_EQ(text.exitStatus, 1);
  EXPECT_TRUE(Holds(text.err, "the model has errors")) << text.err;
  EXPECT_TRUE(Holds(text.out, "not a number, and not in the list: beam 0 at ")) << text.out;
  const ProgramRun asJson = deck.Top({"--json"});
  EXPECT_EQ(asJson.exitStatus, 1);
  const Json json = Json::parse(asJson.out);
  for (const char* name : {"beams", "section"}) {
    const auto list = std::find_if(json["lists"].begin(), json["lists"].end(),
                                   [&](const Json& each) { return each["quantity"] == name; });
    ASSERT_NE(list, json["lists"].end());
    EXPECT_GE((*list)["not_finite"], 1);
    EXPECT_EQ((*list)["first_not_finite"][0]["element"], 0);
    EXPECT_EQ((*list)["compared"].get<int>() + (*list)["not_finite"].get<int>(),
              static_cast<int>(model.beams.size()));
  }
  const ProgramRun nodes = deck.Top({"--of", "ux"});
  EXPECT_EQ(nodes.exitStatus, 1);
  EXPECT_TRUE(Holds(nodes.out, "not a number")) << nodes.out;
}

TEST(KvxTop, AnswersForModelsWithoutShellsOrBeams) {
  ModelText frame = MakeGoodModel(1);
  for (std::uint32_t seed = 2; frame.beams.empty() || HasShells(frame); ++seed) {
    frame = MakeGoodModel(seed);
  }
  const Deck beams(WriteModel(frame), false);
  EXPECT_EQ(beams.Lists({}).size(), 2U);
  EXPECT_EQ(beams.Lists({})[0]["quantity"], "beams");
  EXPECT_EQ(beams.Lists({})[1]["quantity"], "section");
  ProgramRun run = beams.Top({"--of", "upper"});
  EXPECT_EQ(run.exitStatus, 0);
  EXPECT_EQ(run.out, "fem_solving.txt\nThe model has no shells.\n");
  EXPECT_TRUE(Holds(beams.Top({"--of", "upper", "--csv"}).out, "\nquantity,group,rank,value,"));
  EXPECT_TRUE(beams.Lists({"--of", "upper"}).empty());

  const Deck shells(ReadExample("water-trough"), false);
  EXPECT_EQ(shells.Lists({}).size(), 1U);
  run = shells.Top({"--of", "beams"});
  EXPECT_EQ(run.out, "fem_solving.txt\nThe model has no beams.\n");

  ModelText model;
  model.nodes = {{0, 0, 0}};
  model.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  run = Deck(WriteModel(model), false).Top({});
  EXPECT_TRUE(Holds(run.out, "\nThe model has no shells.\nThe model has no beams.\n")) << run.out;
}

TEST(KvxTop, TellsWhatDetailModelsDoNotSee) {
  const std::string word = "line loads between the ends";
  EXPECT_FALSE(Holds(Deck(ReadExample("stiffened-panel"), false).Top({}).out, word));
  ModelText model = MakeGoodModel(1);
  for (std::uint32_t seed = 2; model.beamLoads.empty(); ++seed) model = MakeGoodModel(seed);
  EXPECT_TRUE(Holds(Deck(WriteModel(model), false).Top({}).out, word));
}

// The shells alone need no detail models.
TEST(KvxTop, NamesABeamWithoutASection) {
  std::string text = ReadExample("stiffened-panel");
  const std::size_t at = text.find("BeamSecType=", text.find("NELEM_B="));
  text.replace(at, std::string("BeamSecType=0").size(), "BeamSecType=7");
  const Deck deck(text, false);
  const ProgramRun run = deck.Top({});
  EXPECT_EQ(run.exitStatus, 65);
  EXPECT_EQ(run.out, "");
  EXPECT_TRUE(Holds(run.err, "Beam 0 has BeamSecType=7, which is no kind of section.")) << run.err;
  EXPECT_EQ(deck.Top({"--of", "shells"}).exitStatus, 1);
}

void ExpectComplaint(const Arguments& arguments, const std::string& line) {
  const Deck deck("", false);
  const ProgramRun run = deck.Top(arguments);
  EXPECT_EQ(run.exitStatus, 64) << arguments[0];
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.substr(0, run.err.find_first_of("\r\n")), "kvx top: " + line);
}

TEST(KvxTop, RefusesOptionsThatMakeNoSense) {
  ExpectComplaint({"--of", "strss"}, "there is no quantity \"strss\". Did you mean \"stress\"?");
  ExpectComplaint(
      {"--of", "xyz"},
      "there is no quantity \"xyz\". --of takes stress, shells, beams, section, upper, "
      "lower, middle, bending, tension, compression, displacement, ux, uy, uz, rx, ry, rz.");
  ExpectComplaint({"--of", "ux", "--yield", "235"},
                  "--yield is for stresses, not for displacements.");
  ExpectComplaint({"--of", "rz", "--by", "part"},
                  "displacements are those of nodes, which belong to no group: leave --by out.");
  ExpectComplaint({"--of", "beams", "--by", "thickness"},
                  "beams have no thickness: try --by section.");
  ExpectComplaint({"--of", "lower", "--by", "section"},
                  "shells have no section: try --by thickness.");
  for (const char* count : {"-3", "1e3", "", "twenty", "99999999999999999999"}) {
    ExpectComplaint({"-n", count}, std::string("--count: write a number such as 20, not \"") +
                                       count + "\". \"kvx top --help\" shows the options.");
  }
  for (const char* yield : {"0", "-2", "nan", "inf", "235MPa"}) {
    ExpectComplaint({"--yield", yield},
                    std::string("--yield: write a stress greater than 0, such as 235, not \"") +
                        yield + "\". \"kvx top --help\" shows the options.");
  }
}

TEST(KvxTop, SaysWhichInputIsMissing) {
  const TempFolder folder;
  const ProgramRun run = korvex::test::RunProgram(KVX_PROGRAM, folder.Path(), "", {"top"});
  EXPECT_EQ(run.exitStatus, 66);
  EXPECT_EQ(run.out, "");
  EXPECT_EQ(run.err.rfind("kvx top: there is no file fem_solving.txt", 0), 0U) << run.err;
}

TEST(QuantityNames, AreKnownAndDescribed) {
  std::set<Quantity> seen;
  for (const std::string& name : ListQuantityNames()) {
    std::vector<Quantity> quantities;
    ASSERT_TRUE(FindQuantities(name, quantities)) << name;
    if (name == "stress") continue;
    ASSERT_EQ(quantities.size(), 1U);
    EXPECT_EQ(QuantityName(quantities[0]), name);
    EXPECT_NE(std::string(DescribeQuantity(quantities[0])), "");
    EXPECT_TRUE(seen.insert(quantities[0]).second) << name;
    EXPECT_EQ(IsOfNodes(quantities[0]) + IsOfBeams(quantities[0]) + IsOfShells(quantities[0]), 1);
  }
  EXPECT_EQ(seen.size(), static_cast<std::size_t>(Quantity::Rz) + 1);
  std::vector<Quantity> quantities;
  EXPECT_TRUE(FindQuantities("Ux", quantities));
  EXPECT_EQ(quantities, std::vector<Quantity>{Quantity::Ux});
  EXPECT_FALSE(FindQuantities("strain", quantities));
  EXPECT_TRUE(quantities.empty());
}

}  // namespace
}  // namespace kvx::test
