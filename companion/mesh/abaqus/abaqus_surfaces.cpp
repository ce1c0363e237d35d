#include "mesh/abaqus/abaqus_surfaces.h"

#include "mesh/abaqus/abaqus_fields.h"

namespace kvx {

void TakeAbaqusSurfaces(AbaqusImport& import, AbaqusSurfaces& surfaces) {
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart || keyword.name != "SURFACE") continue;
    const AbaqusParameter* name = FindParameter(import.deck, keyword, "NAME");
    if (name == nullptr) StopImport(import.report, keyword.place, "a surface without a name");
    AbaqusSurface& surface = surfaces[NameKey(name->value)];
    surface.keyword = &keyword;
    for (std::size_t k = 0; k < keyword.lineCount; ++k) {
      const AbaqusLine& line = import.deck.lines[keyword.firstLine + k];
      AbaqusFields fields{line.text};
      AbaqusSurfaceLine made;
      NextField(fields, made.target);
      NextField(fields, made.face);
      made.place = line.place;
      made.keyword = &keyword;
      surface.lines.push_back(made);
    }
  }
}

void ReportUnusedSurfaces(AbaqusImport& import, const AbaqusSurfaces& surfaces) {
  for (const auto& [key, surface] : surfaces) {
    if (surface.isUsed) continue;
    ReportCard("*SURFACE", Fate::NoEffect, "no load that is taken acts on it",
               surface.keyword->place, key, import.report);
  }
}

}  // namespace kvx
