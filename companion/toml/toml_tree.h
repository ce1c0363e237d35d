// A TOML text (toml.io, 1.0) as a tree of items that know their lines.
//
// The library for it stands in toml_tree.cpp alone. Not taken: texts over several lines, dates, and
// more than 16 brackets within each other; a case file needs none of them, and brackets without end
// would use up the stack.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace kvx {

enum class TomlKind { Text, Number, Truth, List, Table, Other };

struct TomlItem {
  TomlKind kind = TomlKind::Other;
  std::string key;              // in its table; "" in a list
  std::size_t line = 0;         // 1-based
  std::string text;             // Text: UTF-8
  double number = 0.0;          // Number; may be inf or nan where the text says so
  bool truth = false;           // Truth: true or false
  std::vector<TomlItem> items;  // List, Table: in the order of the text
};

// What an item is, for messages: "a text", "a number", "a list", "a table", "true or false".
const char* NameKind(const TomlItem& item);

// root: becomes the table of the whole text. Throws a Stop with "line 7: ..." where the text is not
// TOML, or a number is too large for a double.
void ReadToml(std::string_view text, TomlItem& root);

}  // namespace kvx
