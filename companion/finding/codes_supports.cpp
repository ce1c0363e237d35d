// K3xx: supports and mechanisms.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> SupportCodes{
    {"K301", Severity::Error, "A part can move as a rigid body", "", "", "", "", ""},
    {"K302", Severity::Warning, "A restraint flag is neither 0 nor 1", "", "", "", "", ""},
    {"K303", Severity::Hint, "A node has two restraint rows", "", "", "", "", ""},
    {"K304", Severity::Warning, "A support on a node of no element", "", "", "", "", ""},
    {"K305", Severity::Error, "A support on a node that does not exist", "", "", "", "", ""},
    {"K310", Severity::Error, "A mechanism within a part", "", "", "", "", ""},
    {"K311", Severity::Warning, "Nearly a mechanism", "", "", "", "", ""},
};

}  // namespace kvx
