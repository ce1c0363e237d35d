// A folder for one test, deleted with its contents when the test ends.
#pragma once

#include <filesystem>
#include <string>

namespace korvex::test {

// Created empty under the system's folder for temporary files, removed on destruction.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  const std::filesystem::path& Path() const { return path_; }

 private:
  std::filesystem::path path_;
};

// A TempFolder that is the current folder of the process while the object exists.
class WorkingFolder {
 public:
  WorkingFolder();
  ~WorkingFolder();
  WorkingFolder(const WorkingFolder&) = delete;
  WorkingFolder& operator=(const WorkingFolder&) = delete;

  const std::filesystem::path& Path() const { return folder_.Path(); }

 private:
  std::filesystem::path before_;
  TempFolder folder_;
};

// The text of a file, its lines ended by a line feed on every system; empty where there is none.
std::string ReadFile(const std::filesystem::path& file);

// Writes the bytes as they are.
void WriteFile(const std::filesystem::path& file, const std::string& bytes);

}  // namespace korvex::test
