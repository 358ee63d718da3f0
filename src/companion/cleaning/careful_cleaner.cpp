#include "companion/cleaning/careful_cleaner.h"

#include <exception>
#include <filesystem>
#include <format>

#include "cleaner/marks_filter.h"
#include "cleaner/temporary_directory.h"
#include "companion/backups/put_back.h"
#include "companion/cleaning/with_blanks.h"
#include "companion/safety/cut_safety.h"
#include "files/file_status.h"
#include "files/source_file.h"

namespace companion {

using State = CleanupOutcome::State;

CarefulCleaner::Result CarefulCleaner::Clean(File const& file) {
  Attempt attempt = TryToClean(file);
  CleanupOutcome outcome = Outcome(file);
  if (attempt.failure && outcome.state == State::BrokenOff) {
    // Another run was interrupted just there, or is just at work there and waited for.
    if (!PutBackBrokenOff(file)) {
      attempt.failure = WhyUnsafe(file);
      attempt = attempt.failure ? attempt : TryToClean(file);
    }
    outcome = Outcome(file);
  }
  if (outcome.state == State::Cleaned || outcome.state == State::Kept) {
    return {.leftover = attempt.leftover,
            .wasCleanBefore = attempt.failure && !attempt.leftover,
            .versions = outcome.versions};
  }
  if (outcome.state == State::BrokenOff) {
    return {.complaint =
                Repair(file, attempt.failure.value_or("came out too short" + attempt.lack))};
  }
  return {.complaint = WhyNotClean(file, attempt.failure, outcome)};
}

/// The record, with the blanks that go, too. The filter looks once more whether the source is the
/// one that was analyzed.
File CarefulCleaner::WhatToCut(File const& file) const {
  if (!m_takesBlanks) {
    return file;
  }
  SourceFile source(m_tree.Path() / file.path);
  const auto content = source.IsOpen() ? source.ReadWhole() : std::nullopt;
  return {file.version, file.path, file.hash,
          content ? WithBlanks(file.lines, *content) : file.lines};
}

CarefulCleaner::Attempt CarefulCleaner::TryToClean(File const& file) {
  try {
    MarksFilter filter(WhatToCut(file), &m_workers);
    filter.SaveFilteredFile(m_tree.Path());
    const std::error_code error = filter.CopyError();
    return {.lack = error ? ": " + error.message() : std::string()};
  } catch (std::filesystem::filesystem_error const& error) {
    const bool isCopyLeft =
        error.path1().parent_path() == faCleaner::GetUncheckedTempDir() && StatusAt(error.path1());
    return {.failure = error.what(),
            .leftover = isCopyLeft
                            ? Complaint("a copy of a source stays: " + error.path1().string() +
                                        ": " + error.code().message())
                            : std::nullopt};
  } catch (std::exception const& error) {
    return {.failure = error.what()};
  }
}

/// What an interrupted run of another program was doing need not have been safe.
Complaint CarefulCleaner::WhyUnsafe(File const& file) const {
  const std::string name = m_tree.NameOf(file.path);
  SourceFile source(name);
  const auto content = source.IsOpen() ? source.ReadWhole() : std::nullopt;
  if (!content) {
    return "cannot read " + name;
  }
  const std::vector<UnsafeLine> unsafe = UnsafeLines(file.lines, *content);
  return unsafe.empty() ? Complaint() : ComplaintOf(unsafe.front(), name);
}

/// Returns why that was not possible.
Complaint CarefulCleaner::PutBackBrokenOff(File const& file) {
  BackupPair pair(m_tree, file.path, &m_workers);
  pair.Judge();
  const bool isBrokenOff = Outcome(file).state == State::BrokenOff;
  return isBrokenOff ? PutBack(pair) : ChangedMeanwhile(pair);
}

std::string CarefulCleaner::Repair(File const& file, std::string const& why) {
  const std::string name = m_tree.NameOf(file.path);
  const Complaint refusal = PutBackBrokenOff(file);
  return refusal ? std::format("cannot put back: {}: {}; {}", name, why, *refusal)
                 : std::format("put back: {}: {}", name, why);
}

std::string CarefulCleaner::WhyNotClean(File const& file, Complaint const& failure,
                                        CleanupOutcome const& outcome) const {
  const std::string source = m_tree.NameOf(file.path);
  if (!failure) {
    return outcome.complaint.value_or("came out other than it should: " + source);
  }
  return failure->find(source) == std::string::npos ? source + ": " + *failure : *failure;
}

}  // namespace companion
