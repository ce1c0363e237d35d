// K2xx: the mesh.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> MeshCodes{
    {"K201", Severity::Warning, "A seam of nodes that are not merged", "", "", "", "", ""},
    {"K202", Severity::Warning, "Nodes at the same place", "", "", "", "", ""},
    {"K203", Severity::Error, "A node belongs to no element", "", "", "", "", ""},
    {"K204", Severity::Warning, "A free edge lies on another shell", "", "", "", "", ""},
    {"K205", Severity::Warning, "A node lies on an element that it does not belong to", "", "", "",
     "", ""},
    {"K206", Severity::Warning, "Neighbouring shells have opposite normals", "", "", "", "", ""},
    {"K207", Severity::Hint, "The model has separate parts", "", "", "", "", ""},
};

}  // namespace kvx
