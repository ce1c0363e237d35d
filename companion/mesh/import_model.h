// A model as the readers of other formats leave it, before it becomes a model file.
//
// All references are 0-based rows of the tables here; -1: none. Numbers are those of the deck.
// Coordinates, vectors, forces: global axes, model units. Local axes of elements are the solver's:
//   shell: e1 from node 1 to 2, e3 along (node 2 - node 1) x (last node - node 1)
//   beam:  x from node 1 to 2, z the part of the orientation vector across x (direction of the
//   web),
//          y = z x x
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/material.h"
#include "base/vector3.h"
#include "beam/beam_element.h"
#include "deck/model_tables.h"
#include "mesh/source_files.h"

namespace kvx {

struct ImportMaterial {
  std::string name;  // "MAT1 7", "steel"
  korvex::Material values;
};

struct ImportThickness {
  std::string name;  // "PSHELL 10", "deck"
  double TK = 0.0;
};

// A section as one of the solver's tables has it.
struct ImportSection {
  std::string name;                          // "PBARL 100", "stiffeners"
  std::int32_t type = korvex::BeamSecTypeT;  // BeamSecTypeT, BeamSecTypeL or BeamSecTypeC
  korvex::BeamSection plates;                // of T and L; without flange a flat bar
  korvex::CBeamSection tube;                 // of C: mean radius and wall
};

struct ImportShell {
  std::int64_t number = 0;
  std::array<std::int32_t, 4> nodes{-1, -1, -1, -1};  // the last is -1 for a triangle
  std::int32_t material = -1;
  std::int32_t thickness = -1;
  std::int32_t type = -1;  // row of typeNames: "CQUAD4"
};

struct ImportBeam {
  std::int64_t number = 0;
  std::array<std::int32_t, 2> nodes{-1, -1};
  std::int32_t material = -1;
  std::int32_t section = -1;
  std::int32_t type = -1;         // row of typeNames: "CBAR"
  double BeamSecOz = 0.0;         // of the section along local z
  bool BeamSecMirrored = false;   // L: the flange towards -y
  korvex::Vector3 orientation{};  // need not be square to the axis; 0, 0, 0: none is given yet
};

// A named part of the deck: a property with its elements ("PSHELL 10"), a set ("deck"), a physical
// group. A map file may give properties, supports and loads to it.
struct ImportGroup {
  std::string name;    // unique
  std::string source;  // how the deck calls it: "physical surface 3", "PSHELL 10", "*ELSET"
  std::int32_t dimension = -1;       // gmsh: 0 to 3; -1: not said
  std::vector<std::int32_t> nodes;   // ascending, each once
  std::vector<std::int32_t> shells;  // rows of shells
  std::vector<std::int32_t> beams;   // rows of beams
  // Why its elements have no section, thickness or material, where the deck has one that cannot be
  // taken over: "PBARL I: there is no I section". Empty: the deck says nothing of it.
  std::string lacks;
  // Whether a map file gives its nodes a support or a load: its lines may be edges, no beams.
  bool isEdge = false;
  SourcePlace place;
};

// The supports that a load case has.
struct SupportSet {
  std::string name;                                // "SPC 42"
  std::vector<korvex::NodalRestraint> restraints;  // a node may have several: they add up
};

// A pressure along the shell's e3, linear over it: the values at its nodes 1, 2 and 3.
struct ImportPressure {
  std::int32_t shell = -1;
  std::array<double, 3> q{};
};

// A displacement that a support imposes. The dof is among the restraints of the case's supports.
struct PrescribedDof {
  std::int32_t node = -1;
  std::int32_t dof = 0;  // 0 to 5
  double value = 0.0;
};

struct ImportCase {
  std::string name;            // "subcase 1"; "" where the deck has only one and names none
  std::int32_t supports = -1;  // row of supports; -1: none
  std::vector<korvex::NodalForce> forces;
  std::vector<ImportPressure> pressures;
  std::vector<korvex::BeamLineLoad> lineLoads;  // element: row of beams
  std::vector<PrescribedDof> prescribed;
  bool hasAcceleration = false;
  korvex::Vector3 acceleration{};  // of gravity: the load on a mass m is m times it
  bool asksForLoads = false;       // the deck has loads for it, taken over or not
  SourcePlace place;
};

struct ImportModel {
  std::string format;  // "gmsh 4.1", "Nastran bulk data", "Abaqus deck"
  std::vector<korvex::Node> nodes;
  std::vector<std::int64_t> nodeNumbers;  // [nodes]
  std::vector<ImportMaterial> materials;
  std::vector<ImportThickness> thicknesses;
  std::vector<ImportSection> sections;
  std::vector<std::string> typeNames;
  std::vector<ImportShell> shells;
  std::vector<ImportBeam> beams;
  std::vector<ImportGroup> groups;
  std::vector<SupportSet> supports;
  std::vector<ImportCase> cases;
};

inline std::size_t CornersOf(const ImportShell& shell) { return shell.nodes[3] < 0 ? 3 : 4; }

inline korvex::Vector3 PlaceOf(const ImportModel& model, std::int32_t node) {
  const korvex::Node& at = model.nodes[static_cast<std::size_t>(node)];
  return {at.x, at.y, at.z};
}

}  // namespace kvx
