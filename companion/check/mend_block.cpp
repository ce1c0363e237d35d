// The lines of a block are given to the values by their names. A value without a line takes a line
// with an unknown name: "nu=0.3" where "Mu=" is missing.
#include <algorithm>

#include "check/characters.h"
#include "check/diagnose_line.h"
#include "check/find_sections.h"
#include "check/mend_row.h"
#include "check/split_rows.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

constexpr std::size_t None = static_cast<std::size_t>(-1);

struct Block {
  std::string_view text;
  Section section;
  std::int32_t row;
  std::vector<TextLine> lines;  // those that are not blank
  std::vector<std::size_t> lineNumbers;
  std::vector<BlockLineKind> kinds;
  std::vector<bool> used;
  std::array<std::size_t, korvex::PiecesPerRow> lineOf{};  // by piece: index of its line, or None
  std::size_t pieceCount = 0;
  FindingList& findings;
};

std::string NameOf(const Block& block, std::size_t piece) {
  const std::string_view format = korvex::FormatOf(block.section).pieces[piece];
  return std::string(format.substr(0, format.find('%')));
}

std::string Subject(const Block& block) { return DescribeRow(block.section, block.row); }

void Add(const Block& block, Finding finding, std::size_t line) {
  finding.line = block.lineNumbers[line];
  finding.table = korvex::FormatOf(block.section).key;
  finding.rows = {block.row};
  AddFinding(finding, block.findings);
}

Finding Make(const Block& block, const char* code, const std::string& what,
             const std::string& remedy) {
  Finding finding = MakeFinding(code);
  finding.message = Subject(block) + ": " + what;
  finding.remedy = remedy;
  return finding;
}

void ListBlockLines(const TextItem& item, Block& block) {
  std::size_t number = item.line;
  for (TextLine line : ListLines(block.text.substr(item.begin, item.end - item.begin))) {
    line.begin += item.begin;
    line.end += item.begin;
    const BlockLineKind kind = ClassifyBlockLine(Cut(block.text, line), block.section);
    if (kind.kind != BlockLine::Blank) {
      block.lines.push_back(line);
      block.lineNumbers.push_back(number);
      block.kinds.push_back(kind);
    }
    ++number;
  }
  block.used.assign(block.lines.size(), false);
  block.lineOf.fill(None);
  const auto& pieces = korvex::FormatOf(block.section).pieces;
  while (block.pieceCount < pieces.size() && pieces[block.pieceCount] != nullptr) {
    ++block.pieceCount;
  }
}

void Use(Block& block, std::size_t piece, std::size_t line) {
  block.lineOf[piece] = line;
  block.used[line] = true;
}

bool HasFirstValue(const Block& block) {
  return std::any_of(block.kinds.begin(), block.kinds.end(), [](const BlockLineKind& kind) {
    return kind.kind == BlockLine::Value && kind.piece == 1;
  });
}

// Whether a line has a "=", or begins with the name of the first value.
bool LooksLikeFirstValue(const Block& block, std::size_t line) {
  const std::string_view words = Trim(Cut(block.text, block.lines[line]));
  if (words.find('=') != std::string_view::npos) return true;
  const std::string name = NameOf(block, 1);  // with its "="
  return IsSameWord(words.substr(0, name.size() - 1), name.substr(0, name.size() - 1)) &&
         (words.size() < name.size() || !IsLetter(words[name.size() - 1]));
}

// The head or label: a head, or else the last line before the first value that is none.
void FindHead(Block& block) {
  std::size_t head = None;
  const bool hasLabel = HasLabel(block.section);
  for (std::size_t k = 0; k < block.lines.size(); ++k) {
    const BlockLine kind = block.kinds[k].kind;
    if (kind == BlockLine::Value) break;
    if (kind == BlockLine::Head) {
      head = k;
      break;
    }
    if (kind == BlockLine::Other || (hasLabel && head == None)) head = k;
  }
  // Two lines before the values, the second of them like a value: it is the first one, misspelt.
  const bool isValue = hasLabel && head != None && head > 0 && !HasFirstValue(block) &&
                       LooksLikeFirstValue(block, head);
  if (head != None) Use(block, 0, isValue ? head - 1 : head);
}

// A line with an unknown name between those of its neighbours.
void FindNamed(Block& block, std::size_t piece) {
  for (std::size_t k = 0; k < block.lines.size(); ++k) {
    if (block.used[k] || block.kinds[k].kind != BlockLine::Named) continue;
    Use(block, piece, k);
    return;
  }
}

// A line that should hold the value and has no name: "E 206000", "0.3".
void FindNameless(Block& block, std::size_t piece) {
  const std::size_t before = block.lineOf[piece - 1];
  const std::size_t k = before == None ? None : before + 1;
  if (k == None || k >= block.lines.size() || block.used[k]) return;
  const TextLine& line = block.lines[k];
  if (LooksLikeComment(Cut(block.text, line))) return;
  const std::string_view words = Cut(block.text, line);
  if (std::any_of(words.begin(), words.end(), IsDigit)) Use(block, piece, k);
}

void AssignLines(Block& block) {
  FindHead(block);
  for (std::size_t k = 0; k < block.lines.size(); ++k) {
    const BlockLineKind kind = block.kinds[k];
    if (kind.kind == BlockLine::Value && block.lineOf[kind.piece] == None) {
      Use(block, kind.piece, k);
    }
  }
  for (std::size_t piece = 1; piece < block.pieceCount; ++piece) {
    if (block.lineOf[piece] == None) FindNamed(block, piece);
    if (block.lineOf[piece] == None) FindNameless(block, piece);
  }
}

// The value of a line that does not hold just what it should, where it is certain.
bool GuessValue(const Block& block, const TextLine& line, const Finding& finding, double& value) {
  std::string digits(Cut(block.text, line));
  const std::size_t equals = digits.find('=');
  digits.erase(0, equals == std::string::npos ? 0 : equals + 1);
  const auto commas = std::count(digits.begin(), digits.end(), ',');
  if (finding.code == "K012" && commas > 0) {
    const std::size_t last = digits.rfind(',');
    const std::size_t behind = Trim(std::string_view(digits).substr(last + 1)).size();
    // "206,000" and "1,206,000" are thousands; "0,3" is not. "2,060" may be either.
    if (commas > 1 || (behind == 3 && digits[0] != '0')) {
      digits.erase(std::remove(digits.begin(), digits.end(), ','), digits.end());
    } else {
      digits[last] = '.';
    }
  }
  const std::vector<double> numbers = ListNumbers(digits, 0, digits.size());
  const bool isCertain = numbers.size() == 1 && finding.code != "K014" && finding.code != "K002";
  if (isCertain) value = numbers[0];
  return isCertain;
}

// A label is one line, and the first value must stand right behind it.
void AddGap(const Block& block) {
  const std::size_t label = block.lineOf[0], first = block.lineOf[1];
  if (!HasLabel(block.section) || label == None || first != label + 1) return;
  if (block.kinds[first].kind != BlockLine::Value) return;  // another finding names it
  const bool isNext = block.lineNumbers[first] == block.lineNumbers[label] + 1;
  if (isNext && !IsBlank(block.text[block.lines[first].begin])) return;
  Finding finding = Make(block, "K011",
                         std::string(isNext ? "blanks stand" : "an empty line stands") +
                             " before " + NameOf(block, 1) + "...",
                         "Write it at the begin of the line behind the label.");
  Add(block, finding, first);
}

// Names what is wrong with the line of a piece; returns whether its value is known.
bool ReadPiece(const Block& block, std::size_t piece, double& value) {
  const TextLine& line = block.lines[block.lineOf[piece]];
  std::size_t begin = line.begin;
  while (begin < line.end && IsBlank(block.text[begin])) ++begin;
  const char* const format = korvex::FormatOf(block.section).pieces[piece];
  const RowScan scan = ScanPiece(block.text.substr(0, line.end), begin, format);
  Finding finding;
  const LineContext context{block.text, line.begin, line.end, block.section, Subject(block)};
  const bool isWrong = DiagnoseLine(context, scan, finding);
  value = scan.values[0];
  if (!isWrong) return true;
  Add(block, finding, block.lineOf[piece]);
  return piece == 0 || GuessValue(block, line, finding, value);
}

// Lines that are missing, as one finding; its line is where the first of them should stand.
void AddMissing(const Block& block) {
  std::string names;
  std::size_t first = None;
  for (std::size_t piece = 0; piece < block.pieceCount; ++piece) {
    if (block.lineOf[piece] != None) continue;
    if (first == None) first = piece;
    const std::string name = piece > 0                 ? NameOf(block, piece) + "..."
                             : HasLabel(block.section) ? "of its label"
                                                       : "#" + std::to_string(block.row) + ":";
    names += (names.empty() ? "" : ", ") + name;
  }
  if (names.empty()) return;
  Finding finding = Make(block, "K015", "the line " + names + " is missing.", "Insert it.");
  finding.line = first == 0 ? block.lineNumbers[0] : block.lineNumbers[block.lineOf[first - 1]] + 1;
  finding.table = korvex::FormatOf(block.section).key;
  finding.rows = {block.row};
  AddFinding(finding, block.findings);
}

void AddOrder(const Block& block) {
  std::size_t last = None;
  for (std::size_t piece = 0; piece < block.pieceCount; ++piece) {
    const std::size_t line = block.lineOf[piece];
    if (line == None) continue;
    if (last != None && line < last) {
      Add(block,
          Make(block, "K011", "its lines are in the wrong order.",
               "Write the lines of the row in the order of the other rows."),
          line);
      return;
    }
    last = line;
  }
}

void AddStray(const Block& block) {
  for (std::size_t k = 0; k < block.lines.size(); ++k) {
    if (block.used[k]) continue;
    const std::string_view line = Cut(block.text, block.lines[k]);
    Finding finding;
    DiagnoseStray(line, finding);
    if (block.kinds[k].kind == BlockLine::Value) {
      finding = Make(block, "K010",
                     "the line " + NameOf(block, block.kinds[k].piece) + "... stands twice.",
                     "Remove one of the two.");
    }
    Add(block, finding, k);
  }
}

}  // namespace

MendedRow MendBlock(std::string_view text, const TextItem& item, Section section, std::int32_t row,
                    FindingList& findings) {
  Block block{text, section, row, {}, {}, {}, {}, {}, 0, findings};
  ListBlockLines(item, block);
  AssignLines(block);
  AddMissing(block);
  AddOrder(block);
  AddGap(block);
  MendedRow mended;
  const bool hasLabel = HasLabel(section);
  for (std::size_t piece = hasLabel ? 1 : 0; piece < block.pieceCount; ++piece) {
    const std::size_t at = hasLabel ? piece - 1 : piece;
    const bool isKnown = block.lineOf[piece] != None && ReadPiece(block, piece, mended.values[at]);
    if (isKnown || (piece == 0 && !hasLabel)) continue;
    mended.isLost = true;
    mended.values[at] = 0.0;
  }
  if (!hasLabel) mended.values[0] = row;
  AddStray(block);
  return mended;
}

}  // namespace kvx
