#include "commands/import_cases.h"

#include <algorithm>
#include <set>

#include "cases/case_file.h"
#include "cases/folder_name.h"
#include "cases/load_tables.h"
#include "commands/csv_text.h"
#include "commands/load_model.h"
#include "deck/row_formats.h"
#include "finding/text_layout.h"

namespace kvx {

namespace {

// Of a name that cannot be one of a folder, the characters that can. Bytes above ASCII stay where
// they are letters of UTF-8.
std::string ReplaceForbidden(const std::string& name) {
  constexpr std::size_t LongestName = 48;  // leaves room for a number behind it
  const bool isText = CleanText(name) == name;
  std::string made;
  for (const char c : name) {
    const bool isDigit = c >= '0' && c <= '9';
    const bool isLetter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
    const bool isAbove = static_cast<unsigned char>(c) >= 0x80U;
    const bool isKept =
        isDigit || isLetter || c == '_' || c == '.' || c == '-' || c == '+' || (isAbove && isText);
    if (isKept) {
      made += c;
    } else if (!made.empty() && made.back() != '-') {
      made += '-';
    }
    // Not within a character.
    if (made.size() >= LongestName && !isAbove) break;
  }
  const std::size_t begin = made.find_first_not_of(".-");
  if (begin == std::string::npos) return "";
  return made.substr(begin, made.find_last_not_of(".-") + 1 - begin);
}

bool IsTaken(const std::string& name, const std::set<std::string>& taken) {
  return FoldCase(name) == BaseCaseName || taken.count(FoldCase(name)) > 0;
}

std::string MakeName(const std::string& deckName, std::size_t number,
                     std::set<std::string>& taken) {
  std::string name = ReplaceForbidden(deckName);
  const bool isFit =
      FindFolderFault(name).empty() && FoldCase(name).rfind(EnvelopeFolderPrefix, 0) != 0;
  if (!isFit) name = "case-" + std::to_string(number);
  const std::string stem = name;
  for (std::size_t k = 2; IsTaken(name, taken); ++k) name = stem + '-' + std::to_string(k);
  taken.insert(FoldCase(name));
  return name;
}

// A string of TOML.
std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : CleanText(text)) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + '"';
}

// The name of a table of TOML, in quotes where it needs them.
std::string KeyText(const std::string& name) {
  const bool isBare = std::all_of(name.begin(), name.end(), [](char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '-' ||
           c == '_';
  });
  return isBare ? name : Quoted(name);
}

// A float of TOML, the shortest text that gives the same double.
std::string NumberText(double value) {
  std::string text;
  AddCsvNumber(value + 0.0, text);
  return text;
}

}  // namespace

std::vector<std::string> NamesOfFolders(const std::vector<std::string>& deckNames) {
  std::vector<std::string> names;
  names.reserve(deckNames.size());
  std::set<std::string> taken;
  for (const std::string& name : deckNames) {
    names.push_back(MakeName(name, names.size() + 1, taken));
  }
  return names;
}

void NameCases(const std::vector<BuiltCase>& built, std::vector<ImportedCase>& cases) {
  std::vector<std::string> deckNames;
  deckNames.reserve(built.size());
  for (const BuiltCase& from : built) deckNames.push_back(from.name);
  const std::vector<std::string> names = NamesOfFolders(deckNames);
  const bool isOneFile = FitModelFile(built);
  for (const BuiltCase& from : built) {
    ImportedCase& made = cases.emplace_back();
    made.deckName = from.name;
    made.name = names[cases.size() - 1];
    made.hasAcceleration = from.hasAcceleration;
    made.acceleration = from.acceleration;
    if (!isOneFile && HasLoads(from.loads)) made.file = "loads-" + made.name + ".txt";
  }
}

bool FitModelFile(const std::vector<BuiltCase>& built) {
  return built.empty() || (built.size() == 1 && !built.front().hasAcceleration);
}

std::string LoadsFileText(const korvex::ModelTables& loads) {
  const std::string_view title = korvex::FormatOf(korvex::Section::Forces).title;
  return ComposeModelText(title.substr(0, title.find('%')), loads);
}

std::string CasesFileText(const std::string& deck, const std::vector<ImportedCase>& cases) {
  std::string text = "# Load cases of " + CleanText(deck) +
                     ", written by kvx import. Combinations may be added:\n"
                     "# [combination.NAME]\n"
                     "# factors = { " +
                     KeyText(cases.front().name) + " = 1.35 }\n";
  text += std::string("structure = \"") + ModelFileName + "\"\n";
  for (const ImportedCase& each : cases) {
    text += "\n[case." + KeyText(each.name) + "]";
    if (!each.deckName.empty() && each.deckName != each.name) {
      text += "  # " + CleanText(each.deckName);
    }
    text += '\n';
    if (!each.file.empty()) text += "loads = " + Quoted(each.file) + '\n';
    if (!each.hasAcceleration) continue;
    text += "acceleration = [" + NumberText(each.acceleration[0]) + ", " +
            NumberText(each.acceleration[1]) + ", " + NumberText(each.acceleration[2]) + "]\n";
  }
  return text;
}

}  // namespace kvx
