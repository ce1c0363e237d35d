// What stands above BEGIN BULK: executive control and case control.
#pragma once

#include <cstdint>
#include <string_view>

#include "mesh/import_report.h"
#include "mesh/nastran/nastran_deck.h"
#include "mesh/nastran/nastran_sources.h"

namespace kvx {

// The part of the deck that a line belongs to.
enum class NastranSection { Unknown, Executive, CaseControl, Bulk, End };

// The section that the first line belongs to: a deck without BEGIN BULK is bulk data from its first
// line on, as the files are that programs write to be included.
NastranSection FirstSection(std::string_view line, const NastranSources& sources);

// Takes a line of executive control; returns the section of the next line.
NastranSection TakeExecutiveLine(std::string_view line, SourcePlace place, NastranSources& sources);

// Takes a command of case control, with the lines that it goes on over. subcase: that of the
// command before, and becomes its own. Returns the section of the next line.
NastranSection TakeCaseControlLine(std::string_view line, SourcePlace place,
                                   NastranSources& sources, std::int64_t& subcase);

}  // namespace kvx
