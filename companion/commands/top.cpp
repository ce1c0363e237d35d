// kvx top: the highest stresses and displacements, and where they are.
#include <algorithm>

#include "commands/commands.h"
#include "commands/number_parts.h"
#include "commands/open_results.h"
#include "commands/quantity_names.h"
#include "commands/recover_stresses.h"
#include "commands/top_report.h"
#include "finding/nearest_word.h"
#include "report/stop.h"
#include "run/file_names.h"

namespace kvx {

namespace {

constexpr const char* Name = "kvx top";

Grouping GroupingOf(const std::string& name) {
  if (name == "thickness") return Grouping::Thickness;
  if (name == "material") return Grouping::Material;
  if (name == "section") return Grouping::Section;
  return name == "part" ? Grouping::Part : Grouping::Whole;
}

std::string RefuseQuantity(const std::string& name) {
  const std::vector<std::string> names = ListQuantityNames();
  const std::vector<std::string> nearest = FindNearest(name, names);
  std::string text = "there is no quantity \"" + name + "\".";
  if (!nearest.empty()) return text + " Did you mean \"" + nearest.front() + "\"?";
  text += " --of takes ";
  for (std::size_t i = 0; i < names.size(); ++i) text += (i == 0 ? "" : ", ") + names[i];
  return text + '.';
}

void RemoveQuantities(bool (*isIn)(Quantity), std::vector<Quantity>& quantities) {
  quantities.erase(std::remove_if(quantities.begin(), quantities.end(), isIn), quantities.end());
}

// Fills the request. Returns what is wrong with the options; empty: nothing.
std::string MakeRequest(const TopCommand& command, MaximaRequest& request) {
  if (!FindQuantities(command.quantity, request.quantities)) {
    return RefuseQuantity(command.quantity);
  }
  const Grouping grouping = GroupingOf(command.grouping);
  if (IsOfNodes(request.quantities.front())) {
    if (command.yield > 0.0) return "--yield is for stresses, not for displacements.";
    if (grouping != Grouping::Whole) {
      return "displacements are those of nodes, which belong to no group: leave --by out.";
    }
  }
  if (grouping == Grouping::Thickness) RemoveQuantities(IsOfBeams, request.quantities);
  if (grouping == Grouping::Section) RemoveQuantities(IsOfShells, request.quantities);
  if (request.quantities.empty()) {
    return grouping == Grouping::Section ? "shells have no section: try --by thickness."
                                         : "beams have no thickness: try --by section.";
  }
  request.groupings = {grouping};
  // The first value that is not finite is named in any case.
  request.count = std::max<std::size_t>(command.count, 1);
  request.slots = command.unaveraged ? StressSlots::Recovered : StressSlots::Averaged;
  request.beams = command.everywhere ? BeamPlace::Everywhere : BeamPlace::MidLength;
  request.yield = command.yield;
  return "";
}

// Leaves out what the model does not have, and says so where nothing else is left.
void LeaveOutMissing(const korvex::ModelTables& tables, std::vector<Quantity>& quantities,
                     std::vector<std::string>& missing) {
  const bool wantsShells = std::any_of(quantities.begin(), quantities.end(), IsOfShells);
  const bool wantsBeams = std::any_of(quantities.begin(), quantities.end(), IsOfBeams);
  if (tables.Shell4Properties.empty() && tables.Shell3Properties.empty()) {
    RemoveQuantities(IsOfShells, quantities);
  }
  if (tables.BeamProperties.empty()) RemoveQuantities(IsOfBeams, quantities);
  if (!quantities.empty()) return;
  if (wantsShells) missing.emplace_back("The model has no shells.");
  if (wantsBeams) missing.emplace_back("The model has no beams.");
}

bool Asks(const MaximaRequest& request, Quantity quantity) {
  const auto& asked = request.quantities;
  return std::find(asked.begin(), asked.end(), quantity) != asked.end();
}

std::vector<std::string> MakeNotes(const MaximaRequest& request,
                                   const korvex::ModelTables& tables) {
  std::vector<std::string> notes;
  const auto asks = [&](bool (*isIn)(Quantity)) {
    return std::any_of(request.quantities.begin(), request.quantities.end(), isIn);
  };
  if (asks(IsOfNodes)) notes.emplace_back("Global axes.");
  if (asks(IsOfShells)) {
    notes.push_back(request.slots == StressSlots::Averaged
                        ? std::string("Shells: averaged over neighbours in one surface, as in \"") +
                              korvex::AverageNodeStressFileName + "\"."
                        : std::string("Shells: single elements, not averaged, as in \"") +
                              korvex::StressFileName + "\".");
    notes.emplace_back(
        "At point loads, point supports and inner corners stresses grow with each refinement of "
        "the mesh.");
  }
  if (Asks(request, Quantity::SectionVonMises)) {
    notes.emplace_back(
        "Section forces: the largest along each beam of all points of its section, from N/A + My "
        "z/Iy - Mz y/Iz and shear; the place is on the line between the nodes.");
  }
  if (!Asks(request, Quantity::BeamVonMises)) return notes;
  notes.emplace_back(request.beams == BeamPlace::MidLength
                         ? "Detail models: at mid-length. Nearer to the ends stresses may be "
                           "higher: those from section forces, --of section, show it."
                         : "Detail models: along the whole length. At their ends they show how "
                           "rigid planes hold the plates.");
  if (!tables.BeamLineLoads.empty()) {
    notes.emplace_back(
        "Detail models do not see line loads between the ends of a beam; kvx audit names the beams "
        "to divide.");
  }
  return notes;
}

// Throws a Stop, or Interrupted.
void FindAnswer(const TopCommand& command, MaximaRequest request, SolvedModel& solved,
                TopAnswer& answer) {
  LeaveOutMissing(solved.model.Tables, request.quantities, answer.missing);
  if (request.quantities.empty()) return;
  answer.notes = MakeNotes(request, solved.model.Tables);
  const bool withDetails = Asks(request, Quantity::BeamVonMises);
  if (withDetails || IsOfShells(request.quantities.front())) {
    RecoverStresses(withDetails ? DetailWish::Peaks : DetailWish::None,
                    {request.slots, request.beams}, solved);
  }
  std::vector<std::int32_t> parts;
  if (request.groupings.front() == Grouping::Part) NumberParts(solved.model.Tables, parts);
  FindMaxima(solved.model, request, parts, solved.details.offers, answer.lists);
  for (PeakList& list : answer.lists) {
    if (command.count == 0) list.peaks.clear();
  }
}

}  // namespace

ExitStatus RunTop(const TopCommand& command) {
  MaximaRequest request;
  const std::string wrong = MakeRequest(command, request);
  if (!wrong.empty()) {
    Complain(Name, wrong);
    return ExitUsage;
  }
  OpenedResults results;
  const ExitStatus opened = OpenResults(Name, command.place, results);
  if (opened != ExitFine) return opened;
  TopAnswer answer;
  try {
    FindAnswer(command, request, results.solved, answer);
  } catch (const korvex::Stop& stop) {
    Complain(Name, '"' + results.file.file + "\": " + stop.text);
    return ExitUnusableData;
  }
  const std::string output =
      TopOutput(command, results.file.file, results.solved.model, results.origin, answer);
  const ExitStatus written = WriteOutput(output);
  if (written != ExitFine) return written;
  const bool isBad =
      results.errors > 0 || std::any_of(answer.lists.begin(), answer.lists.end(),
                                        [](const PeakList& list) { return list.notFinite > 0; });
  return isBad ? ExitFindings : ExitFine;
}

}  // namespace kvx
