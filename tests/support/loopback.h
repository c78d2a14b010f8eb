// The control functions of the loopback engine for unit tests, found in the flutter_windows.dll that the process has
// loaded. See devkit/engine/loopback_control.h for what each does.
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
  // Resets the engine library's faults, observers and counters, and does so again at the end.
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
  // Takes the place of the observer that SentMessages uses.
  void SetSendObserver(LoopbackSendObserver observer, void* userData);

  // What the host answered; nothing if nobody listened or no answer came before the call returned.
  std::optional<Bytes> Deliver(int engine, const std::string& channel, const Bytes& bytes);
};

// Keeps what the host sends while it lives, in the order in which it was sent. Any thread may send.
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
