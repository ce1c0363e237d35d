#include "mesh/import_models.h"

#include <algorithm>
#include <cstddef>

namespace kvx::test {

namespace {

std::int32_t TypeRow(const std::string& name, ImportModel& model) {
  const auto at = std::find(model.typeNames.begin(), model.typeNames.end(), name);
  const auto row = static_cast<std::int32_t>(at - model.typeNames.begin());
  if (at == model.typeNames.end()) model.typeNames.push_back(name);
  return row;
}

}  // namespace

std::int32_t AddNode(double x, double y, double z, ImportModel& model) {
  const auto row = static_cast<std::int32_t>(model.nodes.size());
  model.nodes.push_back({x, y, z});
  model.nodeNumbers.push_back(1001 + row);
  return row;
}

std::int32_t AddShell(const std::vector<std::int32_t>& nodes, ImportModel& model) {
  const auto row = static_cast<std::int32_t>(model.shells.size());
  ImportShell shell;
  shell.number = 4001 + row;
  std::copy(nodes.begin(), nodes.end(), shell.nodes.begin());
  shell.type = TypeRow(nodes.size() == 4 ? "CQUAD4" : "CTRIA3", model);
  model.shells.push_back(shell);
  return row;
}

std::int32_t AddBeam(std::int32_t first, std::int32_t second, ImportModel& model) {
  const auto row = static_cast<std::int32_t>(model.beams.size());
  ImportBeam beam;
  beam.number = 7001 + row;
  beam.nodes = {first, second};
  beam.type = TypeRow("CBAR", model);
  model.beams.push_back(beam);
  return row;
}

std::int32_t AddGroup(const std::string& name, const std::vector<std::int32_t>& shells,
                      const std::vector<std::int32_t>& beams, ImportModel& model) {
  ImportGroup group;
  group.name = name;
  group.source = name;
  group.shells = shells;
  group.beams = beams;
  for (const std::int32_t row : shells) {
    const ImportShell& shell = model.shells[static_cast<std::size_t>(row)];
    group.nodes.insert(group.nodes.end(), shell.nodes.begin(),
                       shell.nodes.begin() + static_cast<std::ptrdiff_t>(CornersOf(shell)));
  }
  for (const std::int32_t row : beams) {
    const auto& nodes = model.beams[static_cast<std::size_t>(row)].nodes;
    group.nodes.insert(group.nodes.end(), nodes.begin(), nodes.end());
  }
  std::sort(group.nodes.begin(), group.nodes.end());
  group.nodes.erase(std::unique(group.nodes.begin(), group.nodes.end()), group.nodes.end());
  model.groups.push_back(group);
  return static_cast<std::int32_t>(model.groups.size()) - 1;
}

ImportModel StiffenedPlate() {
  ImportModel model;
  model.format = "gmsh 4.1";
  for (const double y : {0.0, 2.0}) {
    for (const double x : {0.0, 2.0, 4.0}) AddNode(x, y, 0, model);
  }
  AddShell({0, 1, 4, 3}, model);
  AddShell({1, 2, 5, 4}, model);
  AddBeam(0, 1, model);
  AddBeam(1, 2, model);
  AddGroup("deck", {0, 1}, {}, model);
  AddGroup("left", {0}, {}, model);
  AddGroup("stiffeners", {}, {0, 1}, model);
  AddGroup("corner", {}, {}, model);
  model.groups.back().nodes = {5};
  return model;
}

ImportModel CompletePlate() {
  ImportModel model = StiffenedPlate();
  model.format = "Nastran bulk data";
  model.materials.push_back({"MAT1 1", {206000, 0.3, 7.85e-9}});
  model.thicknesses.push_back({"PSHELL 1", 12});
  ImportSection section;
  section.name = "PBARL 2";
  section.plates = {200, 8, 90, 12};
  model.sections.push_back(section);
  for (ImportShell& shell : model.shells) shell.material = shell.thickness = 0;
  for (ImportBeam& beam : model.beams) {
    beam.material = beam.section = 0;
    beam.orientation = {0, 0, 1};
  }
  return model;
}

const ReportEntry* FindEntry(const ImportReport& report, const std::string& card,
                             const std::string& reason) {
  for (const ReportEntry& entry : report.entries) {
    if (entry.card == card && entry.reason.find(reason) != std::string::npos) return &entry;
  }
  return nullptr;
}

std::string ListEntries(const ImportReport& report) {
  constexpr const char* Fates[] = {"limited", "no effect", "lost", "refused"};
  std::string list;
  for (const ReportEntry& entry : report.entries) {
    list += entry.card + " | " + Fates[static_cast<std::size_t>(entry.fate)] + " | " +
            entry.reason + " | " + std::to_string(entry.count) + " | " + entry.example + '\n';
  }
  return list;
}

}  // namespace kvx::test
