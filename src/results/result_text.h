// The text of result files, which grows at its end: the same characters as those of a stream in its
// default notation, but faster. Numbers have six significant digits (number_text.h).
//
// Several items are added at once, so that room for them is made once. Each item is written at the
// end of the text; a few characters behind it may change, too.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "base/number_text.h"

namespace korvex {

struct ResultText {
  std::vector<char> room;  // its first `size` characters are the text
  std::size_t size = 0;
};

inline std::string_view TextOf(const ResultText& text) { return {text.room.data(), text.size}; }

// Returns the end of the text, with room for `count` characters behind it.
char* MakeRoom(std::size_t count, ResultText& text);

// The columns of a table have 15 characters, right-aligned; a longer item makes its column wider.
// The first column may be a node number in 14 characters and a colon.
struct NumberColumn {
  double number;
};
struct NodeColumn {
  std::int32_t node;
};

// The line of a table's titles. The titles are columns.
std::string TitleLine(std::initializer_list<std::string_view> titles);

// For each kind of item: the room that it needs, and WriteItem, which writes it to `out` and
// returns its end.
inline std::size_t RoomFor(std::string_view item) { return item.size(); }
inline std::size_t RoomFor(char) { return 1; }
inline std::size_t RoomFor(std::int32_t) { return NumberRoom; }
inline std::size_t RoomFor(std::int64_t) { return NumberRoom; }
inline std::size_t RoomFor(double) { return NumberRoom; }
inline std::size_t RoomFor(NumberColumn) { return NumberRoom; }
inline std::size_t RoomFor(NodeColumn) { return NumberRoom; }

inline char* WriteItem(std::string_view item, char* out) {
  return std::copy(item.begin(), item.end(), out);
}
inline char* WriteItem(char item, char* out) {
  *out = item;
  return out + 1;
}
inline char* WriteItem(std::int32_t item, char* out) {
  return WriteNumber(std::int64_t{item}, out);
}
inline char* WriteItem(std::int64_t item, char* out) { return WriteNumber(item, out); }
inline char* WriteItem(double item, char* out) { return WriteNumber(item, out); }
inline char* WriteItem(NumberColumn item, char* out) { return WriteColumn(item.number, out); }
char* WriteItem(NodeColumn item, char* out);

// Adds the items. A text among them must not be a part of `text`, whose room may move.
template <typename... Items>
void Add(ResultText& text, const Items&... items) {
  char* out = MakeRoom((std::size_t{0} + ... + RoomFor(items)), text);
  ((out = WriteItem(items, out)), ...);
  text.size = static_cast<std::size_t>(out - text.room.data());
}

// Adds the items and a line end.
template <typename... Items>
void AddLine(ResultText& text, const Items&... items) {
  Add(text, items..., '\n');
}

}  // namespace korvex
