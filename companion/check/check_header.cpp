#include "check/check_header.h"

#include <algorithm>

#include "check/characters.h"
#include "check/describe.h"
#include "check/diagnose_line.h"
#include "check/scan_row.h"
#include "deck/model_tables.h"

namespace kvx {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";  // UTF-8
constexpr std::string_view WideMark = "\xFF\xFE";           // UTF-16, low byte first
constexpr std::string_view WideMarkBig = "\xFE\xFF";        // UTF-16, high byte first
constexpr const char* Header = "### Toln_Korvex release=3.0 ###";

// A text of two bytes a character has a byte 0 in every second place; a tenth is never a few stray
// ones.
constexpr std::size_t WideShare = 10;

void AddPlain(const std::string& what, const std::string& remedy, FindingList& findings) {
  Finding finding = MakeFinding("K002");
  finding.line = 1;
  finding.message = "file: " + what;
  finding.remedy = remedy;
  AddFinding(finding, findings);
}

bool IsWide(std::string_view text) {
  const std::string_view mark = text.substr(0, 2);
  if (mark == WideMark || mark == WideMarkBig) return true;
  const auto zeros = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\0'));
  return zeros * WideShare > text.size();
}

void AddHeader(std::size_t line, std::size_t column, const std::string& what,
               FindingList& findings) {
  Finding finding = MakeFinding("K001");
  finding.line = line;
  finding.column = column;
  finding.message = "header: " + what;
  finding.remedy = std::string("The first line must be ") + Header;
  AddFinding(finding, findings);
}

bool LooksLikeHeader(std::string_view line) {
  line = Trim(line);
  return !line.empty() && (line[0] == '#' || line.find("release") != std::string_view::npos);
}

}  // namespace

void FindPlainText(std::string_view text, PlainText& plain, FindingList& findings) {
  if (Trim(text).empty()) {
    AddPlain(text.empty() ? "it is empty." : "it has nothing but blanks.",
             "Write the model file again.", findings);
    return;
  }
  if (IsWide(text)) {
    AddPlain("it is not plain text, but has two bytes for a character (UTF-16), or is no text.",
             "Save it as plain text (ASCII or UTF-8 without byte-order mark).", findings);
    return;
  }
  plain.isUsable = true;
  plain.text = text;
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    AddPlain("it begins with a byte-order mark, three bytes that no editor shows.",
             "Save it as UTF-8 without byte-order mark, or as ASCII.", findings);
    plain.text.remove_prefix(ByteOrderMark.size());
  }
  if (plain.text.find('\n') == std::string_view::npos &&
      plain.text.find('\r') != std::string_view::npos) {
    AddPlain("its lines end with a carriage return alone; the solver sees one single line.",
             "Save it with line feeds at the line ends.", findings);
    plain.copy = plain.text;
    std::replace(plain.copy.begin(), plain.copy.end(), '\r', '\n');
    plain.text = plain.copy;
  }
}

bool HasHeader(std::string_view text) {
  const RowScan scan = ScanPiece(text, 0, korvex::HeaderFormat);
  return scan.awaited == nullptr && scan.values[0] == korvex::ModelFileRelease &&
         BeginsLine(text, scan.end);
}

void CheckHeader(std::string_view text, bool hasTitles, const SectionText& header,
                 FindingList& findings) {
  const RowScan scan = ScanPiece(text, 0, korvex::HeaderFormat);
  const bool isGood = HasHeader(text);
  std::size_t others = 0;
  if (isGood) {
    while (others < header.items.size() && header.items[others].begin < scan.end) ++others;
  } else if (header.items.empty()) {
    AddHeader(1, 1, "it is missing.", findings);
  } else {
    const TextItem& first = header.items[0];
    const std::string_view line = text.substr(first.begin, first.end - first.begin);
    const std::size_t column =
        scan.end >= first.begin && scan.end <= first.end ? scan.end - first.begin + 1 : 1;
    if (!LooksLikeHeader(line)) {
      AddHeader(first.line, 1, "it is missing.", findings);
    } else if (scan.taken == 1 && scan.values[0] != korvex::ModelFileRelease) {
      AddHeader(first.line, column,
                "the release is " + NumberText(scan.values[0]) + "; only 3.0 is read.", findings);
    } else if (first.line > 1) {
      AddHeader(first.line, 1, "something stands before it.", findings);
    } else {
      AddHeader(first.line, column, "it is misspelt.", findings);
    }
    others = 1;
  }
  if (!isGood && !hasTitles) return;  // the file is no model: one finding says it all
  for (; others < header.items.size(); ++others) {
    const TextItem& item = header.items[others];
    Finding finding;
    DiagnoseStray(text.substr(item.begin, item.end - item.begin), finding);
    finding.line = item.line;
    AddFinding(finding, findings);
  }
}

}  // namespace kvx
