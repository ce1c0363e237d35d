// The map file of an import (--map): what a mesh lacks, given to its groups. TOML:
//
//   acceleration = [0, 0, -9810]     # of gravity, in the only case
//   [case.wind]                      # declares a case; it may have an acceleration of its own
//   [material.steel]
//   E = 206000
//   poisson = 0.3
//   density = 7.85e-9                # may be left out
//   [group.deck]                     # the name of a group in the mesh
//   thickness = 12
//   material = "steel"               # of shells and beams
//   pressure = -0.01                 # along the elements' normals
//   flip = true                      # turns the normals round
//   [group.stiffeners]
//   section = { type = "T", Hw = 200, Tw = 8, Bf = 90, Tf = 12 }    # or "L"; "bar" (Hw, Tw),
//                                                                   # "tube" (R, T)
//   orientation = [0, 0, -1]         # direction of the web; or "normal", "-normal": along the mean
//                                    # normal of the shells that a beam lies on, or against it
//   offset = 6                       # of the section along it
//   mirrored = false                 # L alone
//   material = "steel"
//   line_load = -2.5                 # force per length along the web
//   edge_load = [0, 0, -3]           # force per length of lines, global
//   [group.clamped]
//   restraint = "fixed"              # or "pinned": the displacements; or [1, 1, 1, 0, 0, 0]
//   [group.tip]
//   force = [0, 0, -1000]            # on each node of the group; with moments: six numbers
//   total_force = [0, 0, -1000]      # shared by all nodes of the group in equal parts
//   case = "wind"                    # the case that the group's loads belong to
//   [group.dummies]
//   skip = true                      # leaves the group's elements out
//
// Loads without "case" belong to the only case; with several each names its own. A mesh without
// cases gets those that the map names. Cases share their supports: a restraint holds in all of
// them.
#pragma once

#include <string>
#include <string_view>

#include "mesh/drop_edges.h"
#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/map_template.h"

namespace kvx {

// Gives the model what the map says. Where it says something of a group that has it from the deck,
// the map holds; a material of the deck's name takes its place. Loads of the deck keep their
// direction where the map flips shells or turns webs. mapName: for messages. Throws a Stop with the
// map's name and line where the map is wrong: syntax, unknown keys or groups (with the nearest
// one), wrong types, missing values, two groups that give the same element different things.
void ApplyImportMap(std::string_view map, const std::string& mapName, ImportModel& model,
                    ImportReport& report);

}  // namespace kvx
