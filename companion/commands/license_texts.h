// The licences of the libraries that are part of the program, one after the other. The build writes
// the source of this header, from the copyright files of the packages that it takes the libraries
// from (cmake/companion_libraries.cmake).
#pragma once

namespace kvx {

// One for each library, and a null pointer: a compiler need not take them as a single literal.
extern const char* const LicenseTexts[];

}  // namespace kvx
