#include "mesh/abaqus/abaqus_loads.h"

#include <algorithm>

#include "mesh/abaqus/abaqus_axes.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/abaqus/abaqus_surplus.h"
#include "mesh/letter_case.h"

namespace kvx {

namespace {

using korvex::Vector3;

// A load type of *DLOAD.
struct LoadLabel {
  std::string_view label;
  AbaqusLoadKind kind;
  bool isOnShells;
  bool isOnBeams;
  Vector3 direction;  // of those whose label says it
};
constexpr LoadLabel LoadLabels[] = {
    {"P", AbaqusLoadKind::Pressure, true, false, {}},
    {"TRVEC", AbaqusLoadKind::Traction, true, false, {}},
    {"PX", AbaqusLoadKind::LineGlobal, false, true, {1.0, 0.0, 0.0}},
    {"PY", AbaqusLoadKind::LineGlobal, false, true, {0.0, 1.0, 0.0}},
    {"PZ", AbaqusLoadKind::LineGlobal, false, true, {0.0, 0.0, 1.0}},
    {"P1", AbaqusLoadKind::Line1, false, true, {}},
    {"P2", AbaqusLoadKind::Line2, false, true, {}},
    {"GRAV", AbaqusLoadKind::Gravity, true, true, {}},
    {"BX", AbaqusLoadKind::Body, true, true, {1.0, 0.0, 0.0}},
    {"BY", AbaqusLoadKind::Body, true, true, {0.0, 1.0, 0.0}},
    {"BZ", AbaqusLoadKind::Body, true, true, {0.0, 0.0, 1.0}},
};

constexpr std::string_view Missing = "it names a set, element or node that does not exist";
constexpr std::string_view NotTaken = "it acts on elements that are not taken over";
constexpr std::string_view Amplitude = "AMPLITUDE: the full value is taken";
constexpr std::string_view ForcePerLength =
    "P1 and P2 are read as forces per length, as in Abaqus; CalculiX means pressures";
constexpr std::string_view ForcePerVolume =
    "BX, BY, BZ on shells are read as forces per volume, as in Abaqus; CalculiX means pressures";
constexpr std::string_view NumberedFaces =
    "faces S1 and S2 of shells are read as SNEG and SPOS, as in CalculiX";

bool NeedsDirection(AbaqusLoadKind kind) {
  return kind == AbaqusLoadKind::Gravity || kind == AbaqusLoadKind::Traction;
}

void ReportOptions(AbaqusImport& import, const AbaqusKeyword& keyword) {
  constexpr std::array<std::string_view, 4> known{"OP", "AMPLITUDE", "FOLLOWER", "INPUT"};
  ReportOtherParameters(import, keyword, known);
  if (FindParameter(import.deck, keyword, "AMPLITUDE") != nullptr) {
    ReportCard("*" + keyword.name, Fate::Limited, Amplitude, keyword.place, {}, import.report);
  }
  if (FindParameter(import.deck, keyword, "FOLLOWER") != nullptr) {
    ReportCard("*" + keyword.name, Fate::NoEffect,
               "FOLLOWER: in a linear analysis loads keep their directions", keyword.place, {},
               import.report);
  }
}

DistributedLoads& LoadsOfKind(AbaqusLoadKind kind, const Vector3& direction, AbaqusLoads& loads) {
  const auto [at, isNew] = loads.kindAt.emplace(std::pair{kind, direction}, loads.kinds.size());
  if (isNew) loads.kinds.push_back({kind, direction, {}, {}});
  return loads.kinds[at->second];
}

void AddLoad(std::int32_t element, double value, std::size_t step, DistributedLoads& loads) {
  const auto [at, isNew] = loads.at.emplace(element, loads.loads.size());
  if (isNew) loads.loads.push_back({element, 0.0, step});
  DistributedLoad& load = loads.loads[at->second];
  if (load.step != step) load.value = 0.0;
  load.step = step;
  load.value += value;
}

// One load that a data line gives to several elements.
struct LineLoad {
  std::string card;
  AbaqusLoadKind kind = AbaqusLoadKind::Pressure;
  bool isOnShells = true;
  bool isOnBeams = false;
  Vector3 direction{};
  double value = 0.0;
  std::size_t step = 0;
  SourcePlace place;
  std::string_view label;
};

// Takes the direction behind the magnitude, and makes it of length 1. The magnitude alone counts.
bool TakeDirection(AbaqusImport& import, AbaqusFields& fields, LineLoad& load) {
  for (double& c : load.direction) c = NextReal(fields, 0.0, load.place, import.report);
  if (!(korvex::Length(load.direction) > 0.0)) {
    ReportCard(load.card, Fate::Refused, "its direction has no length", load.place, load.label,
               import.report);
    return false;
  }
  load.direction = korvex::Normalise(load.direction);
  return true;
}

void LoadElement(AbaqusImport& import, const LineLoad& load, std::int32_t code,
                 DistributedLoads& kind) {
  const AbaqusElementKind element = KindOfCode(code);
  if (element == AbaqusElementKind::Other) {
    ReportCard(load.card, Fate::Lost, NotTaken, load.place, load.label, import.report);
    return;
  }
  const bool isShell = element == AbaqusElementKind::Shell;
  if (isShell ? !load.isOnShells : !load.isOnBeams) {
    ReportCard(
        load.card, Fate::Lost,
        std::string(load.label) + (isShell ? " on shells" : " on beams") + " has no counterpart",
        load.place, ExampleOf(import, code), import.report);
    return;
  }
  if (isShell && load.kind == AbaqusLoadKind::Body) {
    ReportCard(load.card, Fate::Limited, ForcePerVolume, load.place, ExampleOf(import, code),
               import.report);
  }
  AddLoad(code, load.value, load.step, kind);
}

void LoadTargets(AbaqusImport& import, const LineLoad& load, std::string_view name,
                 const AbaqusKeyword& keyword, AbaqusLoads& loads) {
  const AbaqusTargets targets = FindTargets(import, true, name, keyword);
  if (!targets.isKnown) {
    ReportCard(load.card, Fate::Refused, Missing, load.place, name, import.report);
    return;
  }
  DistributedLoads& kind = LoadsOfKind(load.kind, load.direction, loads);
  const std::size_t count = CountTargets(import, targets);
  if (count == 0) {
    ReportCard(load.card, Fate::Lost, "it acts on an empty set", load.place, name, import.report);
  }
  SpendEntries(import, count, load.place);
  for (std::size_t k = 0; k < count; ++k) {
    LoadElement(import, load, TargetAt(import, targets, k), kind);
  }
}

// Without a set or element a load acts on the whole model.
void LoadAll(AbaqusImport& import, const LineLoad& load, AbaqusLoads& loads) {
  const ImportModel& model = import.model;
  DistributedLoads& kind = LoadsOfKind(load.kind, load.direction, loads);
  SpendEntries(import, model.shells.size() + model.beams.size(), load.place);
  for (std::size_t k = 0; k < model.shells.size() && load.isOnShells; ++k) {
    LoadElement(import, load, ElementCode(AbaqusElementKind::Shell, k), kind);
  }
  for (std::size_t k = 0; k < model.beams.size() && load.isOnBeams; ++k) {
    LoadElement(import, load, ElementCode(AbaqusElementKind::Beam, k), kind);
  }
}

void TakeElementLoad(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& data,
                     std::size_t step, AbaqusLoads& loads) {
  AbaqusFields fields{data.text};
  std::string_view target;
  std::string_view typed;
  NextField(fields, target);
  NextField(fields, typed);
  const std::string label = UpperWords(typed);
  const auto* known =
      std::find_if(std::begin(LoadLabels), std::end(LoadLabels),
                   [&](const LoadLabel& candidate) { return candidate.label == label; });
  if (known == std::end(LoadLabels)) {
    ReportCard("*DLOAD", Fate::Lost, "a load of type " + label + " has no counterpart", data.place,
               target, import.report);
    return;
  }
  LineLoad load{"*DLOAD", known->kind, known->isOnShells, known->isOnBeams, known->direction,
                0.0,      step,        data.place,        known->label};
  load.value = NextReal(fields, 0.0, data.place, import.report);
  if (NeedsDirection(load.kind) && !TakeDirection(import, fields, load)) return;
  ReportSurplusFields(import, keyword, data, fields);
  if (load.kind == AbaqusLoadKind::Line1 || load.kind == AbaqusLoadKind::Line2) {
    ReportCard("*DLOAD", Fate::Limited, ForcePerLength, data.place, target, import.report);
  }
  if (target.empty()) {
    LoadAll(import, load, loads);
  } else {
    LoadTargets(import, load, target, keyword, loads);
  }
}

// The pressure of a surface's line: on SPOS it acts against the normal, on SNEG along it (manual
// of Abaqus: "positive in the direction opposite to the surface normal"; CalculiX 2.20 does so).
// Returns false for what is no face of a shell.
bool TakeFace(AbaqusImport& import, std::string_view face, LineLoad& load) {
  const bool isUpper = IsWord(face, "SPOS") || IsWord(face, "S2");
  const bool isLower = IsWord(face, "SNEG") || IsWord(face, "S1");
  if (!isUpper && !isLower) return false;
  if (IsWord(face, "S1") || IsWord(face, "S2")) {
    ReportCard(load.card, Fate::Limited, NumberedFaces, load.place, {}, import.report);
  }
  if (load.kind == AbaqusLoadKind::SurfaceTraction) return true;
  load.kind = isUpper ? AbaqusLoadKind::UpperPressure : AbaqusLoadKind::LowerPressure;
  return true;
}

void TakeSurfaceLoad(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& data,
                     std::size_t step, AbaqusSurfaces& surfaces, AbaqusLoads& loads) {
  AbaqusFields fields{data.text};
  std::string_view name;
  std::string_view typed;
  NextField(fields, name);
  NextField(fields, typed);
  const std::string label = UpperWords(typed);
  if (label != "P" && label != "TRVEC") {
    ReportCard("*DSLOAD", Fate::Lost, "a load of type " + label + " has no counterpart", data.place,
               name, import.report);
    return;
  }
  std::string_view key = name;
  auto surface = surfaces.find(NameKey(key));
  if (surface == surfaces.end() && key.find('.') != std::string_view::npos) {
    surface = surfaces.find(NameKey(key.substr(key.find('.') + 1)));
  }
  if (surface == surfaces.end()) {
    ReportCard("*DSLOAD", Fate::Refused, "its surface does not exist", data.place, name,
               import.report);
    return;
  }
  surface->second.isUsed = true;
  LineLoad load{"*DSLOAD", AbaqusLoadKind::SurfaceTraction, true, false, {}, 0.0, step, data.place,
                label};
  load.value = NextReal(fields, 0.0, data.place, import.report);
  if (label == "TRVEC" && !TakeDirection(import, fields, load)) return;
  ReportSurplusFields(import, keyword, data, fields);
  if (label == "P") load.kind = AbaqusLoadKind::Pressure;
  SpendEntries(import, surface->second.lines.size(), data.place);
  for (const AbaqusSurfaceLine& line : surface->second.lines) {
    LineLoad onFace = load;
    if (TakeFace(import, line.face, onFace)) {
      LoadTargets(import, onFace, line.target, *line.keyword, loads);
    } else {
      ReportCard("*DSLOAD", Fate::Lost, "its surface is no face of shells", data.place, name,
                 import.report);
    }
  }
}

void AddPointLoad(std::int32_t node, std::size_t dof, double value, std::size_t step,
                  AbaqusLoads& loads) {
  const auto [at, isNew] = loads.pointAt.emplace(node, loads.points.size());
  if (isNew) loads.points.push_back({node, {}, {}});
  PointLoad& point = loads.points[at->second];
  if (point.steps[dof] != step) point.values[dof] = 0.0;
  point.steps[dof] = step;
  point.values[dof] += value;
}

bool IsOfSurface(AbaqusLoadKind kind) {
  return kind == AbaqusLoadKind::LowerPressure || kind == AbaqusLoadKind::UpperPressure ||
         kind == AbaqusLoadKind::SurfaceTraction;
}

// Gravity in a direction of its own beside one of an earlier step: CalculiX adds them, as is done
// here; a deck may mean that the new one takes the old one's place.
void ReportTurnedGravity(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                         const AbaqusLoads& loads) {
  bool hasOld = false;
  bool hasNew = false;
  SpendEntries(import, loads.kinds.size(), keyword.place);
  for (const DistributedLoads& kind : loads.kinds) {
    if (kind.kind != AbaqusLoadKind::Gravity || kind.loads.empty()) continue;
    const std::size_t first = kind.loads.front().step;
    (first == step ? hasNew : hasOld) = true;
  }
  if (!hasOld || !hasNew) return;
  ReportCard("*DLOAD", Fate::Limited,
             "GRAV in another direction than in a step before is added to it", keyword.place, {},
             import.report);
}

}  // namespace

void TakePointLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                    AbaqusLoads& loads) {
  ReportOptions(import, keyword);
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    const AbaqusLine& data = import.deck.lines[keyword.firstLine + k];
    AbaqusFields fields{data.text};
    std::string_view name;
    NextField(fields, name);
    const std::int64_t dof = NextInteger(fields, 0, data.place, import.report);
    const double value = NextReal(fields, 0.0, data.place, import.report);
    ReportSurplusFields(import, keyword, data, fields);
    if (dof < 1 || dof > 6) {
      ReportCard("*CLOAD", Fate::Lost, "dofs other than 1 to 6", data.place, data.text,
                 import.report);
      continue;
    }
    const AbaqusTargets targets = FindTargets(import, false, name, keyword);
    const std::size_t count = CountTargets(import, targets);
    if (count == 0) {
      ReportCard("*CLOAD", targets.isKnown ? Fate::Lost : Fate::Refused,
                 targets.isKnown ? "it acts on an empty set" : Missing, data.place, name,
                 import.report);
    }
    SpendEntries(import, count, data.place);
    for (std::size_t j = 0; j < count; ++j) {
      AddPointLoad(TargetAt(import, targets, j), static_cast<std::size_t>(dof - 1), value, step,
                   loads);
    }
  }
}

void TakeElementLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                      AbaqusLoads& loads) {
  ReportOptions(import, keyword);
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    TakeElementLoad(import, keyword, import.deck.lines[keyword.firstLine + k], step, loads);
  }
  ReportTurnedGravity(import, keyword, step, loads);
}

void TakeSurfaceLoads(AbaqusImport& import, const AbaqusKeyword& keyword, std::size_t step,
                      AbaqusSurfaces& surfaces, AbaqusLoads& loads) {
  ReportOptions(import, keyword);
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    TakeSurfaceLoad(import, keyword, import.deck.lines[keyword.firstLine + k], step, surfaces,
                    loads);
  }
}

void EndLoads(AbaqusImport& import, const AbaqusKeyword& keyword, AbaqusLoads& loads) {
  if (keyword.name == "CLOAD") {
    loads.points.clear();
    loads.pointAt.clear();
    return;
  }
  SpendEntries(import, loads.kinds.size(), keyword.place);
  for (DistributedLoads& kind : loads.kinds) {
    if (IsOfSurface(kind.kind) != (keyword.name == "DSLOAD")) continue;
    kind.loads.clear();
    kind.at.clear();
  }
}

}  // namespace kvx
