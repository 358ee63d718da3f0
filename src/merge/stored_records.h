// Where the records of source paths are stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "merge/file.h"

/// Remembers, by the number of a path (see SourcePaths), its record in a collection, so that each
/// path is looked up there once a run and not once a report.
///
/// Belongs to one collection, and must be told to forget when records are taken out of that.
class StoredRecords {
 public:
  using Place = FileSet::const_iterator;

  struct Record {
    Place place;
    std::uint32_t report = 0;  ///< The last report that had the path; 0 means unknown.
  };

  /// Begins the next report; returns its number, from 1.
  std::uint32_t BeginReport() { return ++m_report; }

  /// What is known of the path; valid until the next call.
  [[nodiscard]] Record& operator[](std::size_t path) {
    if (path >= m_records.size()) {
      m_records.resize(path + 1);
    }
    return m_records[path];
  }

  void Forget() { m_records.clear(); }

 private:
  std::vector<Record> m_records;
  std::uint32_t m_report = 0;
};
