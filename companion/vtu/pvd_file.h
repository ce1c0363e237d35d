// A collection of VTK's XML format (.pvd): several files as one data set in ParaView, each at a
// time of its own. Here the times count load cases.
#pragma once

#include <string>
#include <vector>

namespace kvx {

struct PvdEntry {
  std::string name;  // of the load case; any UTF-8
  std::string file;  // as from the folder of the collection, with slashes, UTF-8
};

// The bytes of the file. Entry k has the time k.
std::string PvdText(const std::vector<PvdEntry>& entries);

}  // namespace kvx
