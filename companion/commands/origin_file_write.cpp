// WriteOrigin and MoveOriginNodes of origin_file.h.
#include <algorithm>
#include <charconv>
#include <nlohmann/json.hpp>

#include "commands/hash_text.h"
#include "commands/import_report_json.h"
#include "commands/origin_file.h"
#include "report/stop.h"

namespace kvx {

namespace {

using Json = nlohmann::ordered_json;

// So many numbers stand in a line, so that an editor can show the file.
constexpr std::size_t NumbersInLine = 20;

// Digits of the largest number of 64 bits, and its sign.
constexpr std::size_t LongestNumber = 20;

// Bytes that are no UTF-8 become U+FFFD.
std::string JsonString(const std::string& text) {
  return Json(text).dump(-1, ' ', true, Json::error_handler_t::replace);
}

std::string JsonStrings(const std::vector<std::string>& texts) {
  std::string text = "[";
  for (std::size_t k = 0; k < texts.size(); ++k) {
    if (k > 0) text += ", ";
    text += JsonString(texts[k]);
  }
  return text + ']';
}

template <typename Integer>
void AddNumbers(const std::vector<Integer>& numbers, std::string& text) {
  text += '[';
  for (std::size_t k = 0; k < numbers.size(); ++k) {
    if (k > 0) text += ',';
    if (k > 0 && k % NumbersInLine == 0) text += '\n';
    char digits[LongestNumber];
    const auto end = std::to_chars(digits, digits + sizeof digits, numbers[k]);
    text.append(digits, end.ptr);
  }
  text += ']';
}

void AddElements(const char* key, const ElementOrigin& kind, std::string& text) {
  text += std::string(",\n\"") + key + "\": {\"numbers\": ";
  AddNumbers(kind.numbers, text);
  text += ",\n\"types\": ";
  AddNumbers(kind.types, text);
  text += '}';
}

void AddStrings(const char* key, const std::vector<std::string>& texts, std::string& text) {
  text += std::string(",\n\"") + key + "\": " + JsonStrings(texts);
}

void AddGroup(const OriginGroup& group, std::string& text) {
  text +=
      "{\"name\": " + JsonString(group.name) + ", \"source\": " + JsonString(group.source) + ",\n";
  text += "\"nodes\": ";
  AddNumbers(group.nodes, text);
  text += ",\n\"shells4\": ";
  AddNumbers(group.shells4, text);
  text += ",\n\"shells3\": ";
  AddNumbers(group.shells3, text);
  text += ",\n\"beams\": ";
  AddNumbers(group.beams, text);
  text += '}';
}

}  // namespace

std::string WriteOrigin(const ModelOrigin& origin, const ImportReport& report,
                        const std::vector<std::string>& files,
                        const std::vector<std::string>& hashes) {
  std::string text = "{\"kvx\": 1,\n\"source\": " + JsonString(origin.source) +
                     ",\n\"format\": " + JsonString(origin.format) + ",\n\"hash\": \"" +
                     HashText(origin.hash) + '"';
  AddStrings("files", files, text);
  AddStrings("hashes", hashes, text);
  AddStrings("types", origin.types, text);
  text += ",\n\"nodes\": ";
  AddNumbers(origin.nodes, text);
  AddElements("shells4", origin.shells4, text);
  AddElements("shells3", origin.shells3, text);
  AddElements("beams", origin.beams, text);
  AddStrings("materials", origin.materials, text);
  AddStrings("thicknesses", origin.thicknesses, text);
  AddStrings("sectionsT", origin.sectionsT, text);
  AddStrings("sectionsL", origin.sectionsL, text);
  AddStrings("sectionsC", origin.sectionsC, text);
  text += ",\n\"groups\": [";
  for (std::size_t k = 0; k < origin.groups.size(); ++k) {
    text += k > 0 ? ",\n" : "\n";
    AddGroup(origin.groups[k], text);
  }
  text += "],\n\"report\": " +
          ImportReportJson(report).dump(1, ' ', true, Json::error_handler_t::replace) + "}\n";
  return text;
}

namespace {

// A value in the text: its bytes from `begin` to before `end`.
struct Span {
  std::size_t begin = 0, end = 0;
};

// Where the values are that hold nodes or depend on their order.
struct OriginSpans {
  std::vector<Span> hashes, fileHashes, nodes, groupNodes;
};

// The end of the string that begins at `at` with a quotation mark.
std::size_t EndOfString(std::string_view text, std::size_t at) {
  for (++at; text[at] != '"'; ++at) at += text[at] == '\\' ? 1 : 0;
  return at + 1;
}

// text: JSON. Depth 1: the whole; 2: a list of the whole; 3: a group in it; 4: a list of a group.
void FindSpans(std::string_view text, OriginSpans& spans) {
  constexpr std::size_t GroupDepth = 3;
  std::string_view key, outerKey;  // the last one of the depth, and that of depth 1
  std::size_t depth = 0;
  Span word;  // the last string
  std::vector<Span>* open = nullptr;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    if (c == '"') {
      word = {at, EndOfString(text, at)};
      at = word.end - 1;
      if (depth == 1 && outerKey == "hash") {
        spans.hashes.push_back(word);
        outerKey = {};
      }
    } else if (c == ':') {
      key = text.substr(word.begin + 1, word.end - word.begin - 2);
      if (depth == 1) outerKey = key;
    } else if (c == '{' || c == '[') {
      if (c == '[' && depth == 1 && key == "nodes") open = &spans.nodes;
      if (c == '[' && depth == 1 && key == "hashes") open = &spans.fileHashes;
      if (c == '[' && depth == GroupDepth && outerKey == "groups" && key == "nodes") {
        open = &spans.groupNodes;
      }
      if (open != nullptr) open->push_back({at, 0});
      key = {};
      ++depth;
    } else if (c == '}' || c == ']') {
      if (open != nullptr) open->back().end = at + 1;
      open = nullptr;
      --depth;
    } else if (c == ',' && depth == 1) {
      outerKey = {};
    }
  }
}

// list: of whole numbers.
template <typename Integer>
std::vector<Integer> ReadNumbers(std::string_view list) {
  std::vector<Integer> numbers;
  const char* const end = list.data() + list.size();
  for (const char* at = list.data(); at < end;) {
    Integer number = 0;
    const auto result = std::from_chars(at, end, number);
    if (result.ptr == at) {
      ++at;
      continue;
    }
    // One that is too large is no row.
    numbers.push_back(result.ec == std::errc() ? number : Integer{-1});
    at = result.ptr;
  }
  return numbers;
}

std::string MovedNodes(std::string_view list, const std::vector<std::int32_t>& order) {
  const auto numbers = ReadNumbers<std::int64_t>(list);
  std::vector<std::int64_t> moved;
  moved.reserve(order.size());
  for (const std::int32_t old : order) moved.push_back(numbers[static_cast<std::size_t>(old)]);
  std::string text;
  AddNumbers(moved, text);
  return text;
}

std::string MovedRows(std::string_view list, const std::vector<std::int32_t>& places) {
  std::vector<std::int32_t> moved;
  for (const std::int32_t old : ReadNumbers<std::int32_t>(list)) {
    const auto row = static_cast<std::size_t>(old);  // very large if negative
    if (row < places.size()) moved.push_back(places[row]);
  }
  std::sort(moved.begin(), moved.end());
  std::string text;
  AddNumbers(moved, text);
  return text;
}

struct Replacement {
  Span span;
  std::string text;
};

}  // namespace

std::string MoveOriginNodes(std::string_view text, const std::vector<std::int32_t>& order,
                            std::uint64_t hash) {
  std::size_t nodes = 0;
  std::string reason;
  {
    ModelOrigin origin;
    if (!ReadOrigin(text, origin, reason)) throw korvex::Stop{korvex::StopKind::Notice, reason};
    nodes = origin.nodes.size();
  }
  OriginSpans spans;
  FindSpans(text, spans);
  if (nodes != order.size() || spans.nodes.size() != 1 || spans.hashes.size() != 1) {
    throw korvex::Stop{korvex::StopKind::Notice,
                       std::string(OriginFileName) + " is not that of this model."};
  }

  std::vector<std::int32_t> places(order.size());
  for (std::size_t k = 0; k < order.size(); ++k) {
    places[static_cast<std::size_t>(order[k])] = static_cast<std::int32_t>(k);
  }
  std::vector<Replacement> changes;
  changes.push_back({spans.hashes[0], '"' + HashText(hash) + '"'});
  changes.push_back(
      {spans.nodes[0],
       MovedNodes(text.substr(spans.nodes[0].begin, spans.nodes[0].end - spans.nodes[0].begin),
                  order)});
  for (const Span& span : spans.groupNodes) {
    changes.push_back({span, MovedRows(text.substr(span.begin, span.end - span.begin), places)});
  }
  std::sort(changes.begin(), changes.end(),
            [](const Replacement& a, const Replacement& b) { return a.span.begin < b.span.begin; });
  std::string moved;
  std::size_t done = 0;
  for (const Replacement& change : changes) {
    moved += text.substr(done, change.span.begin - done);
    moved += change.text;
    done = change.span.end;
  }
  return moved += text.substr(done);
}

std::string ChangeImportedHashes(std::string_view text, const std::vector<ImportedFile>& files) {
  std::vector<std::string> hashes;
  hashes.reserve(files.size());
  for (const ImportedFile& file : files) hashes.push_back(file.hash);
  OriginSpans spans;
  FindSpans(text, spans);
  if (spans.fileHashes.size() != 1) return std::string(text);
  const Span span = spans.fileHashes[0];
  const std::string_view before = text.substr(span.begin, span.end - span.begin);
  const auto quotes = static_cast<std::size_t>(std::count(before.begin(), before.end(), '"'));
  if (quotes != 2 * files.size()) return std::string(text);
  return std::string(text.substr(0, span.begin)) + JsonStrings(hashes) +
         std::string(text.substr(span.end));
}

}  // namespace kvx
