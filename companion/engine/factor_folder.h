// The folder for the factors out of core: "kvx-factors-1" or so, in the one that the user gives.
//
// It is removed with all its files when the object goes. A lock (file_lock.h) tells what a killed
// run has left: the next one that is given the same folder removes that. Where the file system
// knows no locks nothing is removed, and each run makes a folder that was not there. Links, and
// folders with anything but the files of such runs, are never touched.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

#include "engine/file_lock.h"

namespace kvx {

struct FactorFolder {
  std::filesystem::path path;  // empty: not made
  FileLock lock;

  FactorFolder() = default;
  ~FactorFolder();
  FactorFolder(const FactorFolder&) = delete;
  FactorFolder& operator=(const FactorFolder&) = delete;
};

// Removes what killed runs have left, and makes one.
// parent: UTF-8. Throws a Stop (StopKind::ResultFile) where it is no folder that can be written to,
// and where all names are taken.
void MakeFactorFolder(const std::string& parent, FactorFolder& folder);

// Both parts of that, for processes that share the folder: all have to have removed before one
// makes its own, since a folder that has just been made looks like one that was left. first: the
// number of the first name that is tried, from 1 on; each process has another one.
void RemoveLeftFactors(const std::string& parent);
void TakeFactorFolder(const std::string& parent, int first, FactorFolder& folder);

// Removes it with all its files, as the end of the object does; also while a factorisation writes
// there that will not be used. Does nothing where it was not made.
void RemoveFactorFolder(FactorFolder& folder);

// The bytes that the user may still write there; a very large number where the system does not say.
std::uint64_t ReadFreeDisk(const std::string& parent);

}  // namespace kvx
