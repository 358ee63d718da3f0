#include "merge/reading/structured_report_reader.h"

#include <algorithm>
#include <fstream>
#include <utility>

#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/plain_record.h"
#include "merge/reading/report_tree.h"
#include "merge/reading/report_window.h"

namespace {

constexpr std::string_view Blanks = " \n\t\r";

/// Walks over the frame around the records; each function is false when what it expects does not
/// stand there.
class PlainStructuredReader {
 public:
  explicit PlainStructuredReader(std::filesystem::path const& path) : m_window(path) {}

  bool Read(FileSet& files) {
    bool hasFiles = false;
    bool hasVersion = false;
    if (!Token('{')) {
      return false;
    }
    do {
      if (!hasFiles && Word("\"files\"")) {
        hasFiles = true;
        if (!Token(':') || !ReadRecords(files)) {
          return false;
        }
      } else if (!hasVersion && Word("\"version\"")) {
        hasVersion = true;
        if (!Token(':') || !ReadVersion()) {
          return false;
        }
      } else {
        return false;
      }
    } while (Token(','));
    return hasFiles && hasVersion && Token('}') && !m_window.SkipAny(Blanks) && !m_window.Failed();
  }

 private:
  bool ReadRecords(FileSet& files) {
    if (!Token('[')) {
      return false;
    }
    if (Token(']')) {
      return true;
    }
    File record;
    do {
      if (!ReadRecord(record)) {
        return false;
      }
      files.insert(files.end(), record);
    } while (Token(','));
    return Token(']');
  }

  bool ReadRecord(File& record) {
    if (!m_window.SkipAny(Blanks)) {
      return false;
    }
    if (ReadPlainRecord(m_window, record)) {
      return true;
    }
    if (m_window.Rest().front() != '{') {
      return false;
    }
    FramedRecord framed(m_window);
    std::istream text(&framed);
    record = ReadReportTree(text).get<File>();
    // An object that the library accepts by itself, and reads to its end, is what it would find
    // here in the whole report. A NUL is an end to it: what follows, it has not looked at.
    const bool isReadWhole = framed.sgetc() == std::char_traits<char>::eof();
    return isReadWhole && framed.Close();
  }

  /// Only a single digit: what the version is does not matter, and is left as it was.
  bool ReadVersion() {
    if (!m_window.SkipAny(Blanks) || m_window.Rest().front() < '0' ||
        m_window.Rest().front() > '9') {
      return false;
    }
    m_window.Consume(1);
    return true;
  }

  bool Token(char token) {
    if (!m_window.SkipAny(Blanks) || m_window.Rest().front() != token) {
      return false;
    }
    m_window.Consume(1);
    return true;
  }

  bool Word(std::string_view word) {
    if (!m_window.SkipAny(Blanks)) {
      return false;
    }
    while (m_window.Rest().size() < word.size() && m_window.ReadMore()) {
    }
    if (!m_window.Rest().starts_with(word)) {
      return false;
    }
    m_window.Consume(word.size());
    return true;
  }

  ReportWindow m_window;
};

}  // namespace

std::optional<FileSet> ReadPlainStructuredReport(std::filesystem::path const& path) {
  // What is no ordinary file, a pipe for one, may be readable only once: it is the library's.
  if (std::error_code ignored; !std::filesystem::is_regular_file(path, ignored)) {
    return std::nullopt;
  }
  FileSet files;
  try {
    return PlainStructuredReader(path).Read(files) ? std::optional(std::move(files)) : std::nullopt;
  } catch (nlohmann::json::exception const&) {
    return std::nullopt;  // Perhaps refused only for how this reader cut an unusual record.
  }
}

std::optional<FileSet> ReadStructuredReport(std::filesystem::path const& path) {
  if (auto files = ReadPlainStructuredReport(path)) {
    return files;
  }
  try {
    std::ifstream stream(path);
    return FilesFromJson(ReadReportTree(stream));
  } catch (nlohmann::json::exception const&) {
    return std::nullopt;
  } catch (std::ios_base::failure const&) {
    // Some standard libraries throw when a report cannot be read, a directory for one.
    return std::nullopt;
  }
}
