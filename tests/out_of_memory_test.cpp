// What an allocation that fails leaves behind, whichever it is, and what an unknown error does.
#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <new>
#include <utility>

#include "cleaner/marks_filter.h"
#include "cleaner/thread_pool.h"
#include "merge/hashing/sha1.h"
#include "merge/reading/report_window.h"
#include "scratch_directory.h"

int ProgramMain(int argc, char** argv);

namespace {

/// How many allocations of this thread still succeed before one fails; below 0, all do.
thread_local int allowed = -1;

/// An allocation of so many bytes, by any thread, throws what is no exception of the library's.
std::atomic<std::size_t> strange = 0;

/// Calls `action` with its first allocation failing, then with its second, and so on until it gets
/// through; `check` sees what each failure left.
template <typename Action, typename Check>
void FailEachAllocation(Action action, Check check) {
  for (int number = 0; number < 1000; ++number) {
    allowed = number;
    try {
      action();
      allowed = -1;
      return;
    } catch (std::exception const& error) {
      allowed = -1;
      check(error);
    }
  }
  FAIL() << "it never gets through";
}

TEST(OutOfMemory, ATaskThatCouldNotBeQueuedIsNotWaitedFor) {
  std::atomic<int> ran = 0;
  int failures = 0;
  thread_pool pool(1);
  const std::array<char, 4096> large{};
  for (int round = 0; round < 300; ++round) {
    FailEachAllocation(
        [&] { pool.push_task([&ran](std::array<char, 4096> const&) { ++ran; }, large); },
        [&](std::exception const& /*error*/) { ++failures; });
  }
  pool.wait_for_tasks();
  EXPECT_EQ(ran, 300);
  EXPECT_GT(failures, 300);  // The queue itself has to grow now and then.
}

TEST(OutOfMemory, ACleanupHasItsLineAndItsBytes) {
  const ScratchDirectory scratch;
  const std::string text = "a //-V1\n" + std::string(300'000, 'x');
  File file;
  file.path = "d/source";
  file.lines = {{1, {{1, {}, {2, 7}}}}};
  SHA1 sha1;
  sha1.add(text.data(), text.size());
  file.hash = sha1.getHash();
  std::filesystem::create_directory(scratch.Path() / "d");
  scratch.Write("d/source", text);
  WorkerLocks turns;
  const auto clean = [&] {
    const int given = std::exchange(allowed, -1);
    MarksFilter filter(file, &turns);
    allowed = given;
    filter.SaveFilteredFile(scratch.Path());
  };
  FailEachAllocation(clean, [&](std::exception const& error) {
    EXPECT_TRUE(std::string_view(error.what()).find("d/source") != std::string::npos)
        << error.what();
    ASSERT_EQ(scratch.Read("d/source"), text);
  });
  EXPECT_EQ(scratch.Read("d/source"), "a \n" + text.substr(8));
  EXPECT_EQ(scratch.Read("d/sourcetemp_qln_facleaner"), text);
}

TEST(UnknownError, EndsTheProgramAtOnceAndSaysSo) {
  const ScratchDirectory scratch;
  const std::string root = scratch.Path();
  const std::string text(EditWindow::Size, 'x');
  SHA1 sha1;
  sha1.add(text.data(), text.size());
  scratch.Write("a", text);
  const std::string report =
      scratch.Write("report", R"({"path":")" + root + R"(/a","hash":")" + sha1.getHash() +
                                  R"(","lines":[{"line":1,"markers":[]}]})");
  const char* arguments[] = {"", "cleanup", "-r", root.c_str(), report.c_str(), nullptr};
  const auto run = [&](std::size_t size) {
    strange = size;
    std::exit(ProgramMain(5, const_cast<char**>(arguments)));
  };
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  const testing::ExitedWithCode failure(EXIT_FAILURE);
  EXPECT_EXIT(run(ReportWindow::Size + ReportWindow::Padding), failure,
              "^Unrecognized error. The program is terminated.\n$");
  EXPECT_EXIT(run(EditWindow::Size), failure, "^Unexpected error.\n$");
  EXPECT_EQ(scratch.Read("a"), text);
}

}  // namespace

#ifndef __clang_analyzer__  // It would look for leaks through these, and find GoogleTest's.
void* operator new(std::size_t size) {
  if (size != 0 && size == strange) {
    throw "strange";
  }
  if (allowed == 0) {
    allowed = -1;
    throw std::bad_alloc();
  }
  allowed -= allowed > 0 ? 1 : 0;
  if (void* memory = std::malloc(size != 0 ? size : 1)) {
    return memory;
  }
  throw std::bad_alloc();
}

// The sanitizers' own forms for arrays do not call the ones above and below.
void* operator new[](std::size_t size) {
  return operator new(size);
}

// Not inline, where GCC would see memory of `new` given to `free`, and warn.
[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
#endif
