// Carries bytes between a channel name here and its listener in the interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace vantro {

// Answers one message. Null and 0 stand for an empty answer.
using BinaryReply = std::function<void(const uint8_t* reply, size_t size)>;
// Serves one channel. The bytes are borrowed for the call; the reply may be moved away and called once.
using BinaryMessageHandler = std::function<void(const uint8_t* message, size_t size, BinaryReply reply)>;

// A messenger that a shared pointer owns, as the engine's is, may go before its channels: they notice and fall silent.
// Any other messenger outlives its channels.
class BinaryMessenger : public std::enable_shared_from_this<BinaryMessenger> {
 public:
  virtual ~BinaryMessenger() = default;
  // Sends without waiting. With an empty reply no answer is asked for. Any thread that the embedding accepts.
  virtual void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply = nullptr) = 0;
  // Replaces the channel's handler; an empty one unregisters the channel. Main thread.
  virtual void SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) = 0;
};

}  // namespace vantro
