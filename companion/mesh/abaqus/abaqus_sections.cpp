#include "mesh/abaqus/abaqus_sections.h"

#include <algorithm>
#include <array>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_placing.h"
#include "mesh/abaqus/abaqus_profiles.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/abaqus/abaqus_surplus.h"

namespace kvx {

namespace {

using korvex::Vector3;

// The direction of n1 where the deck says nothing.
constexpr Vector3 DefaultN1{0.0, 0.0, -1.0};

constexpr std::string_view TwoSections = "an element has two sections";

struct SectionReader {
  AbaqusImport& import;
  const AbaqusMaterials& materials;
  AbaqusSections& sections;
};

// A section keyword and what it is for.
struct SectionUse {
  const AbaqusKeyword& keyword;
  std::int32_t set = -1;       // row of sets, and of groups
  std::int32_t material = -1;  // row of the model's materials
};

std::string CardOf(const AbaqusKeyword& keyword) { return "*" + keyword.name; }

// Says of the group why its elements lack something. Where no map file gives it, they are refused
// with this reason.
void Lack(SectionReader& reader, const SectionUse& use, std::string_view why) {
  std::string& lacks = reader.import.model.groups[static_cast<std::size_t>(use.set)].lacks;
  if (lacks.find(why) != std::string::npos) return;
  if (!lacks.empty()) lacks += "; ";
  lacks += why;
}

// The set and the material of a section; false where one does not exist, which is reported.
bool FindUse(SectionReader& reader, SectionUse& use) {
  const AbaqusImport& import = reader.import;
  const AbaqusParameter* elset = FindParameter(import.deck, use.keyword, "ELSET");
  if (elset == nullptr) StopImport(import.report, use.keyword.place, "a section without ELSET=");
  const AbaqusTargets targets = FindTargets(import, true, elset->value, use.keyword);
  if (targets.set < 0) {
    ReportCard(CardOf(use.keyword), Fate::Refused, "its element set does not exist",
               use.keyword.place, WithoutQuotes(elset->value), reader.import.report);
    return false;
  }
  use.set = targets.set;
  const AbaqusParameter* name = FindParameter(import.deck, use.keyword, "MATERIAL");
  if (name == nullptr) return true;
  const auto material = reader.materials.find(NameKey(name->value));
  if (material == reader.materials.end()) {
    ReportCard(CardOf(use.keyword), Fate::Refused, "its material does not exist", use.keyword.place,
               WithoutQuotes(name->value), reader.import.report);
    return false;
  }
  use.material = material->second.row;
  if (use.material < 0) Lack(reader, use, material->second.lacks);
  return true;
}

std::string ThicknessName(const SectionReader& reader, const SectionUse& use) {
  return reader.import.mesh.sets[static_cast<std::size_t>(use.set)].name;
}

// Reports a shell's reference surface that is not its middle.
void ReportOffset(SectionReader& reader, const SectionUse& use) {
  const AbaqusParameter* offset = FindParameter(reader.import.deck, use.keyword, "OFFSET");
  if (offset == nullptr) return;
  double value = 1.0;  // SPOS, SNEG, or the name of a distribution
  const char first = offset->value.empty() ? '0' : offset->value.front();
  const bool isNumber =
      (first >= '0' && first <= '9') || first == '.' || first == '-' || first == '+';
  if (isNumber) value = RealOf(offset->value, 0.0, use.keyword.place, reader.import.report);
  if (value == 0.0) return;
  ReportCard(CardOf(use.keyword), Fate::Limited, "OFFSET: the nodes lie in the middle surface here",
             use.keyword.place, ThicknessName(reader, use), reader.import.report);
}

void ReportShellOptions(SectionReader& reader, const SectionUse& use) {
  AbaqusImport& import = reader.import;
  ReportOffset(reader, use);
  if (FindParameter(import.deck, use.keyword, "ORIENTATION") != nullptr) {
    ReportCard(CardOf(use.keyword), Fate::NoEffect, "ORIENTATION of an isotropic material",
               use.keyword.place, {}, import.report);
  }
  constexpr std::array<std::string_view, 14> known{"ELSET",
                                                   "MATERIAL",
                                                   "OFFSET",
                                                   "ORIENTATION",
                                                   "COMPOSITE",
                                                   "NODAL THICKNESS",
                                                   "SHELL THICKNESS",
                                                   "POISSON",
                                                   "SECTION INTEGRATION",
                                                   "CONTROLS",
                                                   "TEMPERATURE",
                                                   "THICKNESS MODULUS",
                                                   "SYMMETRIC",
                                                   "NUMBER OF INTEGRATION POINTS"};
  ReportOtherParameters(import, use.keyword, known);
}

// Why a shell section has no one thickness; empty where it has.
std::string_view WhyNoThickness(const SectionReader& reader, const SectionUse& use) {
  const AbaqusDeck& deck = reader.import.deck;
  const AbaqusKeyword& keyword = use.keyword;
  if (FindParameter(deck, keyword, "COMPOSITE") != nullptr) return "layers have no counterpart";
  if (FindParameter(deck, keyword, "NODAL THICKNESS") != nullptr ||
      FindParameter(deck, keyword, "SHELL THICKNESS") != nullptr) {
    return "a thickness that varies has no counterpart";
  }
  if (FindParameter(deck, keyword, "MATERIAL") == nullptr) {
    return "a section given by its stiffness has no counterpart";
  }
  return {};
}

void GiveThickness(SectionReader& reader, const SectionUse& use, double TK) {
  ImportModel& model = reader.import.model;
  const auto row = static_cast<std::int32_t>(model.thicknesses.size());
  model.thicknesses.push_back({ThicknessName(reader, use), TK});
  const ImportGroup& group = model.groups[static_cast<std::size_t>(use.set)];
  SpendEntries(reader.import, group.shells.size(), use.keyword.place);
  for (const std::int32_t at : group.shells) {
    ImportShell& shell = model.shells[static_cast<std::size_t>(at)];
    if (shell.thickness >= 0) {
      const double before = model.thicknesses[static_cast<std::size_t>(shell.thickness)].TK;
      if (before == TK && shell.material == use.material) continue;
      ReportCard(CardOf(use.keyword), Fate::Refused, TwoSections, use.keyword.place,
                 ExampleOf(reader.import,
                           ElementCode(AbaqusElementKind::Shell, static_cast<std::size_t>(at))),
                 reader.import.report);
      continue;
    }
    shell.thickness = row;
    shell.material = use.material;
  }
}

void TakeShellSection(SectionReader& reader, const AbaqusKeyword& keyword) {
  SectionUse use{keyword};
  if (!FindUse(reader, use)) return;
  ReportShellOptions(reader, use);
  const std::string_view why = WhyNoThickness(reader, use);
  if (!why.empty()) {
    Lack(reader, use, CardOf(keyword) + ": " + std::string(why));
    return;
  }
  if (keyword.lineCount == 0) {
    StopImport(reader.import.report, keyword.place, "a shell section without a thickness");
  }
  const AbaqusLine& line = reader.import.deck.lines[keyword.firstLine];
  AbaqusFields fields{line.text};
  const double TK = NextReal(fields, 0.0, line.place, reader.import.report);
  // Behind it *SHELL SECTION alone may say how many points it is integrated at, which is no matter.
  std::string_view points;
  if (keyword.name == "SHELL SECTION") NextField(fields, points);
  ReportSurplusFields(reader.import, keyword, line, fields);
  ReportSurplusLines(reader.import, keyword, 1);
  if (TK > 0.0) {
    GiveThickness(reader, use, TK);
  } else {
    Lack(reader, use, CardOf(keyword) + ": its thickness is not above 0");
  }
}

// The first data line: the numbers of the section.
void TakeProfileData(const SectionReader& reader, const AbaqusKeyword& keyword,
                     AbaqusProfileData& data) {
  const ImportReport& report = reader.import.report;
  if (keyword.lineCount > 0) {
    const AbaqusLine& line = reader.import.deck.lines[keyword.firstLine];
    AbaqusFields fields{line.text};
    for (std::string_view field; data.count < MostProfileValues && NextField(fields, field);) {
      if (field.empty() && fields.isAtEnd) break;
      data.values[data.count++] = RealOf(field, 0.0, line.place, report);
    }
  }
}

void TakeOffsets(const SectionReader& reader, const AbaqusKeyword& keyword,
                 AbaqusProfileData& data) {
  const auto offset = [&](std::string_view name) {
    return RealOf(ParameterText(reader.import.deck, keyword, name), 0.0, keyword.place,
                  reader.import.report);
  };
  data.offset1 = offset("OFFSET1");
  data.offset2 = offset("OFFSET2");
}

// Of a section without a counterpart: a map file gives another one, which stands on the nodes.
void ReportUntakenOffset(SectionReader& reader, const SectionUse& use) {
  AbaqusProfileData data;
  TakeOffsets(reader, use.keyword, data);
  if (data.offset1 == 0.0 && data.offset2 == 0.0) return;
  ReportCard(CardOf(use.keyword), Fate::Limited,
             "the section has no counterpart: its offset is left out", use.keyword.place,
             ThicknessName(reader, use), reader.import.report);
}

// The second data line: n1. Without one, or with zeros, the default holds.
Vector3 TakeN1(SectionReader& reader, const AbaqusKeyword& keyword) {
  const AbaqusImport& import = reader.import;
  Vector3 n1{};
  if (keyword.lineCount > 1) {
    const AbaqusLine& line = import.deck.lines[keyword.firstLine + 1];
    AbaqusFields fields{line.text};
    for (double& component : n1) component = NextReal(fields, 0.0, line.place, import.report);
  }
  if (!(korvex::Length(n1) > 0.0)) n1 = DefaultN1;
  return TurnDirection(import, keyword, n1);
}

bool AreSame(const ImportSection& a, const ImportSection& b) {
  return a.type == b.type && a.plates.Hw == b.plates.Hw && a.plates.Tw == b.plates.Tw &&
         a.plates.Bf == b.plates.Bf && a.plates.Tf == b.plates.Tf && a.tube.R == b.tube.R &&
         a.tube.T == b.tube.T;
}

// Lays the section of a beam in its axes.
void Orient(const SectionReader& reader, const AbaqusProfile& profile, std::int32_t at,
            ImportBeam& beam) {
  beam.BeamSecOz = profile.BeamSecOz;
  beam.BeamSecMirrored = profile.BeamSecMirrored;
  const AbaqusBeamAxes axes = AxesOfBeam(reader.import.model, reader.sections, at);
  if (axes.areKnown) {
    beam.orientation = Add(Scale(profile.web1, axes.n1), Scale(profile.web2, axes.n2));
  }
}

constexpr std::string_view NoAxes = "*BEAM SECTION: n1 lies along a beam, so it has no axes";

// Gives a beam its section. Returns whether its axes are known.
bool GiveSection(SectionReader& reader, const SectionUse& use, const AbaqusProfile& profile,
                 std::int32_t at, std::int32_t row) {
  ImportModel& model = reader.import.model;
  ImportBeam& beam = model.beams[static_cast<std::size_t>(at)];
  const ImportBeam before = beam;
  if (beam.section < 0) {
    beam.section = row;
    beam.material = use.material;
    Orient(reader, profile, at, beam);
  } else {
    Orient(reader, profile, at, beam);
    const bool isSame =
        AreSame(model.sections[static_cast<std::size_t>(before.section)], profile.section) &&
        before.material == use.material && before.BeamSecOz == beam.BeamSecOz &&
        before.orientation == beam.orientation;
    if (!isSame) {
      ReportCard(CardOf(use.keyword), Fate::Refused, TwoSections, use.keyword.place,
                 ExampleOf(reader.import,
                           ElementCode(AbaqusElementKind::Beam, static_cast<std::size_t>(at))),
                 reader.import.report);
    }
  }
  // A tube is the same all round.
  return beam.orientation != Vector3{} || profile.section.type == korvex::BeamSecTypeC;
}

void ReportProfile(SectionReader& reader, const SectionUse& use, const AbaqusProfile& profile) {
  const auto report = [&](Fate fate, std::string_view reason) {
    ReportCard(CardOf(use.keyword), fate, reason, use.keyword.place, ThicknessName(reader, use),
               reader.import.report);
  };
  for (const std::string_view reason : profile.limited) report(Fate::Limited, reason);
  if (profile.isAside) {
    report(Fate::Limited, "the section stands beside its nodes; here its web stands on them");
  }
}

// Notes the n1 of the beams of a section, whether or not the section is taken: loads need it.
void NoteN1(SectionReader& reader, const ImportGroup& group, const Vector3& n1) {
  AbaqusSections& sections = reader.sections;
  const auto row = static_cast<std::int32_t>(sections.approximateN1.size());
  sections.approximateN1.push_back(n1);
  const auto& axisNodes = reader.import.mesh.axisNodes;
  for (const std::int32_t at : group.beams) {
    std::int32_t& n1OfBeam = sections.n1OfBeam[static_cast<std::size_t>(at)];
    n1OfBeam = row;
    const auto third = std::lower_bound(axisNodes.begin(), axisNodes.end(), std::pair{at, 0});
    if (third == axisNodes.end() || third->first != at) continue;
    const ImportModel& model = reader.import.model;
    const std::int32_t first = model.beams[static_cast<std::size_t>(at)].nodes[0];
    n1OfBeam = static_cast<std::int32_t>(sections.approximateN1.size());
    sections.approximateN1.push_back(
        korvex::Subtract(PlaceOf(model, third->second), PlaceOf(model, first)));
  }
}

// A section has its sizes, n1, and the points that it is integrated at.
void ReportSurplusOfBeamSection(SectionReader& reader, const AbaqusKeyword& keyword,
                                std::string_view type) {
  constexpr std::size_t MostLines = 3;
  ReportSurplusOfLine(reader.import, keyword, 0, CountProfileValues(type));
  ReportSurplusOfLine(reader.import, keyword, 1, 3);
  ReportSurplusLines(reader.import, keyword, MostLines);
  if (keyword.lineCount < MostLines) return;
  ReportCard(CardOf(keyword), Fate::NoEffect, "points of integration of a section",
             reader.import.deck.lines[keyword.firstLine + 2].place, {}, reader.import.report);
}

void TakeBeamSection(SectionReader& reader, const AbaqusKeyword& keyword) {
  AbaqusImport& import = reader.import;
  SectionUse use{keyword};
  if (!FindUse(reader, use)) return;
  constexpr std::array<std::string_view, 9> known{"ELSET",       "MATERIAL", "SECTION",
                                                  "OFFSET1",     "OFFSET2",  "POISSON",
                                                  "TEMPERATURE", "LUMPED",   "CONTROLS"};
  ReportOtherParameters(import, keyword, known);
  AbaqusProfileData data;
  const std::string type = UpperWords(ParameterText(import.deck, keyword, "SECTION"));
  data.type = type;
  const ImportGroup& group = import.model.groups[static_cast<std::size_t>(use.set)];
  SpendEntries(import, group.beams.size(), keyword.place);
  // Of an arbitrary section the second line gives points, and not n1.
  if (type != "ARBITRARY") NoteN1(reader, group, TakeN1(reader, keyword));
  if (IsPlacedProfile(type)) TakeProfileData(reader, keyword, data);
  TakeOffsets(reader, keyword, data);
  AbaqusProfile profile = PlaceProfile(data);
  if (!profile.isTaken) {
    ReportUntakenOffset(reader, use);
    Lack(reader, use, profile.lacks);
    return;
  }
  ReportProfile(reader, use, profile);
  ReportSurplusOfBeamSection(reader, keyword, type);
  const auto row = static_cast<std::int32_t>(import.model.sections.size());
  profile.section.name = ThicknessName(reader, use);
  import.model.sections.push_back(profile.section);
  bool haveAxes = true;
  for (const std::int32_t at : group.beams) {
    haveAxes = GiveSection(reader, use, profile, at, row) && haveAxes;
  }
  if (!haveAxes) Lack(reader, use, NoAxes);
}

void TakeGeneralBeamSection(SectionReader& reader, const AbaqusKeyword& keyword) {
  SectionUse use{keyword};
  if (!FindUse(reader, use)) return;
  const ImportGroup& group = reader.import.model.groups[static_cast<std::size_t>(use.set)];
  SpendEntries(reader.import, group.beams.size(), keyword.place);
  NoteN1(reader, group, TakeN1(reader, keyword));
  ReportUntakenOffset(reader, use);
  Lack(reader, use, "*BEAM GENERAL SECTION: general sections have no counterpart");
}

}  // namespace

AbaqusBeamAxes AxesOfBeam(const ImportModel& model, const AbaqusSections& sections,
                          std::int32_t beam) {
  AbaqusBeamAxes axes;
  const std::int32_t row = sections.n1OfBeam[static_cast<std::size_t>(beam)];
  if (row < 0) return axes;
  const auto& nodes = model.beams[static_cast<std::size_t>(beam)].nodes;
  const Vector3 along = korvex::Subtract(PlaceOf(model, nodes[1]), PlaceOf(model, nodes[0]));
  const Vector3& n1 = sections.approximateN1[static_cast<std::size_t>(row)];
  const Vector3 across = korvex::Cross(along, n1);
  // Written so that a NaN fails.
  if (!(korvex::Length(across) > ParallelShare * korvex::Length(along) * korvex::Length(n1))) {
    return axes;
  }
  axes.areKnown = true;
  axes.n2 = korvex::Normalise(across);
  axes.n1 = korvex::Cross(axes.n2, korvex::Normalise(along));
  return axes;
}

void TakeAbaqusSections(AbaqusImport& import, const AbaqusMaterials& materials,
                        AbaqusSections& sections) {
  sections.n1OfBeam.assign(import.model.beams.size(), -1);
  SectionReader reader{import, materials, sections};
  for (const AbaqusKeyword& keyword : import.deck.keywords) {
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    if (keyword.name == "SHELL SECTION" || keyword.name == "SHELL GENERAL SECTION") {
      TakeShellSection(reader, keyword);
    } else if (keyword.name == "BEAM SECTION") {
      TakeBeamSection(reader, keyword);
    } else if (keyword.name == "BEAM GENERAL SECTION") {
      TakeGeneralBeamSection(reader, keyword);
    }
  }
}

}  // namespace kvx
