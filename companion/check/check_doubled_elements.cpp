#include "check/check_doubled_elements.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

#include "check/describe.h"

namespace kvx {

using korvex::Section;

namespace {

// An element's nodes in ascending order; unused places are 0.
struct SortedElement {
  std::array<std::int32_t, 4> nodes{};
  std::int32_t row = 0;
};

bool HasSameNodes(const SortedElement& a, const SortedElement& b) { return a.nodes == b.nodes; }

// The elements whose nodes are known and differ, sorted by nodes, then by row.
std::vector<SortedElement> SortElements(const CheckedModel& model, Section section) {
  std::vector<SortedElement> elements;
  const std::int32_t count = CountRows(model.tables, section);
  elements.reserve(static_cast<std::size_t>(count));
  for (std::int32_t row = 0; row < count; ++row) {
    if (StateOf(model, section, row) != ElementState::Sound) continue;
    const ElementNodes element = NodesOf(model.tables, section, row);
    SortedElement sorted;
    for (std::size_t k = 0; k < element.count; ++k) {
      std::size_t j = k;
      for (; j > 0 && sorted.nodes[j - 1] > element.nodes[k]; --j) {
        sorted.nodes[j] = sorted.nodes[j - 1];
      }
      sorted.nodes[j] = element.nodes[k];
    }
    sorted.row = row;
    elements.push_back(sorted);
  }
  std::sort(elements.begin(), elements.end(), [](const SortedElement& a, const SortedElement& b) {
    return std::tie(a.nodes, a.row) < std::tie(b.nodes, b.row);
  });
  return elements;
}

// On which side the flange of an L section lies, seen from the node with the smaller number: with
// its nodes exchanged and the same vector, a beam's local y points to the other side.
bool FlangeSide(const CheckedModel& model, std::int32_t row) {
  const auto at = static_cast<std::size_t>(row);
  const korvex::BeamSectionRef& ref = model.tables.BeamSectionRefs[at];
  if (ref.BeamSecType != korvex::BeamSecTypeL) return false;
  return ref.BeamSecMirrored !=
         (model.tables.BeamNodes[2 * at] > model.tables.BeamNodes[2 * at + 1]);
}

bool AreEqualBeams(const CheckedModel& model, std::int32_t a, std::int32_t b) {
  const auto i = static_cast<std::size_t>(a), j = static_cast<std::size_t>(b);
  const korvex::BeamSectionRef &s = model.tables.BeamSectionRefs[i],
                               &t = model.tables.BeamSectionRefs[j];
  const korvex::BeamRowProperties &p = model.tables.BeamProperties[i],
                                  &q = model.tables.BeamProperties[j];
  return std::tie(s.BeamSecType, s.BeamSecIndex, s.BeamSecOz, p.material, p.orientation) ==
             std::tie(t.BeamSecType, t.BeamSecIndex, t.BeamSecOz, q.material, q.orientation) &&
         FlangeSide(model, a) == FlangeSide(model, b);
}

void NameDoubled(Section section, std::int32_t first, std::int32_t row, CheckedModel& model,
                 FindingList& list) {
  StateOf(model, section, row) = ElementState::Broken;
  if (IsDoubtful(model, section, row)) return;
  Finding finding = MakeRowFinding("K121", model, section, row);
  finding.rows.push_back(first);
  finding.message = DescribeElement(model, section, row) + ": stands on the same nodes as row " +
                    std::to_string(first) + " (line " +
                    std::to_string(LineOf(model, section, first)) +
                    "); its stiffness counts twice.";
  finding.remedy = "Remove one of them.";
  AddFinding(std::move(finding), list);
}

// Equal beams among those on the same nodes. Only the last few before each are compared: a file of
// random rows must not cost time.
void CheckBeamGroup(const std::vector<SortedElement>& beams, std::size_t begin, std::size_t end,
                    CheckedModel& model, FindingList& list) {
  constexpr std::size_t MostCompared = 20;
  for (std::size_t k = begin + 1; k < end; ++k) {
    for (std::size_t j = k - begin > MostCompared ? k - MostCompared : begin; j < k; ++j) {
      if (!AreEqualBeams(model, beams[j].row, beams[k].row)) continue;
      NameDoubled(Section::Beams, beams[j].row, beams[k].row, model, list);
      break;
    }
  }
}

}  // namespace

void CheckDoubledElements(CheckedModel& model, FindingList& list) {
  for (const Section section : ElementSections) {
    const std::vector<SortedElement> elements = SortElements(model, section);
    for (std::size_t begin = 0; begin < elements.size();) {
      std::size_t end = begin + 1;
      while (end < elements.size() && HasSameNodes(elements[begin], elements[end])) ++end;
      if (section == Section::Beams) {
        CheckBeamGroup(elements, begin, end, model, list);
      } else {
        for (std::size_t k = begin + 1; k < end; ++k) {
          NameDoubled(section, elements[begin].row, elements[k].row, model, list);
        }
      }
      begin = end;
    }
  }
}

}  // namespace kvx
