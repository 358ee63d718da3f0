// Gives the tests a temporary directory of their own, because what they test leaves a folder in it,
// and would meet there what others left.

#include <gtest/gtest.h>

#include <optional>

#include "scratch_directory.h"

namespace {

class OwnTemporaryDirectory : public testing::Environment {
 public:
  void SetUp() override { ::setenv("TMPDIR", m_scratch.emplace().Path().c_str(), 1); }
  void TearDown() override { m_scratch.reset(); }

 private:
  std::optional<ScratchDirectory> m_scratch;
};

testing::Environment* const Registered =
    testing::AddGlobalTestEnvironment(new OwnTemporaryDirectory);

}  // namespace
