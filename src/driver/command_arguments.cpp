#include "driver/command_arguments.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>

#include "cleaner/fa_cleaner.h"
#include "driver/argument_groups.h"

namespace {

using args::Options;
using Path = std::filesystem::path;

/// Takes a path exactly as typed. The library's reader goes through a stream for most types, which
/// would stop at a blank and take quotes away; whether it does so for paths is not left to it.
struct PathReader {
  bool operator()(std::string const& /*name*/, std::string const& value, Path& destination) const {
    destination = value;
    return true;
  }
};

/// What differs between the commands.
struct CommandOptions {
  Options parameters;
  Options outputFile;
  Options sourceTreeRoot;
};

/// The arguments that all commands have.
struct CommonArguments {
  CommonArguments(args::Subparser& parser, CommandOptions options)
      : common(parser, "", args::Group::Validators::AtLeastOne, Options::Required),
        help(common, "help", "Display this help menu", {'h', "help"}, Options::Hidden),
        parameters(common, "", args::Group::Validators::AtLeastOne, options.parameters),
        files(parameters, "FILE",
              "List of files with false alarm markers from Quillon analyzer core."),
        outputFile(parameters, "FILE", "Path to the output report file.", {'o', "output-file"},
                   Path(), options.outputFile),
        sourceTreeRoot(parameters, "DIR", "Path to the project root directory.",
                       {'r', "sourcetree-root"}, Path(), options.sourceTreeRoot) {}

  void Store() {
    Configuration& configuration = faCleaner::GetConfiguration();
    configuration.SetResultFile(std::move(*outputFile));
    configuration.SetSourceTreeRoot(std::move(*sourceTreeRoot));
    configuration.SetSourceFiles(std::move(*files));
  }

  CommonCommandGroup common;
  args::HelpFlag help;
  CommandParamsGroup parameters;
  args::PositionalList<Path, args::detail::vector, PathReader> files;
  args::ValueFlag<Path, PathReader> outputFile;
  args::ValueFlag<Path, PathReader> sourceTreeRoot;
};

void ParseWithThreadCount(args::Subparser& parser, CommandOptions options) {
  constexpr std::uint64_t givenBare = 0;
  constexpr std::uint64_t absent = 1;
  CommonArguments arguments(parser, options);
  args::ImplicitValueFlag<std::uint64_t> threadCount(arguments.parameters, "NUM", "Thread count.",
                                                     {'j'}, givenBare, absent, Options::Single);
  parser.Parse();
  arguments.Store();
  faCleaner::GetConfiguration().SetThreadCount(*threadCount);
}

}  // namespace

void cleanup(args::Subparser& parser) {
  ParseWithThreadCount(parser, {.parameters = Options::None,
                                .outputFile = Options::Single,
                                .sourceTreeRoot = Options::Single | Options::Required});
}

void merge(args::Subparser& parser) {
  ParseWithThreadCount(parser, {.parameters = Options::Required,
                                .outputFile = Options::Single | Options::Required,
                                .sourceTreeRoot = Options::Single | Options::Required});
}

void report(args::Subparser& parser) {
  CommonArguments arguments(parser, {.parameters = Options::Required,
                                     .outputFile = Options::Single | Options::Required,
                                     .sourceTreeRoot = Options::None});
  parser.Parse();
  arguments.Store();
}
