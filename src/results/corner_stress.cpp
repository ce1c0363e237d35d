#include "results/corner_stress.h"

#include <cmath>

#include "shell/shell_stress-inl.h"
#include "shell/tri_membrane.h"
#include "shell/tri_plate.h"

namespace korvex {

void Shell4CornerStress(const Shell4Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, double xi, double eta) {
  ShellStressTerms<double> terms;
  SetUpTerms(element, displacements, terms);
  FormShell4Stress(element, terms, xi, eta, top, bottom);
}

void Shell3CornerStress(const Shell3Element& element, StressVector& top, StressVector& bottom,
                        const double* displacements, const std::array<double, 3>& L) {
  LocalDisplacements<3, double> d;
  SortDisplacements(element.Frame, displacements, d);

  TriMembrane membrane;
  SetUpPart(element, membrane);
  std::array<double, 18> B{};
  std::array<double, 9> D{};
  membrane.StrainMatrix(B.data());
  membrane.ElasticityMatrix(D.data());

  TriPlate plate;
  SetUpPart(element, plate);
  std::array<double, 27> Bb{};
  std::array<double, 9> Db{};
  plate.CurvatureMatrix(L, Bb.data());
  plate.BendingRigidity(Db.data());

  FormFaces(element.Frame, element.TK, MultiplyThrough(D.data(), B.data(), d.membrane.data(), 6),
            MultiplyThrough(Db.data(), Bb.data(), d.plate.data(), 9), top, bottom);
}

StressVector StressToGlobal(const ElementFrame& frame, const StressVector& local) {
  return RotateStress(frame, local);
}

double EquivalentStress(const StressVector& s) {
  const double xy = s[0] - s[1], yz = s[1] - s[2], zx = s[2] - s[0];
  return std::sqrt(0.5 *
                   (xy * xy + yz * yz + zx * zx + 6.0 * (s[3] * s[3] + s[4] * s[4] + s[5] * s[5])));
}

}  // namespace korvex
