// Data that stands behind what is read of a keyword: fields and lines too many.
#pragma once

#include <cstddef>

#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_mesh.h"

namespace kvx {

// Reports what still stands in a data line of the keyword. Blank fields say nothing.
void ReportSurplusFields(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& data,
                         AbaqusFields rest);

// The same of the keyword's data line `line` (from 0), where there is one: `read` fields are read.
void ReportSurplusOfLine(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t line,
                         std::size_t read);

// Reports data lines of the keyword behind the first `read` ones.
void ReportSurplusLines(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t read);

}  // namespace kvx
