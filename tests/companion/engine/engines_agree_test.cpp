// Both engines on the same models: their displacements differ by no more than the condition allows.
// The table of docs/verification.md ("Two engines") is made here: where a row is not on the page,
// or is another one, the test shows it.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <ostream>
#include <sstream>

#include "engine/solve_together.h"
#include "model/read_input_file.h"
#include "sparse/sparse_factor.h"
#include "support/engine_models.h"
#include "support/run_program.h"
#include "support/temp_folder.h"
#include "system/load_vector.h"
#include "system/profile.h"

namespace kvx::test {
namespace {

namespace fs = std::filesystem;
using korvex::test::ReadFile;
using korvex::test::TempFolder;

// A model of the table: one that is made, or one of the examples.
struct Structure {
  std::string name;
  std::string example, deck, map;  // in examples/; a deck is imported, with a map or without
  std::string text;                // of the model file; empty: of the example
};

std::ostream& operator<<(std::ostream& out, const Structure& structure) {
  return out << structure.name;
}

std::string NameStructure(const testing::TestParamInfo<Structure>& info) {
  std::string name;
  for (const char letter : info.param.name) {
    if (std::isalnum(static_cast<unsigned char>(letter)) != 0) name += letter;
  }
  return name;
}

std::vector<Structure> ListStructures() {
  std::vector<Structure> list;
  for (const EngineModel& model : MakeEngineModels()) {
    list.push_back({model.name, "", "", "", korvex::test::WriteModel(model.text)});
  }
  list.push_back({"example stiffened-panel", "stiffened-panel", "", "", ""});
  list.push_back({"example lattice-tower", "lattice-tower", "", "", ""});
  list.push_back({"example water-trough", "water-trough", "", "", ""});
  list.push_back({"example box-girder", "box-girder", "box-girder.msh", "map.toml", ""});
  return list;
}

// The text of the model file.
std::string TextOf(const Structure& structure) {
  if (structure.example.empty()) return structure.text;
  const fs::path folder = fs::path(KORVEX_EXAMPLES) / structure.example;
  if (structure.deck.empty()) return ReadFile(folder / "fem_solving.txt");
  const TempFolder out;
  std::vector<std::string> arguments{"import", (folder / structure.deck).u8string(), "-o", "out"};
  if (!structure.map.empty()) {
    arguments.insert(arguments.end(), {"--map", (folder / structure.map).u8string()});
  }
  const auto run = korvex::test::RunProgram(KVX_PROGRAM, out.Path(), "", arguments);
  EXPECT_EQ(run.exitStatus, 0) << run.out << run.err;
  return ReadFile(out.Path() / "out" / "fem_solving.txt");
}

struct Solution {
  std::vector<double> u;
  LoadQuality quality;
};

void Solve(EngineChoice engine, const std::string& text, Solution& solution) {
  korvex::Model model;
  korvex::ReadInputText(text, model);
  korvex::NumberEquations(model);
  korvex::AssembleLoadVector(model);
  std::vector<std::vector<double>> loads{model.LoadVector}, displacements;
  EngineSettings settings;
  settings.choice = engine;
  SolutionPlan plan;
  SolutionRecord record;
  PlanSolution(model, 1, settings, {}, plan);
  SolveTogether(model, loads, settings, plan, {}, displacements, record);
  solution = {displacements[0], record.loads[0]};
}

// How far the numbers of a and b from place `first` of each node on are apart, three of each, over
// the largest of them.
double Apart(const std::vector<double>& a, const std::vector<double>& b, std::size_t first) {
  double apart = 0.0, size = 0.0;
  for (std::size_t i = 0; i < b.size(); ++i) {
    if (i % 6 / 3 != first / 3) continue;
    apart = std::max(apart, std::fabs(a[i] - b[i]));
    size = std::max(size, std::fabs(b[i]));
  }
  return apart / size;
}

// "6.6e-16"
std::string Digits(double value) {
  char text[40];
  std::snprintf(text, sizeof text, "%.1e", value);
  const std::string digits = text;
  const std::size_t e = digits.find('e');
  return digits.substr(0, e + 1) + std::to_string(std::stoi(digits.substr(e + 1)));
}

// The numbers of a row, in the order of the table.
enum Column { Translations, Rotations, BackwardSkyline, BackwardSparse, Condition, Bound, Columns };

struct Row {
  std::string name;
  int equations = 0;
  std::array<double, Columns> numbers{};
};

std::string RowText(const Row& row) {
  std::string text = "| " + row.name + " | " + std::to_string(row.equations) + " |";
  for (const double number : row.numbers) text += ' ' + Digits(number) + " |";
  return text;
}

// The row of a structure on the page; without equations where there is none.
Row ReadRow(const std::string& name) {
  std::istringstream page(ReadFile(fs::path(KORVEX_DOCS) / "verification.md"));
  Row row;
  bool isInside = false;
  for (std::string line; std::getline(page, line);) {
    if (line.rfind("## ", 0) == 0) isInside = line == "## Two engines";
    if (!isInside || line.rfind("| " + name + " | ", 0) != 0) continue;
    std::istringstream cells(line.substr(name.size() + 5));
    std::string cell;
    std::getline(cells, cell, '|');
    row = {name, std::stoi(cell), {}};
    for (double& number : row.numbers) {
      std::getline(cells, cell, '|');
      number = std::stod(cell);
    }
  }
  return row;
}

// The bound holds to first order, for a condition that is estimated: it may be three times too
// small (Higham 2002, sec. 15.2).
constexpr double OfBound = 3.0;

// The condition is the structure's own. Roundings depend on the processor and on the libraries: the
// page shows their size.
constexpr double OfCondition = 0.1, OfRoundings = 30.0;

void ExpectOnThePage(const Row& row) {
  const Row page = ReadRow(row.name);
  EXPECT_EQ(row.equations, page.equations) << "the page has not: " << RowText(row);
  for (int column = 0; column < Columns; ++column) {
    const double ratio = row.numbers[static_cast<std::size_t>(column)] /
                         page.numbers[static_cast<std::size_t>(column)];
    const double most = column == Condition ? 1.0 + OfCondition : OfRoundings;
    EXPECT_TRUE(ratio < most && ratio > 1.0 / most) << column << ": " << RowText(row);
  }
}

class EnginesAgree : public testing::TestWithParam<Structure> {};

// The skyline's own estimate comes from one solution less (sparse/condition.h).
TEST_P(EnginesAgree, AsFarAsTheConditionAllows) {
  if (!HasSparseEngine()) GTEST_SKIP() << NoSparseEngine;
  const std::string text = TextOf(GetParam());
  Solution skyline, sparse;
  Solve(EngineChoice::Skyline, text, skyline);
  Solve(EngineChoice::Sparse, text, sparse);
  const LoadQuality &ours = skyline.quality, &other = sparse.quality;
  const double bound = other.condition * (ours.backwardError + other.backwardError);
  const Row row{GetParam().name,
                static_cast<int>(sparse.u.size()),
                {Apart(skyline.u, sparse.u, 0), Apart(skyline.u, sparse.u, 3), ours.backwardError,
                 other.backwardError, other.condition, bound}};
  EXPECT_LE(row.numbers[Translations], OfBound * bound) << RowText(row);
  EXPECT_LE(row.numbers[Rotations], OfBound * bound) << RowText(row);
  EXPECT_LE(ours.condition, other.condition * 1.001) << RowText(row);
  EXPECT_GE(ours.condition, other.condition / 5.0) << RowText(row);
  ExpectOnThePage(row);
}

INSTANTIATE_TEST_SUITE_P(Models, EnginesAgree, testing::ValuesIn(ListStructures()), NameStructure);

}  // namespace
}  // namespace kvx::test
