// In which format a deck is written: by the extension of its name, and by how its text begins.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace kvx {

enum class DeckFormat { Unknown, Gmsh, Nastran, Abaqus };

// "a gmsh mesh", "Nastran bulk data", "an Abaqus deck"
const char* FormatName(DeckFormat format);

// By the names of the option --format: gmsh, nastran, abaqus. Others: Unknown.
DeckFormat FormatOfWord(std::string_view word);

// By the extension, in capitals or small letters. .msh: gmsh; .bdf .dat .nas .bulk .blk .pch:
// Nastran; .inp: Abaqus; others: Unknown.
DeckFormat FormatOfName(const std::string& name);

// What the first lines of a deck tell. line: that which tells it, 1-based; 0: none does.
struct DeckLook {
  DeckFormat format = DeckFormat::Unknown;
  std::size_t line = 0;
  std::string begin;  // of the line: "*NODE"
};
DeckLook LookAtDeck(std::string_view text);

// told: by the user, or Unknown; then name and text decide. Returns Unknown, with a sentence in
// `reason`, where the text is no deck, where neither tells, or where they disagree.
DeckFormat ChooseFormat(DeckFormat told, const std::string& name, std::string_view text,
                        std::string& reason);

}  // namespace kvx
