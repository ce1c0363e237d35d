#include "sparse/mumps_error.h"

#include "finding/amount_text.h"
#include "ranks/ranks.h"

namespace kvx {

namespace {

// Negative details count millions.
double CountOf(std::int32_t detail) {
  return detail < 0 ? -1e6 * static_cast<double>(detail) : static_cast<double>(detail);
}

std::string NameWaysOut(const FactorMemory& memory) {
  std::string text;
  if (!memory.isOutOfCore) text += "keep the factors on a disk (--out-of-core DIR), ";
  if (memory.isLimitGiven) text += "allow more (--memory GB), ";
  text += IsProgramOfRanks()
              ? "start more ranks, on more machines, or use machines with more memory."
              : "see whether the skyline fits (--engine skyline) once kvx renumber has ordered the "
                "nodes, share the work among several machines (kvx-mpi), or use one with more "
                "memory.";
  return "Ways out: " + text;
}

std::string NameOtherEngine() {
  const std::string engine = IsProgramOfRanks() ? "kvx run --engine skyline" : "--engine skyline";
  return ". The skyline is not concerned: " + engine + '.';
}

}  // namespace

bool IsSpaceTooSmall(std::int32_t status) {
  return status == -8 || status == -9 || status == -14 || status == -15 || status == -17 ||
         status == -19 || status == -20;
}

std::string DescribeMumpsError(std::int32_t status, std::int32_t detail,
                               const FactorMemory& memory) {
  const std::string number =
      " (MUMPS: " + std::to_string(status) + ", " + std::to_string(detail) + ")";
  switch (status) {
    case -7:
    case -13:
      return "Not enough memory for the sparse factorisation: a table of " +
             std::to_string(static_cast<std::uint64_t>(CountOf(detail))) +
             " numbers cannot be had" + number + ". " + DescribeMemory(memory);
    case -8:
    case -9:
    case -14:
    case -15:
    case -17:
    case -19:
    case -20:
      if (memory.needed <= memory.allowed) {  // and nothing that is allowed would help
        return "The sparse factorisation takes many times the memory that was foreseen" + number +
               NameOtherEngine();
      }
      return "The sparse factorisation takes more memory than was foreseen" + number + ". " +
             DescribeMemory(memory);
    case -90:
      return "The factors cannot be written to or read from the folder for them: the disk is full, "
             "or the folder cannot be written to" +
             number + ". Give another folder (--out-of-core DIR).";
    default:
      return "The sparse factorisation failed" + number + NameOtherEngine();
  }
}

std::string DescribeMemory(const FactorMemory& memory) {
  return "The sparse solution takes " + GigabyteText(memory.needed) +
         ", now that its matrix is known (the prediction was an estimate); " +
         (memory.isLimitGiven ? "it may take " + AllowedText(memory.allowed)
                              : "there are " + FreeText(memory.allowed)) +
         ". " + NameWaysOut(memory);
}

}  // namespace kvx
