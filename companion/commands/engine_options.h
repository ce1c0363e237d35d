// The options of `kvx run` and `kvx cases` that choose how a model is solved: their values as words
// of the command line, and the settings that these make.
#pragma once

#include <string>

#include "commands/exit_status.h"
#include "engine/engine_settings.h"

namespace kvx {

// As they were given.
struct EngineOptions {
  int threads = 0;              // 0: not given
  std::string engine = "auto";  // auto, skyline or sparse
  double memory = 0.0;          // GB of 2^30 bytes; 0: not given
  std::string outOfCore;        // a folder, UTF-8; empty: not given
};

// What is wrong with a value, as part of a sentence; empty: nothing is.
std::string RefuseThreads(const std::string& text);
std::string RefuseEngine(const std::string& text);
std::string RefuseMemory(const std::string& text);

// What is wrong with the options together, as a sentence; empty: nothing is.
std::string RefuseTogether(const EngineOptions& options);

// Without a number of threads: all cores that this process may use; of ranks (ranks/ranks.h), one,
// and these have the sparse engine alone. The folder gets an absolute name: the current folder
// changes on the way.
EngineSettings MakeEngineSettings(const EngineOptions& options);

// Whether the factors can be kept in the folder of the settings: it is there, and a file can be
// made in it. Returns ExitFine, also without such a folder; or ExitOutputFailed after a complaint.
// who: "kvx run".
ExitStatus CheckOutOfCore(const std::string& who, const EngineSettings& settings);

}  // namespace kvx
