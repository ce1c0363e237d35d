#include "commands/deck_files.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <system_error>

#include "commands/progress.h"

namespace kvx {

namespace fs = std::filesystem;

namespace {

std::string Quoted(const fs::path& path) { return '"' + path.u8string() + '"'; }

// Throws std::bad_alloc.
bool ReadWhole(const fs::path& place, std::string& text) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(place, error);
  std::ifstream stream(place, std::ios::binary);
  if (error || !stream.is_open()) return false;
  if (size > text.max_size()) throw std::bad_alloc();
  text.resize(static_cast<std::size_t>(size));
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  return static_cast<std::size_t>(stream.gcount()) == text.size();
}

void Remember(const fs::path& place, DeckFiles& files) {
  std::error_code error;
  const fs::path absolute = fs::absolute(place, error);
  if (!error) files.places.push_back(absolute.lexically_normal());
}

// Why it is not read; "" where it may be.
std::string RefusePlace(const fs::path& place) {
  std::error_code error;
  const fs::file_status status = fs::status(place, error);
  if (!fs::exists(status)) {
    return fs::status_known(status) ? "there is no file " + Quoted(place) + '.'
                                    : Quoted(place) + " cannot be read: " + error.message() + '.';
  }
  if (fs::is_directory(status)) return Quoted(place) + " is a folder. Name the file in it.";
  if (!fs::is_regular_file(status)) return Quoted(place) + " is a device or a pipe, not a file.";
  return "";
}

}  // namespace

ExitStatus ReadDeckFile(const std::string& name, DeckFiles& files, std::string& text,
                        std::string& complaint) {
  const fs::path place = fs::u8path(name);
  complaint = RefusePlace(place);
  if (!complaint.empty()) return ExitMissingInput;
  try {
    if (!ReadWhole(place, text)) {
      complaint = Quoted(place) + " cannot be read.";
      return ExitMissingInput;
    }
  } catch (const std::bad_alloc&) {
    complaint = Quoted(place) + " is larger than the memory.";
    return ExitUnusableData;
  }
  Remember(place, files);
  return ExitFine;
}

IncludeReader MakeIncludeReader(DeckFiles& files) {
  return [&files](const std::string& name, std::string& text) {
    StopIfInterrupted();
    try {
      fs::path place = files.folder / fs::u8path(name);
      std::error_code error;
      if (!fs::exists(place, error)) {
        std::string turned = name;
        std::replace(turned.begin(), turned.end(), '\\', '/');
        place = files.folder / fs::u8path(turned);
      }
      if (!RefusePlace(place).empty() || !ReadWhole(place, text)) return false;
      Remember(place, files);
      return true;
    } catch (const std::system_error&) {
      return false;  // on Windows a name that is no UTF-8
    }
  };
}

}  // namespace kvx
