// Maxima against brute force on random models: every value of every element is listed, sorted and
// cut; and what is done with numbers that are none.
#include "audit/maxima.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <tuple>

#include "audit/plane_tensor.h"
#include "beamshell/generate_beam_shells.h"
#include "results/average_stresses.h"
#include "results/corner_stress.h"
#include "results/shell_stresses.h"
#include "support/dof_names.h"
#include "support/expect_stop.h"
#include "support/good_models.h"
#include "support/shell_mesh.h"
#include "support/solve_model.h"

namespace kvx::test {
namespace {

using korvex::Model, korvex::StressVector;
using korvex::test::Cells, korvex::test::ModelText;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// All results of a run, in memory.
Model SolveWhole(const ModelText& text) {
  Model model;
  SolveModel(text, model);
  RecoverShellStresses(model);
  AverageNodeStresses(model);
  GenerateBeamShells(model);
  return model;
}

// One value of one element: what brute force lists.
struct Value {
  double value;
  Holder holder;
  std::int32_t element, corner, node;
  Face face;
};

// The quantities of a shell's corner, each with its face.
std::vector<std::pair<double, Face>> ShellValues(Quantity quantity, const StressVector& top,
                                                 const StressVector& bottom,
                                                 const korvex::ElementFrame& frame) {
  StressVector middle{}, bending{};
  for (std::size_t i = 0; i < 6; ++i) {
    middle[i] = 0.5 * (top[i] + bottom[i]);
    bending[i] = 0.5 * (top[i] - bottom[i]);
  }
  const auto up = FindPrincipalValues(PlaneOf(StressInFrame(frame, top)));
  const auto low = FindPrincipalValues(PlaneOf(StressInFrame(frame, bottom)));
  const double upper = korvex::EquivalentStress(top), lower = korvex::EquivalentStress(bottom);
  const std::map<Quantity, std::vector<std::pair<double, Face>>> values{
      {Quantity::VonMises, {{upper, Face::Upper}, {lower, Face::Lower}}},
      {Quantity::VonMisesUpper, {{upper, Face::Upper}}},
      {Quantity::VonMisesLower, {{lower, Face::Lower}}},
      {Quantity::VonMisesMiddle, {{korvex::EquivalentStress(middle), Face::Middle}}},
      {Quantity::VonMisesBending, {{korvex::EquivalentStress(bending), Face::Middle}}},
      {Quantity::LargestPrincipal, {{up.larger, Face::Upper}, {low.larger, Face::Lower}}},
      {Quantity::SmallestPrincipal, {{up.smaller, Face::Upper}, {low.smaller, Face::Lower}}}};
  return values.at(quantity);
}

template <typename Shells>
void ListShells(const Shells& shells, const std::vector<std::int32_t>& nodes, Holder holder,
                Quantity quantity, bool averaged, std::vector<Value>& list) {
  std::int32_t e = 0;
  for (const auto& shell : shells) {
    for (std::size_t k = 0; k < shell.NodeStressTop.size(); ++k) {
      const auto& top = averaged ? shell.AvgStressTop[k] : shell.NodeStressTop[k];
      const auto& bottom = averaged ? shell.AvgStressBottom[k] : shell.NodeStressBottom[k];
      const auto node = nodes[static_cast<std::size_t>(e) * shell.NodeStressTop.size() + k];
      for (const auto& [value, face] : ShellValues(quantity, top, bottom, shell.Frame)) {
        list.push_back({value, holder, e, static_cast<std::int32_t>(k), node, face});
      }
    }
    ++e;
  }
}

void ListNodes(const Model& model, Quantity quantity, std::vector<Value>& list) {
  for (std::int32_t n = 0; n < model.Tables.NPOIN; ++n) {
    const auto u = korvex::test::NodeDisplacements(model, n);
    const double size = std::sqrt(u[0] * u[0] + u[1] * u[1] + u[2] * u[2]);
    const double values[] = {size, u[0], u[1], u[2], u[3], u[4], u[5]};
    const auto which = static_cast<int>(quantity) - static_cast<int>(Quantity::DisplacementSize);
    list.push_back({values[which], Holder::Node, n, -1, n, Face::Upper});
  }
}

constexpr Quantity ShellQuantities[] = {Quantity::VonMises,         Quantity::VonMisesUpper,
                                        Quantity::VonMisesLower,    Quantity::VonMisesMiddle,
                                        Quantity::VonMisesBending,  Quantity::LargestPrincipal,
                                        Quantity::SmallestPrincipal};
constexpr Quantity NodeQuantities[] = {Quantity::DisplacementSize,
                                       Quantity::Ux,
                                       Quantity::Uy,
                                       Quantity::Uz,
                                       Quantity::Rx,
                                       Quantity::Ry,
                                       Quantity::Rz};

bool IsOfNodes(Quantity quantity) { return quantity >= Quantity::DisplacementSize; }

double RankOf(Quantity quantity, double value) {
  if (quantity == Quantity::SmallestPrincipal) return -value;
  return quantity > Quantity::DisplacementSize ? std::fabs(value) : value;
}

// Sorts all values, keeps the first of each element, and of these the first n. Values of one
// element keep their order (corner by corner, upper face first): the sort is stable.
std::vector<Value> SortAndCut(Quantity quantity, std::vector<Value> list, std::size_t n) {
  std::stable_sort(list.begin(), list.end(), [quantity](const Value& a, const Value& b) {
    return std::tuple(-RankOf(quantity, a.value), a.holder, a.element) <
           std::tuple(-RankOf(quantity, b.value), b.holder, b.element);
  });
  std::set<std::pair<Holder, std::int32_t>> seen;
  std::vector<Value> kept;
  for (const Value& value : list) {
    if (kept.size() == n) break;
    if (seen.insert({value.holder, value.element}).second) kept.push_back(value);
  }
  return kept;
}

// The values of all elements of the group that a list stands for.
std::vector<Value> ListGroup(const Model& model, const PeakList& peaks, bool averaged,
                             const std::vector<std::int32_t>& parts) {
  std::vector<Value> all, group;
  const auto& t = model.Tables;
  if (IsOfNodes(peaks.quantity)) {
    ListNodes(model, peaks.quantity, all);
  } else {
    ListShells(model.Shell4Elements, t.Shell4Nodes, Holder::Shell4, peaks.quantity, averaged, all);
    ListShells(model.Shell3Elements, t.Shell3Nodes, Holder::Shell3, peaks.quantity, averaged, all);
  }
  for (const Value& value : all) {
    const auto e = static_cast<std::size_t>(value.element);
    const bool isQuad = value.holder == Holder::Shell4;
    bool belongs = peaks.grouping == Grouping::Whole;
    if (peaks.grouping == Grouping::Part) {
      belongs = parts[e + (isQuad ? 0 : model.Shell4Elements.size())] == peaks.group;
    } else if (peaks.grouping != Grouping::Whole) {
      const auto& row = isQuad ? t.Shell4Properties[e] : t.Shell3Properties[e];
      belongs =
          peaks.group == (peaks.grouping == Grouping::Material ? row.material : row.thickness);
    }
    if (belongs) group.push_back(value);
  }
  return group;
}

std::size_t CountHolders(const std::vector<Value>& values) {
  std::set<std::pair<Holder, std::int32_t>> holders;
  for (const Value& value : values) holders.insert({value.holder, value.element});
  return holders.size();
}

void ExpectPeaks(const Model& model, const PeakList& list, const std::vector<Value>& group,
                 std::size_t n) {
  const std::vector<Value> expected = SortAndCut(list.quantity, group, n);
  ASSERT_EQ(list.peaks.size(), expected.size());
  EXPECT_EQ(list.compared, static_cast<std::int64_t>(CountHolders(group)));
  EXPECT_EQ(list.notFinite, 0);
  for (std::size_t i = 0; i < expected.size(); ++i) {
    const Peak& peak = list.peaks[i];
    // The size of a displacement is computed in another way here.
    EXPECT_NEAR(peak.value, expected[i].value, 1e-15 * std::fabs(expected[i].value));
    ASSERT_EQ(peak.holder, expected[i].holder) << i;
    ASSERT_EQ(peak.element, expected[i].element) << i;
    EXPECT_EQ(peak.corner, expected[i].corner);
    EXPECT_EQ(peak.node, expected[i].node);
    if (peak.holder != Holder::Node) {
      EXPECT_EQ(peak.face, expected[i].face);
    }
    const auto& node = model.Tables.Nodes[static_cast<std::size_t>(peak.node)];
    EXPECT_EQ(peak.place, (korvex::Vector3{node.x, node.y, node.z}));
  }
}

// Some part number for each element, also negative ones and gaps.
std::vector<std::int32_t> RollParts(Dice& dice, const Model& model) {
  std::vector<std::int32_t> parts(model.Shell4Elements.size() + model.Shell3Elements.size() +
                                  model.BeamElements.size());
  for (std::int32_t& part : parts) part = 10 * RollInteger(dice, -2, 3);
  return parts;
}

TEST(Maxima, AreThoseOfBruteForce) {
  std::size_t lists = 0;
  for (std::uint32_t seed = 1; seed <= 15; ++seed) {
    const Model model = SolveWhole(MakeGoodModel(seed));
    Dice dice = MakeDice(seed);
    const std::vector<std::int32_t> parts = RollParts(dice, model);
    MaximaRequest request;
    request.quantities.assign(std::begin(ShellQuantities), std::end(ShellQuantities));
    request.quantities.insert(request.quantities.end(), std::begin(NodeQuantities),
                              std::end(NodeQuantities));
    request.groupings = {Grouping::Whole, Grouping::Thickness, Grouping::Material, Grouping::Part};
    request.slots = seed % 2 == 0 ? StressSlots::Averaged : StressSlots::Recovered;
    request.count = static_cast<std::size_t>(RollInteger(dice, 1, 30));
    std::vector<PeakList> found;
    FindMaxima(model, request, parts, {}, found);
    for (const PeakList& list : found) {
      ExpectPeaks(model, list, ListGroup(model, list, seed % 2 == 0, parts), request.count);
      ++lists;
    }
    // No group is left out: the elements of the groups are those of the model, of each quantity.
    std::map<std::pair<Quantity, Grouping>, std::int64_t> compared;
    for (const PeakList& list : found) compared[{list.quantity, list.grouping}] += list.compared;
    for (const Quantity quantity : ShellQuantities) {
      for (const Grouping grouping : request.groupings) {
        EXPECT_EQ((compared[{quantity, grouping}]),
                  model.Tables.NELEM_S_4ND + model.Tables.NELEM_S_3ND);
      }
    }
  }
  EXPECT_GT(lists, 500U);
}

// A plate of n quads in a row with these von Mises stresses: a tension along x on both faces, in
// all corners, in both slots.
Model PlateWithStresses(const std::vector<double>& stresses) {
  ModelText text = korvex::test::BuildGrid(1, static_cast<int>(stresses.size()), Cells::Quads,
                                           [](double s, double t) {
                                             return korvex::test::Point3{t, 1 - s, 0.0};
                                           });
  text.materials = {{2e5, 0.3, 0.0}};
  text.thicknesses = {0.01};
  Model model;
  AssembleModel(text, model);
  model.Displacements.assign(6 * model.Tables.Nodes.size(), 0.0);
  for (std::size_t e = 0; e < stresses.size(); ++e) {
    auto& element = model.Shell4Elements[e];
    const StressVector stress{stresses[e], 0.0, 0.0, 0.0, 0.0, 0.0};
    for (auto* slot : {&element.NodeStressTop, &element.NodeStressBottom, &element.AvgStressTop,
                       &element.AvgStressBottom}) {
      slot->fill(stress);
    }
  }
  return model;
}

PeakList FindOne(const Model& model, const MaximaRequest& request) {
  std::vector<PeakList> lists;
  FindMaxima(model, request, {}, {}, lists);
  return lists.at(0);
}

std::vector<std::int32_t> ElementsOf(const std::vector<Peak>& peaks) {
  std::vector<std::int32_t> elements;
  elements.reserve(peaks.size());
  for (const Peak& peak : peaks) elements.push_back(peak.element);
  return elements;
}

using Numbers = std::vector<std::int32_t>;

// Equal values stand by number, and where the list is full the lower numbers stay.
TEST(Maxima, StandByNumberWhereTheyAreEqual) {
  const Model model = PlateWithStresses({5.0, 7.0, 5.0, 7.0, 5.0, 7.0});
  MaximaRequest request;
  request.quantities = {Quantity::VonMises};
  request.count = 4;
  const PeakList list = FindOne(model, request);
  EXPECT_EQ(ElementsOf(list.peaks), (Numbers{1, 3, 5, 0}));
  for (const Peak& peak : list.peaks) {
    EXPECT_EQ(peak.corner, 0);
    EXPECT_EQ(peak.face, Face::Upper);
  }
  request.count = 0;
  EXPECT_TRUE(FindOne(model, request).peaks.empty());
  EXPECT_EQ(FindOne(model, request).compared, 6);
  request.count = 100;
  EXPECT_EQ(FindOne(model, request).peaks.size(), 6U);
}

TEST(Maxima, CountElementsBeyondTheYieldStress) {
  const Model model = PlateWithStresses({100.0, 235.0, 240.0, 300.0});
  MaximaRequest request;
  request.quantities = {Quantity::VonMises};
  request.count = 1;
  EXPECT_EQ(FindOne(model, request).beyondYield, 0);
  request.yield = 235.0;  // reached, not exceeded, by one
  EXPECT_EQ(FindOne(model, request).beyondYield, 2);
  EXPECT_DOUBLE_EQ(ComputeUtilisation(FindOne(model, request).peaks[0].value, 235.0), 300.0 / 235);
  EXPECT_DOUBLE_EQ(ComputeUtilisation(-470.0, 235.0), 2.0);
}

// A NaN at one corner: the others still win; NaN all over: the element is only named. Infinities
// likewise, and stresses whose squares are.
TEST(Maxima, NameNumbersThatAreNotFiniteApart) {
  Model model = PlateWithStresses({1.0, 2.0, 9.0, 4.0, 5.0, 6.0, 3.0});
  model.Shell4Elements[2].AvgStressTop[1][0] = Nan;
  model.Shell4Elements[2].AvgStressBottom[3][0] = Nan;
  model.Shell4Elements[4].AvgStressTop[0][0] = Inf;
  const StressVector nans{Nan, Nan, Nan, Nan, Nan, Nan}, huge{1e200, 0.0, 0.0, 0.0, 0.0, 0.0};
  model.Shell4Elements[5].AvgStressTop.fill(nans);
  model.Shell4Elements[5].AvgStressBottom.fill(nans);
  model.Shell4Elements[6].AvgStressBottom.fill(huge);
  MaximaRequest request;
  request.quantities = {Quantity::VonMises};
  request.count = 3;
  const PeakList list = FindOne(model, request);
  EXPECT_EQ(ElementsOf(list.peaks), (Numbers{2, 4, 3}));
  EXPECT_EQ(list.compared, 6);
  EXPECT_EQ(list.notFinite, 4);
  EXPECT_EQ(ElementsOf(list.firstNotFinite), (Numbers{2, 4, 5}));
  EXPECT_EQ(list.firstNotFinite[0].corner, 1);
  EXPECT_EQ(list.firstNotFinite[0].face, Face::Upper);
  EXPECT_TRUE(std::isnan(list.firstNotFinite[0].value));
  EXPECT_EQ(list.firstNotFinite[0].node, model.Tables.Shell4Nodes[4 * 2 + 1]);
  // The other slots are sound.
  request.slots = StressSlots::Recovered;
  EXPECT_EQ(ElementsOf(FindOne(model, request).peaks), (Numbers{2, 5, 4}));
  EXPECT_EQ(FindOne(model, request).notFinite, 0);
}

TEST(Maxima, NameNodesWhoseDisplacementsAreNotFinite) {
  Model model = PlateWithStresses({1.0, 2.0});
  for (std::size_t n = 0; n < 6; ++n) {
    model.Displacements[6 * n] = static_cast<double>(n) - 3.5;
  }
  model.Displacements[6 * 5] = Nan;
  MaximaRequest request;
  request.count = 2;
  request.quantities = {Quantity::Ux};
  PeakList list = FindOne(model, request);
  EXPECT_EQ(ElementsOf(list.peaks), (Numbers{0, 1}));
  EXPECT_EQ(list.peaks[0].value, -3.5);  // the largest by size, with its sign
  EXPECT_EQ(ElementsOf(list.firstNotFinite), (Numbers{5}));
  request.quantities = {Quantity::Uy};
  EXPECT_EQ(FindOne(model, request).notFinite, 0);
  request.quantities = {Quantity::DisplacementSize};
  request.yield = 1.0;  // of stresses alone
  list = FindOne(model, request);
  EXPECT_EQ(list.beyondYield, 0);
  EXPECT_EQ(list.peaks[0].value, 3.5);
  EXPECT_EQ(list.notFinite, 1);
}

// A tension and a compression: the largest principal stress is the tension, the smallest one the
// compression, though it is larger in size; and the faces are told apart.
TEST(Maxima, KnowTensionFromCompression) {
  Model model = PlateWithStresses({10.0, -30.0, 20.0});
  model.Shell4Elements[2].AvgStressBottom.fill({-50.0, 0.0, 0.0, 0.0, 0.0, 0.0});
  MaximaRequest request;
  request.quantities = {Quantity::LargestPrincipal};
  PeakList list = FindOne(model, request);
  EXPECT_EQ(ElementsOf(list.peaks), (Numbers{2, 0, 1}));
  EXPECT_EQ(list.peaks[0].value, 20.0);
  EXPECT_EQ(list.peaks[2].value, 0.0);
  request.quantities = {Quantity::SmallestPrincipal};
  list = FindOne(model, request);
  EXPECT_EQ(ElementsOf(list.peaks), (Numbers{2, 1, 0}));
  EXPECT_EQ(list.peaks[0].value, -50.0);
  EXPECT_EQ(list.peaks[0].face, Face::Lower);
  request.quantities = {Quantity::VonMisesUpper};
  EXPECT_EQ(ElementsOf(FindOne(model, request).peaks), (Numbers{1, 2, 0}));
  request.quantities = {Quantity::VonMisesMiddle};  // 10, 30, 15
  EXPECT_EQ(FindOne(model, request).peaks[1].value, 15.0);
  request.quantities = {Quantity::VonMisesBending};  // 0, 0, 35
  EXPECT_EQ(FindOne(model, request).peaks[0].value, 35.0);
}

TEST(Maxima, OfNothingAreEmpty) {
  const Model model;
  MaximaRequest request;
  request.quantities = {Quantity::VonMises, Quantity::BeamVonMises, Quantity::Ux};
  request.groupings = {Grouping::Whole, Grouping::Thickness, Grouping::Section, Grouping::Part};
  std::vector<PeakList> lists;
  FindMaxima(model, request, {}, {}, lists);
  ASSERT_EQ(lists.size(), 3U);  // those of the whole model
  for (const PeakList& list : lists) {
    EXPECT_TRUE(list.peaks.empty());
    EXPECT_EQ(list.compared, 0);
  }
}

TEST(Maxima, StopWhereTheModelOrTheRequestDoesNotFit) {
  using korvex::test::ExpectStop;
  Model model = PlateWithStresses({1.0, 2.0});
  MaximaRequest request;
  request.quantities = {Quantity::VonMises};
  std::vector<PeakList> lists;
  std::vector<std::int32_t> parts{0};
  const auto work = [&] { FindMaxima(model, request, parts, {}, lists); };
  request.groupings = {Grouping::Part};
  ExpectStop(work, "There are 1 part numbers for 2 elements.");
  request.groupings = {Grouping::Whole};
  request.yield = -1.0;
  ExpectStop(work, "The yield stress is -1; it must be a positive number.");
  request.yield = Nan;
  ExpectStop(work, "The yield stress is nan; it must be a positive number.");
  ExpectStop([] { ComputeUtilisation(1.0, 0.0); },
             "The yield stress is 0; it must be a positive number.");
  request.yield = 0.0;
  model.Tables.Shell4Nodes[5] = 77;
  ExpectStop(work, "Four-node shell element 1 refers to node 77; there are 6 nodal points.");
  model.Tables.Shell4Nodes[5] = 0;
  model.Tables.Shell4Properties.pop_back();
  ExpectStop(work, "The solved model has 1 rows of four-node shell elements, not 2.");
  model.Displacements.clear();
  ExpectStop(work, "The solved model has 0 displacements, not 36.");
}

}  // namespace
}  // namespace kvx::test
