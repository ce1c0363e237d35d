#include "support/engine_models.h"

#include <cmath>
#include <functional>

#include "support/shell_mesh.h"

namespace kvx::test {

namespace {

using korvex::test::BuildGrid;
using korvex::test::Cells;
using korvex::test::ModelText;
using korvex::test::Point3;
using korvex::test::SingleLoad;

constexpr double Pi = 3.14159265358979323846;
constexpr std::array<int, 6> Clamped{1, 1, 1, 1, 1, 1};
constexpr std::size_t Fx = 0, Fy = 1, Fz = 2;

using Place = std::function<Point3(double s, double t)>;

Place Flat(double width, double length) {
  return [=](double s, double t) { return Point3{width * s, length * t, 0.0}; };
}

ModelText BuildShell(int n1, int n2, Cells cells, double E, double thickness, const Place& place) {
  ModelText model = BuildGrid(n1, n2, cells, place);
  model.materials = {{E, 0.3, 0.0}};
  model.thicknesses = {thickness};
  return model;
}

// Fixes the nodes of a grid where s or t has this value.
void FixSide(int n1, int n2, bool isS, double value, const std::array<int, 6>& fixed,
             ModelText& model) {
  const int along = isS ? n2 : n1;
  for (int k = 0; k <= along; ++k) {
    const int i = isS ? static_cast<int>(std::lround(value * n1)) : k;
    const int j = isS ? k : static_cast<int>(std::lround(value * n2));
    model.restraints.push_back({korvex::test::GridNode(n1, i, j), fixed});
  }
}

void FixAllSides(int n1, int n2, ModelText& model) {
  for (const double value : {0.0, 1.0}) {
    FixSide(n1, n2, true, value, Clamped, model);
    FixSide(n1, n2, false, value, Clamped, model);
  }
}

void Press(double pressure, ModelText& model) {
  for (std::size_t k = 0; k < model.shells4.size(); ++k) {
    model.shell4Loads.push_back({static_cast<int>(k), {0.0, 0.0, pressure}});
  }
  for (std::size_t k = 0; k < model.shells3.size(); ++k) {
    model.shell3Loads.push_back({static_cast<int>(k), {0.0, 0.0, pressure}});
  }
}

void AddLoad(int node, std::size_t dof, double value, ModelText& model) {
  model.forces.push_back({node, SingleLoad(dof, value)});
}

void AddBeam(int node1, int node2, int section, ModelText& model) {
  ModelText::Beam beam;
  beam.node1 = node1;
  beam.node2 = node2;
  const auto& a = model.nodes[static_cast<std::size_t>(node1)];
  const auto& b = model.nodes[static_cast<std::size_t>(node2)];
  const bool isUpright = std::fabs(a[2] - b[2]) > std::fabs(a[0] - b[0]) + std::fabs(a[1] - b[1]);
  if (isUpright) beam.orientation = {1.0, 0.0, 0.0};
  beam.BeamSecType = korvex::BeamSecTypeC;
  beam.BeamSecIndex = section;
  model.beams.push_back(beam);
}

ModelText MakePlate(double thickness) {
  constexpr int N = 20;
  ModelText model = BuildShell(N, N, Cells::Quads, 2.1e5, thickness, Flat(1000.0, 1000.0));
  FixAllSides(N, N, model);
  Press(0.01, model);
  return model;
}

ModelText MakeSkewPlate() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Triangles, 3e7, 0.01, [](double s, double t) {
    return Point3{s + t * std::cos(Pi / 6.0), t * std::sin(Pi / 6.0), 0.0};
  });
  for (const double value : {0.0, 1.0}) {
    FixSide(N, N, true, value, {0, 0, 1, 0, 0, 0}, model);
    FixSide(N, N, false, value, {0, 0, 1, 0, 0, 0}, model);
  }
  model.restraints.push_back({0, {1, 1, 0, 0, 0, 1}});
  Press(1.0, model);
  return model;
}

// One half 100 times as thick as the other.
ModelText MakeThickAndThin() {
  ModelText model = MakePlate(1.0);
  model.thicknesses.push_back(100.0);
  for (std::size_t k = 0; k < model.shells4.size() / 2; ++k) model.shells4[k].thickness = 1;
  return model;
}

// A square in the middle of a plate is stiffer by 1e6, as links are made.
ModelText MakeStiffPatch() {
  ModelText model = MakePlate(10.0);
  model.materials.push_back({2.1e11, 0.3, 0.0});
  for (int j = 8; j < 12; ++j) {
    for (int i = 8; i < 12; ++i)
      model.shells4.at(static_cast<std::size_t>(i) + std::size_t{20} * static_cast<std::size_t>(j))
          .material = 1;
  }
  return model;
}

// A corner of a plate settles by 5, without loads.
ModelText MakeSettlement() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Quads, 2.1e5, 10.0, Flat(1000.0, 1000.0));
  FixSide(N, N, false, 0.0, Clamped, model);
  const int corner = static_cast<int>(model.nodes.size()) - 1;
  model.restraints.push_back({corner, {0, 0, 1, 0, 0, 0}});
  AddLoad(corner, Fz, -5.0 * korvex::test::SupportPenalty, model);
  return model;
}

// MacNeal & Harder (1985), a quarter: R 25, length 50, half angle 40 degrees, on a diaphragm.
ModelText MakeRoof() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Quads, 4.32e8, 0.25, [](double s, double t) {
    const double angle = 40.0 * Pi / 180.0 * s;
    return Point3{25.0 * std::sin(angle), 25.0 * t, 25.0 * std::cos(angle)};
  });
  FixSide(N, N, false, 0.0, {1, 0, 1, 0, 0, 0}, model);
  FixSide(N, N, false, 1.0, {0, 1, 0, 1, 0, 1}, model);
  FixSide(N, N, true, 0.0, {1, 0, 0, 0, 1, 1}, model);
  for (int node = 0; node < static_cast<int>(model.nodes.size()); ++node) {
    AddLoad(node, Fz, -90.0, model);
  }
  return model;
}

// An eighth of a cylinder, R 300, length 600, t 3, pinched in the middle, on diaphragms.
ModelText MakePinchedCylinder() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Quads, 3e6, 3.0, [](double s, double t) {
    return Point3{300.0 * std::sin(Pi / 2.0 * s), 300.0 * t, 300.0 * std::cos(Pi / 2.0 * s)};
  });
  FixSide(N, N, false, 0.0, {1, 0, 1, 0, 0, 0}, model);
  FixSide(N, N, false, 1.0, {0, 1, 0, 1, 0, 1}, model);
  FixSide(N, N, true, 0.0, {1, 0, 0, 0, 1, 1}, model);
  FixSide(N, N, true, 1.0, {0, 0, 1, 1, 1, 0}, model);
  AddLoad(korvex::test::GridNode(N, 0, N), Fz, -0.25, model);
  return model;
}

// A quarter of a hemisphere with a hole of 18 degrees, R 10, t 0.04: it bends almost without
// stretching.
ModelText MakeHemisphere() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Quads, 6.825e7, 0.04, [](double s, double t) {
    const double around = Pi / 2.0 * s, up = 72.0 * Pi / 180.0 * t;
    return Point3{10.0 * std::cos(up) * std::cos(around), 10.0 * std::cos(up) * std::sin(around),
                  10.0 * std::sin(up)};
  });
  FixSide(N, N, true, 0.0, {0, 1, 0, 1, 0, 1}, model);
  FixSide(N, N, true, 1.0, {1, 0, 0, 0, 1, 1}, model);
  model.restraints.push_back({0, {0, 0, 1, 0, 0, 0}});
  AddLoad(0, Fx, 1.0, model);
  AddLoad(N, Fy, -1.0, model);
  return model;
}

// MacNeal & Harder (1985): length 12, width 1.1, t 0.0032, twisted by 90 degrees.
ModelText MakeTwistedBeam() {
  constexpr int Across = 4, Along = 24;
  ModelText model =
      BuildShell(Across, Along, Cells::Triangles, 29e6, 0.0032, [](double s, double t) {
        const double angle = Pi / 2.0 * t, y = 1.1 * (s - 0.5);
        return Point3{12.0 * t, y * std::cos(angle), y * std::sin(angle)};
      });
  FixSide(Across, Along, false, 0.0, Clamped, model);
  AddLoad(korvex::test::GridNode(Across, Across / 2, Along), Fz, 1e-6, model);
  return model;
}

// A channel of three strips, clamped at one end.
ModelText MakeChannel() {
  constexpr int Across = 12, Along = 30;
  ModelText model = BuildShell(Across, Along, Cells::Quads, 2.1e5, 8.0, [](double s, double t) {
    const double x = 2000.0 * t;
    if (s < 1.0 / 3.0) return Point3{x, 200.0 * (1.0 - 3.0 * s), -150.0};
    if (s > 2.0 / 3.0) return Point3{x, 200.0 * (3.0 * s - 2.0), 150.0};
    return Point3{x, 0.0, 150.0 * (6.0 * s - 3.0)};
  });
  FixSide(Across, Along, false, 0.0, Clamped, model);
  AddLoad(korvex::test::GridNode(Across, Across / 2, Along), Fz, -1000.0, model);
  return model;
}

// A closed box, 600 x 400 and 6000 long, with a bulkhead in the middle of each quarter.
ModelText MakeBoxGirder() {
  constexpr int OfSide = 4, Ring = 4 * OfSide, Along = 40;
  constexpr double Width = 600.0, Height = 400.0, Length = 6000.0;
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.thicknesses = {8.0};
  for (int j = 0; j <= Along; ++j) {
    for (int k = 0; k < Ring; ++k) {
      const double part = static_cast<double>(k % OfSide) / OfSide;
      const std::array<Point3, 4> sides{{{0.0, Width * part, 0.0},
                                         {0.0, Width, Height * part},
                                         {0.0, Width * (1.0 - part), Height},
                                         {0.0, 0.0, Height * (1.0 - part)}}};
      Point3 place = sides[static_cast<std::size_t>(k / OfSide)];
      place[0] = Length * j / Along;
      model.nodes.push_back(place);
    }
  }
  for (int j = 0; j < Along; ++j) {
    for (int k = 0; k < Ring; ++k) {
      const int a = Ring * j + k, b = Ring * j + (k + 1) % Ring;
      korvex::test::AddCell(model, Cells::Quads, 0, {a, b, b + Ring, a + Ring});
    }
  }
  for (int k = 0; k < Ring; ++k) {
    model.restraints.push_back({k, {1, 1, 1, 0, 0, 0}});
    model.restraints.push_back({Ring * Along + k, {0, 1, 1, 0, 0, 0}});
  }
  for (int k = 0; k <= OfSide; ++k) AddLoad(Ring * Along / 2 + k, Fz, -1000.0, model);
  return model;
}

// Shells beside beams: a plate on stiffeners of T sections, offset to its lower face.
ModelText MakeStiffenedPlate() {
  constexpr int N = 16;
  ModelText model = BuildShell(N, N, Cells::Quads, 2.1e5, 10.0, Flat(3000.0, 3000.0));
  model.tSections = {{200.0, 10.0, 100.0, 12.0}};
  for (int i = 0; i <= N; i += 4) {
    for (int j = 0; j < N; ++j) {
      ModelText::Beam beam;
      beam.node1 = korvex::test::GridNode(N, i, j);
      beam.node2 = korvex::test::GridNode(N, i, j + 1);
      beam.BeamSecOz = -5.0;
      beam.orientation = {0.0, 0.0, -1.0};
      model.beams.push_back(beam);
    }
  }
  FixSide(N, N, false, 0.0, {1, 1, 1, 0, 0, 0}, model);
  FixSide(N, N, false, 1.0, {1, 1, 1, 0, 0, 0}, model);
  Press(-0.05, model);
  return model;
}

// A strip of shells as slender as a ribbon.
ModelText MakeRibbon() {
  constexpr int Across = 2, Along = 300;
  ModelText model = BuildShell(Across, Along, Cells::Quads, 2.1e5, 5.0, [](double s, double t) {
    return Point3{15000.0 * t, 100.0 * s, 0.0};
  });
  FixSide(Across, Along, false, 0.0, Clamped, model);
  AddLoad(korvex::test::GridNode(Across, 1, Along), Fz, 1.0, model);
  return model;
}

ModelText MakeGrillage() {
  constexpr int N = 20;
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.cSections = {{100.0, 8.0}};
  for (int j = 0; j <= N; ++j) {
    for (int i = 0; i <= N; ++i) model.nodes.push_back({500.0 * i, 500.0 * j, 0.0});
  }
  for (int j = 0; j <= N; ++j) {
    for (int i = 0; i <= N; ++i) {
      const int node = j * (N + 1) + i;
      if (i < N) AddBeam(node, node + 1, 0, model);
      if (j < N) AddBeam(node, node + N + 1, 0, model);
      if (i % N == 0 && j % N == 0) model.restraints.push_back({node, {1, 1, 1, 0, 0, 1}});
      AddLoad(node, Fz, -100.0, model);
    }
  }
  return model;
}

// Six storeys of three by three bays, columns of another section than girders.
ModelText MakeFrame() {
  constexpr int Bays = 3, Storeys = 6, Row = Bays + 1, Floor = Row * Row;
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.cSections = {{150.0, 10.0}, {100.0, 8.0}};
  for (int z = 0; z <= Storeys; ++z) {
    for (int k = 0; k < Floor; ++k) {
      const int row = k / Row;
      model.nodes.push_back({6000.0 * (k % Row), 6000.0 * row, 3500.0 * z});
    }
  }
  for (int z = 0; z <= Storeys; ++z) {
    for (int k = 0; k < Floor; ++k) {
      const int node = z * Floor + k;
      if (z == 0) {
        model.restraints.push_back({node, Clamped});
      } else {
        AddBeam(node - Floor, node, 0, model);
        if (k % Row < Bays) AddBeam(node, node + 1, 1, model);
        if (k / Row < Bays) AddBeam(node, node + Row, 1, model);
        AddLoad(node, Fx, 1000.0, model);
        AddLoad(node, Fz, -20000.0, model);
      }
    }
  }
  return model;
}

// A cantilever of so many beams, each 1000 long.
ModelText MakeChain(int steps) {
  ModelText model;
  model.materials = {{2.1e5, 0.3, 0.0}};
  model.cSections = {{50.0, 5.0}};
  for (int i = 0; i <= steps; ++i) model.nodes.push_back({1000.0 * i, 0.0, 0.0});
  for (int i = 0; i < steps; ++i) AddBeam(i, i + 1, 0, model);
  model.restraints.push_back({0, Clamped});
  AddLoad(steps, Fz, 1.0, model);
  return model;
}

}  // namespace

std::vector<EngineModel> MakeEngineModels() {
  return {{"plate", MakePlate(10.0)},
          {"the same, turned in space", korvex::test::TurnModel(MakePlate(10.0))},
          {"the same, t 0.1", MakePlate(0.1)},
          {"skew plate of triangles", MakeSkewPlate()},
          {"plate, half of it 100 times as thick", MakeThickAndThin()},
          {"plate with a patch stiffer by 1e6", MakeStiffPatch()},
          {"plate whose corner settles", MakeSettlement()},
          {"cylindrical roof", MakeRoof()},
          {"pinched cylinder", MakePinchedCylinder()},
          {"hemisphere with a hole", MakeHemisphere()},
          {"twisted beam of triangles", MakeTwistedBeam()},
          {"channel", MakeChannel()},
          {"box girder", MakeBoxGirder()},
          {"plate on stiffeners", MakeStiffenedPlate()},
          {"ribbon of shells", MakeRibbon()},
          {"grillage", MakeGrillage()},
          {"frame of six storeys", MakeFrame()},
          {"cantilever of 100 beams", MakeChain(100)},
          {"cantilever of 1000 beams", MakeChain(1000)}};
}

}  // namespace kvx::test
