#include "cleaner/thread_pool.h"

#include <gtest/gtest.h>

namespace {

TEST(ThreadPool, WaitsForManyMoreTasksThanWorkers) {
  std::atomic<int> sum = 0;
  thread_pool pool(3);
  for (int round = 1; round <= 3; ++round) {
    for (int i = 0; i < 5000; ++i) {
      pool.push_task([&sum](int amount) { sum += amount; }, 2);
    }
    pool.wait_for_tasks();
    EXPECT_EQ(sum, round * 10'000);
  }
}

TEST(ThreadPool, RunsAsManyAtOnceAsAsked) {
  std::atomic<int> waiting = 0;
  for (const std::uint32_t count : {1U, 4U, 0U}) {
    const int workers = static_cast<int>(count != 0 ? count : std::thread::hardware_concurrency());
    waiting = workers;
    thread_pool pool(count);
    for (int i = 0; i < workers; ++i) {
      // Ends only when all of them run side by side.
      pool.push_task([&waiting] {
        --waiting;
        while (waiting > 0) {
          std::this_thread::yield();
        }
      });
    }
  }  // Destroying the pool waits for them.
}

}  // namespace
