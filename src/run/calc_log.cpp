#include "run/calc_log.h"

#include "run/console.h"

namespace korvex {

void WriteMemoryEstimate(double gigabytes, std::ostream& stream) {
  WriteText(stream, "The global stiffness matrix will occupy ");
  stream << gigabytes;
  WriteText(stream, " GB of memory space.");
  WriteLineEnd(stream);
}

void WriteSolutionTime(double seconds, std::ostream& stream) {
  WriteText(stream, "Solution time:");
  stream << seconds;
  WriteText(stream, " seconds.");
  WriteLineEnd(stream);
}

}  // namespace korvex
