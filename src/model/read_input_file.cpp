// The sections of the model file in the order in which they stand.
//
// A format's trailing "\n" takes any white space, line ends and the next line's indentation
// included; a literal must match exactly. See scan_text.h.
#include "model/read_input_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "beam/section_properties.h"
#include "model/check_reference.h"
#include "model/scan_text.h"
#include "platform/check_memory.h"
#include "platform/stop_run.h"

namespace korvex {

namespace {

// Makes room for `size` bytes of the file.
void ReserveText(std::size_t size, std::string& text) {
  AllocateOrStop("the text of the model file", size, 1, [&] { text.reserve(size); });
}

// The size that the file has; 0 for a file without one, such as a device.
std::size_t FindSize(std::ifstream& stream) {
  stream.seekg(0, std::ios::end);
  const std::streamoff size = stream.tellg();
  stream.clear();
  stream.seekg(0);
  stream.clear();
  return size > 0 ? static_cast<std::size_t>(size) : 0;
}

constexpr std::size_t BlockSize = std::size_t{1} << 16U;

// Reads the whole file; stops the run where that fails. A device may go on for ever: memory is
// asked for before each doubling of the text.
void LoadText(const char* fileName, std::string& text) {
  constexpr const char* Failure = "Preprocessor file read error!";
  std::ifstream stream;
  if (!OpenInputFile(fileName, stream)) StopWithNotice(Failure);
  ReserveText(FindSize(stream) + BlockSize, text);
  std::string block;
  AllocateOrStop("a block of the model file", BlockSize, 1, [&] { block.resize(BlockSize); });
  while (stream) {
    stream.read(block.data(), static_cast<std::streamsize>(block.size()));
    const auto size = static_cast<std::size_t>(stream.gcount());
    if (text.size() + size > text.capacity()) ReserveText(2 * text.capacity(), text);
    text.append(block, 0, size);
  }
  if (stream.bad()) StopWithNotice(Failure);
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

// What `count` rows are called where memory cannot hold them.
std::string Describe(std::int32_t count, const char* rows) {
  return std::to_string(count) + " " + rows;
}

// The same, and gives the section's table that many rows of zeros. rows: what they are called in
// notices.
template <typename Table>
void ReadCount(TextCursor& file, const char* format, const char* key, const char* rows,
               std::int32_t& count, Table& table) {
  ReadCount(file, format, key, count);
  AllocateItems(Describe(count, rows), static_cast<std::size_t>(count), table);
}

// Reads the rows of a table. A row that takes nothing of the text stores nothing, and so would all
// that follow it: they stay zeros, and a count far beyond the file's end costs no time.
template <typename Record, typename ReadRow>
void ReadRows(TextCursor& file, ZeroedTable<Record>& table, ReadRow readRow) {
  for (Record& record : table) {
    const std::size_t before = file.position;
    readRow(record);
    if (file.position == before) return;
  }
}

void ReadMaterials(TextCursor& file, Model& model) {
  ReadCount(file, "Number of materials:NMT=%d\n", "NMT", "materials", model.NMT, model.Materials);
  ReadRows(file, model.Materials, [&](Material& material) {
    std::int32_t label = 0;
    ScanFormat(file, "#%d:\n", {&label});
    ScanFormat(file, "E=%lf\n", {&material.E});
    ScanFormat(file, "Mu=%lf\n", {&material.Mu});
    ScanFormat(file, "Density=%lf\n", {&material.Density});
  });
}

void ReadThicknesses(TextCursor& file, Model& model) {
  ReadCount(file, "Number of shell thicknesses:NTK=%d\n", "NTK", "shell thicknesses", model.NTK,
            model.ShellThicknesses);
  ReadRows(file, model.ShellThicknesses, [&](ShellThickness& thickness) {
    std::int32_t label = 0;
    ScanFormat(file, "#%d:\n", {&label});
    ScanFormat(file, "TK=%lf\n", {&thickness.TK});
  });
}

// The rows of a T_beam or L_beam table. A section's label is any text to the end of its line.
void ReadBeamSections(TextCursor& file, ZeroedTable<BeamSection>& sections) {
  ReadRows(file, sections, [&](BeamSection& section) {
    SkipLine(file);
    ScanFormat(file, "Hw=%lf\n", {&section.Hw});
    ScanFormat(file, "Tw=%lf\n", {&section.Tw});
    ScanFormat(file, "Bf=%lf\n", {&section.Bf});
    ScanFormat(file, "Tf=%lf\n", {&section.Tf});
  });
}

void ReadSectionTables(TextCursor& file, Model& model) {
  ReadCount(file, "Number of T_beam sections:NTBS=%d\n", "NTBS", "T_beam sections", model.NTBS,
            model.TBeamSections);
  ReadBeamSections(file, model.TBeamSections);
  ReadCount(file, "Number of L_beam sections:NLBS=%d\n", "NLBS", "L_beam sections", model.NLBS,
            model.LBeamSections);
  ReadBeamSections(file, model.LBeamSections);
  ReadCount(file, "Number of C_beam sections:NCBS=%d\n", "NCBS", "C_beam sections", model.NCBS,
            model.CBeamSections);
  ReadRows(file, model.CBeamSections, [&](CBeamSection& section) {
    SkipLine(file);
    ScanFormat(file, "R=%lf\n", {&section.R});
    ScanFormat(file, "T=%lf\n", {&section.T});
  });
}

void ReadNodes(TextCursor& file, Model& model) {
  ReadCount(file, "Number of nodal points:NPOIN=%d\n", "NPOIN", "nodal points", model.NPOIN,
            model.Nodes);
  ReadRows(file, model.Nodes, [&](Node& node) {
    std::int32_t number = 0;
    ScanFormat(file, "%d:%lf,%lf,%lf\n", {&number, &node.x, &node.y, &node.z});
  });
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
template <std::size_t Nodes, typename Element>
void SetUpShell(const Model& model, const char* rowKind, std::int32_t row,
                const std::array<std::int32_t, Nodes>& nodes, std::int32_t material,
                std::int32_t thickness, Element& element) {
  std::array<double, Nodes * 3> coordinates{};
  double* at = coordinates.data();
  for (const std::int32_t node : nodes) {
    const Vector3 point = FetchNode(model, rowKind, row, node);
    at = std::copy(point.begin(), point.end(), at);
  }
  const Material& properties = FetchMaterial(model, rowKind, row, material);
  CheckReference(rowKind, row, "thickness", thickness, {"shell thicknesses", model.NTK});
  const double TK = model.ShellThicknesses[static_cast<std::size_t>(thickness)].TK;
  SetGeometry(element, coordinates.data(), static_cast<std::int32_t>(Nodes), properties.E,
              properties.Mu, TK);
}

// Reads an element section's count and makes room for the elements and their nodes. They get their
// rows one by one: of a count far beyond the file's end, nothing is built behind the first row
// whose references lead nowhere. rows: what they are called in notices.
template <std::int32_t Nodes, typename Element>
void ReadElementCount(TextCursor& file, const char* format, const char* key, const char* rows,
                      std::int32_t& count, std::vector<Element>& elements,
                      std::vector<std::int32_t>& connectivity) {
  ReadCount(file, format, key, count);
  const auto size = static_cast<std::size_t>(count);
  ReserveItems(Describe(count, rows), size, elements);
  ReserveItems("the nodes of " + Describe(count, rows), size * Nodes, connectivity);
}

void ReadShells4(TextCursor& file, Model& model) {
  ReadElementCount<NodesPerShell4>(file, "Number of four-nodes shell elements:NELEM_S_4ND=%d\n",
                                   "NELEM_S_4ND", "four-node shell elements", model.NELEM_S_4ND,
                                   model.Shell4Elements, model.Shell4Nodes);
  for (std::int32_t e = 0; e < model.NELEM_S_4ND; ++e) {
    std::int32_t number = 0, material = 0, thickness = 0;
    std::array<std::int32_t, NodesPerShell4> nodes{};
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file, "%d,%d,%d,%d[%d,%d]\n",
               {&nodes[0], &nodes[1], &nodes[2], &nodes[3], &material, &thickness});
    model.Shell4Nodes.insert(model.Shell4Nodes.end(), nodes.begin(), nodes.end());
    SetUpShell(model, "Four-node shell element", e, nodes, material, thickness,
               model.Shell4Elements.emplace_back());
  }
}

void ReadShells3(TextCursor& file, Model& model) {
  ReadElementCount<NodesPerShell3>(file, "Number of three-nodes shell elements:NELEM_S_3ND=%d\n",
                                   "NELEM_S_3ND", "three-node shell elements", model.NELEM_S_3ND,
                                   model.Shell3Elements, model.Shell3Nodes);
  for (std::int32_t e = 0; e < model.NELEM_S_3ND; ++e) {
    std::int32_t number = 0, material = 0, thickness = 0;
    std::array<std::int32_t, NodesPerShell3> nodes{};
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file, "%d,%d,%d[%d,%d]\n", {&nodes[0], &nodes[1], &nodes[2], &material, &thickness});
    model.Shell3Nodes.insert(model.Shell3Nodes.end(), nodes.begin(), nodes.end());
    SetUpShell(model, "Three-node shell element", e, nodes, material, thickness,
               model.Shell3Elements.emplace_back());
  }
}

constexpr const char* BeamRow = "Beam element";

// The row of a section table that beam `row` refers to.
template <typename Section>
const Section& FetchSection(const ZeroedTable<Section>& table, const char* tableName,
                            std::int32_t row, std::int32_t section) {
  const auto count = static_cast<std::int32_t>(table.size());
  CheckReference(BeamRow, row, "section", section, {tableName, count});
  return table[static_cast<std::size_t>(section)];
}

// What a beam row of the file says besides its BeamSectionRef.
struct BeamRowData {
  std::array<std::int32_t, NodesPerBeam> nodes{};
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
    FillBeam(model, row, data, nodeI, nodeJ, refPoint, beam);
    const BeamSection& s =
        FetchSection(model.TBeamSections, "T_beam sections", row, ref.BeamSecIndex);
    beam.Section = SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz);
  } else if (ref.BeamSecType == BeamSecTypeL) {
    FillBeam(model, row, data, nodeI, nodeJ, refPoint, beam);
    beam.BeamSecMirrored = ref.BeamSecMirrored;
    const BeamSection& s =
        FetchSection(model.LBeamSections, "L_beam sections", row, ref.BeamSecIndex);
    beam.Section =
        SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, ref.BeamSecOz, ref.BeamSecMirrored);
  } else if (ref.BeamSecType == BeamSecTypeC) {
    const Material& material = FetchMaterial(model, BeamRow, row, data.material);
    const CBeamSection& s =
        FetchSection(model.CBeamSections, "C_beam sections", row, ref.BeamSecIndex);
    InitCBeamElement(beam, nodeI, nodeJ, {refPoint[0], refPoint[1], refPoint[2], BeamTolerance},
                     material, s, ref.BeamSecOz);
  }
}

void ReadBeams(TextCursor& file, Model& model) {
  constexpr const char* Rows = "beam elements";
  ReadElementCount<NodesPerBeam>(file, "Number of beam elements:NELEM_B=%d\n", "NELEM_B", Rows,
                                 model.NELEM_B, model.BeamElements, model.BeamNodes);
  ReserveItems("the sections of " + Describe(model.NELEM_B, Rows),
               static_cast<std::size_t>(model.NELEM_B), model.BeamSectionRefs);
  for (std::int32_t e = 0; e < model.NELEM_B; ++e) {
    std::int32_t number = 0, mirrored = 0;
    BeamRowData data;
    BeamSectionRef& ref = model.BeamSectionRefs.emplace_back();
    ScanFormat(file, "%d:", {&number});
    ScanFormat(file,
               "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,"
               "BeamSecMirrored=%d]\n",
               {&data.nodes[0], &data.nodes[1], &data.orientation[0], &data.orientation[1],
                &data.orientation[2], &data.material, &ref.BeamSecType, &ref.BeamSecIndex,
                &ref.BeamSecOz, &mirrored});
    ref.BeamSecMirrored = mirrored != 0;
    model.BeamNodes.insert(model.BeamNodes.end(), data.nodes.begin(), data.nodes.end());
    SetUpBeam(model, e, data, model.BeamElements.emplace_back());
  }
}

// The flags are separated by white space only; a comma ends the parsing of the row.
void ReadRestraints(TextCursor& file, Model& model) {
  ReadCount(file, "Number of restricted nodal points:NRN=%d\n", "NRN", "restricted nodal points",
            model.NRN, model.NodalRestraints);
  ReadRows(file, model.NodalRestraints, [&](NodalRestraint& restraint) {
    ScanFormat(file, "%d:", {&restraint.node});
    for (std::size_t d = 0; d < 5; ++d) ScanFormat(file, "%d", {&restraint.fixed[d]});
    ScanFormat(file, "%d\n", {&restraint.fixed[5]});
  });
}

void ReadForces(TextCursor& file, Model& model) {
  ReadCount(file, "Number of forces:NFOR=%d\n", "NFOR", "forces", model.NFOR, model.NodalForces);
  ReadRows(file, model.NodalForces, [&](NodalForce& force) {
    ScanFormat(file, "%d<", {&force.node});
    for (std::size_t d = 0; d < 5; ++d) ScanFormat(file, "%lf,", {&force.components[d]});
    ScanFormat(file, "%lf>\n", {&force.components[5]});
  });
}

void ReadSurfaceLoads(TextCursor& file, ZeroedTable<ShellSurfaceLoad>& loads) {
  ReadRows(file, loads, [&](ShellSurfaceLoad& load) {
    ScanFormat(file, "%d:%lf,%lf,%lf\n", {&load.element, &load.q[0], &load.q[1], &load.q[2]});
  });
}

void ReadDistributedLoads(TextCursor& file, Model& model) {
  ReadCount(file, "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
            "NDL_S_4ND", "distributed loads on four-node shell elements", model.NDL_S_4ND,
            model.Shell4SurfaceLoads);
  ReadSurfaceLoads(file, model.Shell4SurfaceLoads);
  ReadCount(file, "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
            "NDL_S_3ND", "distributed loads on three-node shell elements", model.NDL_S_3ND,
            model.Shell3SurfaceLoads);
  ReadSurfaceLoads(file, model.Shell3SurfaceLoads);
  ReadCount(file, "Number of distributed loads on beam elements:NDL_B=%d\n", "NDL_B",
            "distributed loads on beam elements", model.NDL_B, model.BeamLineLoads);
  ReadRows(file, model.BeamLineLoads, [&](BeamLineLoad& load) {
    ScanFormat(file, "%d:%lf,%lf\n", {&load.element, &load.q[0], &load.q[1]});
  });
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
  std::string text;
  LoadText(fileName, text);
  ReadInputText(std::move(text), model);
}

void ReadInputText(std::string text, Model& model) {
  TextCursor file{std::move(text), 0};
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
