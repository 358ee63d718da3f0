// Reads and writes that come back short or interrupted, as any may, or that fail.
#include <gtest/gtest.h>

#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>

#include "cleaner/marks_filter.h"
#include "merge/files.h"
#include "merge/hashing/sha1.h"
#include "scratch_directory.h"

namespace {

thread_local std::size_t mostAtOnce = SIZE_MAX;
thread_local std::size_t readable = SIZE_MAX;  ///< Bytes until files seem to end.
thread_local std::size_t writable = SIZE_MAX;  ///< Bytes until the disk is full for one write.
thread_local bool isInterrupted = false;       ///< Every other call is, if calls are short.

bool Interrupts() {
  errno = EINTR;
  return mostAtOnce != SIZE_MAX && (isInterrupted = !isInterrupted);
}

class ShortCalls : public testing::Test {
 protected:
  void SetText(std::size_t size) {
    m_text = "a //-V1\n" + std::string(size, 'x');
    m_scratch.Write("source", m_text);
    SHA1 sha1;
    sha1.add(m_text.data(), m_text.size());
    m_file.path = "source";
    m_file.hash = sha1.getHash();
    m_file.lines = {{1, {{1, {}, {2, 7}}}}};
  }
  void TearDown() override { mostAtOnce = readable = writable = SIZE_MAX; }

  void Clean() { MarksFilter(m_file).SaveFilteredFile(m_scratch.Path()); }

  ScratchDirectory m_scratch;
  std::string m_text;
  File m_file;
};

TEST_F(ShortCalls, AreGoneOnWith) {
  SetText(3 * EditWindow::Size);
  mostAtOnce = 1000;
  Clean();
  EXPECT_EQ(m_scratch.Read("source"), "a \n" + m_text.substr(8));
  Files files;
  const auto report = m_scratch.Write("report", R"({"path":"source","hash":"","lines":[]})");
  mostAtOnce = 10;
  files.ExtractFromReport(report, true, m_scratch.Path());
  EXPECT_EQ(files.files.size(), 1);
}

TEST_F(ShortCalls, ASourceThatEndsBeforeItsSizeIsLeft) {
  SetText(3 * EditWindow::Size);
  readable = m_text.size() + EditWindow::Size;  // Whole when it is hashed, and then cut.
  EXPECT_THROW(Clean(), std::runtime_error);
  readable = SIZE_MAX;
  EXPECT_EQ(m_scratch.Read("source"), m_text);
  EXPECT_FALSE(std::filesystem::exists(m_scratch.Path() / "sourcetemp_qln_facleaner"));
}

TEST_F(ShortCalls, ACopyThatAFullDiskCutsShortTakesTheSourcesPlace) {
  SetText(1000);
  writable = 300;
  Clean();
  EXPECT_EQ(m_scratch.Read("source"), "a \n" + m_text.substr(8, 297));
  EXPECT_EQ(m_scratch.Read("sourcetemp_qln_facleaner"), m_text);
}

}  // namespace

// The linker has these called in place of read and write; it makes up the names.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" {
ssize_t __real_read(int descriptor, void* bytes, std::size_t count);
ssize_t __real_write(int descriptor, void const* bytes, std::size_t count);

ssize_t __wrap_read(int descriptor, void* bytes, std::size_t count) {
  if (Interrupts()) {
    return -1;
  }
  const ssize_t taken = __real_read(descriptor, bytes, std::min({count, mostAtOnce, readable}));
  readable -= taken > 0 && readable != SIZE_MAX ? static_cast<std::size_t>(taken) : 0;
  return taken;
}

ssize_t __wrap_write(int descriptor, void const* bytes, std::size_t count) {
  if (Interrupts() || writable == 0) {
    errno = writable == 0 ? ENOSPC : EINTR;
    writable = writable == 0 ? SIZE_MAX : writable;
    return -1;
  }
  const ssize_t given = __real_write(descriptor, bytes, std::min({count, mostAtOnce, writable}));
  writable -= given > 0 && writable != SIZE_MAX ? static_cast<std::size_t>(given) : 0;
  return given;
}
}
// NOLINTEND(bugprone-reserved-identifier)
