// The messenger of a running engine.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/embedding_api.h"

namespace vantro {

// A reference on the embedding's messenger, dropped with its owner.
using MessengerReference = std::unique_ptr<FlutterDesktopMessenger, decltype(&FlutterDesktopMessengerRelease)>;

// Keeps a reference on the embedding's messenger for its own life. Owned by a shared pointer, so that the channels
// notice when it goes. Destroyed after its engine: until then the embedding holds the addresses of the handlers.
//
// Send takes no lock and does not ask whether the engine is still there: libvlc's threads come here too, and the
// embedding accepts them. What remains to them is the moment in which the main thread destroys the engine; a window
// clears its player's callback before that.
class BinaryMessengerImpl : public BinaryMessenger {
 public:
  explicit BinaryMessengerImpl(FlutterDesktopMessengerRef messenger);
  // The reply runs on the main thread. A message that could not be sent destroys it uncalled.
  void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply = nullptr) override;
  // A handler may replace or clear itself while it runs.
  void SetMessageHandler(const std::string& channel, BinaryMessageHandler handler) override;

 private:
  MessengerReference messenger_;
  // The embedding's user data is the address of a channel's entry, which an ordered map keeps in place until the entry
  // is erased. Shared, so that a handler outlives its own call.
  std::map<std::string, std::shared_ptr<const BinaryMessageHandler>> handlers_;
};

}  // namespace vantro
