// The exit statuses of kvx. Those from 64 on have the meanings of BSD's sysexits.h (1988), which
// scripts and make know.
#pragma once

namespace kvx {

enum ExitStatus : int {
  ExitFine = 0,
  ExitFindings = 1,       // errors in the model or its results, or warnings with --strict
  ExitUsage = 64,         // a command line that makes no sense
  ExitUnusableData = 65,  // the input was read but cannot be worked with
  ExitMissingInput = 66,  // the input is not there or cannot be read
  ExitFault = 70,         // a fault of this program
  ExitOutputFailed = 73,  // an output that cannot be written
  ExitInterrupted = 130,  // by the user: 128 and the number of the signal, as shells say it
};

}  // namespace kvx
