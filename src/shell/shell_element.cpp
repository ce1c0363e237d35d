#include "shell/shell_element.h"

#include <algorithm>

namespace korvex {

namespace {

template <std::int32_t Nodes>
bool SetShellGeometry(ShellElement<Nodes>& element, const double* coordinates,
                      std::int32_t nodeCount, double E, double Mu, double TK) {
  std::copy(coordinates, coordinates + element.Coordinates.size(), element.Coordinates.begin());
  element.E = E;
  element.Mu = Mu;
  element.TK = TK;

  const auto& c = element.Coordinates;
  const Vector3 p1{c[0], c[1], c[2]};
  const Vector3 p2{c[3], c[4], c[5]};
  const std::size_t last = c.size() - 3;
  const Vector3 pLast{c[last], c[last + 1], c[last + 2]};
  ComputeElementFrame(p1, p2, pLast, element.Frame);
  return nodeCount == element.NodeCount;
}

}  // namespace

bool SetGeometry(Shell4Element& element, const double* coordinates, std::int32_t nodeCount,
                 double E, double Mu, double TK) {
  return SetShellGeometry(element, coordinates, nodeCount, E, Mu, TK);
}

bool SetGeometry(Shell3Element& element, const double* coordinates, std::int32_t nodeCount,
                 double E, double Mu, double TK) {
  return SetShellGeometry(element, coordinates, nodeCount, E, Mu, TK);
}

}  // namespace korvex
