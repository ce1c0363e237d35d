// Audits models that are right, those of the verification book and the examples: audit-book FILE...
//
// Of each model: all numbers are numbers; loads and reactions add up to zero, moments too; there is
// no error, and a warning only where what it says is true by the displacements and sums themselves.
// Prints what leaves more than 1e-9 of the loads, and why. The exit status is 1 where a model
// fails.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <nlohmann/json.hpp>

#include "commands/audit_report.h"
#include "report/stop.h"

namespace kvx::test {
namespace {

using Json = nlohmann::ordered_json;

constexpr double Tolerance = 1e-9;  // of the loads, or of the reactions where these are larger

struct Outcome {
  std::vector<std::string> faults;
  std::map<std::string, int> warnings;
  double gap = 0.0;  // of loads and reactions, over their scales; moments about the middle
};

void Expect(bool isRight, const std::string& what, Outcome& outcome) {
  if (!isRight) outcome.faults.push_back(what);
}

bool AreNumbers(const Json& json) {
  if (json.is_array()) return std::all_of(json.begin(), json.end(), AreNumbers);
  return json.is_number();
}

// What is null stands for a number that is none.
void CheckNumbers(const Json& json, Outcome& outcome) {
  for (const char* key : {"loads", "reactions", "imbalance", "residual"}) {
    Expect(AreNumbers(json[key]), std::string(key) + " is not a number", outcome);
  }
  for (const Json& beam : json["beams"]) {
    bool isRight = AreNumbers(beam["ends"]);
    for (const Json& station : beam["stations"]) {
      isRight = isRight && AreNumbers(station["distance"]) && AreNumbers(station["forces"]);
    }
    Expect(isRight, "section forces of beam " + beam["beam"].dump(), outcome);
  }
  for (const Json& maximum : json["maxima"]) {
    Expect(AreNumbers(maximum["value"]) && AreNumbers(maximum["position"]),
           "maximum of " + maximum["quantity"].dump(), outcome);
  }
}

// loads + reactions, moments about the middle of the model, in the JSON's own numbers.
double FindGap(const Json& json, const Reactions& reactions) {
  std::array<double, 6> sum{};
  for (std::size_t i = 0; i < 6; ++i) {
    sum[i] = json["loads"][i].get<double>() + json["reactions"][i].get<double>();
  }
  const korvex::Vector3 moment =
      korvex::Cross(reactions.centre, korvex::Vector3{sum[0], sum[1], sum[2]});
  double gap = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    gap = std::max({gap, RatioOf(std::fabs(sum[i]), reactions.sumScales.force),
                    RatioOf(std::fabs(sum[3 + i] - moment[i]), reactions.sumScales.moment)});
  }
  return gap;
}

double FindLargest(const korvex::Model& model, std::size_t first) {
  double largest = 0.0;
  for (std::size_t at = first; at < model.Displacements.size(); at += 6) {
    const double* u = &model.Displacements[at];
    largest = std::max(largest, std::sqrt(u[0] * u[0] + u[1] * u[1] + u[2] * u[2]));
  }
  return largest;
}

double FindExtent(const korvex::Model& model) {
  double squares = 0.0;
  for (double korvex::Node::*x : {&korvex::Node::x, &korvex::Node::y, &korvex::Node::z}) {
    double low = model.Tables.Nodes[0].*x, high = low;
    for (const korvex::Node& node : model.Tables.Nodes) {
      low = std::min(low, node.*x);
      high = std::max(high, node.*x);
    }
    squares += (high - low) * (high - low);
  }
  return std::sqrt(squares);
}

// No finding but those that are true.
void CheckFindings(const SolvedModel& solved, const AuditReport& report, Outcome& outcome) {
  const double u = FindLargest(solved.model, 0), rotation = FindLargest(solved.model, 3);
  const double extent = FindExtent(solved.model);
  bool namesWarped = false;
  for (const Finding& finding : report.findings.findings) {
    bool isTrue = finding.code == "K721" || finding.code == "K722";
    if (finding.code == "K705") isTrue = u > 0.02 * extent;
    if (finding.code == "K706") isTrue = rotation > 0.1;
    if (finding.code == "K707") isTrue = namesWarped = true;
    if (finding.severity == Severity::Warning) {
      ++outcome.warnings[finding.code];
      isTrue = (finding.code == "K705" && u > 0.1 * extent) ||
               (finding.code == "K706" && rotation > 0.5) ||
               (finding.code == "K707" && outcome.gap > 0.01);
    }
    isTrue = isTrue && finding.severity != Severity::Error;
    Expect(isTrue, finding.code + ": " + finding.message, outcome);
  }
  // Rounding leaves up to eight times the estimate in good models, as the tests of reactions say.
  const double allowed = std::max(Tolerance, 8.0 * report.reactions.rounding);
  Expect(report.reactions.imbalance <= allowed, "imbalance", outcome);
  Expect(outcome.gap <= allowed || namesWarped, "loads and reactions differ without a finding",
         outcome);
  Expect(VerdictText(report).rfind("balanced", 0) == 0, VerdictText(report), outcome);
}

Outcome CheckModelFile(const std::string& text, AuditReport& report) {
  Outcome outcome;
  SolvedModel solved;
  SolveInMemory(text, {}, solved);
  AuditOptions options;
  options.comparesFiles = false;
  options.modelText = text;
  AuditModel(options, solved, report);
  const Json json = AuditJson(solved, report);
  CheckNumbers(json, outcome);
  outcome.gap = FindGap(json, report.reactions);
  CheckFindings(solved, report, outcome);
  return outcome;
}

int CheckFiles(int count, char** names) {
  int failed = 0, rounded = 0, warped = 0;
  std::map<std::string, int> warnings;
  for (int i = 0; i < count; ++i) {
    std::ifstream stream(names[i], std::ios::binary);
    const std::string text{std::istreambuf_iterator<char>(stream), {}};
    AuditReport report;
    Outcome outcome;
    try {
      outcome = CheckModelFile(text, report);
    } catch (const korvex::Stop& stop) {
      outcome.faults.push_back(stop.text);
    }
    for (const std::string& fault : outcome.faults) std::cout << names[i] << ": " << fault << '\n';
    failed += outcome.faults.empty() ? 0 : 1;
    for (const auto& [code, n] : outcome.warnings) warnings[code] += n;
    if (outcome.gap <= Tolerance) continue;
    const Reactions& r = report.reactions;
    const bool isWarped = r.imbalance <= Tolerance;
    (isWarped ? warped : rounded) += 1;
    std::cout << names[i] << ": " << outcome.gap << " of the loads, from "
              << (isWarped ? "warped quadrilaterals" : "rounding, estimated ");
    if (!isWarped) std::cout << r.rounding;
    std::cout << '\n';
  }
  std::cout << count << " models, " << failed << " failed; of the others, " << rounded
            << " leave more than " << Tolerance << " by rounding, " << warped
            << " by warped quadrilaterals\n";
  for (const auto& [code, n] : warnings) std::cout << n << " true warnings " << code << '\n';
  return failed > 0 || count == 0 ? 1 : 0;
}

}  // namespace
}  // namespace kvx::test

int main(int argc, char** argv) { return kvx::test::CheckFiles(argc - 1, argv + 1); }
