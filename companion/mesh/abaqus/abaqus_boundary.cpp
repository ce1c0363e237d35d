#include "mesh/abaqus/abaqus_boundary.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "mesh/abaqus/abaqus_fields.h"
#include "mesh/abaqus/abaqus_sets.h"
#include "mesh/abaqus/abaqus_surplus.h"
#include "mesh/letter_case.h"

namespace kvx {

namespace {

using korvex::Vector3;

// An axis within this of a global one is that one: 1e-6 radians, beyond the digits of a deck.
constexpr double AlongShare = 1e-6;

// The names that stand for several dofs (manual of Abaqus, "Boundary conditions"): a plane of
// symmetry holds the displacement across it and the rotations about the axes in it.
struct NamedSupport {
  std::string_view name;
  std::array<bool, 6> isHeld;
};
constexpr NamedSupport NamedSupports[] = {
    {"XSYMM", {true, false, false, false, true, true}},
    {"YSYMM", {false, true, false, true, false, true}},
    {"ZSYMM", {false, false, true, true, true, false}},
    {"XASYMM", {false, true, true, true, false, false}},
    {"YASYMM", {true, false, true, false, true, false}},
    {"ZASYMM", {true, true, false, false, false, true}},
    {"PINNED", {true, true, true, false, false, false}},
    {"ENCASTRE", {true, true, true, true, true, true}},
};

// The dofs of one data line.
struct SupportLine {
  std::array<bool, 6> isHeld{};
  double value = 0.0;
};

void ReportLine(AbaqusImport& import, Fate fate, std::string_view reason, SourcePlace place,
                std::string_view example) {
  ReportCard("*BOUNDARY", fate, reason, place, example, import.report);
}

// Reads what stands behind the node or set; false where nothing of it can be taken.
bool ReadSupport(AbaqusImport& import, const AbaqusLine& data, AbaqusFields& fields,
                 SupportLine& line) {
  std::string_view first;
  NextField(fields, first);
  for (const NamedSupport& named : NamedSupports) {
    if (!IsWord(first, named.name)) continue;
    line.isHeld = named.isHeld;
    return true;
  }
  const bool isName = first.find_first_not_of("+-0123456789") != std::string_view::npos;
  if (isName) {
    ReportLine(import, Fate::Lost, "a support of this name has no counterpart", data.place, first);
    return false;
  }
  const std::int64_t from = IntegerOf(first, 0, data.place, import.report);
  const std::int64_t to = NextInteger(fields, from, data.place, import.report);
  line.value = NextReal(fields, 0.0, data.place, import.report);
  if (from < 1 || to < from) StopImport(import.report, data.place, "a support without its dofs");
  if (to > 6) {
    ReportLine(import, Fate::Lost, "dofs above 6: warping, pressure, temperature", data.place,
               data.text);
  }
  for (std::int64_t dof = from; dof <= std::min<std::int64_t>(to, 6); ++dof) {
    line.isHeld[static_cast<std::size_t>(dof - 1)] = true;
  }
  return from <= 6;
}

void HoldNode(std::int32_t node, const SupportLine& line, bool keepsValues,
              AbaqusSupports& supports) {
  const auto [at, isNew] = supports.at.emplace(node, supports.held.size());
  if (isNew) supports.held.push_back({node, {}, {}});
  HeldNode& held = supports.held[at->second];
  for (std::size_t dof = 0; dof < 6; ++dof) {
    if (!line.isHeld[dof]) continue;
    held.isHeld[dof] = true;
    if (!keepsValues) held.values[dof] = line.value;
  }
}

// How the keyword's options change its values.
struct BoundaryOptions {
  bool isMotion = false;     // velocities or accelerations
  bool keepsValues = false;  // FIXED: what was reached before
  bool isInStep = true;
};

BoundaryOptions ReadOptions(AbaqusImport& import, const AbaqusKeyword& keyword) {
  constexpr std::array<std::string_view, 5> known{"OP", "TYPE", "AMPLITUDE", "FIXED", "INPUT"};
  ReportOtherParameters(import, keyword, known);
  const auto report = [&](Fate fate, std::string_view reason) {
    ReportCard("*BOUNDARY", fate, reason, keyword.place, {}, import.report);
  };
  BoundaryOptions options;
  const std::string_view type = ParameterText(import.deck, keyword, "TYPE");
  options.isMotion = !type.empty() && !IsWord(type, "DISPLACEMENT");
  if (FindParameter(import.deck, keyword, "AMPLITUDE") != nullptr) {
    report(Fate::Limited, "AMPLITUDE: the full value is taken");
  }
  options.keepsValues = FindParameter(import.deck, keyword, "FIXED") != nullptr;
  if (options.keepsValues) {
    report(Fate::Limited, "FIXED: held where the steps before prescribe it, else at 0");
  }
  return options;
}

void TakeBoundaryLine(AbaqusImport& import, const AbaqusKeyword& keyword, const AbaqusLine& data,
                      const BoundaryOptions& options, AbaqusSupports& supports) {
  AbaqusFields fields{data.text};
  std::string_view name;
  NextField(fields, name);
  const AbaqusTargets targets = FindTargets(import, false, name, keyword);
  SupportLine line;
  if (!ReadSupport(import, data, fields, line)) return;
  ReportSurplusFields(import, keyword, data, fields);
  if (!targets.isKnown) {
    ReportLine(import, Fate::Refused, "it names a node or set that does not exist", data.place,
               name);
    return;
  }
  if (options.isMotion && line.value != 0.0) {
    ReportLine(import, Fate::Lost, "a velocity or acceleration; the dof is held", data.place, name);
    line.value = 0.0;
  }
  if (!options.isInStep && line.value != 0.0) {
    ReportLine(import, Fate::Limited, "a displacement outside of a step is taken in all steps",
               data.place, name);
  }
  const std::size_t count = CountTargets(import, targets);
  SpendEntries(import, count, data.place);
  for (std::size_t k = 0; k < count; ++k) {
    HoldNode(TargetAt(import, targets, k), line, options.keepsValues, supports);
  }
}

// The global axis along which an axis lies, and its sign; 3: none.
std::size_t AlongGlobal(const Vector3& axis, double& sign) {
  for (std::size_t k = 0; k < 3; ++k) {
    const double rest = std::max(std::abs(axis[(k + 1) % 3]), std::abs(axis[(k + 2) % 3]));
    if (rest > AlongShare) continue;
    sign = axis[k] < 0.0 ? -1.0 : 1.0;
    return k;
  }
  return 3;
}

// Turns the three displacements or rotations of a node (from: 0 or 3) into global ones. All three
// held are held in any axes; otherwise the held axes must be global ones. Returns false where they
// are not.
bool TurnSupport(const HeldNode& held, const AbaqusAxes& axes, std::size_t from, HeldNode& turned) {
  const bool all = held.isHeld[from] && held.isHeld[from + 1] && held.isHeld[from + 2];
  if (all) {
    const Vector3 value =
        Combine(axes, {held.values[from], held.values[from + 1], held.values[from + 2]});
    for (std::size_t k = 0; k < 3; ++k) {
      turned.isHeld[from + k] = true;
      turned.values[from + k] = value[k];
    }
    return true;
  }
  for (std::size_t k = 0; k < 3; ++k) {
    if (!held.isHeld[from + k]) continue;
    double sign = 1.0;
    const std::size_t global = AlongGlobal(axes[k], sign);
    if (global > 2) return false;
    turned.isHeld[from + global] = true;
    turned.values[from + global] = sign * held.values[from + k];
  }
  return true;
}

// Three displacements or rotations that are all held at 0 are so in any axes.
bool NeedsAxes(const HeldNode& held) {
  for (std::size_t from = 0; from < 6; from += 3) {
    std::size_t count = 0;
    for (std::size_t k = from; k < from + 3; ++k) {
      count += held.isHeld[k] ? 1 : 0;
      if (held.isHeld[k] && held.values[k] != 0.0) return true;
    }
    if (count != 0 && count != 3) return true;
  }
  return false;
}

// Adds the rows of a node's supports, in global axes.
void AddSupport(AbaqusImport& import, const AbaqusTransforms& transforms, const HeldNode& held,
                std::vector<korvex::NodalRestraint>& restraints,
                std::vector<PrescribedDof>& prescribed) {
  HeldNode turned{held.node, {}, {}};
  AbaqusAxes axes{};
  const bool haveAxes = AxesOfNode(import.model, transforms, held.node, axes) || !NeedsAxes(held);
  const bool areTurned =
      haveAxes && TurnSupport(held, axes, 0, turned) && TurnSupport(held, axes, 3, turned);
  if (!areTurned) {
    const std::int64_t number = import.model.nodeNumbers[static_cast<std::size_t>(held.node)];
    ReportCard("*TRANSFORM", Fate::Refused, "a support along axes that are not the global ones",
               import.report.cards["*TRANSFORM"].first, "node " + std::to_string(number),
               import.report);
    return;
  }
  korvex::NodalRestraint restraint;
  restraint.node = held.node;
  for (std::size_t dof = 0; dof < 6; ++dof) {
    restraint.fixed[dof] = turned.isHeld[dof] ? 1 : 0;
    if (!turned.isHeld[dof] || turned.values[dof] == 0.0) continue;
    prescribed.push_back({held.node, static_cast<std::int32_t>(dof), turned.values[dof]});
  }
  restraints.push_back(restraint);
}

std::vector<HeldNode> SortedByNode(std::vector<HeldNode> held) {
  std::sort(held.begin(), held.end(),
            [](const HeldNode& a, const HeldNode& b) { return a.node < b.node; });
  return held;
}

std::uint64_t HashRestraints(const std::vector<korvex::NodalRestraint>& restraints) {
  // FNV-1a over the nodes and flags.
  std::uint64_t hash = 14695981039346656037U;
  const auto mix = [&](std::uint64_t value) { hash = (hash ^ value) * 1099511628211U; };
  for (const korvex::NodalRestraint& restraint : restraints) {
    mix(static_cast<std::uint64_t>(restraint.node));
    for (const std::int32_t fixed : restraint.fixed) mix(static_cast<std::uint64_t>(fixed) + 2);
  }
  return hash;
}

bool AreEqual(const std::vector<korvex::NodalRestraint>& a,
              const std::vector<korvex::NodalRestraint>& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const auto& p, const auto& q) {
    return p.node == q.node && p.fixed == q.fixed;
  });
}

// The row of these supports among the model's; added where there are none like them.
std::int32_t SupportRow(ImportModel& model, std::vector<korvex::NodalRestraint>&& restraints,
                        SupportRows& rows) {
  std::vector<std::int32_t>& candidates = rows.byHash[HashRestraints(restraints)];
  for (const std::int32_t row : candidates) {
    if (AreEqual(model.supports[static_cast<std::size_t>(row)].restraints, restraints)) return row;
  }
  const auto row = static_cast<std::int32_t>(model.supports.size());
  std::string name = "*BOUNDARY";
  if (row > 0) name += " " + std::to_string(row + 1);
  model.supports.push_back({name, std::move(restraints)});
  candidates.push_back(row);
  return row;
}

}  // namespace

void TakeAbaqusBoundary(AbaqusImport& import, const AbaqusKeyword& keyword, bool isInStep,
                        AbaqusSupports& supports) {
  BoundaryOptions options = ReadOptions(import, keyword);
  options.isInStep = isInStep;
  for (std::size_t k = 0; k < keyword.lineCount; ++k) {
    TakeBoundaryLine(import, keyword, import.deck.lines[keyword.firstLine + k], options, supports);
  }
  supports.areNew = true;
}

void AddSupports(AbaqusImport& import, const AbaqusTransforms& transforms, AbaqusSupports& supports,
                 SupportRows& rows, ImportCase& loads) {
  if (supports.areNew) {
    SpendEntries(import, supports.held.size(), loads.place);
    std::vector<korvex::NodalRestraint> restraints;
    rows.lastPrescribed.clear();
    for (const HeldNode& held : SortedByNode(supports.held)) {
      AddSupport(import, transforms, held, restraints, rows.lastPrescribed);
    }
    rows.last = -1;
    if (!restraints.empty()) rows.last = SupportRow(import.model, std::move(restraints), rows);
    supports.areNew = false;
  }
  SpendEntries(import, rows.lastPrescribed.size(), loads.place);
  loads.supports = rows.last;
  loads.prescribed = rows.lastPrescribed;
}

}  // namespace kvx
