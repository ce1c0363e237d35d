// The program kvx, the companion of korvex: checks models, solves them and reads their results. See
// docs/companion.md.
//
// All commands are in commands/. This file handles only what none of them expects.
#include <exception>
#include <new>
#include <string>

#include "commands/command_line.h"
#include "commands/progress.h"
#include "commands/speak.h"
#include "commands/terminal.h"

int main(int argc, char** argv) {
  try {
    kvx::PrepareConsole();
    return kvx::RunCommandLine(kvx::ListArguments(argc, argv));
  } catch (const kvx::Interrupted&) {
    kvx::Complain("kvx", "interrupted.");
    return kvx::ExitInterrupted;
  } catch (const std::bad_alloc&) {
    kvx::Complain("kvx", "there is not enough memory.");
    return kvx::ExitUnusableData;
  } catch (const std::exception& error) {
    kvx::Complain(
        "kvx", std::string("this is a fault of kvx, not yours. Please report it: ") + error.what());
  } catch (...) {
    kvx::Complain("kvx", "this is a fault of kvx, not yours. Please report it.");
  }
  return kvx::ExitFault;
}
