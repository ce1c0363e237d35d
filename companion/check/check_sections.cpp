#include "check/check_sections.h"

#include <algorithm>
#include <cmath>
#include <initializer_list>
#include <string>
#include <utility>

#include "beam/section_properties.h"
#include "check/describe.h"

namespace kvx {

using korvex::BeamSection;
using korvex::CBeamSection;
using korvex::Section;

namespace {

// What is wrong with a section, if anything.
struct SectionFault {
  const char* code = nullptr;
  std::string fault;
  const char* consequence = "";
  const char* remedy = "";
};

std::string ValueText(const char* name, double value) {
  return std::string(name) + " = " + NumberText(value);
}

SectionFault NotPositive(const char* name, double value) {
  return {"K109", ValueText(name, value) + " is not positive",
          "displacements are wrong or not numbers", "Write the size of the section."};
}

// The smallest size of a section that can be built, as a share of the largest. Below it the
// stiffness of the detail model, that goes with the third powers of its plates, has no digits left.
constexpr double SmallestShare = 1e-6;

bool AreTooDifferent(std::initializer_list<double> sizes) {
  double smallest = std::max(sizes), largest = 0.0;
  for (const double size : sizes) {
    if (size == 0.0) continue;  // no flange
    smallest = std::min(smallest, size);
    largest = std::max(largest, size);
  }
  return smallest < SmallestShare * largest;
}

// Area and second moments as the solver has them, of a beam of length 1.
bool HasProperties(const korvex::SectionProperties& p) {
  return std::isfinite(p.ShearFactorY) && std::isfinite(p.ShearFactorZ) && p.A > 0.0 &&
         p.Iy > 0.0 && p.Iz > 0.0 && p.J > 0.0;
}

korvex::BeamElement UnitBeam() {
  korvex::BeamElement beam;
  beam.NodeJ = {1.0, 0.0, 0.0};
  beam.RefPoint = {0.0, 0.0, 1.0};
  beam.E = 1.0;
  return beam;
}

SectionFault LostInRounding() {
  return {"K110",
          "its sizes differ by a factor of a million or more, rounding leaves nothing of it",
          "displacements are wrong or not numbers", "Write all sizes in the same unit."};
}

SectionFault LookAt(Section section, const BeamSection& s) {
  if (!(s.Hw > 0.0)) return NotPositive("Hw", s.Hw);
  if (!(s.Tw > 0.0)) return NotPositive("Tw", s.Tw);
  if (s.Bf < 0.0) return NotPositive("Bf", s.Bf);
  if (s.Tf < 0.0) return NotPositive("Tf", s.Tf);
  if ((s.Bf == 0.0) != (s.Tf == 0.0)) {
    return {"K112", ValueText("Bf", s.Bf) + " but " + ValueText("Tf", s.Tf),
            "the solver leaves the flange out and takes a flat bar",
            "Write both sizes of the flange, or 0 for both."};
  }
  const korvex::BeamElement beam = UnitBeam();
  const korvex::SectionProperties p =
      section == Section::TBeamSections
          ? korvex::SectionPropertiesT(beam, s.Hw, s.Tw, s.Bf, s.Tf, 0.0)
          : korvex::SectionPropertiesL(beam, s.Hw, s.Tw, s.Bf, s.Tf, 0.0, false);
  if (!HasProperties(p) || AreTooDifferent({s.Hw, s.Tw, s.Bf, s.Tf})) return LostInRounding();
  if (s.Bf > 0.0 && s.Bf < s.Tw) {
    return {"K111",
            "its flange is narrower (Bf = " + NumberText(s.Bf) +
                ") than its web is thick (Tw = " + NumberText(s.Tw) + ")",
            "the solver takes it as it is",
            "Look whether Tw, Bf and Tf stand in their order and have the same unit."};
  }
  return {};
}

SectionFault LookAt(const CBeamSection& s) {
  if (!(s.R > 0.0)) return NotPositive("R", s.R);
  if (!(s.T > 0.0)) return NotPositive("T", s.T);
  const std::string sizes = ValueText("T", s.T) + " and " + ValueText("R", s.R);
  if (s.T > 2.0 * s.R) {
    return {"K110", "the inner radius R - T/2 is negative with " + sizes,
            "the solver takes off a hole that cannot be there",
            "Write the mean radius of the wall as R and the thickness of the wall as T."};
  }
  korvex::BeamElement beam;
  korvex::InitCBeamElement(beam, {0.0, 0.0, 0.0}, {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0, 0.0},
                           {1.0, 0.3, 0.0}, s, 0.0);
  if (!HasProperties(beam.Section) || AreTooDifferent({s.R, s.T})) return LostInRounding();
  if (s.T > s.R) {
    return {"K111", "its wall is thicker than its mean radius, " + sizes,
            "the solver takes it as it is, its detail model is meant for thin walls",
            "R is the mean radius of the wall, not the diameter: look whether R and T are "
            "exchanged."};
  }
  return {};
}

void AddFault(Section section, std::int32_t row, const SectionFault& fault, const TableUse& use,
              CheckedModel& model, FindingList& list) {
  if (fault.code == nullptr) return;
  Finding finding = MakeTableFinding(fault.code, model, use, section, row);
  finding.message = DescribeRow(use, section, row) + ": " + fault.fault;
  if (UsesOf(use, section, row) > 0) finding.message += std::string("; ") + fault.consequence;
  finding.message += ".";
  finding.remedy = fault.remedy;
  AddFinding(std::move(finding), list);
  MarkNamed(model, section, row);
}

}  // namespace

void CheckSections(const TableUse& use, CheckedModel& model, FindingList& list) {
  for (const Section section : {Section::TBeamSections, Section::LBeamSections}) {
    std::int32_t row = 0;
    for (const BeamSection& s : section == Section::TBeamSections ? model.tables.TBeamSections
                                                                  : model.tables.LBeamSections) {
      if (!IsDoubtful(model, section, row)) {
        AddFault(section, row, LookAt(section, s), use, model, list);
      }
      ++row;
    }
  }
  std::int32_t row = 0;
  for (const CBeamSection& s : model.tables.CBeamSections) {
    if (!IsDoubtful(model, Section::CBeamSections, row)) {
      AddFault(Section::CBeamSections, row, LookAt(s), use, model, list);
    }
    ++row;
  }
}

}  // namespace kvx
