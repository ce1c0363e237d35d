// Times the stages around the solution on one thread, on two, and in two copies of the program side
// by side, which is all that the machine gives.
//
// Two cores of a virtual machine are often halves of one, so two threads cannot take half the time
// of one. Where two copies side by side take the time p, two threads could take p / 2 each for the
// work of one copy; the table shows the ratio to that. A stiffened plate of 40 x 500 shells, and a
// grillage of T girders with a detail model of 20 stations each. The solution is left out: smooth
// displacements stand in for it, since no time depends on their values.
//
// Every measurement is a process of its own, so that none finds the memory of another. The current
// folder receives model files and results, which are removed at the end.
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "deck/write_tables.h"
#include "measure.h"
#include "run/file_names.h"
#include "run/stages.h"
#include "stage_models.h"

namespace {

using Seconds = std::map<std::string, std::vector<double>>;  // stage -> of each round

// Files of a copy begin with this.
std::string Prefix(int copy) { return "copy" + std::to_string(copy) + '-'; }

bool IsSolution(const korvex::Stage& stage) {
  return std::strcmp(stage.name, korvex::SolutionStage.name) == 0;
}

void Displace(korvex::Model& model) {
  for (std::size_t i = 0; i < model.Displacements.size(); ++i) {
    model.Displacements[i] = 1e-3 * std::sin(1e-3 * static_cast<double>(i));
  }
}

// Ends of pipes: of a copy, or of the one that starts its stages.
struct Pipe {
  int read, write;
};

Pipe OpenPipe() {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) std::exit(1);
  return {ends[0], ends[1]};
}

void Send(int pipe) {
  const char byte = 0;
  if (write(pipe, &byte, 1) != 1) std::exit(1);
}

void Wait(int pipe) {
  char byte = 0;
  if (read(pipe, &byte, 1) != 1) std::exit(1);
}

// Does each stage after a byte from `start` and answers with one to `end`.
[[noreturn]] void RunCopy(int copy, int threads, int start, int end) {
  korvex::Job job;
  job.folder = Prefix(copy);
  job.threads = threads;
  korvex::ForAllStages([&](const korvex::Stage& stage) {
    Wait(start);
    if (IsSolution(stage)) {
      Displace(job.model);
    } else {
      stage.work(job);
    }
    Send(end);
  });
  std::_Exit(0);
}

struct Copy {
  Pipe start, end;
  pid_t process;
};

// Times the stages of `copies` processes at once, from the start of both to the end of the last.
void TimeCopies(int copies, int threads, Seconds& seconds) {
  std::vector<Copy> running;
  for (int c = 0; c < copies; ++c) {
    Copy copy{OpenPipe(), OpenPipe(), 0};
    copy.process = fork();
    if (copy.process == 0) RunCopy(c, threads, copy.start.read, copy.end.write);
    running.push_back(copy);
  }
  korvex::ForAllStages([&](const korvex::Stage& stage) {
    const auto begin = std::chrono::steady_clock::now();
    for (const Copy& copy : running) Send(copy.start.write);
    for (const Copy& copy : running) Wait(copy.end.read);
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    if (!IsSolution(stage)) seconds[stage.name].push_back(time.count());
  });
  for (const Copy& copy : running) {
    int status = 0;
    waitpid(copy.process, &status, 0);
    for (const int end : {copy.start.read, copy.start.write, copy.end.read, copy.end.write}) {
      close(end);
    }
  }
}

void RemoveFiles(int copy) {
  std::error_code ignored;
  std::filesystem::remove(Prefix(copy) + korvex::ModelFileName, ignored);
  korvex::ForAllStages([&](const korvex::Stage& stage) {
    if (stage.file != nullptr) std::filesystem::remove(Prefix(copy) + stage.file, ignored);
  });
}

void TimeModel(const korvex::ModelTables& tables, int rounds) {
  const std::string text = WriteTables(tables);
  for (const int copy : {0, 1}) {
    std::ofstream(Prefix(copy) + korvex::ModelFileName, std::ios::binary) << text;
  }
  Seconds one, pair, two;
  for (int round = 0; round < rounds; ++round) {
    TimeCopies(1, 1, one);
    TimeCopies(2, 1, pair);
    TimeCopies(1, 2, two);
  }
  std::printf("%-24s %9s %9s %9s %9s\n", "stage", "1 thread", "2 copies", "2 threads", "ratio");
  korvex::ForAllStages([&](const korvex::Stage& stage) {
    if (IsSolution(stage)) return;
    const double p = korvex::bench::Median(pair[stage.name]);
    const double t = korvex::bench::Median(two[stage.name]);
    std::printf("%-24s %9.4f %9.4f %9.4f %9.2f\n", stage.name,
                korvex::bench::Median(one[stage.name]), p, t, t / (p / 2.0));
  });
  for (const int copy : {0, 1}) RemoveFiles(copy);
}

}  // namespace

// Arguments: the fields along a side of the grillage, 31 (1984 beams) unless given; the rounds, 3.
int main(int count, char** arguments) {
  const int side = count > 1 ? std::atoi(arguments[1]) : 31;
  const int rounds = count > 2 ? std::atoi(arguments[2]) : 3;
  std::printf(
      "plate of 20000 shells, median seconds of %d rounds; ratio = 2 threads / (2 copies / 2)\n",
      rounds);
  TimeModel(korvex::bench::MakeStagePlate(40, 500), rounds);
  std::printf("\ngrillage of %d beams\n", 2 * side * (side + 1));
  TimeModel(korvex::bench::MakeStageGrillage(side), rounds);
  return 0;
}
