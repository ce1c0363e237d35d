// What is enveloped: every value against the results of its case alone, a cantilever by hand, and
// results that are none.
#include "cases/case_envelopes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "audit/section_stresses.h"
#include "audit/shell_resultants.h"
#include "results/corner_stress.h"
#include "support/beam_sections.h"
#include "support/detail_peaks.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/load_cases.h"
#include "support/repeats.h"

namespace kvx::test {
namespace {

using korvex::Model, korvex::StressVector;
using korvex::test::ModelText;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

std::size_t At(std::int32_t row) { return static_cast<std::size_t>(row); }

std::vector<double> NodeValues(const std::vector<double>& six, std::int32_t node) {
  const auto first = six.begin() + 6 * node;
  return {first, first + 6};
}

std::vector<double> StationValues(const SolvedCase& of, const EnvelopeItem& item) {
  const SectionForces forces = ForcesAt(of.beams[At(item.number)], item.station);
  return {forces.begin(), forces.end()};
}

ShellResultants ResultantsOf(const Model& model, const EnvelopeItem& item) {
  ShellResultants shell;
  if (item.holder == Holder::Shell4) {
    ComputeShell4Resultants(model, item.number, {}, shell);
  } else {
    ComputeShell3Resultants(model, item.number, {}, shell);
  }
  return shell;
}

std::vector<double> ResultantValues(const Model& model, const EnvelopeItem& item) {
  const ShellPoint at = ResultantsOf(model, item).centre;
  return {at.n.x, at.n.y, at.n.xy, at.m.x, at.m.y, at.m.xy, at.qx, at.qy};
}

// The averaged stresses of all corners.
template <typename Shell>
std::vector<double> StressValues(const Shell& shell) {
  constexpr double Low = -std::numeric_limits<double>::infinity();
  double upper = Low, lower = Low, middle = Low, tension = Low, compression = -Low;
  for (std::size_t k = 0; k < shell.AvgStressTop.size(); ++k) {
    const StressVector &top = shell.AvgStressTop[k], &bottom = shell.AvgStressBottom[k];
    StressVector mean{};
    for (std::size_t i = 0; i < 6; ++i) mean[i] = (top[i] + bottom[i]) / 2.0;
    upper = std::max(upper, korvex::EquivalentStress(top));
    lower = std::max(lower, korvex::EquivalentStress(bottom));
    middle = std::max(middle, korvex::EquivalentStress(mean));
    for (const StressVector& face : {top, bottom}) {
      const auto principal = FindPrincipalValues(PlaneOf(StressInFrame(shell.Frame, face)));
      tension = std::max(tension, principal.larger);
      compression = std::min(compression, principal.smaller);
    }
  }
  return {upper, lower, middle, tension, compression};
}

// The stresses of a beam at 200 places along it: largest and smallest normal stress, shear, von
// Mises.
std::array<double, 4> SampleBeam(const SolvedCase& of, std::size_t beam) {
  const Model& model = of.solved.model;
  const SectionShape shape = MakeSectionShape(model.Tables, model.BeamElements[beam], beam);
  constexpr double Low = -std::numeric_limits<double>::infinity();
  std::array<double, 4> found{Low, -Low, Low, Low};
  constexpr int Places = 200;
  std::vector<FibreStress> fibres;
  for (int k = 0; k <= Places; ++k) {
    FindFibreStresses(shape, ForcesAt(of.beams[beam], static_cast<double>(k) / Places), fibres);
    for (const FibreStress& fibre : fibres) {
      found[0] = std::max(found[0], fibre.sigma);
      found[1] = std::min(found[1], fibre.sigma);
      found[2] = std::max(found[2], fibre.tau);
      found[3] = std::max(found[3], fibre.vonMises);
    }
  }
  return found;
}

// The places where the normal stress of plates is largest are exact, so that no sample goes beyond
// them. The other stresses are taken at stations and where a section force has zero slope; how far
// they and the sample miss the peak between their places was at most 2e-4 of the largest stress.
void ExpectBeamStresses(const SolvedCase& of, const EnvelopeItem& item, const double* values) {
  const std::array<double, 4> sample = SampleBeam(of, At(item.number));
  const double scale = std::max({std::fabs(values[0]), std::fabs(values[1]), values[3]});
  for (std::size_t c = 0; c < 4; ++c) EXPECT_NEAR(values[c], sample[c], 1e-3 * scale) << c;
  const auto& section = of.solved.model.Tables.BeamSectionRefs[At(item.number)];
  if (section.BeamSecType == korvex::BeamSecTypeC) return;
  EXPECT_LE(sample[0] - values[0], 1e-12 * scale);
  EXPECT_LE(values[1] - sample[1], 1e-12 * scale);
}

// The largest von Mises stress at mid-length by the search for maxima.
double DetailPeak(const Model& model, std::int32_t beam) {
  MaximaRequest request;
  request.quantities = {Quantity::BeamVonMises};
  request.count = model.BeamElements.size();
  std::vector<PeakList> lists;
  FindMaxima(model, request, {}, TakeDetailPeaks(model).offers, lists);
  for (const Peak& peak : lists.front().peaks) {
    if (peak.element == beam) return peak.value;
  }
  return Nan;
}

std::vector<double> ExpectedValues(const SolvedCase& of, EnvelopeKind kind,
                                   const EnvelopeItem& item) {
  const Model& model = of.solved.model;
  switch (kind) {
    case EnvelopeDisplacements:
      return NodeValues(model.Displacements, item.number);
    case EnvelopeReactions:
      return NodeValues(of.reactions.r, item.number);
    case EnvelopeBeamForces:
      return StationValues(of, item);
    case EnvelopeShellForces:
      return ResultantValues(model, item);
    default:
      return item.holder == Holder::Shell4 ? StressValues(model.Shell4Elements[At(item.number)])
                                           : StressValues(model.Shell3Elements[At(item.number)]);
  }
}

struct Listed {
  EnvelopeItems items;
  std::vector<CaseValues> values;
};

Listed ListAll(const std::vector<SolvedCase>& cases) {
  Listed listed;
  ListEnvelopeItems(cases.front().solved, listed.items);
  for (const SolvedCase& of : cases) {
    listed.values.emplace_back();
    ComputeCaseValues(of.solved, of.reactions, of.beams, listed.values.back());
  }
  return listed;
}

// The values of one kind in one case.
void ExpectKind(const SolvedCase& of, EnvelopeKind kind, const EnvelopeItems::Kind& items,
                const std::vector<double>& values) {
  const std::size_t n = ListComponents(kind).size();
  ASSERT_EQ(values.size(), n * items.items.size());
  for (std::size_t i = 0; i < items.items.size(); ++i) {
    const EnvelopeItem& item = items.items[i];
    const double* found = &values[n * i];
    if (kind == EnvelopeBeamStresses) {
      ExpectBeamStresses(of, item, found);
      // The same corners, taken from the one or the other shell beside them.
      const double detail = DetailPeak(of.solved.model, item.number);
      EXPECT_NEAR(found[4], detail, 1e-12 * detail);
      continue;
    }
    const std::vector<double> expected = ExpectedValues(of, kind, item);
    ASSERT_EQ(expected.size(), n);
    for (std::size_t c = 0; c < n; ++c) {
      if (!items.isAbsent.empty() && items.isAbsent[n * i + c] != 0) {
        EXPECT_TRUE(std::isnan(found[c]));
      } else {
        EXPECT_EQ(found[c], expected[c]) << kind << ' ' << i << ' ' << c;
      }
    }
  }
}

TEST(CaseEnvelopes, ValuesAreThoseOfTheCaseAlone) {
  for (std::uint32_t seed = 0; seed < korvex::test::Repeats(12); ++seed) {
    SCOPED_TRACE(seed);
    const std::vector<SolvedCase> cases = SolveRandomCases(seed, 2);
    const Listed listed = ListAll(cases);
    for (std::size_t k = 0; k < cases.size(); ++k) {
      for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
        ExpectKind(cases[k], static_cast<EnvelopeKind>(kind), listed.items.kinds[kind],
                   listed.values[k][kind]);
      }
    }
  }
}

// Each item stands where it is, and each has its components.
TEST(CaseEnvelopes, ItemsAreAllThatHaveResults) {
  std::size_t triangles = 0, freeDofs = 0;
  for (std::uint32_t seed = 0; seed < 12; ++seed) {
    SCOPED_TRACE(seed);
    const ModelText text = MakeGoodModel(seed);
    const SolvedCase of = SolveCase(text);
    EnvelopeItems items;
    ListEnvelopeItems(of.solved, items);
    EXPECT_EQ(items.kinds[EnvelopeDisplacements].items.size(), text.nodes.size());
    EXPECT_EQ(items.kinds[EnvelopeReactions].items.size(), of.reactions.supports.size());
    EXPECT_EQ(items.kinds[EnvelopeBeamForces].items.size(), 5 * text.beams.size());
    EXPECT_EQ(items.kinds[EnvelopeBeamStresses].items.size(), text.beams.size());
    const std::size_t shells = text.shells4.size() + text.shells3.size();
    EXPECT_EQ(items.kinds[EnvelopeShellForces].items.size(), shells);
    EXPECT_EQ(items.kinds[EnvelopeShellStresses].items.size(), shells);
    for (const EnvelopeItem& node : items.kinds[EnvelopeDisplacements].items) {
      EXPECT_EQ(node.place, text.nodes[At(node.number)]);
    }
    const auto& supports = items.kinds[EnvelopeReactions];
    for (std::size_t s = 0; s < supports.items.size(); ++s) {
      const Support& support = of.reactions.supports[s];
      EXPECT_EQ(supports.items[s].number, support.node);
      for (std::size_t d = 0; d < 6; ++d) {
        EXPECT_EQ(supports.isAbsent[6 * s + d] == 0, support.held[d] != 0);
        if (support.held[d] == 0) ++freeDofs;
      }
    }
    const auto& forces = items.kinds[EnvelopeShellForces];
    for (std::size_t e = 0; e < shells; ++e) {
      const EnvelopeItem& shell = forces.items[e];
      const bool isQuad = e < text.shells4.size();
      EXPECT_EQ(shell.holder, isQuad ? Holder::Shell4 : Holder::Shell3);
      EXPECT_EQ(At(shell.number), isQuad ? e : e - text.shells4.size());
      EXPECT_EQ(shell.place, ResultantsOf(of.solved.model, shell).centre.place);
      if (isQuad) continue;
      ++triangles;
      const std::vector<std::uint8_t> absent(forces.isAbsent.begin() + std::ptrdiff_t(8 * e),
                                             forces.isAbsent.begin() + std::ptrdiff_t(8 * e + 8));
      EXPECT_EQ(absent, (std::vector<std::uint8_t>{0, 0, 0, 0, 0, 0, 1, 1}));
    }
  }
  EXPECT_GT(triangles, 0U);
  EXPECT_GT(freeDofs, 0U);
}

// Every value of an envelope is found again in the results of its case alone, and no case goes
// beyond it. Two envelopes over different cases get the same values.
TEST(CaseEnvelopes, EachValueIsFoundAgainInItsCase) {
  for (std::uint32_t seed = 20; seed < 20 + korvex::test::Repeats(10); ++seed) {
    SCOPED_TRACE(seed);
    const std::vector<SolvedCase> cases = SolveRandomCases(seed, 4);
    const Listed listed = ListAll(cases);
    for (const std::vector<std::size_t>& members :
         {std::vector<std::size_t>{2, 0, 3}, std::vector<std::size_t>{1}}) {
      CaseEnvelopes envelopes;
      InitCaseEnvelopes(listed.items, envelopes);
      for (const std::size_t k : members) {
        AddCaseValues(listed.values[k], static_cast<std::int32_t>(k), envelopes);
      }
      for (std::size_t kind = 0; kind < EnvelopeKindCount; ++kind) {
        const Envelope& envelope = envelopes[kind];
        EXPECT_EQ(envelope.notFinite, 0U);
        const std::size_t n = envelope.components;
        for (std::size_t at = 0; at < envelope.items * n; ++at) {
          if (!envelope.isAbsent.empty() && envelope.isAbsent[at] != 0) continue;
          for (const std::size_t k : members) {
            EXPECT_LE(envelope.smallest[at], listed.values[k][kind][at]);
            EXPECT_GE(envelope.largest[at], listed.values[k][kind][at]);
          }
          const auto& low = listed.values[At(envelope.smallestCase[at])][kind];
          const auto& high = listed.values[At(envelope.largestCase[at])][kind];
          EXPECT_EQ(envelope.smallest[at], low[at]);
          EXPECT_EQ(envelope.largest[at], high[at]);
          const std::size_t first = at - at % n, bytes = n * sizeof(double);
          EXPECT_EQ(std::memcmp(&envelope.withSmallest[n * at], &low[first], bytes), 0);
          EXPECT_EQ(std::memcmp(&envelope.withLargest[n * at], &high[first], bytes), 0);
        }
      }
    }
  }
}

// A cantilever along x of the length L, clamped at x = 0, z up.
ModelText MakeCantilever(double L) {
  ModelText text;
  text.materials = {{210e3, 0.3, 0.0}};
  text.cSections = {{50.0, 5.0}};
  text.nodes = {{0.0, 0.0, 0.0}, {L, 0.0, 0.0}};
  ModelText::Beam beam;
  beam.BeamSecType = korvex::BeamSecTypeC;
  text.beams = {beam};
  text.restraints = {{0, {1, 1, 1, 1, 1, 1}}};
  return text;
}

// Case 7: P down at the tip, My = P (L - x), Vz = -P. Case 2: F along y and q down along the beam,
// My = q (L - x)^2 / 2, Vz = -q (L - x), Vy = F, Mz = F (L - x).
TEST(CaseEnvelopes, ACantileverByHand) {
  const double L = 1000.0, P = 300.0, F = 40.0, q = 0.5;
  ModelText down = MakeCantilever(L), side = down;
  down.forces = {{1, {0.0, 0.0, -P, 0.0, 0.0, 0.0}}};
  side.forces = {{1, {0.0, F, 0.0, 0.0, 0.0, 0.0}}};
  side.beamLoads = {{0, -q, -q}};
  const Listed listed = ListAll({SolveCase(down), SolveCase(side)});
  CaseEnvelopes envelopes;
  InitCaseEnvelopes(listed.items, envelopes);
  AddCaseValues(listed.values[0], 7, envelopes);
  AddCaseValues(listed.values[1], 2, envelopes);
  const Envelope& forces = envelopes[EnvelopeBeamForces];
  ASSERT_EQ(forces.items, 5U);
  const double tolerance = 1e-9 * P * L;  // rounding of the displacements
  for (std::size_t k = 0; k < 5; ++k) {
    const double x = L * static_cast<double>(k) / 4.0, rest = L - x;
    EXPECT_EQ(listed.items.kinds[EnvelopeBeamForces].items[k].place[0], x);
    // Vz is smallest, that is largest in size, with q near the clamped end and with P elsewhere.
    EXPECT_EQ(forces.smallestCase[6 * k + ForceVz], q * rest > P ? 2 : 7);
    if (k == 4) break;  // the moments are zero at the tip
    const std::size_t My = 6 * k + MomentMy;
    EXPECT_EQ(forces.largestCase[My], 7);  // q (L - x) / 2 < P
    EXPECT_EQ(forces.smallestCase[My], 2);
    const std::array<double, 6> at7{0, 0, -P, 0, P * rest, 0};
    const std::array<double, 6> at2{0, F, -q * rest, 0, q * rest * rest / 2, F * rest};
    for (std::size_t c = 0; c < 6; ++c) {
      EXPECT_NEAR(forces.withLargest[6 * My + c], at7[c], tolerance);
      EXPECT_NEAR(forces.withSmallest[6 * My + c], at2[c], tolerance);
    }
  }
  // The clamped end pushes up with P or qL, and takes P L.
  const Envelope& reactions = envelopes[EnvelopeReactions];
  EXPECT_NEAR(reactions.largest[2], q * L, tolerance / L);
  EXPECT_EQ(reactions.largestCase[2], 2);
  EXPECT_NEAR(reactions.withLargest[6 * 2 + 1], -F, tolerance / L);
  EXPECT_NEAR(reactions.smallest[4], -P * L, tolerance);
  EXPECT_EQ(reactions.smallestCase[4], 7);
}

TEST(CaseEnvelopes, NansGovernNothingAndAreCounted) {
  std::vector<SolvedCase> cases = SolveRandomCases(3, 2);
  for (double& u : cases[1].solved.model.Displacements) u = Nan;
  Model& model = cases[1].solved.model;
  for (auto& shell : model.Shell4Elements) shell.AvgStressTop[1][0] = Nan;
  for (auto& shell : model.Shell3Elements) shell.AvgStressTop[1][0] = Nan;
  ComputeReactions(cases[1].solved, cases[1].reactions);
  ComputeBeamForces(model, cases[1].beams);
  const Listed listed = ListAll(cases);
  CaseEnvelopes envelopes;
  InitCaseEnvelopes(listed.items, envelopes);
  AddCaseValues(listed.values[1], 1, envelopes);
  AddCaseValues(listed.values[0], 0, envelopes);
  const Envelope& displacements = envelopes[EnvelopeDisplacements];
  EXPECT_EQ(displacements.notFinite, model.Displacements.size());
  for (const std::int32_t number : displacements.largestCase) EXPECT_EQ(number, 0);
  EXPECT_GT(envelopes[EnvelopeReactions].notFinite, 0U);
  // One corner that is not a number spoils the element's values of that face: they are not hidden.
  const Envelope& stresses = envelopes[EnvelopeShellStresses];
  ASSERT_GT(stresses.items, 0U);
  for (std::size_t item = 0; item < stresses.items; ++item) {
    const double* of = &listed.values[1][EnvelopeShellStresses][5 * item];
    EXPECT_TRUE(std::isnan(of[0]));
    EXPECT_FALSE(std::isnan(of[1]));
    EXPECT_EQ(stresses.largestCase[5 * item], 0);
  }
}

TEST(CaseEnvelopes, RefusesWhatDoesNotBelongTogether) {
  const SolvedCase frame = SolveCase([] {
    ModelText text = MakeCantilever(100.0);
    text.forces = {{1, {0.0, 0.0, -1.0, 0.0, 0.0, 0.0}}};
    return text;
  }());
  CaseValues values;
  SolvedCase without = frame;
  without.solved.details = {};
  korvex::test::ExpectStop(
      [&] { ComputeCaseValues(without.solved, without.reactions, without.beams, values); },
      "The solved model has 0 detail models for 1 beam elements.");
  korvex::test::ExpectStop([&] { ComputeCaseValues(frame.solved, frame.reactions, {}, values); },
                           "The solved model has 0 section forces for 1 beam elements.");
  SolvedCase bare = frame;
  bare.solved.isHeld.clear();
  EnvelopeItems items;
  korvex::test::ExpectStop([&] { ListEnvelopeItems(bare.solved, items); },
                           "The supports of the solved model are not known.");
  ListEnvelopeItems(frame.solved, items);
  CaseEnvelopes envelopes;
  InitCaseEnvelopes(items, envelopes);
  const SolvedCase other = SolveCase(MakeGoodModel(1));
  ComputeCaseValues(other.solved, other.reactions, other.beams, values);
  EXPECT_THROW(AddCaseValues(values, 0, envelopes), korvex::Stop);
}

}  // namespace
}  // namespace kvx::test
