#include "cleaner/thread_pool.h"

#include <gtest/gtest.h>

#include <chrono>
#include <set>

namespace {

TEST(ThreadPool, WaitsForManyMoreTasksThanWorkers) {
  std::atomic<int> sum = 0;
  thread_pool pool(3);
  for (int round = 1; round <= 3; ++round) {
    for (int i = 0; i < 5000; ++i) {
      pool.push_task([&sum](int amount) { sum += amount; }, 2);
    }
    pool.push_task([&sum] {  // A task is not done before it has run to its end.
      std::this_thread::sleep_for(std::chrono::milliseconds(50));
      ++sum;
    });
    pool.wait_for_tasks();
    EXPECT_EQ(sum, round * 10'001);
  }
}

TEST(ThreadPool, RunsAsManyAtOnceAsAskedAndFinishesThem) {
  for (const std::uint32_t count : {1U, 4U, 0U}) {
    const int workers = static_cast<int>(count != 0 ? count : std::thread::hardware_concurrency());
    std::atomic<int> waiting = workers;
    std::atomic<int> done = 0;
    std::mutex mutex;
    std::set<std::thread::id> seen;
    {
      thread_pool pool(count);
      for (int i = 0; i < workers + 20; ++i) {
        pool.push_task([&] {
          for (--waiting; waiting > 0;) {
            std::this_thread::yield();  // Until all workers run side by side.
          }
          std::this_thread::sleep_for(std::chrono::milliseconds(1));
          const std::scoped_lock lock(mutex);
          seen.insert(std::this_thread::get_id());
          ++done;
        });
      }
    }
    EXPECT_EQ(done, workers + 20);
    EXPECT_EQ(seen.size(), static_cast<std::size_t>(workers));
  }
}

}  // namespace
