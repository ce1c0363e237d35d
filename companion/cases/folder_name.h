// Which names of cases can be names of folders on every system.
#pragma once

#include <string>

namespace kvx {

// Empty where the name will do; otherwise what is wrong with it: "\"..\" is no name of a folder".
std::string FindFolderFault(const std::string& name);

// The name by which two folders are the same on a system that does not tell capitals from small
// letters; for letters outside ASCII each system has rules of its own.
std::string FoldCase(const std::string& name);

}  // namespace kvx
