#include <gtest/gtest.h>

#include <sys/stat.h>

#include <csignal>
#include <future>
#include <iostream>
#include <sstream>

#include "converter/json_output.h"
#include "scratch_directory.h"

namespace {

using TesselConverter::JsonOutput;
using TesselConverter::ProgramOptions;
using TesselConverter::Warning;

/// A writer that shows its insides.
struct OpenJsonOutput : JsonOutput {
  using JsonOutput::JsonOutput;
  using JsonOutput::m_buffer;
  using JsonOutput::m_outputPath;
  using JsonOutput::m_stream;
};

TEST(OutputFramework, PathRules) {
  const auto nothing = [] {};
  const std::vector<std::function<void()>> two{nothing, nothing};
  struct {
    ProgramOptions options;
    const char* path;
  } const cases[] = {
      {{}, ""},
      {{.output = "out/r.txt"}, "out/r.txt"},
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
  for (auto const& [options, path] : cases) {
    EXPECT_EQ(OpenJsonOutput(options).m_outputPath, path);
  }
}

TEST(OutputFramework, ConsoleTargets) {
  struct {
    ProgramOptions options;
    std::ostream* console;
  } const cases[] = {
      {{}, &std::cout},
      {{.useStderr = true}, &std::cerr},
      {{.output = "f"}, nullptr},
      {{.output = "f", .toConsole = true}, &std::cout},
      {{.output = "f", .toConsole = true, .useStderr = true}, &std::cerr},
  };
  for (auto const& [options, console] : cases) {
    EXPECT_EQ(OpenJsonOutput(options).m_buffer.Console(), console);
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
}

Warning Sample() {
  Warning warning;
  warning.code = "V501";
  warning.message = "text";
  warning.positions.emplace_back("file", 1);
  return warning;
}

TEST(JsonOutput, AFullDiskEndsInAFailedStream) {
  OpenJsonOutput writer({.output = "/dev/full"});
  writer.PrepareOutput();
  writer.Start();
  for (int i = 0; i < 1000; ++i) {
    EXPECT_TRUE(writer.Write(Sample()));
  }
  writer.Finish();
  EXPECT_TRUE(writer.m_stream.fail());
}

TEST(JsonOutput, AClosedPipeEndsInAFailedStream) {
  const ScratchDirectory scratch;
  const std::string pipe = scratch.Path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const auto reader = std::async(std::launch::async, [&pipe] { const std::ifstream stream(pipe); });
  OpenJsonOutput writer({.output = pipe});
  writer.PrepareOutput();
  reader.wait();
  writer.Start();
  EXPECT_TRUE(writer.Write(Sample()));
  writer.Finish();
  EXPECT_TRUE(writer.m_stream.fail());
  EXPECT_NE(std::signal(SIGPIPE, SIG_DFL), SIG_IGN);
}

TEST(JsonOutput, WritesWhatEachFieldAllows) {
  const ScratchDirectory scratch;
  OpenJsonOutput writer({.output = scratch.Path() / "report"});
  writer.PrepareOutput();
  writer.Start();
  Warning warning = Sample();
  warning.code = "V0";
  EXPECT_FALSE(writer.Write(warning));
  warning.code = "V001";
  warning.message = "\"\\\n\x01\xc3\xa4";
  warning.sastId = "S";
  warning.analyzedSourceFiles = {"b", "a"};
  warning.projects = {"q", "p"};
  warning.favorite = true;
  warning.positions.front().column = 3;
  warning.positions.front().previousLine = -1;
  warning.positions.emplace_back("other", 2).endColumn = 9;
  EXPECT_TRUE(writer.Write(warning));
  warning = Sample();
  warning.positions.clear();
  EXPECT_TRUE(writer.Write(warning));
  writer.Finish();
  EXPECT_EQ(scratch.Read("report"), R"({
  "version": 3,
  "warnings": [
    {
      "analyzedSourceFiles": [
        "a",
        "b"
      ],
      "code": "V001",
      "cwe": 0,
      "falseAlarm": false,
      "favorite": true,
      "level": 1,
      "message": "\"\\\n\u0001)"
                                    "\xc3\xa4"
                                    R"(",
      "positions": [
        {
          "column": 3,
          "endLine": 1,
          "file": "file",
          "line": 1,
          "navigation": {
            "columns": 0,
            "currentLine": 0,
            "nextLine": 0,
            "previousLine": -1
          }
        },
        {
          "endColumn": 9,
          "endLine": 2,
          "file": "other",
          "line": 2
        }
      ],
      "projects": [
        "p",
        "q"
      ],
      "sastId": "S"
    },
    {
      "code": "V501",
      "cwe": 0,
      "falseAlarm": false,
      "favorite": false,
      "level": 1,
      "message": "text",
      "positions": [],
      "projects": [],
      "sastId": ""
    }
  ]
}
)");
}

}  // namespace
