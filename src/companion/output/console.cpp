#include "companion/output/console.h"

#include <unistd.h>

#include <cstdlib>
#include <format>
#include <iostream>
#include <system_error>

#include "companion/output/printable.h"

namespace companion {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds QuietTime{1000};
constexpr milliseconds BetweenShows{100};

}  // namespace

Console::Console()
    : m_standardOutput(STDOUT_FILENO),
      m_output(m_standardOutput),
      m_out(&m_output),
      m_isTerminal(::isatty(STDERR_FILENO) != 0),
      m_nextShow(Clock::now() + QuietTime) {}

void Console::Complain(std::string_view text) {
  Note(text);
  m_status = EXIT_FAILURE;
}

void Console::Note(std::string_view text) {
  EndProgress();
  m_out.flush();  // So that both streams stand in order where they are one.
  std::cerr << std::format("qln-fp-tree: {}\n", Printable(text));
}

void Console::Progress(std::size_t done, std::size_t total) {
  if (!m_isTerminal || Clock::now() < m_nextShow) {
    return;
  }
  std::cerr << std::format("\r{} of {} files\x1b[K", done, total);
  m_isShowing = true;
  m_nextShow = Clock::now() + BetweenShows;
}

void Console::EndProgress() {
  if (m_isShowing) {
    std::cerr << "\r\x1b[K";
    m_isShowing = false;
  }
}

int Console::Finish() {
  EndProgress();
  m_out.flush();
  const std::error_code error = m_output.Error();
  if (error == std::errc::broken_pipe) {
    m_status = EXIT_FAILURE;  // Nobody wanted to read on: nothing to complain of.
  } else if (error) {
    Complain("cannot write the standard output: " + error.message());
  }
  return m_status;
}

}  // namespace companion
