// Work on many files at once, with its results in order.
#pragma once

#include <algorithm>
#include <cstddef>
#include <deque>
#include <functional>
#include <future>
#include <memory>
#include <utility>
#include <vector>

#include "cleaner/thread_pool.h"

namespace companion {

/// Calls work(index) for every index below `count`, on HardwareWorkers() workers, and
/// take(index, result) for each in order, on the calling thread, until that is false. Few results
/// wait to be taken, however many there are. What `work` throws leaves this function; what has been
/// begun is finished first.
template <typename Result>
void ParallelInOrder(std::size_t count, std::function<Result(std::size_t)> const& work,
                     std::function<bool(std::size_t, Result)> const& take) {
  constexpr std::size_t mostInBatch = 16;
  constexpr std::size_t mostWaiting = 64;
  using Results = std::vector<Result>;

  // Up to 16 files make one task, so that handing tasks out costs little; fewer, where some workers
  // would get none.
  const std::size_t size =
      std::clamp<std::size_t>(count / (HardwareWorkers() * mostInBatch), 1, mostInBatch);
  std::deque<std::future<Results>> waiting;
  thread_pool pool(0);
  std::size_t pushed = 0;
  const auto push = [&] {
    const std::size_t end = std::min(count, pushed + size);
    auto task = std::make_shared<std::packaged_task<Results()>>([&work, begin = pushed, end] {
      Results results;
      for (std::size_t index = begin; index < end; ++index) {
        results.push_back(work(index));
      }
      return results;
    });
    waiting.push_back(task->get_future());
    pool.push_task([task] { (*task)(); });
    pushed = end;
  };

  for (std::size_t taken = 0; taken < count;) {
    while (pushed < count && waiting.size() < mostWaiting) {
      push();
    }
    Results results = waiting.front().get();
    waiting.pop_front();
    for (Result& result : results) {
      if (!take(taken++, std::move(result))) {
        return;
      }
    }
  }
}

}  // namespace companion
