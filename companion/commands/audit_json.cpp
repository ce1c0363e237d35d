// The JSON of audit_report.h.
#include <nlohmann/json.hpp>

#include "check/describe.h"
#include "commands/audit_report.h"
#include "commands/findings_json.h"
#include "commands/number_json.h"
#include "commands/origin_words.h"
#include "commands/solution_file.h"
#include "deck/row_formats.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;
using korvex::Section;

// By node; a dof that is free has no force.
Json SupportsJson(const std::vector<Support>& supports) {
  Json json = Json::object();
  for (const Support& support : supports) {
    json[std::to_string(support.node)] = SupportJson(support);
  }
  return json;
}

Json BeamJson(const SolvedModel& solved, const ModelOrigin& deck, std::size_t beam,
              const BeamForces& forces) {
  Json json, stations = Json::array();
  json["beam"] = beam;
  AddDeckNumbers(solved.model, deck, {ElementKind::Beam, static_cast<std::int32_t>(beam)}, json);
  json["ends"] = {NumbersJson(ForcesAt(forces, 0.0)), NumbersJson(ForcesAt(forces, 1.0))};
  for (const double s : ListStations(forces, DefaultDivisions)) {
    stations.push_back({{"distance", NumberJson(s * forces.length)},
                        {"forces", NumbersJson(ForcesAt(forces, s))}});
  }
  json["stations"] = std::move(stations);
  return json;
}

struct Maximum {
  const char* quantity;
  double value = 0.0;
  const char* table = "";
  std::int32_t row = 0;
  korvex::Vector3 place{};
  bool isStress = true;
};

const char* TableOf(Holder holder) {
  switch (holder) {
    case Holder::Node:
      return korvex::FormatOf(Section::Nodes).key;
    case Holder::Shell4:
      return korvex::FormatOf(Section::Shells4).key;
    case Holder::Shell3:
      return korvex::FormatOf(Section::Shells3).key;
    case Holder::Beam:
      break;
  }
  return korvex::FormatOf(Section::Beams).key;
}

// "deck_node" or "deck_element": the deck's number of the row.
void AddDeckNumber(const ModelOrigin& deck, const Maximum& maximum, Json& json) {
  if (!HasOrigin(deck)) return;
  const std::string table = maximum.table;
  if (table == TableOf(Holder::Node)) {
    json["deck_node"] = DeckNumberJson(deck, maximum.row);
    return;
  }
  const ElementKind kind = table == TableOf(Holder::Shell4)   ? ElementKind::Shell4
                           : table == TableOf(Holder::Shell3) ? ElementKind::Shell3
                                                              : ElementKind::Beam;
  json["deck_element"] = DeckNumberJson(deck, ElementRef{kind, maximum.row});
}

Json MaximumJson(const Maximum& maximum, const AuditReport& report) {
  Json json;
  json["quantity"] = maximum.quantity;
  json["value"] = NumberJson(maximum.value);
  json["table"] = maximum.table;
  json["row"] = maximum.row;
  AddDeckNumber(report.deck, maximum, json);
  json["position"] = VectorJson(maximum.place);
  const bool hasPart = maximum.isStress && report.yield > 0.0;
  json["utilisation"] =
      hasPart ? NumberJson(std::abs(maximum.value) / report.yield) : Json(nullptr);
  return json;
}

void AddPeaks(const AuditReport& report, Json& json) {
  for (const PeakList& list : report.maxima) {
    if (list.peaks.empty()) continue;
    const Peak& peak = list.peaks.front();
    const char* const name = list.quantity == Quantity::VonMises       ? "shells"
                             : list.quantity == Quantity::BeamVonMises ? "beams"
                                                                       : "displacement";
    json.push_back(MaximumJson({name, peak.value, TableOf(peak.holder), peak.element, peak.place,
                                peak.holder != Holder::Node},
                               report));
  }
}

void AddRotation(const SolvedModel& solved, const AuditReport& report, Json& json) {
  const LargestDisplacement& rotation = report.verdict.rotation;
  if (rotation.node < 0) return;
  json.push_back(MaximumJson({"rotation", rotation.value, TableOf(Holder::Node), rotation.node,
                              PlaceOfNode(solved.model, rotation.node), false},
                             report));
}

void AddNominal(const SolvedModel& solved, const AuditReport& report, Json& json) {
  const auto add = [&](const char* name, const NominalPeak& peak, double FibreStress::*value) {
    if (peak.beam < 0) return;
    const korvex::Vector3 place = PlaceOnBeam(solved.model, peak.beam, peak.stress.s);
    json.push_back(MaximumJson(
        {name, peak.stress.fibre.*value, TableOf(Holder::Beam), peak.beam, place}, report));
  };
  add("beam_tension", report.nominal.tension, &FibreStress::sigma);
  add("beam_compression", report.nominal.compression, &FibreStress::sigma);
  add("beam_shear", report.nominal.shear, &FibreStress::tau);
  add("beam_von_mises", report.nominal.vonMises, &FibreStress::vonMises);
}

const char* FitName(ResultFit fit) {
  switch (fit) {
    case ResultFit::Same:
      return "same";
    case ResultFit::Missing:
      return "missing";
    case ResultFit::Truncated:
      return "truncated";
    case ResultFit::Differs:
      return "differs";
    case ResultFit::Unknown:
      break;
  }
  return "unknown";
}

// Files that are there and are not those of this model, or cannot be told.
Json StaleJson(const std::vector<ResultState>& files) {
  Json json = Json::array();
  for (const ResultState& file : files) {
    if (file.fit == ResultFit::Same || file.fit == ResultFit::Missing) continue;
    json.push_back({{"file", file.name},
                    {"fit", FitName(file.fit)},
                    {"line", file.line > 0 ? Json(file.line) : Json(nullptr)}});
  }
  return json;
}

// Null where nothing is known of it.
Json SolutionJson(const AuditReport& report) {
  Json json;
  if (report.solution) AddSolutionJson(*report.solution, json);
  return json;
}

}  // namespace

Json AuditJson(const SolvedModel& solved, const AuditReport& report) {
  const Reactions& r = report.reactions;
  Json json, beams = Json::array(), maxima = Json::array();
  json["loads"] = NumbersJson(r.loads);
  json["reactions"] = NumbersJson(r.reactions);
  json["imbalance"] = NumberJson(r.imbalance);
  json["residual"] = NumberJson(r.residual.relative);
  json["solution"] = SolutionJson(report);
  json["supports"] = SupportsJson(r.supports);
  if (HasOrigin(report.deck)) {
    Json& numbers = json["deck_nodes"] = Json::object();
    for (const Support& support : r.supports) {
      numbers[std::to_string(support.node)] = DeckNumberJson(report.deck, support.node);
    }
  }
  for (std::size_t b = 0; b < report.beams.size(); ++b) {
    beams.push_back(BeamJson(solved, report.deck, b, report.beams[b]));
  }
  json["beams"] = std::move(beams);
  AddPeaks(report, maxima);
  AddRotation(solved, report, maxima);
  AddNominal(solved, report, maxima);
  json["maxima"] = std::move(maxima);
  json["stale"] = StaleJson(report.files);
  json["verdict"] = VerdictText(report);
  AddFindingsJson(report.findings, report.deck, solved.model.Tables, json);
  return json;
}

}  // namespace kvx
