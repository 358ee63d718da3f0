// The records of the warnings report.
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace TesselConverter {

/// Kinds of security mapping that a report may be asked for. This tool asks for none.
enum class SecurityCodeMapping : std::uint32_t {};

/// Where a warning is. Line numbers and columns are 1-based; a column of 0 means that there is
/// none. The navigation values let an IDE find the line again after edits; this tool leaves them 0.
struct WarningPosition {
  /// The whole of one line.
  WarningPosition(std::string fileText, std::uint64_t lineNumber);

  /// Whether `column` names a column at all.
  [[nodiscard]] static bool IsValidColumnNumber(unsigned column) { return column != 0; }

  std::string file;
  std::uint32_t line;
  std::uint32_t endLine;
  std::uint32_t column = 0;
  std::uint32_t endColumn = 0;
  std::string previousLineText;
  std::string currentLineText;
  std::string nextLineText;
  std::int32_t previousLine = 0;  ///< Navigation hash, as are the two below.
  std::int32_t currentLine = 0;
  std::int32_t nextLine = 0;
  std::uint32_t columns = 0;  ///< Navigation column value.
};

/// One warning. Texts are UTF-8.
struct Warning {
  /// What GetErrorCode answers for a number that no diagnostic can have.
  static constexpr std::uint64_t InvalidErrorCode = std::uint64_t{1} << 32U;

  /// The number behind the V of `code`: 0 when there is none, InvalidErrorCode when it is negative
  /// or needs more than 32 bits.
  [[nodiscard]] std::uint64_t GetErrorCode() const;

  std::string code;  ///< "V" and the diagnostic number, such as V501.
  std::string message;
  std::string sastId;  ///< Empty when none.
  std::set<std::string> analyzedSourceFiles;
  std::vector<WarningPosition> positions;  ///< The first one is the main one.
  std::vector<std::string> notes;          ///< Not written to JSON.
  std::set<std::string> projects;
  std::uint32_t cwe = 0;  ///< 0 when none.
  std::uint32_t level = 1;
  bool favorite = false;
  bool falseAlarm = false;
  bool extraFlag = false;  ///< Not written to JSON.
  std::uint32_t kind = 2;  ///< Not written to JSON.
};

}  // namespace TesselConverter
