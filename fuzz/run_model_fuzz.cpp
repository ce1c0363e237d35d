// Fuzz target of the whole run: any bytes as the model file.
//
// The run takes place in a temporary folder and must end with the status 0 or 1.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_target.h"
#include "run/run_driver.h"

namespace {

namespace fs = std::filesystem;

// Makes a folder for this process under TMPDIR, which may be in memory.
fs::path MakeFolder() {
  std::string name = (fs::temp_directory_path() / "korvex-fuzz-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

const fs::path folder = MakeFolder();  // NOLINT(cert-err58-cpp): without it the target cannot run

}  // namespace

// The directory is changed only during the run, because the fuzzer's corpus may have a relative
// name.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fs::path home = fs::current_path();
  fs::current_path(folder);
  std::ofstream("fem_solving.txt", std::ios::binary) << std::string(data, data + size);
  const int status = korvex::RunKorvex();
  fs::current_path(home);
  if (status != 0 && status != 1) std::abort();
  return 0;
}
