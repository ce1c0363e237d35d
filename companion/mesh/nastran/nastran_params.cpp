#include "mesh/nastran/nastran_params.h"

#include <array>
#include <string>
#include <string_view>

#include "mesh/nastran/nastran_fields.h"
#include "mesh/nastran/nastran_repeats.h"

namespace kvx {

namespace {

constexpr std::string_view MassName = "WTMASS";

struct ParamRow {
  Fate fate;
  std::string_view reason;
  std::string_view names;  // each between two blanks
};

constexpr std::array<ParamRow, 7> Rows = {{
    {Fate::NoEffect, "a parameter of output",
     " GPWG POST POSTEXT POSTU GRDPNT PRTMAXIM OUGCORD OGEOM OMID NOCOMPS USETPRT USETSEL "
     "OUNIT1 OUNIT2 OMACHPR OIBULK OUTOPT PRPHIVZ CURVPLOT DOPT PATVER DBALL PRTRESLT EXTOUT "
     "ECHOOFF PROUT PRTCSTM PRTEQXIN PRTGPDT PRTGPL PRTGPTT PRTBGPDT PRTDISP PRTSTAT0 PVALINIT "
     "STRESS ELITASPC COMPRESS INFILE SIGMA S1 S1G S1M TINY OLDSEQ OPGEOM XYUNIT PRGPST "
     "SEP1XOVR "},
    {Fate::NoEffect, "a parameter of how another program solves",
     " MAXRATIO BAILOUT SOLLIB SPARSE SPARSTOR SOLVER CHECKOUT EPZERO EPPRT DBDICT ERROR NEWSEQ "
     "START SUPER PARTN MPIPCPU NCPU MEMORY ACOUT NOFISR CHKMASS IRES TINYSTIF Q4SURFIT "
     "MATSPARS USR_JCT Q4K6ROT "},
    {Fate::NoEffect, "free directions are not held by themselves here; kvx check finds them",
     " AUTOSPC AUTOSPCR SPCGEN "},
    {Fate::NoEffect, "the rotation about a shell's normal has a stiffness of its own here",
     " K6ROT K6ROTX MINK6 SNORM SNORMPRT "},
    {Fate::NoEffect, "a parameter of dynamics, buckling or optimization",
     " COUPMASS G GFL W3 W4 W3FL W4FL ALPHA1 ALPHA2 ALPHA LFREQ HFREQ LMODES RESVEC RESVINER "
     "KDAMP DDRMM LGDAMP MODACC EIGNFREQ NLLOOP BUCKLE CASIEMA DESPCH DESPCH1 CDIF ENFMETH "
     "ENFMOTN FZERO TFLID MODTRK ARBMNOR VREF AUNITS MACH Q NONCUP NMLOOP NDAMP BETA ADPCON "},
    {Fate::Limited, "large displacements are not followed here; the analysis is linear",
     " LGDISP "},
    {Fate::Lost, "loads and supports by inertia have no counterpart", " INREL "},
}};

}  // namespace

void ReportParam(const NastranDeck& deck, const NastranCard& card, ImportReport& report) {
  const std::string name(FieldOf(deck, card, 2));
  if (name == MassName) return;
  const std::string example = std::string(card.name) + ' ' + name;
  const std::string between = ' ' + name + ' ';
  for (const ParamRow& row : Rows) {
    if (row.names.find(between) == std::string_view::npos) continue;
    ReportCard(card.name, row.fate, row.reason, card.place, example, report);
    return;
  }
  ReportCard(card.name, Fate::Limited, "a parameter that is not known here", card.place, example,
             report);
}

double MassFactor(const NastranDeck& deck, ImportReport& report) {
  const NastranCard* taken = nullptr;
  for (const NastranCard& card : deck.cards) {
    if (card.name != "PARAM" || FieldOf(deck, card, 2) != MassName) continue;
    if (taken != nullptr && !SayTheSame(deck, *taken, card)) {
      ReportCard(card.name, Fate::Refused, "WTMASS is given twice, with different values",
                 card.place, "PARAM WTMASS", report);
    }
    if (taken == nullptr) taken = &card;
  }
  return taken == nullptr ? 1.0 : NeedReal({deck, *taken, report}, 3);
}

}  // namespace kvx
