#include <gtest/gtest.h>

#include <iostream>
#include <sstream>

#include "converter/json_output.h"
#include "scratch_directory.h"

namespace {

using TesselConverter::JsonOutput;
using TesselConverter::ProgramOptions;

/// A writer that shows its insides.
struct OpenJsonOutput : JsonOutput {
  using JsonOutput::JsonOutput;
  using JsonOutput::m_buffer;
  using JsonOutput::m_outputPath;
  using JsonOutput::m_stream;
};

TEST(OutputFramework, OptionsChooseTheTargets) {
  const auto nothing = [] {};
  const std::vector<std::function<void()>> two{nothing, nothing};
  struct {
    ProgramOptions options;
    const char* path;
    std::ostream* console = nullptr;
  } const cases[] = {
      {{}, "", &std::cout},
      {{.useStderr = true}, "", &std::cerr},
      {{.output = "f", .toConsole = true}, "f", &std::cout},
      {{.output = "f", .toConsole = true, .useStderr = true}, "f", &std::cerr},
      {{.output = "out/r.txt"}, "out/r.txt"},
      {{.output = "out/r.txt", .outputCallbacks = {nothing}}, "out/r.txt"},
      {{.output = "out", .outputName = "r"}, "out/r.json"},
      {{.output = "out/", .outputName = "r.v1"}, "out/r.v1.json"},
      {{.output = "out", .outputName = "/abs/r"}, "/abs/r.json"},
      {{.outputName = "r"}, "r.json"},
      {{.output = "out", .outputCallbacks = two, .outputName = "r.v1"}, "out/r.v1.json"},
      {{.output = "out", .outputCallbacks = two, .outputName = "r."}, "out/r.json"},
      {{.output = "out", .outputCallbacks = two}, "out/MergedReport.json"},
      {{.inputFiles = {"in/a.plog"}, .output = "out", .outputCallbacks = two}, "out/a.json"},
      {{.inputFiles = {"a", "b"}, .output = "out", .outputCallbacks = two},
       "out/MergedReport.json"},
  };
  for (auto const& [options, path, console] : cases) {
    const OpenJsonOutput writer(options);
    EXPECT_EQ(writer.m_outputPath, path);
    EXPECT_EQ(writer.m_buffer.Console(), console);
  }
}

TEST(OutputFramework, EveryByteGoesToBothTargets) {
  const ScratchDirectory scratch;
  OpenJsonOutput writer({.output = scratch.Path() / "report", .toConsole = true});
  std::ostringstream console;
  writer.m_buffer.SetConsole(&console);
  writer.PrepareOutput();
  std::string text;
  for (int i = 0; i < 5000; ++i) {
    text += std::to_string(i);
    writer.m_stream << i;
  }
  writer.m_stream.flush();
  EXPECT_EQ(console.str(), text);
  EXPECT_EQ(scratch.Read("report"), text);
}

TEST(OutputFramework, ClearingRemovesWhatIsAskedFor) {
  const ScratchDirectory scratch;
  const ProgramOptions options{.output = scratch.Path() / "report"};
  const auto exists = [&](std::string_view text, auto clear) {
    OpenJsonOutput writer(options);
    writer.PrepareOutput();
    writer.m_stream << text;
    clear(writer);
    return std::filesystem::exists(options.output);
  };
  EXPECT_TRUE(exists("", [](auto& writer) { writer.ClearOutput(false); }));
  EXPECT_FALSE(exists("", [](auto& writer) { writer.ClearOutput(true); }));
  EXPECT_TRUE(exists("text", [](auto& writer) { writer.ClearOutput(true); }));
  EXPECT_FALSE(exists("text", [](auto& writer) { writer.HardClearOutput(); }));
  scratch.Write("report", "of another writer");
  OpenJsonOutput(options).HardClearOutput();
  EXPECT_FALSE(std::filesystem::exists(options.output));
}

TEST(JsonOutput, EveryStartBeginsAnew) {
  const ScratchDirectory scratch;
  for (const bool toConsole : {false, true}) {
    OpenJsonOutput writer({.output = scratch.Path() / "report", .toConsole = toConsole});
    std::ostringstream console;
    writer.m_buffer.SetConsole(toConsole ? &console : nullptr);
    writer.PrepareOutput();
    TesselConverter::Warning warning;
    warning.code = "V501";
    for (const int count : {1000, 1, 0}) {
      for (int written = 0; written < count; ++written) {
        EXPECT_TRUE(writer.Write(warning));
      }
      writer.Start();
    }
    writer.Finish();
    const char* const empty = "{\n  \"version\": 3,\n  \"warnings\": []\n}\n";
    EXPECT_EQ(scratch.Read("report"), empty);
    EXPECT_EQ(console.str(), toConsole ? empty : "");
  }
}

TEST(JsonOutput, AFullDiskEndsInAFailedStream) {
  const ScratchDirectory scratch;  // What goes wrong must not reach the device.
  std::filesystem::create_symlink("/dev/full", scratch.Path() / "full");
  for (int count : {0, 1000}) {
    OpenJsonOutput writer({.output = scratch.Path() / "full"});
    writer.PrepareOutput();
    writer.Start();
    TesselConverter::Warning warning;
    warning.code = "V501";
    for (; count > 0; --count) {
      EXPECT_TRUE(writer.Write(warning));
    }
    writer.Finish();
    EXPECT_TRUE(writer.m_stream.fail());
  }
}

}  // namespace
