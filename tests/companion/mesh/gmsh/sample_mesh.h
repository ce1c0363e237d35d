// Small meshes for tests, and the files of gmsh that hold them: both formats, text and binary, both
// orders of bytes. Written after the format's manual, not after what the reader expects.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "mesh/import_model.h"
#include "mesh/import_report.h"

namespace kvx::test {

struct SampleName {
  int dimension;
  int tag;
  std::string name;
};

struct SampleEntity {
  int dimension;
  int tag;
  std::vector<int> physicals;
};

struct SampleNode {
  std::int64_t number;
  std::array<double, 3> at;
};

struct SampleElement {
  std::int64_t number;
  int type;
  int dimension;
  int entity;
  std::vector<std::int64_t> nodes;
};

struct SampleMesh {
  std::vector<SampleName> names;
  std::vector<SampleEntity> entities;
  std::vector<SampleNode> nodes;
  std::vector<SampleElement> elements;
};

struct SampleForm {
  bool is41 = true;
  bool isBinary = false;
  bool isSwapped = false;  // against this machine's order of bytes
};

// All six forms.
std::vector<SampleForm> AllForms();

std::string FormName(const SampleForm& form);

// A quadrilateral of two groups, "deck" and "all"; two triangles of the reversed group "side"; a
// line of the group "edge" and one of none; a point of "tip". Numbers with gaps.
SampleMesh MakeSampleMesh();

// Format 2.2 gets an element of several groups several times, the further ones with numbers above
// 1000, and elements of reversed groups turned round.
std::string WriteSample(const SampleMesh& mesh, const SampleForm& form);

// Reads a mesh file that is called "plate.msh".
void ImportText(const std::string& text, ImportModel& model, ImportReport& report);

// The text of the Stop that ends the import; "" where there is none.
std::string StopOf(const std::string& text);

// The model as text: nodes, elements and groups, all by number.
std::string Describe(const ImportModel& model);

// The report's entries, one a line: "Limited: element type 3, 2 times, line 12: reason (example)".
std::string Describe(const ImportReport& report);

}  // namespace kvx::test
