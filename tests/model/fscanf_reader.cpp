// Reads the sections in the order of the file, with one fscanf per format. No code and no format is
// shared with our own reader.
#include "model/fscanf_reader.h"

#include <algorithm>
#include <cstdio>

namespace korvex::test {

namespace {

// One fscanf. Its result is ignored: fields that it cannot read stay 0.
template <typename... Fields>
void Read(std::FILE* file, const char* format, Fields*... fields) {
  static_cast<void>(std::fscanf(file, format, fields...) == 0);
}

// Makes room for the rows of a count just read. Returns whether reading goes on: a negative count
// ends it if the table is always allocated. Otherwise a negative count means no rows.
enum class Negative { Ends, HasNoRows };

template <typename Row>
bool MakeRows(FileTable<Row>& table, std::int32_t rowsAtMost, Negative negative, FileEnd& end) {
  if (table.count < 0 && negative == Negative::Ends) end = FileEnd::NegativeCount;
  if (table.count > rowsAtMost) end = FileEnd::TooManyRows;
  if (end != FileEnd::Complete) return false;
  table.rows.resize(static_cast<std::size_t>(std::max(table.count, 0)));
  return true;
}

void SkipLabelLine(std::FILE* file) {
  int c = std::fgetc(file);
  while (c != '\n' && c != EOF) c = std::fgetc(file);
}

bool ReadMaterials(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of materials:NMT=%d\n", &t.materials.count);
  if (!MakeRows(t.materials, rowsAtMost, Negative::Ends, t.end)) return false;
  for (FileMaterial& m : t.materials.rows) {
    Read(file, "#%d:\n", &m.label);
    Read(file, "E=%lf\n", &m.E);
    Read(file, "Mu=%lf\n", &m.Mu);
    Read(file, "Density=%lf\n", &m.Density);
  }
  Read(file, "Number of shell thicknesses:NTK=%d\n", &t.thicknesses.count);
  if (!MakeRows(t.thicknesses, rowsAtMost, Negative::Ends, t.end)) return false;
  for (FileThickness& h : t.thicknesses.rows) {
    Read(file, "#%d:\n", &h.label);
    Read(file, "TK=%lf\n", &h.TK);
  }
  return true;
}

void ReadBeamSections(std::FILE* file, std::vector<FileBeamSection>& rows) {
  for (FileBeamSection& s : rows) {
    SkipLabelLine(file);
    Read(file, "Hw=%lf\n", &s.Hw);
    Read(file, "Tw=%lf\n", &s.Tw);
    Read(file, "Bf=%lf\n", &s.Bf);
    Read(file, "Tf=%lf\n", &s.Tf);
  }
}

bool ReadSections(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of T_beam sections:NTBS=%d\n", &t.tSections.count);
  if (!MakeRows(t.tSections, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  ReadBeamSections(file, t.tSections.rows);
  Read(file, "Number of L_beam sections:NLBS=%d\n", &t.lSections.count);
  if (!MakeRows(t.lSections, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  ReadBeamSections(file, t.lSections.rows);
  Read(file, "Number of C_beam sections:NCBS=%d\n", &t.cSections.count);
  if (!MakeRows(t.cSections, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileTubeSection& s : t.cSections.rows) {
    SkipLabelLine(file);
    Read(file, "R=%lf\n", &s.R);
    Read(file, "T=%lf\n", &s.T);
  }
  return true;
}

bool ReadNodesAndShells(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of nodal points:NPOIN=%d\n", &t.nodes.count);
  if (!MakeRows(t.nodes, rowsAtMost, Negative::Ends, t.end)) return false;
  for (FileNode& n : t.nodes.rows) {
    Read(file, "%d:%lf,%lf,%lf\n", &n.number, &n.position[0], &n.position[1], &n.position[2]);
  }
  Read(file, "Number of four-nodes shell elements:NELEM_S_4ND=%d\n", &t.shells4.count);
  if (!MakeRows(t.shells4, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileShell<4>& s : t.shells4.rows) {
    Read(file, "%d:", &s.number);
    Read(file, "%d,%d,%d,%d[%d,%d]\n", &s.nodes[0], &s.nodes[1], &s.nodes[2], &s.nodes[3],
         &s.material, &s.thickness);
  }
  Read(file, "Number of three-nodes shell elements:NELEM_S_3ND=%d\n", &t.shells3.count);
  if (!MakeRows(t.shells3, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileShell<3>& s : t.shells3.rows) {
    Read(file, "%d:", &s.number);
    Read(file, "%d,%d,%d[%d,%d]\n", &s.nodes[0], &s.nodes[1], &s.nodes[2], &s.material,
         &s.thickness);
  }
  return true;
}

bool ReadBeams(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of beam elements:NELEM_B=%d\n", &t.beams.count);
  if (!MakeRows(t.beams, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileBeam& b : t.beams.rows) {
    Read(file, "%d:", &b.number);
    Read(file,
         "%d,%d<%lf,%lf,%lf>[%d,BeamSecType=%d,BeamSecIndex=%d,BeamSecOz=%lf,BeamSecMirrored=%d]\n",
         &b.nodes[0], &b.nodes[1], &b.orientation[0], &b.orientation[1], &b.orientation[2],
         &b.material, &b.BeamSecType, &b.BeamSecIndex, &b.BeamSecOz, &b.BeamSecMirrored);
  }
  return true;
}

bool ReadRestraintsAndForces(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of restricted nodal points:NRN=%d\n", &t.restraints.count);
  if (!MakeRows(t.restraints, rowsAtMost, Negative::Ends, t.end)) return false;
  for (FileRestraint& r : t.restraints.rows) {
    Read(file, "%d:", &r.node);
    for (std::size_t d = 0; d < 5; ++d) Read(file, "%d", &r.fixed[d]);
    Read(file, "%d\n", &r.fixed[5]);
  }
  Read(file, "Number of forces:NFOR=%d\n", &t.forces.count);
  if (!MakeRows(t.forces, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileForce& f : t.forces.rows) {
    Read(file, "%d<", &f.node);
    for (std::size_t d = 0; d < 5; ++d) Read(file, "%lf,", &f.components[d]);
    Read(file, "%lf>\n", &f.components[5]);
  }
  return true;
}

bool ReadShellLoads(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of distributed loads on four-nodes shell elements:NDL_S_4ND=%d\n",
       &t.shell4Loads.count);
  if (!MakeRows(t.shell4Loads, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileLoad<3>& l : t.shell4Loads.rows) {
    Read(file, "%d:%lf,%lf,%lf\n", &l.element, &l.q[0], &l.q[1], &l.q[2]);
  }
  Read(file, "Number of distributed loads on three-nodes shell elements:NDL_S_3ND=%d\n",
       &t.shell3Loads.count);
  if (!MakeRows(t.shell3Loads, rowsAtMost, Negative::HasNoRows, t.end)) return false;
  for (FileLoad<3>& l : t.shell3Loads.rows) {
    Read(file, "%d:%lf,%lf,%lf\n", &l.element, &l.q[0], &l.q[1], &l.q[2]);
  }
  return true;
}

void ReadBeamLoads(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "Number of distributed loads on beam elements:NDL_B=%d\n", &t.beamLoads.count);
  if (!MakeRows(t.beamLoads, rowsAtMost, Negative::HasNoRows, t.end)) return;
  for (FileLoad<2>& l : t.beamLoads.rows) {
    Read(file, "%d:%lf,%lf\n", &l.element, &l.q[0], &l.q[1]);
  }
}

void ReadSectionsInOrder(std::FILE* file, std::int32_t rowsAtMost, FileTables& t) {
  Read(file, "### Toln_Korvex release=%lf ###\n", &t.release);
  if (t.release != 3.0) {
    t.end = FileEnd::WrongRelease;
    return;
  }
  if (ReadMaterials(file, rowsAtMost, t) && ReadSections(file, rowsAtMost, t) &&
      ReadNodesAndShells(file, rowsAtMost, t) && ReadBeams(file, rowsAtMost, t) &&
      ReadRestraintsAndForces(file, rowsAtMost, t) && ReadShellLoads(file, rowsAtMost, t)) {
    ReadBeamLoads(file, rowsAtMost, t);
  }
}

}  // namespace

bool ReadsBrokenNumbersAlike() {
  double value = 0.0;
  return std::sscanf("1e+", "%lf", &value) == 1;  // NOLINT(cert-err34-c): this is the question
}

FileTables ReadWithFscanf(const std::string& fileName, std::int32_t rowsAtMost) {
  FileTables tables;
  std::FILE* file = std::fopen(fileName.c_str(), "rb");
  if (file == nullptr) return tables;
  ReadSectionsInOrder(file, rowsAtMost, tables);
  std::fclose(file);
  return tables;
}

}  // namespace korvex::test
