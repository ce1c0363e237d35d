#include "engine/result_folder.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <system_error>
#include <utility>

#include "audit/detail_file.h"
#include "audit/displacement_file.h"
#include "audit/whole_file.h"
#include "platform/calc_log_file.h"
#include "report/stop.h"
#include "run/calc_log.h"
#include "run/file_names.h"
#include "run/stages.h"
#include "system/profile.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

[[noreturn]] void StopAt(const std::string& name, const std::string& reason) {
  throw korvex::Stop{korvex::StopKind::ResultFile,
                     name + " cannot be written" + (reason.empty() ? "" : ": " + reason) + '.'};
}

// What the C library said last; "" if it has said nothing.
std::string LastReason() {
  return errno == 0 ? std::string() : std::generic_category().message(errno);
}

void CheckSize(const korvex::Model& model) {
  if (model.Displacements.size() == static_cast<std::size_t>(model.NEQ)) return;
  throw korvex::Stop{korvex::StopKind::Notice,
                     "There are " + std::to_string(model.Displacements.size()) +
                         " displacements for " + std::to_string(model.NEQ) + " equations."};
}

// Writes a file. write: returns whether it was written whole. What cannot be written gets a message
// with its name and the reason.
template <typename Write>
void WriteNamed(const char* name, const Write& write) {
  bool isWhole = false;
  errno = 0;
  try {
    isWhole = write();
  } catch (const korvex::Stop& stop) {
    if (stop.kind != korvex::StopKind::ResultFile) throw;
  }
  if (!isWhole) StopAt(name, LastReason());
}

void RunStage(const korvex::Stage& stage, const ResultWriting& writing, korvex::Job& job) {
  if (stage.file == nullptr) return stage.work(job);
  if (writing.before) writing.before(stage.file);
  WriteNamed(stage.file, [&] {
    stage.work(job);
    return job.incompleteFiles.empty();
  });
}

// In the place of DetailStages, which hold all detail models at once.
void WriteDetails(const ResultWriting& writing, const korvex::Job& job, DetailPeaks& details) {
  const char* const name = korvex::AverageStressFileName;
  const DetailWork work{writing.threads, writing.detailMemory, writing.detailShare};
  const auto beforeLast = [&] {
    if (writing.before) writing.before(name);
    errno = 0;  // what the detail models have left there is no reason of the file
  };
  WriteNamed(name, [&] {
    return WriteDetailFile(job.folder + name, job.model, work, beforeLast, details);
  });
}

// The stages that need no matrix. Those of AssemblyStages that remain have been done.
void RunStages(const ResultWriting& writing, korvex::Job& job, DetailPeaks& details) {
  for (const korvex::Stage& stage : korvex::AssemblyStages) {
    if (stage.file != nullptr) RunStage(stage, writing, job);
  }
  for (const korvex::Stage& stage : korvex::ResultStages) RunStage(stage, writing, job);
  WriteDetails(writing, job, details);
}

void WriteLog(double gigabytes, double seconds, const std::string& folder) {
  errno = 0;
  std::ofstream log(fs::path(folder) / korvex::CalcLogFile(), std::ios::out | std::ios::trunc);
  if (log.is_open()) {
    korvex::WriteMemoryEstimate(gigabytes, log);
    korvex::WriteSolutionTime(seconds, log);
    log.close();
  }
  if (!log) StopAt(korvex::CalcLogName, LastReason());
}

// Without a text there is no file: an earlier one is of another state of the model, and stays
// unused.
void WriteSolution(std::string_view text, UnfinishedFolder& unfinished) {
  if (text.empty()) {
    const auto isIt = [](const FileToMake& file) { return file.name == SolutionFileName; };
    auto& files = unfinished.files;
    files.erase(std::remove_if(files.begin(), files.end(), isIt), files.end());
    return;
  }
  WriteWholeFile(unfinished.prefix + SolutionFileName,
                 [&](std::ostream& stream) { stream << text; });
}

// The memory of the matrix, from its profile.
double EstimateGigabytes(korvex::Model& model) {
  model.Stiffness = {};
  korvex::BuildProfile(model);
  korvex::ComputeDiagonalAddresses(model.Stiffness);
  const double gigabytes = korvex::EstimateGigabytes(model.Stiffness);
  model.Stiffness = {};
  return gigabytes;
}

}  // namespace

std::vector<FileToMake> NameResultFiles() {
  std::vector<FileToMake> files;
  const auto add = [&](const korvex::Stage& stage) {
    if (stage.file != nullptr) files.push_back({stage.file, stage.file});
  };
  korvex::ForAllStages(add);
  files.push_back({korvex::CalcLogFile(), korvex::CalcLogName});
  files.push_back({SolutionFileName, SolutionFileName});
  // The last one: where it is, all others are.
  files.push_back({ExactDisplacementFileName, ExactDisplacementFileName});
  return files;
}

void WriteResults(const ResultWriting& writing, korvex::Model& model, DetailPeaks& details,
                  UnfinishedFolder& unfinished) {
  CheckSize(model);
  const double gigabytes = EstimateGigabytes(model);
  korvex::Job job;
  job.folder = unfinished.prefix;
  job.model = std::move(model);
  job.threads = writing.threads;
  RunStages(writing, job, details);
  WriteLog(gigabytes, writing.seconds, job.folder);
  WriteSolution(writing.solution, unfinished);
  if (writing.before) writing.before(ExactDisplacementFileName);
  WriteDisplacementFile(job.folder + ExactDisplacementFileName,
                        IdentifyModelFile(writing.modelText), job.model.Displacements);
  MoveFiles(unfinished);
  korvex::LinkCalcLog(unfinished.place);
  model = std::move(job.model);
}

std::vector<std::string> ListResultFiles(const std::string& folder) {
  std::vector<std::string> names;
  std::error_code error;
  for (const FileToMake& file : NameResultFiles()) {
    if (fs::is_regular_file(fs::path(folder) / file.name, error)) names.push_back(file.shown);
  }
  return names;
}

bool HasStaleResults(const std::string& folder, std::string_view modelText) {
  ModelFileId file;
  return ReadModelOfDisplacements(folder + ExactDisplacementFileName, file) ==
             DisplacementFit::Fits &&
         file != IdentifyModelFile(modelText);
}

namespace {

// The second name of the log leads nowhere once the log is gone.
void RemoveLogLink(const fs::path& folder) {
  std::error_code error;
  const fs::path link = folder / fs::u8path(korvex::CalcLogName);
  if (fs::is_symlink(fs::symlink_status(link, error)) && !fs::exists(link, error)) {
    fs::remove(link, error);
  }
}

}  // namespace

std::vector<std::string> RemoveStaleResults(const std::string& folder, std::string_view modelText) {
  if (!HasStaleResults(folder, modelText)) return {};
  std::vector<std::string> names = ListResultFiles(folder);
  // displacements.bin is the last one: until all others are gone, it says what they are.
  for (const FileToMake& file : NameResultFiles()) {
    std::error_code error;
    const fs::path path = fs::path(folder) / file.name;
    if (!fs::is_regular_file(path, error)) continue;
    fs::remove(path, error);
    if (error) {
      throw korvex::Stop{korvex::StopKind::ResultFile,
                         file.shown + " is stale and cannot be removed: " + error.message() + '.'};
    }
  }
  RemoveLogLink(folder);
  return names;
}

}  // namespace kvx
