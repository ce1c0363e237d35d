// What a check finds in a model, for tests.
#pragma once

#include <string>

#include "commands/check_model.h"
#include "support/model_text.h"

namespace kvx::test {

// Checks the text of a model file, or a model.
CheckReport Check(const std::string& text, const CheckOptions& options = {});
CheckReport Check(const korvex::test::ModelText& model, const CheckOptions& options = {});

inline const std::string AllGroups = "0123456";

// A planted mistake: the finding that must name it.
struct Expected {
  std::string code;   // "K104"
  std::string table;  // "NELEM_B"; empty: not looked at
  int row = -1;       // a row that the finding must name; -1: not looked at
  int node = -1;      // a node that the finding must name; -1: not looked at
  int line = 0;       // the line that the finding must name; 0: not looked at
};

// The finding stands in the report, and there is no other error and no other warning. If the code
// is a hint, no other finding of its kind is there.
// groups: the first digits of the groups of codes that are looked at, for models that lack supports
// or loads.
void ExpectOnly(const CheckReport& report, const Expected& expected,
                const std::string& groups = AllGroups);

// No error and no warning.
void ExpectNone(const CheckReport& report, const std::string& groups = AllGroups);

// All findings, one a line, for messages of failed tests.
std::string ListFindings(const CheckReport& report);

}  // namespace kvx::test
