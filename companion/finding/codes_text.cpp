// K0xx: the text of the file.
#include "finding/codes.h"

namespace kvx {

const std::vector<CodeText> TextCodes{
    {"K001", Severity::Error, "The header is missing, or its release is not 3.0", "", "", "", "",
     ""},
    {"K002", Severity::Error, "The file is not plain text", "", "", "", "", ""},
    {"K003", Severity::Error, "A section is missing", "", "", "", "", ""},
    {"K004", Severity::Error, "A section stands twice", "", "", "", "", ""},
    {"K005", Severity::Error, "A section stands in the wrong place", "", "", "", "", ""},
    {"K006", Severity::Error, "The line with a count is misspelt", "", "", "", "", ""},
    {"K007", Severity::Error, "A count is smaller than the rows that follow", "", "", "", "", ""},
    {"K008", Severity::Error, "A count is larger than the rows that follow", "", "", "", "", ""},
    {"K009", Severity::Error, "A count is negative", "", "", "", "", ""},
    {"K010", Severity::Error, "A comment, or another line that is no row", "", "", "", "", ""},
    {"K011", Severity::Error, "A row is not read as it is written", "", "", "", "", ""},
    {"K012", Severity::Error, "A comma within a number", "", "", "", "", ""},
    {"K013", Severity::Error, "The name of a value is misspelt", "", "", "", "", ""},
    {"K014", Severity::Error, "A number is incomplete or out of range", "", "", "", "", ""},
    {"K015", Severity::Error, "Values are missing in a row", "", "", "", "", ""},
    {"K016", Severity::Error, "Text behind the values of a row", "", "", "", "", ""},
    {"K017", Severity::Warning, "Running numbers are out of step", "", "", "", "", ""},
    {"K018", Severity::Warning, "Text behind the last section", "", "", "", "", ""},
};

}  // namespace kvx
