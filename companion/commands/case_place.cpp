#include "commands/case_place.h"

namespace kvx {

namespace fs = std::filesystem;

bool IsCaseFile(const std::string& place) { return fs::u8path(place).extension() == ".toml"; }

fs::path ResultsOfCases(const std::string& file, const std::string& named) {
  if (!named.empty()) return fs::u8path(named);
  return fs::u8path(file).parent_path() / "results";
}

std::string DescribeMissingCase(const std::string& file, const std::string& name,
                                const fs::path& results) {
  return '"' + file + "\": there are no results of case \"" + name + "\" in \"" +
         results.u8string() +
         "\". Run kvx cases first; where it had -o DIR, name that folder by --results.";
}

}  // namespace kvx
