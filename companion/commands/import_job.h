// The stages of an import, from the files of a deck to the files of a model. Each does its part of
// the job and says nothing.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "commands/commands.h"
#include "commands/deck_files.h"
#include "commands/deck_format.h"
#include "commands/import_outcome.h"
#include "mesh/build_tables.h"
#include "mesh/import_model.h"

namespace kvx {

// Thrown where an import cannot go on, with what is to be said.
struct ImportRefusal {
  ExitStatus status;
  std::string complaint;
};

struct ImportJob {
  ImportCommand command;
  std::chrono::steady_clock::time_point begin = std::chrono::steady_clock::now();
  ImportOutcome outcome;

  std::filesystem::path folder;  // of the output, absolute
  DeckFormat format = DeckFormat::Unknown;
  DeckFiles files;           // what has been read
  std::string map, mapName;  // its text; the name as messages show it
  ImportModel model;         // until its tables are made
  BuiltModel built;          // until it is written
  bool isBuilt = false;
  std::string modelText;                // of fem_solving.txt, for the check
  std::vector<FileToWrite> loadsFiles;  // kept for the check
  std::string said;                     // of a map template: the text for standard output
};

// Reads the deck, its includes and the map. Looks at the folder first: what cannot be written need
// not be read.
void ReadDeck(ImportJob& job);

void ApplyMap(ImportJob& job);
void MergeImported(ImportJob& job);

// Leaves the case of --case alone in the model.
void KeepCase(ImportJob& job);

// Reports what is missing.
void CompleteImport(ImportJob& job);

// Makes the tables; the model is gone then.
void BuildImported(ImportJob& job);

// Orders the nodes as kvx renumber would.
void OrderImported(ImportJob& job);

// Writes the files of the folder; the tables are gone then.
void WriteImported(ImportJob& job);

void CheckImported(ImportJob& job);

// Writes the map of --map-template, or hands it over to be said.
void WriteTemplate(ImportJob& job);

}  // namespace kvx
