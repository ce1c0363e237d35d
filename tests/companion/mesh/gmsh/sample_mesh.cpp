#include "mesh/gmsh/sample_mesh.h"

#include <algorithm>
#include <cstring>

#include "mesh/gmsh/import_gmsh.h"
#include "report/stop.h"

namespace kvx::test {

namespace {

// The text of a file while it is written.
struct Writer {
  SampleForm form;
  std::string text;
  bool isRowOpen = false;
};

template <typename Number>
void PutBytes(Writer& writer, Number number) {
  std::string bytes(sizeof(Number), '\0');
  std::memcpy(bytes.data(), &number, sizeof(Number));
  if (writer.form.isSwapped) std::reverse(bytes.begin(), bytes.end());
  writer.text += bytes;
}

void PutWord(Writer& writer, const std::string& word) {
  writer.text += (writer.isRowOpen ? " " : "") + word;
  writer.isRowOpen = true;
}

void PutInt(Writer& writer, std::int64_t number) {
  if (!writer.form.isBinary) return PutWord(writer, std::to_string(number));
  PutBytes(writer, static_cast<std::int32_t>(number));
}

void PutSize(Writer& writer, std::int64_t number) {
  if (!writer.form.isBinary) return PutWord(writer, std::to_string(number));
  PutBytes(writer, number);
}

void PutReal(Writer& writer, double number) {
  if (!writer.form.isBinary) return PutWord(writer, std::to_string(number));
  PutBytes(writer, number);
}

void EndRow(Writer& writer) {
  if (!writer.form.isBinary) writer.text += '\n';
  writer.isRowOpen = false;
}

void Begin(Writer& writer, const std::string& section) { writer.text += '$' + section + '\n'; }

void End(Writer& writer, const std::string& section) {
  if (writer.form.isBinary) writer.text += '\n';
  writer.text += "$End" + section + '\n';
}

void WriteHead(const SampleMesh& mesh, Writer& writer) {
  const SampleForm& form = writer.form;
  Begin(writer, "MeshFormat");
  writer.text += std::string(form.is41 ? "4.1 " : "2.2 ") + (form.isBinary ? "1" : "0") + " 8\n";
  if (form.isBinary) PutBytes(writer, std::int32_t{1});
  End(writer, "MeshFormat");
  writer.text += "$PhysicalNames\n" + std::to_string(mesh.names.size()) + '\n';
  for (const SampleName& name : mesh.names) {
    writer.text += std::to_string(name.dimension) + ' ' + std::to_string(name.tag) + " \"" +
                   name.name + "\"\n";
  }
  writer.text += "$EndPhysicalNames\n";
}

void WriteEntities(const SampleMesh& mesh, Writer& writer) {
  Begin(writer, "Entities");
  for (int dimension = 0; dimension < 4; ++dimension) {
    PutSize(writer, std::count_if(mesh.entities.begin(), mesh.entities.end(),
                                  [&](const auto& one) { return one.dimension == dimension; }));
  }
  EndRow(writer);
  for (const SampleEntity& entity : mesh.entities) {
    PutInt(writer, entity.tag);
    for (int k = 0; k < (entity.dimension == 0 ? 3 : 6); ++k) PutReal(writer, 0.5 * k);
    PutSize(writer, static_cast<std::int64_t>(entity.physicals.size()));
    for (const int physical : entity.physicals) PutInt(writer, physical);
    if (entity.dimension > 0) {
      PutSize(writer, 2);
      PutInt(writer, 1);
      PutInt(writer, -2);
    }
    EndRow(writer);
  }
  End(writer, "Entities");
}

void WriteNodes41(const SampleMesh& mesh, Writer& writer) {
  Begin(writer, "Nodes");
  const auto count = static_cast<std::int64_t>(mesh.nodes.size());
  for (const std::int64_t number : {std::int64_t{1}, count, std::int64_t{1}, count}) {
    PutSize(writer, number);
  }
  EndRow(writer);
  for (const std::int64_t number : {2, 1, 0}) PutInt(writer, number);
  PutSize(writer, count);
  EndRow(writer);
  for (const SampleNode& node : mesh.nodes) {
    PutSize(writer, node.number);
    EndRow(writer);
  }
  for (const SampleNode& node : mesh.nodes) {
    for (const double x : node.at) PutReal(writer, x);
    EndRow(writer);
  }
  End(writer, "Nodes");
}

void WriteElements41(const SampleMesh& mesh, Writer& writer) {
  Begin(writer, "Elements");
  const auto count = static_cast<std::int64_t>(mesh.elements.size());
  for (const std::int64_t number : {count, count, std::int64_t{1}, count}) PutSize(writer, number);
  EndRow(writer);
  for (const SampleElement& element : mesh.elements) {  // a block each
    for (const int number : {element.dimension, element.entity, element.type}) {
      PutInt(writer, number);
    }
    PutSize(writer, 1);
    EndRow(writer);
    PutSize(writer, element.number);
    for (const std::int64_t node : element.nodes) PutSize(writer, node);
    EndRow(writer);
  }
  End(writer, "Elements");
}

void WriteNodes22(const SampleMesh& mesh, Writer& writer) {
  Begin(writer, "Nodes");
  writer.text += std::to_string(mesh.nodes.size()) + '\n';
  for (const SampleNode& node : mesh.nodes) {
    PutInt(writer, node.number);
    for (const double x : node.at) PutReal(writer, x);
    EndRow(writer);
  }
  End(writer, "Nodes");
}

// Format 2.2's element rows: each element once for each group of its entity.
std::vector<std::pair<SampleElement, int>> ListRows22(const SampleMesh& mesh) {
  std::vector<std::pair<SampleElement, int>> rows;
  std::int64_t further = 1000;
  for (const SampleElement& element : mesh.elements) {
    const auto entity =
        std::find_if(mesh.entities.begin(), mesh.entities.end(), [&](const SampleEntity& one) {
          return one.dimension == element.dimension && one.tag == element.entity;
        });
    if (entity == mesh.entities.end() || entity->physicals.empty()) rows.emplace_back(element, 0);
    if (entity == mesh.entities.end()) continue;
    for (std::size_t k = 0; k < entity->physicals.size(); ++k) {
      SampleElement row = element;
      if (k > 0) row.number = ++further;
      const int physical = entity->physicals[k];
      // Lines change their ends, shells keep their first node, as gmsh 4.8 does.
      if (physical < 0) std::reverse(row.nodes.begin() + (row.type == 1 ? 0 : 1), row.nodes.end());
      rows.emplace_back(row, physical < 0 ? -physical : physical);
    }
  }
  return rows;
}

void WriteElements22(const SampleMesh& mesh, Writer& writer) {
  const auto rows = ListRows22(mesh);
  Begin(writer, "Elements");
  writer.text += std::to_string(rows.size()) + '\n';
  for (const auto& [element, physical] : rows) {
    if (writer.form.isBinary) {
      for (const int number : {element.type, 1, 2}) PutInt(writer, number);
      PutInt(writer, element.number);
    } else {
      PutInt(writer, element.number);
      for (const int number : {element.type, 2}) PutInt(writer, number);
    }
    PutInt(writer, physical);
    PutInt(writer, element.entity);
    for (const std::int64_t node : element.nodes) PutInt(writer, node);
    EndRow(writer);
  }
  End(writer, "Elements");
}

const char* FateName(Fate fate) {
  if (fate == Fate::Limited) return "Limited";
  if (fate == Fate::NoEffect) return "NoEffect";
  return fate == Fate::Lost ? "Lost" : "Refused";
}

std::string NodeText(const ImportModel& model, std::int32_t row) {
  if (row < 0) return " -";
  return ' ' + std::to_string(model.nodeNumbers.at(static_cast<std::size_t>(row)));
}

std::string GroupText(const ImportModel& model, const ImportGroup& group) {
  std::string text = "group " + group.name + ", " + group.source + ", nodes";
  for (const std::int32_t node : group.nodes) text += NodeText(model, node);
  text += ", elements";
  for (const std::int32_t row : group.shells) {
    text += ' ' + std::to_string(model.shells.at(static_cast<std::size_t>(row)).number);
  }
  for (const std::int32_t row : group.beams) {
    text += ' ' + std::to_string(model.beams.at(static_cast<std::size_t>(row)).number);
  }
  return text + '\n';
}

}  // namespace

std::vector<SampleForm> AllForms() {
  std::vector<SampleForm> forms;
  for (const bool is41 : {false, true}) {
    forms.push_back({is41, false, false});
    forms.push_back({is41, true, false});
    forms.push_back({is41, true, true});
  }
  return forms;
}

std::string FormName(const SampleForm& form) {
  return std::string(form.is41 ? "4.1" : "2.2") + (form.isBinary ? " binary" : " text") +
         (form.isSwapped ? " swapped" : "");
}

SampleMesh MakeSampleMesh() {
  SampleMesh mesh;
  mesh.names = {{0, 9, "tip"}, {1, 5, "edge"}, {2, 1, "deck"}, {2, 2, "side"}, {2, 7, "all"}};
  mesh.entities = {{0, 3, {9}}, {1, 1, {5}}, {1, 2, {}}, {2, 1, {1, 7}}, {2, 2, {-2}}};
  mesh.nodes = {{10, {0, 0, 0}}, {20, {2, 0, 0}},   {30, {2, 1, 0}},
                {40, {0, 1, 0}}, {50, {4, 0, 0.5}}, {2000000, {4, 1, -0.25}}};
  mesh.elements = {{106, 15, 0, 3, {50}},
                   {104, 1, 1, 1, {10, 20}},
                   {105, 1, 1, 2, {40, 30}},
                   {101, 3, 2, 1, {10, 20, 30, 40}},
                   {102, 2, 2, 2, {20, 50, 2000000}},
                   {103, 2, 2, 2, {20, 2000000, 30}}};
  return mesh;
}

std::string WriteSample(const SampleMesh& mesh, const SampleForm& form) {
  Writer writer{form, "", false};
  WriteHead(mesh, writer);
  if (form.is41) {
    WriteEntities(mesh, writer);
    WriteNodes41(mesh, writer);
    WriteElements41(mesh, writer);
  } else {
    WriteNodes22(mesh, writer);
    WriteElements22(mesh, writer);
  }
  return writer.text;
}

void ImportText(const std::string& text, ImportModel& model, ImportReport& report) {
  ImportGmsh({"plate.msh", text}, model, report);
}

std::string StopOf(const std::string& text) {
  ImportModel model;
  ImportReport report;
  try {
    ImportText(text, model, report);
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return "";
}

std::string Describe(const ImportModel& model) {
  std::string text;
  for (std::size_t k = 0; k < model.nodes.size(); ++k) {
    const korvex::Node& node = model.nodes[k];
    text += "node " + std::to_string(model.nodeNumbers[k]) + ": " + std::to_string(node.x) + ' ' +
            std::to_string(node.y) + ' ' + std::to_string(node.z) + '\n';
  }
  for (const ImportShell& shell : model.shells) {
    text += model.typeNames.at(static_cast<std::size_t>(shell.type)) + ' ' +
            std::to_string(shell.number) + ':';
    for (const std::int32_t node : shell.nodes) text += NodeText(model, node);
    text += '\n';
  }
  for (const ImportBeam& beam : model.beams) {
    text += model.typeNames.at(static_cast<std::size_t>(beam.type)) + ' ' +
            std::to_string(beam.number) + ':';
    for (const std::int32_t node : beam.nodes) text += NodeText(model, node);
    text += '\n';
  }
  for (const ImportGroup& group : model.groups) text += GroupText(model, group);
  return text;
}

std::string Describe(const ImportReport& report) {
  std::string text;
  for (const ReportEntry& entry : report.entries) {
    text += std::string(FateName(entry.fate)) + ": " + entry.card + ", " +
            std::to_string(entry.count) + " times, line " + std::to_string(entry.first.line) +
            ": " + entry.reason + (entry.example.empty() ? "" : " (" + entry.example + ')') + '\n';
  }
  return text;
}

}  // namespace kvx::test
