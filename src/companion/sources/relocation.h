// The sources of another machine's reports on this one.
#pragma once

#include <filesystem>
#include <string>
#include <unordered_map>
#include <vector>

#include "companion/output/complaint.h"
#include "companion/sources/foreign_path.h"
#include "companion/sources/names_in_any_case.h"
#include "merge/file.h"

namespace companion {

/// Finds them, each once. For one thread.
class Relocation {
 public:
  /// `from` is the root of that machine, `root` of this one.
  Relocation(std::filesystem::path const& from, std::filesystem::path const& root)
      : m_from(from.native()), m_root(root), m_names(root) {}

  /// A source of this machine.
  struct Source {
    std::filesystem::path path;         ///< Relative to the root.
    std::string hash;                   ///< As it is here.
    std::vector<std::string> analyzed;  ///< The hashes that are proved to be of the same lines.
    Complaint complaint;                ///< Why none of this holds.
  };

  /// What the record is of: a source with its very content, or that but for its line ends. The
  /// reference stays valid.
  [[nodiscard]] Source const& Find(File const& record);

  /// Of each source that was refused, once; in the order of the records.
  [[nodiscard]] std::vector<std::string> const& Complaints() const { return m_complaints; }

  /// Whether some path was below `from`.
  [[nodiscard]] bool HasFoundAny() const { return m_hasFoundAny; }

  /// What the paths that were not below `from` have in common.
  [[nodiscard]] std::string Others() const { return m_others.Text(); }

 private:
  [[nodiscard]] Complaint Locate(File const& record, Source& source);
  [[nodiscard]] Complaint Compare(std::string const& hash, Source& source) const;

  ForeignFolder m_from;
  std::filesystem::path m_root;
  NamesInAnyCase m_names;
  std::unordered_map<std::string, Source> m_sources;  ///< By path of the other machine.
  std::vector<std::string> m_complaints;
  CommonFolder m_others;
  bool m_hasFoundAny = false;
};

}  // namespace companion
