// The stages of a run, in order.
#include "model/run_driver.h"

#include <cstdint>
#include <fstream>
#include <new>
#include <stdexcept>

#include "beamshell/average_stress_file.h"
#include "beamshell/generate_beam_shells.h"
#include "dxf/line_drawing.h"
#include "model/model.h"
#include "model/read_input_file.h"
#include "platform/calc_log_file.h"
#include "platform/clock.h"
#include "platform/console.h"
#include "platform/notice.h"
#include "platform/stop_run.h"
#include "results/average_stresses.h"
#include "results/node_displacements.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "system/assemble_system.h"
#include "system/solve_skyline.h"

namespace korvex {

namespace {

constexpr const char* OutOfMemory = "Not enough memory.";

// Warns of a missing model file. The run goes on: the reader fails on the same file and ends it.
void ProbeInputFile() {
  std::ifstream probe;
  if (!OpenInputFile("fem_solving.txt", probe)) ShowNotice("File Read Error!");
}

// Solves the system; the console line holds the progress and ends with the time.
void SolveTimed(Model& model, std::ostream& log) {
  const std::int64_t frequency = ReadPerformanceFrequency();
  const std::int64_t start = ReadPerformanceCounter();
  PrintFormatted("Solute the equilibrium equations...");
  SolveSkyline(model.Stiffness, model.LoadVector, model.Displacements, SolverProgress::Printed);
  const std::int64_t end = ReadPerformanceCounter();
  const double seconds =
      (static_cast<double>(end) - static_cast<double>(start)) / static_cast<double>(frequency);
  PrintFormatted("(Solution time:%.2lf seconds)\n", seconds);

  WriteText(log, "Solution time:");
  log << seconds;
  WriteText(log, " seconds.");
  WriteLineEnd(log);
}

void WriteResults(Model& model) {
  WriteConsoleLine("Post-processing in progress...");
  WriteNodeDisplacements(model);
  WriteConsoleLine("\tDeformation result file Node_Dis.txt, generated.");
  WriteDeformationDrawing("deformation.dxf", model);
  RecoverShellStresses(model);
  WriteElementNodeStresses(model);
  AverageNodeStresses(model);
  WriteAverageNodeStresses(model);
  WriteConsoleLine("\tShell element average node stress.txt, generated.");
  WriteConsoleLine(
      "\tGenerating Beam-Shells. The detailed stress calculation may take a considerable amount of "
      "time. Please wait patiently...");
  GenerateBeamShells(model);
  WriteAverageStressFile("Korvex_AverageStrs.txt", model);
}

void CloseLog(std::ofstream& log) {
  log.close();
  if (!log) ReportIncompleteFile(Utf8CalcLogName);
}

void RunLoggedStages(std::ofstream& log) {
  ProbeInputFile();
  Model model;
  AssembleSystem(model, log);
  SolveTimed(model, log);
  WriteResults(model);
  ReleaseModel(model);
  WriteConsoleLine("Post-processing completed.");
}

void RunStages() {
  std::ofstream CalcLog;
  OpenCalcLog(CalcLog);
  if (!CalcLog.is_open()) {
    // "计算日志输出失败!" (writing the calculation log failed)
    StopWithNotice(
        "\xE8\xAE\xA1\xE7\xAE\x97\xE6\x97\xA5\xE5\xBF\x97"
        "\xE8\xBE\x93\xE5\x87\xBA\xE5\xA4\xB1\xE8\xB4\xA5!");
  }
  try {
    RunLoggedStages(CalcLog);
  } catch (const RunStopped&) {
    CloseLog(CalcLog);  // what stopped the run, a full disk perhaps, may have cut the log short too
    throw;
  }
  CloseLog(CalcLog);
}

}  // namespace

int RunKorvex() {
  const int incompleteBefore = CountIncompleteFiles();
  try {
    RunStages();
  } catch (const RunStopped& stopped) {
    return stopped.exitStatus;
  } catch (const std::bad_alloc&) {  // a block of a size that no file decides: see check_memory.h
    ShowNotice(OutOfMemory);
    return 1;
  } catch (const std::length_error&) {
    ShowNotice(OutOfMemory);
    return 1;
  }
  return CountIncompleteFiles() == incompleteBefore ? 0 : 1;
}

}  // namespace korvex
