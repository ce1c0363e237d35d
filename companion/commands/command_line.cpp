// The one unit with CLI11, which takes long to compile. What it makes of wrong command lines is
// replaced: its texts are for programmers, and its exit statuses are its own.
#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "commands/commands.h"
#include "commands/speak.h"
#include "finding/nearest_word.h"

namespace kvx {

namespace {

struct CommandValues {
  ImportCommand imported;
  CheckCommand check;
  RunCommand run;
  AuditCommand audit;
  ReactionsCommand reactions;
  ForcesCommand forces;
  TopCommand top;
  CasesCommand cases;
  ViewCommand view;
  ExportCommand exported;
  RenumberCommand renumber;
  ExplainCommand explain;
  std::string color = "auto";
  bool csv = false, json = false;
  bool details = false, noDetails = false;
  std::string axis;
};

ColorChoice ColorOf(const std::string& name) {
  if (name == "always") return ColorChoice::Always;
  return name == "never" ? ColorChoice::Never : ColorChoice::Auto;
}

void AddColorOption(CLI::App& command, std::string& color) {
  command.add_option("--color", color, "Colours: auto (on a terminal), always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""))
      ->type_name("WHEN");
}

void AddPlace(CLI::App& command, std::string& place) {
  command
      .add_option("DIR", place,
                  "Folder with fem_solving.txt, or the file itself; else the current folder")
      ->type_name("");
}

// CLI11 could tell that one excludes the other, but shows that in the help in its own words.
void AddForms(CLI::App& command, CommandValues& values,
              const char* csv = "A table with all digits, for spreadsheets",
              const char* json = "The same as JSON, for programs") {
  command.add_flag("--csv", values.csv, csv);
  command.add_flag("--json", values.json, json);
}

void AddForce(CLI::App& command, bool& force) {
  command.add_flag("--force", force, "Solve in spite of errors in the model");
}

void AddEngine(CLI::App& command, EngineOptions& engine, bool& dryRun) {
  command
      .add_option("--threads", engine.threads,
                  "How many cores to use, 1 to 512; else all. The results of the skyline are\n"
                  "the same bytes with any number")
      ->type_name("N")
      ->check(RefuseThreads);
  command
      .add_option("--engine", engine.engine,
                  "auto: the one that takes less time and fits the memory; skyline: that of\n"
                  "korvex; sparse: for large models (default: auto)")
      ->type_name("ENGINE")
      ->check(RefuseEngine);
  command
      .add_option("--memory", engine.memory,
                  "What the solution, and after it the detail models, may take, in GB of 2^30\n"
                  "bytes, 0.001 or more; else what is free")
      ->type_name("GB")
      ->check(RefuseMemory);
  command
      .add_option("--out-of-core", engine.outOfCore,
                  "The sparse engine keeps its factors in a file in DIR; with auto only where\n"
                  "they do not fit into the memory")
      ->type_name("DIR")
      ->check([](const std::string& text) {
        return std::string(text.empty() ? "write the name of a folder" : "");
      });
  command.add_flag("-n,--dry-run", dryRun,
                   "Tell time and memory of each engine; solve and write nothing");
}

void AddStrict(CLI::App& command, bool& strict) {
  command.add_flag("--strict", strict, "Exit status 1 for warnings, too");
}

void AddYield(CLI::App& command, double& yield) {
  command
      .add_option("--yield", yield,
                  "Yield stress, units of the model: stresses are given as parts of it, too")
      ->type_name("STRESS")
      ->check([](const std::string& text) {
        char* end = nullptr;
        const double stress = std::strtod(text.c_str(), &end);
        if (end != text.c_str() && *end == '\0' && stress > 0.0 && std::isfinite(stress)) {
          return std::string();
        }
        return "write a stress greater than 0, such as 235, not \"" + text + "\"";
      });
}

// Refuses what is no length greater than 0.
std::string RefuseLength(const std::string& text) {
  char* end = nullptr;
  const double length = std::strtod(text.c_str(), &end);
  const bool isLength =
      end != text.c_str() && *end == '\0' && length > 0.0 && std::isfinite(length);
  return isLength ? "" : "write a length greater than 0, such as 0.5, not \"" + text + "\"";
}

void AddImportOptions(CLI::App& command, ImportCommand& imported) {
  command.add_option("DECK", imported.deck, "The mesh or deck")->type_name("");
  command
      .add_option("-o,--output", imported.output,
                  "Folder of the model; else DECK without its extension, in the current folder")
      ->type_name("DIR")
      ->check([](const std::string& text) {
        return std::string(text.empty() ? "write the name of a folder" : "");
      });
  command
      .add_option("--map", imported.map, "What the deck lacks, group by group, see docs/import.md")
      ->type_name("FILE");
  command
      .add_option("--map-template", imported.mapTemplate,
                  "Write a map of all groups to fill in, and nothing else; -: to standard output")
      ->type_name("FILE");
  command
      .add_option("--merge", imported.mergeLength,
                  "Nodes no further apart than this become one; units of the deck")
      ->type_name("LENGTH")
      ->check(RefuseLength);
  command.add_option("--case", imported.onlyCase, "Take this load case alone")->type_name("NAME");
  command
      .add_option("--format", imported.format,
                  "gmsh, nastran or abaqus, where name and text do not tell it")
      ->check(CLI::IsMember({"gmsh", "nastran", "abaqus"}).description(""))
      ->type_name("FORMAT");
  command.add_flag("--strict", imported.strict,
                   "Write nothing where anything is lost or taken with a limit");
  command.add_flag("--force", imported.force, "Replace files that no import has written");
}

void AddImport(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("import", "Bring in a mesh of gmsh, Nastran, Abaqus or CalculiX");
  AddImportOptions(command, values.imported);
  command.add_flag("--json", values.json, "The report as JSON, for programs");
  AddColorOption(command, values.color);
  command.footer(
      "DECK: .msh (gmsh 2.2, 4.1), .bdf .dat .nas (Nastran bulk data), .inp (Abaqus, CalculiX).\n"
      "Writes fem_solving.txt and import.json, which keeps the numbers and names of the deck; "
      "where\n"
      "there are several load cases also cases.toml and their loads. Tells of each card what "
      "became\n"
      "of it, and checks the model. Units are those of the deck; nothing is converted.\n"
      "\n"
      "Exit status: 0 written without errors, 1 errors in the model, or anything lost with\n"
      "--strict, 64 wrong usage, 65 refused or unreadable, 66 no deck there, 70 a fault of kvx,\n"
      "73 the folder cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx import bridge.bdf\n"
      "  writes the model bridge/fem_solving.txt.\n"
      "         kvx import hull.msh --map-template hull.toml\n"
      "         kvx import hull.msh --map hull.toml\n"
      "  a mesh of gmsh has no thicknesses, supports and loads: the map gives them.");
}

void AddCheck(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("check", "Name every mistake in a model, before it is solved");
  AddPlace(command, values.check.place);
  AddStrict(command, values.check.strict);
  command
      .add_option("--tolerance", values.check.tolerance,
                  "Nodes closer than this coincide; units of the model (default: 1e-6 of its size)")
      ->type_name("LENGTH")
      ->check([](const std::string& text) {
        char* end = nullptr;
        std::strtod(text.c_str(), &end);
        if (end != text.c_str() && *end == '\0') return std::string();
        return "write a length with a point, such as 0.5, not \"" + text + "\"";
      });
  command.add_flag("--deep", values.check.deep,
                   "Look for mechanisms within the parts, too; takes the time of a solution");
  command.add_flag("--json", values.check.json, "Findings as JSON, for programs");
  AddColorOption(command, values.color);
  command.footer(
      "Exit status: 0 no errors, 1 errors, 64 wrong usage, 65 unusable data, 66 no model there,\n"
      "70 a fault of kvx, 73 the output cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx check deck\n"
      "  names the mistakes in deck/fem_solving.txt, with line, place and remedy.");
}

void AddRun(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("run", "Check a model, solve it, write its results, audit them");
  command
      .add_option("DIR", values.run.places,
                  "Folders with fem_solving.txt, or the files; else the current folder. Models\n"
                  "that differ in loads alone are solved together")
      ->type_name("");
  AddForce(command, values.run.force);
  AddStrict(command, values.run.strict);
  AddEngine(command, values.run.engine, values.run.dryRun);
  AddForms(command, values, "Loads, balance and verdict as a table, a row for each folder",
           "The audit as JSON, one line for each folder");
  AddColorOption(command, values.color);
  command.footer(
      "The files are those that korvex writes, and displacements.bin: the displacements with all\n"
      "digits; and solution.json: how they were found, and how exact they are. With the skyline\n"
      "the bytes are those of korvex, with the sparse engine the last digits may differ. They get\n"
      "their names when all of them are complete; until then, or where anything fails, those of\n"
      "an earlier run stay. Results of an earlier state of the model are removed before it is\n"
      "solved. The file of --out-of-core is removed at the end.\n"
      "\n"
      "Exit status, the gravest of all folders: 0 solved without errors, 1 errors in the model or\n"
      "its results, 64 wrong usage, 65 unusable data, 66 no model there, 70 a fault of kvx,\n"
      "73 a folder that cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx run deck\n"
      "  leaves the result files of deck/fem_solving.txt in deck.\n"
      "         kvx run deck --dry-run\n"
      "         kvx run deck --engine sparse --memory 8 --out-of-core /var/tmp");
}

void AddAudit(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand("audit", "Tell whether results can be trusted");
  AddPlace(command, values.audit.place);
  AddStrict(command, values.audit.strict);
  AddYield(command, values.audit.yield);
  AddForms(command, values, "Loads, balance and verdict as a table, for spreadsheets",
           "The audit as JSON, for programs");
  AddColorOption(command, values.color);
  command.footer(
      "Tells the sums of loads and support forces, what is left over at each node, the largest\n"
      "displacement and stresses, and whether the result files in DIR are those of this model.\n"
      "The displacements are those of displacements.bin where it belongs to the model; else the\n"
      "model is solved in memory. Forces along the global axes, those of supports as they act on\n"
      "the structure; moments of sums about the global origin. Section forces in the JSON are\n"
      "those of kvx forces. Units of the model.\n"
      "\n"
      "Exit status: 0 no errors, 1 errors, 64 wrong usage, 65 unusable data, 66 no model there,\n"
      "70 a fault of kvx, 73 the output cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx audit deck --yield 235\n"
      "  ends with a verdict for the report: \"Verdict: balanced (2.7e-13 of the loads); ...\"");
}

void AddReactions(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand("reactions", "Support forces, node by node, and sums");
  AddPlace(command, values.reactions.place);
  AddForms(command, values);
  command.footer(
      "Forces of the supports on the structure, along the global axes; moments turn by the\n"
      "right-hand rule, those of the sums about the global origin. Units of the model. A free\n"
      "degree of freedom is left empty (null in JSON). The sums: loads, reactions, elements that\n"
      "are not in equilibrium by themselves (warped quadrilaterals), and what is left over.\n"
      "\n"
      "Exit status: 0 fine, 1 loads and reactions do not balance, or the model has errors,\n"
      "64 wrong usage, 65 no supports, or displacements that are not numbers, 66 no model there,\n"
      "70 a fault of kvx, 73 the output cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx reactions deck --csv > reactions.csv");
}

void AddForces(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand(
      "forces", "Section forces and stresses of beams, forces and moments of shells");
  AddPlace(command, values.forces.place);
  command.add_option("--beam", values.forces.beams, "Beams: all, or numbers such as 5-8,12")
      ->type_name("LIST");
  command.add_option("--shell", values.forces.shells, "Four-node shells, the same way")
      ->type_name("LIST");
  command
      .add_option("--triangle", values.forces.triangles,
                  "Three-node shells, which are numbered from 0 on their own")
      ->type_name("LIST");
  constexpr int MostDivisions = 1000;
  command
      .add_option("--divisions", values.forces.divisions,
                  "Parts into which the stations divide a beam, 1 to 1000 (default: 4)")
      ->type_name("N")
      ->check([](const std::string& text) {
        char* end = nullptr;
        const long number = std::strtol(text.c_str(), &end, 10);
        if (*end == '\0' && number >= 1 && number <= MostDivisions) return std::string();
        return "write a number from 1 to 1000, not \"" + text + "\"";
      });
  command
      .add_option("--axis", values.axis,
                  "Direction that is axis 1 of all shells, projected on them: 1,0,0")
      ->type_name("X,Y,Z");
  command.add_flag("--corners", values.forces.corners, "Shells at their corners, too");
  AddForms(command, values);
  command.footer(
      "Without a list: all beams, or all shells of a model without beams.\n"
      "\n"
      "Beams: N, Vy, Vz, T, My, Mz about the centroid, local axes (x from the first node to the\n"
      "second, z the web's direction, y = z x x), on the face whose outward normal is +x. N > 0\n"
      "is tension; My > 0 stretches the +z side, Mz > 0 the -y side. Stresses sigma (tension\n"
      "positive), tau, von Mises at the points of the section. With --beam also the stress of the\n"
      "detail model at mid-length.\n"
      "\n"
      "Shells: nx, ny, nxy (force/length, tension positive), mx, my, mxy (moment/length; mx > 0\n"
      "stretches the upper face along axis 1), qx, qy (force/length). Axis 1 runs from the first\n"
      "node to the second, or is that of --axis; axis 3 is the normal on the upper side, axis 2 =\n"
      "3 x 1. Where the direction of --axis is normal to a shell, global x is projected instead,\n"
      "and the output says so. Units of the model.\n"
      "\n"
      "Exit status: 0 fine, 1 the model has errors, 64 wrong usage, 65 no supports, or\n"
      "displacements that are not numbers, 66 no model there, 70 a fault of kvx, 73 the output\n"
      "cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx forces deck --beam 5-8 --csv > forces.csv\n"
      "         kvx forces deck --shell all --axis 1,0,0 --csv > shells.csv");
}

// Whole numbers: what CLI11 makes of "-3" is a very large one.
std::string RefuseCount(const std::string& text) {
  constexpr std::size_t MostDigits = 18;  // fit a 64-bit number
  const bool isCount = !text.empty() && text.size() <= MostDigits &&
                       text.find_first_not_of("0123456789") == std::string::npos;
  return isCount ? "" : "write a number such as 20, not \"" + text + "\"";
}

void AddTop(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand("top", "The highest stresses, and where they are");
  AddPlace(command, values.top.place);
  command.add_option("-n,--count", values.top.count, "How many (default: 20)")
      ->type_name("N")
      ->check(RefuseCount);
  command.add_option("--of", values.top.quantity, "What is ranked, see below (default: stress)")
      ->type_name("QUANTITY");
  command
      .add_option("--by", values.top.grouping,
                  "One list for each thickness, material, section or part")
      ->check(CLI::IsMember({"whole", "thickness", "material", "section", "part"}).description(""))
      ->type_name("GROUP");
  AddYield(command, values.top.yield);
  command.add_flag("--unaveraged", values.top.unaveraged,
                   "Stresses of single elements, not averaged over neighbours");
  command.add_flag("--everywhere", values.top.everywhere,
                   "Detail models of beams along the whole length, not at mid-length alone");
  AddForms(command, values);
  command.footer(
      "QUANTITY: stress        von Mises stress of shells and of beams: the three lists below\n"
      "          shells        upper or lower face, the larger\n"
      "          beams         in their detail models, which take their time\n"
      "          section       of beams, from their section forces along the whole length\n"
      "          upper, lower, middle, bending   von Mises stress of a face of the shells (the\n"
      "                        upper one lies on the side of the normal), of the bending alone\n"
      "          tension, compression   largest and smallest principal stress of shells; tension\n"
      "                        is positive\n"
      "          displacement  its size; ux, uy, uz, rx, ry, rz: its components, global axes,\n"
      "                        by size, with their signs; rotations in radians\n"
      "Each element or node stands in a list once, with its largest value. Units of the model.\n"
      "\n"
      "Exit status: 0 fine, 1 a value is not a number, or the model has errors, 64 wrong usage,\n"
      "65 unusable data, 66 no model there, 70 a fault of kvx, 73 the output cannot be written,\n"
      "130 interrupted.\n"
      "\n"
      "Example: kvx top deck -n 20 --yield 235");
}

void AddCases(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("cases", "Load cases, combinations, envelopes with one factorisation");
  command.add_option("FILE", values.cases.file, "The load cases; else cases.toml")->type_name("");
  command
      .add_option("-o,--output", values.cases.output,
                  "Folder of the results; else \"results\" beside FILE")
      ->type_name("DIR");
  AddForce(command, values.cases.force);
  AddStrict(command, values.cases.strict);
  AddEngine(command, values.cases.engine, values.cases.dryRun);
  AddForms(command, values, "Loads, balance and verdict as a table, a row for each case",
           "The audits as JSON, for programs");
  AddColorOption(command, values.color);
  command.footer(
      "FILE:  structure = \"fem_solving.txt\"        its own loads are the case \"base\"\n"
      "       [case.ballast]\n"
      "       loads = \"ballast.txt\"                the sections NFOR .. NDL_B of a model file\n"
      "       [case.weight]\n"
      "       acceleration = [0, 0, -9810]         self-weight\n"
      "       [combination.uls]\n"
      "       factors = { base = 1.35, ballast = 1.5, weight = 1.35 }\n"
      "       [envelope.all]                       else one of all combinations, or of all cases\n"
      "       of = [\"uls\", \"base\"]\n"
      "\n"
      "Envelopes: CSV files in envelope-NAME, displacements and support forces along the global\n"
      "axes, section forces and shell forces with the axes and signs of kvx forces. Units of the\n"
      "model.\n"
      "\n"
      "Exit status: 0 solved without errors, 1 errors in the model or its results, 64 wrong\n"
      "usage, 65 unusable data, 66 no such file, 70 a fault of kvx, 73 a folder that cannot be\n"
      "written, 130 interrupted.\n"
      "\n"
      "Example: kvx cases deck/cases.toml");
}

// An empty name comes of a script whose variable is not set.
std::string RefuseEmptyName(const std::string& text) {
  return text.empty() ? "write a name, not \"\"" : "";
}

void AddResults(CLI::App& command, std::string& results) {
  command
      .add_option("--results", results,
                  "Of load cases: the folder that kvx cases -o had; else \"results\"")
      ->type_name("DIR")
      ->check(RefuseEmptyName);
}

void AddView(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("view", "Show a model and its results in 3-D, as a page for a browser");
  command
      .add_option("PLACE", values.view.places,
                  "Folder with fem_solving.txt, or the file; several: load cases of one\n"
                  "structure; or a file of load cases, *.toml, behind kvx cases; else the\n"
                  "current folder")
      ->type_name("");
  command
      .add_option("-o,--output", values.view.output,
                  "The page; else view.html beside the first model or the load cases")
      ->type_name("FILE")
      ->check(RefuseEmptyName);
  AddResults(command, values.view.results);
  command.add_flag("--model", values.view.modelAlone,
                   "The model without results: nothing is solved");
  command.add_flag("--averaged", values.view.averagedAlone,
                   "Averaged stresses alone, without those of single shells and their\n"
                   "forces: about half the size, for large models");
  command.add_flag("--details", values.details, "With the detail models of beams, however many");
  command.add_flag("--no-details", values.noDetails,
                   "Without them; else they are there if they have 60000 shells at most");
  command.footer(
      "One file, without anything from the network: it opens by a double click and may be sent\n"
      "to others. Results are those of displacements.bin where it belongs to the model; else the\n"
      "model is solved in memory. A model with errors is shown without results, with its findings\n"
      "in place; so is every model before it is solved, with --model. Units of the model.\n"
      "\n"
      "Exit status: 0 fine, 1 errors in the model or its results: the page shows them, 64 wrong\n"
      "usage, 65 unusable data, or a model that could not be solved: the page shows it without\n"
      "results, 66 no model or no results of cases there, 70 a fault of kvx, 73 the page cannot\n"
      "be written, 130 interrupted.\n"
      "\n"
      "Example: kvx view deck\n"
      "         kvx view deck/cases.toml -o deck.html");
}

void AddExport(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("export", "Models and results for ParaView, and as tables");
  command
      .add_option("PLACE", values.exported.places,
                  "Folders with fem_solving.txt, or the files, or the file of load cases\n"
                  "(.toml) after kvx cases; else the current folder")
      ->type_name("");
  command.add_flag("--vtu", values.exported.vtu, "For ParaView: model.vtu");
  command.add_flag("--csv", values.exported.csv, "For spreadsheets: a folder csv of tables");
  command.add_flag("--shared", values.exported.shared,
                   "VTU: one point for each node, with mean stresses");
  command.add_flag("--details", values.exported.details,
                   "VTU: detail models of beams, too: model-details.vtu");
  command
      .add_option("-o,--output", values.exported.output,
                  "Folder of the files; else beside the model")
      ->type_name("DIR")
      ->check(RefuseEmptyName);
  AddResults(command, values.exported.results);
  command.footer(
      "VTU: displacements, loads, support forces, stresses of both faces at the corners of "
      "shells,\n"
      "forces of shells and beams. Each corner is a point of its own, so that stresses may jump\n"
      "from shell to shell. Of load cases there is a .vtu for each, a .pvd that lists them as "
      "time\n"
      "steps, and an envelope.vtu with the largest and smallest values and their cases.\n"
      "\n"
      "The displacements are those of displacements.bin where it belongs to the model; else the\n"
      "model is solved in memory. A file that exists is replaced when the new one is complete.\n"
      "Units of the model.\n"
      "\n"
      "Exit status: 0 fine, 1 the model has errors, 64 wrong usage, 65 no supports, or\n"
      "displacements that are not numbers, 66 no model or no results of load cases there,\n"
      "70 a fault of kvx, 73 a file cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx export deck --vtu --details\n"
      "         kvx export deck/cases.toml --vtu");
}

void AddRenumber(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("renumber", "Give the nodes the numbers that take least memory and time");
  AddPlace(command, values.renumber.place);
  command.add_flag("--undo", values.renumber.undo,
                   "The first numbers again, also in results of the model as it stands");
  command.add_flag("-n,--dry-run", values.renumber.dryRun,
                   "Tell what would be done, and write nothing");
  command.add_flag("--json", values.json, "What was done as JSON, for programs");
  AddColorOption(command, values.color);
  command.footer(
      "The best of several orders by the predicted work: the one given, reverse Cuthill-McKee,\n"
      "Sloan, along the longest axis. Where none is better, nothing is written. The model, its\n"
      "import.json and the files of loads that its cases.toml names get the new numbers\n"
      "together; elements keep theirs. Results in the old numbers are removed. renumber.json\n"
      "keeps the first numbers, through several renumberings, too.\n"
      "\n"
      "Exit status: 0 fine, also where no order is better, 64 wrong usage, 65 a model that is not\n"
      "read whole, or numbers that cannot be changed everywhere, 66 no model there, 70 a fault of\n"
      "kvx, 73 a file that cannot be written, 130 interrupted.\n"
      "\n"
      "Example: kvx renumber deck\n"
      "         kvx run deck\n"
      "         kvx renumber deck --undo");
}

void AddExplain(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand("explain", "Tell what a finding means and what to do");
  command
      .add_option("CODE", values.explain.codes, "Codes of findings; without one, all are listed")
      ->type_name("");
  command.add_flag("--page", values.explain.page, "The page docs/findings.md with all codes");
  AddColorOption(command, values.color);
  command.footer("Example: kvx explain K104");
}

void Describe(CLI::App& app, CommandValues& values) {
  app.name(ProgramName());
  app.allow_windows_style_options(false);  // "/deck" is a folder
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("--version", "kvx " KORVEX_VERSION, "Show the version");
  constexpr std::size_t NameColumn = 24;
  app.get_formatter()->column_width(NameColumn);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Positionals", "Arguments");
  app.require_subcommand(1);
  AddImport(app, values);
  AddCheck(app, values);
  AddRun(app, values);
  AddAudit(app, values);
  AddReactions(app, values);
  AddForces(app, values);
  AddTop(app, values);
  AddCases(app, values);
  AddView(app, values);
  AddExport(app, values);
  AddRenumber(app, values);
  AddExplain(app, values);
  CLI::App& licenses = *app.add_subcommand("licenses", "Show the licences of what kvx contains");
  licenses.footer("Example: kvx licenses | less");
  for (CLI::App* command : app.get_subcommands({})) command->group("Commands");
  app.footer(
      "Example: kvx check deck\n"
      "\"kvx COMMAND --help\" tells more of a command.");
}

std::vector<std::string> ListCommands(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> ListOptions(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

bool Contains(const std::vector<std::string>& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::string Question(const std::string& typed, const std::vector<std::string>& words) {
  const std::vector<std::string> nearest = FindNearest(typed, words);
  return nearest.empty() ? "" : " Did you mean \"" + nearest.front() + "\"?";
}

ExitStatus RefuseCommand(const CLI::App& app, const std::string& typed) {
  std::vector<std::string> words = ListCommands(app);
  for (const std::string& option : ListOptions(app)) words.push_back(option);
  std::string text = "there is no command \"" + typed + "\".";
  std::string question = Question(typed, words);
  std::error_code error;
  if (question.empty() && std::filesystem::exists(std::filesystem::u8path(typed), error)) {
    question = " Did you mean \"kvx check " + typed + "\"?";
  }
  if (question.empty()) question = " \"kvx --help\" lists the commands.";
  Complain("kvx", text + question);
  return ExitUsage;
}

// Words that belong to no option and no argument. command: the one that was given; null: none.
ExitStatus RefuseExtra(const CLI::App& app, const CLI::App* command) {
  const std::vector<std::string> extras = app.remaining(true);
  const std::string extra = extras.empty() ? "" : extras.front();
  const std::string who = ProgramName() + (command == nullptr ? "" : ' ' + command->get_name());
  const std::string help = " \"" + who + " --help\" tells how it is called.";
  if (extra.rfind('-', 0) != 0) {
    Complain(who, "\"" + extra + "\" is one word too many." + help);
    return ExitUsage;
  }
  const std::string option = extra.substr(0, extra.find('='));
  const std::vector<std::string> options = ListOptions(command == nullptr ? app : *command);
  if (Contains(options, option)) {
    Complain(who, "write \"" + option + "\" behind \"" + who + "\".");
    return ExitUsage;
  }
  const std::string question = Question(option, options);
  Complain(who, "there is no option \"" + option + "\"." + (question.empty() ? help : question));
  return ExitUsage;
}

ExitStatus RunChecked(const CLI::App& command, CommandValues& values) {
  const bool isGiven = command.count("--tolerance") > 0;
  if (isGiven && !(values.check.tolerance > 0.0 && std::isfinite(values.check.tolerance))) {
    Complain("kvx check", "--tolerance is a length greater than 0, in the units of the model.");
    return ExitUsage;
  }
  values.check.color = ColorOf(values.color);
  return RunCheck(values.check);
}

ExitStatus RunImported(CommandValues& values) {
  ImportCommand& command = values.imported;
  std::string complaint;
  if (command.deck.empty()) {
    complaint = "which deck? Name a file, such as bridge.bdf, hull.msh or frame.inp.";
  } else if (!command.mapTemplate.empty() && (!command.map.empty() || values.json)) {
    complaint = "--map-template writes a map and nothing else: leave out --map and --json.";
  }
  if (!complaint.empty()) {
    Complain("kvx import", complaint);
    return ExitUsage;
  }
  command.json = values.json;
  command.color = ColorOf(values.color);
  return RunImport(command);
}

// Reads "1,0,0". Returns false where that is no direction.
bool ReadAxis(const std::string& text, korvex::Vector3& axis) {
  const char* at = text.c_str();
  double size = 0.0;
  for (std::size_t i = 0; i < 3; ++i) {
    char* end = nullptr;
    axis[i] = std::strtod(at, &end);
    if (end == at || !std::isfinite(axis[i]) || *end != (i < 2 ? ',' : '\0')) return false;
    at = end + 1;
    size = std::max(size, std::fabs(axis[i]));
  }
  return size > 0.0;
}

ExitStatus RunForced(const CLI::App& command, CommandValues& values) {
  FrameChoice& choice = values.forces.axis;
  choice.byAxis = command.count("--axis") > 0;
  if (choice.byAxis && !ReadAxis(values.axis, choice.axis)) {
    Complain("kvx forces", "--axis is a direction of three numbers, not all 0, such as 1,0,0; \"" +
                               values.axis + "\" is not.");
    return ExitUsage;
  }
  return RunForces(values.forces);
}

ExitStatus RunViewed(CommandValues& values) {
  if (values.details && values.noDetails) {
    Complain("kvx view", "--details or --no-details, not both.");
    return ExitUsage;
  }
  if (values.details || values.noDetails) values.view.details = values.details;
  return RunView(values.view);
}

// What is wrong with how a model shall be solved, as a sentence; empty: nothing is.
std::string RefuseSolution(const EngineOptions& engine, bool dryRun, OutputForm form) {
  if (dryRun && form == OutputForm::Csv) return "--dry-run makes no table: leave out --csv.";
  return RefuseTogether(engine);
}

// "--memory: At Most 1 required but received 2": the option; empty: the text is another one.
std::string FindRepeated(const std::string& text) {
  const std::size_t at = text.find(": At Most 1 required");
  return at == std::string::npos ? "" : text.substr(0, at);
}

// "--beam: 1 required LIST missing" in words for people.
std::string PlainText(std::string text) {
  const std::string repeated = FindRepeated(text);
  if (!repeated.empty()) return repeated + " is given more than once: give it one value";
  const std::string before = ": 1 required ", after = " missing";
  const std::size_t at = text.find(before), end = text.rfind(after);
  if (at == std::string::npos || end == std::string::npos || end < at) return text;
  const std::size_t name = at + before.size();
  return text.substr(0, at) + " needs its " + text.substr(name, end - name) + " behind it";
}

ExitStatus RunParsed(const CLI::App& app, CommandValues& values) {
  const CLI::App* const command = app.get_subcommands().front();
  const std::string name = command->get_name();
  if (values.csv && values.json) {
    Complain("kvx " + name, "--csv or --json, not both.");
    return ExitUsage;
  }
  const OutputForm form = values.csv    ? OutputForm::Csv
                          : values.json ? OutputForm::Json
                                        : OutputForm::Text;
  values.reactions.form = values.forces.form = values.top.form = form;
  values.run.form = values.audit.form = values.cases.form = form;
  const ColorChoice color = ColorOf(values.color);
  values.run.color = values.audit.color = values.cases.color = values.explain.color = color;
  values.renumber.color = color;
  const std::string refusal =
      name == "run"     ? RefuseSolution(values.run.engine, values.run.dryRun, form)
      : name == "cases" ? RefuseSolution(values.cases.engine, values.cases.dryRun, form)
                        : "";
  if (!refusal.empty()) {
    Complain("kvx " + name, refusal);
    return ExitUsage;
  }
  if (name == "import") return RunImported(values);
  if (name == "check") return RunChecked(*command, values);
  if (name == "run") return RunRun(values.run);
  if (name == "audit") return RunAudit(values.audit);
  if (name == "reactions") return RunReactions(values.reactions);
  if (name == "forces") return RunForced(*command, values);
  if (name == "top") return RunTop(values.top);
  if (name == "cases") return RunCases(values.cases);
  if (name == "view") return RunViewed(values);
  if (name == "export") return RunExport(values.exported);
  if (name == "renumber") {
    values.renumber.json = values.json;
    return RunRenumber(values.renumber);
  }
  if (name == "explain") return RunExplain(values.explain);
  return RunLicenses();
}

// "kvx help COMMAND" is "kvx COMMAND --help", and "kvx help" is "kvx --help".
ExitStatus RunHelp(const std::vector<std::string>& arguments) {
  if (arguments.size() > 2) {
    Complain("kvx help", "\"" + arguments[2] + "\" is one word too many.");
    return ExitUsage;
  }
  if (arguments.size() == 1) return RunCommandLine({"--help"});
  return RunCommandLine({arguments[1], "--help"});
}

}  // namespace

ExitStatus RunCommandLine(const std::vector<std::string>& arguments) {
  if (!arguments.empty() && arguments.front() == "help") return RunHelp(arguments);
  CommandValues values;
  CLI::App app(
      "kvx, the companion of korvex: sees that a model is right, solves it, and reads its "
      "results.");
  Describe(app, values);
  if (arguments.empty()) {
    Complain("kvx", "which command?");
    std::cerr << app.help();
    return ExitUsage;
  }
  const std::string& first = arguments.front();
  if (first.rfind('-', 0) != 0 && !Contains(ListCommands(app), first)) {
    return RefuseCommand(app, first);
  }
  const auto given = [&]() -> const CLI::App* {
    const std::vector<CLI::App*> commands = app.get_subcommands();
    return commands.empty() ? nullptr : commands.front();
  };
  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    return WriteOutput(app.help());
  } catch (const CLI::CallForVersion& version) {
    return WriteOutput(std::string(version.what()) + "\n");
  } catch (const CLI::ExtrasError&) {
    return RefuseExtra(app, given());
  } catch (const CLI::RequiredError&) {
    return RefuseExtra(app, given());  // no command, but options
  } catch (const CLI::ParseError& error) {
    const std::string command = given() == nullptr ? "" : ' ' + given()->get_name();
    const std::string who = ProgramName() + command;
    Complain(who, PlainText(error.what()) + ". \"" + who + " --help\" shows the options.");
    return ExitUsage;
  }
  return RunParsed(app, values);
}

}  // namespace kvx
