// The control functions of the loopback engine for unit tests. They are found in the flutter_windows.dll that the
// process has loaded. devkit/engine/loopback_control.h describes each.
#pragma once

#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "devkit/engine/loopback_control.h"

namespace vantro::test {

using Bytes = std::vector<uint8_t>;

class Loopback {
 public:
  // Resets the engine library's faults, observers and counters, now and in the destructor.
  Loopback();
  ~Loopback();
  Loopback(const Loopback&) = delete;
  Loopback& operator=(const Loopback&) = delete;

  void SetFaults(const LoopbackFaults& faults);
  int EngineCount() const;
  int NewestEngine() const;
  int MessengerReferences() const;
  int ReplyViolations() const;
  int PendingReplies() const;
  bool HasListener(int engine, const std::string& channel) const;
  LoopbackEngineProperties NewestProperties() const;
  void SetSendAnswer(const Bytes& bytes);
  void SetTopLevelResult(UINT message, bool handled, LRESULT result);
  void SetTopLevelObserver(LoopbackTopLevelObserver observer, void* userData);
  void SetViewObserver(LoopbackViewObserver observer, void* userData);
  // Replaces the observer that SentMessages uses.
  void SetSendObserver(LoopbackSendObserver observer, void* userData);

  // Returns the host's answer, or nothing if nobody listened or no answer came before the call returned.
  std::optional<Bytes> Deliver(int engine, const std::string& channel, const Bytes& bytes);
};

// Keeps the messages that the host sends while the object exists, in order. Any thread may send.
class SentMessages {
 public:
  struct Message {
    int engine;
    std::string channel;
    Bytes bytes;
    DWORD thread;
  };

  SentMessages();
  ~SentMessages();
  SentMessages(const SentMessages&) = delete;
  SentMessages& operator=(const SentMessages&) = delete;

  std::vector<Message> All() const;
  size_t Count() const;
  void Clear();

 private:
  static void Observe(int32_t engine, const char* channel, const uint8_t* bytes, size_t size, void* userData);

  mutable std::mutex mutex_;
  std::vector<Message> messages_;
};

}  // namespace vantro::test
