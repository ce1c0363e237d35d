#include "mesh/nastran/nastran_case_control.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <map>
#include <set>
#include <string_view>

#include "mesh/nastran/nastran_sources.h"
#include "mesh/scan_number.h"

namespace kvx {

namespace {

enum class CommandKind {
  Subcase,   // begins a case
  Repeated,  // begins a case whose commands say nothing new
  Combined,  // begins a case that is made of others
  Supports,
  Loads,
  Name,
  Solution,
  Plots,  // all that follows says what is drawn
  Other,  // its fate stands in the table
};

struct CommandRow {
  std::string_view name;
  CommandKind kind = CommandKind::Other;
  Fate fate = Fate::NoEffect;
  std::string_view reason;
};

constexpr std::string_view Output = "a request of output";
constexpr std::string_view Title = "a title";
constexpr std::string_view OtherAnalysis = "belongs to other kinds of analysis";
constexpr std::string_view Temperature = "temperature loads are not taken over";
constexpr std::string_view Constraint = "equations between degrees of freedom have no counterpart";
constexpr std::string_view Direct = "matrices that are given directly have no counterpart";
constexpr std::string_view Combination =
    "combinations of subcases are not taken over: write them into cases.toml";
constexpr std::string_view Symmetry = "parts of a symmetric structure are not put together";
constexpr std::string_view Contact = "contact has no counterpart";

// All commands that are known, in alphabetical order. A deck may shorten a name to its first four
// letters or more.
constexpr CommandRow Commands[] = {
    {"ACCELERATION", CommandKind::Other, Fate::NoEffect, Output},
    {"ANALYSIS", CommandKind::Solution, Fate::Limited, {}},
    {"AUTOSPC", CommandKind::Other, Fate::NoEffect, "no support is added by itself"},
    {"B2GG", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"BCONTACT", CommandKind::Other, Fate::Lost, Contact},
    {"BCSET", CommandKind::Other, Fate::Lost, Contact},
    {"BOUTPUT", CommandKind::Other, Fate::NoEffect, Output},
    {"DEFORM", CommandKind::Other, Fate::Lost, "deformations of elements are not taken over"},
    {"DISPLACEMENT", CommandKind::Other, Fate::NoEffect, Output},
    {"DLOAD", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"ECHO", CommandKind::Other, Fate::NoEffect, Output},
    {"ECHOOFF", CommandKind::Other, Fate::NoEffect, Output},
    {"ECHOON", CommandKind::Other, Fate::NoEffect, Output},
    {"EDE", CommandKind::Other, Fate::NoEffect, Output},
    {"EKE", CommandKind::Other, Fate::NoEffect, Output},
    {"ELDATA", CommandKind::Other, Fate::NoEffect, Output},
    {"ELFORCE", CommandKind::Other, Fate::NoEffect, Output},
    {"ELSTRAIN", CommandKind::Other, Fate::NoEffect, Output},
    {"ELSTRESS", CommandKind::Other, Fate::NoEffect, Output},
    {"ELSUM", CommandKind::Other, Fate::NoEffect, Output},
    {"ESE", CommandKind::Other, Fate::NoEffect, Output},
    {"FORCE", CommandKind::Other, Fate::NoEffect, Output},
    {"FREQUENCY", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"GPFORCE", CommandKind::Other, Fate::NoEffect, Output},
    {"GPKE", CommandKind::Other, Fate::NoEffect, Output},
    {"GPSTRAIN", CommandKind::Other, Fate::NoEffect, Output},
    {"GPSTRESS", CommandKind::Other, Fate::NoEffect, Output},
    {"GROUNDCHECK", CommandKind::Other, Fate::NoEffect, Output},
    {"IC", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"K2GG", CommandKind::Other, Fate::Lost, Direct},
    {"K2PP", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"LABEL", CommandKind::Name, Fate::NoEffect, Title},
    {"LINE", CommandKind::Other, Fate::NoEffect, Output},
    {"LOAD", CommandKind::Loads, Fate::NoEffect, {}},
    {"M2GG", CommandKind::Other, Fate::Lost, Direct},
    {"MAXLINES", CommandKind::Other, Fate::NoEffect, Output},
    {"MEFFMASS", CommandKind::Other, Fate::NoEffect, Output},
    {"METHOD", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"MPC", CommandKind::Other, Fate::Lost, Constraint},
    {"MPCFORCES", CommandKind::Other, Fate::NoEffect, Output},
    {"NLPARM", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"NLSTRESS", CommandKind::Other, Fate::NoEffect, Output},
    {"OLOAD", CommandKind::Other, Fate::NoEffect, Output},
    {"OUTPUT", CommandKind::Plots, Fate::NoEffect, Output},
    {"P2G", CommandKind::Other, Fate::Lost, Direct},
    {"PAGE", CommandKind::Other, Fate::NoEffect, Output},
    {"PARAM", CommandKind::Other, Fate::Lost, "parameters are read from the bulk data alone"},
    {"PRESSURE", CommandKind::Other, Fate::NoEffect, Output},
    {"REPCASE", CommandKind::Repeated, Fate::NoEffect, "other output of the subcase before it"},
    {"RESVEC", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"SDAMPING", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"SET", CommandKind::Other, Fate::NoEffect, Output},
    {"SPC", CommandKind::Supports, Fate::NoEffect, {}},
    {"SPCFORCES", CommandKind::Other, Fate::NoEffect, Output},
    {"STATSUB", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"STRAIN", CommandKind::Other, Fate::NoEffect, Output},
    {"STRESS", CommandKind::Other, Fate::NoEffect, Output},
    {"STRFIELD", CommandKind::Other, Fate::NoEffect, Output},
    {"SUBCASE", CommandKind::Subcase, Fate::NoEffect, {}},
    {"SUBCOM", CommandKind::Combined, Fate::Lost, Combination},
    {"SUBSEQ", CommandKind::Other, Fate::Lost, Combination},
    {"SUBTITLE", CommandKind::Name, Fate::NoEffect, Title},
    {"SUPORT1", CommandKind::Other, Fate::Lost, "free supports have no counterpart"},
    {"SURFACE", CommandKind::Other, Fate::NoEffect, Output},
    {"SVECTOR", CommandKind::Other, Fate::NoEffect, Output},
    {"SYM", CommandKind::Combined, Fate::Lost, Symmetry},
    {"SYMCOM", CommandKind::Combined, Fate::Lost, Symmetry},
    {"SYMSEQ", CommandKind::Other, Fate::Lost, Symmetry},
    {"TEMPERATURE", CommandKind::Other, Fate::Lost, Temperature},
    {"TFL", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"THERMAL", CommandKind::Other, Fate::NoEffect, Output},
    {"TITLE", CommandKind::Name, Fate::NoEffect, Title},
    {"TSTEP", CommandKind::Other, Fate::NoEffect, OtherAnalysis},
    {"VECTOR", CommandKind::Other, Fate::NoEffect, Output},
    {"VELOCITY", CommandKind::Other, Fate::NoEffect, Output},
    {"VOLUME", CommandKind::Other, Fate::NoEffect, Output},
    {"WEIGHTCHECK", CommandKind::Other, Fate::NoEffect, Output},
};

constexpr std::size_t ShortestAbbreviation = 4;

const CommandRow* FindCommand(std::string_view word) {
  const auto fits = [word](const CommandRow& row) {
    return row.name == word ||
           (word.size() >= ShortestAbbreviation && row.name.substr(0, word.size()) == word);
  };
  const CommandRow* end = std::end(Commands);
  const CommandRow* at = std::find_if(std::begin(Commands), end,
                                      [word](const CommandRow& row) { return row.name == word; });
  if (at == end) at = std::find_if(std::begin(Commands), end, fits);
  return at == end ? nullptr : at;
}

// What a command says behind its word, its options in brackets and "=".
std::string_view ValueOf(std::string_view text) {
  text = TrimBlanks(text.substr(FirstWord(text).size()));
  if (!text.empty() && text.front() == '(') {
    const std::size_t end = text.find(')');
    text = end == std::string_view::npos ? std::string_view() : TrimBlanks(text.substr(end + 1));
  }
  if (!text.empty() && text.front() == '=') text = TrimBlanks(text.substr(1));
  return text;
}

bool IsNone(std::string_view value) { return value == "NONE"; }

// A label as the name of a case: its bytes as they stand, so that it can be asked for as the deck
// has it. Control characters become blanks; a long one ends between two characters of UTF-8.
std::string NameFromLabel(std::string_view label) {
  constexpr std::size_t LongestLabel = 40;
  std::size_t size = std::min(label.size(), LongestLabel);
  if (size < label.size()) {
    const auto isWithin = [](char c) { return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U; };
    while (size > 0 && isWithin(label[size])) --size;
  }
  std::string name(label.substr(0, size));
  for (char& c : name) c = (c >= '\0' && c < ' ') || c == '\x7F' ? ' ' : c;
  return std::string(TrimBlanks(name));
}

// What is being read: the case that commands belong to, and what held above all cases.
struct CaseReader {
  ImportReport& report;
  NastranCaseControl& control;
  NastranCase above;   // defaults
  std::string number;  // of the case, as the deck writes it
  std::string label, subtitle;
  bool hasCase = false;    // a SUBCASE was there
  bool isOther = false;    // within a case that is none of ours: its commands say nothing
  bool isSkipped = false;  // between SKIPON and SKIPOFF
  bool isPlotted = false;  // behind OUTPUT(PLOT)
  std::set<std::string> names;
  std::map<std::string, int> repeats;  // how often a name has been numbered
};

void Report(const NastranCommand& command, Fate fate, std::string_view reason, CaseReader& reader) {
  ReportCard("case control " + FirstWord(command.text), fate, reason, command.place, command.text,
             reader.report);
}

// Gives the case that was read its name.
void CloseCase(CaseReader& reader) {
  if (!reader.hasCase || reader.isOther) return;
  NastranCase& last = reader.control.cases.back();
  const std::string label = NameFromLabel(reader.label.empty() ? reader.subtitle : reader.label);
  std::string name = "subcase";
  if (!reader.number.empty()) name += ' ' + NameFromLabel(reader.number);
  if (!label.empty()) name += ' ' + label;
  last.name = name;
  // Counted by name: thousands of equal ones must not be tried from the first on each time.
  for (int& k = reader.repeats[name]; !reader.names.insert(last.name).second;) {
    last.name = name + " (" + std::to_string(++k + 1) + ')';
  }
}

void OpenCase(const NastranCommand& command, CaseReader& reader) {
  CloseCase(reader);
  reader.hasCase = true;
  reader.isOther = false;
  reader.number = ValueOf(command.text);
  reader.label.clear();
  reader.subtitle.clear();
  reader.control.cases.push_back(reader.above);
  reader.control.cases.back().place = command.place;
}

// A case that is not taken over: its own loads and titles are none of the case before.
void OpenOtherCase(const NastranCommand& command, const CommandRow& row, CaseReader& reader) {
  CloseCase(reader);
  reader.hasCase = true;
  reader.isOther = true;
  Report(command, row.fate, row.reason, reader);
}

void TakeSet(const NastranCommand& command, std::int64_t NastranCase::*member,
             SourcePlace NastranCase::*place, CaseReader& reader) {
  const std::string_view value = ValueOf(command.text);
  std::int64_t set = 0;
  if (!IsNone(value) && (!ScanInteger(value, set) || set < 0)) {
    StopImport(reader.report, command.place,
               '"' + command.text + "\" should name a set by its number");
  }
  NastranCase& row = reader.hasCase ? reader.control.cases.back() : reader.above;
  row.*member = set;
  row.*place = command.place;
}

void TakeName(const NastranCommand& command, const CommandRow& row, CaseReader& reader) {
  if (!reader.hasCase || row.name == "TITLE") {
    Report(command, row.fate, row.reason, reader);
  } else {
    (row.name == "LABEL" ? reader.label : reader.subtitle) = ValueOf(command.text);
  }
}

void TakeSolution(const NastranCommand& command, CaseReader& reader) {
  const std::string_view value = ValueOf(command.text);
  const std::string_view kind = value.substr(0, value.find_first_of(" ,\t"));
  for (const std::string_view isStatic :
       {"1", "101", "24", "STATIC", "STATICS", "SESTATIC", "SESTATICS", "LINEAR"}) {
    if (kind == isStatic) return;
  }
  Report(command, Fate::Limited, "it is solved as linear static", reader);
}

void TakeCommand(const NastranCommand& command, CaseReader& reader) {
  const std::string word = FirstWord(command.text);
  if (word == "SKIPON" || word == "SKIPOFF") reader.isSkipped = word == "SKIPON";
  const CommandRow* row = FindCommand(word);
  if (reader.isSkipped || word == "SKIPOFF") {
    return Report(command, Fate::NoEffect, "between SKIPON and SKIPOFF", reader);
  }
  if (reader.isPlotted) return Report(command, Fate::NoEffect, Output, reader);
  if (row == nullptr) return Report(command, Fate::Lost, "an unknown command", reader);
  if (row->kind == CommandKind::Subcase) return OpenCase(command, reader);
  if (row->kind == CommandKind::Repeated || row->kind == CommandKind::Combined) {
    return OpenOtherCase(command, *row, reader);
  }
  if (reader.isOther) {
    return Report(command, row->kind == CommandKind::Other ? row->fate : Fate::NoEffect,
                  row->kind == CommandKind::Other ? row->reason
                                                  : "belongs to a subcase that is not taken over",
                  reader);
  }
  switch (row->kind) {
    case CommandKind::Supports:
      return TakeSet(command, &NastranCase::supports, &NastranCase::supportsPlace, reader);
    case CommandKind::Loads:
      return TakeSet(command, &NastranCase::loads, &NastranCase::loadsPlace, reader);
    case CommandKind::Name:
      return TakeName(command, *row, reader);
    case CommandKind::Solution:
      return TakeSolution(command, reader);
    case CommandKind::Plots:
      reader.isPlotted = true;
      break;
    default:
      break;
  }
  Report(command, row->fate, row->reason, reader);
}

}  // namespace

void ReadCaseControl(const NastranDeck& deck, ImportReport& report, NastranCaseControl& control) {
  CaseReader reader{report, control, {}, {}, {}, {}, false, false, false, false, {}, {}};
  for (const NastranCommand& command : deck.commands) TakeCommand(command, reader);
  CloseCase(reader);
  control.asks = reader.hasCase || reader.above.supports != 0 || reader.above.loads != 0;
  if (!reader.hasCase && control.asks) control.cases.push_back(reader.above);
}

}  // namespace kvx
