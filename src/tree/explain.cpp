#include "tree/explain.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <format>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "merge/paths/weakly_canonical.h"
#include "tree/printable.h"
#include "tree/reports.h"
#include "tree/votes.h"

namespace tree {

namespace {

namespace fs = std::filesystem;

bool IsNamed(Reports const& reports, fs::path const& path) {
  return std::ranges::any_of(reports.each, [&path](Report const& report) {
    return FindFile(report.files, path) != nullptr;
  });
}

/// The path that reports have for what was typed: relative to the root, or to the current folder.
std::optional<fs::path> FindSource(Reports const& reports, fs::path const& typed,
                                   fs::path const& root) {
  const fs::path canonicalRoot = WeaklyCanonical(root);
  for (fs::path const& path :
       {typed, typed.lexically_normal(), WeaklyCanonical(typed).lexically_relative(canonicalRoot),
        WeaklyCanonical(root / typed).lexically_relative(canonicalRoot)}) {
    if (IsNamed(reports, path)) {
      return path;
    }
  }
  return std::nullopt;
}

/// What FILE or FILE:LINE stands for.
struct Place {
  fs::path path;
  std::optional<std::uint32_t> line;
};

std::optional<Place> FindPlace(Reports const& reports, std::string_view typed,
                               fs::path const& root) {
  if (const auto path = FindSource(reports, typed, root)) {
    return Place{*path, std::nullopt};
  }
  const std::size_t colon = typed.rfind(':');
  if (colon == std::string_view::npos) {
    return std::nullopt;
  }
  std::uint32_t line = 0;
  const char* const end = typed.data() + typed.size();
  const auto [rest, error] = std::from_chars(typed.data() + colon + 1, end, line);
  const auto path = FindSource(reports, typed.substr(0, colon), root);
  return error == std::errc() && rest == end && path ? std::optional(Place{*path, line})
                                                     : std::nullopt;
}

/// The lines of a file as a cleanup counts them: CR LF and LF CR are one line end, CR and LF, too.
class SourceLines {
 public:
  explicit SourceLines(fs::path const& path) {
    std::ifstream stream(path, std::ios::binary);
    m_text.assign(std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>());
  }

  /// Lines must be asked for in ascending order. Nothing when the file has no such line.
  [[nodiscard]] std::optional<std::string_view> Line(std::uint32_t number) {
    while (m_number < number) {
      const std::size_t end = LineLength();
      if (m_at + end >= m_text.size()) {
        return std::nullopt;
      }
      m_at += end + EndLength(m_at + end);
      ++m_number;
    }
    return m_at < m_text.size() && m_number == number
               ? std::optional(std::string_view(m_text).substr(m_at, LineLength()))
               : std::nullopt;
  }

 private:
  [[nodiscard]] std::size_t LineLength() const {
    return std::min(m_text.find_first_of("\r\n", m_at), m_text.size()) - m_at;
  }

  [[nodiscard]] std::size_t EndLength(std::size_t at) const {
    const char partner = m_text[at] == '\n' ? '\r' : '\n';
    return at + 1 < m_text.size() && m_text[at + 1] == partner ? 2 : 1;
  }

  std::string m_text;
  std::size_t m_at = 0;
  std::uint32_t m_number = 1;
};

class Explanation {
 public:
  Explanation(Reports const& reports, fs::path const& source, Console& console)
      : m_reports(reports),
        m_name(Printable(source.native())),
        m_lines(source),
        m_out(console.Out()) {}

  void Print(LineVotes const& line) {
    const std::string codes = CodesOf(line.markers);
    m_out << std::format("{}:{}: {}{}\n", m_name, line.line, codes.empty() ? "" : codes + " ",
                         line.goes ? "goes" : "stays");
    for (std::size_t i = 0; i < line.votes.size(); ++i) {
      Report const& report = m_reports.each[i];
      m_out << std::format("    {}: {}\n", Printable(report.path.native()),
                           Phrase(line.votes[i], report, line.markers));
    }
    PrintSource(line.line);
  }

  /// The line that was asked for, and that no report lists.
  void PrintUnlisted(std::uint32_t number) {
    m_out << std::format("{}:{}: listed by no report, and so left as it is\n", m_name, number);
    PrintSource(number);
  }

 private:
  void PrintSource(std::uint32_t number) {
    if (const auto text = m_lines.Line(number)) {
      std::string shown(*text);
      std::ranges::replace(shown, '\t', ' ');
      m_out << "    | " << Printable(shown) << '\n';
    }
  }

  Reports const& m_reports;
  std::string m_name;
  SourceLines m_lines;
  std::ostream& m_out;
};

}  // namespace

void Explain(Options const& options, Console& console) {
  const Reports reports = ReadReports(options.reports, options.root);
  const auto place = FindPlace(reports, options.source, options.root);
  if (!place) {
    console.Complain("no report names " + options.source);
    return;
  }
  Explanation explanation(reports, options.root / place->path, console);
  std::vector<LineVotes> votes = VotesOn(reports, place->path);
  if (place->line) {
    std::erase_if(votes, [&](LineVotes const& line) { return line.line != *place->line; });
    if (votes.empty()) {
      explanation.PrintUnlisted(*place->line);
    }
  }
  for (LineVotes const& line : votes) {
    explanation.Print(line);
  }
}

}  // namespace tree
