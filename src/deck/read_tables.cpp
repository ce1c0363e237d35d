// The sections of the model file in the order of the file. One row may be read with several
// formats.
//
// The "\n" at the end of a format matches any white space, also further line ends and the
// indentation of the next line. A literal must match exactly.
#include "deck/read_tables.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "deck/check_reference.h"
#include "deck/scan_text.h"
#include "report/check_memory.h"
#include "report/stop.h"

namespace korvex {

namespace {

// A position that moves forward through the text and counts lines.
struct PlaceCounter {
  std::size_t byte = 0;
  std::size_t line = 1;
  std::size_t lineBegin = 0;  // the first byte of the line
};

TextPlace MoveTo(std::size_t byte, const std::string& text, PlaceCounter& counter) {
  while (counter.byte < byte) {
    const void* feed = std::memchr(text.data() + counter.byte, '\n', byte - counter.byte);
    if (feed == nullptr) break;
    counter.byte = static_cast<std::size_t>(static_cast<const char*>(feed) - text.data()) + 1;
    counter.lineBegin = counter.byte;
    ++counter.line;
  }
  counter.byte = byte;
  return {counter.line, byte - counter.lineBegin + 1};
}

// The text, the tables that it fills, and the data about the present row for the listener.
struct Reader {
  TextCursor cursor;
  const RowListener& listener;
  ModelTables& tables;
  RowReading reading{};
  PlaceCounter places{};
};

void BeginRow(Section section, std::int32_t row, Reader& reader) {
  reader.reading = {};
  reader.reading.section = section;
  reader.reading.row = row;
  if (!reader.listener.row) return;
  reader.reading.place = MoveTo(reader.cursor.position, reader.cursor.text, reader.places);
}

// Reads one format of the row. The first format that does not match decides `awaited` and `stop`.
void Take(Reader& reader, const char* format, std::initializer_list<ScanField> fields) {
  const ScanResult result = ScanFormat(reader.cursor, format, fields);
  RowReading& reading = reader.reading;
  reading.fieldsExpected += static_cast<int>(fields.size());
  reading.fieldsTaken += result.taken;
  if (result.awaited == nullptr || reading.awaited != nullptr) return;
  reading.awaited = result.awaited;
  reading.stopByte = reader.cursor.position;
  if (!reader.listener.row) return;
  reading.stop = MoveTo(reading.stopByte, reader.cursor.text, reader.places);
}

void EndRow(const Reader& reader) {
  if (reader.listener.row) reader.listener.row(reader.reading);
}

void ReadHeader(Reader& reader) {
  double release = 0.0;  // not an accepted release: a header that cannot be read is a wrong one
  BeginRow(Section::Header, TitleRow, reader);
  Take(reader, "### Toln_Korvex release=%lf ###\n", {&release});
  EndRow(reader);
  if (release != ModelFileRelease) throw Stop{StopKind::Notice, "Release File Number error!"};
}

// The first line of a section, and the names of the section and its rows.
struct SectionTitle {
  Section section;
  const char* format;  // of the line with the count
  const char* key;     // of the count
  const char* rows;    // in notices
  bool isAlwaysAllocated;
};

// The name of `count` rows in the notice about too little memory.
std::string Describe(std::size_t count, const char* rows) {
  return std::to_string(count) + " " + rows;
}

// Reads a section's count and returns how many rows follow.
std::size_t ReadCount(Reader& reader, const SectionTitle& title, std::int32_t& count) {
  BeginRow(title.section, TitleRow, reader);
  Take(reader, title.format, {&count});
  EndRow(reader);
  // Some tables are always allocated: a negative count is an error. The others are allocated only
  // if they have rows: a negative count acts as 0.
  if (title.isAlwaysAllocated) CheckCount(title.key, count);
  if (reader.listener.makeRoom) reader.listener.makeRoom(title.section, count);
  return static_cast<std::size_t>(std::max(count, 0));
}

// Reads a section into a table that gets all its rows, filled with zeros, at once. If a row reads
// nothing from the text, no later row of the section could read anything: all of them stay zeros,
// and the loop ends. A count far beyond the end of the file therefore takes no time.
template <typename Record, typename TakeRow>
void ReadTable(Reader& reader, const SectionTitle& title, std::int32_t& count,
               ZeroedTable<Record>& table, TakeRow takeRow) {
  const std::size_t rows = ReadCount(reader, title, count);
  AllocateItems(Describe(rows, title.rows), rows, table);
  for (std::size_t row = 0; row < rows; ++row) {
    const std::size_t before = reader.cursor.position;
    BeginRow(title.section, static_cast<std::int32_t>(row), reader);
    takeRow(table[row]);
    EndRow(reader);
    if (reader.cursor.position == before) return;
  }
}

void ReadMaterials(Reader& reader) {
  ReadTable(reader, {Section::Materials, "Number of materials:NMT=%d\n", "NMT", "materials", true},
            reader.tables.NMT, reader.tables.Materials, [&](Material& material) {
              std::int32_t label = 0;
              Take(reader, "#%d:\n", {&label});
              Take(reader, "E=%lf\n", {&material.E});
              Take(reader, "Mu=%lf\n", {&material.Mu});
              Take(reader, "Density=%lf\n", {&material.Density});
            });
}

void ReadThicknesses(Reader& reader) {
  ReadTable(reader,
            {Section::ShellThicknesses, "Number of shell thicknesses:NTK=%d\n", "NTK",
             "shell thicknesses", true},
            reader.tables.NTK, reader.tables.ShellThicknesses, [&](ShellThickness& thickness) {
              std::int32_t label = 0;
              Take(reader, "#%d:\n", {&label});
              Take(reader, "TK=%lf\n", {&thickness.TK});
            });
}

// Reads a T_beam or L_beam section table. The label of a section is any text up to the line's end.
void ReadBeamSections(Reader& reader, const SectionTitle& title, std::int32_t& count,
                      ZeroedTable<BeamSection>& sections) {
  ReadTable(reader, title, count, sections, [&](BeamSection& section) {
    SkipLine(reader.cursor);
    Take(reader, "Hw=%lf\n", {&section.Hw});
    Take(reader, "Tw=%lf\n", {&section.Tw});
    Take(reader, "Bf=%lf\n", {&section.Bf});
    Take(reader, "Tf=%lf\n", {&section.Tf});
  });
}

void ReadSectionTables(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadBeamSections(reader,
                   {Section::TBeamSections, "Number of T_beam sections:NTBS=%d\n", "NTBS",
                    "T_beam sections", false},
                   tables.NTBS, tables.TBeamSections);
  ReadBeamSections(reader,
                   {Section::LBeamSections, "Number of L_beam sections:NLBS=%d\n", "NLBS",
                    "L_beam sections", false},
                   tables.NLBS, tables.LBeamSections);
  ReadTable(reader,
            {Section::CBeamSections, "Number of C_beam sections:NCBS=%d\n", "NCBS",
             "C_beam sections", false},
            tables.NCBS, tables.CBeamSections, [&](CBeamSection& section) {
              SkipLine(reader.cursor);
              Take(reader, "R=%lf\n", {&section.R});
              Take(reader, "T=%lf\n", {&section.T});
            });
}

void ReadNodes(Reader& reader) {
  ReadTable(reader,
            {Section::Nodes, "Number of nodal points:NPOIN=%d\n", "NPOIN", "nodal points", true},
            reader.tables.NPOIN, reader.tables.Nodes, [&](Node& node) {
              std::int32_t number = 0;
              Take(reader, "%d:%lf,%lf,%lf\n", {&number, &node.x, &node.y, &node.z});
            });
}

// Reads the count of an element section and reserves room for the elements' nodes; returns the
// number of rows. The rows are added one by one, because the listener may stop the reading: with a
// count far beyond the end of the file, no row after the stop is made.
std::size_t ReadElementCount(Reader& reader, const SectionTitle& title, std::size_t nodes,
                             std::int32_t& count, std::vector<std::int32_t>& connectivity) {
  const std::size_t rows = ReadCount(reader, title, count);
  ReserveItems("the nodes of " + Describe(rows, title.rows), rows * nodes, connectivity);
  return rows;
}

// Reads a section of shells. takeRow: reads the nodes and properties after the running number.
template <std::size_t Nodes, typename TakeRow>
void ReadShells(Reader& reader, const SectionTitle& title, std::int32_t& count,
                std::vector<std::int32_t>& connectivity,
                std::vector<ShellRowProperties>& properties, TakeRow takeRow) {
  const std::size_t rows = ReadElementCount(reader, title, Nodes, count, connectivity);
  ReserveItems("the properties of " + Describe(rows, title.rows), rows, properties);
  for (std::size_t row = 0; row < rows; ++row) {
    std::int32_t number = 0;
    std::array<std::int32_t, Nodes> nodes{};
    BeginRow(title.section, static_cast<std::int32_t>(row), reader);
    Take(reader, "%d:", {&number});
    takeRow(nodes, properties.emplace_back());
    connectivity.insert(connectivity.end(), nodes.begin(), nodes.end());
    EndRow(reader);
  }
}

void ReadShells4(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadShells<NodesPerShell4>(
      reader,
      {Section::Shells4, "Number of four-nodes shell elements:NELEM_S_4ND=%d\n", "NELEM_S_4ND",
       "four-node shell elements", false},
      tables.NELEM_S_4ND, tables.Shell4Nodes, tables.Shell4Properties,
      [&](std::array<std::int32_t, NodesPerShell4>& n, ShellRowProperties& properties) {
        Take(reader, "%d,%d,%d,%d[%d,%d]\n",
             {&n[0], &n[1], &n[2], &n[3], &properties.material, &properties.thickness});
      });
}

void ReadShells3(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadShells<NodesPerShell3>(
      reader,
      {Section::Shells3, "Number of three-nodes shell elements:NELEM_S_3ND=%d\n", "NELEM_S_3ND",
       "three-node shell elements", false},
      tables.NELEM_S_3ND, tables.Shell3Nodes, tables.Shell3Properties,
      [&](std::array<std::int32_t, NodesPerShell3>& n, ShellRowProperties& properties) {
        Take(reader, "%d,%d,%d[%d,%d]\n",
             {&n[0], &n[1], &n[2], &properties.material, &properties.thickness});
      });
}

void ReadBeams(Reader& reader) {
  constexpr SectionTitle Title{Section::Beams, "Number of beam elements:NELEM_B=%d\n", "NELEM_B",
                               "beam elements", false};
  ModelTables& tables = reader.tables;
  const std::size_t rows =
      ReadElementCount(reader, Title, NodesPerBeam, tables.NELEM_B, tables.BeamNodes);
  ReserveItems("the sections of " + Describe(rows, Title.rows), rows, tables.BeamSectionRefs);
  ReserveItems("the properties of " + Describe(rows, Title.rows), rows, tables.BeamProperties);
  for (std::size_t row = 0; row < rows; ++row) {
    std::int32_t number = 0, mirrored = 0;
    std::array<std::int32_t, NodesPerBeam> nodes{};
    BeamSectionRef& ref = tables.BeamSectionRefs.emplace_back();
    BeamRowProperties& properties = tables.BeamProperties.emplace_back();
    Vector3& v = properties.orientation;
    BeginRow(Title.section, static_cast<std::int32_t>(row), reader);
    Take(reader, "%d:", {&number});
    Take(reader,
         "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n",
         {&nodes[0], &nodes[1], &v[0], &v[1], &v[2], &properties.material, &ref.BeamSecType,
          &ref.BeamSecIndex, &ref.BeamSecOz, &mirrored});
    ref.BeamSecMirrored = mirrored != 0;
    tables.BeamNodes.insert(tables.BeamNodes.end(), nodes.begin(), nodes.end());
    EndRow(reader);
  }
}

// The flags are separated by white space only. At a comma the next reads fail, and the rest of the
// file is misread; this is the format.
void ReadRestraints(Reader& reader) {
  ReadTable(reader,
            {Section::Restraints, "Number of restricted nodal points:NRN=%d\n", "NRN",
             "restricted nodal points", true},
            reader.tables.NRN, reader.tables.NodalRestraints, [&](NodalRestraint& restraint) {
              Take(reader, "%d:", {&restraint.node});
              for (std::size_t d = 0; d < 5; ++d) Take(reader, "%d", {&restraint.fixed[d]});
              Take(reader, "%d\n", {&restraint.fixed[5]});
            });
}

void ReadForces(Reader& reader) {
  ReadTable(reader, {Section::Forces, "Number of forces:NFOR=%d\n", "NFOR", "forces", false},
            reader.tables.NFOR, reader.tables.NodalForces, [&](NodalForce& force) {
              Take(reader, "%d<", {&force.node});
              for (std::size_t d = 0; d < 5; ++d) Take(reader, "%lf,", {&force.components[d]});
              Take(reader, "%lf>\n", {&force.components[5]});
            });
}

void ReadSurfaceLoads(Reader& reader, const SectionTitle& title, std::int32_t& count,
                      ZeroedTable<ShellSurfaceLoad>& loads) {
  ReadTable(reader, title, count, loads, [&](ShellSurfaceLoad& load) {
    Take(reader, "%d:%lf,%lf,%lf\n", {&load.element, &load.q[0], &load.q[1], &load.q[2]});
  });
}

void ReadDistributedLoads(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadSurfaceLoads(reader,
                   {Section::Shell4Loads,
                    "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
                    "NDL_S_4ND", "distributed loads on four-node shell elements", false},
                   tables.NDL_S_4ND, tables.Shell4SurfaceLoads);
  ReadSurfaceLoads(reader,
                   {Section::Shell3Loads,
                    "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
                    "NDL_S_3ND", "distributed loads on three-node shell elements", false},
                   tables.NDL_S_3ND, tables.Shell3SurfaceLoads);
  ReadTable(reader,
            {Section::BeamLoads, "Number of distributed loads on beam elements:NDL_B=%d\n", "NDL_B",
             "distributed loads on beam elements", false},
            tables.NDL_B, tables.BeamLineLoads, [&](BeamLineLoad& load) {
              Take(reader, "%d:%lf,%lf\n", {&load.element, &load.q[0], &load.q[1]});
            });
}

}  // namespace

void ReadTables(std::string text, const RowListener& listener, ModelTables& tables) {
  Reader reader{{std::move(text), 0}, listener, tables};
  ReadHeader(reader);
  ReadMaterials(reader);
  ReadThicknesses(reader);
  ReadSectionTables(reader);
  ReadNodes(reader);
  ReadShells4(reader);
  ReadShells3(reader);
  ReadBeams(reader);
  ReadRestraints(reader);
  ReadForces(reader);
  ReadDistributedLoads(reader);
}

}  // namespace korvex
