#include "commands/beam_tables.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

#include "audit/unbalanced_elements.h"
#include "check/describe.h"
#include "commands/element_words.h"
#include "commands/number_json.h"
#include "commands/origin_words.h"
#include "commands/tidy_number.h"

namespace kvx {

using korvex::Model;
using Json = nlohmann::ordered_json;

namespace {

constexpr std::array<const char*, SectionForceCount> SectionForceNames{"N", "Vy", "Vz",
                                                                       "T", "My", "Mz"};

// A component below this part of the largest force or moment of all beams is left out of the
// summary.
constexpr double ShareThatMatters = 1e-3;

constexpr std::array<const char*, 9> PlaceNames{
    "web edge",    "web at the centroid",    "web top",     "flange tip",
    "flange root", "flange at the centroid", "flange heel", "centre",
    "circle"};

// What is said of one station.
struct Station {
  double distance = 0.0;    // from the first node
  korvex::Vector3 place{};  // on the line between the nodes, global
  SectionForces forces{};
  double smallestSigma = 0.0, largestSigma = 0.0, tau = 0.0, vonMises = 0.0;
  NominalStresses nominal;
};

// The names of a station's numbers in CSV and JSON, in the order of StationNumbers.
constexpr std::array<const char*, 17> StationNames{
    "distance", "x",         "y",     "z",         "N",         "Vy",
    "Vz",       "T",         "My",    "Mz",        "sigma_min", "sigma_max",
    "tau_max",  "von_mises", "axial", "web_shear", "torsion"};

std::array<double, StationNames.size()> StationNumbers(const Station& station) {
  const SectionForces& F = station.forces;
  return {station.distance,
          station.place[0],
          station.place[1],
          station.place[2],
          F[ForceN],
          F[ForceVy],
          F[ForceVz],
          F[MomentT],
          F[MomentMy],
          F[MomentMz],
          station.smallestSigma,
          station.largestSigma,
          station.tau,
          station.vonMises,
          station.nominal.axial,
          station.nominal.webShear,
          station.nominal.torsion};
}

double LargerOrNan(double a, double b) { return std::isnan(a) || b > a ? b : a; }
double SmallerOrNan(double a, double b) { return std::isnan(a) || b < a ? b : a; }

void FindFibreExtremes(const BeamResult& result, Station& station) {
  constexpr double None = std::numeric_limits<double>::quiet_NaN();
  std::vector<FibreStress> fibres;
  FindFibreStresses(result.shape, station.forces, fibres);
  station.smallestSigma = station.largestSigma = station.tau = station.vonMises = None;
  for (const FibreStress& fibre : fibres) {
    station.smallestSigma = SmallerOrNan(station.smallestSigma, fibre.sigma);
    station.largestSigma = LargerOrNan(station.largestSigma, fibre.sigma);
    station.tau = LargerOrNan(station.tau, fibre.tau);
    station.vonMises = LargerOrNan(station.vonMises, fibre.vonMises);
  }
}

std::int32_t NodeOf(const Model& model, std::int32_t beam, std::size_t end) {
  return model.Tables.BeamNodes[2 * static_cast<std::size_t>(beam) + end];
}

Station MakeStation(const Model& model, const BeamResult& result, double s) {
  Station station;
  station.distance = s * result.forces.length;
  station.place = PlaceOnBeam(model, result.beam, s);
  station.forces = ForcesAt(result.forces, s);
  FindFibreExtremes(result, station);
  station.nominal = FindNominalStresses(result.shape, station.forces);
  return station;
}

bool IsMoment(std::size_t component) { return component >= MomentT; }

double ScaleOf(std::size_t component, const BeamScales& scales) {
  return IsMoment(component) ? scales.moment : scales.force;
}

std::string PlacedText(const PlacedStress& stress, double value, const BeamScales& scales,
                       double length) {
  return NumberText(TidyNumber(value, scales.stress)) + " at x = " + NumberText(stress.s * length) +
         " (" + SectionPlaceName(stress.fibre.place) + ")";
}

std::string StressNote(const BeamResult& result, const BeamScales& scales) {
  const BeamStresses& s = result.stresses;
  const double length = result.forces.length;
  if (result.shape.kind == SectionKind::None) return "It has no section table: no stresses.";
  return "Largest: tension " + PlacedText(s.tension, s.tension.fibre.sigma, scales, length) +
         ", compression " + PlacedText(s.compression, s.compression.fibre.sigma, scales, length) +
         ", tau " + PlacedText(s.shear, s.shear.fibre.tau, scales, length) + ", von Mises " +
         PlacedText(s.vonMises, s.vonMises.fibre.vonMises, scales, length) + ".";
}

std::string NominalNote(const Model& model, const BeamResult& result, const BeamScales& scales) {
  double torsion = 0.0;
  for (const double s : result.stations) {
    torsion = std::max(torsion, MakeStation(model, result, s).nominal.torsion);
  }
  const double axial = FindNominalStresses(result.shape, ForcesAt(result.forces, 0.0)).axial;
  const auto text = [&](double stress) { return NumberText(TidyNumber(stress, scales.stress)); };
  return "Nominal: N / A = " + text(axial) + ", |Vz| / web area up to " +
         text(result.stresses.webShear.value) + ", torsion up to " + text(torsion) + ".";
}

std::string DetailNote(const Model& model, const BeamResult& result) {
  if (result.detail.steps == 0) return "It has no detail model.";
  const Station middle = MakeStation(model, result, 0.5);
  return "Detail model at mid-length: von Mises " + NumberText(result.detail.vonMises) +
         "; the section forces there give " + NumberText(middle.vonMises) + ".";
}

std::vector<std::string> ListAdvice(const BeamResult& result) {
  std::vector<std::string> advice;
  if (result.pieces > 0) {
    advice.push_back(
        "The detail model does not see the line load along the beam: divide the beam into " +
        std::to_string(result.pieces) + " or more.");
  }
  if (result.isShort) {
    advice.emplace_back(
        "The beam is shorter than three widths of its widest plate: the rigid ends of its detail "
        "model reach its middle. Take the stresses of the section forces.");
  }
  return advice;
}

Json StationJson(const Station& station) {
  Json json = Json::object();
  const auto numbers = StationNumbers(station);
  for (std::size_t i = 0; i < numbers.size(); ++i) json[StationNames[i]] = NumberJson(numbers[i]);
  return json;
}

Json DetailJson(const BeamResult& result) {
  if (!result.hasDetail) return nullptr;
  Json json;
  json["von_mises"] = NumberJson(result.detail.vonMises);
  json["steps"] = result.detail.steps;
  json["short"] = result.isShort;
  return json;
}

}  // namespace

std::vector<std::string> ListBeamNotes() {
  return {
      "Section forces about the centroid, local axes, on the face whose outward normal is +x; x "
      "runs from the first node to the second, z is the web's direction, y = z x x. N > 0 is "
      "tension; My > 0 stretches the +z side, Mz > 0 the -y side. Units of the model.",
      "sigma = N/A + My z/Iy - Mz y/Iz, tension positive, at the points of the section; nominal "
      "stresses, without concentrations."};
}

void MakeBeamResult(const Model& model, std::int32_t beam, const BeamForces& forces, int divisions,
                    BeamResult& result) {
  const auto row = static_cast<std::size_t>(beam);
  result = {};
  result.beam = beam;
  result.forces = forces;
  result.shape = MakeSectionShape(model.Tables, model.BeamElements[row], row);
  result.stations = ListStations(forces, divisions);
  result.stresses = FindBeamStresses(result.shape, forces, result.stations);
}

void RaiseBeamScales(const BeamResult& result, BeamScales& scales) {
  const auto extremes = FindForceExtremes(result.forces);
  double force = 0.0, moment = 0.0;
  for (std::size_t c = 0; c < extremes.size(); ++c) {
    double& scale = IsMoment(c) ? moment : force;
    scale = std::max(
        {scale, std::fabs(extremes[c].smallest.value), std::fabs(extremes[c].largest.value)});
  }
  // Where one kind vanishes, what is left of it is rounding of the other.
  const double length = result.forces.length;
  scales.force = std::max({scales.force, force, moment / length});
  scales.moment = std::max({scales.moment, moment, force * length});
  scales.stress = std::max(scales.stress, result.stresses.vonMises.fibre.vonMises);
}

const char* SectionPlaceName(SectionPlace place) {
  return PlaceNames.at(static_cast<std::size_t>(place));
}

void RaiseRanges(const BeamForces& forces, ComponentRanges& ranges) {
  const auto extremes = FindForceExtremes(forces);
  for (std::size_t c = 0; c < SectionForceCount; ++c) {
    const double low = extremes[c].smallest.value, high = extremes[c].largest.value;
    ranges[c].largest = std::max({ranges[c].largest, std::fabs(low), std::fabs(high)});
    ranges[c].variation = std::max(ranges[c].variation, high - low);
  }
}

void BeginBeamSummary(const ComponentRanges& ranges, const BeamScales& scales,
                      BeamSummary& summary) {
  summary = {};
  std::vector<std::string>& columns = summary.table.columns;
  columns = {"beam", "section", "middle"};
  double force = 0.0, moment = 0.0;
  for (std::size_t c = 0; c < SectionForceCount; ++c) {
    double& largest = IsMoment(c) ? moment : force;
    largest = std::max(largest, ranges[c].largest);
  }
  std::string omitted;
  for (std::size_t c = 0; c < SectionForceCount; ++c) {
    const std::string name = SectionForceNames[c];
    const double limit = ShareThatMatters * (IsMoment(c) ? moment : force);
    const bool varies = TidyNumber(ranges[c].variation, ScaleOf(c, scales)) != 0.0;
    if (ranges[c].largest <= limit || TidyNumber(ranges[c].largest, ScaleOf(c, scales)) == 0.0) {
      omitted += (omitted.empty() ? "" : ", ") + name;
    } else if (varies) {
      summary.shown[c] = 2;
      columns.insert(columns.end(), {name + " min", "max"});
    } else {
      summary.shown[c] = 1;
      columns.push_back(name);
    }
  }
  columns.insert(columns.end(), {"sigma min", "max", "tau", "von Mises"});
  if (omitted.empty()) return;
  summary.table.notes.push_back(
      "Left out, everywhere below a thousandth of the largest force or moment: " + omitted + ".");
}

void AddToBeamSummary(const Model& model, const BeamResult& result, const BeamScales& scales,
                      BeamSummary& summary) {
  std::vector<Cell>& cells = summary.table.cells;
  cells.emplace_back(std::int64_t{result.beam});
  cells.emplace_back(SectionName(model, result.beam));
  cells.emplace_back(PointText(MakeStation(model, result, 0.5).place));
  const auto extremes = FindForceExtremes(result.forces);
  for (std::size_t c = 0; c < SectionForceCount; ++c) {
    if (summary.shown[c] == 2) {
      cells.emplace_back(TidyNumber(extremes[c].smallest.value, ScaleOf(c, scales)));
    }
    if (summary.shown[c] > 0) {
      cells.emplace_back(TidyNumber(extremes[c].largest.value, ScaleOf(c, scales)));
    }
  }
  const BeamStresses& s = result.stresses;
  for (const double stress : {s.compression.fibre.sigma, s.tension.fibre.sigma, s.shear.fibre.tau,
                              s.vonMises.fibre.vonMises}) {
    cells.emplace_back(TidyNumber(stress, scales.stress));
  }
}

ResultTable MakeStationTable(const Model& model, const ModelOrigin& origin,
                             const BeamResult& result, const BeamScales& scales) {
  ResultTable table;
  table.title = "Beam " + std::to_string(result.beam) +
                InDeck(origin, ElementRef{ElementKind::Beam, result.beam}) + ", section " +
                SectionName(model, result.beam) + ", length " + NumberText(result.forces.length) +
                ", from " + DescribeNode(model, origin, NodeOf(model, result.beam, 0)) + " to " +
                DescribeNode(model, origin, NodeOf(model, result.beam, 1)) + ":";
  table.columns = {"x"};
  table.columns.insert(table.columns.end(), SectionForceNames.begin(), SectionForceNames.end());
  table.columns.insert(table.columns.end(), {"sigma min", "max", "tau", "von Mises"});
  for (const double s : result.stations) {
    const Station station = MakeStation(model, result, s);
    table.cells.emplace_back(station.distance);
    for (std::size_t c = 0; c < SectionForceCount; ++c) {
      table.cells.emplace_back(TidyNumber(station.forces[c], ScaleOf(c, scales)));
    }
    for (const double stress :
         {station.smallestSigma, station.largestSigma, station.tau, station.vonMises}) {
      table.cells.emplace_back(TidyNumber(stress, scales.stress));
    }
  }
  table.notes.push_back(StressNote(result, scales));
  if (result.shape.kind != SectionKind::None) {
    table.notes.push_back(NominalNote(model, result, scales));
  }
  if (!result.hasDetail) return table;
  table.notes.push_back(DetailNote(model, result));
  for (std::string& advice : ListAdvice(result)) table.notes.push_back(advice);
  return table;
}

void BeginBeamCsv(ResultTable& table) {
  table = {};
  table.notes = ListBeamNotes();
  table.notes.emplace_back(
      "distance: from the first node along the beam; x, y, z: there, on the line between the "
      "nodes. detail_von_mises: of the beam's detail model at "
      "mid-length, empty unless beams are chosen by --beam. divide_into: the detail model does not "
      "see the line load, and the beam should be divided.");
  table.columns = {"kind", "element", "node1", "node2", "section"};
  table.columns.insert(table.columns.end(), StationNames.begin(), StationNames.end());
  table.columns.insert(table.columns.end(), {"detail_von_mises", "detail_steps", "divide_into"});
}

void AddBeamRows(const Model& model, const BeamResult& result, ResultTable& table) {
  for (const double s : result.stations) {
    table.cells.emplace_back(KindWord(ElementKind::Beam));
    table.cells.emplace_back(std::int64_t{result.beam});
    for (const std::size_t end : {0U, 1U}) {
      table.cells.emplace_back(std::int64_t{NodeOf(model, result.beam, end)});
    }
    table.cells.emplace_back(SectionName(model, result.beam));
    for (const double number : StationNumbers(MakeStation(model, result, s))) {
      table.cells.emplace_back(number);
    }
    table.cells.push_back(result.hasDetail ? Cell(result.detail.vonMises) : Cell());
    table.cells.push_back(result.hasDetail ? Cell(std::int64_t{result.detail.steps}) : Cell());
    table.cells.push_back(result.pieces > 0 ? Cell(std::int64_t{result.pieces}) : Cell());
  }
}

Json BeamJson(const Model& model, const ModelOrigin& origin, const BeamResult& result) {
  Json stations = Json::array();
  for (const double s : result.stations) {
    stations.push_back(StationJson(MakeStation(model, result, s)));
  }
  Json json;
  json["beam"] = result.beam;
  json["nodes"] = {NodeOf(model, result.beam, 0), NodeOf(model, result.beam, 1)};
  AddDeckNumbers(model, origin, {ElementKind::Beam, result.beam}, json);
  json["section"] = SectionName(model, result.beam);
  json["length"] = NumberJson(result.forces.length);
  json["ends"] = Json::array(
      {NumbersJson(ForcesAt(result.forces, 0.0)), NumbersJson(ForcesAt(result.forces, 1.0))});
  json["stations"] = std::move(stations);
  json["detail"] = DetailJson(result);
  json["divide_into"] = result.pieces > 0 ? Json(result.pieces) : Json(nullptr);
  return json;
}

}  // namespace kvx
