// Mistakes in the text of random good models, at random places: each is named alone, with its line,
// its row, and its column where it has one.
#include "check/check_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>

#include "deck/write_tables.h"
#include "support/expect_findings.h"
#include "support/planted_text.h"
#include "support/temp_folder.h"

namespace kvx::test {
namespace {

// A mistake in a deck. Returns false where the deck has no place for it.
struct Place {
  Expected expected;
  std::size_t column = 0;  // 0: not looked at
};
using Plant = std::function<bool(TextDeck&, Dice&, Place&)>;

int AnyRow(const TextDeck& deck, const std::string& key, Dice& dice) {
  return RollInteger(dice, 0, CountOf(deck, key) - 1);
}

// A line with a value in a row that takes several lines: all but the first, which has its number.
std::size_t AnyValueLine(const TextDeck& deck, const std::string& key, int row, Dice& dice) {
  const int last = static_cast<int>(LinesPerRow(key)) - 1;
  return RowLine(deck, key, row) + static_cast<std::size_t>(RollInteger(dice, 1, last));
}

template <typename Item>
const Item& Any(const std::vector<Item>& items, Dice& dice) {
  return items[static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(items.size()) - 1))];
}

Place At(const char* code, const std::string& key, int row, std::size_t line,
         std::size_t column = 0) {
  return {{code, key, row, -1, static_cast<int>(line) + 1}, column};
}

std::size_t ColumnOf(const std::string& line, const std::string& what) {
  return line.find(what) + 1;
}

void Replace(std::string& line, const std::string& from, const std::string& to) {
  ASSERT_NE(line.find(from), std::string::npos) << line;
  line.replace(line.find(from), from.size(), to);
}

void Insert(TextDeck& deck, std::size_t at, const std::string& line) {
  deck.lines.insert(deck.lines.begin() + static_cast<std::ptrdiff_t>(at), line);
}

void Remove(TextDeck& deck, std::size_t at, std::size_t count = 1) {
  const auto first = deck.lines.begin() + static_cast<std::ptrdiff_t>(at);
  deck.lines.erase(first, first + static_cast<std::ptrdiff_t>(count));
}

// Plants the mistake in good models until it has been named in `wanted` of them.
void ExpectNamed(const Plant& plant, int wanted = 40) {
  int named = 0;
  for (std::uint32_t seed = 0; seed < 600 && named < wanted; ++seed) {
    Dice dice = MakeDice(seed + 1000);
    TextDeck deck = SplitDeck(korvex::test::WriteModel(MakeGoodModel(seed)));
    Place place;
    if (!plant(deck, dice, place)) continue;
    ++named;
    SCOPED_TRACE("seed " + std::to_string(seed));
    const CheckReport report = Check(JoinDeck(deck));
    ExpectOnly(report, place.expected);
    for (const Finding& finding : report.findings.findings) {
      if (place.column == 0 || finding.code != place.expected.code) continue;
      EXPECT_EQ(finding.column, place.column) << ListFindings(report);
    }
    if (::testing::Test::HasFailure()) return;
  }
  EXPECT_EQ(named, wanted);
}

TEST(CheckText, NamesAWrongHeader) {
  const std::vector<std::string> wrong{"### Toln_Korvex release=2.0 ###",
                                       "### Toln_Korvex release=3.0",
                                       " ### Toln_Korvex release=3.0 ###",
                                       "### toln_korvex release=3.0 ###",
                                       "### Toln_Korvex release=3,0 ###",
                                       "### Toln_Korvex ###",
                                       ""};
  ExpectNamed([&](TextDeck& deck, Dice& dice, Place& place) {
    deck.lines[0] = Any(wrong, dice);
    place = At("K001", "", -1, 0);
    if (deck.lines[0].empty()) Remove(deck, 0);
    return true;
  });
}

TEST(CheckText, NamesAByteZero) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    std::string& line = deck.lines[RowLine(deck, key, row)];
    const auto at =
        static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(line.size()) - 1));
    line[at] = '\0';
    place = At("K002", key, row, RowLine(deck, key, row), at + 1);
    return true;
  });
}

TEST(CheckText, NamesASectionWithoutTitle) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, AllKeys, 1, dice);
    place = At("K003", key, -1, FindTitle(deck, key));
    Remove(deck, FindTitle(deck, key));
    return true;
  });
}

TEST(CheckText, NamesAMissingSection) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    const std::size_t line = FindTitle(deck, key);
    const std::size_t rows = static_cast<std::size_t>(CountOf(deck, key)) * LinesPerRow(key);
    Remove(deck, line, 1 + rows);
    place = At("K003", key, -1, std::min(line, deck.lines.size() - 1));
    return true;
  });
}

// The end of the file is missing: that alone is the finding, wherever it breaks off.
TEST(CheckText, NamesABrokenEnd) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const auto last = static_cast<int>(FindTitle(deck, "NDL_B")) - 1;
    deck.lines.resize(static_cast<std::size_t>(RollInteger(dice, 10, last)) + 1);
    place = At("K003", "", -1, deck.lines.size() - 1);
    return true;
  });
}

TEST(CheckText, NamesADoubledSection) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, AllKeys, 1, dice);
    const std::size_t line = FindTitle(deck, key);
    if (RollYes(dice)) {  // the title alone
      Insert(deck, line, deck.lines[line]);
      place = At("K004", key, -1, line);
      return true;
    }
    const std::size_t size = 1 + static_cast<std::size_t>(CountOf(deck, key)) * LinesPerRow(key);
    for (std::size_t k = 0; k < size; ++k) Insert(deck, line + size + k, deck.lines[line + k]);
    place = At("K004", key, -1, line + size);
    return true;
  });
}

TEST(CheckText, NamesATitleAmongOtherRows) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 2, dice);
    const std::string other = Any(AllKeys, dice);
    if (other == key) return false;
    const std::string title = deck.lines[FindTitle(deck, other)];
    const std::size_t line = RowLine(deck, key, RollInteger(dice, 1, CountOf(deck, key) - 1));
    Insert(deck, line, title);
    place = At("K004", other, -1, line);
    return true;
  });
}

// Two neighbouring sections are exchanged: one of them is misplaced.
TEST(CheckText, NamesAMisplacedSection) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const auto k = static_cast<std::size_t>(RollInteger(dice, 0, 11));
    const std::size_t first = FindTitle(deck, AllKeys[k]);
    const std::size_t second = FindTitle(deck, AllKeys[k + 1]);
    const std::size_t third = FindTitle(deck, AllKeys[k + 2]);
    const auto begin = deck.lines.begin();
    std::rotate(begin + static_cast<std::ptrdiff_t>(first),
                begin + static_cast<std::ptrdiff_t>(second),
                begin + static_cast<std::ptrdiff_t>(third));
    place = At("K005", AllKeys[k], -1, FindTitle(deck, AllKeys[k]));
    return true;
  });
}

TEST(CheckText, NamesAMisspeltTitle) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    const std::size_t line = FindTitle(deck, key);
    std::string& title = deck.lines[line];
    const std::size_t equals = title.find('=');
    switch (RollInteger(dice, 0, 5)) {
      case 0:
        title[0] = 'n';
        break;
      case 1:
        title.erase(static_cast<std::size_t>(RollInteger(dice, 10, 14)), 1);
        break;
      case 2:
        title.insert(equals, " ");
        break;
      case 3:
        title = key + title.substr(equals);
        break;
      case 4:  // without its key
        title = title.substr(0, title.find(':') + 1) + title.substr(equals + 1);
        break;
      default:
        Replace(title, "Number of", "No. of");
    }
    place = At("K006", key, -1, line);
    return true;
  });
}

TEST(CheckText, NamesACountThatIsTooSmall) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, AllKeys, 1, dice);
    const int count = CountOf(deck, key);
    SetCount(deck, key, std::to_string(RollInteger(dice, 0, count - 1)));
    place = At("K007", key, -1, FindTitle(deck, key));
    return true;
  });
}

TEST(CheckText, NamesARowThatIsDoubled) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 1, dice);
    const std::size_t line = RowLine(deck, key, AnyRow(deck, key, dice));
    Insert(deck, line, deck.lines[line]);
    place = At("K007", key, -1, FindTitle(deck, key));
    return true;
  });
}

TEST(CheckText, NamesACountThatIsTooLarge) {
  const std::vector<int> more{1, 2, 17, 2000000000};
  ExpectNamed([&](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    const int count = CountOf(deck, key), by = Any(more, dice);
    SetCount(deck, key, std::to_string(by < 100 ? count + by : by));
    place = At("K008", key, -1, FindTitle(deck, key));
    return true;
  });
}

TEST(CheckText, NamesARowThatIsMissing) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 2, dice);
    Remove(deck, RowLine(deck, key, AnyRow(deck, key, dice)));
    place = At("K008", key, -1, FindTitle(deck, key));
    return true;
  });
}

// A number far beyond the file's lines is a slip, though the count goes with it: filled in, the
// rows before it would take 64 MB here, and 11 GB with the largest number of nodes that the solver
// takes.
TEST(CheckText, DoesNotFillUpToANumberThatTheFileCannotReach) {
  TextDeck deck = SplitDeck(korvex::test::WriteModel(MakeGoodModel(1)));
  const int rows = CountOf(deck, "NPOIN");
  SetCount(deck, "NPOIN", "2000000");
  std::string& last = deck.lines[RowLine(deck, "NPOIN", rows - 1)];
  Replace(last, std::to_string(rows - 1), "1999999");
  const CheckReport report = Check(JoinDeck(deck));
  const auto& list = report.findings.findings;
  const auto found = std::find_if(list.begin(), list.end(),
                                  [](const Finding& finding) { return finding.code == "K008"; });
  ASSERT_NE(found, list.end()) << ListFindings(report);
  EXPECT_EQ(found->message,
            "count NPOIN: it is 2000000, but " + std::to_string(rows) +
                " rows follow. The solver makes room for 2000000 nodal points, or stops for lack "
                "of memory.");
  EXPECT_EQ(found->remedy, "Write " + std::to_string(rows) + ".");
  EXPECT_LT(report.model.tables.Nodes.size(), deck.lines.size());
}

TEST(CheckText, NamesANegativeCount) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    SetCount(deck, key, std::to_string(-1 - CountOf(deck, key)));
    place = At("K009", key, -1, FindTitle(deck, key));
    return true;
  });
}

TEST(CheckText, NamesAComment) {
  const std::vector<std::string> comments{"# a comment",  "// 12 nodes", "$ loads",
                                          "! 1,2,3",      "* NODES",     "the deck",
                                          "  ; indented", "-- part 2"};
  ExpectNamed([&](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, AllKeys, 1, dice);
    const std::size_t line = RowLine(deck, key, AnyRow(deck, key, dice));
    const std::string comment = Any(comments, dice);
    Insert(deck, line, comment);
    place = At("K010", key, -1, line, comment.find_first_not_of(' ') + 1);
    return true;
  });
}

// One row is made a comment, and the count is left as it was.
TEST(CheckText, NamesARowMadeAComment) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    deck.lines[RowLine(deck, key, row)].insert(0, "#");
    place = At("K010", key, row, RowLine(deck, key, row), 1);
    return true;
  });
}

TEST(CheckText, NamesCommasBetweenFlags) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const int row = AnyRow(deck, "NRN", dice);
    const std::size_t line = RowLine(deck, "NRN", row);
    std::string& text = deck.lines[line];
    std::replace(text.begin() + static_cast<std::ptrdiff_t>(text.find(':')) + 2, text.end(), ' ',
                 ',');
    place = At("K011", "NRN", row, line, ColumnOf(text, ","));
    return true;
  });
}

TEST(CheckText, NamesAWrongSeparator) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck,
                                       {"NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NDL_S_4ND",
                                        "NDL_S_3ND", "NDL_B", "NELEM_B", "NFOR"},
                                       1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    std::string& text = deck.lines[line];
    const std::size_t comma = text.find(',');
    text[comma] = RollYes(dice) ? ';' : '/';
    place = At("K011", key, row, line, comma + 1);
    return true;
  });
}

// A row is broken at a place where the format allows no line end; what it says is known.
TEST(CheckText, NamesARowBrokenIntoTwoLines) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 1, dice);
    if (key == "NRN") return false;  // its flags may stand on several lines
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    const std::string text = deck.lines[line];
    const std::size_t comma = text.find(',');
    deck.lines[line] = text.substr(0, comma);
    Insert(deck, line + 1, text.substr(comma));
    place = At("K011", key, row, line, comma + 1);
    return true;
  });
}

TEST(CheckText, NamesLinesInAnotherOrder) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, {"NMT", "NTBS", "NLBS", "NCBS"}, 1, dice);
    if (key.empty()) return false;
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    const auto k =
        static_cast<std::size_t>(RollInteger(dice, 1, static_cast<int>(LinesPerRow(key)) - 2));
    std::swap(deck.lines[line + k], deck.lines[line + k + 1]);
    place = At("K011", key, row, line + k);
    place.expected.line = 0;  // either of the two
    return true;
  });
}

TEST(CheckText, NamesAnEmptyLineBehindALabel) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, {"NTBS", "NLBS", "NCBS"}, 1, dice);
    if (key.empty()) return false;
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row) + 1;
    const bool isEmpty = RollYes(dice);
    if (isEmpty) Insert(deck, line, "");
    if (!isEmpty) deck.lines[line].insert(0, "  ");
    place = At("K011", key, row, line + (isEmpty ? 1 : 0));
    return true;
  });
}

TEST(CheckText, NamesACommaWithinANumber) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, BlockKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = AnyValueLine(deck, key, row, dice);
    std::string& text = deck.lines[line];
    const std::size_t equals = text.find('=');
    text = text.substr(0, equals + 1) + (RollYes(dice) ? "206,000" : "0,3");
    place = At("K012", key, row, line, ColumnOf(text, ","));
    return true;
  });
}

TEST(CheckText, NamesDecimalCommasInACoordinate) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const int row = AnyRow(deck, "NPOIN", dice);
    const std::size_t line = RowLine(deck, "NPOIN", row);
    deck.lines[line] = std::to_string(row) + ":1,5,0,0";
    if (RollYes(dice)) deck.lines[line] += ",25,75";
    // The fourth number is the first that is too much.
    place = At("K012", "NPOIN", row, line, std::to_string(row).size() + 7);
    return true;
  });
}

TEST(CheckText, NamesACountWithSeparators) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    SetCount(deck, key, "3,363");
    const std::size_t line = FindTitle(deck, key);
    place = At("K012", key, -1, line, ColumnOf(deck.lines[line], ","));
    return true;
  });
}

TEST(CheckText, NamesAMisspeltName) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, BlockKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = AnyValueLine(deck, key, row, dice);
    std::string& text = deck.lines[line];
    const std::size_t equals = text.find('=');
    switch (RollInteger(dice, 0, 2)) {
      case 0:
        text = "nu" + text.substr(equals);
        break;
      case 1:
        text[0] = static_cast<char>(text[0] - 'A' + 'a');
        break;
      default:
        text.insert(equals, " ");
    }
    place = At("K013", key, row, line, 1);
    return true;
  });
}

TEST(CheckText, NamesAMisspeltNameInABeam) {
  const std::vector<std::string> names{"BeamSecType", "BeamSecIndex", "BeamSecOz",
                                       "BeamSecMirrored"};
  ExpectNamed(
      [&](TextDeck& deck, Dice& dice, Place& place) {
        if (CountOf(deck, "NELEM_B") == 0) return false;
        const int row = AnyRow(deck, "NELEM_B", dice);
        const std::size_t line = RowLine(deck, "NELEM_B", row);
        const std::string name = Any(names, dice);
        std::string wrong = name;
        wrong[7] = static_cast<char>(wrong[7] - 'A' + 'a');
        const std::size_t column = ColumnOf(deck.lines[line], name);
        Replace(deck.lines[line], name, wrong);
        place = At("K013", "NELEM_B", row, line, column);
        return true;
      },
      30);
}

TEST(CheckText, NamesAnOddNumber) {
  const std::vector<std::string> odd{"1e+", "0x.", "1e400", "1e-400"};
  ExpectNamed([&](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, BlockKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row) + 1;
    std::string& text = deck.lines[line];
    text = text.substr(0, text.find('=') + 1) + Any(odd, dice);
    // "0x." is taken as 0 by the reader, and its rest is nothing else.
    place = At("K014", key, row, line, text.find('=') + 2);
    return true;
  });
}

TEST(CheckText, NamesANodeNumberThatIsTooLarge) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, {"NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B"}, 1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    std::string& text = deck.lines[line];
    const std::size_t at = text.find(':') + 1;
    text = text.substr(0, at) + "4294967296" + text.substr(text.find(','));
    place = At("K014", key, row, line, at + 1);
    return true;
  });
}

TEST(CheckText, NamesMissingFlags) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const int row = AnyRow(deck, "NRN", dice);
    const std::size_t line = RowLine(deck, "NRN", row);
    std::string& text = deck.lines[line];
    text.resize(text.size() - 2);
    place = At("K015", "NRN", row, line, text.size() + 1);
    return true;
  });
}

TEST(CheckText, NamesAMissingValue) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, LineKeys, 1, dice);
    if (key == "NRN") return false;
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    std::string& text = deck.lines[line];
    const std::size_t first = text.find_first_of(":<") + 1;
    text.erase(first, text.find(',') + (RollYes(dice) ? 1 : 0) - first);
    place = At("K015", key, row, line);
    return true;
  });
}

TEST(CheckText, NamesAMissingLine) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, {"NMT", "NTBS", "NLBS", "NCBS"}, 1, dice);
    if (key.empty()) return false;
    const int row = AnyRow(deck, key, dice);
    const std::size_t line =
        RowLine(deck, key, row) +
        static_cast<std::size_t>(RollInteger(dice, 0, static_cast<int>(LinesPerRow(key)) - 1));
    Remove(deck, line);
    place = At("K015", key, row, line);
    return true;
  });
}

TEST(CheckText, NamesADoubledLine) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, {"NMT", "NTBS", "NLBS", "NCBS"}, 1, dice);
    if (key.empty()) return false;
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = AnyValueLine(deck, key, row, dice);
    Insert(deck, line, deck.lines[line]);
    place = At("K010", key, -1, line + 1);
    return true;
  });
}

TEST(CheckText, NamesTextBehindTheValues) {
  const std::vector<std::string> rests{" mm", " # old", " ,", " /", "'"};
  ExpectNamed([&](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = AnySection(deck, AllKeys, 1, dice);
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row) + LinesPerRow(key) - 1;
    const std::string rest = Any(rests, dice);
    deck.lines[line] += rest;
    place = At("K016", key, row, line,
               deck.lines[line].size() - rest.size() + rest.find_first_not_of(' ') + 1);
    return true;
  });
}

TEST(CheckText, NamesAFlagOrCoordinateTooMany) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const bool isFlag = RollYes(dice);
    const std::string key = isFlag ? "NRN" : "NPOIN";
    const int row = AnyRow(deck, key, dice);
    const std::size_t line = RowLine(deck, key, row);
    std::string& text = deck.lines[line];
    place = At("K016", key, row, line, text.size() + (isFlag ? 2 : 1));
    text += isFlag ? " 0" : ",0.5";
    return true;
  });
}

TEST(CheckText, NamesACountThatIsNotWhole) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key = Any(AllKeys, dice);
    SetCount(deck, key, std::to_string(CountOf(deck, key)) + ".5");
    const std::size_t line = FindTitle(deck, key);
    place = At("K016", key, -1, line, ColumnOf(deck.lines[line], "."));
    return true;
  });
}

TEST(CheckText, WarnsOfRunningNumbersOutOfStep) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    const std::string key =
        AnySection(deck, {"NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B"}, 2, dice);
    const int first = RollYes(dice) ? 0 : AnyRow(deck, key, dice);
    for (int row = first; row < CountOf(deck, key); ++row) {
      std::string& text = deck.lines[RowLine(deck, key, row)];
      text = std::to_string(row + 1) + text.substr(text.find(':'));
    }
    place = At("K017", key, first, RowLine(deck, key, first));
    return true;
  });
}

TEST(CheckText, WarnsOfTextBehindTheEnd) {
  ExpectNamed([](TextDeck& deck, Dice& dice, Place& place) {
    place = At("K018", "", -1, deck.lines.size());
    deck.lines.push_back("end of file");
    if (RollYes(dice)) deck.lines.push_back("# made by hand");
    return true;
  });
}

// Three slips in one file: one finding for each, and the rest is read as it was meant.
TEST(CheckText, GoesOnBehindASlip) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::string good = korvex::test::WriteModel(MakeGoodModel(seed));
    TextDeck deck = SplitDeck(good);
    Dice dice = MakeDice(seed);
    const std::size_t restraint = RowLine(deck, "NRN", AnyRow(deck, "NRN", dice));
    Replace(deck.lines[restraint], " 1 ", " 1,");
    const std::size_t node = RowLine(deck, "NPOIN", AnyRow(deck, "NPOIN", dice));
    Replace(deck.lines[node], ",", ";");
    Replace(deck.lines[RowLine(deck, "NMT", 0) + 2], "Mu", "nu");
    CheckedModel expected, model;
    FindingList none, findings;
    CheckText(good, expected, none);
    CheckText(JoinDeck(deck), model, findings);
    ASSERT_EQ(findings.findings.size(), 3U);
    EXPECT_TRUE(none.findings.empty());
    // All three can be mended with certainty: nothing is lost.
    EXPECT_EQ(korvex::WriteTables(model.tables), korvex::WriteTables(expected.tables));
    EXPECT_EQ(model.lines, expected.lines);
    EXPECT_TRUE(model.lostRows[IndexOf(korvex::Section::Nodes)].empty());
    EXPECT_EQ(model.doubtfulRows[IndexOf(korvex::Section::Nodes)].size(), 1U);
  }
}

// A row of a node is missing: the nodes behind keep their numbers, and only elements at the missing
// one are unusable.
TEST(CheckText, MarksElementsAtAMissingNode) {
  for (std::uint32_t seed = 0; seed < 40; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    TextDeck deck = SplitDeck(korvex::test::WriteModel(MakeGoodModel(seed)));
    Dice dice = MakeDice(seed);
    CheckedModel good, model;
    FindingList findings;
    CheckText(JoinDeck(deck), good, findings);
    const int lost = RollInteger(dice, 0, CountOf(deck, "NPOIN") - 2);  // not the last one
    Remove(deck, RowLine(deck, "NPOIN", lost));
    CheckText(JoinDeck(deck), model, findings);
    ASSERT_EQ(findings.findings.size(), 1U);
    EXPECT_TRUE(IsLost(model, korvex::Section::Nodes, lost));
    for (std::int32_t node = 0; node < CountRows(good.tables, korvex::Section::Nodes); ++node) {
      const korvex::Vector3 place = node == lost ? korvex::Vector3{} : PlaceOf(good.tables, node);
      EXPECT_EQ(PlaceOf(model.tables, node), place);
    }
    for (const korvex::Section section : ElementSections) {
      for (std::int32_t row = 0; row < CountRows(good.tables, section); ++row) {
        const ElementNodes element = NodesOf(good.tables, section, row);
        const bool isAt = std::find(element.nodes, element.nodes + element.count, lost) !=
                          element.nodes + element.count;
        EXPECT_EQ(StateOf(model, section, row),
                  isAt ? ElementState::Unusable : ElementState::Sound);
      }
    }
  }
}

// What the solver makes of the first slip, in words. Each was compared with the results of the
// program: an unread count gives no rows, a row that is not read zeros.
TEST(CheckText, TellsWhatTheSolverReads) {
  struct Case {
    std::string from, to, end;
  };
  const std::vector<Case> cases{
      {"0: 1 1 1 0 0 0", "0: 1,1,1,0,0,0",
       "restraint of node 0: expected a blank, found ','. Read as 1 0 0 0 0 0; every later row is "
       "lost."},
      {"6: 1 1 1 1 1 1", "6: 1 1 1 1 1 1 1",
       "The solver reads row 1 of NRN as 0 0 0 0 0 0; every later row is lost."},
      {"release=3.0", "release=2.0", "The run stops with \"Release File Number error!\""},
      {"NPOIN=7", "NPOIN=-7", "The run stops with \"The count NPOIN is negative: -7.\""},
      {"NPOIN=7", "NPOIN=6", "The count NELEM_S_4ND is read as 0; every later row is lost."},
      {"NPOIN=7", "NPOIN=8", "The solver reads node 7 as (0, 0, 0)."},
      {"NPOIN=7", "NPOIN=2000000000",
       "The solver makes room for 2000000000 nodal points, or stops for lack of memory."},
      {"nodal points:", "nodal point:", "The count NPOIN is read as 0; every later row is lost."},
      {"E=2.06e11", "E=2.06e+", "Read as E=2.06, Mu=0.3, Density=7850."},
      {"E=2.06e11", "E=206,000", "Read as E=206, Mu=0, Density=0; every later row is lost."},
      {"BeamSecOz=0.005", "BeamSecOz=0,005", "Read as nodes 0, 1; later rows are misread, too."},
      {"5<0,0,-1000,0,0,0>", "5<0,0,-1000,0,0>",
       "Read as 0, 0, -1000, 0, 0, 0; every later row is lost."}};
  const std::string good =
      korvex::test::ReadFile(std::filesystem::path(KORVEX_SOURCE) / "fuzz/corpus/deck.txt");
  for (const Case& slip : cases) {
    std::string text = good;
    Replace(text, slip.from, slip.to);
    CheckedModel model;
    FindingList findings;
    CheckText(text, model, findings);
    ASSERT_EQ(findings.findings.size(), 1U) << slip.to;
    const std::string& message = findings.findings[0].message;
    EXPECT_EQ(message.substr(message.size() - std::min(message.size(), slip.end.size())), slip.end);
  }
}

// What the reader takes well, although it is not written as usual, is no mistake.
TEST(CheckText, TakesOtherLayouts) {
  for (std::uint32_t seed = 0; seed < 30; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    const std::string good = korvex::test::WriteModel(MakeGoodModel(seed));
    TextDeck deck = SplitDeck(good);
    Dice dice = MakeDice(seed);
    std::string text = deck.lines[0];
    for (std::size_t k = 1; k < deck.lines.size(); ++k) {
      std::string line = deck.lines[k];
      const bool isRow = line.find(':') != std::string::npos && line[0] >= '0' && line[0] <= '9';
      const std::size_t comma = line.find(',');
      if (isRow && comma != std::string::npos && RollYes(dice, 0.2)) {
        line.insert(comma + 1, "\n  ");
      }
      // A row may follow on the same line, but not behind a title or a value with a name.
      const bool joins =
          isRow && deck.lines[k - 1].find('=') == std::string::npos && RollYes(dice, 0.2);
      // Behind a label the first value must begin the next line.
      const bool isFirst = line.rfind("Hw=", 0) == 0 || line.rfind("R=", 0) == 0;
      const std::string feed = !isFirst && RollYes(dice, 0.1) ? "\r\n\n" : "\n";
      text += (joins ? " " : feed) + line;
    }
    ExpectNone(Check(text));
    // Nor is it one beside a mistake, when the lines are looked at one by one.
    Replace(text, "\nMu=", "\nnu=");
    ExpectOnly(Check(text), {"K013", "NMT", 0, -1, 0});
  }
}

}  // namespace
}  // namespace kvx::test
