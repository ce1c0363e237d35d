#include "verification/convergence.h"

#include <cstdlib>

#include "verification/book.h"

namespace korvex::book {

std::string NameCount(int mesh) { return std::to_string(mesh); }

std::string NameSquare(int mesh) { return std::to_string(mesh) + " x " + std::to_string(mesh); }

namespace {

double ValueOf(const std::string& reference) { return std::strtod(reference.c_str(), nullptr); }

void AddRows(const ConvergenceCase& c, const Quantity& quantity, Extent extent,
             std::vector<Row>& rows) {
  Row results{quantity.name, quantity.reference};
  Row ratios{"result / reference", ""};
  Row others{"result / " + quantity.otherReference, ""};
  Row published{"published", ""};
  for (std::size_t i = 0; i < c.meshes.size(); ++i) {
    if (i < quantity.published.size())
      published.push_back(quantity.published[i]);
    else
      published.emplace_back();
    if (extent == Extent::Short && c.meshes[i] > c.finestShort) {
      for (Row* row : {&results, &ratios, &others}) row->push_back(SkippedFigure());
      continue;
    }
    const double result = quantity.solve(c.meshes[i]);
    results.push_back(Figure(result));
    ratios.push_back(Ratio(result / ValueOf(quantity.reference)));
    others.push_back(Ratio(result / ValueOf(quantity.otherReference)));
  }
  rows.push_back(results);
  rows.push_back(ratios);
  if (!quantity.otherReference.empty()) rows.push_back(others);
  if (!quantity.published.empty()) rows.push_back(published);
}

}  // namespace

std::string ComputeTable(const ConvergenceCase& c, Extent extent) {
  std::vector<Row> rows{{"", "reference"}};
  for (const int mesh : c.meshes) {
    rows[0].push_back(c.nameMesh(mesh) + (mesh > c.finestShort ? " \\*" : ""));
  }
  for (const Quantity& quantity : c.quantities) AddRows(c, quantity, extent, rows);
  return FormatTable(rows);
}

}  // namespace korvex::book
