// A named method channel over a messenger.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "flutter_host/binary_messenger.h"
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

  // Calls a method of the interface. Without a result no reply is asked for: the only form that the host uses. Any
  // thread that the messenger accepts. A result is answered on the main thread, or destroyed unanswered when the call
  // could not be sent. A short call allocates nothing: the player's events come this way, several a second on libvlc's
  // threads.
  void InvokeMethod(const MethodCall& call, std::unique_ptr<MethodResult> result = nullptr);
  // The same with arguments of either kind, which the call copies as MethodCall says; none stands for no arguments.
  template <class Value = EncodableValue>
  void InvokeMethod(std::string_view method, const Value& arguments = {},
                    std::unique_ptr<MethodResult> result = nullptr) {
    InvokeMethod(MethodCall(method, arguments), std::move(result));
  }
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
