#include "mesh/nastran/nastran_beam_section.h"

#include <cmath>

#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

using korvex::Cross;
using korvex::Normalise;
using korvex::Vector3;

// Parts of an offset that are less, for each length of the beam, are rounding of turned axes.
constexpr double OffsetTolerance = 1e-6;

double Dot(const Vector3& a, const Vector3& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }

Vector3 Opposite(const Vector3& a) { return {0.0 - a[0], 0.0 - a[1], 0.0 - a[2]}; }

Vector3 MeanOffset(const BeamLine& line) {
  Vector3 mean{};
  for (std::size_t i = 0; i < 3; ++i) mean[i] = (line.offsets[0][i] + line.offsets[1][i]) / 2.0;
  return mean;
}

bool IsLess(double part, const BeamLine& line) {
  return std::abs(part) <= OffsetTolerance * line.length;
}

// The vector along the web, from its free edge on. Where it is the deck's own vector it stays as it
// is; local z is the part of it across the axis.
Vector3 WebVector(WebDirection web, const BeamLine& line) {
  if (web == WebDirection::PlusZ) return line.axes[2];
  return web == WebDirection::PlusY ? line.orientation : Opposite(line.orientation);
}

// A tube has no web: it takes the direction of its offset, so that nothing of it is left out.
Vector3 TubeVector(const BeamLine& line) {
  const Vector3 mean = MeanOffset(line);
  const double y = Dot(mean, line.axes[1]), z = Dot(mean, line.axes[2]);
  if (IsLess(z, line)) return line.orientation;
  Vector3 across{};
  for (std::size_t i = 0; i < 3; ++i) across[i] = y * line.axes[1][i] + z * line.axes[2][i];
  return across;
}

// Reports the parts of the offsets that BeamSecOz cannot say. k: unit vector of local z.
void ReportOffsets(const NastranCard& card, const BeamLine& line, const Vector3& k,
                   std::int64_t number, NastranElements& elements) {
  const Vector3& i = line.axes[0];
  const Vector3 j = Cross(k, i);
  const auto& [a, b] = line.offsets;
  const auto report = [&](std::string_view reason) {
    ReportElement(card, number, Fate::Limited, reason, elements);
  };
  if (!IsLess(Dot(a, i), line) || !IsLess(Dot(b, i), line)) {
    report("its offset along its axis is left out");
  }
  if (!IsLess(Dot(a, j), line) || !IsLess(Dot(b, j), line)) {
    report("its offset across the web is left out");
  }
  if (!IsLess(Dot(a, k) - Dot(b, k), line)) {
    report("its offsets along the web differ from end to end; their mean is taken");
  }
}

// A bar that is wider than high is laid on its side, as its torsion constant is that of a thin web.
// Only where nothing is lost by it: an offset along y could not be said then.
bool IsLaidDown(const NastranSection& section, const BeamLine& line) {
  return section.isFlatBar && section.section.plates.Tw > section.section.plates.Hw &&
         IsLess(Dot(MeanOffset(line), line.axes[1]), line);
}

// Reports in what the solver's section differs from the deck's, once for each row.
void ReportSection(const NastranSection& section, const BeamLine& line,
                   const NastranProperty& property, NastranStock& stock) {
  const NastranCard& card = stock.deck.cards[property.card];
  const auto report = [&](std::string_view reason) {
    ReportCard(card.name, Fate::Limited, reason, card.place, CardText(card.name, property.number),
               stock.report);
  };
  const korvex::BeamSection& plates = section.section.plates;
  if (section.isFlatBar && plates.Tw > plates.Hw) {
    report(
        "BAR: wider than high and offset sideways, so it is not laid on its side: its torsion "
        "constant Hw Tw**3 / 3 is far too large");
  } else if (section.isThickBar) {
    report("BAR: its torsion constant is that of a thin plate, b t**3 / 3");
  }
  if (section.section.type == korvex::BeamSecTypeL) {
    report("L: the axes along its web and its flange are taken as principal axes");
  }
  if (line.hasShearCentre && section.shearCentre != section.centroid) {
    report("its section twists about its centroid here, about its shear centre in the deck");
  }
}

// The row of the section in the model, which is made when it is used first.
std::int32_t SectionRow(const NastranSection& section, const BeamLine& line, std::int32_t& row,
                        const NastranProperty& property, NastranElements& elements) {
  if (row >= 0) return row;
  NastranStock& stock = elements.stock;
  row = static_cast<std::int32_t>(stock.model.sections.size());
  stock.model.sections.push_back(section.section);
  stock.model.sections.back().name =
      CardText(stock.deck.cards[property.card].name, property.number);
  ReportSection(section, line, property, stock);
  return row;
}

}  // namespace

void PlaceSection(const NastranCard& card, const BeamLine& line, NastranProperty& property,
                  ImportBeam& beam, NastranElements& elements) {
  const bool hasSection = elements.stock.deck.cards[property.card].name.back() == 'L';
  if (!hasSection || !property.section.lacks.empty()) {
    if (line.offsets[0] != Vector3{} || line.offsets[1] != Vector3{}) {
      ReportElement(card, beam.number, Fate::Limited,
                    "its section has no counterpart: its offset is left out", elements);
    }
    return;
  }
  const bool isLaidDown = IsLaidDown(property.section, line);
  const NastranSection section = isLaidDown ? LyingBar(property.section) : property.section;
  beam.section = SectionRow(section, line, isLaidDown ? property.lyingRow : property.sectionRow,
                            property, elements);
  const bool isTube = section.section.type == korvex::BeamSecTypeC;
  beam.orientation = isTube ? TubeVector(line) : WebVector(section.web, line);
  const Vector3 j = Cross(beam.orientation, line.axes[0]);
  const Vector3 k = Normalise(Cross(line.axes[0], j));
  const double onLine = line.hasShearCentre ? section.shearCentre : section.centroid;
  beam.BeamSecOz = Dot(MeanOffset(line), k) - onLine;
  if (!line.hasShearCentre && section.beside != 0.0) {
    ReportElement(card, beam.number, Fate::Limited,
                  "L: its web stands over the nodes, not its centroid", elements);
  }
  ReportOffsets(card, line, k, beam.number, elements);
}

}  // namespace kvx
