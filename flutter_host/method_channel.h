// A named method channel over a messenger.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/encodable_value.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro {

class MethodCodec;
using MethodCallHandler = std::function<void(const MethodCall& call, std::unique_ptr<MethodResult> result)>;

// The codec outlives the channel, and so does the messenger unless a shared pointer owns it. A channel over a shared
// messenger that is gone is inert: a call is dropped with its result, and setting or clearing a handler does nothing. A
// window depends on it, since its thumbnail plugin clears its handler after the engine and its messenger have gone. A
// call that another thread is just making keeps the messenger's object until it returns.
class MethodChannel {
 public:
  MethodChannel(BinaryMessenger* messenger, std::string name, const MethodCodec* codec);
  MethodChannel(const MethodChannel&) = delete;
  MethodChannel& operator=(const MethodChannel&) = delete;

  // Calls a method of the interface. Without a result no reply is asked for: the only form that the host uses.
  // arguments may be null. Any thread that the messenger accepts. A result is answered on the main thread, or destroyed
  // unanswered when the call could not be sent.
  void InvokeMethod(const std::string& method, std::unique_ptr<EncodableValue> arguments,
                    std::unique_ptr<MethodResult> result = nullptr);
  // The same call with a string for an argument, or none, and without a result. A short one allocates nothing: the
  // player's events come this way, several a second on libvlc's threads.
  void InvokeMethodWithText(std::string_view method, std::optional<std::string_view> text);
  // Main thread. An empty handler unregisters the channel. Bytes that are no method call are reported on the standard
  // error stream and answered as not implemented, without a call of the handler.
  void SetMethodCallHandler(MethodCallHandler handler) const;

 private:
  // Null once a shared messenger is gone.
  std::shared_ptr<BinaryMessenger> LockMessenger() const;

  BinaryMessenger* messenger_;
  std::weak_ptr<BinaryMessenger> sharedMessenger_;
  bool isShared_;
  std::string name_;
  const MethodCodec* codec_;
};

}  // namespace vantro
