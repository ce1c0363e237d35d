// Numbers of results as JSON, the same for all commands. What is not finite is null, and so is what
// does not exist.
#pragma once

#include <nlohmann/json.hpp>

#include "audit/reactions.h"
#include "base/vector3.h"

namespace kvx {

// Null where it is not finite. Without a sign of zero.
nlohmann::ordered_json NumberJson(double number);

// [1.5, 2, ...] of an array or vector of numbers.
template <typename Numbers>
nlohmann::ordered_json NumbersJson(const Numbers& numbers) {
  nlohmann::ordered_json json = nlohmann::ordered_json::array();
  for (const double number : numbers) json.push_back(NumberJson(number));
  return json;
}

// [x, y, z]
nlohmann::ordered_json VectorJson(const korvex::Vector3& vector);

// [Fx, Fy, Fz, Mx, My, Mz], null where the support leaves the degree of freedom free.
nlohmann::ordered_json SupportJson(const Support& support);

}  // namespace kvx
