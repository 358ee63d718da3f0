#include "cleaner/thread_pool.h"

#include <algorithm>
#include <chrono>

std::uint32_t HardwareWorkers() {
  return std::max(1U, std::thread::hardware_concurrency());
}

thread_pool::thread_pool(std::uint32_t count)
    : m_threadCount(count != 0 ? count : HardwareWorkers()),
      m_threads(std::make_unique<std::thread[]>(m_threadCount)) {
  for (std::uint32_t i = 0; i < m_threadCount; ++i) {
    m_threads[i] = std::thread(&thread_pool::worker, this);
  }
}

thread_pool::~thread_pool() {
  wait_for_tasks();
  m_running = false;
  for (std::uint32_t i = 0; i < m_threadCount; ++i) {
    m_threads[i].join();
  }
}

void thread_pool::wait_for_tasks() const {
  while (!IsDone()) {
    SleepOrYield();
  }
}

void thread_pool::Queue(std::function<void()> task) {
  // Counted before it is queued, so that a waiter never sees 0 with a task still to run.
  ++m_tasksTotal;
  try {
    const std::scoped_lock lock(m_queueMutex);
    m_tasks.push(std::move(task));
  } catch (...) {
    --m_tasksTotal;  // Or whoever waits for the task would wait for ever.
    throw;
  }
}

void thread_pool::worker() {
  while (m_running) {
    if (m_paused || !RunOneTask()) {
      SleepOrYield();
    }
  }
}

bool thread_pool::RunOneTask() {
  std::function<void()> task;
  {
    const std::scoped_lock lock(m_queueMutex);
    if (m_tasks.empty()) {
      return false;
    }
    task = std::move(m_tasks.front());
    m_tasks.pop();
  }
  task();
  --m_tasksTotal;
  return true;
}

bool thread_pool::IsDone() const {
  if (!m_paused) {
    return m_tasksTotal == 0;
  }
  const std::scoped_lock lock(m_queueMutex);
  return m_tasksTotal == m_tasks.size();
}

void thread_pool::SleepOrYield() const {
  if (m_sleepMicroseconds == 0) {
    std::this_thread::yield();
  } else {
    std::this_thread::sleep_for(std::chrono::microseconds(m_sleepMicroseconds));
  }
}
