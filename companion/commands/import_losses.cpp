#include "commands/import_losses.h"

#include <array>
#include <string_view>

namespace kvx {

namespace {

// Begins of the names of cards and keywords, without "*" and "case control".
struct LossNames {
  LossRank rank;
  std::string_view begin;
};

// A name takes the first row that fits.
constexpr std::array<LossNames, 64> Names{{
    {LossRank::Joint, "RBE"},
    {LossRank::Joint, "RBAR"},
    {LossRank::Joint, "RROD"},
    {LossRank::Joint, "RTRPLT"},
    {LossRank::Joint, "RSPLINE"},
    {LossRank::Joint, "RSSCON"},
    {LossRank::Joint, "RJOINT"},
    {LossRank::Joint, "CRBE"},
    {LossRank::Joint, "CRBAR"},
    {LossRank::Joint, "CRROD"},
    {LossRank::Joint, "CRSPLINE"},
    {LossRank::Joint, "CRTRPLT"},
    {LossRank::Joint, "MPC"},
    {LossRank::Joint, "CELAS"},
    {LossRank::Joint, "CBUSH"},
    {LossRank::Joint, "CGAP"},
    {LossRank::Joint, "CFAST"},
    {LossRank::Joint, "CWELD"},
    {LossRank::Joint, "CSEAM"},
    {LossRank::Joint, "GENEL"},
    {LossRank::Joint, "BC"},
    {LossRank::Joint, "BSURF"},
    {LossRank::Joint, "FEEDGE"},
    {LossRank::Joint, "FEFACE"},
    {LossRank::Joint, "GMBND"},
    {LossRank::Joint, "EQUATION"},
    {LossRank::Joint, "COUPLING"},
    {LossRank::Joint, "KINEMATIC"},
    {LossRank::Joint, "DISTRIBUTING"},
    {LossRank::Joint, "RIGID BODY"},
    {LossRank::Joint, "TIE"},
    {LossRank::Joint, "CONTACT"},
    {LossRank::Joint, "SPRING"},
    {LossRank::Joint, "RELEASE"},
    {LossRank::Load, "loads"},
    {LossRank::Load, "acceleration"},
    {LossRank::Load, "FORCE"},
    {LossRank::Load, "MOMENT"},
    {LossRank::Load, "MOMAX"},
    {LossRank::Load, "PLOAD"},
    {LossRank::Load, "PRES"},
    {LossRank::Load, "LOAD"},
    {LossRank::Load, "GRAV"},
    {LossRank::Load, "RFORCE"},
    {LossRank::Load, "ACCEL"},
    {LossRank::Load, "DEFORM"},
    {LossRank::Load, "SLOAD"},
    {LossRank::Load, "LSEQ"},
    {LossRank::Load, "TEMP"},
    {LossRank::Load, "QBDY"},
    {LossRank::Load, "BOLT"},
    {LossRank::Load, "INITS"},
    {LossRank::Load, "INITIAL CONDITIONS"},
    {LossRank::Load, "CLOAD"},
    {LossRank::Load, "DLOAD"},
    {LossRank::Load, "DSLOAD"},
    {LossRank::Load, "CFLUX"},
    {LossRank::Load, "SPCD"},
    {LossRank::Mass, "CONM"},
    {LossRank::Mass, "CMASS"},
    {LossRank::Mass, "NSM"},
    {LossRank::Mass, "MASS"},
    {LossRank::Mass, "ROTARY"},
    {LossRank::Mass, "NONSTRUCTURAL"},
}};

std::string_view WithoutKind(std::string_view card) {
  for (const std::string_view kind : {std::string_view("case control "), std::string_view("*")}) {
    if (card.substr(0, kind.size()) == kind) return card.substr(kind.size());
  }
  return card;
}

}  // namespace

LossRank RankLoss(const ReportEntry& entry) {
  const std::string_view reason = entry.reason;
  if (reason.substr(0, 7) == "unknown" || reason.substr(0, 10) == "an unknown") {
    return LossRank::Unknown;
  }
  const std::string_view name = WithoutKind(entry.card);
  for (const LossNames& row : Names) {
    if (name.substr(0, row.begin.size()) == row.begin) return row.rank;
  }
  return LossRank::Structure;
}

}  // namespace kvx
