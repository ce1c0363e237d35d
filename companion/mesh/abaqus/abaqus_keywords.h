// The keywords of a deck: which are taken, and what becomes of the others.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "mesh/import_report.h"

namespace kvx {

struct AbaqusKeywordKind {
  std::string_view name;    // "SHELL SECTION"
  bool isTaken = false;     // by one of the routines of this room, which reports what it leaves out
  Fate fate = Fate::Lost;   // of one that is not
  std::string_view reason;  // of one that is not
};

constexpr std::string_view UnknownKeyword = "unknown keyword";

// The keywords that are taken.
std::vector<std::string> TakenKeywords();

// The kind of a keyword; one that is not known is lost, with the reason "unknown keyword".
AbaqusKeywordKind KindOfKeyword(std::string_view name);

// The keyword's name with the blanks that it has in the manuals: "SHELLSECTION" is "SHELL SECTION".
std::string KeywordName(const std::string& name);

bool IsTakenKeyword(std::string_view name);

}  // namespace kvx
