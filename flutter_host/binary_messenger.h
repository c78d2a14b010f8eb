// Sends bytes between a named channel here and its listener in the interface.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace vantro {

// Answers one message. Null with size 0 is an empty answer.
using BinaryReply = std::function<void(const uint8_t* reply, size_t size)>;
// Handles the messages of one channel. The bytes are borrowed for the call. The reply may be moved and is called once.
using BinaryMessageHandler = std::function<void(const uint8_t* message, size_t size, BinaryReply reply)>;

// A messenger owned by a shared pointer, as the engine's is, may be destroyed before its channels, which then do
// nothing. Any other messenger must outlive its channels.
class BinaryMessenger : public std::enable_shared_from_this<BinaryMessenger> {
 public:
  virtual ~BinaryMessenger() = default;
  // Sends and does not wait. With an empty reply, no answer is requested. Any thread that the embedding accepts.
  virtual void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply = nullptr) = 0;
  // Replaces the handler of the channel; an empty one unregisters the channel. Main thread.
  virtual void SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) = 0;
};

}  // namespace vantro
