#include "mesh/element_names.h"

#include <cstddef>

namespace kvx {

std::string NameElement(const ImportModel& model, std::int32_t type, std::int64_t number) {
  const bool isKnown = type >= 0 && static_cast<std::size_t>(type) < model.typeNames.size();
  const std::string word = isKnown ? model.typeNames[static_cast<std::size_t>(type)] : "element";
  return word + ' ' + std::to_string(number);
}

std::string NameShell(const ImportModel& model, std::int32_t shell) {
  const ImportShell& row = model.shells[static_cast<std::size_t>(shell)];
  return NameElement(model, row.type, row.number);
}

std::string NameBeam(const ImportModel& model, std::int32_t beam) {
  const ImportBeam& row = model.beams[static_cast<std::size_t>(beam)];
  return NameElement(model, row.type, row.number);
}

std::string NameNode(const ImportModel& model, std::int32_t node) {
  return "node " + std::to_string(model.nodeNumbers[static_cast<std::size_t>(node)]);
}

std::string NameGroup(const ImportGroup& group) {
  if (group.source.empty() || group.source == group.name) return group.name;
  return group.source + " \"" + group.name + '"';
}

std::string NameCase(const ImportCase& loads) { return loads.name.empty() ? "loads" : loads.name; }

}  // namespace kvx
