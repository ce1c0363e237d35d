// Uses file descriptors, which POSIX and Windows both have.
#include "support/standard_streams.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>

namespace korvex::test {

StdoutInFile::StdoutInFile() : saved_(dup(STDOUT_FILENO)) {
  std::fflush(stdout);
  std::FILE* stream = std::fopen(File().string().c_str(), "w");
  dup2(fileno(stream), STDOUT_FILENO);
  std::fclose(stream);
}

StdoutInFile::~StdoutInFile() {
  std::fflush(stdout);
  dup2(saved_, STDOUT_FILENO);
  close(saved_);
}

void SetInput(const TempFolder& folder, const std::string& input) {
  const std::string file = (folder.Path() / "in").string();
  WriteFile(file, input);
  ASSERT_NE(std::freopen(file.c_str(), "r", stdin), nullptr);
}

}  // namespace korvex::test
