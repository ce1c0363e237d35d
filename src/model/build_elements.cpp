#include "model/build_elements.h"

#include <algorithm>
#include <array>

#include "beam/section_properties.h"
#include "deck/check_reference.h"

namespace korvex {

namespace {

constexpr const char* BeamRow = "Beam element";

// Returns the row of `table` that row `row` of the kind `rowKind` refers to.
// tableName, field: the names of the table's rows and of the reference in notices.
template <typename Record>
const Record& Fetch(const ZeroedTable<Record>& table, const char* tableName, const char* rowKind,
                    std::int32_t row, const char* field, std::int32_t reference) {
  const auto count = static_cast<std::int32_t>(table.size());
  CheckReference(rowKind, row, field, reference, {tableName, count});
  return table[static_cast<std::size_t>(reference)];
}

Vector3 FetchNode(const ModelTables& tables, const char* rowKind, std::int32_t row,
                  std::int32_t node) {
  const Node& point = Fetch(tables.Nodes, "nodal points", rowKind, row, "node", node);
  return {point.x, point.y, point.z};
}

const Material& FetchMaterial(const ModelTables& tables, const char* rowKind, std::int32_t row,
                              std::int32_t material) {
  return Fetch(tables.Materials, "materials", rowKind, row, "material", material);
}

template <typename Section>
const Section& FetchSection(const ZeroedTable<Section>& table, const char* tableName,
                            std::int32_t row, const BeamSectionRef& ref) {
  return Fetch(table, tableName, BeamRow, row, "section", ref.BeamSecIndex);
}

// connectivity: elements x Nodes node indices, element-major.
template <std::int32_t Nodes>
void BuildShell(const ModelTables& tables, const char* rowKind, std::int32_t row,
                const std::vector<std::int32_t>& connectivity,
                const std::vector<ShellRowProperties>& rowProperties,
                ShellElement<Nodes>& element) {
  const auto e = static_cast<std::size_t>(row);
  std::array<double, static_cast<std::size_t>(Nodes) * 3> coordinates{};
  for (std::size_t k = 0; k < static_cast<std::size_t>(Nodes); ++k) {
    const Vector3 point = FetchNode(tables, rowKind, row, connectivity[e * Nodes + k]);
    std::copy(point.begin(), point.end(), &coordinates[3 * k]);
  }
  const ShellRowProperties& properties = rowProperties[e];
  const Material& material = FetchMaterial(tables, rowKind, row, properties.material);
  const ShellThickness& thickness = Fetch(tables.ShellThicknesses, "shell thicknesses", rowKind,
                                          row, "thickness", properties.thickness);
  SetGeometry(element, coordinates.data(), Nodes, material.E, material.Mu, thickness.TK);
}

// The two nodes of a beam, and the first node plus the orientation vector.
struct BeamPoints {
  Vector3 nodeI, nodeJ, refPoint;
};

BeamPoints FetchPoints(const ModelTables& tables, std::int32_t row) {
  const auto e = static_cast<std::size_t>(row);
  BeamPoints points;
  points.nodeI = FetchNode(tables, BeamRow, row, tables.BeamNodes[e * NodesPerBeam]);
  points.nodeJ = FetchNode(tables, BeamRow, row, tables.BeamNodes[e * NodesPerBeam + 1]);
  const Vector3& v = tables.BeamProperties[e].orientation;
  for (std::size_t i = 0; i < 3; ++i) points.refPoint[i] = points.nodeI[i] + v[i];
  return points;
}

// Fills a T or L beam, except its section properties and the mirrored flag.
void FillBeam(const BeamPoints& points, const Material& material, double BeamSecOz,
              BeamElement& beam) {
  beam.NodeI = points.nodeI;
  beam.NodeJ = points.nodeJ;
  beam.RefPoint = points.refPoint;
  beam.Tolerance = BeamTolerance;
  beam.E = material.E;
  beam.Mu = material.Mu;
  beam.BeamSecOz = BeamSecOz;
}

}  // namespace

void BuildShell4(const ModelTables& tables, std::int32_t row, Shell4Element& element) {
  BuildShell(tables, "Four-node shell element", row, tables.Shell4Nodes, tables.Shell4Properties,
             element);
}

void BuildShell3(const ModelTables& tables, std::int32_t row, Shell3Element& element) {
  BuildShell(tables, "Three-node shell element", row, tables.Shell3Nodes, tables.Shell3Properties,
             element);
}

void BuildBeam(const ModelTables& tables, std::int32_t row, BeamElement& beam) {
  const BeamSectionRef& ref = tables.BeamSectionRefs[static_cast<std::size_t>(row)];
  const BeamPoints points = FetchPoints(tables, row);
  if (!HasSectionTable(ref.BeamSecType)) return;
  const Material& material = FetchMaterial(
      tables, BeamRow, row, tables.BeamProperties[static_cast<std::size_t>(row)].material);
  if (ref.BeamSecType == BeamSecTypeT) {
    FillBeam(points, material, ref.BeamSecOz, beam);
    const BeamSection& s = FetchSection(tables.TBeamSections, "T_beam sections", row, ref);
    beam.Section = SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz);
  } else if (ref.BeamSecType == BeamSecTypeL) {
    FillBeam(points, material, ref.BeamSecOz, beam);
    beam.BeamSecMirrored = ref.BeamSecMirrored;
    const BeamSection& s = FetchSection(tables.LBeamSections, "L_beam sections", row, ref);
    beam.Section =
        SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz, ref.BeamSecMirrored);
  } else {
    const CBeamSection& s = FetchSection(tables.CBeamSections, "C_beam sections", row, ref);
    InitCBeamElement(beam, points.nodeI, points.nodeJ,
                     {points.refPoint[0], points.refPoint[1], points.refPoint[2], BeamTolerance},
                     material, s, ref.BeamSecOz);
  }
}

}  // namespace korvex
