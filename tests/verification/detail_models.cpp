// The detail model of a beam against the same plates modelled by hand as shells of the structure,
// and against beam theory.
#include <algorithm>
#include <cmath>

#include "support/beam_sections.h"
#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/comparison.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

using test::TestSection;

constexpr double E = 206000.0, Mu = 0.3;  // N, mm

// A cross-section's mid-lines, as the detail models divide them: points (y, z) and segments.
struct Outline {
  std::vector<std::array<double, 2>> points;
  struct Segment {
    int from, to, thickness;
  };
  std::vector<Segment> segments;
  std::vector<double> thicknesses;
  int steps = 0;  // along the beam
};

struct DetailCase {
  TestSection section;
  double length = 0.0;
  Outline outline;
};

// Three segments over the web, one to each side of a T flange, or one over an L flange's width.
Outline OutlineOfT(double Hw, double Tw, double Bf, double Tf, int steps) {
  const double top = Hw + Tf / 2;
  return {{{0.0, 0.0}, {0.0, Hw / 3}, {0.0, 2 * Hw / 3}, {0.0, top}, {-Bf / 2, top}, {Bf / 2, top}},
          {{0, 1, 0}, {1, 2, 0}, {2, 3, 0}, {3, 4, 1}, {3, 5, 1}},
          {Tw, Tf},
          steps};
}

// `reach`: the flange's width, negative where it is mirrored.
Outline OutlineOfL(double Hw, double Tw, double reach, double Tf, int steps) {
  const double top = Hw + Tf / 2;
  return {{{0.0, 0.0}, {0.0, Hw / 3}, {0.0, 2 * Hw / 3}, {0.0, top}, {reach, top}},
          {{0, 1, 0}, {1, 2, 0}, {2, 3, 0}, {3, 4, 1}},
          {Tw, Tf},
          steps};
}

// Eight flat strips.
Outline OutlineOfTube(double R, double T, int steps) {
  Outline outline{{}, {}, {T}, steps};
  for (int i = 0; i < 8; ++i) {
    outline.points.push_back({R * std::cos(Pi / 4 * i), R * std::sin(Pi / 4 * i)});
    outline.segments.push_back({i, (i + 1) % 8, 0});
  }
  return outline;
}

std::vector<DetailCase> AllCases() {
  constexpr double Length = 1000.0;
  std::vector<DetailCase> cases;
  const auto add = [&](const std::string& name, int type, const std::array<double, 4>& dimensions,
                       const Outline& outline) {
    DetailCase c;
    c.section.name = name;
    c.section.BeamSecType = type;
    c.section.dimensions = dimensions;
    c.length = Length;
    c.outline = outline;
    cases.push_back(c);
  };
  // The steps along the beam are the length over the longest segment, cut to a whole number: 106 of
  // the T and L webs, 76.5 of the tube's strips.
  add("T 300 x 10 / 120 x 12", 0, {300.0, 10.0, 120.0, 12.0},
      OutlineOfT(300.0, 10.0, 120.0, 12.0, 9));
  add("L 300 x 10 / 100 x 12", 1, {300.0, 10.0, 100.0, 12.0},
      OutlineOfL(300.0, 10.0, 100.0, 12.0, 9));
  add("the same, mirrored, offset by 50", 1, {300.0, 10.0, 100.0, 12.0},
      OutlineOfL(300.0, 10.0, -100.0, 12.0, 9));
  cases.back().section.mirrored = true;
  cases.back().section.BeamSecOz = 50.0;
  for (auto& point : cases.back().outline.points) point[1] += 50.0;
  add("tube R 100, T 8", 2, {100.0, 8.0, 0.0, 0.0}, OutlineOfTube(100.0, 8.0, 13));
  return cases;
}

// Both ends are moved, by round numbers: the six digits in which the file of displacements hands
// them on to the model by hand lose nothing.
constexpr Six FirstEnd{0.0, 0.0, 0.0, 0.0, 0.0, 0.0};
constexpr Six LastEnd{0.1, 0.3, -0.2, 1e-3, 5e-4, -2e-4};

// One beam along X.
ModelText BuildBeam(const DetailCase& c) {
  ModelText model;
  model.materials = {{E, Mu, 0.0}};
  model.nodes = {{0.0, 0.0, 0.0}, {c.length, 0.0, 0.0}};
  model.beams = {{}};
  test::UseSection(c.section, model, model.beams[0]);
  test::Prescribe(model, 0, FirstEnd);
  test::Prescribe(model, 1, LastEnd);
  return model;
}

// The same plates, and arms from the end nodes to the ends' outlines, tubes of a material so stiff
// that no plate bends them; the ends are moved by `u1` and `u2`. Nodes in the order of the detail
// model: first end, station by station, last end.
ModelText BuildShells(const DetailCase& c, const Six& u1, const Six& u2) {
  constexpr double ArmE = 2e14;
  const Outline& outline = c.outline;
  const int points = static_cast<int>(outline.points.size());
  ModelText model;
  model.materials = {{E, Mu, 0.0}, {ArmE, Mu, 0.0}};
  model.thicknesses = outline.thicknesses;
  model.cSections = {{5.0, 1.0}};
  model.nodes.push_back({0.0, 0.0, 0.0});
  for (int s = 0; s <= outline.steps; ++s) {
    for (const auto& p : outline.points) {
      model.nodes.push_back({c.length * s / outline.steps, p[0], p[1]});
    }
  }
  model.nodes.push_back({c.length, 0.0, 0.0});
  for (int s = 0; s < outline.steps; ++s) {
    const int before = 1 + s * points, here = before + points;
    for (const auto& segment : outline.segments) {
      model.shells4.push_back(
          {{before + segment.from, here + segment.from, here + segment.to, before + segment.to},
           0,
           segment.thickness});
    }
  }
  const auto drive = [&](int end, int first, const Six& u) {
    test::Prescribe(model, end, u);
    for (int i = 0; i < points; ++i) {
      const auto& p = outline.points[static_cast<std::size_t>(i)];
      if (p[0] == 0.0 && p[1] == 0.0) {
        test::Prescribe(model, first + i, u);  // an arm without length
        continue;
      }
      ModelText::Beam arm;
      arm.node1 = end, arm.node2 = first + i;
      arm.orientation = {1.0, 0.0, 0.0};
      arm.material = 1;
      arm.BeamSecType = 2;
      model.beams.push_back(arm);
    }
  };
  drive(0, 1, u1);
  drive(static_cast<int>(model.nodes.size()) - 1, 1 + outline.steps * points, u2);
  return model;
}

double Largest(const std::vector<Six>& table, std::size_t from, std::size_t to) {
  double largest = 0.0;
  for (const Six& row : table) {
    for (std::size_t d = from; d < to; ++d) largest = std::max(largest, std::fabs(row[d]));
  }
  return largest;
}

// The largest difference over the nodes, relative to the largest displacement, or rotation.
double CompareDisplacements(const std::vector<Six>& a, const std::vector<Six>& b) {
  double worst = 0.0;
  for (std::size_t n = 0; n < a.size(); ++n) {
    for (std::size_t d = 0; d < 6; ++d) {
      const double size = d < 3 ? Largest(b, 0, 3) : Largest(b, 3, 6);
      worst = std::max(worst, std::fabs(a[n][d] - b[n][d]) / size);
    }
  }
  return worst;
}

struct StressComparison {
  double largestA = 0.0, largestB = 0.0;  // of any component
  double difference = 0.0;                // relative to the largest
};

StressComparison CompareStresses(const std::vector<Corners>& a, const std::vector<Corners>& b) {
  StressComparison c;
  for (std::size_t e = 0; e < a.size(); ++e) {
    for (std::size_t k = 0; k < a[e].size(); ++k) {
      for (std::size_t i = 0; i < 12; ++i) {
        const double x = i < 6 ? a[e][k].top[i] : a[e][k].bottom[i - 6];
        const double y = i < 6 ? b[e][k].top[i] : b[e][k].bottom[i - 6];
        c.largestA = std::max(c.largestA, std::fabs(x));
        c.largestB = std::max(c.largestB, std::fabs(y));
        c.difference = std::max(c.difference, std::fabs(x - y));
      }
    }
  }
  c.difference /= c.largestB;
  return c;
}

// Both models' files have six digits. The arms by hand are less stiff than those of the detail
// models, by far not as stiff as the supports: their strain is the rest.
constexpr double Agreement = 5e-4;

Row CompareCase(const DetailCase& c) {
  const Results beam = RunModel(BuildBeam(c), Read::Details);
  const Detail& detail = beam.details[0];
  const Results hand =
      RunModel(BuildShells(c, beam.displacements[0], beam.displacements[1]), Read::Stresses);
  const StressComparison stresses = CompareStresses(detail.shells, hand.averaged);
  return {
      c.section.name,
      std::to_string(detail.nodes.size()) + " nodes, " + std::to_string(detail.shells.size()) +
          " shells",
      Figure(stresses.largestA),
      Figure(stresses.largestB),
      RoundingFigure(stresses.difference, Agreement),
      RoundingFigure(CompareDisplacements(detail.displacements, hand.displacements), Agreement)};
}

std::string CompareHandModels() {
  std::vector<Row> rows{{"", "mesh", "largest stress, detail model", "the same, by hand",
                         "largest difference of a stress", "of a displacement"}};
  for (const DetailCase& c : AllCases()) rows.push_back(CompareCase(c));
  return FormatTable(rows);
}

// A T beam as a cantilever of one element under a moment My that bends it in its web's plane: SX of
// the flange above the web over M c / I, at the clamped end and in the middle.
// c: to the flange's mid-plane.
std::string CompareBeamTheory() {
  const std::array<double, 4> d{300.0, 10.0, 120.0, 12.0};
  TestSection section;
  section.dimensions = d;
  const test::SectionNumbers numbers = test::ComputeNumbers(section);
  const double M = 1e7, c = d[0] + d[3] / 2 - static_cast<double>(numbers.ez);
  const double exact = M * c / static_cast<double>(numbers.Iy);
  std::vector<Row> rows{{"length of the beam", "M c / I", "at the end", "result / reference",
                         "in the middle", "result / reference"}};
  for (const double length : {212.0, 424.0, 848.0, 1696.0}) {
    ModelText model;
    model.materials = {{E, Mu, 0.0}};
    model.nodes = {{0.0, 0.0, 0.0}, {length, 0.0, 0.0}};
    model.beams = {{}};
    test::UseSection(section, model, model.beams[0]);
    model.restraints = {{0, Clamped}};
    model.forces = {{1, {0.0, 0.0, 0.0, 0.0, M, 0.0}}};
    const Results results = RunModel(model, Read::Details);
    const Detail& detail = results.details[0];
    const auto stressAt = [&](double x) {
      double sum = 0.0;
      int count = 0;
      for (std::size_t e = 0; e < detail.shells.size(); ++e) {
        if (e % 5 < 3) continue;  // the web's segments
        for (const Corner& corner : detail.shells[e]) {
          const Point3& p = detail.nodes[static_cast<std::size_t>(corner.node)];
          if (std::fabs(p[0] - x) > 0.1 || std::fabs(p[1]) > 0.1) continue;
          sum += (corner.top[0] + corner.bottom[0]) / 2;
          ++count;
        }
      }
      return sum / count;
    };
    const double end = stressAt(0.0), middle = stressAt(length / 2);
    rows.push_back({std::to_string(static_cast<int>(length)), Figure(exact), Figure(end),
                    Ratio(end / exact), Figure(middle), Ratio(middle / exact)});
  }
  return FormatTable(rows);
}

}  // namespace

Fillings ComputeDetailModels(Extent /*extent*/) {
  return {{"table:shells by hand", CompareHandModels()},
          {"table:beam theory", CompareBeamTheory()}};
}

}  // namespace korvex::book
