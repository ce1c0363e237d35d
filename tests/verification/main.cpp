// The verification program: fills the templates of the book with what it computes and compares the
// result with the committed document.
//
//   korvex_verification                     lists the chapters
//   korvex_verification CHAPTER [--full]    computes a chapter and compares it with its section of
//                                           the document; with --full the fine meshes too
//   korvex_verification --outline           compares the introduction and the order of the sections
//   korvex_verification --print CHAPTER [--full]   shows a chapter
//   korvex_verification --write             computes everything and writes the document
//
// The exit status is 0 where the document agrees.
#include <algorithm>
#include <exception>
#include <iostream>
#include <sstream>
#include <stdexcept>

#include "support/temp_folder.h"
#include "verification/book.h"
#include "verification/chapters.h"

namespace korvex::book {

namespace {

// For a chapter of words alone.
Fillings ComputeNothing(Extent /*extent*/) { return {}; }

struct Chapter {
  std::string name;  // on the command line; its template is templates/NAME.md
  Fillings (*compute)(Extent) = ComputeNothing;
};

// In the order of the document.
std::vector<Chapter> AllChapters() {
  return {{"patch-tests", ComputePatchTests},
          {"plates", ComputePlates},
          {"skew-plates", ComputeSkewPlates},
          {"curved-shells", ComputeCurvedShells},
          {"cantilevers", ComputeCantilevers},
          {"beams", ComputeBeams},
          {"stiffeners", ComputeStiffeners},
          {"detail-models", ComputeDetailModels},
          {"another-solver"},
          {"two-engines"},
          {"invariants", ComputeInvariants},
          {"advice"},
          {"sources"}};
}

// Discards standard output while it lives: the invariants call the program's routines in this
// process, and their progress lines would get between the lines of the book.
class Silence {
 public:
  Silence() : kept_(std::cout.rdbuf(discarded_.rdbuf())) {}
  ~Silence() { std::cout.rdbuf(kept_); }
  Silence(const Silence&) = delete;
  Silence& operator=(const Silence&) = delete;

 private:
  std::ostringstream discarded_;
  std::streambuf* kept_;
};

std::string ReadTemplate(const std::string& name) {
  const std::string file = KORVEX_TEMPLATES "/" + name + ".md";
  const std::string text = test::ReadFile(file);
  if (text.empty()) throw std::runtime_error(file + ": no template");
  return text;
}

// What stands before the first chapter: the template "introduction", which has no placeholders.
std::string WriteIntroduction() { return FillTemplate(ReadTemplate("introduction"), {}) + '\n'; }

// The heading of a chapter is the first line of its template.
std::string ReadHeading(const Chapter& chapter) {
  const std::vector<Section> sections = SplitSections(ReadTemplate(chapter.name));
  if (sections.size() != 2 || !sections[0].body.empty()) {
    throw std::runtime_error("template " + chapter.name + ": not one section that begins with ##");
  }
  return sections[1].heading;
}

// The section of a chapter: its template filled, and the blank line before the next section.
std::string WriteSection(const Chapter& chapter, Extent extent) {
  const Silence silence;
  const bool last = chapter.name == AllChapters().back().name;
  return FillTemplate(ReadTemplate(chapter.name), chapter.compute(extent)) + (last ? "" : "\n");
}

std::string ReadDocument() { return test::ReadFile(KORVEX_DOCUMENT); }

// The body of the document's section with this heading; empty where there is none.
std::string FindSection(const std::string& heading) {
  for (const Section& section : SplitSections(ReadDocument())) {
    if (section.heading == heading) return section.body;
  }
  return "";
}

int Report(const std::string& differences) {
  if (differences.empty()) return 0;
  std::cout << "The document differs from what the program prints:\n" << differences;
  return 1;
}

int CheckOutline() {
  std::string printed = WriteIntroduction(), committed;
  for (const Chapter& chapter : AllChapters()) printed += "## " + ReadHeading(chapter) + '\n';
  for (const Section& section : SplitSections(ReadDocument())) {
    committed += section.heading.empty() ? section.body : "## " + section.heading + '\n';
  }
  return Report(FindDifferences(printed, committed));
}

int WriteDocument() {
  std::string document = WriteIntroduction();
  for (const Chapter& chapter : AllChapters()) {
    std::cout << chapter.name << std::endl;
    document += Render(WriteSection(chapter, Extent::Full));
  }
  test::WriteFile(KORVEX_DOCUMENT, document);
  return 0;
}

int ListChapters() {
  for (const Chapter& chapter : AllChapters()) std::cout << chapter.name << '\n';
  return 0;
}

int Run(std::vector<std::string> arguments) {
  const auto take = [&arguments](const std::string& option) {
    const auto found = std::find(arguments.begin(), arguments.end(), option);
    if (found == arguments.end()) return false;
    arguments.erase(found);
    return true;
  };
  if (take("--write")) return WriteDocument();
  if (take("--outline")) return CheckOutline();
  const bool print = take("--print");
  const Extent extent = take("--full") ? Extent::Full : Extent::Short;
  if (arguments.empty()) return ListChapters();
  for (const Chapter& chapter : AllChapters()) {
    if (chapter.name != arguments[0]) continue;
    const std::string text = WriteSection(chapter, extent);
    if (!print) return Report(FindDifferences(text, FindSection(ReadHeading(chapter))));
    std::cout << Render(text);
    return 0;
  }
  std::cerr << "There is no chapter " << arguments[0] << ".\n";
  return 1;
}

}  // namespace

}  // namespace korvex::book

int main(int argc, char** argv) {
  try {
    return korvex::book::Run({argv + 1, argv + argc});
  } catch (const std::exception& error) {
    std::cerr << error.what() << '\n';
    return 1;
  }
}
