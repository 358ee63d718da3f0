#include "driver/command_line.h"

#include <args.hxx>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <string>
#include <string_view>

#include "cleaner/fa_cleaner.h"
#include "driver/command_arguments.h"
#include "fill_template.h"

namespace {

constexpr std::string_view ProgramName = "qln-fp-cleaner";

/// The top-level parser with its tree of arguments, which refer to one another.
struct CommandLine {
  CommandLine() {
    SetUpHelp(parser.helpParams);
    parser.Prog(std::string(ProgramName));
    parser.ProglinePostfix("{OPTIONS}");
  }

  static void SetUpHelp(args::HelpParams& help) {
    help.usageString = "Usage:";
    help.optionsString = "Options:";
    help.width = 78;
    help.progindent = 0;
    help.progtailindent =
        static_cast<unsigned int>(ProgramName.size() + help.usageString.size() + 2);
    help.descriptionindent = 0;
    help.flagindent = 4;
    help.helpindent = 30;
    help.showTerminator = false;
    help.proglineShowFlags = true;
    help.proglinePreferShortFlags = true;
    help.showValueName = false;
    help.addDefault = true;
    help.addChoices = true;
  }

  args::ArgumentParser parser{
      "qln-fp-cleaner is a command line utility to clean the source code from redundant false "
      "positive suppression markers of Quillon analyzer."};
  args::Group group{parser, "", args::Group::Validators::AtMostOne, args::Options::Required};
  args::HelpFlag help{
      group, "help", "Display this help menu", {'h', "help"}, args::Options::Single};
  args::Flag version{
      group, "version", "Show current version.", {'v', "version"}, args::Options::Single};
  args::Group commands{group, "Commands (one of):", args::Group::Validators::AtLeastOne,
                       args::Options::Required};
  args::Command cleanupCommand{commands, "cleanup", "Clean false alarm markers from source code.",
                               cleanup};
  args::Command mergeCommand{commands, "merge", "Merge a list of reports to structured report.",
                             merge};
  args::Command reportCommand{commands, "report",
                              "Create the report for Quillon IDE plugin or blame notifier tool.",
                              report};
};

[[noreturn]] void ExitWithErrorAndHelp(std::string_view message, CommandLine const& line) {
  std::cerr << message << '\n';
  std::cout << line.parser;
  std::exit(EXIT_FAILURE);
}

void SetMode(CommandLine const& line) {
  Configuration& configuration = faCleaner::GetConfiguration();
  if (line.cleanupCommand) {
    configuration.SetMode(faCleanerMode::Cleanup);
  } else if (line.mergeCommand) {
    configuration.SetMode(faCleanerMode::Merge);
  } else if (line.reportCommand) {
    configuration.SetMode(faCleanerMode::Report);
  }
}

}  // namespace

void ParseCommandLine(int argc, char** argv) {
  const auto versionLine = [] {
    // The second field is empty on purpose, and keeps its blank.
    return FillTemplate("%1% %2% %3% %4%", {ProgramName, "", "8.00.109087.832", "ARM64"});
  };

  CommandLine line;
  try {
    line.parser.ParseCLI(argc, argv);
  } catch (args::Completion const& completion) {
    std::cerr << completion.what() << '\n';
    std::exit(EXIT_SUCCESS);
  } catch (args::Help const&) {
    std::cout << line.parser;
    std::exit(EXIT_SUCCESS);
  } catch (args::ParseError const& error) {
    ExitWithErrorAndHelp(error.what(), line);
  } catch (args::ValidationError const& error) {
    // A version flag never validates: alone it lacks a command, beside one it is one too many.
    if (line.version) {
      std::cout << versionLine() << '\n';
      std::exit(EXIT_SUCCESS);
    }
    const std::string_view message = error.what();
    ExitWithErrorAndHelp(message == "Command is required"
                             ? "At least one of the commands must be specified."
                             : message,
                         line);
  } catch (std::exception const& error) {
    std::cerr << error.what() << '\n';
    std::exit(EXIT_FAILURE);
  }
  SetMode(line);
}
