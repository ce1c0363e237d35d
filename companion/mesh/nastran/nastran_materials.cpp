// Of E, G and NU two are given and the third follows: E = 2 G (1 + NU).
#include "mesh/nastran/nastran_materials.h"

#include <cmath>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_params.h"
#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

// G and E / (2 (1 + NU)) may differ by what three digits leave open.
constexpr double ShearTolerance = 1e-3;

// What stands in a MAT1 card besides the numbers that are taken.
struct Mat1Notes {
  bool hasOtherShear = false;  // G is not E / (2 (1 + NU))
  bool hasNoPoisson = false;   // neither G nor NU is given
};

void ReadMat1(const NastranRow& row, NastranMaterial& material, Mat1Notes& notes) {
  const bool hasE = !IsBlank(row, 3), hasG = !IsBlank(row, 4), hasNu = !IsBlank(row, 5);
  const double E = RealField(row, 3, 0.0), G = RealField(row, 4, 0.0);
  const double nu = RealField(row, 5, 0.0);
  material.values = {E, nu, RealField(row, 6, 0.0)};
  if (!hasE && hasG && hasNu) material.values.E = 2.0 * G * (1.0 + nu);
  if (hasE && hasG && !hasNu && G > 0.0) material.values.Mu = E / (2.0 * G) - 1.0;
  if (hasE && hasG && hasNu) {
    notes.hasOtherShear = std::abs(2.0 * G * (1.0 + nu) - E) > ShearTolerance * std::abs(E);
  }
  notes.hasNoPoisson = hasE && !hasG && !hasNu;
  const double Mu = material.values.Mu;
  if (!(material.values.E > 0.0)) {
    material.lacks = "MAT1: its Young's modulus is not above 0";
  } else if (!(Mu > -1.0 && Mu < 0.5)) {
    material.lacks = "MAT1: its Poisson's ratio is not between -1 and 0.5";
  }
}

std::string LacksOfOther(std::string_view card) {
  if (card == "MAT2" || card == "MAT8" || card == "MAT9" || card == "MAT3" || card == "MATORT") {
    return std::string(card) + ": the material depends on the direction";
  }
  return std::string(card) + ": there is no such material here";
}

void ReportNotes(const NastranCard& card, std::int64_t number, const Mat1Notes& notes,
                 ImportReport& report) {
  const std::string example = CardText(card.name, number);
  if (notes.hasOtherShear) {
    ReportCard(card.name, Fate::Limited, "G is taken as E / (2 (1 + NU)), not as it is given",
               card.place, example, report);
  }
  if (notes.hasNoPoisson) {
    ReportCard(card.name, Fate::Limited, "G and NU are blank; NU is taken as 0", card.place,
               example, report);
  }
}

}  // namespace

void ReadMaterials(const NastranDeck& deck, const std::vector<std::uint32_t>& cards,
                   MaterialTable& table, ImportReport& report) {
  table.massFactor = MassFactor(deck, report);
  for (const std::uint32_t cardRow : cards) {
    const NastranCard& card = deck.cards[cardRow];
    const NastranRow row{deck, card, report};
    NastranMaterial material;
    material.number = NeedNumber(row, 2);
    material.card = cardRow;
    const auto [at, isNew] = table.rows.emplace(material.number, table.materials.size());
    if (!isNew) {
      ReportRepeated(deck, deck.cards[table.materials[at->second].card], card, material.number,
                     report);
      continue;
    }
    if (card.name != "MAT1") material.lacks = LacksOfOther(card.name);
    table.materials.push_back(std::move(material));
  }
}

const NastranMaterial* UseMaterial(const NastranDeck& deck, std::int64_t number,
                                   MaterialTable& table, ImportModel& model, ImportReport& report) {
  const auto at = table.rows.find(number);
  if (at == table.rows.end()) return nullptr;
  NastranMaterial& material = table.materials[at->second];
  if (material.isUsed) return &material;
  material.isUsed = true;
  const NastranCard& card = deck.cards[material.card];
  if (card.name != "MAT1") return &material;
  Mat1Notes notes;
  ReadMat1({deck, card, report}, material, notes);
  material.values.Density *= table.massFactor;
  ReportNotes(card, number, notes, report);
  if (!material.lacks.empty()) return &material;
  material.row = static_cast<std::int32_t>(model.materials.size());
  model.materials.push_back({CardText(card.name, number), material.values});
  return &material;
}

void ReportUnusedMaterials(const NastranDeck& deck, const MaterialTable& table,
                           ImportReport& report) {
  for (const NastranMaterial& material : table.materials) {
    if (material.isUsed) continue;
    const NastranCard& card = deck.cards[material.card];
    ReportCard(card.name, Fate::NoEffect, "no element has this material", card.place,
               CardText(card.name, material.number), report);
  }
}

}  // namespace kvx
