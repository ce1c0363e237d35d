// A row on one line is known if its line has just as many numbers as the row: then only what stands
// between them is wrong. Decimal commas are known if every value has one.
#include <cmath>
#include <limits>

#include "check/characters.h"
#include "check/diagnose_line.h"
#include "check/mend_row.h"
#include "deck/row_formats.h"

namespace kvx {

using korvex::Section;

namespace {

// Whether the numbers fit the formats of the row: whole numbers where such are expected.
bool Fit(Section section, const std::vector<double>& numbers) {
  std::size_t k = 0;
  for (const char* piece : korvex::FormatOf(section).pieces) {
    if (piece == nullptr) break;
    for (const char* c = piece; *c != '\0' && k < numbers.size(); ++c) {
      if (*c != '%') continue;
      const double number = numbers[k++];
      if (!std::isfinite(number)) return false;
      if (c[1] != 'd') continue;
      if (number != std::floor(number)) return false;
      if (std::abs(number) > std::numeric_limits<std::int32_t>::max()) return false;
    }
  }
  return true;
}

// The numbers of "0:1,5,0,0,2,5", where every second comma is a decimal one: 0 1.5 0.0 2.5. Empty
// if there are not two parts for each value.
std::vector<double> JoinDecimals(std::string_view line, std::size_t valueCount) {
  std::string joined(line.substr(0, line.find_first_of(":<") + 1));
  std::size_t commas = 0;
  for (const char c : line.substr(joined.size())) {
    joined += c == ',' && commas++ % 2 == 0 ? '.' : c;
  }
  if (commas + 1 != 2 * valueCount) return {};
  return ListNumbers(joined, 0, joined.size());
}

bool IsPointList(Section section) {
  return section == Section::Nodes || section >= Section::Shell4Loads;
}

}  // namespace

std::string DescribeRow(Section section, std::int32_t number) {
  std::string at = std::to_string(number);
  switch (section) {
    case Section::Header:
      return "header";
    case Section::Materials:
      return "material " + at;
    case Section::ShellThicknesses:
      return "shell thickness " + at;
    case Section::TBeamSections:
      return "T_beam section " + at;
    case Section::LBeamSections:
      return "L_beam section " + at;
    case Section::CBeamSections:
      return "C_beam section " + at;
    case Section::Nodes:
      return "node " + at;
    case Section::Shells4:
      return "four-node shell " + at;
    case Section::Shells3:
      return "three-node shell " + at;
    case Section::Beams:
      return "beam " + at;
    case Section::Restraints:
      return "restraint of node " + at;
    case Section::Forces:
      return "force on node " + at;
    case Section::Shell4Loads:
      return "load on four-node shell " + at;
    case Section::Shell3Loads:
      return "load on three-node shell " + at;
    case Section::BeamLoads:
      return "load on beam " + at;
  }
  return at;
}

namespace {

// A row that is broken into two lines within a number, or before a comma: joined, it is whole.
bool JoinLines(std::string_view text, const TextItem& item, Section section, std::int32_t row,
               MendedRow& mended, FindingList& findings) {
  const std::string_view both = text.substr(item.begin, item.end - item.begin);
  const std::size_t feed = both.find('\n');
  if (feed == std::string_view::npos) return false;
  const std::string_view first = Trim(both.substr(0, feed));
  const std::string joined = std::string(first) + std::string(Trim(both.substr(feed)));
  mended.values = ScanRow(joined, 0, section).values;
  const bool refers = section >= Section::Restraints;
  Finding finding = MakeFinding("K011");
  finding.line = item.line;
  finding.column = static_cast<std::size_t>(first.data() + first.size() - both.data()) + 1;
  finding.table = korvex::FormatOf(section).key;
  finding.rows = {row};
  if (section == Section::Nodes) finding.nodes = {row};
  finding.message =
      DescribeRow(section, refers ? static_cast<std::int32_t>(mended.values[0]) : row) +
      ": the row is broken into two lines where it must not be.";
  finding.remedy = "Write it on one line.";
  AddFinding(finding, findings);
  if (HasRunningNumber(section)) mended.values[0] = row;
  return true;
}

}  // namespace

MendedRow MendLine(std::string_view text, const TextItem& item, Section section, std::int32_t row,
                   FindingList& findings) {
  MendedRow mended;
  if (JoinLines(text, item, section, row, mended, findings)) return mended;
  std::size_t begin = item.begin;
  while (begin < item.end && IsBlank(text[begin])) ++begin;
  const RowScan scan = ScanRow(text.substr(0, item.end), begin, section);
  const bool refers = section >= Section::Restraints;
  const std::int32_t number =
      refers && scan.taken > 0 ? static_cast<std::int32_t>(scan.values[0]) : row;
  Finding finding;
  const std::string subject = refers && scan.taken == 0 ? "row " + std::to_string(row) + " of " +
                                                              korvex::FormatOf(section).key
                                                        : DescribeRow(section, number);
  if (!DiagnoseLine({text, item.begin, item.end, section, subject}, scan, finding)) {
    // By itself the line is right; the reader takes it together with others.
    finding = MakeFinding("K011");
    finding.message = subject + ": the row is not read as it is written.";
  }
  finding.line = item.line;
  finding.table = korvex::FormatOf(section).key;
  finding.rows = {row};
  if (section == Section::Nodes) finding.nodes = {row};
  AddFinding(finding, findings);

  std::vector<double> numbers = ListNumbers(text, item.begin, item.end);
  const std::size_t expected = CountNumbers(section);
  if (finding.code == "K012" && IsPointList(section)) {
    numbers = JoinDecimals(text.substr(item.begin, item.end - item.begin), expected - 1);
  }
  const bool hasMore = finding.code == "K016" && section == Section::Restraints;
  const bool isKnown = scan.odd == korvex::OddNumber::None && finding.code != "K002" &&
                       (numbers.size() == expected || (hasMore && scan.awaited == nullptr)) &&
                       Fit(section, numbers);
  mended.isLost = !isKnown;
  for (std::size_t k = 0; isKnown && k < expected; ++k) mended.values[k] = numbers[k];
  if (!isKnown && refers) mended.values[0] = number == row && scan.taken == 0 ? 0 : number;
  if (HasRunningNumber(section)) mended.values[0] = row;
  return mended;
}

}  // namespace kvx
