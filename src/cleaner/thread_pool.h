// A fixed pool of worker threads over one queue.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <queue>
#include <thread>
#include <utility>

/// How many workers keep the hardware busy; at least 1.
[[nodiscard]] std::uint32_t HardwareWorkers();

/// Runs tasks on a fixed number of threads, oldest first. There are no condition variables: idle
/// workers and waiters look again after a fixed sleep of a millisecond, which is nothing beside
/// tasks that each rewrite a file.
///
/// A task must catch its own exceptions; one that escapes ends the process. push_task and
/// wait_for_tasks may be called from any thread but a worker.
class thread_pool {
 public:
  /// Starts the workers; 0 means HardwareWorkers(). Throws std::system_error when
  /// the first thread cannot be started; a later failure ends the process, because workers that
  /// already run cannot be abandoned.
  explicit thread_pool(std::uint32_t count);

  /// Finishes every pushed task, then joins the workers.
  ~thread_pool();
  thread_pool(thread_pool const&) = delete;
  thread_pool& operator=(thread_pool const&) = delete;

  /// Queues `task(args...)`. The arguments are stored in the queue, and handed over to the task
  /// when it runs. Throws std::bad_alloc, and then has queued nothing.
  template <typename Task, typename... Args>
  void push_task(Task const& task, Args&&... args) {
    Queue([task, ... stored = std::forward<Args>(args)]() mutable { task(std::move(stored)...); });
  }

  /// Returns when no task is queued or running; while paused, when none is running.
  void wait_for_tasks() const;

 private:
  void Queue(std::function<void()> task);
  void worker();
  [[nodiscard]] bool RunOneTask();
  [[nodiscard]] bool IsDone() const;
  void SleepOrYield() const;

  /// While true, workers take no new task. Nothing sets it: it is kept as all of the analyzer's
  /// tools have it.
  std::atomic<bool> m_paused = false;
  std::uint32_t m_sleepMicroseconds = 1000;  ///< 0 yields the processor instead.
  mutable std::mutex m_queueMutex;
  std::atomic<bool> m_running = true;
  std::queue<std::function<void()>> m_tasks;
  std::uint32_t m_threadCount;
  std::unique_ptr<std::thread[]> m_threads;
  std::atomic<std::uint32_t> m_tasksTotal = 0;  ///< Queued and running.
};
