// The commands of kvx: options in, text out. Each returns the exit status.
#pragma once

#include <string>
#include <vector>

#include "commands/exit_status.h"
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

ExitStatus RunCheck(const CheckCommand& command);
ExitStatus RunExplain(const ExplainCommand& command);
ExitStatus RunLicenses();

}  // namespace kvx
