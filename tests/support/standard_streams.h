// Redirects the standard input and output of the test's own process to files.
#pragma once

#include <string>

#include "support/temp_folder.h"

namespace korvex::test {

// While the object exists, standard output goes into a file, which tests can read at once.
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
