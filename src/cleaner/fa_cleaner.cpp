#include "cleaner/fa_cleaner.h"

#include <cstdlib>
#include <exception>
#include <iostream>
#include <syncstream>
#include <utility>

#include "cleaner/marks_filter.h"
#include "cleaner/thread_pool.h"
#include "files/exclusive_lock.h"
#include "merge/files.h"

namespace {

namespace fs = std::filesystem;

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

/// Rewrites one source file on a worker thread; nothing may escape it.
void CleanFile(File file, WorkerLocks& workers, fs::path const& root) {
  try {
    MarksFilter(std::move(file), &workers).SaveFilteredFile(root);
  } catch (std::exception const& error) {
    std::osyncstream(std::cerr) << error.what() << std::endl;
  } catch (...) {
    std::osyncstream(std::cerr) << "Unexpected error." << std::endl;
    // Abrupt on purpose: after an error of unknown kind no other file is to be touched.
    std::_Exit(EXIT_FAILURE);
  }
}

/// Takes the records out of the collection: each becomes its task's own.
void CleanSources(Files& files, fs::path const& root, unsigned int threads) {
  WorkerLocks workers;
  thread_pool pool(threads <= HardwareWorkers() ? threads : 0);
  const auto clean = [&workers, &root](File file) { CleanFile(std::move(file), workers, root); };
  while (!files.files.empty()) {
    pool.push_task(clean, std::move(files.files.extract(files.files.begin()).value()));
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
