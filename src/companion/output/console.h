// What a command says: its results, its complaints, and how far it is.
#pragma once

#include <chrono>
#include <cstddef>
#include <ostream>
#include <string_view>

#include "files/descriptor.h"
#include "files/descriptor_buffer.h"

namespace companion {

/// The two standard streams. Nothing here throws; a result that could not be written is told by
/// Finish. For the main thread.
class Console {
 public:
  Console();

  /// The standard output stream. What a name holds goes through Printable first.
  [[nodiscard]] std::ostream& Out() {
    EndProgress();
    return m_isQuiet ? m_nowhere : m_out;
  }

  /// From now on has nothing printed but complaints and notes.
  void BeQuiet() { m_isQuiet = true; }

  /// Whether anybody can still read what is printed. A command that does nothing but print may stop
  /// when not.
  [[nodiscard]] bool IsHeard() const { return !m_output.Error(); }

  /// Prints one line of error, made safe for terminals, and makes the exit status 1.
  void Complain(std::string_view text);

  /// Prints such a line of what is no failure.
  void Note(std::string_view text);

  /// Makes `status` the exit status, if there was nothing to complain of.
  void EndWith(int status) { m_status = m_status == 0 ? status : m_status; }

  /// To be called often: on a terminal, and once the work has taken a second, shows how many files
  /// of how many are done; rarely enough not to matter.
  void Progress(std::size_t done, std::size_t total);

  /// Takes the progress off the terminal. So do Out, Complain and Finish.
  void EndProgress();

  /// Has everything written, complains of what was not, and returns the exit status.
  [[nodiscard]] int Finish();

 private:
  using Clock = std::chrono::steady_clock;

  Descriptor m_standardOutput;
  DescriptorBuffer m_output;
  std::ostream m_out;
  std::ostream m_nowhere{nullptr};
  bool m_isQuiet = false;
  bool m_isTerminal;  ///< The standard error stream.
  bool m_isShowing = false;
  Clock::time_point m_nextShow;
  int m_status = 0;
};

}  // namespace companion
