#include "mesh/abaqus/abaqus_materials.h"

#include <array>

#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/letter_case.h"

namespace kvx {

namespace {

// A material while its keywords are read: those behind *MATERIAL up to the next one that is none of
// a material.
struct OpenMaterial {
  std::string key;
  std::string name;
  bool hasElastic = false;
  bool isIsotropic = true;
  korvex::Material values;
};

void ReportFurtherLines(AbaqusImport& import, const AbaqusKeyword& keyword) {
  if (keyword.lineCount < 2) return;
  ReportCard("*" + keyword.name, Fate::Limited,
             "it depends on temperature or fields; its first line is taken", keyword.place, {},
             import.report);
}

void TakeElastic(AbaqusImport& import, const AbaqusKeyword& keyword, OpenMaterial& material) {
  constexpr std::array<std::string_view, 2> known{"TYPE", "DEPENDENCIES"};
  ReportOtherParameters(import, keyword, known);
  const std::string_view type = ParameterText(import.deck, keyword, "TYPE");
  material.hasElastic = true;
  material.isIsotropic = type.empty() || IsWord(type, "ISO") || IsWord(type, "ISOTROPIC");
  if (!material.isIsotropic) return;
  if (keyword.lineCount == 0) StopImport(import.report, keyword.place, "*ELASTIC without data");
  const AbaqusLine& line = import.deck.lines[keyword.firstLine];
  AbaqusFields fields{line.text};
  material.values.E = NextReal(fields, 0.0, line.place, import.report);
  material.values.Mu = NextReal(fields, 0.0, line.place, import.report);
  ReportFurtherLines(import, keyword);
}

void TakeDensity(AbaqusImport& import, const AbaqusKeyword& keyword, OpenMaterial& material) {
  constexpr std::array<std::string_view, 1> known{"DEPENDENCIES"};
  ReportOtherParameters(import, keyword, known);
  if (keyword.lineCount == 0) StopImport(import.report, keyword.place, "*DENSITY without data");
  const AbaqusLine& line = import.deck.lines[keyword.firstLine];
  AbaqusFields fields{line.text};
  material.values.Density = NextReal(fields, 0.0, line.place, import.report);
  ReportFurtherLines(import, keyword);
}

void Close(AbaqusImport& import, const OpenMaterial& open, SourcePlace place,
           AbaqusMaterials& materials) {
  if (open.key.empty()) return;
  AbaqusMaterial material;
  if (!open.hasElastic) {
    material.lacks = "material " + open.name + " has no *ELASTIC";
  } else if (!open.isIsotropic) {
    material.lacks = "material " + open.name + " is not isotropic";
  } else if (!(open.values.E > 0.0)) {
    material.lacks = "Young's modulus of material " + open.name + " is not above 0";
  } else {
    material.row = static_cast<std::int32_t>(import.model.materials.size());
    import.model.materials.push_back({open.name, open.values});
  }
  if (materials.emplace(open.key, material).second) return;
  ReportCard("*MATERIAL", Fate::Refused, "two materials have the same name", place, open.name,
             import.report);
}

}  // namespace

void TakeAbaqusMaterials(AbaqusImport& import, AbaqusMaterials& materials) {
  OpenMaterial open;
  SourcePlace place;
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    if (keyword.name == "MATERIAL") {
      Close(import, open, place, materials);
      constexpr std::array<std::string_view, 1> known{"NAME"};
      ReportOtherParameters(import, keyword, known);
      const AbaqusParameter* name = FindParameter(import.deck, keyword, "NAME");
      if (name == nullptr || name->value.empty()) {
        StopImport(import.report, keyword.place, "a material without a name");
      }
      open = OpenMaterial{
          NameKey(name->value), std::string(WithoutQuotes(name->value)), false, true, {}};
      place = keyword.place;
    } else if (keyword.name == "ELASTIC" || keyword.name == "DENSITY") {
      if (open.key.empty()) {
        StopImport(import.report, keyword.place, "*" + keyword.name + " belongs to no *MATERIAL");
      }
      if (keyword.name == "ELASTIC") TakeElastic(import, keyword, open);
      if (keyword.name == "DENSITY") TakeDensity(import, keyword, open);
    }
  }
  Close(import, open, place, materials);
}

}  // namespace kvx
