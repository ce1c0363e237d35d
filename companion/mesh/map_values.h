// The values of a map file: each with its line, and messages that say how it should be written.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "base/vector3.h"
#include "toml/toml_tree.h"

namespace kvx {

// A value and the line where it stands.
template <typename Value>
struct Placed {
  Value value{};
  std::size_t line = 0;
};

template <typename Value>
using Maybe = std::optional<Placed<Value>>;

// Throws a Stop: "line 7: " and the text; without a line (0) the text.
[[noreturn]] void StopAtLine(std::size_t line, const std::string& text);

// '"deck"'.
std::string InQuotes(const std::string& text);

// " Did you mean "deck"?" for the nearest of the words; without one " There are: ..." with them
// all, or the first ten.
std::string SuggestWord(const std::string& typed, const std::vector<std::string>& words);

// Throws a Stop: the owner has no such key. known: those that it may have.
[[noreturn]] void RefuseKey(const TomlItem& item, const std::string& owner,
                            const std::vector<std::string>& known);

// The value of an item. owner: "group \"deck\""; form: how it is written, "thickness = 12". Throws
// a Stop where it is of another kind, or not finite.
double ReadNumber(const TomlItem& item, const std::string& owner, const char* form);
double ReadPositive(const TomlItem& item, const std::string& owner, const char* form);
bool ReadTruth(const TomlItem& item, const std::string& owner, const char* form);
std::string ReadText(const TomlItem& item, const std::string& owner, const char* form);
std::vector<double> ReadNumbers(const TomlItem& item, const std::string& owner, const char* form);
korvex::Vector3 ReadVector(const TomlItem& item, const std::string& owner, const char* form);

}  // namespace kvx
