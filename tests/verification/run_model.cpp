#include "verification/run_model.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "support/keep_model.h"
#include "support/run_program.h"
#include "support/temp_folder.h"

namespace korvex::book {

namespace {

// Reads a result file number by number.
class NumberReader {
 public:
  explicit NumberReader(const std::filesystem::path& file)
      : name_(file.filename().string()), text_(test::ReadFile(file)), at_(text_.c_str()) {}

  // The next number. Only `separators` may stand before it.
  double Next(const char* separators = " \n:,()") {
    at_ += std::strspn(at_, separators);
    char* end = nullptr;
    const double value = std::strtod(at_, &end);
    if (end == at_) throw std::runtime_error(name_ + ": no number where one is expected");
    at_ = end;
    return value;
  }

  int NextInt() { return static_cast<int>(Next()); }

  // Moves behind the next `word`; false where there is none.
  bool SkipPast(const char* word) {
    const char* found = std::strstr(at_, word);
    if (found == nullptr) return false;
    at_ = found + std::strlen(word);
    return true;
  }

  void Expect(const char* word) {
    if (!SkipPast(word)) throw std::runtime_error(name_ + ": no " + word);
  }

 private:
  std::string name_;
  std::string text_;
  const char* at_;
};

Six NextSix(NumberReader& reader) {
  Six six{};
  for (double& value : six) value = reader.Next();
  return six;
}

std::vector<Six> ReadDisplacements(const std::filesystem::path& file, std::size_t nodes) {
  NumberReader reader(file);
  reader.Expect("rz");
  std::vector<Six> displacements;
  for (std::size_t n = 0; n < nodes; ++n) {
    if (reader.NextInt() != static_cast<int>(n)) throw std::runtime_error("node out of order");
    displacements.push_back(NextSix(reader));
  }
  return displacements;
}

// Reads six stresses and the equivalent stress of von Mises, which must follow from the six.
Six NextStresses(NumberReader& reader) {
  constexpr double FileDigits = 1e-5;  // six digits, relative to the sum of the six components
  const Six s = NextSix(reader);
  const double SE = reader.Next();
  double size = 0.0;
  for (const double component : s) size += std::fabs(component);
  const double shear = s[3] * s[3] + s[4] * s[4] + s[5] * s[5];
  const double normal =
      s[0] * s[0] + s[1] * s[1] + s[2] * s[2] - s[0] * s[1] - s[1] * s[2] - s[2] * s[0];
  if (!(std::fabs(SE - std::sqrt(normal + 3 * shear)) <= FileDigits * size)) {
    throw std::runtime_error("an equivalent stress is not that of its components");
  }
  return s;
}

// Reads one face of a corner: its node number and its stresses.
Six NextFace(NumberReader& reader, int& node) {
  node = reader.NextInt();
  return NextStresses(reader);
}

std::vector<Corners> ReadStresses(const std::filesystem::path& file, const ModelText& model) {
  NumberReader reader(file);
  std::vector<Corners> shells;
  const auto readShells = [&](std::size_t count, std::size_t nodes) {
    for (std::size_t e = 0; e < count; ++e) {
      reader.Expect("SE");
      Corners corners(nodes);
      for (Corner& corner : corners) {
        corner.top = NextFace(reader, corner.node);
        corner.bottom = NextFace(reader, corner.node);
      }
      shells.push_back(corners);
    }
  };
  readShells(model.shells4.size(), 4);
  readShells(model.shells3.size(), 3);
  return shells;
}

Detail NextDetail(NumberReader& reader) {
  Detail detail;
  reader.Expect("NPOIN=");
  detail.nodes.resize(static_cast<std::size_t>(reader.NextInt()));
  for (auto& node : detail.nodes) node = {reader.Next(), reader.Next(), reader.Next()};
  for (std::size_t n = 0; n < detail.nodes.size(); ++n) {
    detail.displacements.push_back(NextSix(reader));
  }
  reader.Expect("NELEM=");
  detail.shells.resize(static_cast<std::size_t>(reader.NextInt()));
  for (Corners& shell : detail.shells) {
    shell.resize(4);
    for (Corner& corner : shell) corner.node = reader.NextInt();
    for (Corner& corner : shell) {
      corner.top = NextStresses(reader);
      corner.bottom = NextStresses(reader);
    }
  }
  return detail;
}

std::vector<Detail> ReadDetails(const std::filesystem::path& file) {
  NumberReader reader(file);
  reader.Expect("NELEM_B=");
  std::vector<Detail> details;
  while (reader.SkipPast("BEI=")) details.push_back(NextDetail(reader));
  return details;
}

}  // namespace

Results RunModel(const ModelText& model, Read read) {
  const test::TempFolder folder;
  const std::string text = test::WriteModel(model);
  test::WriteFile(folder.Path() / "fem_solving.txt", text);
  test::KeepModel("verification", text);
  const test::ProgramRun run = test::RunProgram(KORVEX_PROGRAM, folder.Path());
  if (run.exitStatus != 0 || !run.err.empty()) {
    throw std::runtime_error("the program ended with status " + std::to_string(run.exitStatus) +
                             ": " + run.err);
  }
  Results results;
  results.displacements = ReadDisplacements(folder.Path() / "Node_Dis.txt", model.nodes.size());
  if (read != Read::Displacements) {
    results.shells = ReadStresses(folder.Path() / "Shell element node stress.txt", model);
    results.averaged = ReadStresses(folder.Path() / "Shell element average node stress.txt", model);
  }
  if (read == Read::Details) {
    results.details = ReadDetails(folder.Path() / "Korvex_AverageStrs.txt");
  }
  return results;
}

}  // namespace korvex::book
