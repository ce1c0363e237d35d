// K1xx: elements and the tables that they refer to.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> ElementCodes{
    {"K101", Severity::Error, "A reference leads outside its table", "", "", "", "", ""},
    {"K102", Severity::Error, "A beam has no length", "", "", "", "", ""},
    {"K103", Severity::Error, "An orientation vector is zero", "", "", "", "", ""},
    {"K104", Severity::Error, "An orientation vector is parallel to its beam", "", "", "", "", ""},
    {"K105", Severity::Warning, "An orientation vector is nearly parallel to its beam", "", "", "",
     "", ""},
    {"K106", Severity::Error, "Young's modulus is not positive", "", "", "", "", ""},
    {"K107", Severity::Error, "Poisson's ratio is impossible", "", "", "", "", ""},
    {"K108", Severity::Error, "A thickness is not positive", "", "", "", "", ""},
    {"K109", Severity::Error, "A size of a section is not positive", "", "", "", "", ""},
    {"K110", Severity::Error, "A tube has more wall than room for it", "", "", "", "", ""},
    {"K111", Severity::Warning, "A section has unusual proportions", "", "", "", "", ""},
    {"K112", Severity::Warning, "A flange has only one of its sizes", "", "", "", "", ""},
    {"K113", Severity::Error, "A beam has a section type that does not exist", "", "", "", "", ""},
    {"K114", Severity::Error, "An element has the same node twice", "", "", "", "", ""},
    {"K115", Severity::Error, "The edges of a quadrilateral cross", "", "", "", "", ""},
    {"K116", Severity::Error, "A quadrilateral is concave", "", "", "", "", ""},
    {"K117", Severity::Error, "A shell has no area", "", "", "", "", ""},
    {"K118", Severity::Warning, "A shell is strongly skewed", "", "", "", "", ""},
    {"K119", Severity::Warning, "A shell is strongly elongated", "", "", "", "", ""},
    {"K120", Severity::Warning, "A quadrilateral is warped", "", "", "", "", ""},
    {"K121", Severity::Warning, "An element stands twice", "", "", "", "", ""},
    {"K122", Severity::Error, "A value is not a number", "", "", "", "", ""},
    {"K123", Severity::Error, "The model has no nodes or no elements", "", "", "", "", ""},
};

}  // namespace kvx
