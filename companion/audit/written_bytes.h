// The bytes that a routine writes to a file, without the file.
//
// POSIX: the routine gets the name of a pipe, whose other end a second thread reads. Windows, or
// where a pipe has no name: a file in the system's folder for temporary files, which is removed
// right after it has been read.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace kvx {

// Writes a file of this name; returns false if it could not be written whole.
using FileWriter = std::function<bool(const std::string& fileName)>;

// Gets the next bytes. Must not throw. Another thread may call it, but never two at once.
using TakeBytes = std::function<void(const char* bytes, std::size_t count)>;

// Calls `write` and hands all that it writes to `take`, in order. Returns what `write` returns;
// false also where the bytes could not be passed on. What `write` throws is passed on.
bool TakeWrittenBytes(const FileWriter& write, const TakeBytes& take);

// The same by a temporary file, on every system.
bool TakeBytesOfTemporaryFile(const FileWriter& write, const TakeBytes& take);

}  // namespace kvx
