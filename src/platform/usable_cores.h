// The cores that this process may use.
//
// Fewer than the machine has, where a queue of jobs, a container or `taskset` has bound the process
// to some of them, or where its container limits the time that it may take of them.
#pragma once

namespace korvex {

// One at least; 1 also where the system does not tell.
int CountUsableCores();

}  // namespace korvex
