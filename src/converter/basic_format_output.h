// What the output options mean for a writer of one format.
#pragma once

#include <filesystem>
#include <format>
#include <iostream>
#include <string>
#include <string_view>

#include "converter/base_format_output.h"
#include "converter/filesystem_exception.h"

namespace TesselConverter {

/// The base of the concrete writer Format, which gives its constant answers as Format::Suffix,
/// Format::Name and Format::IsFile. The options choose the targets of the report:
///
///   output and outputName empty       a console stream only
///   otherwise                         a file, and a console stream too with toConsole
///
/// and the file:
///
///   no outputName, at most one callback    output itself
///   outputName, at most one callback       output / outputName.suffix; an outputName from the
///                                          root on stands alone
///   more callbacks                         output / name.suffix, where name is outputName, or
///                                          the only input file without its extension, or
///                                          MergedReport for any other number of input files
template <typename Format>
class BasicFormatOutput : public BaseFormatOutput {
 public:
  explicit BasicFormatOutput(ProgramOptions const& options) : BaseFormatOutput(options) {
    const bool toFile = !options.output.empty() || !options.outputName.empty();
    if (!toFile || options.toConsole) {
      m_buffer.SetConsole(options.useStderr ? &std::cerr : &std::cout);
    }
    if (toFile) {
      m_outputPath = DerivePath(options).string();
    }
  }

  void PrepareOutput() override {
    if (!m_outputPath.empty() && !m_buffer.AddOfstream(m_outputPath)->is_open()) {
      throw FilesystemException("Can't write to file: " + m_outputPath);
    }
  }

  [[nodiscard]] int GetFormatPathType() const override { return 0; }
  [[nodiscard]] bool OutputIsFile_() const override { return Format::IsFile; }
  [[nodiscard]] std::string_view OutputSuffix_() const override { return Format::Suffix; }
  [[nodiscard]] std::string_view FormatName_() const override { return Format::Name; }

 private:
  using Path = std::filesystem::path;

  [[nodiscard]] static Path DerivePath(ProgramOptions const& options) {
    if (options.outputCallbacks.size() > 1) {
      return Path(options.output) / DeriveName(options).replace_extension(Format::Suffix);
    }
    if (options.outputName.empty()) {
      return options.output;
    }
    const std::string name = std::format("{}.{}", options.outputName, Format::Suffix);
    return Path(options.output) / name;
  }

  /// The name of the file, with an extension that the caller replaces by the format's: the point at
  /// the end of a given name, so that nothing of the name itself is lost, or that of the input
  /// file.
  [[nodiscard]] static Path DeriveName(ProgramOptions const& options) {
    if (!options.outputName.empty()) {
      return options.outputName.ends_with('.') ? options.outputName : options.outputName + '.';
    }
    return options.inputFiles.size() == 1 ? Path(options.inputFiles.front()).filename()
                                          : Path("MergedReport.");
  }
};

}  // namespace TesselConverter
