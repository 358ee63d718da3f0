// The checks of the fuzz programs (fuzz/*.cpp say what each holds), on the inputs that are kept for
// them and on such as are made here. The windows are as small as there.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <random>
#include <ranges>

#include "scratch_directory.h"

extern "C" {
int check_cut_safety(std::uint8_t const* bytes, std::size_t size);
int check_marks_filter(std::uint8_t const* bytes, std::size_t size);
int check_reports(std::uint8_t const* bytes, std::size_t size);
int check_warnings(std::uint8_t const* bytes, std::size_t size);
}

namespace {

using Json = nlohmann::ordered_json;
using Check = int (*)(std::uint8_t const*, std::size_t);
using Pieces = std::vector<std::string_view>;

std::minstd_rand Random(7);

std::uint64_t Below(std::uint64_t bound) {
  return Random() % bound;
}

Pieces Split(std::string_view text) {
  Pieces pieces;
  for (auto const& piece : std::views::split(text, '~')) {
    pieces.emplace_back(piece.begin(), piece.end());
  }
  return pieces;
}

std::string_view Any(Pieces const& pieces) {
  return pieces[Below(pieces.size())];
}

std::string Sequence(std::uint64_t most, Pieces const& pieces) {
  std::string text;
  for (auto count = Below(most); count > 0; --count) {
    text += Any(pieces);
  }
  return text;
}

std::string Bytes(std::size_t count) {
  std::string bytes(count, ' ');
  std::ranges::generate(bytes, [] { return static_cast<char>(Below(9) == 0 ? 0 : Random()); });
  return bytes;
}

/// Text in lines of every length and end; behind it, what lines and markers are drawn from.
std::string Source() {
  const Pieces kinds[] = {{"a", "b", "/", "\r", "\n"},
                          {"abcdefghijk", "abc", "/", "\n", "\n", "\n\r"},
                          {"abcdefghijk", "abc", "/", "\r\n", "\r\n", "\r"}};
  return Sequence(150, kinds[Below(3)]) + Sequence(9, kinds[0]) + Bytes(Below(60));
}

/// Texts, of which some are codes, and behind them, what numbers are drawn from.
std::string Warnings() {
  static const Pieces pieces = Split(
      "V~5~0~501~-~ ~\"~\n~\\\\~\\.~\\.~\\.~4294967295~4294967296~9223372036854775807~V1\\.~V-1\\.~"
      "9223372036854775808~V5 \\.~\x7f~\x1f~\xc3\xa4~xxxxxxxxxxxxxxxxxxxxxx");
  return Sequence(60, pieces) + (Below(20) == 0 ? "\xff" : "") + Bytes(Below(150));
}

std::uint64_t Number() {
  return Below(8) == 0 ? Random() * (Random() >> Below(32)) : Below(2);
}

Json RandomRecord() {
  Json lines = Json::array();
  for (auto count = Below(4); count > 0; --count) {
    Json markers = Json::array();
    for (auto more = Below(3); more > 0; --more) {
      markers.push_back(Json::object());
      if (Below(3) != 0) {
        markers.back()["code"] = Number();
      }
      for (const char* key : {"columns", "offsets"}) {
        markers.back()[key] = {{"begin", Number()}, {"end", Number()}};
      }
    }
    lines.push_back({{"line", Below(3) == 0 ? Number() : lines.size()}, {"markers", markers}});
  }
  static const Pieces roots = Split("~root/~root/~|?|/~|?|\\\\~/");
  static const Pieces names = Split("a~d~e~/~/~link~..~.~loop~up~dangling~{~}~-~\xc3\xa4~\\");
  const std::string tooLong(Below(50) == 0 ? 256 : 0, 'x');
  Json record = {
      {"path", std::string(Any(roots)) + (Below(2) == 0 ? "a" : Sequence(6, names) + tooLong)}};
  if (Below(4) == 0) {
    record["version"] = Number();
  }
  record.update({{"hash", Any({"h", "h", "h", "h", "i"})}, {"lines", lines}});
  return record;
}

std::string RandomReport() {
  std::vector<std::string> records(Below(9));
  for (std::string& record : records) {
    record = RandomRecord().dump(Below(2) == 0 ? -1 : static_cast<int>(Below(3)));
    record = Below(3) == 0 ? records[Below(records.size())] : record;
  }
  std::string text;
  if (Below(2) == 0) {
    for (std::string const& record : records) {
      text += record + std::string(Any({"\n", "\n", "\n", "\n", "\n\n", "", "\r\n"}));
    }
    return text;
  }
  for (std::string const& record : records) {
    text += (text.empty() ? "" : ",") + record;
  }
  const std::string files = "\"files\":[" + text + "]";
  const std::string version = "\"version\" : 1";
  const std::string other = R"("x":[{"files":[[[[[[{"x":[1]}]]]]]]}],"y":)" + files.substr(8);
  const Pieces members = {files, files, "\"files\":[]", version, version, other};
  text = "{" + std::string(Any(members));
  for (auto count = 1 + Below(3); count > 0; --count) {
    text += "," + std::string(Any(members));
  }
  return text + "}" + (Below(9) == 0 ? " x" : "");
}

/// Copies a piece of the text to another place in it, or puts something else there.
void Mutate(std::string& text) {
  static constexpr std::string_view others =
      "0-1.5e2.18446744073709551615,true null\"\"{}[]\\u0041\xc3\xa4 \n{}\xff\"code\":\t000x\x7f";
  const bool copies = Below(3) == 0;
  const std::string_view from = copies ? std::string_view(text) : others;
  const std::string piece(from.substr(Below(from.size()), Below(copies ? 30 : 4)));
  text.replace(Below(text.size()), Below(4), piece);
}

/// A byte for the root, mostly a plain one, and one report or two.
std::string Reports() {
  const auto first = static_cast<char>(Below(2) == 0 ? Below(256) : 128 * Below(2));
  std::string input(1, first);
  for (int left = (first & 0x80) != 0 ? 2 : 1; left > 0; --left) {
    std::string text = RandomReport();
    for (auto count = Below(3); count > 0 && !text.empty(); --count) {
      Mutate(text);
    }
    input += text + (left == 2 ? "\xff" : "");
  }
  return input;
}

/// Code, markers and what a compiler sees them in; behind it, how each marker is listed.
std::string MarkedCode() {
  static const Pieces pieces = Split(
      "//-V501~//-V501~//-V501~//-V501~//-V~//-V0501 x~ ~ ~\n~\n~\n~\r\n~\r~a~int "
      "b;~1'000~'~\"~\\~\\\n~\\ "
      "\r\n~/~*~/*~*/~//~// c~R\"(~)\"~u8R\"x(~)x\"~#~include~#include <~>~#if "
      "__has_include(<~'a'~\"b\"~L~%:~\xc3\xa4");
  return Sequence(60, pieces) + Bytes(Below(60));
}

void Run(Check check, std::string const& input) {
  try {
    check(reinterpret_cast<std::uint8_t const*>(input.data()), input.size());
  } catch (char const* what) {
    FAIL() << what << ", for " << testing::PrintToString(input);
  }
}

void RunAll(Check check, std::string const& corpus, std::string (*generate)()) {
  Random.seed(7);
  int kept = 0;
  for (auto const& file : std::filesystem::directory_iterator(QLN_CORPUS + corpus)) {
    std::ifstream stream(file.path(), std::ios::binary);
    Run(check, std::string(std::istreambuf_iterator<char>(stream), {}));
    ++kept;
  }
  EXPECT_GT(kept, 10);
  for (int round = 0; round < 3000 && !testing::Test::HasFatalFailure(); ++round) {
    Run(check, generate());
  }
}

TEST(Generated, CutsAreJudgedAsByTheReference) {
  RunAll(check_cut_safety, "fuzz_cut_safety", MarkedCode);
}

TEST(Generated, MarksAreFilteredAsByTheReference) {
  RunAll(check_marks_filter, "fuzz_marks_filter", Source);
}

TEST(Generated, ReportsAreReadMergedAndWrittenAsPlainly) {
  RunAll(check_reports, "fuzz_reports", Reports);
}

TEST(Generated, WarningsAreWrittenAsByTheLibrary) {
  RunAll(check_warnings, "fuzz_warnings", Warnings);
}

}  // namespace
