// Data that stands behind what is read of a keyword: fields and lines too many.
#include "mesh/abaqus/abaqus_surplus.h"

namespace kvx {

void ReportSurplusFields(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& data,
                         AbaqusFields rest) {
  for (std::string_view field; NextField(rest, field);) {
    if (field.empty()) continue;
    ReportCard("*" + keyword.name, Fate::Limited, "more fields in a data line than are read",
               data.place, field, import.report);
    return;
  }
}

void ReportSurplusOfLine(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t line,
                         std::size_t read) {
  if (line >= keyword.lineCount) return;
  const AbaqusLine& data = import.deck.lines[keyword.firstLine + line];
  AbaqusFields fields{data.text};
  std::string_view field;
  for (std::size_t k = 0; k < read; ++k) NextField(fields, field);
  ReportSurplusFields(import, keyword, data, fields);
}

void ReportSurplusLines(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t read) {
  if (keyword.lineCount <= read) return;
  const AbaqusLine& data = import.deck.lines[keyword.firstLine + read];
  ReportCard("*" + keyword.name, Fate::Limited, "more data lines than are read", data.place,
             data.text, import.report);
}

}  // namespace kvx
