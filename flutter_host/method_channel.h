// A named method channel over a messenger.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "flutter_host/binary_messenger.h"
#include "flutter_host/encodable_value.h"
#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"

namespace vantro {

class MethodCodec;
using MethodCallHandler = std::function<void(const MethodCall& call, std::unique_ptr<MethodResult> result)>;

class MethodChannel {
 public:
  // Messenger and codec are borrowed and outlive the channel.
  MethodChannel(BinaryMessenger* messenger, std::string name, const MethodCodec* codec);
  MethodChannel(const MethodChannel&) = delete;
  MethodChannel& operator=(const MethodChannel&) = delete;

  // Calls a method of the interface. Without a result no reply is asked for: the only form that the host uses.
  // arguments may be null. Any thread that the messenger accepts.
  void InvokeMethod(const std::string& method, std::unique_ptr<EncodableValue> arguments,
                    std::unique_ptr<MethodResult> result = nullptr);
  // Main thread. An empty handler unregisters the channel.
  void SetMethodCallHandler(MethodCallHandler handler) const;

 private:
  BinaryMessenger* messenger_;
  std::string name_;
  const MethodCodec* codec_;
};

}  // namespace vantro
