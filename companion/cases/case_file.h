// The load cases of a structure and their combinations, as cases.toml gives them:
//
//   structure = "fem_solving.txt"            # its own loads are the case "base"
//   [case.ballast]
//   loads = "ballast.txt"                    # the sections NFOR .. NDL_B of a model file
//   [case.weight]
//   acceleration = [0, 0, -9810]             # self-weight from the densities
//   [combination.uls]
//   factors = { base = 1.35, ballast = 1.5, weight = 1.35 }
//   [envelope.strength]
//   of = ["uls", "accident"]                 # default: one envelope, "all"
//
// A case may have both loads and acceleration. A combination may name cases and other combinations.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kvx {

// The case of the structure's own loads.
inline constexpr const char* BaseCaseName = "base";

// The folder of an envelope: this and its name.
inline constexpr const char* EnvelopeFolderPrefix = "envelope-";

struct LoadCase {
  std::string name;
  std::string loads;  // file or folder, as from the folder of the case file, UTF-8; "": none
  std::size_t loadsLine = 0;  // 1-based, of `loads`
  bool hasAcceleration = false;
  std::array<double, 3> acceleration{};  // global, length / time^2 in model units
  std::size_t line = 0;                  // 1-based, of the case file; 0: the case "base"
};

// A case or combination that another one, or an envelope, names.
struct CaseTerm {
  std::string name;
  double factor = 1.0;
  std::size_t line = 0;
};

struct Combination {
  std::string name;
  std::vector<CaseTerm> terms;
  std::size_t line = 0;
};

struct EnvelopeList {
  std::string name;
  std::vector<CaseTerm> of;
  std::size_t line = 0;
};

// Each list in the order of the file.
struct CaseFile {
  std::string structure = "fem_solving.txt";  // file or folder, as LoadCase::loads
  std::size_t structureLine = 0;              // 1-based; 0: the file does not name it
  std::vector<LoadCase> cases;
  std::vector<Combination> combinations;
  std::vector<EnvelopeList> envelopes;
};

// Throws a Stop with "line 7: ..." where the text is no case file: syntax, unknown keys (with the
// nearest one), wrong types, numbers that are not finite, names that are doubled or cannot be names
// of folders on every system.
void ReadCaseFile(std::string_view text, CaseFile& file);

// Puts the case "base" before the others: to be called where the structure has loads of its own.
void AddBaseCase(CaseFile& file);

// A combination as a sum over cases alone.
struct CaseFactors {
  std::vector<std::pair<std::size_t, double>> terms;  // row of CaseFile::cases, ascending; factor
};

// Resolves combinations of combinations. factors: one for each combination; cases with the factor 0
// are left out. Throws a Stop where there is no case at all, where a name is unknown (with the
// nearest one), where combinations lead in a circle (with the circle) or a product of factors is
// too large.
void ResolveCombinations(const CaseFile& file, std::vector<CaseFactors>& factors);

// An envelope by the numbers of what it is of: cases, then combinations, in the order of the file.
struct EnvelopeOf {
  std::string name;
  std::vector<std::size_t> of;  // ascending, each once
};

// The envelopes of the file; without any, one with the name "all": of all combinations, or of all
// cases where there are none. Throws a Stop where a name is unknown.
void ResolveEnvelopes(const CaseFile& file, std::vector<EnvelopeOf>& envelopes);

}  // namespace kvx
