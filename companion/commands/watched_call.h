// Long calls that do not look at the wish to end them: a second thread does, and ends the program.
#pragma once

#include <functional>

#include "commands/progress.h"
#include "engine/engine_settings.h"

namespace kvx {

// Makes the call. After an interrupt the second thread calls cleanUp, takes the line of progress
// back, says "interrupted." and ends the program with ExitInterrupted: the call never comes back.
// cleanUp must not touch what the call works on, and the call writes nothing to the screen. What
// the call throws goes on.
void RunWatched(Progress& progress, const std::function<void()>& call,
                const std::function<void()>& cleanUp);

// The same without words: for a rank that is not the first.
void RunWatchedInSilence(const std::function<void()>& call, const std::function<void()>& cleanUp);

// The settings with a guard that does so. cleanUp: of the command, after that of the engine.
// progress has to live as long as the result.
EngineSettings WatchCalls(const EngineSettings& settings, Progress& progress,
                          const std::function<void()>& cleanUp);

}  // namespace kvx
