#include <gtest/gtest.h>

#include <sys/stat.h>

#include <future>
#include <iostream>
#include <sstream>

#include "converter/json_output.h"
#include "scratch_directory.h"
#include "write_signals.h"

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
}

Warning Sample() {
  Warning warning;
  warning.code = "V501";
  warning.message = "text";
  warning.positions.emplace_back("file", 1);
  return warning;
}

TEST(JsonOutput, AFullDiskOrAClosedPipeEndsInAFailedStream) {
  LetWritesFailWithoutSignals();
  const ScratchDirectory scratch;
  const std::string pipe = scratch.Path() / "pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& output : {std::string("/dev/full"), pipe}) {
    const auto reader = std::async([&] { const std::ifstream stream(pipe); });
    OpenJsonOutput writer({.output = output});
    writer.PrepareOutput();
    if (output != pipe) {
      const std::ofstream letReaderGo(pipe);
    }
    reader.wait();
    writer.Start();
    for (int i = 0; i < 1000; ++i) {
      EXPECT_TRUE(writer.Write(Sample()));
    }
    writer.Finish();
    EXPECT_TRUE(writer.m_stream.fail()) << output;
  }
}

TEST(JsonOutput, DocumentsWithoutWarningsOrStart) {
  const ScratchDirectory scratch;
  const auto written = [&scratch](auto fill) {
    OpenJsonOutput writer({.output = scratch.Path() / "report"});
    writer.PrepareOutput();
    fill(writer);
    writer.Finish();
    return scratch.Read("report");
  };
  EXPECT_EQ(written([](auto& writer) { writer.Start(); }),
            "{\n  \"version\": 3,\n  \"warnings\": []\n}\n");
  EXPECT_EQ(written([](auto& /*writer*/) {}), "null\n");
  EXPECT_TRUE(written([](auto& writer) {
                writer.Write(Sample());
              }).starts_with("{\n  \"warnings\": [\n    {\n      \"code\": \"V501\""));
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
  std::ifstream golden(QLN_TEST_DATA "/all_warning_fields.json");
  EXPECT_EQ(scratch.Read("report"), std::string(std::istreambuf_iterator<char>(golden), {}));
}

}  // namespace
