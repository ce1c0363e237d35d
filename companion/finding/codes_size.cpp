// K5xx: size and order.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> SizeCodes{
    {"K501", Severity::Hint, "Memory, time, and the order of the nodes", "", "", "", "", ""},
    {"K502", Severity::Error, "The matrix does not fit into the memory", "", "", "", "", ""},
    {"K503", Severity::Warning, "A detail model is very large", "", "", "", "", ""},
};

}  // namespace kvx
