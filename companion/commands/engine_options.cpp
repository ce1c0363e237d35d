#include "commands/engine_options.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "base/gigabyte.h"
#include "commands/core_count.h"
#include "commands/speak.h"
#include "finding/nearest_word.h"
#include "ranks/ranks.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// Less holds no program, and no machine has more.
constexpr double LeastGigabytes = 1e-3, MostGigabytes = 1e9;

// Bytes: the 255 that MUMPS has for the name, less "/kvx-factors-" and a number of five digits, as
// the folders of ranks have.
constexpr std::size_t LongestFolder = 237;

// Made and removed at once. Where it is there already, another run is asking the same.
constexpr const char* ProbeName = "kvx-can-write";

// Why no file can be made in the folder, with a verb; empty: one can.
std::string FindObstacle(const fs::path& folder) {
  std::error_code error;
  const std::size_t length = folder.u8string().size();
  if (length > LongestFolder) {
    return "has a name of " + std::to_string(length) + " bytes, of which it may have " +
           std::to_string(LongestFolder) + "; name another one";
  }
  const fs::file_status status = fs::status(folder, error);
  if (!fs::exists(status)) return "is not there; make it, or name another one";
  if (!fs::is_directory(status)) return "is no folder";
  const bool isMade = fs::create_directory(folder / ProbeName, error);
  if (error) return "cannot be written to: " + error.message();
  if (isMade) fs::remove(folder / ProbeName, error);
  return "";
}

}  // namespace

std::string RefuseThreads(const std::string& text) {
  constexpr std::size_t MostDigits = 3;  // of MostThreads
  const bool isNumber = !text.empty() && text.size() <= MostDigits &&
                        text.find_first_not_of("0123456789") == std::string::npos;
  const int threads = isNumber ? std::atoi(text.c_str()) : 0;  // NOLINT(cert-err34-c): digits alone
  if (threads >= 1 && threads <= MostThreads) return "";
  return "write a number from 1 to " + std::to_string(MostThreads) + ", not \"" + text + "\"";
}

std::string RefuseEngine(const std::string& text) {
  const std::vector<std::string> names{"auto", "skyline", "sparse"};
  if (std::find(names.begin(), names.end(), text) != names.end()) return "";
  const std::vector<std::string> nearest = FindNearest(text, names);
  return "there is no engine \"" + text + "\"; " +
         (nearest.empty() ? "write auto, skyline or sparse"
                          : "perhaps \"" + nearest.front() + "\" is meant");
}

std::string RefuseMemory(const std::string& text) {
  char* end = nullptr;
  const double gigabytes = std::strtod(text.c_str(), &end);
  // strtod reads hexadecimal digits, too, which no one means
  const bool isNumber = end != text.c_str() && *end == '\0' &&
                        text.find_first_not_of("0123456789.eE+-") == std::string::npos;
  if (isNumber && gigabytes >= LeastGigabytes && gigabytes <= MostGigabytes) return "";
  return "write a number of gigabytes from 0.001 to 1000000000, such as 16 or 2.5, not \"" + text +
         "\"";
}

std::string RefuseTogether(const EngineOptions& options) {
  if (options.engine == "skyline" && IsProgramOfRanks()) {
    return "kvx-mpi has the sparse engine alone: leave out --engine, or take kvx for the skyline.";
  }
  if (options.engine == "skyline" && !options.outOfCore.empty()) {
    return "--out-of-core is for the sparse engine: leave it out, or --engine skyline.";
  }
  return "";
}

EngineSettings MakeEngineSettings(const EngineOptions& options) {
  EngineSettings settings;
  if (options.engine == "skyline") settings.choice = EngineChoice::Skyline;
  if (options.engine == "sparse" || IsProgramOfRanks()) settings.choice = EngineChoice::Sparse;
  const int usual = IsProgramOfRanks() ? 1 : CountCores();  // other ranks have the other cores
  settings.threads = options.threads > 0 ? options.threads : usual;
  // Up, so that messages, which round down, have the number that was given where it has two digits.
  settings.memory =
      static_cast<std::uint64_t>(std::ceil(options.memory * korvex::BytesPerGigabyte));
  if (options.outOfCore.empty()) return settings;
  std::error_code error;
  const fs::path folder = fs::absolute(fs::u8path(options.outOfCore), error);
  settings.outOfCore = error ? options.outOfCore : folder.lexically_normal().u8string();
  return settings;
}

ExitStatus CheckOutOfCore(const std::string& who, const EngineSettings& settings) {
  if (settings.outOfCore.empty()) return ExitFine;
  const std::string obstacle = FindObstacle(fs::u8path(settings.outOfCore));
  if (obstacle.empty()) return ExitFine;
  Complain(who, "the folder \"" + settings.outOfCore + "\" for the factors " + obstacle + '.');
  return ExitOutputFailed;
}

}  // namespace kvx
