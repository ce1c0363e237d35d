// Detail models of beams against the same meshes written by hand as models of shells, and against
// beam theory. N, mm.
#include <algorithm>
#include <cmath>

#include "deck/model_tables.h"
#include "support/beam_sections.h"
#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

using test::TestSection;

constexpr double E = 206000.0, Mu = 0.3;

constexpr std::size_t My = 4;          // component of a load
constexpr std::size_t Ux = 0, Rx = 3;  // the first translation and rotation of six displacements

// The mid-lines of a cross-section, divided as detail models divide them: points (y, z), segments
// between two points, and the thicknesses that the segments refer to.
struct Outline {
  std::vector<std::array<double, 2>> points;
  struct Segment {
    int from, to, thickness;
  };
  std::vector<Segment> segments;
  std::vector<double> thicknesses;
  int steps = 0;  // divisions along the beam
};

struct DetailCase {
  TestSection section;
  double length = 0.0;
  Outline outline;
};

// Three segments over the web, and one to each side of it in the flange.
Outline OutlineOfT(double Hw, double Tw, double Bf, double Tf, int steps) {
  const double top = Hw + Tf / 2;
  return {{{0.0, 0.0}, {0.0, Hw / 3}, {0.0, 2 * Hw / 3}, {0.0, top}, {-Bf / 2, top}, {Bf / 2, top}},
          {{0, 1, 0}, {1, 2, 0}, {2, 3, 0}, {3, 4, 1}, {3, 5, 1}},
          {Tw, Tf},
          steps};
}

// Three segments over the web and one over the flange. `reach`: the flange's width, negative where
// the section is mirrored.
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
  // The steps along the beam are the length divided by that of the longest segment, rounded down.
  // Longest are the upper segment of T and L webs, 106, and a strip of the tube, 76.5.
  add("T 300 x 10 / 120 x 12", BeamSecTypeT, {300.0, 10.0, 120.0, 12.0},
      OutlineOfT(300.0, 10.0, 120.0, 12.0, 9));
  add("L 300 x 10 / 100 x 12", BeamSecTypeL, {300.0, 10.0, 100.0, 12.0},
      OutlineOfL(300.0, 10.0, 100.0, 12.0, 9));
  add("the same, mirrored, offset by 50", BeamSecTypeL, {300.0, 10.0, 100.0, 12.0},
      OutlineOfL(300.0, 10.0, -100.0, 12.0, 9));
  cases.back().section.mirrored = true;
  cases.back().section.BeamSecOz = 50.0;
  for (auto& point : cases.back().outline.points) point[1] += 50.0;
  add("tube R 100, T 8", BeamSecTypeC, {100.0, 8.0, 0.0, 0.0}, OutlineOfTube(100.0, 8.0, 13));
  return cases;
}

// Prescribed displacements of both ends. They are round numbers, so the six digits of the result
// file, from which the model by hand takes them, are exact.
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

// The same plates as shells, and arms from the end nodes to the outlines of the ends: tubes of a
// material that is far stiffer than the plates. The ends are moved by `u1` and `u2`. The nodes have
// the order of the detail model: first end, cross-section by cross-section, last end.
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
        test::Prescribe(model, first + i, u);  // it coincides with the end node
        continue;
      }
      ModelText::Beam arm;
      arm.node1 = end, arm.node2 = first + i;
      arm.orientation = {1.0, 0.0, 0.0};
      arm.material = 1;
      arm.BeamSecType = BeamSecTypeC;
      model.beams.push_back(arm);
    }
  };
  drive(0, 1, u1);
  drive(static_cast<int>(model.nodes.size()) - 1, 1 + outline.steps * points, u2);
  return model;
}

// The largest absolute value in the columns from..to - 1.
double Largest(const std::vector<Six>& table, std::size_t from, std::size_t to) {
  double largest = 0.0;
  for (const Six& row : table) {
    for (std::size_t d = from; d < to; ++d) largest = std::max(largest, std::fabs(row[d]));
  }
  return largest;
}

// The largest difference over the nodes. Translations are relative to the largest translation of
// `b`, rotations to its largest rotation.
double CompareDisplacements(const std::vector<Six>& a, const std::vector<Six>& b) {
  double worst = 0.0;
  for (std::size_t n = 0; n < a.size(); ++n) {
    for (std::size_t d = 0; d < 6; ++d) {
      const double size = d < Rx ? Largest(b, Ux, Rx) : Largest(b, Rx, 6);
      worst = std::max(worst, std::fabs(a[n][d] - b[n][d]) / size);
    }
  }
  return worst;
}

struct StressComparison {
  double largestA = 0.0, largestB = 0.0;  // absolute values of any component
  double difference = 0.0;                // the largest one, relative to largestB
};

// Over all shells, corners, faces and components.
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

// The files of both models have six digits, which is 1e-5 at most. The rest is the strain of the
// arms by hand: they must be far less stiff than the supports, so they cannot be rigid.
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

// A T beam as a cantilever of one element under a moment My, which bends it in the plane of its
// web. SX of the flange where it meets the web is compared with M c / I, at the clamped end and in
// the middle. c is the distance from the centroid to the flange's mid-plane.
std::string CompareBeamTheory() {
  const std::array<double, 4> d{300.0, 10.0, 120.0, 12.0};
  TestSection section;
  section.BeamSecType = BeamSecTypeT;
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
    model.forces = {{1, SingleLoad(My, M)}};
    const Results results = RunModel(model, Read::Details);
    const Detail& detail = results.details[0];
    const auto stressAt = [&](double x) {
      double sum = 0.0;
      int count = 0;
      for (std::size_t e = 0; e < detail.shells.size(); ++e) {
        if (e % 5 < 3) continue;  // of five shells at each step the first three are the web
        for (const Corner& corner : detail.shells[e]) {
          const Point3& p = detail.nodes[static_cast<std::size_t>(corner.node)];
          if (std::fabs(p[0] - x) > 0.1 || std::fabs(p[1]) > 0.1) continue;
          sum += MembraneSX(corner);
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
