// The messenger of a running engine.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/embedding_api.h"

namespace vantro {

// A reference to the embedding's messenger, released with its owner.
using MessengerReference = std::unique_ptr<FlutterDesktopMessenger, decltype(&FlutterDesktopMessengerRelease)>;

// Holds a reference to the embedding's messenger. A shared pointer owns this object, so that channels can see when it
// is gone. It must be destroyed after its engine: until then the embedding holds the addresses of the handlers.
//
// Send takes no lock and does not check whether the engine still exists: libvlc's threads also call it, and the
// embedding accepts them. The only unsafe moment is when the main thread destroys the engine; a window clears its
// player's callback before that.
class BinaryMessengerImpl : public BinaryMessenger {
 public:
  explicit BinaryMessengerImpl(FlutterDesktopMessengerRef messenger);
  // The reply runs on the main thread. If the message cannot be sent, the reply is destroyed without a call.
  void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply = nullptr) override;
  // A handler may replace or clear itself while it runs.
  void SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) override;

 private:
  MessengerReference messenger_;
  // The embedding's user data is the address of a channel's entry, which does not move in an ordered map. The handler
  // is shared, so that it lives until its own call returns.
  std::map<std::string, std::shared_ptr<const BinaryMessageHandler>> handlers_;
};

}  // namespace vantro
