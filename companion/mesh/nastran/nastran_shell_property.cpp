// A blank material takes away a part of the plate's stiffness: MID1 membrane, MID2 bending, MID3
// transverse shear (quick reference guide, PSHELL). Here a plate has all three.
#include "mesh/nastran/nastran_shell_property.h"

#include <cmath>

#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

// Ratios are written with three digits and more.
constexpr double RatioTolerance = 1e-3;
constexpr double UsualShearRatio = 5.0 / 6.0;  // TS/T

bool Differ(double a, double b) { return std::abs(a - b) > RatioTolerance * std::abs(b); }

struct ShellMaterials {
  std::int64_t membrane = 0, bending = 0, shear = 0, coupling = 0;  // 0: blank
};

// Calls `limit` for each departure of the materials.
template <typename Limit>
void TellMaterials(const ShellMaterials& m, const Limit& limit) {
  const bool bends = m.bending > 0;
  if (m.membrane == 0) limit("MID1 is blank: bending only; here the plate stretches, too");
  if (m.bending == 0) limit("MID2 is blank: membrane only; here the plate bends, too");
  if (m.bending < 0) limit("MID2 is -1: plane strain; here the plate is free to bend and contract");
  if (m.membrane > 0 && bends && m.bending != m.membrane) {
    limit("MID2 is another material than MID1; MID1 is taken for bending, too");
  }
  if (bends && m.shear == 0) {
    limit("MID3 is blank: rigid in transverse shear; here quadrilaterals are flexible in it");
  }
  if (m.shear > 0 && m.shear != m.membrane && m.shear != m.bending) {
    limit("MID3 is another material; MID1 is taken for transverse shear, too");
  }
  if (m.coupling > 0) limit("MID4, the coupling of membrane and bending, is left out");
}

}  // namespace

void ReadShellProperty(const NastranRow& row, ShellPlate& plate, ImportReport& report) {
  const std::string example = CardText(row.card.name, NeedNumber(row, 2));
  const auto limit = [&](std::string_view reason) {
    ReportCard(row.card.name, Fate::Limited, reason, row.card.place, example, report);
  };
  const ShellMaterials m = {IntegerField(row, 3, 0), IntegerField(row, 5, 0),
                            IntegerField(row, 7, 0), IntegerField(row, 14, 0)};
  TellMaterials(m, limit);
  plate.material = m.membrane > 0 ? m.membrane : m.bending;
  if (plate.material <= 0) {
    plate.material = 0;
    plate.lacks = "PSHELL: it has no material";
  }
  plate.thickness = RealField(row, 4, 0.0);
  if (!IsBlank(row, 4) && !(plate.thickness > 0.0)) {
    plate.lacks = "PSHELL: its thickness is not above 0";
  }
  if (Differ(RealField(row, 6, 1.0), 1.0)) {
    limit("12I/T**3 is not 1; here the plate bends with I = T**3 / 12");
  }
  if (Differ(RealField(row, 8, UsualShearRatio), UsualShearRatio)) {
    limit("TS/T is not 0.833333; here it is");
  }
  if (RealField(row, 9, 0.0) != 0.0) limit("its non-structural mass (NSM) is left out");
  const double face = plate.thickness / 2.0;
  const bool hasOtherFibres = Differ(std::abs(RealField(row, 12, face)), face) ||
                              Differ(std::abs(RealField(row, 13, face)), face);
  if (hasOtherFibres) limit("stresses are those at the faces, not at Z1 and Z2");
}

}  // namespace kvx
