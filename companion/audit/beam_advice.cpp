#include "audit/beam_advice.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "beam/beam_frame.h"
#include "beamshell/section_outline.h"
#include "deck/check_reference.h"
#include "report/stop.h"
#include "skyline/disjoint_sets.h"

namespace kvx {

namespace {

using korvex::BeamSectionRef;
using korvex::Model;

// Two beams at a node continue each other where they bend by less than 10 degrees.
constexpr double StraightCosine = 0.984807753012208;

// No girder goes through a node with more beams than this. It also bounds the pairs to look at.
constexpr std::size_t BeamsAtNode = 12;

// So many pieces at most are advised; a beam that needs more has a mistake of another kind.
constexpr double MostPieces = 1000.0;

void CheckRows(const Model& model) {
  const std::size_t beams = model.BeamElements.size();
  const korvex::ModelTables& tables = model.Tables;
  if (beams == tables.BeamSectionRefs.size() && 2 * beams == tables.BeamNodes.size()) return;
  throw korvex::Stop{korvex::StopKind::Notice,
                     "The model has not as many beam elements as rows for them."};
}

bool Continue(const Model& model, const std::vector<BeamForces>& forces, std::size_t a,
              std::size_t b) {
  const BeamSectionRef &x = model.Tables.BeamSectionRefs[a], &y = model.Tables.BeamSectionRefs[b];
  if (x.BeamSecType != y.BeamSecType || x.BeamSecIndex != y.BeamSecIndex) return false;
  double cosine = 0.0;
  for (std::size_t i = 0; i < 3; ++i) cosine += forces[a].frame[i] * forces[b].frame[i];
  return std::fabs(cosine) > StraightCosine;
}

// Joins the beams that continue each other.
void JoinGirders(const Model& model, const std::vector<BeamForces>& forces,
                 korvex::DisjointSets& girders) {
  std::vector<std::pair<std::int32_t, std::size_t>> ends;  // node, beam
  ends.reserve(2 * forces.size());
  for (std::size_t i = 0; i < 2 * forces.size(); ++i) {
    ends.emplace_back(model.Tables.BeamNodes[i], i / 2);
  }
  std::sort(ends.begin(), ends.end());
  for (std::size_t first = 0, last = 0; first < ends.size(); first = last) {
    while (last < ends.size() && ends[last].first == ends[first].first) ++last;
    if (last - first > BeamsAtNode) continue;
    for (std::size_t i = first; i < last; ++i) {
      for (std::size_t k = i + 1; k < last; ++k) {
        if (!Continue(model, forces, ends[i].second, ends[k].second)) continue;
        korvex::JoinSets(girders, static_cast<std::int32_t>(ends[i].second),
                         static_cast<std::int32_t>(ends[k].second));
      }
    }
  }
}

double LargestMoment(const BeamForces& forces) {
  const Extremes My = FindExtremes(forces.curves[MomentMy]);
  return std::max(std::fabs(My.smallest.value), std::fabs(My.largest.value));
}

// Fills the largest |My| of each beam's girder.
void FindGirderMoments(const Model& model, const std::vector<BeamForces>& forces,
                       std::vector<double>& moments) {
  korvex::DisjointSets girders;
  korvex::InitSets(girders, static_cast<std::int32_t>(forces.size()));
  JoinGirders(model, forces, girders);
  std::vector<double> ofSet(forces.size(), 0.0);
  for (std::size_t b = 0; b < forces.size(); ++b) {
    const auto set =
        static_cast<std::size_t>(korvex::FindSet(girders, static_cast<std::int32_t>(b)));
    ofSet[set] = std::max(ofSet[set], LargestMoment(forces[b]));
  }
  moments.resize(forces.size());
  for (std::size_t b = 0; b < forces.size(); ++b) {
    moments[b] =
        ofSet[static_cast<std::size_t>(korvex::FindSet(girders, static_cast<std::int32_t>(b)))];
  }
}

// The widths of the widest plates, by row of each section table. That of an L is the same mirrored.
struct WidestPlates {
  std::vector<double> T, L, C;
};

// build: makes the outline of a row.
template <typename Table, typename Build>
void FindWidths(const Table& table, Build build, std::vector<double>& widths) {
  korvex::SectionOutline outline;
  for (const auto& section : table) {
    build(section, outline);
    widths.push_back(korvex::LongestSegment(outline));
  }
}

WidestPlates FindWidestPlates(const Model& model) {
  const std::int32_t level = model.BeamShellMeshLevel;
  const korvex::ModelTables& tables = model.Tables;
  using korvex::SectionOutline;
  WidestPlates widths;
  FindWidths(
      tables.TBeamSections,
      [&](const auto& row, SectionOutline& outline) { korvex::BuildTOutline(row, level, outline); },
      widths.T);
  FindWidths(
      tables.LBeamSections,
      [&](const auto& row, SectionOutline& outline) {
        korvex::BuildLOutline(row, false, level, outline);
      },
      widths.L);
  FindWidths(
      tables.CBeamSections,
      [&](const auto& row, SectionOutline& outline) { korvex::BuildCOutline(row, level, outline); },
      widths.C);
  return widths;
}

// Of the section that a beam refers to.
double FindWidestPlate(const BeamSectionRef& ref, std::size_t beam, const WidestPlates& widths) {
  const std::vector<double>& table = ref.BeamSecType == korvex::BeamSecTypeT   ? widths.T
                                     : ref.BeamSecType == korvex::BeamSecTypeL ? widths.L
                                                                               : widths.C;
  korvex::CheckReference("Beam element", static_cast<std::int32_t>(beam), "section",
                         ref.BeamSecIndex,
                         {"sections of its type", static_cast<std::int32_t>(table.size())});
  return table[static_cast<std::size_t>(ref.BeamSecIndex)];
}

}  // namespace

void FindUndividedBeams(const Model& model, const std::vector<BeamForces>& forces,
                        std::vector<UndividedBeam>& found) {
  found.clear();
  CheckRows(model);
  if (forces.size() != model.BeamElements.size()) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "There are not section forces of as many beams as the model has."};
  }
  std::vector<double> girderMoments;
  FindGirderMoments(model, forces, girderMoments);
  for (std::size_t b = 0; b < forces.size(); ++b) {
    const BeamForces& beam = forces[b];
    const korvex::SectionProperties& section = model.BeamElements[b].Section;
    UndividedBeam candidate;
    candidate.beam = static_cast<std::int32_t>(b);
    candidate.missingMoment = (beam.q[0] + beam.q[1]) * beam.length * beam.length / 48.0;
    candidate.girderMoment = girderMoments[b];
    candidate.part = std::fabs(candidate.missingMoment) / candidate.girderMoment;
    if (!std::isfinite(candidate.part) || candidate.part <= MissingMomentLimit) continue;
    candidate.missingStress =
        std::fabs(candidate.missingMoment) * std::max(section.CzTop, section.CzBottom) / section.Iy;
    // The missing moment falls with the square of the number of pieces.
    const double pieces = std::ceil(std::sqrt(candidate.part / MissingMomentLimit));
    candidate.pieces = static_cast<std::int32_t>(std::min(pieces, MostPieces));
    found.push_back(candidate);
  }
}

void FindShortDetails(const Model& model, std::vector<ShortDetail>& found) {
  found.clear();
  CheckRows(model);
  const WidestPlates widths = FindWidestPlates(model);
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    const BeamSectionRef& ref = model.Tables.BeamSectionRefs[b];
    if (!korvex::HasSectionTable(ref.BeamSecType)) continue;
    ShortDetail candidate;
    candidate.beam = static_cast<std::int32_t>(b);
    candidate.widestPlate = FindWidestPlate(ref, b, widths);
    candidate.ratio = korvex::BeamLength(model.BeamElements[b]) / candidate.widestPlate;
    if (!std::isfinite(candidate.ratio) || candidate.ratio >= ShortestDetail) continue;
    candidate.steps = std::max(1, static_cast<std::int32_t>(candidate.ratio));
    found.push_back(candidate);
  }
}

}  // namespace kvx
