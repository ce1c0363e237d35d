#include "commands/model_summary.h"

#include <initializer_list>

#include "deck/row_formats.h"
#include "finding/text_layout.h"

namespace kvx {

using korvex::Section;

namespace {

struct Kind {
  Section section;
  const char* one;
  const char* several;
};

// "3363 nodes, 320 beams" of those kinds that there are.
std::string ListKinds(const CheckedModel& model, std::initializer_list<Kind> kinds) {
  std::string text;
  for (const Kind& kind : kinds) {
    const auto count = static_cast<std::size_t>(CountRows(model.tables, kind.section));
    if (count == 0) continue;
    text += (text.empty() ? "" : ", ") + CountText(count, kind.one, kind.several);
  }
  return text;
}

}  // namespace

std::vector<std::pair<std::string, std::size_t>> CountTables(const CheckedModel& model) {
  std::vector<std::pair<std::string, std::size_t>> counts;
  counts.reserve(korvex::SectionFormats.size());
  for (const korvex::SectionFormat& format : korvex::SectionFormats) {
    counts.emplace_back(format.key,
                        static_cast<std::size_t>(CountRows(model.tables, format.section)));
  }
  return counts;
}

std::vector<std::string> SummarizeModel(const CheckedModel& model) {
  std::vector<std::string> lines{
      ListKinds(model, {{Section::Nodes, "node", "nodes"},
                        {Section::Shells4, "four-node shell", "four-node shells"},
                        {Section::Shells3, "three-node shell", "three-node shells"},
                        {Section::Beams, "beam", "beams"}}),
      ListKinds(model, {{Section::Materials, "material", "materials"},
                        {Section::ShellThicknesses, "shell thickness", "shell thicknesses"},
                        {Section::TBeamSections, "T section", "T sections"},
                        {Section::LBeamSections, "L section", "L sections"},
                        {Section::CBeamSections, "tube section", "tube sections"}}),
      ListKinds(model,
                {{Section::Restraints, "restraint", "restraints"},
                 {Section::Forces, "force", "forces"},
                 {Section::Shell4Loads, "load on four-node shells", "loads on four-node shells"},
                 {Section::Shell3Loads, "load on three-node shells", "loads on three-node shells"},
                 {Section::BeamLoads, "load on beams", "loads on beams"}})};
  std::vector<std::string> said;
  for (std::string& line : lines) {
    if (!line.empty()) said.push_back(std::move(line));
  }
  if (said.empty()) said.emplace_back("The model is empty.");
  return said;
}

}  // namespace kvx
