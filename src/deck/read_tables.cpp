// The sections of the model file in the order of the file. One row may be read with several formats
// (row_formats.h).
#include "deck/read_tables.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "deck/check_reference.h"
#include "deck/row_formats.h"
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

TextPlace MoveTo(std::size_t byte, std::string_view text, PlaceCounter& counter) {
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
  if (result.odd != OddNumber::None && reading.odd == OddNumber::None) {
    reading.odd = result.odd;
    reading.oddByte = result.oddByte;
  }
  reading.fieldsExpected += static_cast<int>(fields.size());
  reading.fieldsTaken += result.taken;
  if (result.awaited == nullptr || reading.awaited != nullptr) return;
  reading.awaited = result.awaited;
  reading.stopByte = reader.cursor.position;
  if (!reader.listener.row) return;
  reading.stop = MoveTo(reading.stopByte, reader.cursor.text, reader.places);
}

void EndRow(Reader& reader) {
  reader.reading.endByte = reader.cursor.position;
  if (reader.listener.row) reader.listener.row(reader.reading);
}

void ReadHeader(Reader& reader) {
  double release = 0.0;  // not an accepted release: a header that cannot be read is a wrong one
  BeginRow(Section::Header, TitleRow, reader);
  Take(reader, HeaderFormat, {&release});
  EndRow(reader);
  if (release != ModelFileRelease) throw Stop{StopKind::Notice, "Release File Number error!"};
}

// The name of `count` rows in the notice about too little memory.
std::string Describe(std::size_t count, const char* rows) {
  return std::to_string(count) + " " + rows;
}

// Some tables are always allocated: a negative count is an error. The others are allocated only if
// they have rows: a negative count acts as 0.
bool IsAlwaysAllocated(Section section) {
  return section == Section::Materials || section == Section::ShellThicknesses ||
         section == Section::Nodes || section == Section::Restraints;
}

// Reads a section's count and returns how many rows follow.
std::size_t ReadCount(Reader& reader, const SectionFormat& format, std::int32_t& count) {
  BeginRow(format.section, TitleRow, reader);
  Take(reader, format.title, {&count});
  EndRow(reader);
  if (IsAlwaysAllocated(format.section)) CheckCount(format.key, count);
  if (reader.listener.makeRoom) reader.listener.makeRoom(format.section, count);
  return static_cast<std::size_t>(std::max(count, 0));
}

// Reads a section into a table that gets all its rows, filled with zeros, at once. If a row reads
// nothing from the text, no later row of the section could read anything: all of them stay zeros,
// and the loop ends. A count far beyond the end of the file therefore takes no time.
// takeRow(row, pieces): reads one row with the formats of its pieces.
template <typename Record, typename TakeRow>
void ReadTable(Reader& reader, Section section, std::int32_t& count, ZeroedTable<Record>& table,
               TakeRow takeRow) {
  const SectionFormat& format = FormatOf(section);
  const std::size_t rows = ReadCount(reader, format, count);
  AllocateItems(Describe(rows, format.rows), rows, table);
  for (std::size_t row = 0; row < rows; ++row) {
    const std::size_t before = reader.cursor.position;
    BeginRow(section, static_cast<std::int32_t>(row), reader);
    takeRow(table[row], format.pieces);
    EndRow(reader);
    if (reader.cursor.position == before) return;
  }
}

using Pieces = std::array<const char*, PiecesPerRow>;

void ReadMaterials(Reader& reader) {
  ReadTable(reader, Section::Materials, reader.tables.NMT, reader.tables.Materials,
            [&](Material& material, const Pieces& pieces) {
              Take(reader, pieces[0], {&reader.reading.number});
              Take(reader, pieces[1], {&material.E});
              Take(reader, pieces[2], {&material.Mu});
              Take(reader, pieces[3], {&material.Density});
            });
}

void ReadThicknesses(Reader& reader) {
  ReadTable(reader, Section::ShellThicknesses, reader.tables.NTK, reader.tables.ShellThicknesses,
            [&](ShellThickness& thickness, const Pieces& pieces) {
              Take(reader, pieces[0], {&reader.reading.number});
              Take(reader, pieces[1], {&thickness.TK});
            });
}

// Reads a T_beam or L_beam section table. The label of a section is any text up to the line's end.
void ReadBeamSections(Reader& reader, Section section, std::int32_t& count,
                      ZeroedTable<BeamSection>& sections) {
  ReadTable(reader, section, count, sections, [&](BeamSection& record, const Pieces& pieces) {
    SkipLine(reader.cursor);
    Take(reader, pieces[1], {&record.Hw});
    Take(reader, pieces[2], {&record.Tw});
    Take(reader, pieces[3], {&record.Bf});
    Take(reader, pieces[4], {&record.Tf});
  });
}

void ReadSectionTables(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadBeamSections(reader, Section::TBeamSections, tables.NTBS, tables.TBeamSections);
  ReadBeamSections(reader, Section::LBeamSections, tables.NLBS, tables.LBeamSections);
  ReadTable(reader, Section::CBeamSections, tables.NCBS, tables.CBeamSections,
            [&](CBeamSection& section, const Pieces& pieces) {
              SkipLine(reader.cursor);
              Take(reader, pieces[1], {&section.R});
              Take(reader, pieces[2], {&section.T});
            });
}

void ReadNodes(Reader& reader) {
  ReadTable(reader, Section::Nodes, reader.tables.NPOIN, reader.tables.Nodes,
            [&](Node& node, const Pieces& pieces) {
              Take(reader, pieces[0], {&reader.reading.number, &node.x, &node.y, &node.z});
            });
}

// Reads the count of an element section and reserves room for the elements' nodes; returns the
// number of rows. The rows are added one by one, because the listener may stop the reading: with a
// count far beyond the end of the file, no row after the stop is made.
std::size_t ReadElementCount(Reader& reader, const SectionFormat& format, std::size_t nodes,
                             std::int32_t& count, std::vector<std::int32_t>& connectivity) {
  const std::size_t rows = ReadCount(reader, format, count);
  ReserveItems("the nodes of " + Describe(rows, format.rows), rows * nodes, connectivity);
  return rows;
}

// Reads a section of shells. takeRow(nodes, properties, format): reads what follows the running
// number.
template <std::size_t Nodes, typename TakeRow>
void ReadShells(Reader& reader, Section section, std::int32_t& count,
                std::vector<std::int32_t>& connectivity,
                std::vector<ShellRowProperties>& properties, TakeRow takeRow) {
  const SectionFormat& format = FormatOf(section);
  const std::size_t rows = ReadElementCount(reader, format, Nodes, count, connectivity);
  ReserveItems("the properties of " + Describe(rows, format.rows), rows, properties);
  for (std::size_t row = 0; row < rows; ++row) {
    std::array<std::int32_t, Nodes> nodes{};
    BeginRow(section, static_cast<std::int32_t>(row), reader);
    Take(reader, format.pieces[0], {&reader.reading.number});
    takeRow(nodes, properties.emplace_back(), format.pieces[1]);
    connectivity.insert(connectivity.end(), nodes.begin(), nodes.end());
    EndRow(reader);
  }
}

void ReadShells4(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadShells<NodesPerShell4>(
      reader, Section::Shells4, tables.NELEM_S_4ND, tables.Shell4Nodes, tables.Shell4Properties,
      [&](std::array<std::int32_t, NodesPerShell4>& n, ShellRowProperties& properties,
          const char* format) {
        Take(reader, format,
             {&n[0], &n[1], &n[2], &n[3], &properties.material, &properties.thickness});
      });
}

void ReadShells3(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadShells<NodesPerShell3>(
      reader, Section::Shells3, tables.NELEM_S_3ND, tables.Shell3Nodes, tables.Shell3Properties,
      [&](std::array<std::int32_t, NodesPerShell3>& n, ShellRowProperties& properties,
          const char* format) {
        Take(reader, format, {&n[0], &n[1], &n[2], &properties.material, &properties.thickness});
      });
}

void ReadBeams(Reader& reader) {
  const SectionFormat& format = FormatOf(Section::Beams);
  ModelTables& tables = reader.tables;
  const std::size_t rows =
      ReadElementCount(reader, format, NodesPerBeam, tables.NELEM_B, tables.BeamNodes);
  ReserveItems("the sections of " + Describe(rows, format.rows), rows, tables.BeamSectionRefs);
  ReserveItems("the properties of " + Describe(rows, format.rows), rows, tables.BeamProperties);
  for (std::size_t row = 0; row < rows; ++row) {
    std::int32_t mirrored = 0;
    std::array<std::int32_t, NodesPerBeam> nodes{};
    BeamSectionRef& ref = tables.BeamSectionRefs.emplace_back();
    BeamRowProperties& properties = tables.BeamProperties.emplace_back();
    Vector3& v = properties.orientation;
    BeginRow(Section::Beams, static_cast<std::int32_t>(row), reader);
    Take(reader, format.pieces[0], {&reader.reading.number});
    Take(reader, format.pieces[1],
         {&nodes[0], &nodes[1], &v[0], &v[1], &v[2], &properties.material, &ref.BeamSecType,
          &ref.BeamSecIndex, &ref.BeamSecOz, &mirrored});
    ref.BeamSecMirrored = mirrored != 0;
    tables.BeamNodes.insert(tables.BeamNodes.end(), nodes.begin(), nodes.end());
    EndRow(reader);
  }
}

void ReadRestraints(Reader& reader) {
  ReadTable(reader, Section::Restraints, reader.tables.NRN, reader.tables.NodalRestraints,
            [&](NodalRestraint& restraint, const Pieces& pieces) {
              Take(reader, pieces[0], {&restraint.node});
              for (std::size_t d = 0; d < 6; ++d) {
                Take(reader, pieces[d + 1], {&restraint.fixed[d]});
              }
            });
}

void ReadForces(Reader& reader) {
  ReadTable(reader, Section::Forces, reader.tables.NFOR, reader.tables.NodalForces,
            [&](NodalForce& force, const Pieces& pieces) {
              Take(reader, pieces[0], {&force.node});
              for (std::size_t d = 0; d < 6; ++d) {
                Take(reader, pieces[d + 1], {&force.components[d]});
              }
            });
}

void ReadSurfaceLoads(Reader& reader, Section section, std::int32_t& count,
                      ZeroedTable<ShellSurfaceLoad>& loads) {
  ReadTable(reader, section, count, loads, [&](ShellSurfaceLoad& load, const Pieces& pieces) {
    Take(reader, pieces[0], {&load.element, &load.q[0], &load.q[1], &load.q[2]});
  });
}

void ReadDistributedLoads(Reader& reader) {
  ModelTables& tables = reader.tables;
  ReadSurfaceLoads(reader, Section::Shell4Loads, tables.NDL_S_4ND, tables.Shell4SurfaceLoads);
  ReadSurfaceLoads(reader, Section::Shell3Loads, tables.NDL_S_3ND, tables.Shell3SurfaceLoads);
  ReadTable(reader, Section::BeamLoads, tables.NDL_B, tables.BeamLineLoads,
            [&](BeamLineLoad& load, const Pieces& pieces) {
              Take(reader, pieces[0], {&load.element, &load.q[0], &load.q[1]});
            });
}

}  // namespace

void ReadTables(std::string_view text, const RowListener& listener, ModelTables& tables) {
  Reader reader{{text, 0}, listener, tables};
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
