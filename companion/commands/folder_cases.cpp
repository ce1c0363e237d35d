#include "commands/folder_cases.h"

#include <algorithm>
#include <system_error>

#include "cases/case_file.h"
#include "commands/load_model.h"
#include "commands/regular_file.h"
#include "report/stop.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

// Whether two names are those of one file. Where one of them is missing, names without links are
// all that there is to compare.
bool AreSame(const fs::path& a, const fs::path& b) {
  std::error_code error;
  const bool isSame = fs::equivalent(a, b, error);
  return error ? a.lexically_normal() == b.lexically_normal() : isSame;
}

}  // namespace

std::vector<fs::path> ListTomlFiles(const fs::path& folder) {
  std::vector<fs::path> files;
  std::error_code error;
  for (fs::directory_iterator it(folder, error), end; !error && it != end; it.increment(error)) {
    if (it->path().extension() == ".toml") files.push_back(it->path().filename());
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool NamesLoads(const fs::path& caseFile, const std::string& loads) {
  std::string text;
  if (!ReadRegularFile(caseFile, text)) return false;
  CaseFile cases;
  try {
    ReadCaseFile(text, cases);
  } catch (const korvex::Stop&) {
    return text.find("[case.") != std::string::npos && text.find(loads) != std::string::npos;
  }
  const fs::path folder = caseFile.parent_path();
  return std::any_of(cases.cases.begin(), cases.cases.end(), [&](const LoadCase& each) {
    return !each.loads.empty() &&
           AreSame(folder / fs::u8path(each.loads), folder / fs::u8path(loads));
  });
}

bool HasCasesBeside(const fs::path& modelFile) {
  const fs::path folder = modelFile.parent_path();
  std::string text;
  if (!ReadRegularFile(folder / CaseFileName, text)) return false;
  CaseFile cases;
  try {
    ReadCaseFile(text, cases);
  } catch (const korvex::Stop&) {
    return false;
  }
  std::error_code error;
  fs::path structure = folder / fs::u8path(cases.structure);
  if (fs::is_directory(structure, error)) structure /= ModelFileName;
  return !cases.cases.empty() && AreSame(structure, modelFile);
}

}  // namespace kvx
