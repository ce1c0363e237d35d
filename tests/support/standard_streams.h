// The process's own standard input and output as files of a test.
#pragma once

#include <string>

#include "support/temp_folder.h"

namespace korvex::test {

// As long as it exists, standard output goes into a file, where it is seen while the program still
// runs.
class StdoutInFile {
 public:
  StdoutInFile();
  ~StdoutInFile();
  StdoutInFile(const StdoutInFile&) = delete;
  StdoutInFile& operator=(const StdoutInFile&) = delete;

  // The text that has arrived.
  std::string Received() const { return ReadFile(File()); }
  std::filesystem::path File() const { return folder_.Path() / "out"; }

 private:
  TempFolder folder_;
  int saved_;
};

// Gives the process `input` as its standard input, from a file in `folder`.
void SetInput(const TempFolder& folder, const std::string& input);

}  // namespace korvex::test
