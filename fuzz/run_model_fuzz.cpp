// Fuzz target of the whole run: any bytes as the model file of a folder of its own.
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_target.h"
#include "run/run_driver.h"

namespace {

namespace fs = std::filesystem;

// A folder for this process; under TMPDIR, which may be one in memory.
fs::path MakeFolder() {
  std::string name = (fs::temp_directory_path() / "korvex-fuzz-XXXXXX").string();
  if (mkdtemp(name.data()) == nullptr) std::abort();
  return name;
}

const fs::path folder = MakeFolder();  // NOLINT(cert-err58-cpp): a target without it is no use

}  // namespace

// The fuzzer itself stays where it was started: its corpus may have a relative name.
int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const fs::path home = fs::current_path();
  fs::current_path(folder);
  std::ofstream("fem_solving.txt", std::ios::binary) << std::string(data, data + size);
  const int status = korvex::RunKorvex();
  fs::current_path(home);
  if (status != 0 && status != 1) std::abort();
  return 0;
}
