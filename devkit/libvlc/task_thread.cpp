#include "task_thread.h"

#include <thread>
#include <utility>

#include "windows_thread.h"

namespace vantro::devlib {

bool TaskThread::StartNative() {
  std::thread([self = shared_from_this()] { self->Run(); }).detach();
  return true;
}

bool TaskThread::StartWindows() {
  return StartWindowsThread([self = shared_from_this()] { self->Run(); });
}

void TaskThread::Post(std::function<void()> task) {
  {
    std::lock_guard guard(lock_);
    if (closed_) return;
    tasks_.push_back(std::move(task));
  }
  posted_.notify_one();
}

void TaskThread::Close() {
  std::deque<std::function<void()>> dropped;
  {
    std::lock_guard guard(lock_);
    closed_ = true;
    dropped.swap(tasks_);
  }
  posted_.notify_one();
}

size_t TaskThread::waiting() const {
  std::lock_guard guard(lock_);
  return tasks_.size();
}

void TaskThread::Run() {
  std::unique_lock guard(lock_);
  while (true) {
    posted_.wait(guard, [this] { return closed_ || !tasks_.empty(); });
    if (closed_) return;
    std::function<void()> task = std::move(tasks_.front());
    tasks_.pop_front();
    guard.unlock();
    task();
    task = nullptr;
    guard.lock();
  }
}

}  // namespace vantro::devlib
