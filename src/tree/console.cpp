#include "tree/console.h"

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <format>
#include <iostream>
#include <system_error>

#include "tree/printable.h"

namespace tree {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds QuietTime{1000};
constexpr milliseconds BetweenShows{100};

}  // namespace

Console::Console()
    : m_out(&m_output),
      m_isTerminal(::isatty(STDERR_FILENO) != 0),
      m_nextShow(Clock::now() + QuietTime) {}

void Console::Complain(std::string_view text) {
  EndProgress();
  m_out.flush();  // So that both streams stand in order where they are one.
  std::cerr << std::format("qln-fp-tree: {}\n", Printable(text));
  m_status = EXIT_FAILURE;
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
  const int error = m_output.Error();
  if (error == EPIPE) {
    m_status = EXIT_FAILURE;  // Nobody wanted to read on: nothing to complain of.
  } else if (error != 0) {
    const std::error_code reason(error, std::system_category());
    Complain("cannot write the standard output: " + reason.message());
  }
  return m_status;
}

}  // namespace tree
