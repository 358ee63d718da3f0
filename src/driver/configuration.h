// The parsed command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <utility>
#include <vector>

/// Which command runs.
enum class faCleanerMode : std::uint32_t {
  Merge = 0,
  Cleanup = 1,
  Report = 2,
};

/// What the command line asked for. Paths are as typed; an empty one means that none was given.
/// There is one for the process, faCleaner::GetConfiguration().
class Configuration {
 public:
  void SetMode(faCleanerMode mode) { m_mode = mode; }
  void SetResultFile(std::filesystem::path path) { m_resultFile = std::move(path); }
  void SetSourceTreeRoot(std::filesystem::path path) { m_sourceTreeRoot = std::move(path); }
  void SetSourceFiles(std::vector<std::filesystem::path> paths) {
    m_sourceFiles = std::move(paths);
  }
  /// Stored and, deliberately, read by nothing: a cleanup uses what the hardware has.
  void SetThreadCount(std::uint64_t count) { m_threadCount = count; }

  [[nodiscard]] faCleanerMode Mode() const { return m_mode; }
  /// The report to write.
  [[nodiscard]] std::filesystem::path const& ResultFile() const { return m_resultFile; }
  [[nodiscard]] std::filesystem::path const& SourceTreeRoot() const { return m_sourceTreeRoot; }
  /// The marker reports to read, in this order.
  [[nodiscard]] std::vector<std::filesystem::path> const& SourceFiles() const {
    return m_sourceFiles;
  }

 private:
  std::vector<std::filesystem::path> m_sourceFiles;
  std::filesystem::path m_resultFile;
  std::filesystem::path m_sourceTreeRoot;
  [[maybe_unused]] std::uint64_t m_threadCount = 0;
  faCleanerMode m_mode = faCleanerMode::Cleanup;
};
