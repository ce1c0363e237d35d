// Runs of kvx beside the test, which sends them signals, and a model that gives them work. POSIX
// only.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <string>

namespace kvx::test {

// A clamped plate of n x n shells with a row of beams on it. n = 40: a second of work, or less.
std::string PlateText(int n);

// Starts the program in the folder. output: a file for both of its streams. command: "run", or
// "export --vtu": words without blanks.
pid_t StartKvx(const std::filesystem::path& folder, const std::filesystem::path& output,
               const std::string& command = "run");

// The exit status as a shell gives it.
int AwaitKvx(pid_t child);

void Sleep(double seconds);

}  // namespace kvx::test
