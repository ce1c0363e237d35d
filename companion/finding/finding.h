// A finding: something in a model that an engineer should look at, as data. Nothing here prints.
//
// Findings of one kind (code, severity and table) are counted: the first 20 are kept one by one,
// the rest is one finding that lists their rows and nodes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/vector3.h"

namespace kvx {

enum class Severity {
  Error,    // the run stops, or its results are wrong or not numbers
  Warning,  // nearly always a mistake
  Hint,     // good to know
};

struct Finding {
  std::string code;  // "K104", see codes.h
  Severity severity = Severity::Error;
  std::size_t line = 0;             // 1-based line of the model file; 0: none
  std::size_t column = 0;           // 1-based, in bytes; 0: none
  const char* table = "";           // the key of the table's count, "NELEM_B"; "": none
  std::vector<std::int32_t> rows;   // 0-based rows of the table
  std::vector<std::int32_t> nodes;  // 0-based
  bool hasPosition = false;
  korvex::Vector3 position{};  // model units, global
  std::string message;         // "beam 10 at (0, 0, 0) .. (1, 0, 0): its length is zero."
  std::string remedy;          // "Merge ..., or remove ..."; may be empty
  std::string origin;          // of an imported model: "In deck.bdf: CQUAD4 4711."; may be empty
  std::size_t count = 1;       // how many findings of its kind this one stands for
};

// How many findings of one kind are kept one by one.
inline constexpr std::size_t FindingsOfAKind = 20;

// A kind of findings in a list.
struct FindingKind {
  std::size_t count = 0;  // of all, also those not kept
  std::size_t rest = 0;   // index of the finding that lists the rest, where there is one
};

struct FindingList {
  std::vector<Finding> findings;              // in the order of AddFinding
  std::map<std::string, std::size_t> counts;  // findings of each code, also those not kept
  std::map<std::string, FindingKind> kinds;   // by code, severity and table
};

// A finding with the code's usual severity (codes.h). Throws a std::logic_error where there is no
// such code: a fault of the program.
Finding MakeFinding(const char* code);

// Adds the finding, or counts it and adds its rows and nodes to the rest of its kind.
void AddFinding(Finding finding, FindingList& list);

// Sorts by severity, then by line (findings without a line last), then in the order of AddFinding.
// Nothing may be added afterwards.
void SortFindings(FindingList& list);

// How many findings of this severity there are, also those not kept.
std::size_t CountFindings(const FindingList& list, Severity severity);

}  // namespace kvx
