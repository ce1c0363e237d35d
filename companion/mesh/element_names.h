// How messages name the parts of an ImportModel: by the numbers and words of its deck.
#pragma once

#include <cstdint>
#include <string>

#include "mesh/import_model.h"

namespace kvx {

// "CQUAD4 4711", "CBAR 12"; without a type "element 4711".
std::string NameElement(const ImportModel& model, std::int32_t type, std::int64_t number);
std::string NameShell(const ImportModel& model, std::int32_t shell);
std::string NameBeam(const ImportModel& model, std::int32_t beam);

// "node 1017".
std::string NameNode(const ImportModel& model, std::int32_t node);

// "PSHELL 10"; where the deck calls it otherwise than by its name: physical surface 3 "deck".
std::string NameGroup(const ImportGroup& group);

// The name of a case; of one without: "loads".
std::string NameCase(const ImportCase& loads);

}  // namespace kvx
