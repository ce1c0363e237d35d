#include "mesh/abaqus/abaqus_steps.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_set>

#include "mesh/abaqus/abaqus_boundary.h"
#include "mesh/abaqus/abaqus_case_loads.h"
#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_keywords.h"
#include "mesh/abaqus/abaqus_loads.h"
#include "mesh/letter_case.h"

namespace kvx {

namespace {

// A procedure that is no linear statics, and whether its loads stay its own.
struct OtherProcedure {
  std::string_view name;
  bool isPerturbation;
};
constexpr OtherProcedure OtherProcedures[] = {
    {"ANNEAL", false},
    {"BUCKLE", true},
    {"COMPLEX FREQUENCY", true},
    {"COUPLED TEMPERATURE-DISPLACEMENT", false},
    {"DIRECT CYCLIC", false},
    {"DYNAMIC", false},
    {"ELECTROMAGNETICS", false},
    {"FREQUENCY", true},
    {"GEOSTATIC", false},
    {"GREEN", true},
    {"HEAT TRANSFER", false},
    {"MODAL DYNAMIC", true},
    {"RANDOM RESPONSE", true},
    {"RESPONSE SPECTRUM", true},
    {"SENSITIVITY", true},
    {"SOILS", false},
    {"STEADY STATE DYNAMICS", true},
    {"SUBSTRUCTURE GENERATE", true},
    {"UNCOUPLED TEMPERATURE-DISPLACEMENT", false},
    {"VISCO", false},
};

const OtherProcedure* FindOtherProcedure(std::string_view name) {
  for (const OtherProcedure& procedure : OtherProcedures) {
    if (procedure.name == name) return &procedure;
  }
  return nullptr;
}

// A step: its keywords are those from begin + 1 to end - 1.
struct Step {
  std::size_t number = 0;  // from 1
  std::size_t begin = 0;   // its *STEP
  std::size_t end = 0;     // its *END STEP, the next *STEP, or the end of the deck
  const OtherProcedure* other = nullptr;
  bool isPerturbation = false;
  bool hasEnd = false;  // an *END STEP
};

struct StepReader {
  AbaqusImport& import;
  const AbaqusSections& sections;
  AbaqusTransforms transforms;
  AbaqusSurfaces surfaces;
  AbaqusSupports supports;
  AbaqusLoads loads;
  SupportRows supportRows;
  std::unordered_set<std::string> names;  // of cases
};

bool IsLoad(std::string_view name) {
  return name == "CLOAD" || name == "DLOAD" || name == "DSLOAD";
}

void TakeLoads(StepReader& reader, const AbaqusKeyword& keyword, std::size_t step) {
  if (keyword.name == "CLOAD") TakePointLoads(reader.import, keyword, step, reader.loads);
  if (keyword.name == "DLOAD") TakeElementLoads(reader.import, keyword, step, reader.loads);
  if (keyword.name == "DSLOAD") {
    TakeSurfaceLoads(reader.import, keyword, step, reader.surfaces, reader.loads);
  }
}

// OP=NEW on any keyword of a kind ends what the steps before have set by this kind. It does so
// before the step's own keywords are taken: several with OP=NEW do not end each other.
void EndOldLoads(StepReader& reader, const Step& step) {
  const AbaqusDeck& deck = reader.import.deck;
  bool endsSupports = false;
  for (std::size_t k = step.begin + 1; k < step.end; ++k) {
    const AbaqusKeyword& keyword = deck.keywords[k];
    if (!IsWord(ParameterText(deck, keyword, "OP"), "NEW")) continue;
    if (IsLoad(keyword.name)) EndLoads(reader.import, keyword, reader.loads);
    endsSupports = endsSupports || keyword.name == "BOUNDARY";
  }
  if (endsSupports) reader.supports = AbaqusSupports{};
}

void ReportStepOptions(AbaqusImport& import, const AbaqusKeyword& keyword) {
  constexpr std::array<std::string_view, 12> known{
      "NAME",          "NLGEOM", "PERTURBATION", "INC",  "AMPLITUDE",       "CONVERT SDI",
      "EXTRAPOLATION", "SOLVER", "UNSYMM",       "INCF", "THERMAL NETWORK", "TIME RESET"};
  ReportOtherParameters(import, keyword, known);
  const AbaqusParameter* nonlinear = FindParameter(import.deck, keyword, "NLGEOM");
  if (nonlinear != nullptr && !IsWord(nonlinear->value, "NO")) {
    ReportCard("*STEP", Fate::Limited, "NLGEOM: solved as linear", keyword.place, {},
               import.report);
  }
}

std::string CaseName(StepReader& reader, const Step& step, std::size_t steps) {
  const AbaqusDeck& deck = reader.import.deck;
  std::string name(ParameterText(deck, deck.keywords[step.begin], "NAME"));
  if (name.empty() && steps > 1) name = "step " + std::to_string(step.number);
  const std::string first = name;
  for (std::size_t k = step.number; !reader.names.insert(name).second; ++k) {
    name = first + " (step " + std::to_string(k) + ")";
  }
  return name;
}

// Whether loads are in force in a step, or stand in it and are lost.
bool AsksForLoads(const StepReader& reader, const Step& step) {
  if (!reader.loads.points.empty()) return true;
  for (const DistributedLoads& kind : reader.loads.kinds) {
    if (!kind.loads.empty()) return true;
  }
  const std::vector<AbaqusKeyword>& keywords = reader.import.deck.keywords;
  for (std::size_t k = step.begin + 1; k < step.end; ++k) {
    const AbaqusKeyword& keyword = keywords[k];
    const AbaqusKeywordKind kind = KindOfKeyword(keyword.name);
    const bool isLost = !kind.isTaken && kind.fate == Fate::Lost;
    if (keyword.lineCount > 0 && (IsLoad(keyword.name) || isLost)) return true;
  }
  return false;
}

void MakeCase(StepReader& reader, const Step& step, std::size_t steps) {
  AbaqusImport& import = reader.import;
  ImportCase made;
  made.place = import.deck.keywords[step.begin].place;
  made.name = CaseName(reader, step, steps);
  made.asksForLoads = AsksForLoads(reader, step);
  AddSupports(import, reader.transforms, reader.supports, reader.supportRows, made);
  AddCaseLoads(import, reader.transforms, reader.sections, reader.loads, made);
  import.model.cases.push_back(std::move(made));
}

void TakeKeywords(StepReader& reader, const Step& step) {
  for (std::size_t k = step.begin + 1; k < step.end; ++k) {
    const AbaqusKeyword& keyword = reader.import.deck.keywords[k];
    if (keyword.name == "BOUNDARY") {
      TakeAbaqusBoundary(reader.import, keyword, true, reader.supports);
    }
    TakeLoads(reader, keyword, step.number);
    if (keyword.name == "STATIC" && FindParameter(reader.import.deck, keyword, "RIKS") != nullptr) {
      ReportCard("*STATIC", Fate::Limited, "RIKS: solved as linear, under the full loads",
                 keyword.place, {}, reader.import.report);
    }
  }
}

// A perturbation has loads of its own; what was in force before is so again behind it. What
// supports prescribe in other steps is zero in it.
void TakePerturbation(StepReader& reader, const Step& step, std::size_t steps) {
  AbaqusImport& import = reader.import;
  SpendEntries(import, reader.supports.held.size(), import.deck.keywords[step.begin].place);
  AbaqusLoads before = std::move(reader.loads);
  const AbaqusSupports supportsBefore = reader.supports;
  reader.loads = AbaqusLoads{};
  for (HeldNode& held : reader.supports.held) held.values = {};
  reader.supports.areNew = true;
  if (!before.points.empty() || !before.kinds.empty()) {
    ReportCard("*STEP", Fate::Limited, "PERTURBATION: its own loads alone act, without preload",
               import.deck.keywords[step.begin].place, {}, import.report);
  }
  EndOldLoads(reader, step);
  TakeKeywords(reader, step);
  if (step.other == nullptr) MakeCase(reader, step, steps);
  reader.loads = std::move(before);
  reader.supports = supportsBefore;
  reader.supports.areNew = true;
}

void TakeStep(StepReader& reader, const Step& step, std::size_t steps) {
  AbaqusImport& import = reader.import;
  ReportStepOptions(import, import.deck.keywords[step.begin]);
  if (!step.hasEnd) {
    ReportCard("*STEP", Fate::Limited, "there is no *END STEP; the deck may be cut off",
               import.deck.keywords[step.begin].place, {}, import.report);
  }
  if (step.other != nullptr) {
    const SourcePlace place = import.deck.keywords[step.begin].place;
    ReportCard("*STEP", Fate::Lost,
               "a step of *" + std::string(step.other->name) + ": only static steps are taken",
               place, "step " + std::to_string(step.number), import.report);
  }
  if (step.isPerturbation) {
    TakePerturbation(reader, step, steps);
    return;
  }
  EndOldLoads(reader, step);
  TakeKeywords(reader, step);
  if (step.other == nullptr) MakeCase(reader, step, steps);
}

std::vector<Step> FindSteps(const AbaqusDeck& deck) {
  std::vector<Step> steps;
  bool isOpen = false;
  for (std::size_t k = 0; k < deck.keywords.size(); ++k) {
    const AbaqusKeyword& keyword = deck.keywords[k];
    const bool begins = keyword.name == "STEP";
    if (isOpen && (begins || keyword.name == "END STEP")) {
      steps.back().end = k;
      steps.back().hasEnd = !begins;
      isOpen = false;
    }
    if (begins) {
      Step step;
      step.number = steps.size() + 1;
      step.begin = k;
      step.isPerturbation = FindParameter(deck, keyword, "PERTURBATION") != nullptr;
      steps.push_back(step);
      isOpen = true;
    } else if (isOpen) {
      const OtherProcedure* other = FindOtherProcedure(keyword.name);
      if (other != nullptr) {
        steps.back().other = other;
        steps.back().isPerturbation = steps.back().isPerturbation || other->isPerturbation;
      }
    }
  }
  if (isOpen) steps.back().end = deck.keywords.size();
  return steps;
}

// A mesh alone has no step. A deck with more than that has, unless its end is missing.
void ReportNoStep(AbaqusImport& import) {
  const std::vector<AbaqusKeyword>& keywords = import.deck.keywords;
  const auto isOfAnalysis = [](const AbaqusKeyword& keyword) {
    return keyword.name == "MATERIAL" || keyword.name == "BOUNDARY" ||
           keyword.name == "SHELL SECTION" || keyword.name == "BEAM SECTION";
  };
  if (std::none_of(keywords.begin(), keywords.end(), isOfAnalysis)) return;
  ReportCard("end of file", Fate::Limited, "the deck ends without a *STEP; it may be cut off",
             keywords.back().place, {}, import.report);
}

// What stands outside of all steps: supports of the model, and loads, which are none there.
void TakeModelPart(StepReader& reader, const std::vector<Step>& steps) {
  AbaqusImport& import = reader.import;
  std::size_t next = 0;
  for (std::size_t k = 0; k < import.deck.keywords.size(); ++k) {
    while (next < steps.size() && k >= steps[next].end) ++next;
    if (next < steps.size() && k > steps[next].begin) continue;
    const AbaqusKeyword& keyword = import.deck.keywords[k];
    if (keyword.scope == AbaqusScope::UnusedPart) continue;
    if (keyword.name == "BOUNDARY") {
      TakeAbaqusBoundary(import, keyword, false, reader.supports);
      if (!steps.empty() && k >= steps.front().end) {
        ReportCard("*BOUNDARY", Fate::Limited,
                   "outside of a step and behind one: it holds in all steps, those before it, too",
                   keyword.place, {}, import.report);
      }
    } else if (IsLoad(keyword.name)) {
      ReportCard("*" + keyword.name, Fate::Lost, "a load outside of a step", keyword.place, {},
                 import.report);
    }
  }
}

}  // namespace

void TakeAbaqusSteps(AbaqusImport& import, const AbaqusSections& sections) {
  StepReader reader{import, sections, {}, {}, {}, {}, {}, {}};
  TakeAbaqusTransforms(import, reader.transforms);
  TakeAbaqusSurfaces(import, reader.surfaces);
  const std::vector<Step> steps = FindSteps(import.deck);
  if (steps.empty()) ReportNoStep(import);
  TakeModelPart(reader, steps);
  for (const Step& step : steps) TakeStep(reader, step, steps.size());
  if (steps.empty() && !reader.supports.held.empty()) {
    ImportCase made;
    made.place = import.report.cards["*BOUNDARY"].first;
    AddSupports(import, reader.transforms, reader.supports, reader.supportRows, made);
    import.model.cases.push_back(std::move(made));
  }
  ReportUnusedSurfaces(import, reader.surfaces);
}

}  // namespace kvx
