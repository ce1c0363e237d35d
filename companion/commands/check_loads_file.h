// The check of a file of loads against a structure that has been checked.
#pragma once

#include <string_view>

#include "commands/check_model.h"

namespace kvx {

// text: the bytes of the file of loads, or of a whole model file, whose structure is left out.
// structure: its loads are exchanged for a while; it is as before on return. findings: those of the
// text and of its loads, lines as in this text, sorted. loads: a model text with these loads and an
// empty structure, for the reader. Throws a Stop where the text holds no loads.
void CheckLoadsFile(std::string_view text, CheckReport& structure, FindingList& findings,
                    std::string& loads);

}  // namespace kvx
