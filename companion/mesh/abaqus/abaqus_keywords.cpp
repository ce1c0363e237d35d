#include "mesh/abaqus/abaqus_keywords.h"

namespace kvx {

namespace {

constexpr std::string_view Title = "a title";
constexpr std::string_view Output = "a request for output";
constexpr std::string_view Control = "controls a solution by increments";
constexpr std::string_view Curve = "a curve over time; each load that uses one is told";
constexpr std::string_view Axes = "axes of an isotropic material";
constexpr std::string_view Thermal = "a property of heat";
constexpr std::string_view Mass = "a property of dynamics";
constexpr std::string_view Numbers = "numerical settings of elements";
constexpr std::string_view Elastic = "materials are linear elastic here";
constexpr std::string_view ShearStiffness = "the shear stiffness follows from section and material";
constexpr std::string_view Contact = "contact and ties have no counterpart";
constexpr std::string_view Coupling = "couplings of nodes have no counterpart";
constexpr std::string_view PointElement =
    "springs, dampers, masses and connectors have no counterpart";
constexpr std::string_view OtherSection = "a section of elements that are not taken over";
constexpr std::string_view Heat = "loads of temperature and heat have no counterpart";
constexpr std::string_view State = "states before the analysis have no counterpart";
constexpr std::string_view Motion = "loads of motion have no counterpart";
constexpr std::string_view Placing = "it moves beam sections, which stand as their section says";
constexpr std::string_view Generates =
    "it generates nodes or elements: have the preprocessor write them out";
constexpr std::string_view Unreadable =
    "parameters and user files are not evaluated: have the preprocessor write the numbers";

constexpr AbaqusKeywordKind Taken(std::string_view name) { return {name, true, Fate::Lost, {}}; }
constexpr AbaqusKeywordKind NoEffect(std::string_view name, std::string_view reason) {
  return {name, false, Fate::NoEffect, reason};
}
constexpr AbaqusKeywordKind Limited(std::string_view name, std::string_view reason) {
  return {name, false, Fate::Limited, reason};
}
constexpr AbaqusKeywordKind Lost(std::string_view name, std::string_view reason) {
  return {name, false, Fate::Lost, reason};
}
constexpr AbaqusKeywordKind Refused(std::string_view name, std::string_view reason) {
  return {name, false, Fate::Refused, reason};
}

constexpr AbaqusKeywordKind Kinds[] = {
    Taken("ASSEMBLY"),
    Taken("BEAM GENERAL SECTION"),
    Taken("BEAM SECTION"),
    Taken("BOUNDARY"),
    Taken("CLOAD"),
    Taken("DENSITY"),
    Taken("DLOAD"),
    Taken("DSLOAD"),
    Taken("ELASTIC"),
    Taken("ELEMENT"),
    Taken("ELSET"),
    Taken("END ASSEMBLY"),
    Taken("END INSTANCE"),
    Taken("END PART"),
    Taken("END STEP"),
    Taken("INCLUDE"),
    Taken("INSTANCE"),
    Taken("MATERIAL"),
    Taken("NODE"),
    Taken("NSET"),
    Taken("PART"),
    Taken("SHELL GENERAL SECTION"),
    Taken("SHELL SECTION"),
    Taken("STATIC"),
    Taken("STEP"),
    Taken("SURFACE"),
    Taken("SYSTEM"),
    Taken("TRANSFORM"),
    // Procedures of steps that are no linear statics: the step is lost as a whole.
    Taken("ANNEAL"),
    Taken("BUCKLE"),
    Taken("COMPLEX FREQUENCY"),
    Taken("COUPLED TEMPERATURE-DISPLACEMENT"),
    Taken("DIRECT CYCLIC"),
    Taken("DYNAMIC"),
    Taken("ELECTROMAGNETICS"),
    Taken("FREQUENCY"),
    Taken("GEOSTATIC"),
    Taken("GREEN"),
    Taken("HEAT TRANSFER"),
    Taken("MODAL DYNAMIC"),
    Taken("RANDOM RESPONSE"),
    Taken("RESPONSE SPECTRUM"),
    Taken("SENSITIVITY"),
    Taken("SOILS"),
    Taken("STEADY STATE DYNAMICS"),
    Taken("SUBSTRUCTURE GENERATE"),
    Taken("UNCOUPLED TEMPERATURE-DISPLACEMENT"),
    Taken("VISCO"),

    NoEffect("HEADING", Title),
    NoEffect("CONTACT FILE", Output),
    NoEffect("CONTACT OUTPUT", Output),
    NoEffect("CONTACT PRINT", Output),
    NoEffect("EL FILE", Output),
    NoEffect("EL PRINT", Output),
    NoEffect("ELEMENT OUTPUT", Output),
    NoEffect("ELEMENT RESPONSE", Output),
    NoEffect("ENERGY FILE", Output),
    NoEffect("ENERGY OUTPUT", Output),
    NoEffect("ENERGY PRINT", Output),
    NoEffect("FILE FORMAT", Output),
    NoEffect("FILE OUTPUT", Output),
    NoEffect("FILTER", Output),
    NoEffect("INCREMENTATION OUTPUT", Output),
    NoEffect("INTEGRATED OUTPUT", Output),
    NoEffect("INTEGRATED OUTPUT SECTION", Output),
    NoEffect("MODAL FILE", Output),
    NoEffect("MODAL OUTPUT", Output),
    NoEffect("MONITOR", Output),
    NoEffect("NODE FILE", Output),
    NoEffect("NODE OUTPUT", Output),
    NoEffect("NODE PRINT", Output),
    NoEffect("NODE RESPONSE", Output),
    NoEffect("OUTPUT", Output),
    NoEffect("PREPRINT", Output),
    NoEffect("PRINT", Output),
    NoEffect("RADIATION FILE", Output),
    NoEffect("RADIATION OUTPUT", Output),
    NoEffect("RESTART", Output),
    NoEffect("SECTION FILE", Output),
    NoEffect("SECTION POINTS", Output),
    NoEffect("SECTION PRINT", Output),
    NoEffect("SURFACE OUTPUT", Output),
    NoEffect("CONTROLS", Control),
    NoEffect("DIAGNOSTICS", Control),
    NoEffect("SOLUTION TECHNIQUE", Control),
    NoEffect("SOLVER CONTROLS", Control),
    NoEffect("TIME POINTS", Control),
    NoEffect("AMPLITUDE", Curve),
    NoEffect("ORIENTATION", Axes),
    NoEffect("CONDUCTIVITY", Thermal),
    NoEffect("EXPANSION", Thermal),
    NoEffect("LATENT HEAT", Thermal),
    NoEffect("PHYSICAL CONSTANTS", Thermal),
    NoEffect("SPECIFIC HEAT", Thermal),
    NoEffect("DAMPING", Mass),
    NoEffect("MODAL DAMPING", Mass),
    NoEffect("GLOBAL DAMPING", Mass),
    NoEffect("HOURGLASS STIFFNESS", Numbers),
    NoEffect("SECTION CONTROLS", Numbers),
    NoEffect("DISTRIBUTION TABLE", "a distribution that is used is told by its section"),
    NoEffect("DISTRIBUTION", "a distribution that is used is told by its section"),
    NoEffect("NODAL THICKNESS", "a section that uses it is told"),

    Limited("CREEP", Elastic),
    Limited("CYCLIC HARDENING", Elastic),
    Limited("DAMAGE EVOLUTION", Elastic),
    Limited("DAMAGE INITIATION", Elastic),
    Limited("DEFORMATION PLASTICITY", Elastic),
    Limited("DRUCKER PRAGER", Elastic),
    Limited("HYPERELASTIC", Elastic),
    Limited("HYPERFOAM", Elastic),
    Limited("MOHR COULOMB", Elastic),
    Limited("NO COMPRESSION", Elastic),
    Limited("NO TENSION", Elastic),
    Limited("PLASTIC", Elastic),
    Limited("POTENTIAL", Elastic),
    Limited("RATE DEPENDENT", Elastic),
    Limited("USER MATERIAL", Elastic),
    Limited("VISCOELASTIC", Elastic),
    Limited("TRANSVERSE SHEAR", ShearStiffness),
    Limited("TRANSVERSE SHEAR STIFFNESS", ShearStiffness),

    Lost("CLEARANCE", Contact),
    Lost("CONTACT", Contact),
    Lost("CONTACT CONTROLS", Contact),
    Lost("CONTACT DAMPING", Contact),
    Lost("CONTACT INCLUSIONS", Contact),
    Lost("CONTACT EXCLUSIONS", Contact),
    Lost("CONTACT INTERFERENCE", Contact),
    Lost("CONTACT PAIR", Contact),
    Lost("CONTACT PROPERTY ASSIGNMENT", Contact),
    Lost("FRICTION", Contact),
    Lost("GAP", Contact),
    Lost("SURFACE BEHAVIOR", Contact),
    Lost("SURFACE INTERACTION", Contact),
    Lost("TIE", Contact),
    Lost("COUPLING", Coupling),
    Lost("CYCLIC SYMMETRY MODEL", Coupling),
    Lost("DISTRIBUTING", Coupling),
    Lost("DISTRIBUTING COUPLING", Coupling),
    Lost("EMBEDDED ELEMENT", Coupling),
    Lost("EQUATION", Coupling),
    Lost("FASTENER", Coupling),
    Lost("KINEMATIC", Coupling),
    Lost("KINEMATIC COUPLING", Coupling),
    Lost("MPC", Coupling),
    Lost("PRE-TENSION SECTION", Coupling),
    Lost("RELEASE", "hinges of beams have no counterpart"),
    Lost("RIGID BODY", Coupling),
    Lost("SHELL TO SOLID COUPLING", Coupling),
    Lost("TRANSFORMF", Coupling),
    Lost("CONNECTOR BEHAVIOR", PointElement),
    Lost("CONNECTOR SECTION", PointElement),
    Lost("DASHPOT", PointElement),
    Lost("JOINT", PointElement),
    Lost("MASS", PointElement),
    Lost("NONSTRUCTURAL MASS", PointElement),
    Lost("ROTARY INERTIA", PointElement),
    Lost("SPRING", PointElement),
    Lost("COHESIVE SECTION", OtherSection),
    Lost("FLUID SECTION", OtherSection),
    Lost("FRAME SECTION", OtherSection),
    Lost("MEMBRANE SECTION", OtherSection),
    Lost("REBAR LAYER", OtherSection),
    Lost("SOLID SECTION", OtherSection),
    Lost("SURFACE SECTION", OtherSection),
    Lost("GASKET SECTION", OtherSection),
    Lost("CFLUX", Heat),
    Lost("DFLUX", Heat),
    Lost("DSFLUX", Heat),
    Lost("FIELD", Heat),
    Lost("FILM", Heat),
    Lost("RADIATE", Heat),
    Lost("SFILM", Heat),
    Lost("SRADIATE", Heat),
    Lost("TEMPERATURE", Heat),
    Lost("IMPERFECTION", State),
    Lost("INITIAL CONDITIONS", State),
    Lost("MODEL CHANGE", State),
    Lost("BASE MOTION", Motion),
    Lost("INERTIA RELIEF", Motion),
    Lost("BEAM SECTION OFFSET", Placing),
    Lost("CENTROID", Placing),
    Lost("SHEAR CENTER", Placing),
    Lost("NORMAL",
         "sections and shells stand as nodes and sections say; normals of nodes count not"),

    Refused("ELCOPY", Generates),
    Refused("ELGEN", Generates),
    Refused("NCOPY", Generates),
    Refused("NFILL", Generates),
    Refused("NGEN", Generates),
    Refused("NMAP", Generates),
    Refused("SYMMETRIC MODEL GENERATION", Generates),
    Refused("PARAMETER", Unreadable),
    Refused("USER ELEMENT", "user elements have no counterpart"),
};

// Whether two names are the same but for their blanks.
bool IsSameName(std::string_view a, std::string_view b) {
  std::size_t j = 0;
  for (const char c : a) {
    if (c == ' ') continue;
    while (j < b.size() && b[j] == ' ') ++j;
    if (j >= b.size() || b[j] != c) return false;
    ++j;
  }
  return b.find_first_not_of(' ', j) == std::string_view::npos;
}

}  // namespace

std::vector<std::string> TakenKeywords() {
  std::vector<std::string> names;
  for (const AbaqusKeywordKind& kind : Kinds) {
    if (kind.isTaken) names.emplace_back(kind.name);
  }
  return names;
}

AbaqusKeywordKind KindOfKeyword(std::string_view name) {
  for (const AbaqusKeywordKind& kind : Kinds) {
    if (IsSameName(kind.name, name)) return kind;
  }
  return {name, false, Fate::Lost, UnknownKeyword};
}

std::string KeywordName(const std::string& name) { return std::string(KindOfKeyword(name).name); }

bool IsTakenKeyword(std::string_view name) { return KindOfKeyword(name).isTaken; }

}  // namespace kvx
