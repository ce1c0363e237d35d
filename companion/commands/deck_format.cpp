#include "commands/deck_format.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "finding/text_layout.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

struct NamedFormat {
  const char* text;
  DeckFormat format;
};

constexpr std::array<NamedFormat, 8> Extensions{{{".msh", DeckFormat::Gmsh},
                                                 {".bdf", DeckFormat::Nastran},
                                                 {".dat", DeckFormat::Nastran},
                                                 {".nas", DeckFormat::Nastran},
                                                 {".bulk", DeckFormat::Nastran},
                                                 {".blk", DeckFormat::Nastran},
                                                 {".pch", DeckFormat::Nastran},
                                                 {".inp", DeckFormat::Abaqus}}};

// With one of these a deck of bulk data begins, or its case control, or a line soon after it.
constexpr std::array<std::string_view, 28> NastranWords{
    "SOL",   "CEND", "BEGIN",  "ENDDATA", "GRID",   "GRDSET",  "CORD2R", "CORD2C", "CORD1R", "CBAR",
    "CBEAM", "CROD", "CQUAD4", "CTRIA3",  "PSHELL", "PBAR",    "PBARL",  "PBEAM",  "PBEAML", "MAT1",
    "SPC",   "SPC1", "FORCE",  "PLOAD4",  "PARAM",  "NASTRAN", "ASSIGN", "SUBCASE"};

// Without one of the other words these would say little: other programs have them, too.
constexpr std::array<std::string_view, 8> NastranTitles{"TITLE", "SUBTITLE", "ECHO", "INCLUDE",
                                                        "LABEL", "ID",       "TIME", "INIT"};

// So many lines are looked at; a deck may begin with a long comment.
constexpr std::size_t MostLines = 2000;

// What a file begins with that is no deck at all.
struct ForeignBegin {
  std::string_view begin;
  const char* reason;
};
constexpr std::array<ForeignBegin, 7> ForeignBegins{
    {{std::string_view("\x1F\x8B", 2), "is compressed (gzip). Unpack it first"},
     {std::string_view("PK\x03\x04", 4), "is an archive (zip). Unpack it first"},
     {std::string_view("\xFF\xFE", 2), "is text in UTF-16. Save it as UTF-8 or ASCII"},
     {std::string_view("\xFE\xFF", 2), "is text in UTF-16. Save it as UTF-8 or ASCII"},
     {std::string_view("### Toln_Korvex", 15),
      "is a model file already. kvx check names its mistakes, kvx run solves it"},
     {std::string_view("ISO-10303-21", 12),
      "is geometry (STEP), not a mesh. Mesh it first, with gmsh for example"},
     {std::string_view("<?xml", 5), "is XML, not a mesh that kvx reads"}}};

std::string ToUpper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper;
}

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// The first word of a line of bulk data or case control, in capitals: "GRID" of "GRID*  7",
// "grid,7", "TITLE = x".
std::string FirstWord(std::string_view line) {
  constexpr std::size_t NameWidth = 8;  // of a card's name, which no blank need follow
  const std::string_view begin = line.substr(0, NameWidth);
  return ToUpper(begin.substr(0, begin.find_first_of(" \t,*=")));
}

template <typename List>
bool Contains(const List& list, std::string_view word) {
  return std::find(list.begin(), list.end(), word) != list.end();
}

// Of one line. Unknown: it does not tell.
DeckFormat FormatOfLine(std::string_view line) {
  if (line.front() == '$') {
    // A comment of bulk data, or a section of a mesh file.
    const bool isMesh = line == "$MeshFormat" || line == "$NOD" || line == "$PhysicalNames";
    return isMesh ? DeckFormat::Gmsh : DeckFormat::Unknown;
  }
  if (line.front() == '*') {
    const bool isKeyword = line.size() > 1 && IsLetter(line[1]);
    return isKeyword ? DeckFormat::Abaqus : DeckFormat::Unknown;  // "**": a comment
  }
  return Contains(NastranWords, FirstWord(line)) ? DeckFormat::Nastran : DeckFormat::Unknown;
}

// Takes the first line off the text. Lines may end with "\n", "\r\n" or "\r".
std::string_view NextLine(std::string_view& text) {
  const std::size_t end = text.find_first_of("\r\n");
  const std::string_view line = text.substr(0, end);
  if (end == std::string_view::npos) {
    text = {};
  } else {
    const bool isPair = text.substr(end, 2) == "\r\n";
    text.remove_prefix(end + (isPair ? 2 : 1));
  }
  return line;
}

std::string BeginOf(std::string_view line) {
  constexpr std::size_t Shown = 24;  // characters: enough to know the line again
  const std::string_view word = line.substr(0, line.find_first_of(", \t="));
  return CleanText(word.substr(0, Shown));
}

// Bytes that no text has, near the begin of a file. A binary mesh of gmsh begins with text.
bool IsBinary(std::string_view text) {
  constexpr std::size_t Looked = 4096;  // bytes; other formats have a zero within the first few
  return text.substr(0, Looked).find('\0') != std::string_view::npos;
}

// "" where the text may be a deck.
std::string RefuseText(std::string_view text, const DeckLook& look) {
  if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) return "is empty";
  for (const ForeignBegin& foreign : ForeignBegins) {
    if (text.substr(0, foreign.begin.size()) == foreign.begin) return foreign.reason;
  }
  if (look.format != DeckFormat::Gmsh && IsBinary(text)) {
    return "is binary and no mesh of gmsh. Decks of Nastran and Abaqus are text";
  }
  return "";
}

}  // namespace

const char* FormatName(DeckFormat format) {
  switch (format) {
    case DeckFormat::Gmsh:
      return "a gmsh mesh";
    case DeckFormat::Nastran:
      return "Nastran bulk data";
    case DeckFormat::Abaqus:
      return "an Abaqus deck";
    default:
      return "unknown";
  }
}

DeckFormat FormatOfWord(std::string_view word) {
  if (word == "gmsh") return DeckFormat::Gmsh;
  if (word == "nastran") return DeckFormat::Nastran;
  return word == "abaqus" ? DeckFormat::Abaqus : DeckFormat::Unknown;
}

DeckFormat FormatOfName(const std::string& name) {
  const std::string extension = ToUpper(std::filesystem::u8path(name).extension().u8string());
  for (const NamedFormat& known : Extensions) {
    if (ToUpper(known.text) == extension) return known.format;
  }
  return DeckFormat::Unknown;
}

DeckLook LookAtDeck(std::string_view text) {
  constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";
  if (text.substr(0, ByteOrderMark.size()) == ByteOrderMark) {
    text.remove_prefix(ByteOrderMark.size());
  }
  DeckLook title;
  for (std::size_t number = 1; number <= MostLines && !text.empty(); ++number) {
    const std::string_view line = TrimBlanks(NextLine(text));
    if (line.empty()) continue;
    const DeckFormat format = FormatOfLine(line);
    if (format != DeckFormat::Unknown) return {format, number, BeginOf(line)};
    if (title.line == 0 && Contains(NastranTitles, FirstWord(line))) {
      title = {DeckFormat::Nastran, number, BeginOf(line)};
    }
  }
  return title;
}

DeckFormat ChooseFormat(DeckFormat told, const std::string& name, std::string_view text,
                        std::string& reason) {
  const DeckLook look = LookAtDeck(text);
  const std::string refused = RefuseText(text, look);
  if (!refused.empty()) {
    reason = "it " + refused + '.';
    return DeckFormat::Unknown;
  }
  if (told != DeckFormat::Unknown) return told;
  const DeckFormat named = FormatOfName(name);
  if (named == DeckFormat::Unknown && look.format == DeckFormat::Unknown) {
    reason =
        "neither its name nor its text tells its format. kvx reads meshes of gmsh (.msh), Nastran "
        "bulk data (.bdf, .dat, .nas) and Abaqus decks (.inp). Name the format with --format.";
    return DeckFormat::Unknown;
  }
  if (named != DeckFormat::Unknown && look.format != DeckFormat::Unknown && named != look.format) {
    reason = std::string("its name is that of ") + FormatName(named) + ", but line " +
             std::to_string(look.line) + ", \"" + look.begin + "\", is of " +
             FormatName(look.format) + ". Say which it is with --format.";
    return DeckFormat::Unknown;
  }
  return look.format != DeckFormat::Unknown ? look.format : named;
}

}  // namespace kvx
