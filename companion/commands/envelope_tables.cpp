#include "commands/envelope_tables.h"

#include <cmath>
#include <string_view>

#include "audit/whole_file.h"
#include "commands/csv_text.h"
#include "commands/element_words.h"
#include "commands/origin_columns.h"
#include "commands/origin_words.h"
#include "commands/progress.h"
#include "commands/tidy_number.h"

namespace kvx {

namespace {

struct KindText {
  const char* fileName;
  const char* title;
  const char* signs;  // frame, signs and units, as sentences
  const char* with;   // what stands in the columns of the other components
};

constexpr const char* SameItem = "in the same load case.";
constexpr const char* SameCaseOnly =
    "in the same load case, but not at the same point: each is the largest or smallest of its "
    "item.";

constexpr std::array<KindText, EnvelopeKindCount> KindTexts{{
    {"displacements.csv", "Displacements of nodes",
     "Global axes. Rotations rx, ry, rz in radians, right-handed.", SameItem},
    {"reactions.csv", "Support forces",
     "Global axes, the force of the support on the structure, at the node. Empty: the direction is "
     "free.",
     SameItem},
    {"beam_forces.csv", "Section forces of beams",
     "Local axes, about the centroid, on the face whose outward normal is local +x. N is positive "
     "in tension; a positive My stretches the +z side, a positive Mz the -y side. station: 0 at "
     "the first node, 1 at the second; the place is on the line between the nodes. Between two "
     "stations a moment may exceed both by q L^2 / 128 (q: largest line load, L: length).",
     SameItem},
    {"beam_stresses.csv", "Stresses of beams",
     "sigma_max, sigma_min: the largest and smallest normal stress along the beam, tension "
     "positive; tau_max: the largest shear stress; von_mises: the largest von Mises stress of "
     "these "
     "nominal stresses; detail_von_mises: the largest von Mises stress of the detail model at "
     "mid-length. The place is the middle between the nodes.",
     SameCaseOnly},
    {"shell_forces.csv", "Resultants of shells",
     "At the centre of each element, in its own frame: x from its first node to its second, z its "
     "normal, the upper face on the side of z. nx, ny, nxy: force/length, positive in tension; mx, "
     "my, mxy: moment/length, a positive mx stretches the upper face along x; qx, qy: transverse "
     "shear, force/length; triangles have none.",
     SameItem},
    {"shell_stresses.csv", "Stresses of shells",
     "Averaged corner stresses. upper_von_mises, lower_von_mises, middle_von_mises: the largest "
     "von Mises "
     "stress of the upper, the lower and the middle face; principal_max, principal_min: the "
     "largest and the smallest principal stress of both faces, tension positive.",
     SameCaseOnly},
}};

constexpr const char* Smallest = "smallest";
constexpr const char* Largest = "largest";

// One side of an envelope.
struct Side {
  const char* name;
  const std::vector<double>& values;
  const std::vector<std::int32_t>& cases;
  const std::vector<double>& with;
};

std::array<Side, 2> SidesOf(const Envelope& envelope) {
  return {{{Smallest, envelope.smallest, envelope.smallestCase, envelope.withSmallest},
           {Largest, envelope.largest, envelope.largestCase, envelope.withLargest}}};
}

bool IsAbsent(const Envelope& envelope, std::size_t at) {
  return !envelope.isAbsent.empty() && envelope.isAbsent[at] != 0;
}

bool IsOfElements(EnvelopeKind kind) {
  return kind != EnvelopeDisplacements && kind != EnvelopeReactions;
}

// The names of the columns that tell an item and its place.
std::vector<std::string> ItemColumns(EnvelopeKind kind) {
  std::vector<std::string> columns{"node"};
  if (IsOfElements(kind)) columns = {"kind", "element"};
  if (kind == EnvelopeBeamForces) columns.emplace_back("station");
  columns.insert(columns.end(), {"x", "y", "z"});
  return columns;
}

// For people.
std::vector<Cell> ItemCells(EnvelopeKind kind, const EnvelopeItem& item) {
  std::vector<Cell> cells;
  if (IsOfElements(kind)) cells.emplace_back(NameOf(item.holder));
  cells.emplace_back(static_cast<std::int64_t>(item.number));
  if (kind == EnvelopeBeamForces) cells.emplace_back(item.station);
  for (const double coordinate : item.place) cells.emplace_back(coordinate);
  return cells;
}

void AddFields(const std::vector<std::string>& fields, std::string& text) {
  for (const std::string& field : fields) {
    AddCsvText(field, text);
    text += ',';
  }
}

void EndRow(std::string& text) { text.back() = '\n'; }

std::string NamesOfCases(const Envelope& envelope, const std::vector<std::string>& caseNames) {
  std::string names;
  for (const std::int32_t number : envelope.cases) {
    names += (names.empty() ? "" : ", ") + caseNames[static_cast<std::size_t>(number)];
  }
  return names;
}

// Whether the structure was imported.
bool IsImported(const EnvelopeView& view) {
  return view.origin != nullptr && HasOrigin(*view.origin);
}

// The same with the deck's number behind the item's.
std::vector<std::string> FileColumns(EnvelopeKind kind, const EnvelopeView& view) {
  std::vector<std::string> columns = ItemColumns(kind);
  if (!IsImported(view)) return columns;
  const bool isElement = IsOfElements(kind);
  columns.insert(columns.begin() + (isElement ? 2 : 1), isElement ? "deck_element" : "deck_node");
  return columns;
}

// The lines before the rows.
std::string HeadOf(EnvelopeKind kind, const EnvelopeView& view) {
  const KindText& of = KindTexts[kind];
  const Envelope& envelope = view.envelopes[kind];
  std::string text = std::string("# ") + of.title + ", envelope over the load cases " +
                     NamesOfCases(envelope, view.caseNames) + ".\n# " + of.signs +
                     " Units are those of the model.\n# Each component of an item has two rows: "
                     "its smallest and its largest value, the case that gives it (of equal values "
                     "the first), and all components " +
                     of.with + '\n';
  if (envelope.notFinite > 0) {
    text += "# " + std::to_string(envelope.notFinite) +
            " values are not finite (NaN or beyond the range of numbers) and are left out.\n";
  }
  AddFields(FileColumns(kind, view), text);
  AddFields({"component", "extreme", "value", "case"}, text);
  for (const char* component : ListComponents(kind)) AddFields({component}, text);
  EndRow(text);
  return text;
}

// The beginning of the rows of an item, with a comma at its end.
std::string ItemFields(EnvelopeKind kind, const EnvelopeView& view, const EnvelopeItem& item) {
  std::string text;
  if (IsOfElements(kind)) AddFields({KindWord(item.holder)}, text);
  text += std::to_string(item.number) + ',';
  if (IsImported(view)) {
    text += std::to_string(DeckNumber(*view.origin, item.holder, item.number)) + ',';
  }
  std::vector<double> numbers(item.place.begin(), item.place.end());
  if (kind == EnvelopeBeamForces) numbers.insert(numbers.begin(), item.station);
  for (const double number : numbers) {
    AddCsvNumber(number, text);
    text += ',';
  }
  return text;
}

// Adds the row of entry `at` of the side. begin: ItemFields.
void AddRow(EnvelopeKind kind, const EnvelopeView& view, const Side& side, std::size_t at,
            const std::string& begin, std::string& text) {
  const Envelope& envelope = view.envelopes[kind];
  const std::size_t n = envelope.components;
  const std::size_t component = at % n;
  text += begin;
  text += ListComponents(kind)[component];
  text += ',';
  text += side.name;
  text += ',';
  AddCsvNumber(side.values[at], text);
  text += ',';
  const std::int32_t number = side.cases[at];
  if (number != NoCase) AddCsvText(view.caseNames[static_cast<std::size_t>(number)], text);
  text += ',';
  for (std::size_t c = 0; c < n; ++c) {
    if (!IsAbsent(envelope, at - component + c)) AddCsvNumber(side.with[at * n + c], text);
    text += ',';
  }
  EndRow(text);
}

void AddItemRows(EnvelopeKind kind, const EnvelopeView& view, std::size_t item, std::string& text) {
  const Envelope& envelope = view.envelopes[kind];
  const std::string begin = ItemFields(kind, view, view.items.kinds[kind].items[item]);
  for (std::size_t c = 0; c < envelope.components; ++c) {
    const std::size_t at = item * envelope.components + c;
    if (IsAbsent(envelope, at)) continue;
    for (const Side& side : SidesOf(envelope)) AddRow(kind, view, side, at, begin, text);
  }
}

// The units of a kind's components: those with the same number have the same.
std::size_t UnitOf(EnvelopeKind kind, std::size_t component) {
  if (kind == EnvelopeBeamStresses || kind == EnvelopeShellStresses) return 0;
  return component >= 3 && component < 6 ? 1 : 0;
}

// The largest size of each unit's values.
std::array<double, 2> ScalesOf(EnvelopeKind kind, const Envelope& envelope) {
  std::array<double, 2> scales{};
  for (std::size_t c = 0; c < envelope.components; ++c) {
    const std::size_t small = FindSmallestItem(envelope, c), large = FindLargestItem(envelope, c);
    if (small == envelope.items) continue;
    double& scale = scales[UnitOf(kind, c)];
    scale = std::fmax(scale, std::fabs(envelope.smallest[small * envelope.components + c]));
    scale = std::fmax(scale, std::fabs(envelope.largest[large * envelope.components + c]));
  }
  return scales;
}

// Whether the extreme over all items says something. Stresses are the largest of their item already
// (those named _min the smallest): the smallest of these is that of the idlest item.
bool IsTelling(EnvelopeKind kind, std::string_view component, std::string_view extreme) {
  if (kind != EnvelopeBeamStresses && kind != EnvelopeShellStresses) return true;
  constexpr std::string_view Min = "_min";
  const bool isMin =
      component.size() > Min.size() && component.substr(component.size() - Min.size()) == Min;
  return extreme == (isMin ? Smallest : Largest);
}

// The row of a component's extreme over all items.
void AddGoverning(EnvelopeKind kind, const EnvelopeView& view, const Side& side, std::size_t at,
                  const std::array<double, 2>& scales, std::vector<Cell>& cells) {
  const Envelope& envelope = view.envelopes[kind];
  const std::size_t n = envelope.components, component = at % n;
  const auto tidy = [&](double value, std::size_t c) {
    return TidyNumber(value, scales[UnitOf(kind, c)]);
  };
  const double value = tidy(side.values[at], component);
  cells.emplace_back(ListComponents(kind)[component]);
  cells.emplace_back(side.name);
  cells.emplace_back(value);
  // Rounding has no place and no case.
  const bool isRounding = value == 0.0;
  cells.push_back(isRounding ? Cell()
                             : Cell(view.caseNames[static_cast<std::size_t>(side.cases[at])]));
  for (Cell& cell : ItemCells(kind, view.items.kinds[kind].items[at / n])) {
    cells.push_back(isRounding ? Cell() : std::move(cell));
  }
  for (std::size_t c = 0; c < n; ++c) {
    const bool isEmpty = isRounding || IsAbsent(envelope, at - component + c);
    cells.push_back(isEmpty ? Cell() : Cell(tidy(side.with[at * n + c], c)));
  }
}

ResultTable MakeEnvelopeTable(EnvelopeKind kind, const EnvelopeView& view) {
  const Envelope& envelope = view.envelopes[kind];
  ResultTable table;
  table.title = std::string(KindTexts[kind].title) + ":";
  table.columns = {"component", "extreme", "value", "case"};
  for (std::string& column : ItemColumns(kind)) table.columns.push_back(std::move(column));
  for (const char* component : ListComponents(kind)) table.columns.emplace_back(component);
  const std::array<double, 2> scales = ScalesOf(kind, envelope);
  const std::array<Side, 2> sides = SidesOf(envelope);
  for (std::size_t c = 0; c < envelope.components; ++c) {
    const std::array<std::size_t, 2> items{FindSmallestItem(envelope, c),
                                           FindLargestItem(envelope, c)};
    for (std::size_t k = 0; k < items.size(); ++k) {
      if (items[k] == envelope.items) continue;  // not a finite value of this component
      if (!IsTelling(kind, ListComponents(kind)[c], sides[k].name)) continue;
      AddGoverning(kind, view, sides[k], items[k] * envelope.components + c, scales, table.cells);
    }
  }
  table.notes = {KindTexts[kind].signs,
                 std::string("Beside each value stand all components ") + KindTexts[kind].with};
  if (view.origin != nullptr) AddOriginColumns(*view.origin, ColumnReader::Person, table);
  return table;
}

}  // namespace

const char* EnvelopeFileName(EnvelopeKind kind) { return KindTexts[kind].fileName; }

void WriteEnvelopeFile(const std::string& folder, EnvelopeKind kind, const EnvelopeView& view) {
  constexpr std::size_t Block = std::size_t{1} << 16;  // bytes: few calls, little memory
  WriteWholeFile(folder + KindTexts[kind].fileName, [&](std::ostream& stream) {
    std::string text = HeadOf(kind, view);
    for (std::size_t item = 0; item < view.items.kinds[kind].items.size(); ++item) {
      AddItemRows(kind, view, item, text);
      if (text.size() < Block) continue;
      StopIfInterrupted();
      stream << text;
      text.clear();
    }
    stream << text;
  });
}

void MakeEnvelopeTables(const EnvelopeView& view, std::vector<ResultTable>& tables) {
  tables.clear();
  for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
    if (view.items.kinds[kind].items.empty()) continue;
    tables.push_back(MakeEnvelopeTable(static_cast<EnvelopeKind>(kind), view));
  }
}

}  // namespace kvx
