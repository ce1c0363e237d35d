#include "commands/number_json.h"

#include <cmath>

namespace kvx {

using Json = nlohmann::ordered_json;

Json NumberJson(double number) {
  return std::isfinite(number) ? Json(number + 0.0) : Json(nullptr);
}

Json VectorJson(const korvex::Vector3& vector) { return NumbersJson(vector); }

Json SupportJson(const Support& support) {
  Json json = Json::array();
  for (std::size_t dof = 0; dof < support.force.size(); ++dof) {
    json.push_back(support.held[dof] != 0 ? NumberJson(support.force[dof]) : Json(nullptr));
  }
  return json;
}

}  // namespace kvx
