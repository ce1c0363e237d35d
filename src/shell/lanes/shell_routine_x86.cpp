#include "shell/lanes/shell_lanes.h"

namespace korvex {

ShellRoutines FindShellRoutines(int vectorBits) {
  switch (vectorBits) {
    case 128:
      return {2, AddShells128, FormShells128, RecoverShells128};
    case 256:
      return {4, AddShells256, FormShells256, RecoverShells256};
    case 512:
      return {8, AddShells512, FormShells512, RecoverShells512};
    default:
      return {1, nullptr, nullptr, nullptr};
  }
}

}  // namespace korvex
