#include "cleaner/fa_cleaner.h"

#include <cstdlib>
#include <exception>
#include <functional>
#include <iostream>
#include <syncstream>
#include <thread>
#include <utility>

#include "broken_pipe_guard.h"
#include "cleaner/marks_filter.h"
#include "cleaner/thread_pool.h"
#include "merge/files.h"
#include "process_statics.h"

namespace {

namespace fs = std::filesystem;

constexpr std::string_view TempDirName = "qln_fp_cleaner";

Files MergeReports(Configuration const& config) {
  Files files;
  bool isFirst = true;
  for (fs::path const& report : config.SourceFiles()) {
    files.ExtractFromReport(report, isFirst, config.SourceTreeRoot());
    isFirst = false;
  }
  files.DeleteEmpty();
  return files;
}

/// A cleanup, too, gets the warnings report: of the markers that it is about to remove.
void WriteResult(Files& files, Configuration const& config) {
  if (config.ResultFile().empty()) {
    return;
  }
  if (config.Mode() == faCleanerMode::Merge) {
    files.SaveStructuredReport(config.ResultFile());
  } else {
    files.SaveQlnReport(config.ResultFile());
  }
}

/// Rewrites one source file on a worker thread; nothing may escape it. The record's lines are taken
/// over: each record is one task's, and the collection is not read again.
void CleanFile(File const& file, fs::path const& root) {
  try {
    MarksFilter({file.version, file.path, file.hash, std::move(file.lines)}).SaveFilteredFile(root);
  } catch (std::exception const& error) {
    const BrokenPipeGuard guard;  // Nobody reads the line: no reason to stop half way.
    std::osyncstream(std::cerr) << error.what() << std::endl;
  } catch (...) {
    const BrokenPipeGuard guard;
    std::osyncstream(std::cerr) << "Unexpected error." << std::endl;
    // Abrupt on purpose: after an error of unknown kind no other file is to be touched.
    std::_Exit(EXIT_FAILURE);
  }
}

unsigned int WorkerCount(unsigned int requested) {
  const unsigned int hardware = std::thread::hardware_concurrency();
  return requested != 0 && hardware != 0 && requested <= hardware ? requested : hardware;
}

void CleanSources(Files const& files, fs::path const& root, unsigned int threads) {
  thread_pool pool(WorkerCount(threads));
  for (File const& file : files.files) {
    // By reference: the collection outlives the pool.
    pool.push_task([&root](File const& queued) { CleanFile(queued, root); }, std::cref(file));
  }
  pool.wait_for_tasks();
}

}  // namespace

Configuration& faCleaner::GetConfiguration() {
  static Configuration configuration;
  return configuration;
}

void faCleaner::StartProgram(Configuration const& config, unsigned int threads) {
  Files files = MergeReports(config);
  WriteResult(files, config);
  if (config.Mode() == faCleanerMode::Cleanup) {
    CleanSources(files, config.SourceTreeRoot(), threads);
  }
}

fs::path faCleaner::GetTempDir() {
  return fs::temp_directory_path() / TempDirName;
}

fs::path faCleaner::GetUncheckedTempDir() {
  const std::string directory = GetTempDirectory();
  return directory.empty() ? GetTempDir() : fs::path(directory) / TempDirName;
}
