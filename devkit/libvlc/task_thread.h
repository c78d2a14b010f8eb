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
  // To be called once. A native thread for calls into libvlc 3, a Windows thread for calls into the program; the latter
  // is made on a Windows thread only. False if no thread could be made.
  bool StartNative();
  bool StartWindows();

  // Any thread. Tasks posted behind Close are dropped.
  void Post(std::function<void()> task);

  // Drops what waits. A running task goes on, the thread ends behind it.
  void Close();

  // How many tasks wait.
  size_t waiting() const;

 private:
  void Run();

  mutable std::mutex lock_;
  std::condition_variable posted_;
  std::deque<std::function<void()>> tasks_;
  bool closed_ = false;
};

}  // namespace vantro::devlib
