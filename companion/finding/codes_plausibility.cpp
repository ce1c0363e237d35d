// K6xx: units and plausibility.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> PlausibilityCodes{
    {"K601", Severity::Warning, "A thickness is out of line", "", "", "", "", ""},
    {"K602", Severity::Warning, "A section is out of line", "", "", "", "", ""},
    {"K603", Severity::Warning, "A node is far away from all others", "", "", "", "", ""},
    {"K604", Severity::Warning, "Young's modulus does not fit the size of the model", "", "", "",
     "", ""},
    {"K605", Severity::Warning, "A stiffness comes near that of the supports", "", "", "", "", ""},
    {"K606", Severity::Hint, "A density does not fit the other units", "", "", "", "", ""},
    {"K607", Severity::Warning, "Poisson's ratio is negative", "", "", "", "", ""},
};

}  // namespace kvx
