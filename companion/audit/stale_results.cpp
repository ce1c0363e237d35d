// What the files are made from, and in which order, is that of run/stages.cpp.
#include "audit/stale_results.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>

#include "audit/detail_file.h"
#include "audit/written_bytes.h"
#include "report/stop.h"
#include "results/average_stresses.h"
#include "results/line_drawing.h"
#include "results/node_displacements.h"
#include "results/shell_stresses.h"
#include "results/stress_files.h"
#include "run/file_names.h"

namespace kvx {

using korvex::Model;

namespace {

// What must be computed before a file is written, each on top of the one before.
enum class Needs { Displacements, Stresses, Averages };

struct ResultKind {
  const char* name;
  bool (*write)(const std::string& fileName, const Model& model, int threads);  // null: see Write
  Needs needs;
};

constexpr std::array<ResultKind, 6> ResultKinds{{
    {korvex::StructureDrawingName, korvex::WriteStructureDrawing, Needs::Displacements},
    {korvex::DisplacementFileName, korvex::WriteNodeDisplacements, Needs::Displacements},
    {korvex::DeformationDrawingName, korvex::WriteDeformationDrawing, Needs::Displacements},
    {korvex::StressFileName, korvex::WriteElementNodeStresses, Needs::Stresses},
    {korvex::AverageNodeStressFileName, korvex::WriteAverageNodeStresses, Needs::Averages},
    {korvex::AverageStressFileName, nullptr, Needs::Averages},
}};

// has: what the model has already; on return at least `needs`.
void Provide(Needs needs, int threads, Model& model, Needs& has) {
  if (has < Needs::Stresses && needs >= Needs::Stresses) {
    korvex::RecoverShellStresses(model, threads);
    has = Needs::Stresses;
  }
  if (has < Needs::Averages && needs >= Needs::Averages) {
    korvex::AverageNodeStresses(model, threads);
    has = Needs::Averages;
  }
}

// A file that is compared with bytes as they come.
struct Comparison {
  std::ifstream stream;
  std::vector<char> block;
  std::uint64_t line = 1;  // of the next byte
  bool isSame = true;      // all bytes so far
  bool hasEnded = false;   // the file is shorter than the bytes
};

void CompareBytes(const char* bytes, std::size_t count, Comparison& comparison) {
  if (!comparison.isSame || comparison.hasEnded) return;
  comparison.block.resize(std::max(comparison.block.size(), count));
  comparison.stream.read(comparison.block.data(), static_cast<std::streamsize>(count));
  const auto there = static_cast<std::size_t>(comparison.stream.gcount());
  const char* block = comparison.block.data();
  const char* difference = std::mismatch(block, block + there, bytes).first;
  comparison.line += static_cast<std::uint64_t>(std::count(block, difference, '\n'));
  comparison.isSame = difference == block + there;
  comparison.hasEnded = comparison.isSame && there < count;
}

bool IsAtEnd(Comparison& comparison) {
  return comparison.stream.peek() == std::ifstream::traits_type::eof() && !comparison.stream.bad();
}

ResultState Refuse(const char* name, const std::string& reason) {
  return {name, ResultFit::Unknown, 0, reason};
}

// Writes the file of this kind. The one with the detail models takes its peaks from them, too.
bool Write(const ResultKind& kind, const std::string& fileName, const ComparisonProgress& progress,
           int threads, SolvedModel& solved) {
  const auto announce = [&] {
    if (progress.before) progress.before(kind.name);
  };
  if (kind.write == nullptr) {
    const DetailWork work{threads, 0, progress.details};
    return WriteDetailFile(fileName, solved.model, work, announce, solved.details);
  }
  announce();
  return kind.write(fileName, solved.model, threads);
}

ResultState Compare(const ResultKind& kind, const std::string& fileName,
                    const ComparisonProgress& progress, int threads, SolvedModel& solved) {
  Comparison comparison;
  comparison.stream.open(fileName, std::ios::binary);
  if (comparison.stream.is_open()) comparison.stream.peek();
  if (!comparison.stream.is_open() || comparison.stream.bad()) {
    return Refuse(kind.name, fileName + " cannot be read.");
  }
  comparison.stream.clear();
  const bool isWhole = TakeWrittenBytes(
      [&](const std::string& name) { return Write(kind, name, progress, threads, solved); },
      [&](const char* bytes, std::size_t count) { CompareBytes(bytes, count, comparison); });
  if (!isWhole) return Refuse(kind.name, std::string(kind.name) + " cannot be made here.");
  if (comparison.hasEnded) return {kind.name, ResultFit::Truncated, comparison.line, ""};
  if (comparison.isSame && IsAtEnd(comparison)) return {kind.name, ResultFit::Same, 0, ""};
  return {kind.name, ResultFit::Differs, comparison.line, ""};
}

}  // namespace

void CompareResults(const std::string& folder, const ComparisonProgress& progress,
                    SolvedModel& solved, std::vector<ResultState>& results, int threads) {
  results.clear();
  Needs has = Needs::Displacements;
  for (const ResultKind& kind : ResultKinds) {
    const std::string fileName = folder + kind.name;
    std::error_code ignored;
    if (!std::filesystem::exists(fileName, ignored)) {
      results.push_back({kind.name, ResultFit::Missing, 0, ""});
      continue;
    }
    try {
      Provide(kind.needs, threads, solved.model, has);
      results.push_back(Compare(kind, fileName, progress, threads, solved));
    } catch (const korvex::Stop& stop) {  // this model has no such result
      results.push_back(Refuse(kind.name, stop.text));
    }
  }
}

}  // namespace kvx
