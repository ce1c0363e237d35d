// Hashes as files hold them.
#pragma once

#include <cstdint>
#include <string>

namespace kvx {

// "85944171f73967e8"
std::string HashText(std::uint64_t hash);

// Reads what HashText has written. Returns false where the text is none.
bool ReadHashText(const std::string& text, std::uint64_t& hash);

}  // namespace kvx
