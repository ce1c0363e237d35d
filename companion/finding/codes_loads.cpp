// K4xx: loads.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> LoadCodes{
    {"K401", Severity::Error, "A load on a node or element that does not exist", "", "", "", "",
     ""},
    {"K402", Severity::Error, "A force on a node of no element", "", "", "", "", ""},
    {"K403", Severity::Hint, "A load stands twice", "", "", "", "", ""},
    {"K404", Severity::Hint, "A load of zero", "", "", "", "", ""},
    {"K405", Severity::Error, "A prescribed displacement without its support", "", "", "", "", ""},
    {"K406", Severity::Hint, "A prescribed displacement", "", "", "", "", ""},
    {"K407", Severity::Warning, "The model has no loads", "", "", "", "", ""},
    {"K408", Severity::Hint, "A force acts on a support", "", "", "", "", ""},
};

}  // namespace kvx
