#include "check/solver_reading.h"

#include <algorithm>

#include "check/describe.h"
#include "check/mend_row.h"
#include "check/scan_row.h"
#include "deck/read_tables.h"
#include "report/stop.h"

namespace kvx {

using korvex::ModelTables;
using korvex::RowReading;
using korvex::Section;

namespace {

// Ends the reading before a table is made that the text cannot hold.
struct NoRoom {
  Section section;
  std::int32_t count;
};

// A table of so many rows may be made, however little text is left: a few megabytes at most.
constexpr std::int32_t HarmlessCount = 10000;

struct Reading {
  bool isSeen = false;      // the slip has been read
  RowReading slip;          // the reading of the row with the slip
  std::string values;       // what it was read as
  bool hasLater = false;    // something should be read behind it
  bool readsLater = false;  // some number is read behind it
  bool misreads = false;    // and some row behind it is not taken whole
};

void AddValue(double value, const char* separator, std::string& text) {
  if (!text.empty()) text += separator;
  text += NumberText(value);
}

template <typename Values>
std::string ListValues(const Values& values, const char* separator) {
  std::string text;
  for (const auto value : values) AddValue(static_cast<double>(value), separator, text);
  return text;
}

std::string ListNodes(const ModelTables& tables, Section section, std::int32_t row) {
  const ElementNodes element = NodesOf(tables, section, row);
  std::string text;
  for (std::size_t k = 0; k < element.count; ++k) AddValue(element.nodes[k], ", ", text);
  return "nodes " + text;
}

// The values of a row as the tables have them.
std::string ValuesOf(const ModelTables& tables, Section section, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  const auto beamSection = [](const korvex::BeamSection& s) {
    return "Hw=" + NumberText(s.Hw) + ", Tw=" + NumberText(s.Tw) + ", Bf=" + NumberText(s.Bf) +
           ", Tf=" + NumberText(s.Tf);
  };
  switch (section) {
    case Section::Header:
      return "";
    case Section::Materials: {
      const korvex::Material& m = tables.Materials[at];
      return "E=" + NumberText(m.E) + ", Mu=" + NumberText(m.Mu) +
             ", Density=" + NumberText(m.Density);
    }
    case Section::ShellThicknesses:
      return "TK=" + NumberText(tables.ShellThicknesses[at].TK);
    case Section::TBeamSections:
      return beamSection(tables.TBeamSections[at]);
    case Section::LBeamSections:
      return beamSection(tables.LBeamSections[at]);
    case Section::CBeamSections:
      return "R=" + NumberText(tables.CBeamSections[at].R) +
             ", T=" + NumberText(tables.CBeamSections[at].T);
    case Section::Nodes:
      return PointText(PlaceOf(tables, row));
    case Section::Shells4:
    case Section::Shells3:
    case Section::Beams:
      return ListNodes(tables, section, row);
    case Section::Restraints:
      return ListValues(tables.NodalRestraints[at].fixed, " ");
    case Section::Forces:
      return ListValues(tables.NodalForces[at].components, ", ");
    case Section::Shell4Loads:
      return ListValues(tables.Shell4SurfaceLoads[at].q, ", ");
    case Section::Shell3Loads:
      return ListValues(tables.Shell3SurfaceLoads[at].q, ", ");
    case Section::BeamLoads:
      return ListValues(tables.BeamLineLoads[at].q, ", ");
  }
  return "";
}

// Whether the finding is about the row in which the reader slipped.
bool Names(const Finding& finding, const RowReading& slip) {
  return std::string_view(finding.table) == korvex::FormatOf(slip.section).key &&
         std::find(finding.rows.begin(), finding.rows.end(), slip.row) != finding.rows.end();
}

std::string SentenceOf(const Reading& reading, const Finding& finding) {
  const RowReading& slip = reading.slip;
  std::string text;
  if (slip.row == korvex::TitleRow) {
    if (slip.section == Section::Header) {
      return reading.readsLater ? "" : "Every row behind it is lost.";
    }
    text = std::string("The count ") + korvex::FormatOf(slip.section).key + " is read as " +
           reading.values;
  } else if (Names(finding, slip)) {
    text = "Read as " + reading.values;
  } else {
    text = "The solver reads " + DescribeRow(slip.section, slip.row) + " as " + reading.values;
    if (slip.section >= Section::Restraints) {
      text = std::string("The solver reads row ") + std::to_string(slip.row) + " of " +
             korvex::FormatOf(slip.section).key + " as " + reading.values;
    }
  }
  if (reading.hasLater && !reading.readsLater) return text + "; every later row is lost.";
  return text + (reading.misreads ? "; later rows are misread, too." : ".");
}

std::string CountText(const ModelTables& tables, Section section) {
  const std::array<std::int32_t, SectionCount> counts{
      0,           tables.NMT,   tables.NTK,         tables.NTBS,        tables.NLBS,
      tables.NCBS, tables.NPOIN, tables.NELEM_S_4ND, tables.NELEM_S_3ND, tables.NELEM_B,
      tables.NRN,  tables.NFOR,  tables.NDL_S_4ND,   tables.NDL_S_3ND,   tables.NDL_B};
  return std::to_string(counts[IndexOf(section)]);
}

bool IsSound(const RowReading& row) {
  return row.awaited == nullptr && row.odd == korvex::OddNumber::None;
}

std::string NameStop(const std::string& stop) { return "The run stops with \"" + stop + "\""; }

}  // namespace

std::string DescribeSolverReading(std::string_view text, const Slip& slip, const Finding& finding) {
  if (!slip.stop.empty()) return NameStop(slip.stop);
  ModelTables tables;
  Reading reading;
  std::size_t end = 0;
  bool isBehindCount = false;
  korvex::RowListener listener;
  listener.row = [&](const RowReading& row) {
    end = row.endByte;
    const bool isSlip = row.section == slip.section && row.row == slip.row;
    // A count that the text cannot hold is read well; the rows that are not there show it.
    isBehindCount = isBehindCount || (isSlip && row.row == korvex::TitleRow && IsSound(row));
    const bool isFirst = isBehindCount ? !IsSound(row) : isSlip;
    if (!reading.isSeen && !isFirst) return;
    if (!reading.isSeen) {
      reading.isSeen = true;
      reading.slip = row;
      reading.values = row.row == korvex::TitleRow ? CountText(tables, row.section)
                                                   : ValuesOf(tables, row.section, row.row);
      return;
    }
    reading.hasLater = true;
    reading.readsLater = reading.readsLater || row.fieldsTaken > 0;
    reading.misreads = reading.misreads || row.awaited != nullptr;
  };
  listener.makeRoom = [&](Section section, std::int32_t count) {
    if (count > HarmlessCount && !HasRoom(text, end, section, count)) throw NoRoom{section, count};
  };
  try {
    korvex::ReadTables(text, listener, tables);
  } catch (const NoRoom& refused) {
    const korvex::SectionFormat& format = korvex::FormatOf(refused.section);
    const std::string rows = std::to_string(refused.count) + " " + format.rows;
    if (slip.row == korvex::TitleRow && refused.section == slip.section) {
      return "The solver makes room for " + rows + ", or stops for lack of memory.";
    }
  } catch (const korvex::Stop& stop) {
    return NameStop(stop.text);
  }
  return reading.isSeen ? SentenceOf(reading, finding) : "";
}

}  // namespace kvx
