#include "merge/reading/structured_report_reader.h"

#include <fstream>
#include <string_view>
#include <utility>

#include "merge/reading/file_from_json.h"
#include "merge/reading/framed_record.h"
#include "merge/reading/plain_record.h"
#include "merge/reading/report_json.h"

namespace {

constexpr std::string_view Blanks = " \n\t\r";

/// Walks over the frame around the records; each function is false when what it expects does not
/// stand there.
class PlainStructuredReader {
 public:
  explicit PlainStructuredReader(ReportWindow& window) : m_window(window) {}

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
    return hasFiles && hasVersion && Token('}') && !m_window.SkipAny(Blanks);
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
    record = ParseReportJson(text).get<File>();
    // If the library accepts all of the framed text, it would find the same object here when it
    // reads the whole report. But it takes a NUL for the end of the text: what stands between a NUL
    // and the closing brace it has not read, and in the whole report would have refused.
    const bool isReadWhole = framed.sgetc() == std::char_traits<char>::eof();
    return isReadWhole && framed.Close();
  }

  /// Takes a single digit and leaves every other number to the library. Which number it is does not
  /// matter: reading a report never changes the version of the collection.
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

  ReportWindow& m_window;
};

/// The records of a report of the usual form, read one by one without a tree of the whole. Nothing
/// when it has any other form, which does not mean that it is no structured report; only the JSON
/// library can say that.
std::optional<FileSet> ReadPlainly(ReportWindow& window) {
  FileSet files;
  try {
    return PlainStructuredReader(window).Read(files) ? std::optional(std::move(files))
                                                     : std::nullopt;
  } catch (nlohmann::json::exception const&) {
    // No verdict on the report: a brace in a string may have made this reader end the record at the
    // wrong place.
    return std::nullopt;
  }
}

std::optional<FileSet> ReadWithLibrary(std::istream& stream) {
  try {
    return FilesFromJson(ParseReportJson(stream));
  } catch (nlohmann::json::exception const&) {
    return std::nullopt;
  } catch (std::ios_base::failure const&) {
    // Some standard libraries throw when a report cannot be read, a directory for one.
    return std::nullopt;
  }
}

}  // namespace

std::optional<FileSet> ReadStructuredReport(ReportWindow& window) {
  const std::uint64_t front = window.Position();
  auto files = ReadPlainly(window);
  if (!files) {
    window.ReturnTo(front);
    ReportText text(window);
    std::istream stream(&text);
    files = ReadWithLibrary(stream);
  }
  if (!files || window.Failed()) {
    window.ReturnTo(front);
    return std::nullopt;
  }
  return files;
}

std::optional<FileSet> ReadStructuredStream(std::filesystem::path const& path) {
  std::ifstream stream(path);
  return ReadWithLibrary(stream);
}
