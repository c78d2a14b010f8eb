// A thread that runs tasks one after the other, in the order in which they were posted.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

namespace vantro::devlib {

class TaskThread : public std::enable_shared_from_this<TaskThread> {
 public:
  // Call one of these once. A native thread is for calls into libvlc 3, a Windows thread for calls into the program.
  // The latter can be made only on a Windows thread. Returns false if the thread could not be made.
  bool StartNative();
  bool StartWindows();

  // Any thread. Tasks posted after Close are dropped.
  void Post(std::function<void()> task);

  // Drops the waiting tasks. A running task continues, and then the thread ends.
  void Close();

  // Returns the number of waiting tasks.
  size_t waiting() const;

 private:
  void Run();

  mutable std::mutex lock_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> tasks_;
  bool closed_ = false;
};

}  // namespace vantro::devlib
