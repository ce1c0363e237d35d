#include "mesh/gmsh/gmsh_sections.h"

#include <algorithm>
#include <string>

#include "mesh/gmsh/gmsh_name_text.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

// Why a section is left out. Sections of other names are lost.
struct LeftOut {
  std::string_view section;
  const char* reason;
};
constexpr LeftOut LeftOuts[] = {
    {"$Comments", "comments"},
    {"$ElementData", "values of a post-processing view"},
    {"$ElementNodeData", "values of a post-processing view"},
    {"$GhostElements", "tells which elements other partitions see"},
    {"$InterpolationScheme", "belongs to a post-processing view"},
    {"$NodeData", "values of a post-processing view"},
    {"$Parametrizations", "describes the geometry, not the mesh"},
    {"$Periodic", "tells which nodes correspond to each other, and ties none"},
};

std::string EndMark(const GmshText& text) { return "$End" + text.section.substr(1); }

// Whether a word may be the name of a section.
bool IsSectionName(std::string_view name) {
  constexpr std::size_t Longest = 60;
  const auto isOfName = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
  };
  return name.size() > 1 && name.size() <= Longest && name[0] == '$' &&
         std::all_of(name.begin() + 1, name.end(), isOfName);
}

// Finds out the order of the bytes from the int 1 that binary files have here.
void ReadByteOrder(GmshText& text) {
  text.isBinary = true;
  const std::int64_t one = TakeInt(text, "the number 1 that shows the order of the bytes");
  constexpr std::int64_t SwappedOne = 0x01000000;
  text.isSwapped = one == SwappedOne;
  if (one != 1 && one != SwappedOne) {
    FailAt(text, "the number 1 that shows the order of the bytes is " + std::to_string(one));
  }
}

// Where the end mark of a section that is left out begins. In text it is a line of its own; in
// binary files it may follow any byte.
std::size_t FindEndMark(const GmshText& text, const std::string& mark) {
  std::size_t at = text.bytes.find(mark, text.at);
  for (; at != std::string_view::npos; at = text.bytes.find(mark, at + 1)) {
    const std::size_t behind = at + mark.size();
    const bool isWhole = behind == text.bytes.size() || text.bytes[behind] == '\n' ||
                         text.bytes[behind] == '\r' || text.bytes[behind] == ' ';
    if (isWhole && (text.isBinary || at == 0 || text.bytes[at - 1] == '\n')) break;
  }
  return at;
}

}  // namespace

bool BeginSection(GmshText& text, ImportReport& report) {
  SkipSpace(text);
  if (text.at == text.bytes.size()) return false;
  const GmshText start = text;
  const std::string_view line = TakeLine(text);
  if (!IsSectionName(line) || line.substr(0, 4) == "$End") {
    FailAt(start, "here a section must begin, with a line such as $Nodes");
  }
  text.section = line;
  text.sectionPlace = PlaceIn(start);
  CountCard(line, text.sectionPlace, report);
  return true;
}

void EndSection(GmshText& text) {
  SkipSpace(text);
  const std::string mark = EndMark(text);
  if (text.at == text.bytes.size()) {
    FailAt(text, "the file ends within " + text.section + ": " + mark + " is missing");
  }
  const GmshText start = text;
  if (TakeLine(text) != mark) {
    FailAt(start, mark + " is expected here: " + text.section +
                      " holds something else than it announces, or the file is cut off");
  }
}

void ReadGmshFormat(GmshText& text, GmshMesh& mesh) {
  BeginRow(text);
  const GmshText start = text;
  double version = 0.0;
  const std::string_view word = TakeWord(text, "the format's version");
  if (!ScanDouble(word, version)) FailAt(start, "a format's version such as 4.1 is expected");
  if (version == 2.2) mesh.version = GmshVersion::V22;
  if (version == 4.1) mesh.version = GmshVersion::V41;
  if (mesh.version == GmshVersion::None) {
    FailAt(start, "formats 2.2 and 4.1 are read, this one is not: " + std::string(SaveAnew));
  }
  text.hasShortTags = mesh.version == GmshVersion::V22;
  const std::int64_t kind = TakeTextInt(text, "0 (text) or 1 (binary)");
  const std::int64_t bytes = TakeTextInt(text, "the size of numbers, 8");
  EndRow(text);
  if (kind != 0 && kind != 1) FailAt(start, "a file is text, 0, or binary, 1");
  if (kind == 0) return;
  if (bytes != 8)
    FailAt(start, "binary files are read with numbers of 8 bytes alone: " + std::string(SaveAnew));
  TakeLine(text);
  ReadByteOrder(text);
}

void ReadGmshNames(GmshText& text, GmshMesh& mesh) {
  constexpr std::size_t ShortestRow = 6;  // 0 1 ""
  const std::size_t count = TakeTextCount(text, ShortestRow, "names");
  mesh.names.reserve(mesh.names.size() + count);
  for (std::size_t k = 0; k < count; ++k) {
    SkipSpace(text);
    const GmshText start = text;
    GmshName name;
    name.place = PlaceIn(text);
    name.dimension = static_cast<std::int32_t>(TakeTextInt(text, "the dimension of a group"));
    name.tag = static_cast<std::int32_t>(TakeTextInt(text, "the tag of a group"));
    if (name.dimension < 0 || name.dimension > 3) FailAt(start, "a group has the dimension 0 to 3");
    const std::string_view quoted = TakeLine(text);
    if (quoted.size() < 2 || quoted.front() != '"' || quoted.back() != '"') {
      FailAt(start, "the name of a group is expected, between quotation marks");
    }
    name.name = ReadableName(quoted.substr(1, quoted.size() - 2));
    mesh.names.push_back(std::move(name));
  }
}

void SkipSection(GmshText& text, ImportReport& report) {
  const std::string mark = EndMark(text);
  const std::size_t at = FindEndMark(text, mark);
  if (at == std::string_view::npos) {
    text.line += static_cast<std::size_t>(std::count(
        text.bytes.begin() + static_cast<std::ptrdiff_t>(text.at), text.bytes.end(), '\n'));
    text.at = text.bytes.size();
    FailAt(text, "the file ends within " + text.section + ": " + mark + " is missing");
  }
  const auto* known = std::find_if(std::begin(LeftOuts), std::end(LeftOuts),
                                   [&](const LeftOut& one) { return one.section == text.section; });
  const bool isKnown = known != std::end(LeftOuts);
  ReportCard(text.section, isKnown ? Fate::NoEffect : Fate::Lost,
             isKnown ? known->reason : "unknown section", text.sectionPlace, "", report);
  text.line += static_cast<std::size_t>(
      std::count(text.bytes.begin() + static_cast<std::ptrdiff_t>(text.at),
                 text.bytes.begin() + static_cast<std::ptrdiff_t>(at), '\n'));
  text.at = at;
  EndSection(text);
}

}  // namespace kvx
