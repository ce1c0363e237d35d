// The writer of model_text.h, section by section in the order of the file.
#include "support/model_text.h"

#include <limits>
#include <sstream>

namespace korvex::test {

namespace {

// "a,b,c"
template <typename Values>
std::string Join(const Values& values, const char* separator) {
  std::ostringstream out;
  out.precision(std::numeric_limits<double>::max_digits10);
  const char* between = "";
  for (const auto& value : values) {
    out << between << value;
    between = separator;
  }
  return out.str();
}

void WriteSections(std::ostream& out, const std::vector<std::array<double, 4>>& sections,
                   const char* label) {
  int row = 0;
  for (const auto& s : sections) {
    out << label << " #" << row++ << "\nHw=" << s[0] << "\nTw=" << s[1] << "\nBf=" << s[2]
        << "\nTf=" << s[3] << '\n';
  }
}

template <typename Shells>
void WriteShells(std::ostream& out, const Shells& shells) {
  int row = 0;
  for (const auto& shell : shells) {
    out << row++ << ':' << Join(shell.nodes, ",") << '[' << shell.material << ',' << shell.thickness
        << "]\n";
  }
}

void WriteShellLoads(std::ostream& out, const std::vector<ModelText::ShellLoad>& loads) {
  for (const auto& load : loads) out << load.element << ':' << Join(load.q, ",") << '\n';
}

void WriteProperties(std::ostream& out, const ModelText& model) {
  out << "Number of materials:NMT=" << model.materials.size() << '\n';
  int row = 0;
  for (const auto& m : model.materials) {
    out << '#' << row++ << ":\nE=" << m[0] << "\nMu=" << m[1] << "\nDensity=" << m[2] << '\n';
  }
  out << "Number of shell thicknesses:NTK=" << model.thicknesses.size() << '\n';
  row = 0;
  for (const double thickness : model.thicknesses) {
    out << '#' << row++ << ":\nTK=" << thickness << '\n';
  }
  out << "Number of T_beam sections:NTBS=" << model.tSections.size() << '\n';
  WriteSections(out, model.tSections, "T_beam");
  out << "Number of L_beam sections:NLBS=" << model.lSections.size() << '\n';
  WriteSections(out, model.lSections, "L_beam");
  out << "Number of C_beam sections:NCBS=" << model.cSections.size() << '\n';
  row = 0;
  for (const auto& s : model.cSections) {
    out << "C_beam #" << row++ << "\nR=" << s[0] << "\nT=" << s[1] << '\n';
  }
}

void WriteMesh(std::ostream& out, const ModelText& model) {
  out << "Number of nodal points:NPOIN=" << model.nodes.size() << '\n';
  int row = 0;
  for (const auto& node : model.nodes) out << row++ << ':' << Join(node, ",") << '\n';
  out << "Number of four-nodes shell elements:NELEM_S_4ND=" << model.shells4.size() << '\n';
  WriteShells(out, model.shells4);
  out << "Number of three-nodes shell elements:NELEM_S_3ND=" << model.shells3.size() << '\n';
  WriteShells(out, model.shells3);
  out << "Number of beam elements:NELEM_B=" << model.beams.size() << '\n';
  row = 0;
  for (const auto& b : model.beams) {
    out << row++ << ':' << b.node1 << ',' << b.node2 << '<' << Join(b.orientation, ",") << ">["
        << b.material << ",BeamSecType=" << b.BeamSecType << ",BeamSecIndex=" << b.BeamSecIndex
        << ",BeamSecOz=" << b.BeamSecOz << ",BeamSecMirrored=" << b.BeamSecMirrored << "]\n";
  }
}

void WriteSupportsAndLoads(std::ostream& out, const ModelText& model) {
  out << "Number of restricted nodal points:NRN=" << model.restraints.size() << '\n';
  for (const auto& r : model.restraints) out << r.node << ": " << Join(r.fixed, " ") << '\n';
  out << "Number of forces:NFOR=" << model.forces.size() << '\n';
  for (const auto& f : model.forces) out << f.node << '<' << Join(f.components, ",") << ">\n";
  out << "Number of distributed loads on four-nodes shell elements:NDL_S_4ND="
      << model.shell4Loads.size() << '\n';
  WriteShellLoads(out, model.shell4Loads);
  out << "Number of distributed loads on three-nodes shell elements:NDL_S_3ND="
      << model.shell3Loads.size() << '\n';
  WriteShellLoads(out, model.shell3Loads);
  out << "Number of distributed loads on beam elements:NDL_B=" << model.beamLoads.size() << '\n';
  for (const auto& load : model.beamLoads) {
    out << load.element << ':' << load.q1 << ',' << load.q2 << '\n';
  }
}

}  // namespace

std::string WriteModel(const ModelText& model) {
  std::ostringstream out;
  out.precision(std::numeric_limits<double>::max_digits10);
  out << "### Toln_Korvex release=" << model.release << " ###\n";
  WriteProperties(out, model);
  WriteMesh(out, model);
  WriteSupportsAndLoads(out, model);
  return out.str();
}

}  // namespace korvex::test
