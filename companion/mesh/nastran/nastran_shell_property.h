// PSHELL: the plate that it describes, and in what it differs from a plate of one material.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/nastran/nastran_fields.h"

namespace kvx {

struct ShellPlate {
  std::int64_t material = 0;  // its number; 0: none
  double thickness = 0.0;     // 0: the elements give it
  std::string lacks;          // "": it can be taken
};

// Reads a PSHELL card and reports what is not taken of it.
void ReadShellProperty(const NastranRow& row, ShellPlate& plate, ImportReport& report);

}  // namespace kvx
