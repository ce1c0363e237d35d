#include "sparse/mumps_error.h"

#include <cmath>

#include "base/number_text.h"

namespace kvx {

namespace {

constexpr double BytesPerGigabyte = 1073741824.0;

// Negative details count millions.
double CountOf(std::int32_t detail) {
  return detail < 0 ? -1e6 * static_cast<double>(detail) : static_cast<double>(detail);
}

std::string NameAlternative(bool isOutOfCore) {
  return isOutOfCore ? "Use a machine with more memory, or a coarser mesh."
                     : "Give a folder for the factors (--out-of-core DIR), or use a machine with "
                       "more memory.";
}

}  // namespace

bool IsSpaceTooSmall(std::int32_t status) {
  return status == -8 || status == -9 || status == -14 || status == -15 || status == -17 ||
         status == -20;
}

std::string DescribeMumpsError(std::int32_t status, std::int32_t detail, bool isOutOfCore) {
  const std::string number =
      " (MUMPS: " + std::to_string(status) + ", " + std::to_string(detail) + ")";
  switch (status) {
    case -7:
    case -13:
      return "Not enough memory for the sparse factorisation: a table of " +
             std::to_string(static_cast<std::uint64_t>(CountOf(detail))) +
             " numbers cannot be had" + number + ". " + NameAlternative(isOutOfCore);
    case -8:
    case -9:
    case -14:
    case -15:
    case -17:
    case -20:
      return "The sparse factorisation takes many times the memory that was foreseen" + number +
             ". The skyline is not concerned: --engine skyline.";
    case -19:
      return "Not enough memory for the sparse factorisation" + number + ". " +
             NameAlternative(isOutOfCore);
    case -90:
      return "The factors cannot be written to or read from the folder for them: the disk is full, "
             "or the folder cannot be written to" +
             number + ". Give another folder (--out-of-core DIR).";
    default:
      return "The sparse factorisation failed" + number +
             ". The skyline is not concerned: --engine skyline.";
  }
}

std::string GigabyteText(std::uint64_t bytes) {
  korvex::NumberBuffer buffer;
  const double gigabytes = static_cast<double>(bytes) / BytesPerGigabyte;
  const double unit = gigabytes < 1.0 ? 0.01 : 0.1;  // more digits would claim too much
  std::string text(korvex::FormatNumber(std::ceil(gigabytes / unit) * unit, buffer));
  return text + " GB";
}

std::string DescribeMemory(std::uint64_t needed, std::uint64_t allowed, bool isOutOfCore) {
  return "The sparse factorisation takes " + GigabyteText(needed) + "; it may take " +
         GigabyteText(allowed) + ". " + NameAlternative(isOutOfCore);
}

}  // namespace kvx
