// The commands of kvx: options in, text out. Each returns the exit status.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "audit/section_forces.h"
#include "audit/shell_frame.h"
#include "commands/engine_options.h"
#include "commands/exit_status.h"
#include "commands/output_form.h"
#include "commands/speak.h"

namespace kvx {

struct CheckCommand {
  std::string place = ".";  // a folder with a model file, or the file
  bool strict = false;      // warnings count as errors do
  double tolerance = 0.0;   // of coincident nodes, model units; 0: the default
  bool deep = false;        // the mechanisms, too, at the cost of a factorisation
  bool json = false;
  ColorChoice color = ColorChoice::Auto;
};

struct ExplainCommand {
  std::vector<std::string> codes;  // none: all of them are listed
  bool page = false;               // the page docs/findings.md instead
  ColorChoice color = ColorChoice::Auto;
};

struct RunCommand {
  std::vector<std::string> places{"."};  // folders with a model file, or such files
  bool force = false;                    // solve in spite of errors that the check finds
  bool strict = false;                   // warnings count as errors do, of the check and the audit
  EngineOptions engine;                  // how to solve
  bool dryRun = false;                   // check and predict; solve and write nothing
  OutputForm form = OutputForm::Text;
  ColorChoice color = ColorChoice::Auto;
};

struct AuditCommand {
  std::string place = ".";
  bool strict = false;  // warnings count as errors do
  double yield = 0.0;   // yield stress, model units; 0: none is given
  OutputForm form = OutputForm::Text;
  ColorChoice color = ColorChoice::Auto;
};

struct ReactionsCommand {
  std::string place = ".";
  OutputForm form = OutputForm::Text;
};

struct ForcesCommand {
  std::string place = ".";
  // "all" or a list such as "5-8,12"; none: see RunForces. Shells have four nodes, triangles three;
  // each kind is numbered from 0.
  std::optional<std::string> beams, shells, triangles;
  int divisions = DefaultDivisions;  // of each beam: stations between its ends, and one more
  FrameChoice axis;                  // of shells
  bool corners = false;              // of shells: the corners, besides the centres
  OutputForm form = OutputForm::Text;
};

struct TopCommand {
  std::string place = ".";
  std::size_t count = 20;
  std::string quantity = "stress";  // a name of ListQuantityNames
  std::string grouping = "whole";   // whole, thickness, material, section or part
  double yield = 0.0;               // yield stress, model units; 0: none is given
  bool unaveraged = false;          // stresses as recovered at the corners of single elements
  bool everywhere = false;          // beams: not at mid-length alone
  OutputForm form = OutputForm::Text;
};

struct CasesCommand {
  std::string file = "cases.toml";
  std::string output;   // folder of the results; "": "results" beside the file
  bool force = false;   // solve in spite of errors that the check finds
  bool strict = false;  // warnings count as errors do
  EngineOptions engine;
  bool dryRun = false;  // check and predict; solve and write nothing
  OutputForm form = OutputForm::Text;
  ColorChoice color = ColorChoice::Auto;
};

struct ViewCommand {
  // Folders with a model file, such files, or a file of load cases.
  std::vector<std::string> places{"."};
  std::string output;   // the page; "": view.html beside the first model or the case file
  std::string results;  // of a case file: the folder of its results; "": "results" beside it
  bool modelAlone = false;
  bool averagedAlone = false;   // without the stresses of elements by themselves
  std::optional<bool> details;  // with or without detail models; none: if they are few
};

struct ExportCommand {
  std::vector<std::string> places{"."};  // folders with a model file, such files, or case files
  bool vtu = false, csv = false;         // which files: at least one
  bool shared = false;                   // VTU: one point for each node
  bool details = false;                  // VTU: the detail models of beams, too
  std::string output;   // folder of the files; "": beside each model, or in the results of a case
  std::string results;  // of a case file: the folder of its results; "": "results" beside it
};

struct ImportCommand {
  std::string deck;
  std::string output;        // folder of the model; "": the deck's name without its extension
  std::string map;           // file with what the deck lacks; "": none
  std::string mapTemplate;   // file to write a map into, "-": standard output; "": none
  std::string onlyCase;      // the load case to take; "": all of them
  std::string format;        // gmsh, nastran, abaqus; "": told by name and text
  double mergeLength = 0.0;  // nodes no further apart become one, units of the deck; 0: none do
  bool strict = false;       // nothing may be lost or limited; warnings count as errors do
  bool force = false;        // replace files that no import has written
  bool json = false;
  ColorChoice color = ColorChoice::Auto;
};

struct RenumberCommand {
  std::string place = ".";
  bool undo = false;    // the numbers of before the first renumbering
  bool dryRun = false;  // tells what would be done
  bool json = false;
  ColorChoice color = ColorChoice::Auto;
};

ExitStatus RunImport(const ImportCommand& command);
ExitStatus RunCheck(const CheckCommand& command);
ExitStatus RunRun(const RunCommand& command);
ExitStatus RunAudit(const AuditCommand& command);
ExitStatus RunReactions(const ReactionsCommand& command);

// Without a list: all beams; in a model without beams all shells and triangles. As text, a model of
// many elements is then shown by its extremes.
ExitStatus RunForces(const ForcesCommand& command);
ExitStatus RunTop(const TopCommand& command);
ExitStatus RunCases(const CasesCommand& command);
ExitStatus RunView(const ViewCommand& command);

// Models and case files may be mixed; each is exported on its own, also where another one fails.
// Returns the gravest status of all.
ExitStatus RunExport(const ExportCommand& command);

// Writes the model with its nodes in the best of several orders, and the map of their numbers. All
// files of the folder that have numbers of nodes get the new ones, or nothing is changed.
ExitStatus RunRenumber(const RenumberCommand& command);
ExitStatus RunExplain(const ExplainCommand& command);
ExitStatus RunLicenses();

}  // namespace kvx
