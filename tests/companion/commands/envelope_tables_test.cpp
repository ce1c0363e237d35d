// Envelopes as CSV files, read back with all digits, and as short lists.
#include "commands/envelope_tables.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <map>
#include <set>

#include "support/csv.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/load_cases.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

using korvex::test::ReadFile, korvex::test::TempFolder;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

struct Shown {
  EnvelopeItems items;
  CaseEnvelopes envelopes;
  std::vector<std::string> names{"base", "not of it", "wind, \"west\""};
};

// Cases 0 and 2 of the names.
Shown Show(const std::vector<SolvedCase>& cases) {
  Shown shown;
  ListEnvelopeItems(cases.front().solved, shown.items);
  InitCaseEnvelopes(shown.items, shown.envelopes);
  for (std::size_t k = 0; k < cases.size(); ++k) {
    CaseValues values;
    ComputeCaseValues(cases[k].solved, cases[k].reactions, cases[k].beams, values);
    AddCaseValues(values, static_cast<std::int32_t>(2 * k), shown.envelopes);
  }
  return shown;
}

// The number that a field holds; an empty one must stand for something that does not exist.
double NumberOf(const std::string& field) {
  EXPECT_FALSE(field.empty());
  char* end = nullptr;
  const double number = std::strtod(field.c_str(), &end);
  EXPECT_EQ(*end, '\0') << field;
  return number;
}

void ExpectNumber(const std::string& field, double expected) {
  if (std::isnan(expected)) {
    EXPECT_EQ(field, "nan");
  } else {
    EXPECT_EQ(NumberOf(field), expected);
  }
}

// A row by the names of its columns.
using Row = std::map<std::string, std::string>;

Row MakeRow(const CsvTable& csv, std::size_t r) {
  Row row;
  for (std::size_t c = 0; c < csv.columns.size(); ++c) row[csv.columns[c]] = csv.rows[r][c];
  EXPECT_EQ(row.size(), csv.columns.size()) << "two columns have the same name";
  return row;
}

// The kinds of elements in files, as the options of kvx forces, and in the lists for people.
using KindNames = std::map<Holder, std::string>;
const KindNames FileNames{
    {Holder::Shell4, "shell"}, {Holder::Shell3, "triangle"}, {Holder::Beam, "beam"}};
const KindNames ListNames{{Holder::Shell4, "four-node shell"},
                          {Holder::Shell3, "three-node shell"},
                          {Holder::Beam, "beam"}};

void ExpectItem(EnvelopeKind kind, const EnvelopeItem& item, const KindNames& names,
                const Row& row) {
  const bool isNode = item.holder == Holder::Node;
  EXPECT_EQ(row.count("kind"), isNode ? 0U : 1U);
  if (!isNode) {
    EXPECT_EQ(row.at("kind"), names.at(item.holder));
  }
  EXPECT_EQ(row.at(isNode ? "node" : "element"), std::to_string(item.number));
  if (kind == EnvelopeBeamForces) ExpectNumber(row.at("station"), item.station);
  ExpectNumber(row.at("x"), item.place[0]);
  ExpectNumber(row.at("y"), item.place[1]);
  ExpectNumber(row.at("z"), item.place[2]);
}

// Row r, which is that of entry `at` of one side.
void ExpectRow(const Shown& shown, EnvelopeKind kind, std::size_t at, bool isLargest,
               const Row& row) {
  const Envelope& envelope = shown.envelopes[kind];
  const std::size_t n = envelope.components;
  ExpectItem(kind, shown.items.kinds[kind].items[at / n], FileNames, row);
  EXPECT_EQ(row.at("component"), ListComponents(kind)[at % n]);
  EXPECT_EQ(row.at("extreme"), isLargest ? "largest" : "smallest");
  ExpectNumber(row.at("value"), (isLargest ? envelope.largest : envelope.smallest)[at]);
  const std::int32_t number = (isLargest ? envelope.largestCase : envelope.smallestCase)[at];
  const std::string name = number == NoCase ? "" : shown.names[static_cast<std::size_t>(number)];
  EXPECT_EQ(row.at("case"), name);
  for (std::size_t c = 0; c < n; ++c) {
    const std::string& field = row.at(ListComponents(kind)[c]);
    if (!envelope.isAbsent.empty() && envelope.isAbsent[at - at % n + c] != 0) {
      EXPECT_EQ(field, "");
    } else {
      ExpectNumber(field, (isLargest ? envelope.withLargest : envelope.withSmallest)[n * at + c]);
    }
  }
}

// Reads the file of a kind and compares it with the envelope. Returns the number of its rows.
std::size_t ExpectFile(const Shown& shown, EnvelopeKind kind) {
  const TempFolder folder;
  const std::string name = folder.Path().string() + "/";
  WriteEnvelopeFile(name, kind, {shown.items, shown.envelopes, shown.names});
  const CsvTable csv = ReadCsv(ReadFile(name + EnvelopeFileName(kind)));
  const Envelope& envelope = shown.envelopes[kind];
  std::size_t r = 0;
  for (std::size_t at = 0; at < envelope.items * envelope.components; ++at) {
    if (!envelope.isAbsent.empty() && envelope.isAbsent[at] != 0) continue;
    if (r + 2 > csv.rows.size()) break;
    ExpectRow(shown, kind, at, false, MakeRow(csv, r++));
    ExpectRow(shown, kind, at, true, MakeRow(csv, r++));
  }
  EXPECT_EQ(r, csv.rows.size());
  EXPECT_NE(csv.notes.at(0).find("over the load cases base, wind, \"west\"."), std::string::npos);
  EXPECT_EQ(csv.notes.size(), envelope.notFinite > 0 ? 4U : 3U);
  return csv.rows.size();
}

TEST(EnvelopeTables, FilesReadBackWithAllDigits) {
  std::size_t rows[EnvelopeKindCount] = {};
  for (std::uint32_t seed = 0; seed < 6; ++seed) {
    SCOPED_TRACE(seed);
    const Shown shown = Show(SolveRandomCases(seed, 2));
    for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
      rows[kind] += ExpectFile(shown, static_cast<EnvelopeKind>(kind));
    }
  }
  for (const std::size_t count : rows) EXPECT_GT(count, 100U);
}

TEST(EnvelopeTables, FilesHaveTheirNames) {
  std::set<std::string> names;
  for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
    names.insert(EnvelopeFileName(static_cast<EnvelopeKind>(kind)));
  }
  EXPECT_EQ(names,
            (std::set<std::string>{"displacements.csv", "reactions.csv", "beam_forces.csv",
                                   "beam_stresses.csv", "shell_forces.csv", "shell_stresses.csv"}));
}

// People write scripts by the page: it has the names of the components in the order of their
// values.
TEST(EnvelopeTables, ComponentsAreThoseOfThePage) {
  const std::string page = ReadFile(KORVEX_DOCS "/companion.md");
  for (std::size_t k = 0; k < EnvelopeKindCount; ++k) {
    const auto kind = static_cast<EnvelopeKind>(k);
    const std::string begin = std::string("\n| `") + EnvelopeFileName(kind) + "` | ";
    std::size_t at = page.find(begin);
    ASSERT_NE(at, std::string::npos) << begin;
    at += begin.size();
    const std::string row = page.substr(at, page.find('\n', at) - at);
    at = 0;
    for (const char* component : ListComponents(kind)) {
      at = row.find(std::string("`") + component + '`', at);
      ASSERT_NE(at, std::string::npos) << component << " in " << row;
    }
  }
}

TEST(EnvelopeTables, NumbersThatAreNoneHaveNoCase) {
  std::vector<SolvedCase> cases = SolveRandomCases(3, 2);
  for (SolvedCase& of : cases) of.solved.model.Displacements[8] = Nan;
  const Shown shown = Show(cases);
  EXPECT_EQ(shown.envelopes[EnvelopeDisplacements].notFinite, 2U);
  ExpectFile(shown, EnvelopeDisplacements);
}

// A file without rows, so that none of an earlier model stays.
TEST(EnvelopeTables, KindsWithoutItemsHaveEmptyFiles) {
  Shown shown;
  InitCaseEnvelopes(shown.items, shown.envelopes);
  CaseValues values;
  AddCaseValues(values, 0, shown.envelopes);
  AddCaseValues(values, 2, shown.envelopes);
  for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
    EXPECT_EQ(ExpectFile(shown, static_cast<EnvelopeKind>(kind)), 0U);
  }
  std::vector<ResultTable> tables;
  MakeEnvelopeTables({shown.items, shown.envelopes, shown.names}, tables);
  EXPECT_TRUE(tables.empty());
}

TEST(EnvelopeTables, AFileThatCannotBeWrittenIsNamed) {
  const Shown shown = Show(SolveRandomCases(3, 1));
  korvex::test::ExpectStop(
      [&] {
        WriteEnvelopeFile("no/such/folder/", EnvelopeReactions,
                          {shown.items, shown.envelopes, shown.names});
      },
      "no/such/folder/reactions.csv cannot be written: No such file or directory.",
      korvex::StopKind::ResultFile);
}

// The first item with the extreme value among all, by a plain search.
std::size_t FindEntry(const Envelope& envelope, std::size_t component, bool isLargest) {
  std::size_t found = component;
  for (std::size_t at = component; at < envelope.items * envelope.components;
       at += envelope.components) {
    if (!envelope.isAbsent.empty() && envelope.isAbsent[at] != 0) continue;
    const auto& values = isLargest ? envelope.largest : envelope.smallest;
    const double sign = isLargest ? -1.0 : 1.0;
    const bool isFirst = !envelope.isAbsent.empty() && envelope.isAbsent[found] != 0;
    if (isFirst || sign * values[at] < sign * values[found]) found = at;
  }
  return found;
}

// Of stresses only the side that counts: compression for these two, else the largest.
bool IsListed(EnvelopeKind kind, const std::string& component, bool isLargest) {
  if (kind != EnvelopeBeamStresses && kind != EnvelopeShellStresses) return true;
  return isLargest != (component == "sigma_min" || component == "principal_min");
}

TEST(EnvelopeTables, ShortListsNameTheGoverningItems) {
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    const Shown shown = Show(SolveRandomCases(seed, 2));
    std::vector<ResultTable> tables;
    MakeEnvelopeTables({shown.items, shown.envelopes, shown.names}, tables);
    std::size_t t = 0;
    for (std::size_t k = 0; k < EnvelopeKindCount; ++k) {
      const auto kind = static_cast<EnvelopeKind>(k);
      const Envelope& envelope = shown.envelopes[k];
      if (envelope.items == 0) continue;
      ASSERT_LT(t, tables.size());
      // The CSV text of the table has all digits.
      const CsvTable csv = ReadCsv(TableCsv(tables[t++]));
      std::size_t r = 0;
      for (std::size_t c = 0; c < envelope.components; ++c) {
        if (FindSmallestItem(envelope, c) == envelope.items) continue;  // in no item
        for (const bool isLargest : {false, true}) {
          if (!IsListed(kind, ListComponents(kind)[c], isLargest)) continue;
          ASSERT_LT(r, csv.rows.size());
          const Row row = MakeRow(csv, r++);
          const std::size_t at = FindEntry(envelope, c, isLargest);
          const double value = (isLargest ? envelope.largest : envelope.smallest)[at];
          EXPECT_EQ(row.at("component"), ListComponents(kind)[c]);
          EXPECT_EQ(row.at("extreme"), isLargest ? "largest" : "smallest");
          if (row.at("value") == "0") {
            EXPECT_EQ(row.at("case"), "");
            continue;
          }
          ExpectNumber(row.at("value"), value);
          ExpectItem(kind, shown.items.kinds[k].items[at / envelope.components], ListNames, row);
          const std::int32_t number =
              (isLargest ? envelope.largestCase : envelope.smallestCase)[at];
          EXPECT_EQ(row.at("case"), shown.names[static_cast<std::size_t>(number)]);
        }
      }
      EXPECT_EQ(r, csv.rows.size());
    }
    EXPECT_EQ(t, tables.size());
  }
}

// Two nodes, one case: displacements 1 and 2e-9 along x and y, 1e-10 along z; rotations of 1e-12
// beside 1e-3.
TEST(EnvelopeTables, ShortListsLeaveOutRounding) {
  Shown shown;
  auto& nodes = shown.items.kinds[EnvelopeDisplacements].items;
  nodes.resize(1);
  nodes[0].number = 5;
  nodes[0].place = {10.0, 20.0, 30.0};
  InitCaseEnvelopes(shown.items, shown.envelopes);
  CaseValues values;
  values[EnvelopeDisplacements] = {1.0, 2e-9, -1e-10, 1e-3, 1e-13, -1e-11};
  AddCaseValues(values, 0, shown.envelopes);
  std::vector<ResultTable> tables;
  MakeEnvelopeTables({shown.items, shown.envelopes, shown.names}, tables);
  ASSERT_EQ(tables.size(), 1U);
  tables[0].notes.clear();
  EXPECT_EQ(
      TableText(tables[0], {}),
      "Displacements of nodes:\n"
      "  component  extreme    value  case  node   x   y   z  ux     uy  uz     rx  ry      rz\n"
      "  ux         smallest       1  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  ux         largest        1  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  uy         smallest   2e-09  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  uy         largest    2e-09  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  uz         smallest       0\n"
      "  uz         largest        0\n"
      "  rx         smallest   0.001  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  rx         largest    0.001  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  ry         smallest       0\n"
      "  ry         largest        0\n"
      "  rz         smallest  -1e-11  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n"
      "  rz         largest   -1e-11  base     5  10  20  30   1  2e-09   0  0.001   0  -1e-11\n");
}

}  // namespace
}  // namespace kvx::test
