// Output of a stage, in order: its line before, the work, the names of incomplete files, the
// inconsistencies, the memory estimate, its line after. The solution is timed and prints its time
// with its work.
#include "run/run_driver.h"

#include <cstdint>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <new>
#include <stdexcept>

#include "deck/load_text.h"
#include "platform/calc_log_file.h"
#include "platform/clock.h"
#include "platform/notice.h"
#include "report/check_memory.h"
#include "report/stop.h"
#include "report/texts.h"
#include "run/calc_log.h"
#include "run/console.h"
#include "run/file_names.h"
#include "run/show_stop.h"
#include "system/profile.h"

namespace korvex {

namespace {

constexpr int FailureStatus = 1;
constexpr const char* OutOfMemory = "Not enough memory.";

// Warns of a missing model file. The run goes on: the reader fails on the same file and ends it.
void ProbeInputFile() {
  std::ifstream probe;
  if (!OpenInputFile(ModelFileName, probe)) ShowNotice("File Read Error!");
}

// After each text but the last, backspaces move the cursor back, so that the next text overwrites
// it.
void PrintProgress(int percent) {
  if (percent == 100) {
    PrintFormatted("%2d%%Completed.", percent);
  } else {
    PrintFormatted("%2d%%Completed.\b\b\b\b\b\b\b\b\b\b\b\b\b", percent);
  }
}

// Writes the same line to the console and to the log. This is done before the allocation: the line
// warns the user of a large matrix.
void ReportMemoryEstimate(const Job& job, std::ostream& log) {
  const double gigabytes = EstimateGigabytes(job.model.Stiffness);
  WriteMemoryEstimate(gigabytes, std::cout);
  WriteMemoryEstimate(gigabytes, log);
}

// Does the work of the solution. Its console line shows the progress and ends with the time.
void WorkTimed(const Stage& stage, Job& job, std::ostream& log) {
  const std::int64_t frequency = ReadPerformanceFrequency();
  const std::int64_t start = ReadPerformanceCounter();
  PrintFormatted("Solute the equilibrium equations...");
  stage.work(job);
  const std::int64_t end = ReadPerformanceCounter();
  const double seconds =
      (static_cast<double>(end) - static_cast<double>(start)) / static_cast<double>(frequency);
  PrintFormatted("(Solution time:%.2lf seconds)\n", seconds);
  WriteSolutionTime(seconds, log);
}

// Reports the incomplete files and inconsistencies of the stage; clears the inconsistencies.
// incompleteBefore: the number of incomplete files before the stage.
void ReportFindings(std::size_t incompleteBefore, Job& job) {
  for (std::size_t i = incompleteBefore; i < job.incompleteFiles.size(); ++i) {
    ReportIncompleteFile(job.incompleteFiles[i]);
  }
  for (; job.inconsistencies > 0; --job.inconsistencies) ReportInconsistency();
}

void RunStage(const Stage& stage, Job& job, std::ostream& log) {
  const std::size_t incompleteBefore = job.incompleteFiles.size();
  if (stage.before != nullptr) WriteConsoleLine(stage.before);
  if (stage.report == StageReport::SolutionTime) {
    WorkTimed(stage, job, log);
  } else {
    stage.work(job);
  }
  ReportFindings(incompleteBefore, job);
  if (stage.report == StageReport::MemoryEstimate) ReportMemoryEstimate(job, log);
  if (stage.after != nullptr) WriteConsoleLine(stage.after);
}

void CloseLog(std::ofstream& log, Job& job) {
  log.close();
  if (log) return;
  job.incompleteFiles.emplace_back(CalcLogName);
  ReportIncompleteFile(CalcLogName);
}

void RunStages(Job& job, std::ostream& log) {
  ProbeInputFile();
  AssembleSystem(job, log);
  RunStage(SolutionStage, job, log);
  for (const Stage& stage : ResultStages) RunStage(stage, job, log);
  for (const Stage& stage : DetailStages) RunStage(stage, job, log);
  RunStage(ReleaseStage, job, log);
}

// A message box of Windows takes memory itself; a line on standard error does not.
void ShowOutOfMemory() {
  try {
    ShowNotice(OutOfMemory);
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "%s\n", OutOfMemory);
  }
}

// Returns the exit status.
int RunLogged(std::ofstream& log) {
  Job job;
  job.progress = PrintProgress;
  bool isStopped = false;
  try {
    RunStages(job, log);
  } catch (const Stop& stop) {
    ShowStop(stop);
    isStopped = true;
  }
  CloseLog(log, job);  // also after a Stop: a full disk may have cut off the log too
  return isStopped || !job.incompleteFiles.empty() ? FailureStatus : 0;
}

}  // namespace

void AssembleSystem(Job& job, std::ostream& log) {
  for (const Stage& stage : AssemblyStages) RunStage(stage, job, log);
}

int RunKorvex() {
  try {
    std::ofstream CalcLog;
    OpenCalcLog(CalcLog);
    if (CalcLog.is_open()) return RunLogged(CalcLog);
    CheckOpeningMemory();
    ShowNotice(CalcLogFailed);
  } catch (const std::bad_alloc&) {  // a small block, not checked before: see check_memory.h
    ShowOutOfMemory();
  } catch (const std::length_error&) {
    ShowOutOfMemory();
  }
  return FailureStatus;
}

}  // namespace korvex
