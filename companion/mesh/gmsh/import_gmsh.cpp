#include "mesh/gmsh/import_gmsh.h"

#include <algorithm>
#include <string>
#include <vector>

#include "mesh/gmsh/gmsh_build.h"
#include "mesh/gmsh/gmsh_elements.h"
#include "mesh/gmsh/gmsh_entities.h"
#include "mesh/gmsh/gmsh_groups.h"
#include "mesh/gmsh/gmsh_members.h"
#include "mesh/gmsh/gmsh_mesh.h"
#include "mesh/gmsh/gmsh_nodes.h"
#include "mesh/gmsh/gmsh_partitions.h"
#include "mesh/gmsh/gmsh_sections.h"
#include "mesh/gmsh/gmsh_text.h"

namespace kvx {

namespace {

// Format 4.1 finds the groups of an element by its entity, so that must be known.
void ReadEntities(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  if (mesh.hasElements) FailAt(text, text.section + " stands behind $Elements");
  if (text.section == "$Entities") {
    ReadGmshEntities(text, mesh);
    return;
  }
  ReportCard(text.section, Fate::NoEffect, "the partitions of a mesh are one model",
             text.sectionPlace, "", report);
  ReadGmshPartitionedEntities(text, mesh);
}

void ReadNodes(GmshText& text, GmshMesh& mesh) {
  if (mesh.hasNodes) FailAt(text, "a second section of nodes");
  if (mesh.version == GmshVersion::V41) {
    ReadGmshNodes41(text, mesh);
  } else if (text.section == "$Nodes") {
    ReadGmshNodes22(text, mesh);
  } else {
    ReadGmshParametricNodes22(text, mesh);
  }
}

void ReadElements(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  if (mesh.hasElements) FailAt(text, "a second section of elements");
  if (mesh.version == GmshVersion::V41) {
    ReadGmshElements41(text, mesh, report);
  } else {
    ReadGmshElements22(text, mesh, report);
  }
}

void ReadSection(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  const std::string& section = text.section;
  const bool is41 = mesh.version == GmshVersion::V41;
  if (section == "$MeshFormat") {
    if (mesh.version != GmshVersion::None) FailAt(text, "a second $MeshFormat");
    ReadGmshFormat(text, mesh);
  } else if (section == "$PhysicalNames") {
    ReadGmshNames(text, mesh);
  } else if (is41 && (section == "$Entities" || section == "$PartitionedEntities")) {
    ReadEntities(text, mesh, report);
  } else if (section == "$Nodes" || (!is41 && section == "$ParametricNodes")) {
    ReadNodes(text, mesh);
  } else if (section == "$Elements") {
    ReadElements(text, mesh, report);
  } else {
    SkipSection(text, report);
    return;
  }
  EndSection(text);
}

// What begins like an older format is told apart from what is no mesh at all.
void CheckFirstSection(const GmshText& text) {
  if (text.section == "$NOD") {
    FailAt(text, std::string("format 1.0 is not read: ") + SaveAnew);
  }
  if (text.section != "$MeshFormat" && text.section != "$Comments") {
    FailAt(text, "a mesh file of gmsh begins with $MeshFormat");
  }
}

void ReadSections(GmshText& text, GmshMesh& mesh, ImportReport& report) {
  while (BeginSection(text, report)) {
    if (mesh.version == GmshVersion::None) CheckFirstSection(text);
    ReadSection(text, mesh, report);
  }
  if (mesh.version == GmshVersion::None) FailAt(text, "the file ends without $MeshFormat");
  if (!mesh.hasNodes) FailAt(text, "the file ends without $Nodes");
  if (!mesh.hasElements) FailAt(text, "the file ends without $Elements");
}

// The entities that elements lie on tell of their partitions, in format 4.1.
void NarrowByEntities(GmshMesh& mesh) {
  if (mesh.version != GmshVersion::V41) return;
  std::vector<bool> isUsed(mesh.entities.size(), false);
  for (const GmshElement& element : mesh.elements) {
    if (element.entity >= 0) isUsed[static_cast<std::size_t>(element.entity)] = true;
  }
  for (std::size_t k = 0; k < mesh.entities.size(); ++k) {
    GmshEntity& entity = mesh.entities[k];
    if (!isUsed[k] || entity.isInterface || entity.partitions.empty()) continue;
    NarrowPartitions(entity.partitions, mesh);
  }
}

void ReportWhole(const GmshMesh& mesh, bool hasMembers, const ImportModel& model,
                 ImportReport& report) {
  if (IsOnePartition(mesh)) {
    ReportCard("$Elements", Fate::Refused,
               "the file holds one partition of a mesh: save the whole mesh in one file "
               "(Mesh.PartitionSplitMeshFiles=0)",
               {0, 0}, "", report);
  }
  if (model.shells.empty() && model.beams.empty() && CountFate(report, Fate::Refused) == 0) {
    ReportCard("$Elements", Fate::Refused,
               "there is no element to make a model of; lines become beams where they are in a "
               "physical group",
               {0, 0}, "", report);
  }
  if (mesh.version == GmshVersion::V22 && !mesh.names.empty() && !hasMembers) {
    ReportCard("$PhysicalNames", Fate::Refused,
               "no element is in a group: format 2.2 loses the groups where all elements are saved "
               "(Mesh.SaveAll=1); save without it or in format 4.1",
               mesh.names.front().place, "", report);
  }
}

}  // namespace

void ImportGmsh(const SourceFile& file, ImportModel& model, ImportReport& report) {
  report.files = {file.name};
  GmshText text{file.text, report};
  GmshMesh mesh;
  ReadSections(text, mesh, report);
  model.format = mesh.version == GmshVersion::V22 ? "gmsh 2.2" : "gmsh 4.1";
  NarrowByEntities(mesh);
  std::vector<GmshMember> members;
  std::vector<GmshUse> uses;
  ListGmshMembers(mesh, report, members, uses);
  std::vector<std::int32_t> rows;
  BuildGmshElements(members, uses, mesh, model, report, rows);
  BuildGmshGroups(mesh, members, rows, model, report);
  ReportWhole(mesh, !members.empty(), model, report);
}

}  // namespace kvx
