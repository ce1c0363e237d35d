#include "commands/export_csv.h"

#include <array>
#include <cerrno>
#include <fstream>
#include <system_error>

#include "commands/element_words.h"
#include "commands/forces.h"
#include "commands/origin_columns.h"
#include "commands/progress.h"
#include "commands/reactions_tables.h"
#include "commands/result_table.h"
#include "deck/row_formats.h"
#include "report/stop.h"
#include "results/corner_stress.h"

namespace kvx {

using korvex::Model;
using korvex::StressVector;

namespace {

constexpr std::array<const char*, 6> DofColumns{"ux", "uy", "uz", "rx", "ry", "rz"};

// A table on its way into a file: rows are written when there are many.
struct TableWriter {
  ResultTable table;  // rows that are not yet written
  std::ostream* stream = nullptr;
  OriginColumns origins;
};

constexpr std::size_t MostCells = 16384;

// The origin of the model; one without nodes where it was not imported.
ModelOrigin CopyOrigin(const MeshResults& results) {
  return results.origin == nullptr ? ModelOrigin() : *results.origin;
}

void BeginTable(const MeshResults& results, std::vector<std::string> notes,
                std::vector<std::string> columns, TableWriter& writer) {
  writer.table = {};
  writer.table.notes = std::move(notes);
  writer.table.columns = std::move(columns);
  if (results.origin != nullptr) {
    BeginOriginColumns(*results.origin, ColumnReader::Program, writer.table, writer.origins);
  }
  *writer.stream << CsvHead(writer.table);
}

void WriteRows(TableWriter& writer) {
  StopIfInterrupted();
  AddOriginCells(writer.origins, writer.table.cells);
  *writer.stream << CsvRows(writer.table);
  writer.table.cells.clear();
}

void EndRow(TableWriter& writer) {
  if (writer.table.cells.size() >= MostCells) WriteRows(writer);
}

void AddNumber(std::int32_t number, TableWriter& writer) {
  writer.table.cells.emplace_back(std::int64_t{number});
}

void AddDoubles(const double* values, std::size_t count, TableWriter& writer) {
  for (std::size_t k = 0; k < count; ++k) writer.table.cells.emplace_back(values[k]);
}

void AddNodePlace(const Model& model, std::int32_t node, TableWriter& writer) {
  const korvex::Node& at = model.Tables.Nodes[static_cast<std::size_t>(node)];
  for (const double coordinate : {at.x, at.y, at.z}) {
    writer.table.cells.emplace_back(coordinate);
  }
}

// The mean of the nodes.
void AddElementPlace(const Model& model, const ElementRef& element, TableWriter& writer) {
  const NodeSpan span = NodesOfElement(model, element);
  std::array<double, 3> sum{};
  for (std::int32_t k = 0; k < span.count; ++k) {
    const korvex::Node& at = model.Tables.Nodes[static_cast<std::size_t>(span.nodes[k])];
    sum = {sum[0] + at.x, sum[1] + at.y, sum[2] + at.z};
  }
  for (const double coordinate : sum) writer.table.cells.emplace_back(coordinate / span.count);
}

// kind, element, node1 ..., x, y, z.
void AddElement(const Model& model, const ElementRef& element, TableWriter& writer) {
  writer.table.cells.emplace_back(std::string(KindWord(element.kind)));
  AddNumber(element.row, writer);
  const NodeSpan span = NodesOfElement(model, element);
  for (std::int32_t k = 0; k < span.count; ++k) AddNumber(span.nodes[k], writer);
  AddElementPlace(model, element, writer);
}

std::vector<std::string> ElementColumns(int nodes) {
  std::vector<std::string> columns{"kind", "element"};
  for (int k = 1; k <= nodes; ++k) columns.push_back("node" + std::to_string(k));
  columns.insert(columns.end(), {"x", "y", "z"});
  return columns;
}

// material, E, nu, density, part.
const std::array<const char*, 5> PropertyColumns{"material", "E", "nu", "density", "part"};

void AddProperties(const MeshResults& results, std::int32_t material, std::size_t cell,
                   TableWriter& writer) {
  const korvex::ModelTables& tables = results.solved.model.Tables;
  const korvex::Material& row = tables.Materials[static_cast<std::size_t>(material)];
  AddNumber(material, writer);
  for (const double value : {row.E, row.Mu, row.Density}) writer.table.cells.emplace_back(value);
  AddNumber(results.parts[cell], writer);
}

void WriteNodes(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  BeginTable(results,
             {"Global axes, units of the model. fixed: the directions in which a support holds the "
              "node."},
             {"node", "x", "y", "z", "fixed"}, writer);
  const auto count = static_cast<std::int32_t>(model.Tables.Nodes.size());
  for (std::int32_t node = 0; node < count; ++node) {
    AddNumber(node, writer);
    AddNodePlace(model, node, writer);
    std::string fixed;
    for (std::size_t d = 0; d < 6; ++d) {
      if (results.solved.isHeld[6 * static_cast<std::size_t>(node) + d] == 0) continue;
      fixed += (fixed.empty() ? "" : " ") + std::string(DofColumns[d]);
    }
    writer.table.cells.emplace_back(std::move(fixed));
    EndRow(writer);
  }
}

void WriteShellRows(const MeshResults& results, ElementKind kind, TableWriter& writer) {
  const Model& model = results.solved.model;
  const bool isQuad = kind == ElementKind::Shell4;
  const auto& rows = isQuad ? model.Tables.Shell4Properties : model.Tables.Shell3Properties;
  const std::size_t before = isQuad ? 0 : model.Shell4Elements.size();
  std::vector<std::string> columns = ElementColumns(isQuad ? 4 : 3);
  columns.insert(columns.end(), {"thickness_row", "thickness"});
  columns.insert(columns.end(), PropertyColumns.begin(), PropertyColumns.end());
  BeginTable(results,
             {"x, y, z: the mean of the nodes. material, thickness_row: rows of their tables, from "
              "0. part: from 1. Units of the model."},
             columns, writer);
  for (std::size_t e = 0; e < rows.size(); ++e) {
    AddElement(model, {kind, static_cast<std::int32_t>(e)}, writer);
    AddNumber(rows[e].thickness, writer);
    const auto thickness = static_cast<std::size_t>(rows[e].thickness);
    writer.table.cells.emplace_back(model.Tables.ShellThicknesses[thickness].TK);
    AddProperties(results, rows[e].material, before + e, writer);
    EndRow(writer);
  }
}

void WriteShells(const MeshResults& results, TableWriter& writer) {
  WriteShellRows(results, ElementKind::Shell4, writer);
}

void WriteTriangles(const MeshResults& results, TableWriter& writer) {
  WriteShellRows(results, ElementKind::Shell3, writer);
}

void WriteBeams(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  const korvex::ModelTables& tables = model.Tables;
  std::vector<std::string> columns = ElementColumns(2);
  columns.insert(columns.end(), {"length", "section", "mirrored", "offset", "orientation_x",
                                 "orientation_y", "orientation_z"});
  columns.insert(columns.end(), PropertyColumns.begin(), PropertyColumns.end());
  BeginTable(results,
             {"x, y, z: the middle between the nodes. section: its table and row; mirrored: 1 is "
              "yes; offset: along local z. orientation: a direction, global, that local z is made "
              "of. material: its row, from 0. part: from 1. Units of the model."},
             columns, writer);
  const std::size_t before = model.Shell4Elements.size() + model.Shell3Elements.size();
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    const auto row = static_cast<std::int32_t>(b);
    AddElement(model, {ElementKind::Beam, row}, writer);
    writer.table.cells.emplace_back(results.beamForces[b].length);
    writer.table.cells.emplace_back(SectionName(model, row));
    AddNumber(tables.BeamSectionRefs[b].BeamSecMirrored ? 1 : 0, writer);
    writer.table.cells.emplace_back(tables.BeamSectionRefs[b].BeamSecOz);
    AddDoubles(tables.BeamProperties[b].orientation.data(), 3, writer);
    AddProperties(results, tables.BeamProperties[b].material, before + b, writer);
    EndRow(writer);
  }
}

void WriteDisplacements(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  std::vector<std::string> columns{"node", "x", "y", "z"};
  columns.insert(columns.end(), DofColumns.begin(), DofColumns.end());
  BeginTable(results,
             {"Global axes, units of the model; rotations rx, ry, rz in radians, right-handed."},
             columns, writer);
  const auto count = static_cast<std::int32_t>(model.Tables.Nodes.size());
  for (std::int32_t node = 0; node < count; ++node) {
    AddNumber(node, writer);
    AddNodePlace(model, node, writer);
    AddDoubles(&model.Displacements[6 * static_cast<std::size_t>(node)], 6, writer);
    EndRow(writer);
  }
}

void WriteReactions(const MeshResults& results, TableWriter& writer) {
  *writer.stream << TableCsv(
      MakeReactionsCsv(results.solved.model, CopyOrigin(results), results.reactions));
}

// The stresses of one face and its von Mises stress.
void AddFace(const StressVector& stress, TableWriter& writer) {
  AddDoubles(stress.data(), stress.size(), writer);
  writer.table.cells.emplace_back(korvex::EquivalentStress(stress));
}

template <typename Element>
void AddCorners(const Model& model, const ElementRef& ref, const Element& element, bool isAveraged,
                TableWriter& writer) {
  const NodeSpan span = NodesOfElement(model, ref);
  for (std::int32_t corner = 0; corner < span.count; ++corner) {
    const auto c = static_cast<std::size_t>(corner);
    writer.table.cells.emplace_back(std::string(KindWord(ref.kind)));
    AddNumber(ref.row, writer);
    AddNumber(corner, writer);
    AddNumber(span.nodes[corner], writer);
    AddNodePlace(model, span.nodes[corner], writer);
    AddFace(isAveraged ? element.AvgStressTop[c] : element.NodeStressTop[c], writer);
    AddFace(isAveraged ? element.AvgStressBottom[c] : element.NodeStressBottom[c], writer);
    EndRow(writer);
  }
}

void WriteStresses(const MeshResults& results, bool isAveraged, TableWriter& writer) {
  const Model& model = results.solved.model;
  std::vector<std::string> columns{"kind", "element", "corner", "node", "x", "y", "z"};
  for (const char* face : {"upper", "lower"}) {
    for (const char* component : {"SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "von_mises"}) {
      columns.push_back(std::string(face) + '_' + component);
    }
  }
  BeginTable(results,
             {isAveraged ? "Stresses at the corners of shells, averaged over neighbours in one "
                           "surface."
                         : "Stresses at the corners of shells, of single elements, not averaged.",
              "Global axes. The upper face lies on the side of the element's normal. Units of the "
              "model."},
             columns, writer);
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
    AddCorners(model, {ElementKind::Shell4, static_cast<std::int32_t>(e)}, model.Shell4Elements[e],
               isAveraged, writer);
  }
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    AddCorners(model, {ElementKind::Shell3, static_cast<std::int32_t>(e)}, model.Shell3Elements[e],
               isAveraged, writer);
  }
}

void WriteAveraged(const MeshResults& results, TableWriter& writer) {
  WriteStresses(results, true, writer);
}

void WriteUnaveraged(const MeshResults& results, TableWriter& writer) {
  WriteStresses(results, false, writer);
}

// As `kvx forces --shell all --triangle all --csv`.
void WriteShellForces(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  ForcesChoice choice;
  choice.origin = CopyOrigin(results);
  choice.hasShellList = true;
  for (std::size_t e = 0; e < model.Shell4Elements.size(); ++e) {
    choice.shells.push_back({ElementKind::Shell4, static_cast<std::int32_t>(e)});
  }
  for (std::size_t e = 0; e < model.Shell3Elements.size(); ++e) {
    choice.shells.push_back({ElementKind::Shell3, static_cast<std::int32_t>(e)});
  }
  OutputBlocks blocks;
  blocks.stream = writer.stream;
  AddShellCsv(model, {}, choice, blocks);
  EndOutput(blocks);
}

// As `kvx forces --csv`.
void WriteBeamForces(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  ForcesChoice choice;
  choice.origin = CopyOrigin(results);
  for (std::size_t b = 0; b < model.BeamElements.size(); ++b) {
    choice.beams.push_back(static_cast<std::int32_t>(b));
  }
  ForcesCommand command;
  command.form = OutputForm::Csv;
  OutputBlocks blocks;
  blocks.stream = writer.stream;
  AddBeamOutput(model, command, choice, blocks);
  EndOutput(blocks);
}

constexpr std::size_t ForceColumns = 6, IntensityColumns = 3;

// table, row, kind, element.
void BeginLoad(korvex::Section section, std::size_t row, const char* kind, std::int32_t number,
               TableWriter& writer) {
  writer.table.cells.emplace_back(std::string(korvex::FormatOf(section).key));
  AddNumber(static_cast<std::int32_t>(row), writer);
  writer.table.cells.emplace_back(std::string(kind));
  AddNumber(number, writer);
}

void AddEmpty(std::size_t count, TableWriter& writer) {
  writer.table.cells.resize(writer.table.cells.size() + count);
}

template <typename Load>
void AddElementLoads(const Model& model, korvex::Section section, ElementKind kind,
                     const Load& loads, TableWriter& writer) {
  for (std::size_t row = 0; row < loads.size(); ++row) {
    BeginLoad(section, row, KindWord(kind), loads[row].element, writer);
    AddElementPlace(model, {kind, loads[row].element}, writer);
    AddEmpty(ForceColumns, writer);
    AddDoubles(loads[row].q.data(), loads[row].q.size(), writer);
    AddEmpty(IntensityColumns - loads[row].q.size(), writer);
    EndRow(writer);
  }
}

void WriteLoads(const MeshResults& results, TableWriter& writer) {
  const Model& model = results.solved.model;
  const korvex::ModelTables& tables = model.Tables;
  BeginTable(
      results,
      {"The rows of the load tables. Fx .. Mz: at the node, global axes; a force of 1e20 u on a "
       "held direction prescribes the displacement u. q1, q2, q3: force/area along the shell's "
       "normal at its first three nodes; of beams force/length along local z at both nodes. x, y, "
       "z of an element: the mean of its nodes. Units of the model."},
      {"table", "row", "kind", "element", "x", "y", "z", "Fx", "Fy", "Fz", "Mx", "My", "Mz", "q1",
       "q2", "q3"},
      writer);
  for (std::size_t row = 0; row < tables.NodalForces.size(); ++row) {
    const korvex::NodalForce& force = tables.NodalForces[row];
    BeginLoad(korvex::Section::Forces, row, KindWord(Holder::Node), force.node, writer);
    AddNodePlace(model, force.node, writer);
    AddDoubles(force.components.data(), ForceColumns, writer);
    AddEmpty(IntensityColumns, writer);
    EndRow(writer);
  }
  AddElementLoads(model, korvex::Section::Shell4Loads, ElementKind::Shell4,
                  tables.Shell4SurfaceLoads, writer);
  AddElementLoads(model, korvex::Section::Shell3Loads, ElementKind::Shell3,
                  tables.Shell3SurfaceLoads, writer);
  AddElementLoads(model, korvex::Section::BeamLoads, ElementKind::Beam, tables.BeamLineLoads,
                  writer);
}

struct CsvFile {
  const char* name;
  void (*write)(const MeshResults& results, TableWriter& writer);
};

constexpr std::array<CsvFile, 11> Files{{{"nodes.csv", WriteNodes},
                                         {"shells.csv", WriteShells},
                                         {"triangles.csv", WriteTriangles},
                                         {"beams.csv", WriteBeams},
                                         {"loads.csv", WriteLoads},
                                         {"displacements.csv", WriteDisplacements},
                                         {"reactions.csv", WriteReactions},
                                         {"stresses_averaged.csv", WriteAveraged},
                                         {"stresses_unaveraged.csv", WriteUnaveraged},
                                         {"shell_forces.csv", WriteShellForces},
                                         {"beam_forces.csv", WriteBeamForces}}};

[[noreturn]] void StopAt(const char* name) {
  const std::string reason = errno == 0 ? "" : ": " + std::generic_category().message(errno);
  throw korvex::Stop{korvex::StopKind::ResultFile,
                     std::string(name) + " cannot be written" + reason + "."};
}

}  // namespace

std::vector<FileToMake> NameCsvFiles() {
  std::vector<FileToMake> files;
  files.reserve(Files.size());
  for (const CsvFile& file : Files) files.push_back({file.name, file.name});
  return files;
}

void WriteCsvFiles(const MeshResults& results, const std::function<void(const char* name)>& before,
                   UnfinishedFolder& unfinished) {
  for (const CsvFile& file : Files) {
    before(file.name);
    errno = 0;
    std::ofstream stream(unfinished.prefix + file.name, std::ios::binary);
    TableWriter writer;
    writer.stream = &stream;
    if (stream) file.write(results, writer);
    if (stream && !writer.table.cells.empty()) WriteRows(writer);
    if (stream) stream.close();
    if (!stream) StopAt(file.name);
  }
  MoveFiles(unfinished);
}

}  // namespace kvx
