#include "mesh/map_template.h"

#include <cstddef>

#include "finding/text_layout.h"
#include "mesh/element_names.h"

namespace kvx {

namespace {

// What stands below the groups: a map at a glance. All of it is comment.
constexpr const char* Example = R"(
# ---- An example ----------------------------------------------------------------------------------
# [material.steel]
# E = 206000                           # of the mesh's units; here N and mm
# poisson = 0.3
# density = 7.85e-9                    # for an acceleration alone
#
# [group.deck]
# thickness = 12
# material = "steel"
# pressure = -0.01                     # along the elements' normals
#
# [group.stiffeners]
# section = { type = "T", Hw = 200, Tw = 8, Bf = 90, Tf = 12 }   # or "L", "bar" (Hw, Tw), "tube" (R, T)
# orientation = [0, 0, -1]             # direction of the web; or "normal", "-normal" of the shells
# offset = 6                           # half the plate's thickness: the web begins on its face
# material = "steel"
#
# [group.clamped]
# restraint = "fixed"                  # or "pinned", or [1, 1, 1, 0, 0, 0] for ux uy uz rx ry rz
)";

constexpr const char* ShellKeys =
    "# thickness = \n"
    "# material = \"steel\"\n"
    "# pressure =                          # along the normals; negative: against them\n"
    "# flip = true                         # turns the normals round\n";

constexpr const char* BeamKeys =
    "# section = { type = \"T\", Hw = , Tw = , Bf = , Tf =  }\n"
    "# orientation = [0, 0, -1]            # direction of the web; or \"normal\", \"-normal\"\n"
    "# offset =                            # of the section along it\n"
    "# material = \"steel\"\n"
    "# line_load =                         # force per length along the web\n"
    "# edge_load = [0, 0, 0]               # force per length, global; for edges, too\n";

constexpr const char* NodeKeys =
    "# restraint = \"fixed\"\n"
    "# total_force = [0, 0, 0]             # shared by its nodes; force: on each of them\n";

// Whether the bytes are UTF-8; a name that is not cannot stand in a map.
bool IsUtf8(const std::string& text) {
  std::string plain = text;
  for (char& c : plain) {
    if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') c = ' ';
  }
  return CleanText(plain) == plain;
}

// A key of TOML: bare, or in quotes with escapes.
std::string KeyOf(const std::string& name) {
  constexpr const char* Bare = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
  if (!name.empty() && name.find_first_not_of(Bare) == std::string::npos) return name;
  constexpr const char* Hex = "0123456789ABCDEF";
  std::string key = "\"";
  for (const char c : name) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') {
      key += '\\';
      key += c;
    } else if (byte < ' ' || byte == 0x7F) {
      key += "\\u00";
      key += Hex[byte / 16];
      key += Hex[byte % 16];
    } else {
      key += c;
    }
  }
  return key + '"';
}

std::string DescribeGroup(const ImportGroup& group) {
  std::string text = "# " + CleanText(NameGroup(group)) + ": ";
  if (!group.shells.empty()) text += CountText(group.shells.size(), "shell", "shells") + ", ";
  if (!group.beams.empty()) text += CountText(group.beams.size(), "line", "lines") + ", ";
  text += CountText(group.nodes.size(), "node", "nodes") + '\n';
  if (!group.lacks.empty()) text += "# " + CleanText(group.lacks) + '\n';
  return text;
}

std::string WriteGroup(const ImportGroup& group) {
  std::string text = '\n' + DescribeGroup(group);
  if (!IsUtf8(group.name)) {
    return text + "# Its name is no UTF-8: give it another in the mesh.\n";
  }
  text += "[group." + KeyOf(group.name) + "]\n";
  if (!group.shells.empty()) text += ShellKeys;
  if (!group.beams.empty()) text += BeamKeys;
  if (!group.nodes.empty()) text += NodeKeys;
  return text;
}

}  // namespace

std::string WriteMapTemplate(const ImportModel& model) {
  std::string text =
      "# A map for the groups of a mesh. Take the # away before what you fill in.\n"
      "\n"
      "# acceleration = [0, 0, 0]             # of gravity\n"
      "\n"
      "# [material.steel]\n"
      "# E = \n"
      "# poisson = 0.3\n"
      "# density =                           # for an acceleration alone\n";
  for (const ImportGroup& group : model.groups) text += WriteGroup(group);
  if (model.groups.empty()) text += "\n# The mesh has no groups: a map cannot name its parts.\n";
  return text + Example;
}

}  // namespace kvx
