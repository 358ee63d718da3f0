// The part of a report writer that owns its output.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "converter/output_interfaces.h"
#include "converter/program_options.h"

namespace TesselConverter {

/// Owns the output stream and file of a report writer. A stream that fails while writing says so
/// in its state; nothing is thrown for it. For use by one thread.
class BaseFormatOutput : public IOutput<Warning>, public IOutputIfoProvider {
 public:
  virtual ~BaseFormatOutput() = default;
  BaseFormatOutput(BaseFormatOutput const&) = delete;
  BaseFormatOutput& operator=(BaseFormatOutput const&) = delete;

  void Start() override {}
  bool Write(Warning const& warning) override = 0;
  void Finish() override { ClearOutput(false); }
  void ClearOutput(bool removeIfEmpty) override;
  void HardClearOutput() override;

  /// Opens the output file, if the writer has one, replacing what was there. Throws
  /// FilesystemException when it cannot be opened.
  virtual void PrepareOutput() = 0;

  [[nodiscard]] int GetFormatPathType() const override = 0;
  [[nodiscard]] virtual bool OutputIsFile_() const = 0;
  [[nodiscard]] virtual std::string_view OutputSuffix_() const = 0;

 protected:
  /// Sends every byte to a console stream, a file stream or both, the console first, in pieces of
  /// at most Size bytes.
  template <std::size_t Size>
  class streamsbuf : public std::streambuf {
   public:
    streamsbuf() { Rewind(); }

    /// `console` is not owned; none when null.
    void SetConsole(std::ostream* console) { m_console = console; }
    [[nodiscard]] std::ostream* Console() const { return m_console; }

    /// Opens `file` for writing, created or truncated, in place of the file held before. Whether
    /// that succeeded is the returned stream's state.
    std::ofstream* AddOfstream(std::filesystem::path const& file) {
      auto opened = std::make_unique<std::ofstream>();
      // The stream's own buffer is so small that a large report would take thousands of system
      // calls.
      auto bytes = std::make_unique_for_overwrite<char[]>(FileBufferSize);
      opened->rdbuf()->pubsetbuf(bytes.get(), FileBufferSize);
      opened->open(file);
      m_file = std::move(opened);
      m_fileBytes = std::move(bytes);  // Now that the stream that used the older ones is gone.
      return m_file.get();
    }
    [[nodiscard]] std::ofstream* File() const { return m_file.get(); }

   protected:
    int_type overflow(int_type ch) override {
      for (std::ostream* target : Targets()) {
        if (target == nullptr) {
          continue;
        }
        target->write(pbase(), pptr() - pbase());
        if (!traits_type::eq_int_type(ch, traits_type::eof())) {
          target->put(traits_type::to_char_type(ch));
        }
        if (target->fail()) {
          Rewind();
          return traits_type::eof();
        }
      }
      Rewind();
      return traits_type::eq_int_type(ch, traits_type::eof()) ? 0 : ch;
    }

    int sync() override {
      bool failed = false;
      for (std::ostream* target : Targets()) {
        if (target != nullptr) {
          target->write(pbase(), pptr() - pbase());
          target->flush();
          failed = failed || target->fail();
        }
      }
      Rewind();
      return failed ? -1 : 0;
    }

   private:
    [[nodiscard]] std::array<std::ostream*, 2> Targets() const { return {m_console, m_file.get()}; }
    void Rewind() { setp(m_area.data(), m_area.data() + m_area.size()); }

    static constexpr std::size_t FileBufferSize = std::size_t{64} * 1024;

    std::array<char, Size> m_area{};
    std::ostream* m_console = nullptr;
    std::unique_ptr<char[]> m_fileBytes;  ///< The buffer of m_file, which goes before it.
    std::unique_ptr<std::ofstream> m_file;
  };

  /// Empties the output file, if one is open, so that the report can begin anew. What a pipe has
  /// taken it keeps.
  void EmptyFile();

  explicit BaseFormatOutput(ProgramOptions const& options)
      : m_securityMappings(options.securityMappings) {}

  std::vector<SecurityCodeMapping> m_securityMappings;
  std::string m_outputPath;  ///< Empty when the report goes to a console stream only.
  streamsbuf<1024> m_buffer;
  std::ostream m_stream{&m_buffer};

 private:
  void SyncAndClose();
};

}  // namespace TesselConverter
