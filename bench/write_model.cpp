// Writes a model that others are measured with as the model file of a folder.
//
//   write_model MODEL SIZE FOLDER
//
// MODEL: plate, grillage, ring, box, girders (named_models.h). SIZE: thousands of equations, about.
// FOLDER: is made where it is missing.
#include <cstdio>
#include <cstdlib>
#include <filesystem>

#include "named_models.h"
#include "run/file_names.h"

int main(int count, char** arguments) {
  if (count != 4) {
    std::fputs("usage: write_model MODEL SIZE FOLDER\n", stderr);
    return EXIT_FAILURE;
  }
  korvex::ModelTables tables;
  if (!korvex::bench::MakeNamedModel(arguments[1], 1000.0 * std::atof(arguments[2]), tables)) {
    std::fprintf(stderr, "There is no model \"%s\".\n", arguments[1]);
    return EXIT_FAILURE;
  }
  std::error_code error;
  std::filesystem::create_directories(arguments[3], error);
  const std::filesystem::path file = std::filesystem::path(arguments[3]) / korvex::ModelFileName;
  if (!korvex::bench::WriteModelFile(tables, file.string())) {
    std::fprintf(stderr, "%s cannot be written.\n", file.string().c_str());
    return EXIT_FAILURE;
  }
  std::printf("%s: %zu equations, %zu shells, %zu triangles, %zu beams\n", file.string().c_str(),
              6 * tables.Nodes.size(), tables.Shell4Properties.size(),
              tables.Shell3Properties.size(), tables.BeamProperties.size());
  return EXIT_SUCCESS;
}
