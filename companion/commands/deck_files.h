// The files that an import reads: the deck, what it includes, the map.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "commands/exit_status.h"
#include "mesh/source_files.h"

namespace kvx {

// What has been read, for the output: none of it may be overwritten.
struct DeckFiles {
  std::filesystem::path folder;               // of the deck, as it precedes its name
  std::vector<std::filesystem::path> places;  // absolute
};

// Reads a file whole. name: UTF-8, as the user gave it. Returns ExitFine; or, with a sentence in
// `complaint`, ExitMissingInput, or ExitUnusableData where memory does not hold it.
ExitStatus ReadDeckFile(const std::string& name, DeckFiles& files, std::string& text,
                        std::string& complaint);

// What reads the files that the deck includes. Names are relative to the folder of the deck; where
// no such file is there, "\" in them is taken for "/", as decks come from Windows, too. Devices and
// pipes are not read. files: lives as long as the reader. Throws Interrupted.
IncludeReader MakeIncludeReader(DeckFiles& files);

}  // namespace kvx
