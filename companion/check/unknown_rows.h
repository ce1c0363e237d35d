// Whether rows are missing that a conclusion about the whole model would need: after a slip of the
// text, or a reference that leads nowhere, such a conclusion would be a second finding of one slip.
#pragma once

#include <algorithm>

#include "check/checked_model.h"

namespace kvx {

inline bool HasLostRows(const CheckedModel& model, korvex::Section section) {
  return !model.lostRows[IndexOf(section)].empty() || model.titleLines[IndexOf(section)] == 0;
}

// Whether it is unknown which nodes belong to elements.
inline bool HasUnknownElements(const CheckedModel& model) {
  return std::any_of(ElementSections.begin(), ElementSections.end(), [&](korvex::Section section) {
    const auto& states = model.states[KindOf(section)];
    return HasLostRows(model, section) ||
           std::find(states.begin(), states.end(), ElementState::Unusable) != states.end();
  });
}

}  // namespace kvx
