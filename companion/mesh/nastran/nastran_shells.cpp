#include "mesh/nastran/nastran_shells.h"

#include <algorithm>
#include <cstddef>

#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

// Where the fields of an element's card stand.
struct ShellLayout {
  std::size_t corners = 4;
  std::size_t offset = 9;          // ZOFFS
  std::size_t thicknessFlag = 13;  // TFLAG; T1 and the others stand behind it
};
constexpr ShellLayout QuadLayout = {4, 9, 13};
constexpr ShellLayout TriangleLayout = {3, 8, 13};

// The nodes of an element. Returns false, and reports it, where one is missing or stands twice.
bool ReadCorners(const NastranRow& row, std::size_t corners, ImportShell& shell,
                 NastranElements& elements) {
  bool isWhole = true;
  for (std::size_t k = 0; k < corners; ++k) {
    shell.nodes[k] = NodeOfField(row, 4 + k, shell.number, elements);
    isWhole = isWhole && shell.nodes[k] >= 0;
  }
  if (!isWhole) return false;
  bool isRepeated = false;
  for (std::size_t i = 0; i < corners; ++i) {
    for (std::size_t k = 0; k < i; ++k) {
      isRepeated = isRepeated || shell.nodes[i] == shell.nodes[k];
    }
  }
  if (!isRepeated) return true;
  ReportElement(row.card, shell.number, Fate::Refused, "a node stands in it twice", elements);
  return false;
}

// The thickness of an element: that of its PSHELL, or of its corners. 0: none is given.
double ReadThickness(const NastranRow& row, const ShellLayout& layout, double plate,
                     const ImportShell& shell, NastranElements& elements) {
  const bool isShare = IntegerField(row, layout.thicknessFlag, 0) == 1;
  double sum = 0.0, least = 0.0, most = 0.0;
  for (std::size_t k = 0; k < layout.corners; ++k) {
    const std::size_t field = layout.thicknessFlag + 1 + k;
    double t = RealField(row, field, isShare ? 1.0 : plate);
    if (isShare) t *= plate;
    least = k == 0 ? t : std::min(least, t);
    most = k == 0 ? t : std::max(most, t);
    sum += t;
  }
  if (least == most) return least;
  ReportElement(row.card, shell.number, Fate::Limited,
                "its corners differ in thickness; their mean is taken", elements);
  return sum / static_cast<double>(layout.corners);
}

void ReportOffset(const NastranRow& row, const ShellLayout& layout, const ImportShell& shell,
                  NastranElements& elements) {
  if (RealField(row, layout.offset, 0.0) == 0.0) return;
  ReportElement(row.card, shell.number, Fate::Limited,
                "its offset (ZOFFS) is left out: the plate lies on its nodes", elements);
}

// Of an element whose property has no plate: a map file gives it another thickness.
void ReportUnusedThickness(const NastranRow& row, const ShellLayout& layout,
                           const ImportShell& shell, NastranElements& elements) {
  for (std::size_t k = 0; k < layout.corners; ++k) {
    if (IsBlank(row, layout.thicknessFlag + 1 + k)) continue;
    ReportElement(row.card, shell.number, Fate::Limited,
                  "its property has no counterpart: its thicknesses (T1 and others) are left out",
                  elements);
    return;
  }
}

void TakeProperty(const NastranRow& row, const ShellLayout& layout, NastranProperty& property,
                  ImportShell& shell, NastranElements& elements) {
  shell.material = property.material;
  const bool isPanel = row.card.name == "CSHEAR";  // it has neither an offset nor thicknesses
  if (!isPanel) ReportOffset(row, layout, shell, elements);
  if (!property.hasPlate) {
    if (!isPanel) ReportUnusedThickness(row, layout, shell, elements);
    return;
  }
  const double thickness = ReadThickness(row, layout, property.thickness, shell, elements);
  if (thickness > 0.0) {
    shell.thickness = ThicknessRow(thickness, property, elements.stock);
  } else {
    ReportElement(row.card, shell.number, Fate::Refused,
                  "neither the element nor its PSHELL has a thickness above 0", elements);
  }
}

void TakeShell(std::uint32_t cardRow, NastranElements& elements) {
  const NastranCard& card = elements.stock.deck.cards[cardRow];
  const NastranRow row{elements.stock.deck, card, elements.stock.report};
  const bool isTriangle = card.name == "CTRIA3" || card.name == "CTRIAR";
  const ShellLayout& layout = isTriangle ? TriangleLayout : QuadLayout;
  ImportShell shell;
  shell.number = NeedNumber(row, 2);
  if (!IsNewElement(card, shell.number, elements)) return;
  if (!ReadCorners(row, layout.corners, shell, elements)) return;
  const PropertyFamily family =
      card.name == "CSHEAR" ? PropertyFamily::ShearPanel : PropertyFamily::Shell;
  NastranProperty* property =
      UseProperty(family, IntegerField(row, 3, shell.number), card, shell.number, elements.stock);
  if (property == nullptr) return;
  TakeProperty(row, layout, *property, shell, elements);
  ImportModel& model = elements.stock.model;
  shell.type = TypeRow(card.name, model);
  const auto shellRow = static_cast<std::int32_t>(model.shells.size());
  model.shells.push_back(shell);
  model.groups[static_cast<std::size_t>(property->group)].shells.push_back(shellRow);
  elements.numbers.shells.emplace(shell.number, shellRow);
  elements.shellCards.push_back(cardRow);
}

}  // namespace

void TakeNastranShells(const std::vector<std::uint32_t>& cards, NastranElements& elements) {
  elements.stock.model.shells.reserve(cards.size());
  elements.numbers.shells.reserve(cards.size());
  elements.shellCards.reserve(cards.size());
  for (const std::uint32_t card : cards) TakeShell(card, elements);
}

}  // namespace kvx
