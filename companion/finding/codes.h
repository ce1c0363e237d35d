// All kinds of findings: what each means, what the solver does with it, how to mend it.
//
//   K0xx  text of the file         K1xx  elements and tables    K2xx  mesh
//   K3xx  supports, mechanisms     K4xx  loads                  K5xx  size and order
//   K6xx  units and plausibility    K7xx  results
//
// Codes are never used again for another thing: people write them into their notes.
#pragma once

#include <string_view>
#include <vector>

#include "finding/finding.h"

namespace kvx {

struct CodeText {
  const char* code;     // "K104"
  Severity severity;    // the usual one
  const char* title;    // "Orientation vector parallel to the beam's axis"
  const char* meaning;  // what it means, sentences
  const char* solver;   // what the solver does with such a model
  const char* remedy;   // how to mend it
  const char* before;   // lines of a model file with the mistake
  const char* after;    // the same lines, mended
};

// One table for each group; each is sorted by code.
extern const std::vector<CodeText> TextCodes;          // K0xx
extern const std::vector<CodeText> ElementCodes;       // K1xx
extern const std::vector<CodeText> MeshCodes;          // K2xx
extern const std::vector<CodeText> SupportCodes;       // K3xx
extern const std::vector<CodeText> LoadCodes;          // K4xx
extern const std::vector<CodeText> SizeCodes;          // K5xx
extern const std::vector<CodeText> PlausibilityCodes;  // K6xx
extern const std::vector<CodeText> ResultCodes;        // K7xx

// All of them in ascending order.
std::vector<const CodeText*> ListCodes();

// The code's text; null where there is no such code.
const CodeText* FindCode(std::string_view code);

}  // namespace kvx
