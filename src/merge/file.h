// The records of a marker report: which suppression markers stand where in one source file.
#pragma once

#include <compare>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "merge/paths/path_order.h"

/// A half-open range as the analyzer core reports it; merging hands it on unchanged.
struct Range {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;

  friend auto operator<=>(Range const&, Range const&) = default;
};

/// One suppression marker on a line.
struct Marker {
  std::uint64_t code = 0;  ///< The diagnostic number behind the V; 0 when the report gave none.
  Range columns;           ///< Columns on the line, in the analyzer core's own unit.
  Range offsets;           ///< 0-based bytes within the line.

  friend auto operator<=>(Marker const&, Marker const&) = default;
};

/// One source line that carries markers. Equal lines are what reports agree on.
struct Line {
  std::uint32_t line = 0;  ///< 1-based line number.
  std::vector<Marker> markers;

  friend bool operator==(Line const&, Line const&) = default;
};

/// One source file of a report. Files are ordered, and told apart, by path alone.
struct File {
  std::uint32_t version = 1;
  /// Relative to the source-tree root once stored in a Files collection.
  std::filesystem::path path;
  /// SHA-1 of the content that the analyzer core read, as 40 lowercase hexadecimal digits.
  std::string hash;
  /// Mutable for Intersect alone. The records of a collection are the elements of an ordered set
  /// and so const, because changing a path in place would break the order; but merging has to take
  /// lines away from a record where it stands.
  mutable std::vector<Line> lines;

  /// Keeps the lines that `other` has too: same number, same markers in the same order. Order and
  /// repetitions of this file's lines stay.
  void Intersect(File const& other) const;

  /// With an empty root the form that reports show, "|?|/" and the path; otherwise the canonical
  /// absolute path, for messages and for finding the file.
  /// Throws std::filesystem::filesystem_error when the path cannot be made canonical.
  [[nodiscard]] std::string PathToString(std::filesystem::path sourceTreeRoot) const;

  /// Compares element by element, so that a/b comes before a-b.
  friend bool operator<(File const& left, File const& right) {
    return ComparePaths(left.path, right.path) < 0;
  }
};

/// Records in path order, at most one for each path.
using FileSet = std::set<File, std::less<File>>;
