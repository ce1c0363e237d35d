// Files that are either whole or not there: written beside their place, then renamed.
#pragma once

#include <functional>
#include <ostream>
#include <string>

namespace kvx {

// The file beside `fileName` into which the bytes go first.
std::string NameBeside(const std::string& fileName);

// Calls `write` with a binary stream and gives the file its name when all bytes are on it. A file
// that has the name already is replaced in one step, and stays as it is where anything fails; what
// was written until then is removed. Throws a Stop of the kind ResultFile with the name and the
// reason: "deck/displacements.bin cannot be written: No space left on device." What `write` throws
// is passed on.
void WriteWholeFile(const std::string& fileName,
                    const std::function<void(std::ostream& stream)>& write);

}  // namespace kvx
