#include "cases/envelope.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <utility>

#include "report/stop.h"

namespace kvx {

namespace {

// One side of an envelope: its smallest or its largest values.
struct Side {
  std::vector<double>& values;
  std::vector<std::int32_t>& cases;
  std::vector<double>& with;
};

void InitSide(std::size_t items, std::size_t components, const Side& side) {
  constexpr double Nan = std::numeric_limits<double>::quiet_NaN();
  side.values.assign(items * components, Nan);
  side.cases.assign(items * components, NoCase);
  side.with.assign(items * components * components, Nan);
}

// Lets the case govern entry `at` of the side. item: all components of the item.
void Govern(std::size_t at, const double* item, std::size_t components, std::int32_t caseNumber,
            const Side& side) {
  side.values[at] = item[at % components];
  side.cases[at] = caseNumber;
  std::copy_n(item, components, &side.with[at * components]);
}

void ExpectSize(const char* what, std::size_t found, std::size_t expected) {
  if (found == expected) return;
  throw korvex::Stop{korvex::StopKind::Notice, "An envelope has " + std::to_string(expected) + " " +
                                                   what + ", but the case has " +
                                                   std::to_string(found) + "."};
}

template <typename IsBefore>
std::size_t FindItem(const Envelope& envelope, const std::vector<double>& values,
                     std::size_t component, const IsBefore& isBefore) {
  std::size_t found = envelope.items;
  for (std::size_t item = 0; item < envelope.items; ++item) {
    const double value = values[item * envelope.components + component];
    if (std::isnan(value)) continue;
    if (found == envelope.items ||
        isBefore(value, values[found * envelope.components + component])) {
      found = item;
    }
  }
  return found;
}

}  // namespace

void InitEnvelope(std::size_t items, std::size_t components, std::vector<std::uint8_t> isAbsent,
                  Envelope& envelope) {
  if (!isAbsent.empty()) ExpectSize("values", isAbsent.size(), items * components);
  envelope.items = items;
  envelope.components = components;
  envelope.isAbsent = std::move(isAbsent);
  envelope.cases.clear();
  envelope.notFinite = 0;
  InitSide(items, components, {envelope.smallest, envelope.smallestCase, envelope.withSmallest});
  InitSide(items, components, {envelope.largest, envelope.largestCase, envelope.withLargest});
}

void AddCase(const std::vector<double>& values, std::int32_t caseNumber, Envelope& envelope) {
  const std::size_t components = envelope.components;
  ExpectSize("values", values.size(), envelope.items * components);
  envelope.cases.push_back(caseNumber);
  const Side small{envelope.smallest, envelope.smallestCase, envelope.withSmallest};
  const Side large{envelope.largest, envelope.largestCase, envelope.withLargest};
  for (std::size_t at = 0; at < values.size(); ++at) {
    if (!envelope.isAbsent.empty() && envelope.isAbsent[at] != 0) continue;
    const double value = values[at];
    if (!std::isfinite(value)) {
      ++envelope.notFinite;
      continue;
    }
    const double* item = &values[at - at % components];
    const bool isFirst = small.cases[at] == NoCase;
    if (isFirst || value < small.values[at]) Govern(at, item, components, caseNumber, small);
    if (isFirst || value > large.values[at]) Govern(at, item, components, caseNumber, large);
  }
}

std::size_t FindSmallestItem(const Envelope& envelope, std::size_t component) {
  return FindItem(envelope, envelope.smallest, component, [](double a, double b) { return a < b; });
}

std::size_t FindLargestItem(const Envelope& envelope, std::size_t component) {
  return FindItem(envelope, envelope.largest, component, [](double a, double b) { return a > b; });
}

}  // namespace kvx
