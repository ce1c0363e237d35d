#include "audit/section_shape.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "deck/check_reference.h"
#include "report/stop.h"

namespace kvx {

namespace {

using korvex::BeamSection;
using korvex::SectionProperties;

// The heights and the web's centre line of a T or L section or a flat bar, from the centroid.
struct Levels {
  double edge, top;  // of the web: free edge and where the flange begins
  double flange;     // mid-plane of the flange
  double web;        // y of the web's centre line
};

Levels FindLevels(const BeamSection& section, const SectionProperties& p) {
  const double edge = -p.CzBottom, top = edge + section.Hw;
  return {edge, top, top + section.Tf / 2.0, -p.Ey};
}

// A cut through a plate.
struct Cut {
  double Qy, Qz;  // first moments, the integrals of z and of y, of the area beyond the cut
  double t;       // thickness of the plate
};

SectionPoint MakePoint(SectionPlace place, double y, double z, const Cut& cut,
                       const SectionProperties& p) {
  SectionPoint point;
  point.place = place;
  point.y = y;
  point.z = z;
  point.alongVz = cut.Qy / (p.Iy * cut.t);
  point.alongVy = cut.Qz / (p.Iz * cut.t);
  point.torsion = cut.t / p.J;
  return point;
}

// Both faces of the web at the height z; beyond it lies the web down to its free edge.
void AddWebPoints(SectionPlace place, double z, const BeamSection& section, const Levels& at,
                  const SectionProperties& p, SectionShape& shape) {
  const double area = section.Tw * (z - at.edge);
  const Cut cut{area * (z + at.edge) / 2.0, area * at.web, section.Tw};
  for (const double face : {-0.5, 0.5}) {
    shape.points.push_back(MakePoint(place, at.web + face * section.Tw, z, cut, p));
  }
}

// Both faces of the flange at y; beyond it lies the flange up to its tip.
void AddFlangePoints(SectionPlace place, double y, double tip, const BeamSection& section,
                     const Levels& at, const SectionProperties& p, SectionShape& shape) {
  const double area = section.Tf * std::fabs(tip - y);
  const Cut cut{area * at.flange, area * (tip + y) / 2.0, section.Tf};
  for (const double face : {-0.5, 0.5}) {
    shape.points.push_back(MakePoint(place, y, at.flange + face * section.Tf, cut, p));
  }
}

// Tip and root of the part of a flange on one side of the web. side: +1 or -1; reach: from the
// web's centre line to the tip.
void AddFlangeSide(double side, double reach, const BeamSection& section, const Levels& at,
                   const SectionProperties& p, SectionShape& shape) {
  const double tip = at.web + side * reach, root = at.web + side * section.Tw / 2.0;
  AddFlangePoints(SectionPlace::FlangeTip, tip, tip, section, at, p, shape);
  AddFlangePoints(SectionPlace::FlangeRoot, root, tip, section, at, p, shape);
  if (root * side < 0.0 && tip * side > 0.0) {
    AddFlangePoints(SectionPlace::FlangeAtCentroid, 0.0, tip, section, at, p, shape);
  }
}

void AddFlatBarPoints(const BeamSection& section, const Levels& at, const SectionProperties& p,
                      SectionShape& shape) {
  AddWebPoints(SectionPlace::WebEdge, at.top, section, at, p, shape);
  SectionPoint centre;
  centre.place = SectionPlace::Centre;
  centre.alongVz = centre.acrossVy = 1.5 / p.A;
  shape.points.push_back(centre);
}

// mirrored: the flange of an L points towards -y.
void AddFlangedPoints(const BeamSection& section, bool mirrored, const Levels& at,
                      const SectionProperties& p, SectionShape& shape) {
  AddWebPoints(SectionPlace::WebTop, at.top, section, at, p, shape);
  if (shape.kind == SectionKind::T) {
    AddFlangeSide(-1.0, section.Bf / 2.0, section, at, p, shape);
    AddFlangeSide(1.0, section.Bf / 2.0, section, at, p, shape);
    return;
  }
  const double side = mirrored ? -1.0 : 1.0;
  AddFlangeSide(side, section.Bf - section.Tw / 2.0, section, at, p, shape);
  const Cut end{0.0, 0.0, section.Tf};
  shape.points.push_back(MakePoint(SectionPlace::FlangeHeel, at.web - side * section.Tw / 2.0,
                                   at.flange + section.Tf / 2.0, end, p));
}

void AddPlatePoints(const BeamSection& section, bool mirrored, const SectionProperties& p,
                    SectionShape& shape) {
  const Levels at = FindLevels(section, p);
  shape.webArea = section.Hw * section.Tw;
  shape.thickness = section.Tw;
  AddWebPoints(SectionPlace::WebEdge, at.edge, section, at, p, shape);
  if (at.edge < 0.0 && at.top > 0.0) {
    AddWebPoints(SectionPlace::WebAtCentroid, 0.0, section, at, p, shape);
  }
  if (shape.kind == SectionKind::FlatBar) {
    AddFlatBarPoints(section, at, p, shape);
    return;
  }
  shape.thickness = std::max(section.Tw, section.Tf);
  AddFlangedPoints(section, mirrored, at, p, shape);
}

// Row `index` of a section table.
template <typename Table>
const auto& FindSection(const Table& table, const char* name, std::size_t beam,
                        std::int32_t index) {
  korvex::CheckReference("Beam element", static_cast<std::int32_t>(beam), "section", index,
                         {name, static_cast<std::int32_t>(table.size())});
  return table[static_cast<std::size_t>(index)];
}

SectionKind KindOf(const BeamSection& section, SectionKind flanged) {
  return section.Bf == 0.0 || section.Tf == 0.0 ? SectionKind::FlatBar : flanged;
}

}  // namespace

SectionShape MakeSectionShape(const korvex::ModelTables& tables, const korvex::BeamElement& beam,
                              std::size_t row) {
  if (row >= tables.BeamSectionRefs.size()) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       "There is no beam element " + std::to_string(row) + '.'};
  }
  const korvex::BeamSectionRef& ref = tables.BeamSectionRefs[row];
  const SectionProperties& p = beam.Section;
  SectionShape shape;
  shape.A = p.A;
  shape.Iy = p.Iy;
  shape.Iz = p.Iz;
  shape.J = p.J;
  if (ref.BeamSecType == korvex::BeamSecTypeT) {
    const auto& section =
        FindSection(tables.TBeamSections, "T_beam sections", row, ref.BeamSecIndex);
    shape.kind = KindOf(section, SectionKind::T);
    AddPlatePoints(section, false, p, shape);
  } else if (ref.BeamSecType == korvex::BeamSecTypeL) {
    const auto& section =
        FindSection(tables.LBeamSections, "L_beam sections", row, ref.BeamSecIndex);
    shape.kind = KindOf(section, SectionKind::L);
    AddPlatePoints(section, ref.BeamSecMirrored, p, shape);
  } else if (ref.BeamSecType == korvex::BeamSecTypeC) {
    const auto& section =
        FindSection(tables.CBeamSections, "C_beam sections", row, ref.BeamSecIndex);
    shape.kind = SectionKind::Tube;
    shape.webArea = p.A / 2.0;
    shape.thickness = section.T;
    shape.outerRadius = p.CzTop;
  }
  return shape;
}

}  // namespace kvx
