// A case file among the places of a command, and the folder where `kvx cases` has left its results.
#pragma once

#include <filesystem>
#include <string>

namespace kvx {

// Whether a place is a case file: *.toml.
bool IsCaseFile(const std::string& place);

// What is said to --results where no place is a case file.
inline constexpr const char* ResultsWithoutCases =
    "--results is for a file of load cases: name it, too.";

// The folder of results: `named` by --results, or "results" beside the file. Both as the user has
// written them.
std::filesystem::path ResultsOfCases(const std::string& file, const std::string& named);

// That the folder of results lacks the case, and what to do.
std::string DescribeMissingCase(const std::string& file, const std::string& name,
                                const std::filesystem::path& results);

}  // namespace kvx
