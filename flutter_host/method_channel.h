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

// The codec outlives the channel, and so does the messenger unless a shared pointer owns it. If a shared messenger has
// been destroyed, the channel does nothing: a call is dropped with its result, and so is a handler. A window relies on
// this: its thumbnail plugin clears its handler after the engine and the messenger are destroyed. A call in progress on
// another thread keeps the messenger's object alive until it returns.
class MethodChannel {
 public:
  MethodChannel(BinaryMessenger* messenger, std::string name, const MethodCodec* codec);

  // Calls a method of the interface. Without a result, no reply is requested; the host uses only this form. Any thread
  // that the messenger accepts. A result is answered on the main thread, or destroyed unanswered if the call cannot be
  // sent. A short call allocates nothing, because libvlc's threads send several events a second this way.
  void InvokeMethod(const MethodCall& call, std::unique_ptr<MethodResult> result = nullptr);
  // The same with arguments of either kind, copied or shared as MethodCall describes; none by default.
  template <class Value = EncodableValue>
  void InvokeMethod(std::string_view method, const Value& arguments = {},
                    std::unique_ptr<MethodResult> result = nullptr) {
    InvokeMethod(MethodCall(method, arguments), std::move(result));
  }
  // Main thread. An empty handler unregisters the channel. Bytes that are not a method call are reported on the
  // standard error stream and answered as not implemented; the handler is not called.
  void SetMethodCallHandler(MethodCallHandler handler) const;

 private:
  // Null if a shared messenger has been destroyed.
  std::shared_ptr<BinaryMessenger> LockMessenger() const;

  BinaryMessenger* messenger_;
  std::weak_ptr<BinaryMessenger> sharedMessenger_;
  bool isShared_;
  std::string name_;
  const MethodCodec* codec_;
};

}  // namespace vantro
