// The one unit with CLI11, which takes long to compile. What it makes of wrong command lines is
// replaced: its texts are for programmers, and its exit statuses are its own.
#include "commands/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <map>

#include "commands/commands.h"
#include "commands/nearest_word.h"
#include "commands/speak.h"

namespace kvx {

namespace {

struct CommandValues {
  CheckCommand check;
  ExplainCommand explain;
  std::string checkColor = "auto", explainColor = "auto";
};

ColorChoice ColorOf(const std::string& name) {
  if (name == "always") return ColorChoice::Always;
  return name == "never" ? ColorChoice::Never : ColorChoice::Auto;
}

void AddColorOption(CLI::App& command, std::string& color) {
  command.add_option("--color", color, "Colours: auto (on a terminal), always or never")
      ->check(CLI::IsMember({"auto", "always", "never"}).description(""))
      ->type_name("WHEN");
}

void AddCheck(CLI::App& app, CommandValues& values) {
  CLI::App& command =
      *app.add_subcommand("check", "Name every mistake in a model, before it is solved");
  command
      .add_option("DIR", values.check.place,
                  "Folder with fem_solving.txt, or the file itself; else the current folder")
      ->type_name("");
  command.add_flag("--strict", values.check.strict, "Exit status 1 for warnings, too");
  command
      .add_option("--tolerance", values.check.tolerance,
                  "Nodes closer than this coincide; units of the model (default: 1e-6 of its size)")
      ->type_name("LENGTH")
      ->check([](const std::string& text) {
        char* end = nullptr;
        std::strtod(text.c_str(), &end);
        if (end != text.c_str() && *end == '\0') return std::string();
        return "write a length with a point, such as 0.5, not \"" + text + "\"";
      });
  command.add_flag("--deep", values.check.deep,
                   "Look for mechanisms within the parts, too; takes the time of a solution");
  command.add_flag("--json", values.check.json, "Findings as JSON, for programs");
  AddColorOption(command, values.checkColor);
  command.footer(
      "Exit status: 0 no errors, 1 errors, 64 wrong usage, 65 unusable data, 66 no model there,\n"
      "70 a fault of kvx, 73 the output cannot be written.\n"
      "\n"
      "Example: kvx check deck\n"
      "  names the mistakes in deck/fem_solving.txt, with line, place and remedy.");
}

void AddExplain(CLI::App& app, CommandValues& values) {
  CLI::App& command = *app.add_subcommand("explain", "Tell what a finding means and what to do");
  command
      .add_option("CODE", values.explain.codes, "Codes of findings; without one, all are listed")
      ->type_name("");
  command.add_flag("--page", values.explain.page, "The page docs/findings.md with all codes");
  AddColorOption(command, values.explainColor);
  command.footer("Example: kvx explain K104");
}

void Describe(CLI::App& app, CommandValues& values) {
  app.name("kvx");
  app.allow_windows_style_options(false);  // "/deck" is a folder
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("--version", "kvx " KORVEX_VERSION, "Show the version");
  constexpr std::size_t NameColumn = 24;
  app.get_formatter()->column_width(NameColumn);
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.get_formatter()->label("Positionals", "Arguments");
  app.require_subcommand(1);
  AddCheck(app, values);
  AddExplain(app, values);
  CLI::App& licenses = *app.add_subcommand("licenses", "Show the licences of what kvx contains");
  licenses.footer("Example: kvx licenses | less");
  for (CLI::App* command : app.get_subcommands({})) command->group("Commands");
  app.footer(
      "Example: kvx check deck\n"
      "\"kvx COMMAND --help\" tells more of a command.");
}

std::vector<std::string> ListCommands(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::App* command : app.get_subcommands({})) names.push_back(command->get_name());
  return names;
}

std::vector<std::string> ListOptions(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options()) {
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  }
  return names;
}

bool Contains(const std::vector<std::string>& words, const std::string& word) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

std::string Question(const std::string& typed, const std::vector<std::string>& words) {
  const std::vector<std::string> nearest = FindNearest(typed, words);
  return nearest.empty() ? "" : " Did you mean \"" + nearest.front() + "\"?";
}

ExitStatus RefuseCommand(const CLI::App& app, const std::string& typed) {
  std::vector<std::string> words = ListCommands(app);
  for (const std::string& option : ListOptions(app)) words.push_back(option);
  std::string text = "there is no command \"" + typed + "\".";
  std::string question = Question(typed, words);
  std::error_code error;
  if (question.empty() && std::filesystem::exists(std::filesystem::u8path(typed), error)) {
    question = " Did you mean \"kvx check " + typed + "\"?";
  }
  if (question.empty()) question = " \"kvx --help\" lists the commands.";
  Complain("kvx", text + question);
  return ExitUsage;
}

// Words that belong to no option and no argument. command: the one that was given; null: none.
ExitStatus RefuseExtra(const CLI::App& app, const CLI::App* command) {
  const std::vector<std::string> extras = app.remaining(true);
  const std::string extra = extras.empty() ? "" : extras.front();
  const std::string who = command == nullptr ? "kvx" : "kvx " + command->get_name();
  const std::string help = " \"" + who + " --help\" tells how it is called.";
  if (extra.rfind('-', 0) != 0) {
    Complain(who, "\"" + extra + "\" is one word too many." + help);
    return ExitUsage;
  }
  const std::string option = extra.substr(0, extra.find('='));
  const std::vector<std::string> options = ListOptions(command == nullptr ? app : *command);
  if (Contains(options, option)) {
    Complain(who, "write \"" + option + "\" behind \"" + who + "\".");
    return ExitUsage;
  }
  const std::string question = Question(option, options);
  Complain(who, "there is no option \"" + option + "\"." + (question.empty() ? help : question));
  return ExitUsage;
}

ExitStatus RunParsed(const CLI::App& app, CommandValues& values) {
  if (app.got_subcommand("licenses")) return RunLicenses();
  if (app.got_subcommand("explain")) {
    values.explain.color = ColorOf(values.explainColor);
    return RunExplain(values.explain);
  }
  const bool isGiven = app.get_subcommand("check")->count("--tolerance") > 0;
  if (isGiven && !(values.check.tolerance > 0.0 && std::isfinite(values.check.tolerance))) {
    Complain("kvx check", "--tolerance is a length greater than 0, in the units of the model.");
    return ExitUsage;
  }
  values.check.color = ColorOf(values.checkColor);
  return RunCheck(values.check);
}

}  // namespace

ExitStatus RunCommandLine(const std::vector<std::string>& arguments) {
  CommandValues values;
  CLI::App app("kvx, the companion of korvex: sees that a model is right before it is solved.");
  Describe(app, values);
  if (arguments.empty()) {
    Complain("kvx", "which command?");
    std::cerr << app.help();
    return ExitUsage;
  }
  const std::string& first = arguments.front();
  if (first.rfind('-', 0) != 0 && !Contains(ListCommands(app), first)) {
    return RefuseCommand(app, first);
  }
  const auto given = [&]() -> const CLI::App* {
    const std::vector<CLI::App*> commands = app.get_subcommands();
    return commands.empty() ? nullptr : commands.front();
  };
  try {
    std::vector<std::string> reversed(arguments.rbegin(), arguments.rend());
    app.parse(reversed);
  } catch (const CLI::CallForHelp&) {
    return WriteOutput(app.help());
  } catch (const CLI::CallForVersion& version) {
    return WriteOutput(std::string(version.what()) + "\n");
  } catch (const CLI::ExtrasError&) {
    return RefuseExtra(app, given());
  } catch (const CLI::RequiredError&) {
    return RefuseExtra(app, given());  // no command, but options
  } catch (const CLI::ParseError& error) {
    const std::string who = given() == nullptr ? "kvx" : "kvx " + given()->get_name();
    Complain(who, std::string(error.what()) + ". \"" + who + " --help\" shows the options.");
    return ExitUsage;
  }
  return RunParsed(app, values);
}

}  // namespace kvx
