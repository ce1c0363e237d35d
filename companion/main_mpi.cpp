// The program kvx-mpi: kvx run and kvx cases for several processes that share a solution, which
// MPI starts. See docs/large-models.md.
//
// Rank 0 is kvx; the others help it (ranks/ranks.h).
#include <exception>
#include <new>
#include <string>
#include <vector>

#include "commands/command_line.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "commands/terminal.h"
#include "commands/watched_call.h"
#include "engine/serve_ranks.h"
#include "ranks/ranks.h"
#include "sparse/held_signals.h"

namespace kvx {
namespace {

constexpr const char* Help =
    "kvx run and kvx cases for several processes that share a solution by the sparse engine\n"
    "\n"
    "  mpirun -n N kvx-mpi run [DIR...] [OPTIONS]\n"
    "  mpirun -n N kvx-mpi cases [FILE] [OPTIONS]\n"
    "\n"
    "Options and results are those of kvx: \"kvx-mpi run --help\", \"kvx-mpi cases --help\". The\n"
    "engine is always the sparse one. --memory is that of each process, --threads are those that "
    "the\n"
    "first one has for stresses and files, --dry-run tells the work and memory of each.\n"
    "\n"
    "  kvx-mpi --version    version\n"
    "  kvx-mpi licenses     libraries and their licences\n";

bool WantsHelp(const std::vector<std::string>& arguments) {
  return arguments.size() == 1 && (arguments.front() == "help" || arguments.front() == "-h" ||
                                   arguments.front() == "--help");
}

// Why the command line is not one of this program; empty: it is.
std::string RefuseCommand(const std::vector<std::string>& arguments) {
  const std::string first = arguments.empty() ? "" : arguments.front();
  const bool isOwn =
      first == "run" || first == "cases" || first == "licenses" || first.rfind('-', 0) == 0;
  if (isOwn) return "";
  const std::string what =
      first.empty() ? "which command?" : "it has no command \"" + first + "\".";
  return what +
         " kvx-mpi run and kvx-mpi cases are those of kvx, over MPI; for all others take kvx.";
}

int Run(int argc, char** argv) {
  try {
    PrepareConsole();
    const std::vector<std::string> arguments = ListArguments(argc, argv);
    if (WantsHelp(arguments)) return WriteOutput(Help);
    const std::string refusal = RefuseCommand(arguments);
    if (refusal.empty()) return RunCommandLine(arguments);
    Complain("kvx-mpi", refusal);
    return ExitUsage;
  } catch (const Interrupted&) {
    Complain("kvx-mpi", "interrupted.");
    return ExitInterrupted;
  } catch (const std::bad_alloc&) {
    Complain("kvx-mpi", "there is not enough memory.");
    return ExitUnusableData;
  } catch (const std::exception& error) {
    Complain("kvx-mpi",
             std::string("this is a fault of kvx, not yours. Please report it: ") + error.what());
  } catch (...) {
    Complain("kvx-mpi", "this is a fault of kvx, not yours. Please report it.");
  }
  return ExitFault;
}

// Another rank has nobody to throw to.
void Serve() {
  try {
    CatchInterrupts();
    return ServeRanks(RunWatchedInSilence);
  } catch (const std::bad_alloc&) {
    Complain("kvx-mpi", "there is not enough memory on rank " + std::to_string(RankOfThis()) + '.');
    AbortRanks(ExitUnusableData);
  } catch (...) {
    Complain("kvx-mpi", "this is a fault of kvx, not yours. Please report it.");
    AbortRanks(ExitFault);
  }
}

}  // namespace
}  // namespace kvx

int main(int argc, char** argv) {
  kvx::CallHeld([&] { kvx::BeginRanks(argc, argv); });
  int status = 0;
  if (kvx::RankOfThis() == 0) {
    status = kvx::Run(argc, argv);
    kvx::Tell(kvx::RankTask::End);
  } else {
    kvx::Serve();
  }
  kvx::EndRanks();
  return status;
}
