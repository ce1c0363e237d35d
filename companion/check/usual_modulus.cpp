#include "check/usual_modulus.h"

#include <cmath>

namespace kvx {

using korvex::Section;

double FindUsualModulus(const CheckedModel& model, const TableUse& use) {
  double usual = 0.0;
  std::uint32_t most = 0;
  for (std::int32_t row = 0; row < CountRows(model.tables, Section::Materials); ++row) {
    const double E = model.tables.Materials[static_cast<std::size_t>(row)].E;
    const std::uint32_t uses = UsesOf(use, Section::Materials, row);
    if (uses == 0 || !(E > 0.0) || !std::isfinite(E)) continue;
    if (IsDoubtful(model, Section::Materials, row)) continue;
    if (uses > most || (uses == most && E < usual)) {
      most = uses;
      usual = E;
    }
  }
  return usual;
}

}  // namespace kvx
