// Case files as people write them, and each mistake by its message.
#include "cases/case_file.h"

#include <gtest/gtest.h>

#include <random>

#include "report/stop.h"

namespace kvx::test {
namespace {

// What stops the reading and resolving of the text; "" where nothing does. hasBase: the structure
// has loads of its own.
std::string FindFault(const std::string& text, bool hasBase = true) {
  try {
    CaseFile file;
    ReadCaseFile(text, file);
    if (hasBase) AddBaseCase(file);
    std::vector<CaseFactors> factors;
    ResolveCombinations(file, factors);
    std::vector<EnvelopeOf> envelopes;
    ResolveEnvelopes(file, envelopes);
  } catch (const korvex::Stop& stop) {
    return stop.text;
  }
  return {};
}

const std::string Whole =
    "# bridge\n"
    "structure = \"deck/fem_solving.txt\"\n"
    "[case.weight]\n"
    "acceleration = [0, 0, -9.81]\n"
    "[case.ballast]\n"
    "loads = 'ballast.txt'  # two sides\n"
    "[combination.uls]\n"
    "factors = { weight = 1.35, base = 1.5, ballast = 1 }\n"
    "[combination.\"wind and uls\"]\n"
    "[combination.\"wind and uls\".factors]\n"
    "ballast = -2e0\n"
    "uls = 2\n"
    "[envelope.strength]\n"
    "of = [\"wind and uls\",\n"
    "      \"base\"]\n";

TEST(CaseFile, IsReadInItsOwnOrder) {
  CaseFile file;
  ReadCaseFile(Whole, file);
  EXPECT_EQ(file.structure, "deck/fem_solving.txt");
  ASSERT_EQ(file.cases.size(), 2U);
  EXPECT_EQ(file.cases[0].name, "weight");
  EXPECT_EQ(file.cases[0].line, 3U);
  EXPECT_TRUE(file.cases[0].hasAcceleration);
  EXPECT_EQ(file.cases[0].acceleration, (std::array<double, 3>{0, 0, -9.81}));
  EXPECT_EQ(file.cases[0].loads, "");
  EXPECT_EQ(file.cases[1].name, "ballast");
  EXPECT_EQ(file.cases[1].loads, "ballast.txt");
  EXPECT_FALSE(file.cases[1].hasAcceleration);
  ASSERT_EQ(file.combinations.size(), 2U);
  EXPECT_EQ(file.combinations[0].name, "uls");
  ASSERT_EQ(file.combinations[0].terms.size(), 3U);
  EXPECT_EQ(file.combinations[0].terms[0].name, "weight");
  EXPECT_EQ(file.combinations[0].terms[0].factor, 1.35);
  EXPECT_EQ(file.combinations[0].terms[0].line, 8U);
  EXPECT_EQ(file.combinations[0].terms[2].name, "ballast");
  EXPECT_EQ(file.combinations[1].name, "wind and uls");
  EXPECT_EQ(file.combinations[1].terms[0].factor, -2.0);
  EXPECT_EQ(file.combinations[1].terms[1].line, 12U);
  ASSERT_EQ(file.envelopes.size(), 1U);
  EXPECT_EQ(file.envelopes[0].of[1].line, 15U);
}

// base, weight, ballast are 0, 1, 2. "wind and uls" = 2 uls - 2 ballast: ballast 2 - 2 = 0 is left
// out.
TEST(CaseFile, ResolvesCombinationsOfCombinations) {
  CaseFile file;
  ReadCaseFile(Whole, file);
  AddBaseCase(file);
  std::vector<CaseFactors> factors;
  ResolveCombinations(file, factors);
  using Terms = std::vector<std::pair<std::size_t, double>>;
  EXPECT_EQ(factors[0].terms, (Terms{{0, 1.5}, {1, 1.35}, {2, 1.0}}));
  EXPECT_EQ(factors[1].terms, (Terms{{0, 3.0}, {1, 2.7}}));

  std::vector<EnvelopeOf> envelopes;
  ResolveEnvelopes(file, envelopes);
  ASSERT_EQ(envelopes.size(), 1U);
  EXPECT_EQ(envelopes[0].of, (std::vector<std::size_t>{0, 4}));
}

TEST(CaseFile, HasAnEnvelopeOfAllCombinationsOrCases) {
  for (const bool combines : {false, true}) {
    CaseFile file;
    ReadCaseFile("[case.a]\nloads='a'\n[case.b]\nloads='b'\n", file);
    if (combines) ReadCaseFile("[combination.c]\nfactors.a=1\n", file);
    std::vector<EnvelopeOf> envelopes;
    ResolveEnvelopes(file, envelopes);
    ASSERT_EQ(envelopes.size(), 1U);
    EXPECT_EQ(envelopes[0].name, "all");
    EXPECT_EQ(envelopes[0].of,
              combines ? std::vector<std::size_t>{2} : (std::vector<std::size_t>{0, 1}));
  }
}

TEST(CaseFile, NeedsNothingButACase) {
  EXPECT_EQ(FindFault(""), "");
  EXPECT_EQ(FindFault("[case.a]\nloads = 'a'\n", false), "");
  EXPECT_EQ(FindFault("\xEF\xBB\xBF[case.a]\r\nloads = 'a'\r\n", false), "");
  EXPECT_EQ(FindFault("", false),
            "there is no load case, and the structure has no loads of its own. Write one as in: "
            "[case.ballast], and below it loads = \"ballast.txt\".");
}

struct Mistake {
  std::string text, fault;
};

void ExpectFaults(const std::vector<Mistake>& mistakes) {
  for (const Mistake& mistake : mistakes) {
    EXPECT_EQ(FindFault(mistake.text), mistake.fault) << mistake.text;
  }
}

TEST(CaseFile, NamesUnknownKeys) {
  ExpectFaults({
      {"\n[cases.a]\nloads='a'", "line 2: a case file has no \"cases\". Did you mean \"case\"?"},
      {"xyz = 1",
       "line 1: a case file has no \"xyz\". It may have: structure, case, combination, envelope."},
      {"[case.a]\nload='a'", "line 2: case \"a\" has no \"load\". Did you mean \"loads\"?"},
      {"[case.a]\nloads='a'\naceleration=[0,0,1]",
       "line 3: case \"a\" has no \"aceleration\". Did you mean \"acceleration\"?"},
      {"[combination.a]\nfactor={base=1}",
       "line 2: combination \"a\" has no \"factor\". Did you mean \"factors\"?"},
      {"[envelope.a]\nfrom=['base']", "line 2: envelope \"a\" has no \"from\". It may have: of."},
  });
}

TEST(CaseFile, NamesWrongTypes) {
  ExpectFaults({
      {"structure = 3",
       "line 1: the case file: \"structure\" is a number. Write it as in: structure = "
       "\"fem_solving.txt\""},
      {"[case.a]\nloads=['a']",
       "line 2: case \"a\": \"loads\" is a list. Write it as in: loads = \"ballast.txt\""},
      {"[case.a]\nacceleration=-9.81",
       "line 2: case \"a\": \"acceleration\" is a number. Write it as in: acceleration = [0, 0, "
       "-9810]"},
      {"[case.a]\nacceleration=[0, 0]",
       "line 2: case \"a\": \"acceleration\" has 2 numbers instead of 3. Write it as in: "
       "acceleration = [0, 0, -9810]"},
      {"[case.a]\nacceleration=[0, 0,\n'-9.81']",
       "line 3: case \"a\": a text where a number must stand. Write it as in: acceleration = [0, "
       "0, -9810]"},
      {"[case.a]\nacceleration=[0, 0, 0.0]",
       "line 2: case \"a\": the acceleration is zero, so it makes no loads."},
      {"[case.a]\nloads=''", "line 2: case \"a\": \"loads\" names no file."},
      {"[case]\nloads='a'", "line 2: each case needs a name. Write it as in: [case.ballast]"},
      {"case=1", "line 1: each case needs a name. Write it as in: [case.ballast]"},
      {"[case.a]",
       "line 1: case \"a\" has no loads. Write loads = \"FILE\" or acceleration = [x, "
       "y, z]."},
      {"[combination.a]\nfactors=['base']",
       "line 2: combination \"a\": \"factors\" is a list. Write it as in: factors = { base = 1.35, "
       "ballast = 1.5 }"},
      {"[combination.a]\nfactors={base='1'}",
       "line 2: combination \"a\": \"base\" is a text where a number must stand. Write it as in: "
       "factors = { base = 1.35, ballast = 1.5 }"},
      {"[combination.a]\nfactors={base=true}",
       "line 2: combination \"a\": \"base\" is true, false or a date where a number must stand. "
       "Write it as in: factors = { base = 1.35, ballast = 1.5 }"},
      {"[combination.a]\nfactors={}",
       "line 1: combination \"a\" combines nothing. Write it as in: factors = { base = 1.35, "
       "ballast = 1.5 }"},
      {"[combination.a]",
       "line 1: combination \"a\" combines nothing. Write it as in: factors = { "
       "base = 1.35, ballast = 1.5 }"},
      {"[envelope.a]\nof='base'",
       "line 2: envelope \"a\": \"of\" is a text. Write it as in: of = [\"uls\", \"accident\"]"},
      {"[envelope.a]\nof=[1]",
       "line 2: envelope \"a\": a number where the name of a case must stand. Write it as in: of = "
       "[\"uls\", \"accident\"]"},
      {"[envelope.a]\nof=[]",
       "line 1: envelope \"a\" is of nothing. Write it as in: of = [\"uls\", \"accident\"]"},
  });
}

TEST(CaseFile, NamesNumbersThatAreNotFinite) {
  ExpectFaults({
      {"[combination.a]\nfactors={base=inf}",
       "line 2: combination \"a\": the number must be finite."},
      {"[case.a]\nacceleration=[nan,0,0]", "line 2: case \"a\": the number must be finite."},
      {"[combination.a]\nfactors={base=1e999}", "line 2: the number is too large."},
      {"[combination.a]\nfactors={base=99999999999999999999}",
       "line 2: the integer is too large. Write it with a point."},
      {"[combination.a]\nfactors={base=1e300}\n[combination.b]\nfactors={a=1e300}",
       "line 3: combination \"b\": the product of its factors is too large."},
  });
}

TEST(CaseFile, NamesWhatIsNoFolder) {
  const std::string end = ". Results are written to a folder of this name; choose another.";
  for (const std::string name : {"a/b", "a\\\\b", "c:d", "a*", "what?", "\\u0001", "a|b"}) {
    const std::string fault = FindFault("[case.\"" + name + "\"]\nloads='a'");
    EXPECT_NE(fault.find(" has a character that a folder must not have"), std::string::npos)
        << name << ": " << fault;
  }
  for (const std::string name : {"..", ".", ".hidden", "end.", " a", "a "}) {
    EXPECT_EQ(FindFault("[case.\"" + name + "\"]\nloads='a'"),
              "line 1: \"" + name +
                  "\" begins or ends with a point or a blank, which a folder "
                  "must not" +
                  end);
  }
  for (const std::string name : {"con", "NUL", "Aux.txt", "com1", "LPT9.x"}) {
    EXPECT_EQ(FindFault("[combination.\"" + name + "\"]\nfactors={base=1}"),
              "line 1: \"" + name + "\" is the name of a device on Windows" + end);
  }
  EXPECT_EQ(FindFault("[case.\"\"]\nloads='a'"), "line 1: the name is empty" + end);
  EXPECT_NE(FindFault("[case." + std::string(65, 'a') + "]\nloads='a'").find("too long"),
            std::string::npos);
  for (const std::string name : {"console", "comb", "com10", "Eigengewicht für ö", "1.35 G"}) {
    EXPECT_EQ(FindFault("[case.\"" + name + "\"]\nloads='a'"), "") << name;
  }
}

TEST(CaseFile, NamesDoubledFolders) {
  const auto fault = [](const std::string& name, const std::string& folder,
                        const std::string& where) {
    return "the name \"" + name + "\" gives the folder \"" + folder + "\", which stands already " +
           where + " (capitals do not count). Choose another name.";
  };
  ExpectFaults({
      {"[case.Wind]\nloads='a'\n[case.wind]\nloads='b'",
       "line 3: " + fault("wind", "wind", "in line 1")},
      {"[case.wind]\nloads='a'\n[combination.wind]\nfactors={base=1}",
       "line 3: " + fault("wind", "wind", "in line 1")},
      {"[combination.BASE]\nfactors={base=1}",
       "line 1: " + fault("BASE", "BASE", "for the structure's own loads")},
      {"[case.envelope-A]\nloads='a'\n[envelope.a]\nof=['base']",
       "line 3: " + fault("a", "envelope-a", "in line 1")},
      {"[case.base]\nloads='a'",
       "line 1: \"base\" is the name of the structure's own loads. Give this case another."},
  });
  // A case and an envelope have different folders.
  EXPECT_EQ(FindFault("[case.a]\nloads='a'\n[envelope.a]\nof=['a']"), "");
}

TEST(CaseFile, NamesUnknownCasesAndCircles) {
  const std::string ballast = "[case.ballast]\nloads='a'\n";
  ExpectFaults({
      {ballast + "[combination.uls]\nfactors.base=1\nfactors.balast=1",
       "line 5: combination \"uls\": there is no case or combination \"balast\". Did you mean "
       "\"ballast\"?"},
      {ballast + "[combination.uls]\nfactors={snow=1}",
       "line 4: combination \"uls\": there is no case or combination \"snow\". There are: base, "
       "ballast, uls."},
      {ballast + "[envelope.a]\nof=['ballast',\n'bas']",
       "line 5: envelope \"a\": there is no case or combination \"bas\". Did you mean \"base\"?"},
      {"[combination.uls]\nfactors={uls=1}",
       "line 2: combinations lead in a circle: uls -> uls. A combination can only be made of "
       "others that do not contain it."},
      {"[combination.als]\nfactors={uls=1}\n[combination.uls]\nfactors={base=1, sls=1}\n"
       "[combination.sls]\nfactors={uls=0.5}",
       "line 6: combinations lead in a circle: uls -> sls -> uls. A combination can only be made "
       "of others that do not contain it."},
  });
  EXPECT_EQ(FindFault(ballast + "[combination.uls]\nfactors={base=1}", false),
            "line 4: combination \"uls\": the structure has no loads of its own, so there is no "
            "\"base\".");
}

TEST(CaseFile, NamesSyntax) {
  const std::string twice = "it stands twice.";
  const std::string comma = "write the number with a decimal point.";
  const std::string table = "it is neither [TABLE] nor KEY = VALUE.";
  ExpectFaults({
      {"[case.a]\nloads='a",
       "line 2: \"loads='a\": the text in quotes is not closed, or has a \"\\\" (write \"/\" in "
       "names of files)."},
      {"[case.a]\nloads=\"C:\\dir\\a\"",
       "line 2: \"loads=\"C:\\dir\\a\"\": the text in quotes is not closed, or has a \"\\\" (write "
       "\"/\" in names of files)."},
      {"[case.a\nloads='a'", "line 1: \"[case.a\": " + table},
      {"[case.a]\nloads=a",
       "line 2: \"loads=a\": what stands behind = is neither a number nor a text in quotes."},
      {"[case.a]\nloads", "line 2: \"loads\": a \"=\" is missing."},
      {"[combination.a]\nfactors={ base = 1,35 }", "line 2: \"factors={ base = 1,35 }\": " + comma},
      {"[combination.a]\nfactors.base = 1,35", "line 2: \"factors.base = 1,35\": " + comma},
      {"[combination.a]\nfactors={ base = 1,\nb = 2 }",
       "line 2: a table in braces { ... } must stand on one line."},
      {"[combination.a]\nfactors.base = .5",
       "line 2: \"factors.base = .5\": the number is not written as in 0.5, 1.0 or 2e-3."},
      {"[case.a]\nloads='a'\nloads='b'", "line 3: \"loads='b'\": " + twice},
      {"[case.a]\nloads='a'\n[case.a]\nloads='b'", "line 3: \"[case.a]\": " + twice},
      {"[case.a]\nloads='''a'''",
       "line 2: a text over several lines. Write it on one line, in single quotes."},
      {"\n\xff\xfe", "line 2: a character is no UTF-8. Save the file as UTF-8."},
      {std::string("\n\0", 2), "line 2: a byte 0 stands there. Is it a text file?"},
      {"a=" + std::string(17, '['), "line 1: too many brackets stand within each other."},
      {"[case.a]\nacceleration=[0,0",
       "line 3: the list is not closed with ], or a comma is missing in it."},
      {"[case.a]\nacceleration=[0 0 1]",
       "line 2: \"acceleration=[0 0 1]\": the list is not closed with ], or a comma is missing in "
       "it."},
  });
}

// Whatever is in the file: a Stop with a line, or a case file.
TEST(CaseFile, BearsAnyText) {
  std::mt19937 engine(1);
  const std::string letters = "\"'[]{}=,.#\n\\ 01e-_\t\r\x80\xFF";
  for (int k = 0; k < 2000; ++k) {
    std::string text = Whole;
    for (unsigned int slips = 1 + engine() % 4; slips > 0; --slips) {
      const std::size_t at = engine() % text.size();
      const char letter = letters[engine() % letters.size()];
      switch (engine() % 4) {
        case 0:
          text[at] = letter;
          break;
        case 1:
          text.insert(at, 1, letter);
          break;
        case 2:
          text.erase(at, 1 + engine() % 5);
          break;
        default:
          text.resize(at + 1);
      }
      if (text.empty()) text = " ";
    }
    const std::string fault = FindFault(text);
    EXPECT_TRUE(fault.empty() || fault.rfind("line ", 0) == 0) << text << "\n" << fault;
  }
}

TEST(CaseFile, BearsBracketsWithoutEnd) {
  for (const std::string deep : {"a=[", "a={b=", "a=[{b=[", "a=['", "a=[\"]\",["}) {
    std::string text = deep;
    for (int k = 0; k < 100'000; ++k) text += deep.substr(2);
    EXPECT_EQ(FindFault(text).rfind("line 1: ", 0), 0U) << deep;
  }
}

TEST(CaseFile, BearsALongChainOfCombinations) {
  const auto chain = [](int count) {
    std::string text = "[case.a]\nloads='a'\n[combination.c0]\nfactors.a=1\n";
    for (int k = 1; k < count; ++k) {
      text +=
          "[combination.c" + std::to_string(k) + "]\nfactors.c" + std::to_string(k - 1) + "=1\n";
    }
    return text;
  };
  EXPECT_EQ(FindFault(chain(1990)), "");
  EXPECT_EQ(FindFault(chain(3000)),
            "there are more than 2000 cases and combinations. Divide the file.");
}

}  // namespace
}  // namespace kvx::test
