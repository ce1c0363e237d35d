// The sections of the model file in the order in which they stand.
//
// A format's trailing "\n" takes any white space, line ends and the next line's indentation
// included; a literal must match exactly. See scan_text.h.
#include "model/read_input_file.h"

#include <algorithm>
#include <iterator>

#include "beam/section_properties.h"
#include "model/check_reference.h"
#include "model/scan_text.h"
#include "platform/stop_run.h"

namespace korvex {

namespace {

// Reads the whole file; stops the run where that fails.
void LoadText(const char* fileName, TextCursor& file) {
  std::ifstream stream;
  if (!OpenInputFile(fileName, stream)) StopWithNotice("Preprocessor file read error!");
  file.text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
}

void ReadHeader(TextCursor& file) {
  double release = 0.0;  // differs from every accepted release, so a header unread is a wrong one
  ScanFormat(file, "### Toln_Korvex release=%lf ###\n", {&release});
  if (release != ModelFileRelease) StopWithNotice("Release File Number error!");
}

// Reads a section's count; `format` holds its text and key.
void ReadCount(TextCursor& file, const char* format, const char* key, std::int32_t& count) {
  ScanFormat(file, format, {&count});
  CheckCount(key, count);
}

// The same, and gives the section's table that many rows of zeros.
template <typename Record>
void ReadCount(TextCursor& file, const char* format, const char* key, std::int32_t& count,
               std::vector<Record>& table) {
  ReadCount(file, format, key, count);
  table.resize(static_cast<std::size_t>(count));
}

void ReadMaterials(TextCursor& file, Model& model) {
  ReadCount(file, "Number of materials:NMT=%d\n", "NMT", model.NMT, model.Materials);
  for (Material& material : model.Materials) {
    std::int32_t label = 0;
    ScanFormat(file, "#%d:\n", {&label});
    ScanFormat(file, "E=%lf\n", {&material.E});
    ScanFormat(file, "Mu=%lf\n", {&material.Mu});
    ScanFormat(file, "Density=%lf\n", {&material.Density});
  }
}

void ReadThicknesses(TextCursor& file, Model& model) {
  ReadCount(file, "Number of shell thicknesses:NTK=%d\n", "NTK", model.NTK, model.ShellThicknesses);
  for (ShellThickness& thickness : model.ShellThicknesses) {
    std::int32_t label = 0;
    ScanFormat(file, "#%d:\n", {&label});
    ScanFormat(file, "TK=%lf\n", {&thickness.TK});
  }
}

// The rows of a T_beam or L_beam table. A section's label is any text to the end of its line.
void ReadBeamSections(TextCursor& file, std::vector<BeamSection>& sections) {
  for (BeamSection& section : sections) {
    SkipLine(file);
    ScanFormat(file, "Hw=%lf\n", {&section.Hw});
    ScanFormat(file, "Tw=%lf\n", {&section.Tw});
    ScanFormat(file, "Bf=%lf\n", {&section.Bf});
    ScanFormat(file, "Tf=%lf\n", {&section.Tf});
  }
}

void ReadSectionTables(TextCursor& file, Model& model) {
  ReadCount(file, "Number of T_beam sections:NTBS=%d\n", "NTBS", model.NTBS, model.TBeamSections);
  ReadBeamSections(file, model.TBeamSections);
  ReadCount(file, "Number of L_beam sections:NLBS=%d\n", "NLBS", model.NLBS, model.LBeamSections);
  ReadBeamSections(file, model.LBeamSections);
  ReadCount(file, "Number of C_beam sections:NCBS=%d\n", "NCBS", model.NCBS, model.CBeamSections);
  for (CBeamSection& section : model.CBeamSections) {
    SkipLine(file);
    ScanFormat(file, "R=%lf\n", {&section.R});
    ScanFormat(file, "T=%lf\n", {&section.T});
  }
}

void ReadNodes(TextCursor& file, Model& model) {
  ReadCount(file, "Number of nodal points:NPOIN=%d\n", "NPOIN", model.NPOIN, model.Nodes);
  for (Node& node : model.Nodes) {
    std::int32_t number = 0;
    ScanFormat(file, "%d:%lf,%lf,%lf\n", {&number, &node.x, &node.y, &node.z});
  }
}

// The position of a node that row `row` of the `rowKind` table refers to.
Vector3 FetchNode(const Model& model, const char* rowKind, std::int32_t row, std::int32_t node) {
  CheckReference(rowKind, row, "node", node, {"nodal points", model.NPOIN});
  const Node& point = model.Nodes[static_cast<std::size_t>(node)];
  return {point.x, point.y, point.z};
}

const Material& FetchMaterial(const Model& model, const char* rowKind, std::int32_t row,
                              std::int32_t material) {
  CheckReference(rowKind, row, "material", material, {"materials", model.NMT});
  return model.Materials[static_cast<std::size_t>(material)];
}

// Sets up shell element `row` from its node, material and thickness references.
// nodes: the element's node indices, as many as it has nodes.
template <std::int32_t Nodes>
void SetUpShell(const Model& model, const char* rowKind, std::int32_t row,
                const std::int32_t* nodes, std::int32_t material, std::int32_t thickness,
                ShellElement<Nodes>& element) {
  std::array<double, static_cast<std::size_t>(Nodes) * 3> coordinates{};
  for (std::int32_t k = 0; k < Nodes; ++k) {
    const Vector3 point = FetchNode(model, rowKind, row, nodes[k]);
    std::copy(point.begin(), point.end(), coordinates.begin() + 3 * k);
  }
  const Material& properties = FetchMaterial(model, rowKind, row, material);
  CheckReference(rowKind, row, "thickness", thickness, {"shell thicknesses", model.NTK});
  const double TK = model.ShellThicknesses[static_cast<std::size_t>(thickness)].TK;
  SetGeometry(element, coordinates.data(), Nodes, properties.E, properties.Mu, TK);
}

void ReadShells4(TextCursor& file, Model& model) {
  ReadCount(file, "Number of four-nodes shell elements:NELEM_S_4ND=%d\n", "NELEM_S_4ND",
            model.NELEM_S_4ND, model.Shell4Elements);
  model.Shell4Nodes.resize(model.Shell4Elements.size() * NodesPerShell4);
  for (std::int32_t e = 0; e < model.NELEM_S_4ND; ++e) {
    std::int32_t number = 0, material = 0, thickness = 0;
    std::int32_t* nodes = &model.Shell4Nodes[static_cast<std::size_t>(e) * NodesPerShell4];
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file, "%d,%d,%d,%d[%d,%d]\n",
               {&nodes[0], &nodes[1], &nodes[2], &nodes[3], &material, &thickness});
    SetUpShell(model, "Four-node shell element", e, nodes, material, thickness,
               model.Shell4Elements[static_cast<std::size_t>(e)]);
  }
}

void ReadShells3(TextCursor& file, Model& model) {
  ReadCount(file, "Number of three-nodes shell elements:NELEM_S_3ND=%d\n", "NELEM_S_3ND",
            model.NELEM_S_3ND, model.Shell3Elements);
  model.Shell3Nodes.resize(model.Shell3Elements.size() * NodesPerShell3);
  for (std::int32_t e = 0; e < model.NELEM_S_3ND; ++e) {
    std::int32_t number = 0, material = 0, thickness = 0;
    std::int32_t* nodes = &model.Shell3Nodes[static_cast<std::size_t>(e) * NodesPerShell3];
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file, "%d,%d,%d[%d,%d]\n", {&nodes[0], &nodes[1], &nodes[2], &material, &thickness});
    SetUpShell(model, "Three-node shell element", e, nodes, material, thickness,
               model.Shell3Elements[static_cast<std::size_t>(e)]);
  }
}

constexpr const char* BeamRow = "Beam element";

// The row of a section table that beam `row` refers to.
template <typename Section>
const Section& FetchSection(const std::vector<Section>& table, const char* tableName,
                            std::int32_t row, std::int32_t section) {
  const auto count = static_cast<std::int32_t>(table.size());
  CheckReference(BeamRow, row, "section", section, {tableName, count});
  return table[static_cast<std::size_t>(section)];
}

// What a beam row of the file says besides its BeamSectionRef.
struct BeamRowData {
  std::array<std::int32_t, 2> nodes{};
  Vector3 orientation{};
  std::int32_t material = 0;
};

// Sets up a T or L beam: everything but the section properties.
void FillBeam(const Model& model, std::int32_t row, const BeamRowData& data, const Vector3& nodeI,
              const Vector3& nodeJ, const Vector3& refPoint, BeamElement& beam) {
  const Material& material = FetchMaterial(model, BeamRow, row, data.material);
  beam.NodeI = nodeI;
  beam.NodeJ = nodeJ;
  beam.RefPoint = refPoint;
  beam.Tolerance = BeamTolerance;
  beam.E = material.E;
  beam.Mu = material.Mu;
  beam.BeamSecOz = model.BeamSectionRefs[static_cast<std::size_t>(row)].BeamSecOz;
}

// Sets up beam `row`. A section type without a table leaves the element as it was constructed: it
// is accepted silently, and its stiffness is meaningless.
void SetUpBeam(const Model& model, std::int32_t row, const BeamRowData& data, BeamElement& beam) {
  const BeamSectionRef& ref = model.BeamSectionRefs[static_cast<std::size_t>(row)];
  const Vector3 nodeI = FetchNode(model, BeamRow, row, data.nodes[0]);
  const Vector3 nodeJ = FetchNode(model, BeamRow, row, data.nodes[1]);
  const Vector3& v = data.orientation;
  const Vector3 refPoint{nodeI[0] + v[0], nodeI[1] + v[1], nodeI[2] + v[2]};
  if (ref.BeamSecType == BeamSecTypeT) {
    const BeamSection& s =
        FetchSection(model.TBeamSections, "T_beam sections", row, ref.BeamSecIndex);
    FillBeam(model, row, data, nodeI, nodeJ, refPoint, beam);
    beam.Section = SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz);
  } else if (ref.BeamSecType == BeamSecTypeL) {
    const BeamSection& s =
        FetchSection(model.LBeamSections, "L_beam sections", row, ref.BeamSecIndex);
    FillBeam(model, row, data, nodeI, nodeJ, refPoint, beam);
    beam.BeamSecMirrored = ref.BeamSecMirrored;
    beam.Section =
        SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz, ref.BeamSecMirrored);
  } else if (ref.BeamSecType == BeamSecTypeC) {
    const CBeamSection& s =
        FetchSection(model.CBeamSections, "C_beam sections", row, ref.BeamSecIndex);
    const Material& material = FetchMaterial(model, BeamRow, row, data.material);
    InitCBeamElement(beam, nodeI, nodeJ, {refPoint[0], refPoint[1], refPoint[2], BeamTolerance},
                     material, s, ref.BeamSecOz);
  }
}

void ReadBeams(TextCursor& file, Model& model) {
  ReadCount(file, "Number of beam elements:NELEM_B=%d\n", "NELEM_B", model.NELEM_B,
            model.BeamElements);
  model.BeamNodes.resize(model.BeamElements.size() * NodesPerBeam);
  model.BeamSectionRefs.resize(model.BeamElements.size());
  for (std::int32_t e = 0; e < model.NELEM_B; ++e) {
    const auto row = static_cast<std::size_t>(e);
    std::int32_t number = 0, mirrored = 0;
    BeamRowData data;
    BeamSectionRef& ref = model.BeamSectionRefs[row];
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file,
               "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,"
               "BeamSecMirrored=%d]\n",
               {&data.nodes[0], &data.nodes[1], &data.orientation[0], &data.orientation[1],
                &data.orientation[2], &data.material, &ref.BeamSecType, &ref.BeamSecIndex,
                &ref.BeamSecOz, &mirrored});
    ref.BeamSecMirrored = mirrored != 0;
    std::copy(data.nodes.begin(), data.nodes.end(), &model.BeamNodes[row * NodesPerBeam]);
    SetUpBeam(model, e, data, model.BeamElements[row]);
  }
}

// The flags are separated by white space only; a comma ends the parsing of the row.
void ReadRestraints(TextCursor& file, Model& model) {
  ReadCount(file, "Number of restricted nodal points:NRN=%d\n", "NRN", model.NRN,
            model.NodalRestraints);
  for (NodalRestraint& restraint : model.NodalRestraints) {
    ScanFormat(file, "%d:", {&restraint.node});
    for (std::size_t d = 0; d < 5; ++d) ScanFormat(file, "%d", {&restraint.fixed[d]});
    ScanFormat(file, "%d\n", {&restraint.fixed[5]});
  }
}

void ReadForces(TextCursor& file, Model& model) {
  ReadCount(file, "Number of forces:NFOR=%d\n", "NFOR", model.NFOR, model.NodalForces);
  for (NodalForce& force : model.NodalForces) {
    ScanFormat(file, "%d<", {&force.node});
    for (std::size_t d = 0; d < 5; ++d) ScanFormat(file, "%lf,", {&force.components[d]});
    ScanFormat(file, "%lf>\n", {&force.components[5]});
  }
}

void ReadSurfaceLoads(TextCursor& file, std::vector<ShellSurfaceLoad>& loads) {
  for (ShellSurfaceLoad& load : loads) {
    ScanFormat(file, "%d:%lf,%lf,%lf\n", {&load.element, &load.q[0], &load.q[1], &load.q[2]});
  }
}

void ReadDistributedLoads(TextCursor& file, Model& model) {
  ReadCount(file, "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
            "NDL_S_4ND", model.NDL_S_4ND, model.Shell4SurfaceLoads);
  ReadSurfaceLoads(file, model.Shell4SurfaceLoads);
  ReadCount(file, "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
            "NDL_S_3ND", model.NDL_S_3ND, model.Shell3SurfaceLoads);
  ReadSurfaceLoads(file, model.Shell3SurfaceLoads);
  ReadCount(file, "Number of distributed loads on beam elements:NDL_B=%d\n", "NDL_B", model.NDL_B,
            model.BeamLineLoads);
  for (BeamLineLoad& load : model.BeamLineLoads) {
    ScanFormat(file, "%d:%lf,%lf\n", {&load.element, &load.q[0], &load.q[1]});
  }
}

}  // namespace

// Binary, so that the same bytes are seen everywhere: a carriage return is white space to every
// read.
bool OpenInputFile(const char* fileName, std::ifstream& stream) {
  stream.open(fileName, std::ios::in | std::ios::binary);
  if (!stream.is_open()) return false;
  stream.peek();
  return !stream.bad();
}

void ReadInputFile(const char* fileName, Model& model) {
  TextCursor file;
  LoadText(fileName, file);
  ReadHeader(file);
  ReadMaterials(file, model);
  ReadThicknesses(file, model);
  ReadSectionTables(file, model);
  ReadNodes(file, model);
  ReadShells4(file, model);
  ReadShells3(file, model);
  ReadBeams(file, model);
  ReadRestraints(file, model);
  ReadForces(file, model);
  ReadDistributedLoads(file, model);
}

}  // namespace korvex
