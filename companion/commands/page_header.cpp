#include "commands/page_header.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>
#include <string_view>

#include "commands/number_json.h"
#include "deck/row_formats.h"
#include "finding/findings_text.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;
using korvex::ModelTables;
using korvex::Section;

constexpr const char *Shell = "shell", *Triangle = "triangle", *Beam = "beam";

bool IsTable(const Finding& finding, Section section) {
  return std::string_view(finding.table) == korvex::FormatOf(section).key;
}

// The numbers, each once and ascending, as runs of such that follow one another: [[first, last],
// ...]. Those outside 0 .. count - 1 are left out. A finding may be about all elements of a model.
Json RunsJson(std::vector<std::int32_t> numbers, std::size_t count) {
  std::sort(numbers.begin(), numbers.end());
  Json runs = Json::array();
  for (const std::int32_t number : numbers) {
    if (number < 0 || static_cast<std::size_t>(number) >= count) continue;
    if (!runs.empty() && number <= runs.back()[1].get<std::int32_t>() + 1) {
      runs.back()[1] = number;
    } else {
      runs.push_back({number, number});
    }
  }
  return runs;
}

// The elements that a table of loads names in these rows.
template <typename Loads>
std::vector<std::int32_t> ListLoaded(const std::vector<std::int32_t>& rows, const Loads& loads) {
  std::vector<std::int32_t> elements;
  for (const std::int32_t row : rows) {
    const auto at = static_cast<std::size_t>(row);
    if (row >= 0 && at < loads.size()) elements.push_back(loads[at].element);
  }
  return elements;
}

// Runs by kind; empty where the finding is about no elements.
Json ElementsJson(const Finding& finding, const ModelTables& tables) {
  const std::size_t shells = tables.Shell4Properties.size();
  const std::size_t triangles = tables.Shell3Properties.size();
  const std::size_t beams = tables.BeamProperties.size();
  const std::vector<std::int32_t>& rows = finding.rows;
  Json json = Json::object();
  if (IsTable(finding, Section::Shells4)) json[Shell] = RunsJson(rows, shells);
  if (IsTable(finding, Section::Shells3)) json[Triangle] = RunsJson(rows, triangles);
  if (IsTable(finding, Section::Beams)) json[Beam] = RunsJson(rows, beams);
  if (IsTable(finding, Section::Shell4Loads)) {
    json[Shell] = RunsJson(ListLoaded(rows, tables.Shell4SurfaceLoads), shells);
  }
  if (IsTable(finding, Section::Shell3Loads)) {
    json[Triangle] = RunsJson(ListLoaded(rows, tables.Shell3SurfaceLoads), triangles);
  }
  if (IsTable(finding, Section::BeamLoads)) {
    json[Beam] = RunsJson(ListLoaded(rows, tables.BeamLineLoads), beams);
  }
  return json;
}

bool IsPlace(const Finding& finding) {
  const auto isFinite = [](double x) { return std::isfinite(x); };
  return finding.hasPosition &&
         std::all_of(finding.position.begin(), finding.position.end(), isFinite);
}

Json FindingJson(const Finding& finding, const ModelTables& tables) {
  Json json;
  json["code"] = finding.code;
  json["severity"] = SeverityName(finding.severity);
  json["line"] = finding.line;
  json["message"] = finding.message;
  json["remedy"] = finding.remedy;
  if (!finding.origin.empty()) json["origin"] = finding.origin;
  json["place"] = IsPlace(finding) ? VectorJson(finding.position) : Json(nullptr);
  json["nodes"] = RunsJson(finding.nodes, tables.Nodes.size());
  json["elements"] = ElementsJson(finding, tables);
  return json;
}

Json SectionJson(const SectionProfile& section) {
  Json json;
  json["type"] = section.type;
  json["index"] = section.index;
  json["mirrored"] = section.mirrored;
  json["offset"] = NumberJson(section.offset);
  json["name"] = section.name;
  if (!section.origin.empty()) json["origin"] = section.origin;
  json["sizes"] = section.sizes;
  json["rings"] = Json::array();
  for (const std::vector<double>& ring : section.rings) json["rings"].push_back(NumbersJson(ring));
  json["centroid"] = NumbersJson(section.centroid);
  json["area"] = NumberJson(section.A);
  json["Iy"] = NumberJson(section.Iy);
  json["Iz"] = NumberJson(section.Iz);
  return json;
}

Json CaseJson(const PageCase& each) {
  Json json;
  json["name"] = each.name;
  json["isSolved"] = each.isSolved;
  json["note"] = each.note;
  json["blocks"]["loads"] = each.loads;
  if (!each.results.empty()) json["blocks"]["results"] = each.results;
  if (!each.corners.empty()) json["blocks"]["corners"] = each.corners;
  if (!each.details.empty()) json["blocks"]["details"] = each.details;
  return json;
}

Json PropertiesJson(const ModelTables& tables) {
  Json json;
  json["thicknesses"] = Json::array();
  for (std::size_t row = 0; row < tables.ShellThicknesses.size(); ++row) {
    json["thicknesses"].push_back(NumberJson(tables.ShellThicknesses[row].TK));
  }
  json["materials"] = Json::array();
  for (std::size_t row = 0; row < tables.Materials.size(); ++row) {
    const korvex::Material& material = tables.Materials[row];
    json["materials"].push_back({{"E", NumberJson(material.E)},
                                 {"nu", NumberJson(material.Mu)},
                                 {"density", NumberJson(material.Density)}});
  }
  return json;
}

Json BlocksJson(const std::vector<PageBlock>& blocks) {
  Json json = Json::object();
  for (const PageBlock& block : blocks) {
    Json columns = Json::array();
    for (const PageColumn& column : block.columns) {
      Json& each = columns.emplace_back(Json{{"name", column.name},
                                             {"encoding", column.encoding},
                                             {"count", column.count},
                                             {"at", column.at}});
      if (column.width != 1) each["width"] = column.width;
      if (column.digits != 0) each["digits"] = column.digits;
    }
    json[block.id] = std::move(columns);
  }
  return json;
}

Json OriginJson(const PageHeader& header) {
  const ModelOrigin& origin = header.origin;
  Json json;
  json["source"] = origin.source;
  json["format"] = origin.format;
  json["types"] = origin.types;
  json["materials"] = origin.materials;
  json["thicknesses"] = origin.thicknesses;
  json["groups"] = Json::array();
  for (const OriginGroup& group : origin.groups) {
    json["groups"].push_back({{"name", group.name},
                              {"source", group.source},
                              {"counts",
                               {{"node", group.nodes.size()},
                                {Shell, group.shells4.size()},
                                {Triangle, group.shells3.size()},
                                {Beam, group.beams.size()}}}});
  }
  return json;
}

}  // namespace

std::string PageHeaderJson(const PageHeader& header, const ModelTables& tables) {
  Json json;
  json["title"] = header.title;
  json["program"] = "kvx " KORVEX_VERSION;
  json["file"] = header.file;
  json["notices"] = header.notices;
  json["parts"] = header.parts;
  json.update(PropertiesJson(tables));
  json["sections"] = Json::array();
  for (const SectionProfile& each : header.sections) json["sections"].push_back(SectionJson(each));
  json["findings"] = Json::array();
  for (const Finding& each : header.findings) {
    json["findings"].push_back(FindingJson(each, tables));
  }
  json["cases"] = Json::array();
  for (const PageCase& each : header.cases) json["cases"].push_back(CaseJson(each));
  json["firstLines"] = {{"node", header.firstLines[0]},
                        {Shell, header.firstLines[1]},
                        {Triangle, header.firstLines[2]},
                        {Beam, header.firstLines[3]}};
  json["nodeCount"] = tables.Nodes.size();
  json["counts"] = {{"shells", tables.Shell4Properties.size()},
                    {"triangles", tables.Shell3Properties.size()},
                    {"beams", tables.BeamProperties.size()}};
  if (HasOrigin(header.origin)) json["origin"] = OriginJson(header);
  json["blocks"] = BlocksJson(header.blocks);
  constexpr int NoIndent = -1;
  return json.dump(NoIndent, ' ', false, Json::error_handler_t::replace);
}

}  // namespace kvx
