#include "commands/peak_tables.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "beam/beam_frame.h"
#include "check/describe.h"
#include "commands/beam_tables.h"
#include "commands/element_words.h"
#include "commands/origin_columns.h"
#include "commands/origin_words.h"
#include "commands/quantity_names.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Model;

namespace {

std::size_t At(std::int32_t row) { return static_cast<std::size_t>(row); }

Cell NumberCell(std::int32_t number) {
  return number < 0 ? Cell{} : Cell{static_cast<std::int64_t>(number)};
}

// The plate of the section in which a detail model's shell lies. Its edge across the beam lies
// along z in a web, along y in a flange.
const char* PlateName(const Model& model, const Peak& peak) {
  const std::int32_t type = model.Tables.BeamSectionRefs[At(peak.element)].BeamSecType;
  if (type == korvex::BeamSecTypeC) return "wall";
  korvex::BeamFrame frame{};
  korvex::ComputeBeamFrame(model.BeamElements[At(peak.element)], frame);
  double alongY = 0.0, alongZ = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    alongY += peak.detailEdge[i] * frame[3 + i];
    alongZ += peak.detailEdge[i] * frame[6 + i];
  }
  return std::fabs(alongY) > std::fabs(alongZ) ? "flange" : "web";
}

double ThicknessOf(const Model& model, const Peak& peak) {
  if (peak.holder == Holder::Beam) return peak.detailThickness;
  return peak.holder == Holder::Shell4 ? model.Shell4Elements[At(peak.element)].TK
                                       : model.Shell3Elements[At(peak.element)].TK;
}

// One row of a table.
struct PeakRow {
  const ShownPeaks& shown;
  const Peak& peak;
  std::size_t rank = 0;  // from 1
  bool isForPeople = false;
};

struct PeakColumn {
  const char* name;
  Cell (*cell)(const PeakRow& row);
  bool (*isShown)(const ShownPeaks& shown);  // in the table for people
  bool isPlace;                              // says where the peak is
};

bool Always(const ShownPeaks& /*shown*/) { return true; }
bool Never(const ShownPeaks& /*shown*/) { return false; }
bool IfYield(const ShownPeaks& shown) { return shown.yield > 0.0; }
bool IfDetails(const ShownPeaks& shown) { return shown.list.quantity == Quantity::BeamVonMises; }
bool IfSectionForces(const ShownPeaks& shown) {
  return shown.list.quantity == Quantity::SectionVonMises;
}
bool IfElements(const ShownPeaks& shown) { return !IsOfNodes(shown.list.quantity); }
bool IfPlates(const ShownPeaks& shown) { return IfElements(shown) && !IfSectionForces(shown); }
bool IfShells(const ShownPeaks& shown) { return IsOfShells(shown.list.quantity); }
bool IfBeams(const ShownPeaks& shown) { return IsOfBeams(shown.list.quantity); }
bool IfNotBeams(const ShownPeaks& shown) { return !IsOfBeams(shown.list.quantity); }

// Where the quantity leaves open which face it is.
bool IfFaces(const ShownPeaks& shown) {
  const Quantity quantity = shown.list.quantity;
  return quantity == Quantity::VonMises || quantity == Quantity::LargestPrincipal ||
         quantity == Quantity::SmallestPrincipal || IfDetails(shown);
}

Cell RankCell(const PeakRow& row) { return static_cast<std::int64_t>(row.rank); }
Cell ValueCell(const PeakRow& row) { return row.peak.value; }
Cell KindCell(const PeakRow& row) {
  return row.isForPeople ? NameOf(row.peak.holder) : KindWord(row.peak.holder);
}
Cell CornerCell(const PeakRow& row) { return NumberCell(row.peak.corner); }
Cell NodeCell(const PeakRow& row) { return NumberCell(row.peak.node); }
Cell DetailShellCell(const PeakRow& row) { return NumberCell(row.peak.detailShell); }

template <std::size_t Axis>
Cell PlaceCell(const PeakRow& row) {
  return row.peak.place[Axis];
}

Cell UtilisationCell(const PeakRow& row) {
  if (row.shown.yield <= 0.0) return {};
  return ComputeUtilisation(row.peak.value, row.shown.yield);
}

// The faces of detail models are A and B in all pages.
Cell FaceCell(const PeakRow& row) {
  const Peak& peak = row.peak;
  if (!IfPlates(row.shown) || row.shown.list.quantity == Quantity::VonMisesBending) return {};
  if (peak.holder == Holder::Beam) return peak.face == Face::Upper ? "A" : "B";
  if (peak.face == Face::Middle) return "middle";
  return peak.face == Face::Upper ? "upper" : "lower";
}

Cell ElementCell(const PeakRow& row) {
  return row.peak.holder == Holder::Node ? Cell{} : NumberCell(row.peak.element);
}

Cell ThicknessCell(const PeakRow& row) {
  return IfPlates(row.shown) ? ThicknessOf(row.shown.model, row.peak) : Cell{};
}

Cell SectionCell(const PeakRow& row) {
  if (row.peak.holder != Holder::Beam) return {};
  return SectionName(row.shown.model, row.peak.element);
}

Cell PlateCell(const PeakRow& row) {
  return IfDetails(row.shown) ? PlateName(row.shown.model, row.peak) : Cell{};
}

Cell StationCell(const PeakRow& row) {
  return IfSectionForces(row.shown) ? Cell{row.peak.s} : Cell{};
}

Cell PointCell(const PeakRow& row) {
  return IfSectionForces(row.shown) ? SectionPlaceName(row.peak.point) : Cell{};
}

constexpr std::array<PeakColumn, 17> PeakColumns{{
    {"rank", RankCell, Always, false},
    {"value", ValueCell, Always, false},
    {"utilisation", UtilisationCell, IfYield, false},
    {"kind", KindCell, IfShells, true},
    {"element", ElementCell, IfElements, true},
    {"corner", CornerCell, IfShells, true},
    {"node", NodeCell, IfNotBeams, true},
    {"face", FaceCell, IfFaces, true},
    {"station", StationCell, IfSectionForces, true},
    {"x", PlaceCell<0>, Always, true},
    {"y", PlaceCell<1>, Always, true},
    {"z", PlaceCell<2>, Always, true},
    {"thickness", ThicknessCell, IfPlates, false},
    {"section", SectionCell, IfBeams, false},
    {"plate", PlateCell, IfDetails, false},
    {"point", PointCell, IfSectionForces, false},
    {"detail_shell", DetailShellCell, Never, true},
}};

// columns: which of PeakColumns the table has.
using ColumnChoice = std::array<bool, PeakColumns.size()>;

void FillTable(const ShownPeaks& shown, const std::vector<Peak>& peaks, const ColumnChoice& columns,
               bool isForPeople, ResultTable& table) {
  for (std::size_t c = 0; c < columns.size(); ++c) {
    const bool isStation = PeakColumns[c].cell == StationCell;
    if (!columns[c]) continue;
    table.columns.emplace_back(isStation && isForPeople ? "x/L" : PeakColumns[c].name);
  }
  std::size_t rank = 0;
  for (const Peak& peak : peaks) {
    const PeakRow row{shown, peak, ++rank, isForPeople};
    for (std::size_t c = 0; c < columns.size(); ++c) {
      if (columns[c]) table.cells.push_back(PeakColumns[c].cell(row));
    }
  }
}

const char* HoldersOf(const PeakList& list, bool isOne) {
  if (IsOfNodes(list.quantity)) return isOne ? "node" : "nodes";
  if (IsOfBeams(list.quantity)) return isOne ? "beam" : "beams";
  return isOne ? "shell" : "shells";
}

// What is counted beside the yield stress: of beams what gives the stress.
std::string CountedText(const ShownPeaks& shown) {
  const PeakList& list = shown.list;
  const auto count = static_cast<std::size_t>(list.compared);
  if (!IfDetails(shown)) return CountText(count, HoldersOf(list, true), HoldersOf(list, false));
  return CountText(count, "detail model", "detail models") +
         (shown.beams == BeamPlace::MidLength ? " at mid-length" : "");
}

// "300x10/200x12", "R 100, T 8"
std::string SectionSizes(const korvex::ModelTables& tables, std::int32_t type, std::int32_t row) {
  if (type == korvex::BeamSecTypeC) {
    const korvex::CBeamSection& tube = tables.CBeamSections[At(row)];
    return "R " + NumberText(tube.R) + ", T " + NumberText(tube.T);
  }
  const auto& rows = type == korvex::BeamSecTypeT ? tables.TBeamSections : tables.LBeamSections;
  const korvex::BeamSection& section = rows[At(row)];
  std::string text = NumberText(section.Hw) + 'x' + NumberText(section.Tw);
  if (section.Bf > 0.0 && section.Tf > 0.0) {
    text += '/' + NumberText(section.Bf) + 'x' + NumberText(section.Tf);
  }
  return text;
}

// Components are ordered by size, whatever their sign.
const char* OrderWord(Quantity quantity) {
  if (IsOfNodes(quantity)) return "largest";
  return quantity == Quantity::SmallestPrincipal ? "lowest" : "highest";
}

// What tells the group from others, besides its number; empty where there is nothing.
std::string DescribeGroup(const Model& model, const PeakList& list) {
  switch (list.grouping) {
    case Grouping::Thickness:
      return NumberText(model.Tables.ShellThicknesses[At(list.group)].TK);
    case Grouping::Material:
      return "E " + NumberText(model.Tables.Materials[At(list.group)].E);
    case Grouping::Section:
      return SectionSizes(model.Tables, list.sectionType, list.group);
    default:
      return "";
  }
}

}  // namespace

std::string GroupName(const PeakList& list) {
  const std::string number = std::to_string(list.group);
  switch (list.grouping) {
    case Grouping::Thickness:
      return "thickness " + number;
    case Grouping::Material:
      return "material " + number;
    case Grouping::Section:
      return "section " + SectionName(list.sectionType, list.group);
    case Grouping::Part:
      return "part " + number;
    default:
      return "";
  }
}

ResultTable MakeShortPeakTable(const ShownPeaks& shown) {
  ColumnChoice columns{};
  for (std::size_t c = 0; c < columns.size(); ++c) columns[c] = PeakColumns[c].isShown(shown);
  ResultTable table;
  table.title = PeakTitle(shown);
  FillTable(shown, shown.list.peaks, columns, true, table);
  AddOriginColumns(shown.origin, ColumnReader::Person, table);
  return table;
}

std::vector<std::string> ListPeakColumns() {
  std::vector<std::string> names;
  names.reserve(PeakColumns.size());
  for (const PeakColumn& column : PeakColumns) names.emplace_back(column.name);
  return names;
}

ResultTable MakePeakTable(const ShownPeaks& shown) {
  ColumnChoice columns{};
  columns.fill(true);
  ResultTable table;
  FillTable(shown, shown.list.peaks, columns, false, table);
  return table;
}

ResultTable MakeNotFiniteTable(const ShownPeaks& shown) {
  ColumnChoice columns{};
  for (std::size_t c = 0; c < columns.size(); ++c) columns[c] = PeakColumns[c].isPlace;
  ResultTable table;
  FillTable(shown, shown.list.firstNotFinite, columns, false, table);
  return table;
}

std::string PeakTitle(const ShownPeaks& shown) {
  const PeakList& list = shown.list;
  std::string title = HoldersOf(list, false);
  title[0] = static_cast<char>(title[0] - 'a' + 'A');
  if (list.grouping != Grouping::Whole) title += " of " + GroupName(list);
  std::string details = DescribeGroup(shown.model, list);
  const std::string name = NameOfGroup(shown.origin, list.grouping, list.sectionType, list.group);
  if (!name.empty()) details += ", " + name;
  if (!details.empty()) title += " (" + details + ')';
  title += std::string(": ") + DescribeQuantity(list.quantity) + ". ";
  const auto all = static_cast<std::size_t>(list.compared);
  const std::string number = std::to_string(all);
  if (list.peaks.empty()) return title + number + " in all.";
  if (list.peaks.size() == all) return title + "All " + number + '.';
  const bool isOne = list.peaks.size() == 1;
  return title + "The " + (isOne ? "" : std::to_string(list.peaks.size()) + ' ') +
         OrderWord(list.quantity) + " of " + number + '.';
}

std::string YieldSentence(const ShownPeaks& shown) {
  const PeakList& list = shown.list;
  if (shown.yield <= 0.0) return "";
  const bool isOne = list.beyondYield <= 1;
  const bool isSigned =
      list.quantity == Quantity::LargestPrincipal || list.quantity == Quantity::SmallestPrincipal;
  return (list.beyondYield == 0 ? "None" : std::to_string(list.beyondYield)) + " of " +
         CountedText(shown) + (isOne ? " exceeds " : " exceed ") + NumberText(shown.yield) +
         (isSigned                 ? " in size."
          : IfSectionForces(shown) ? " by section forces."
                                   : ".");
}

std::string NotFiniteSentence(const ShownPeaks& shown) {
  const PeakList& list = shown.list;
  if (list.notFinite == 0) return "";
  // More would fill the screen.
  constexpr std::size_t Named = 5;
  std::string names;
  for (std::size_t i = 0; i < std::min(Named, list.firstNotFinite.size()); ++i) {
    const Peak& peak = list.firstNotFinite[i];
    names += (i == 0 ? "" : ", ") + std::string(NameOf(peak.holder)) + ' ' +
             std::to_string(peak.element) + InDeck(shown.origin, peak.holder, peak.element) +
             " at " + PointText(peak.place);
  }
  const bool isOne = list.notFinite == 1;
  return std::to_string(list.notFinite) + ' ' + HoldersOf(list, isOne) +
         (isOne ? " has a value that is" : " have values that are") +
         " not a number, and not in the list: " + names +
         (static_cast<std::size_t>(list.notFinite) > Named ? " ..." : ".") +
         " kvx audit names the cause.";
}

}  // namespace kvx
