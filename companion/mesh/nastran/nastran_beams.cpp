#include "mesh/nastran/nastran_beams.h"

#include <array>
#include <cmath>
#include <string_view>

#include "mesh/nastran/nastran_beam_section.h"
#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

using korvex::Cross;
using korvex::Length;
using korvex::Normalise;
using korvex::Subtract;
using korvex::Vector3;

// An orientation vector whose sine to the axis is less gives axes of rounding.
constexpr double LeastSine = 1e-6;

constexpr std::string_view UsualFlag = "GGG";

// BAROR or BEAMOR; null where the deck has none.
struct BeamDefaults {
  const NastranCard* bar = nullptr;
  const NastranCard* beam = nullptr;
};

BeamDefaults ReadDefaults(const std::vector<std::uint32_t>& cards, NastranElements& elements) {
  const NastranDeck& deck = elements.stock.deck;
  BeamDefaults defaults;
  for (const std::uint32_t cardRow : cards) {
    const NastranCard& card = deck.cards[cardRow];
    const NastranCard*& mine = card.name == "BAROR" ? defaults.bar : defaults.beam;
    if (mine == nullptr) {
      mine = &card;
      continue;
    }
    const bool isSame = SayTheSame(deck, *mine, card);
    ReportCard(card.name, isSame ? Fate::NoEffect : Fate::Refused,
               isSame ? "it says again what a card before says" : "a deck can have only one",
               card.place, "", elements.stock.report);
  }
  return defaults;
}

// A beam's card, and the card that gives its blank fields.
struct BeamRow {
  NastranRow own;
  NastranRow defaults;  // the own one where there is none
  std::int64_t number = 0;
};

const NastranRow& RowOfField(const BeamRow& row, std::size_t field) {
  return IsBlank(row.own, field) ? row.defaults : row.own;
}

// Field 9: how the vectors are meant. Returns false, and reports it, where it cannot be read.
bool ReadFlag(const BeamRow& row, std::string_view& flag, NastranElements& elements) {
  const NastranRow& from = RowOfField(row, 9);
  flag = FieldOf(from.deck, from.card, 9);
  // Old decks have 1 for a vector and 2 for a node there, which field 6 says by itself.
  if (flag.empty() || flag == "0" || flag == "1" || flag == "2") flag = UsualFlag;
  const auto isOf = [](char c, char other) { return c == 'G' || c == other; };
  if (flag.size() == 3 && isOf(flag[0], 'B') && isOf(flag[1], 'O') && isOf(flag[2], 'O')) {
    return true;
  }
  double twist = 0.0;
  if (from.card.name != "BAROR" && from.card.name != "CBAR" && ScanReal(flag, twist)) {
    flag = UsualFlag;
    ReportElement(row.own.card, row.number, Fate::Limited, "its twist (field 9) is left out",
                  elements);
    return true;
  }
  ReportElement(row.own.card, row.number, Fate::Refused,
                "the flag of its offset vectors (OFFT) is not known", elements);
  return false;
}

Vector3 VectorAtNode(const BeamRow& row, const Vector3& components, std::int32_t node,
                     NastranElements& elements) {
  const std::int64_t system = elements.systems.displacementSystems[static_cast<std::size_t>(node)];
  if (system == 0) return components;
  const NastranSystem& axes = elements.systems.systems.at(system);
  const Vector3 place = PlaceOf(elements.stock.model, node);
  if (HasOpenComponent(axes, components, place)) {
    ReportElement(row.own.card, row.number, Fate::Limited, OnAxisOfSystem, elements);
  }
  return VectorOf(axes, components, place);
}

// The orientation vector, global. Returns false, and reports it, where there is none.
bool ReadOrientation(const BeamRow& row, const ImportBeam& beam, char flag, Vector3& v,
                     NastranElements& elements) {
  const bool isOwn = !IsBlank(row.own, 6) || !IsBlank(row.own, 7) || !IsBlank(row.own, 8);
  const NastranRow& from = isOwn ? row.own : row.defaults;
  if (HoldsInteger(from, 6) && IsBlank(from, 7) && IsBlank(from, 8)) {
    const std::int64_t number = NeedNumber(from, 6);
    const auto node = elements.numbers.nodes.find(number);
    if (node == elements.numbers.nodes.end()) {
      ReportElement(row.own.card, row.number, Fate::Refused,
                    "the node of its orientation (G0) does not exist", elements);
      return false;
    }
    v = Subtract(PlaceOf(elements.stock.model, node->second),
                 PlaceOf(elements.stock.model, beam.nodes[0]));
    return true;
  }
  v = {RealField(from, 6, 0.0), RealField(from, 7, 0.0), RealField(from, 8, 0.0)};
  if (flag == 'G') v = VectorAtNode(row, v, beam.nodes[0], elements);
  return true;
}

// The element's axes x, y, z on the line of its nodes. Returns false, and reports it, where there
// are none.
bool MakeAxes(const BeamRow& row, const ImportBeam& beam, const Vector3& v,
              std::array<Vector3, 3>& axes, NastranElements& elements) {
  const ImportModel& model = elements.stock.model;
  const Vector3 along = Subtract(PlaceOf(model, beam.nodes[1]), PlaceOf(model, beam.nodes[0]));
  if (!(Length(along) > 0.0)) {
    ReportElement(row.own.card, row.number, Fate::Refused, "its nodes lie at one place", elements);
    return false;
  }
  const Vector3 z = Cross(along, v);
  if (!(Length(z) > LeastSine * Length(along) * Length(v))) {
    ReportElement(row.own.card, row.number, Fate::Refused,
                  "its orientation vector is missing or lies along its axis", elements);
    return false;
  }
  axes[0] = Normalise(along);
  axes[2] = Normalise(z);
  axes[1] = Cross(axes[2], axes[0]);
  return true;
}

// An offset vector, global. field: of its first component.
Vector3 ReadOffset(const BeamRow& row, std::size_t field, char flag, std::int32_t node,
                   const std::array<Vector3, 3>& axes, NastranElements& elements) {
  const Vector3 w = {RealField(row.own, field, 0.0), RealField(row.own, field + 1, 0.0),
                     RealField(row.own, field + 2, 0.0)};
  if (w[0] == 0.0 && w[1] == 0.0 && w[2] == 0.0) return w;
  if (flag == 'G') return VectorAtNode(row, w, node, elements);
  Vector3 global{};
  for (std::size_t i = 0; i < 3; ++i) {
    global[i] = axes[0][i] * w[0] + axes[1][i] * w[1] + axes[2][i] * w[2];
  }
  return global;
}

void ReportEnds(const BeamRow& row, NastranElements& elements) {
  const auto isGiven = [&row](std::size_t field) { return IntegerField(row.own, field, 0) != 0; };
  if (isGiven(12) || isGiven(13)) {
    ReportElement(row.own.card, row.number, Fate::Lost,
                  "its pin flags are left out: the ends are held", elements);
  }
  if (row.own.card.name == "CBEAM" && (isGiven(22) || isGiven(23))) {
    ReportElement(row.own.card, row.number, Fate::Limited, "its warping (SA, SB) is left out",
                  elements);
  }
}

// Reads all but the section. Returns false where the beam cannot be taken.
bool ReadBeam(const BeamRow& row, ImportBeam& beam, BeamLine& line, NastranElements& elements) {
  beam.nodes = {NodeOfField(row.own, 4, row.number, elements),
                NodeOfField(row.own, 5, row.number, elements)};
  if (beam.nodes[0] < 0 || beam.nodes[1] < 0) return false;
  std::string_view flag;
  if (!ReadFlag(row, flag, elements)) return false;
  if (!ReadOrientation(row, beam, flag[0], line.orientation, elements)) return false;
  if (!MakeAxes(row, beam, line.orientation, line.axes, elements)) return false;
  line.offsets[0] = ReadOffset(row, 14, flag[1], beam.nodes[0], line.axes, elements);
  line.offsets[1] = ReadOffset(row, 17, flag[2], beam.nodes[1], line.axes, elements);
  line.length = Length(Subtract(PlaceOf(elements.stock.model, beam.nodes[1]),
                                PlaceOf(elements.stock.model, beam.nodes[0])));
  line.hasShearCentre = row.own.card.name == "CBEAM";
  ReportEnds(row, elements);
  return true;
}

void TakeBeam(std::uint32_t cardRow, const BeamDefaults& defaults, NastranElements& elements) {
  NastranStock& stock = elements.stock;
  const NastranCard& card = stock.deck.cards[cardRow];
  const NastranCard* given = card.name == "CBAR" ? defaults.bar : defaults.beam;
  BeamRow row{{stock.deck, card, stock.report},
              {stock.deck, given != nullptr ? *given : card, stock.report},
              0};
  ImportBeam beam;
  BeamLine line;
  beam.number = row.number = NeedNumber(row.own, 2);
  if (!IsNewElement(card, beam.number, elements)) return;
  if (!ReadBeam(row, beam, line, elements)) return;
  const PropertyFamily family = card.name == "CBAR" ? PropertyFamily::Bar : PropertyFamily::Beam;
  const std::int64_t number = IntegerField(RowOfField(row, 3), 3, 0);
  NastranProperty* property =
      UseProperty(family, number != 0 ? number : beam.number, card, beam.number, stock);
  if (property == nullptr) return;
  beam.material = property->material;
  beam.orientation = line.orientation;
  PlaceSection(card, line, *property, beam, elements);
  beam.type = TypeRow(card.name, stock.model);
  const auto beamRow = static_cast<std::int32_t>(stock.model.beams.size());
  stock.model.beams.push_back(beam);
  stock.model.groups[static_cast<std::size_t>(property->group)].beams.push_back(beamRow);
  elements.numbers.beams.emplace(beam.number, beamRow);
  elements.beamCards.push_back(cardRow);
  elements.systems.beamVectors.push_back(line.orientation);
  if (beam.section < 0) line.offsets = {};  // left out and reported, so loads have none either
  Vector3 offset{};  // the line's middle; what is left out of the ends is reported above
  for (std::size_t i = 0; i < 3; ++i) offset[i] = (line.offsets[0][i] + line.offsets[1][i]) / 2.0;
  elements.systems.beamOffsets.push_back(offset);
}

}  // namespace

void TakeNastranBeams(const std::vector<std::uint32_t>& cards,
                      const std::vector<std::uint32_t>& defaults, NastranElements& elements) {
  const BeamDefaults given = ReadDefaults(defaults, elements);
  elements.stock.model.beams.reserve(cards.size());
  elements.numbers.beams.reserve(cards.size());
  elements.beamCards.reserve(cards.size());
  elements.systems.beamVectors.reserve(cards.size());
  elements.systems.beamOffsets.reserve(cards.size());
  for (const std::uint32_t card : cards) TakeBeam(card, given, elements);
}

}  // namespace kvx
