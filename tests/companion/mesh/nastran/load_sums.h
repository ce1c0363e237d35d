// A deck imported for the tests of its loads, and what they ask of it.
#pragma once

#include <cstddef>
#include <string>

#include "mesh/import_model.h"
#include "mesh/import_report.h"
#include "mesh/sum_loads.h"

namespace kvx::test {

// Reads structure, supports and loads of a deck.
ImportedDeck ImportDeckText(const std::string& text);

// The text of the Stop that the import of a deck ends with; "" where it does not.
std::string ImportStopText(const std::string& text);

// Expects the sums of a case; the tolerance is a part of the largest of them.
void ExpectSums(const ImportedDeck& deck, std::size_t caseRow, const LoadSums& expected);

// "FORCE|its reason|2", one line for each entry with this fate, in the report's order. begin: of
// the names of the cards that are wanted.
std::string EntriesText(const ImportReport& report, Fate fate, const std::string& begin = "");

// The case's restraints as text, ascending by the numbers of nodes: "5: 1 1 1 0 0 0\n".
std::string RestraintsText(const ImportModel& model, const ImportCase& loads);

}  // namespace kvx::test
