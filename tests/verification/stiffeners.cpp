// A plate with one T stiffener under pressure, the stiffener modelled as an offset beam and as
// shells. N, mm.
#include <cmath>

#include "deck/model_tables.h"
#include "verification/book.h"
#include "verification/chapters.h"
#include "verification/meshes.h"

namespace korvex::book {

namespace {

// Half of the plate's length is modelled, from the plane of symmetry at x = 0.
constexpr double HalfLength = 1200.0, HalfWidth = 400.0, Plate = 10.0;
constexpr double Hw = 140.0, Tw = 9.0, Bf = 80.0, Tf = 12.0;
constexpr double Pressure = 0.02;

constexpr std::size_t Uy = 1, Uz = 2;  // dofs

// The plate: n elements over half the width (along y), 3 n along x. Nodes are numbered along y
// first.
ModelText BuildPlate(int n) {
  ModelText model = test::BuildGrid(2 * n, 3 * n, Cells::Quads, [](double s, double t) {
    return Point3{HalfLength * t, HalfWidth * (1 - 2 * s), 0.0};
  });
  // s runs along -y and t along x, so the normal is +z.
  model.materials = {{206000.0, 0.3, 0.0}};
  model.thicknesses = {Plate, Tw, Tf};
  PressShells(model, -Pressure);
  return model;
}

void SupportPlate(ModelText& model) {
  FixWhere(
      model, [](const Point3& p) { return Same(p[0], 0.0); }, MirrorX);
  const Where edges = [](const Point3& p) {
    return Same(p[2], 0.0) &&
           (Same(p[0], HalfLength) || Same(p[1], HalfWidth) || Same(p[1], -HalfWidth));
  };
  FixWhere(model, edges, Hold({Uz}));
  model.restraints.push_back({NodeAt(model, {0.0, 0.0, 0.0}), Hold({Uy})});
  model.restraints.push_back({NodeAt(model, {HalfLength, 0.0, 0.0}), Hold({Uy})});
}

// The web reaches from the plate's mid-plane to the flange's. Web and flange are divided along x as
// the plate is.
void AddStiffenerShells(ModelText& model, int n) {
  const double depth = Plate / 2 + Hw + Tf / 2;
  const int web = n, flange = n;
  Append(model,
         test::BuildGrid(web, 3 * n, Cells::Quads,
                         [=](double s, double t) {
                           return Point3{HalfLength * t, 0.0, -depth * s};
                         }),
         1);
  Append(model,
         test::BuildGrid(flange, 3 * n, Cells::Quads,
                         [=](double s, double t) {
                           return Point3{HalfLength * t, Bf * (0.5 - s), -depth};
                         }),
         2);
  MergeNodes(model);
  SortNodes(model, [](const Point3& p) { return p[0]; });
}

// The web hangs below the plate: local z is -Z, and the offset is half the plate's thickness.
void AddStiffenerBeams(ModelText& model, int n) {
  model.tSections = {{Hw, Tw, Bf, Tf}};
  for (int j = 0; j < 3 * n; ++j) {
    ModelText::Beam beam;
    beam.node1 = test::GridNode(2 * n, n, j);
    beam.node2 = test::GridNode(2 * n, n, j + 1);
    beam.BeamSecType = BeamSecTypeT;
    beam.orientation = {0.0, 0.0, -1.0};
    beam.BeamSecOz = Plate / 2;
    model.beams.push_back(beam);
  }
}

struct Panel {
  double atStiffener, besideIt;  // deflections at x = 0: at y = 0, and halfway to the edge
  double flange;  // membrane stress SX of the flange at x = 0, where it meets the web
  double plate;   // membrane stress SX of the plate at x = 0, y = 0
};

// The mean membrane stress SX over the corners at `place` of those shells that `keep` selects.
double MeanStress(const std::vector<Corners>& shells, const std::vector<Point3>& nodes,
                  const Point3& place, const std::function<bool(std::size_t)>& keep) {
  double sum = 0.0;
  int count = 0;
  for (std::size_t e = 0; e < shells.size(); ++e) {
    if (!keep(e)) continue;
    for (const Corner& corner : shells[e]) {
      const Point3& p = nodes[static_cast<std::size_t>(corner.node)];
      // Coordinates of the detail models have six digits.
      if (std::fabs(p[0] - place[0]) + std::fabs(p[1] - place[1]) + std::fabs(p[2] - place[2]) >
          0.1) {
        continue;
      }
      sum += MembraneSX(corner);
      ++count;
    }
  }
  return sum / count;
}

Panel ReadPanel(const ModelText& model, const Results& results) {
  const auto deflection = [&](double y) {
    return results.displacements[static_cast<std::size_t>(NodeAt(model, {0.0, y, 0.0}))][Uz];
  };
  Panel panel{};
  panel.atStiffener = deflection(0.0);
  panel.besideIt = deflection(HalfWidth / 2);
  panel.plate = MeanStress(results.averaged, model.nodes, {0.0, 0.0, 0.0},
                           [&](std::size_t e) { return model.shells4[e].thickness == 0; });
  return panel;
}

const Point3 FlangeMiddle{0.0, 0.0, -(Plate / 2 + Hw + Tf / 2)};

Panel SolveWithBeams(int n) {
  ModelText model = BuildPlate(n);
  AddStiffenerBeams(model, n);
  SupportPlate(model);
  const Results results = RunModel(model, Read::Details);
  Panel panel = ReadPanel(model, results);
  const Detail& detail = results.details[0];
  // A detail model of a T has five shells at each step along the beam; the last two are the flange.
  panel.flange = MeanStress(detail.shells, detail.nodes, FlangeMiddle,
                            [](std::size_t e) { return e % 5 >= 3; });
  return panel;
}

Panel SolveWithShells(int n) {
  ModelText model = BuildPlate(n);
  AddStiffenerShells(model, n);
  SupportPlate(model);
  const Results results = RunModel(model, Read::Stresses);
  Panel panel = ReadPanel(model, results);
  panel.flange = MeanStress(results.averaged, model.nodes, FlangeMiddle,
                            [&](std::size_t e) { return model.shells4[e].thickness == 2; });
  return panel;
}

}  // namespace

Fillings ComputeStiffeners(Extent extent) {
  const std::vector<int> meshes{4, 8, 16};
  constexpr int FinestShort = 8;
  std::vector<Row> rows{{"elements over half the width", "", "deflection at the stiffener, mm",
                         "deflection beside it, mm", "SX of the flange, MPa",
                         "SX of the plate, MPa"}};
  for (const int n : meshes) {
    const std::string name = NameCount(n) + (n > FinestShort ? " \\*" : "");
    Row beams{name, "offset beam"}, shells{"", "shells"}, ratios{"", "beam / shells"};
    if (extent == Extent::Short && n > FinestShort) {
      for (Row* row : {&beams, &shells, &ratios}) row->insert(row->end(), 4, SkippedFigure());
    } else {
      const Panel a = SolveWithBeams(n), b = SolveWithShells(n);
      const std::array<double Panel::*, 4> values{&Panel::atStiffener, &Panel::besideIt,
                                                  &Panel::flange, &Panel::plate};
      for (const auto value : values) {
        beams.push_back(Figure(a.*value));
        shells.push_back(Figure(b.*value));
        ratios.push_back(Ratio(a.*value / (b.*value)));
      }
    }
    for (const Row& row : {beams, shells, ratios}) rows.push_back(row);
  }
  return {{"table:stiffened plate", FormatTable(rows)}};
}

}  // namespace korvex::book
