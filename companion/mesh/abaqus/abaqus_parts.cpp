#include "mesh/abaqus/abaqus_parts.h"

#include <algorithm>
#include <string>

#include "mesh/abaqus/abaqus_fields.h"

namespace kvx {

namespace {

// The part of the deck's first instance; "" without one.
std::string UsedPart(const AbaqusDeck& deck) {
  for (const AbaqusKeyword& keyword : deck.keywords) {
    if (keyword.name != "INSTANCE") continue;
    const AbaqusParameter* part = FindParameter(deck, keyword, "PART");
    return part == nullptr ? std::string{} : NameKey(part->value);
  }
  return {};
}

bool HasInstance(const AbaqusDeck& deck) {
  return std::any_of(deck.keywords.begin(), deck.keywords.end(),
                     [](const AbaqusKeyword& keyword) { return keyword.name == "INSTANCE"; });
}

}  // namespace

void MarkAbaqusScopes(AbaqusDeck& deck, ImportReport& report) {
  const bool hasInstance = HasInstance(deck);
  const std::string used = UsedPart(deck);
  AbaqusScope scope = AbaqusScope::Global;
  for (AbaqusKeyword& keyword : deck.keywords) {
    if (keyword.name == "PART") {
      const AbaqusParameter* name = FindParameter(deck, keyword, "NAME");
      // Without any instance a part is taken as it stands.
      const bool isUsed = !hasInstance || (name != nullptr && NameKey(name->value) == used);
      scope = isUsed ? AbaqusScope::Part : AbaqusScope::UnusedPart;
    } else if (keyword.name == "ASSEMBLY") {
      scope = AbaqusScope::Assembly;
    } else if (keyword.name == "INSTANCE") {
      scope = AbaqusScope::Part;
    }
    keyword.scope = scope;
    if (scope == AbaqusScope::UnusedPart) {
      ReportCard("*" + keyword.name, Fate::NoEffect, "in a part that no instance uses",
                 keyword.place, {}, report);
    }
    if (keyword.name == "END PART" || keyword.name == "END ASSEMBLY") scope = AbaqusScope::Global;
    if (keyword.name == "END INSTANCE") scope = AbaqusScope::Assembly;
  }
}

}  // namespace kvx
