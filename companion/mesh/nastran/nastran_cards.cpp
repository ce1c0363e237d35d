// The table of cards. Names that share their fate and reason stand in one row.
//
// A property card of elements that are not taken has no effect of its own: the elements are told.
#include "mesh/nastran/nastran_cards.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <vector>

#include "mesh/nastran/nastran_params.h"
#include "mesh/unknown_names.h"

namespace kvx {

namespace {

struct CardRow {
  NastranPart part;
  Fate fate;
  std::string_view reason;
  std::string_view names;  // apart by single blanks
};

constexpr NastranPart Structure = NastranPart::Structure;
constexpr NastranPart Loads = NastranPart::Loads;
constexpr NastranPart Neither = NastranPart::Neither;

constexpr std::array<CardRow, 36> Rows = {{
    {Structure, Fate::Lost, "",
     "GRID GRDSET CORD1R CORD1C CORD1S CORD2R CORD2C CORD2S CQUAD4 CTRIA3 CQUADR CTRIAR CSHEAR "
     "CBAR CBEAM BAROR BEAMOR PSHELL PCOMP PCOMPG PCOMPLS PLPLANE PSHEAR PBAR PBARL PBRSECT "
     "PBEAM PBEAML PBCOMP PBMSECT PBEAM3 MAT1 MAT2 MAT3 MAT8 MAT9 MAT10 MATORT MATHP"},
    {Loads, Fate::Lost, "",
     "SPC SPC1 SPCADD SPCD FORCE FORCE1 FORCE2 MOMENT MOMENT1 MOMENT2 PLOAD PLOAD1 PLOAD2 "
     "PLOAD4 LOAD GRAV"},
    {Neither, Fate::Refused, "shells of second order; mesh with CQUAD4 and CTRIA3",
     "CQUAD8 CTRIA6 CQUAD CQUADX CTRIAX CTRIAX6 CQUADX4 CQUADX8 CTRAX3 CTRAX6"},
    {Neither, Fate::Refused, "beams of three nodes and curved ones; mesh with CBAR or CBEAM",
     "CBEAM3 CBEND"},
    {Neither, Fate::Refused, "bars without bending have no counterpart", "CROD CONROD CTUBE"},
    {Neither, Fate::Lost, "solid elements have no counterpart",
     "CHEXA CPENTA CTETRA CPYRAM CPYRA CIHEX1 CIHEX2 CIHEX3 CWEDGE CIFHEX CIFPENT CRAC2D "
     "CRAC3D CHEXP CPENTP CTETP"},
    {Neither, Fate::Lost, "plane and axisymmetric elements have no counterpart",
     "CPLSTN3 CPLSTN4 CPLSTN6 CPLSTN8 CPLSTS3 CPLSTS4 CPLSTS6 CPLSTS8 CCONEAX CTRAPRG CTRIARG "
     "CTORDRG"},
    {Neither, Fate::Lost, "springs have no counterpart",
     "CELAS1 CELAS2 CELAS3 CELAS4 CBUSH CBUSH1D CBUSH2D GENEL CGAP CFAST CWELD CSEAM CINTC"},
    {Neither, Fate::Lost, "mass elements are left out; they carry weight alone",
     "CONM1 CONM2 CMASS1 CMASS2 CMASS3 CMASS4"},
    {Neither, Fate::Lost, "non-structural mass is left out; it carries weight alone",
     "NSM NSM1 NSML NSML1 NSMADD"},
    {Neither, Fate::Lost, "rigid elements have no counterpart",
     "RBE1 RBE2 RBE2F RBE2GS RBE3 RBAR RBAR1 RROD RTRPLT RTRPLT1 RSPLINE RSSCON RJOINT CRBAR "
     "CRBE1 CRBE2 CRBE3 CRROD CRSPLINE CRTRPLT"},
    {Neither, Fate::Lost, "equations between displacements have no counterpart",
     "MPC MPCADD MPCAX MPCY"},
    {Neither, Fate::Lost, "contact has no counterpart",
     "BCTABLE BCTABL1 BCONP BCBODY BCBODY1 BCPROP BCPROPS BCPARA BCTPARA BCTPARM BCTSET BCTADD "
     "BCRPARA BCSURF BSURF BSURFS BSEG BEDGE BLSEG BFRIC BCONECT BCONTACT BGSET BGADD BGPARM "
     "BCMATL BCGRID BCONUDS BCSCAP BCTRIM BSQUEAL BCHANGE BCMOVE BWIDTH"},
    {Neither, Fate::Lost, "supports of free bodies (SUPORT) are left out", "SUPORT SUPORT1 SUPAX"},
    {Neither, Fate::Lost, "stiffness given as a matrix has no counterpart",
     "DMIG DMIGROT DMIAX DMIK DMIJ DMIJI"},
    {Neither, Fate::Lost, "temperature loads have no counterpart",
     "TEMP TEMPD TEMPP1 TEMPP2 TEMPP3 TEMPRB TEMPBC TEMPB3 TEMPF TEMPG TEMPAX TEMPN1 TEMPADD "
     "TEMPEX"},
    {Neither, Fate::Lost, "loads of this kind have no counterpart",
     "ACCEL ACCEL1 ACCEL2 DEFORM PLOADB3 PLOADE1 PLOADX1 QBDY1 RFORCE RFORCE1 SLOAD FORCEAX "
     "MOMAX PRESAX BOLT BOLTFOR BOLTLD INITS LSEQ LOADCYN LOADCYH PRESPT CLOAD SPCAX SPCR"},
    {Neither, Fate::Lost, "bodies that are joined by their edges have no counterpart",
     "FEEDGE FEFACE GMBNDC GMBNDS GMSPC GMLOAD GMCURV GMSURF GMINTC GMINTS"},
    {Neither, Fate::Lost, "loads and stiffness of the air have no counterpart",
     "AECOMP AECOMPL AERO AEROS AEFACT AELINK AELIST AELISTC AEPARM AEPRESS AEFORCE AEDW "
     "AESTAT AESURF AESURFS AESCALE CAERO1 CAERO2 CAERO3 CAERO4 CAERO5 PAERO1 PAERO2 PAERO3 "
     "PAERO4 PAERO5 SPLINE1 SPLINE2 SPLINE3 SPLINE4 SPLINE5 SPLINE6 SPLINE7 TRIM TRIM2 CSSCHD "
     "DIVERG GUST"},
    {Neither, Fate::Lost, "parts of a structure kept apart have no counterpart",
     "SEBNDRY SEBSET SEBSET1 SEBULK SECONCT SECSET SECSET1 SEDLINK SEELT SEEXCLD SELABEL "
     "SELOAD SELOC SEMPLN SENQSET SEQSET SEQSET1 SESET SESUP SETREE SEUPDAT SEUSET SEUSET1 "
     "CSUPER CSUPEXT EXTRN RELEASE CYAX CYJOIN CYSUP CYSYM"},
    {Neither, Fate::Limited, "only the linear part of the material is taken",
     "MATS1 MATS3 MATS8 MATG MATEP MATVE MATVP MATSMA CREEP"},
    {Neither, Fate::Limited,
     "materials that depend on the temperature are taken at the values given",
     "MATT1 MATT2 MATT3 MATT8 MATT9 MATT11 MATTEP MATTVE MATTF MATTG MATTM"},
    {Neither, Fate::NoEffect, "it belongs to elements that are not taken",
     "PSOLID PLSOLID PCOMPS PIHEX PELAS PELAST PBUSH PBUSH1D PBUSH2D PBUSHT PGAP PFAST PWELD "
     "PSEAM PMASS PROD PTUBE PBEND PAXSYMH PPLANE PCONEAX PRAC2D PRAC3D SPOINT EPOINT MAT11"},
    {Neither, Fate::NoEffect, "it serves heat transfer",
     "CHBDYE CHBDYG CHBDYP PHBDY CONV CONVM PCONV PCONVM MAT4 MAT5 MATT4 MATT5 QHBDY QBDY2 "
     "QBDY3 QVECT QVOL RADBC RADBND RADCAV RADLST RADM RADMT RADMTX RADSET RADCOL RADCT VIEW "
     "VIEW3D VIEWEX BDYOR"},
    {Neither, Fate::NoEffect, "it serves the search for vibrations or buckling",
     "EIGB EIGC EIGP EIGR EIGRA EIGRL ASET ASET1 BSET BSET1 CSET CSET1 QSET QSET1 OMIT OMIT1 "
     "USET USET1 BNDFIX BNDFIX1 BNDFREE BNDFRE1 BNDGRID DYNRED"},
    {Neither, Fate::NoEffect, "it serves dynamics",
     "DAREA DELAY DLOAD DPHASE FREQ FREQ1 FREQ2 FREQ3 FREQ4 FREQ5 RLOAD1 RLOAD2 TLOAD1 TLOAD2 "
     "TIC TSTEP TABDMP1 TABLED1 TABLED2 TABLED3 TABLED4 TABLED5 TABLEM1 TABLEM2 TABLEM3 "
     "TABLEM4 TABLEH1 TABLEHT TABRND1 TABRNDG RANDPS RANDT1 ACSRCE CDAMP1 CDAMP2 CDAMP3 CDAMP4 "
     "CDAMP5 CVISC PVISC PDAMP PDAMPT PDAMP5 NOLIN1 NOLIN2 NOLIN3 NOLIN4 NLRGAP TF FLUTTER "
     "FLFACT MKAERO1 MKAERO2 HYBDAMP ROTORG ROTOR RGYRO RSPINR RSPINT UNBALNC CAMPBLL DAMPING "
     "DAMPGBL"},
    {Neither, Fate::NoEffect, "it serves analyses that are not linear",
     "NLPARM NLPCI TSTEPNL NLADAPT PSHLN1 PSHLN2 PSLDN1 PBARN1 PBEMN1 PRODN1 NLMOPTS NLSTEP "
     "NLCNTL NLCNTL2 TABLES1 TABLEST TABLE3D NLAUTO NLDAMP NLSTRAT NLHEATC MARCIN MARCOUT ITER"},
    {Neither, Fate::NoEffect, "it serves optimization",
     "DESVAR DESVARG DVPREL1 DVPREL2 DVCREL1 DVCREL2 DVMREL1 DVMREL2 DVGRID DVBSHAP DVSHAP "
     "DVSET DRESP1 DRESP2 DRESP3 DCONSTR DCONADD DSCREEN DOPTPRM DLINK DLINK2 DEQATN DTABLE "
     "DTABLE2 DDVAL DVGEOM TOPVAR TOMVAR BEADVAR BNDGRDS"},
    {Neither, Fate::NoEffect, "fluids are not taken",
     "ACMODL AXIF BDYLIST ELIST CFLUID2 CFLUID3 CFLUID4 CSLOT CSLOT3 CSLOT4 MFLUID CAABSF "
     "PAABSF CHACAB CHACBR CACINF3 CACINF4 PACINF PACABS PACBAR FLSYM FREEPT FSLIST GRIDB "
     "GRIDF GRIDS POINTAX PRESPTX RINGAX RINGFL SLBDY PANEL"},
    {Neither, Fate::NoEffect, "it asks for output",
     "CBARAO PLOTEL PLOTEL3 PLOTEL4 PLOTHEX PLOTPEN PLOTTET OUTRCV MONPNT1 MONPNT2 MONPNT3 "
     "MONDSP1 MONGRP MONSUM ECHOON ECHOOFF"},
    {Neither, Fate::NoEffect, "it names sets of nodes or elements",
     "SET SET1 SET2 SET3 SET4 GROUP"},
    {Neither, Fate::NoEffect, "stress limits and criteria are not used",
     "MATF MATFTG PFTG FTGDEF FTGEVNT FTGLOAD FTGPARM FTGSEQ TABLFTG"},
    {Neither, Fate::NoEffect, "the directions of shells' materials and normals are not used",
     "SNORM"},
    {Neither, Fate::NoEffect, "the order of the nodes is found anew", "SEQGP SEQEP"},
    {Neither, Fate::NoEffect, "it says how another program works",
     "MDLPRM DEBUG DMI DTI SWLDPRM ADAPT CONCHK MODTRAK SYSBDY UDSESV"},
    {Neither, Fate::Lost, "coordinate systems of this kind are not known",
     "CORD1RX CORD2RX CORD3G CORD3R CORD4R"},
}};

constexpr std::string_view UnknownCard = "unknown card";

// The cards that are taken, one by one.
std::vector<std::string> TakenNames() {
  std::vector<std::string> names;
  for (const CardRow& row : Rows) {
    if (row.part == Neither) continue;
    for (std::size_t at = 0; at < row.names.size();) {
      const std::size_t end = std::min(row.names.find(' ', at), row.names.size());
      names.emplace_back(row.names.substr(at, end - at));
      at = end + 1;
    }
  }
  return names;
}

// Whether `name` is one of the words of `names`.
bool HoldsName(std::string_view names, std::string_view name) {
  std::size_t at = names.find(name);
  while (at != std::string_view::npos) {
    const std::size_t end = at + name.size();
    const bool begins = at == 0 || names[at - 1] == ' ';
    const bool ends = end == names.size() || names[end] == ' ';
    if (begins && ends) return true;
    at = names.find(name, at + 1);
  }
  return false;
}

// "RBE2 17"; the name alone where field 2 is no number.
std::string ExampleOf(const NastranDeck& deck, const NastranCard& card) {
  const std::string_view number = FieldOf(deck, card, 2);
  const bool isNumber =
      !number.empty() && number.find_first_not_of("0123456789") == std::string_view::npos;
  return std::string(card.name) + (isNumber ? ' ' + std::string(number) : "");
}

}  // namespace

NastranCardKind KindOfCard(std::string_view name) {
  for (const CardRow& row : Rows) {
    if (HoldsName(row.names, name)) return {name, row.part, row.fate, row.reason};
  }
  return {name, Neither, Fate::Lost, UnknownCard};
}

void ReportOtherCards(const NastranDeck& deck, ImportReport& report) {
  std::unordered_map<std::string_view, NastranCardKind> kinds;
  const std::vector<std::string> taken = TakenNames();
  UnknownNames unknown;
  for (const NastranCard& card : deck.cards) {
    if (card.name == "PARAM") {
      ReportParam(deck, card, report);
      continue;
    }
    auto at = kinds.find(card.name);
    if (at == kinds.end()) at = kinds.emplace(card.name, KindOfCard(card.name)).first;
    const NastranCardKind& kind = at->second;
    if (kind.part != Neither) continue;
    if (kind.reason == UnknownCard) {
      ReportCard(card.name, kind.fate, ReasonOfUnknown(UnknownCard, card.name, taken, unknown),
                 card.place, ExampleOf(deck, card), report);
      continue;
    }
    ReportCard(card.name, kind.fate, kind.reason, card.place, ExampleOf(deck, card), report);
  }
}

}  // namespace kvx
