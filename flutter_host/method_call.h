// One incoming request: a method name and its arguments.
#pragma once

#include <memory>
#include <string>
#include <utility>

#include "flutter_host/encodable_value.h"

namespace vantro {

class MethodCall {
 public:
  MethodCall(std::string methodName, std::unique_ptr<EncodableValue> arguments)
      : methodName_(std::move(methodName)), arguments_(std::move(arguments)) {}
  virtual ~MethodCall() = default;
  MethodCall(const MethodCall&) = delete;
  MethodCall& operator=(const MethodCall&) = delete;

  const std::string& method_name() const { return methodName_; }
  // Owned by the call; null when the call has none.
  const EncodableValue* arguments() const { return arguments_.get(); }

 private:
  std::string methodName_;
  std::unique_ptr<EncodableValue> arguments_;
};

}  // namespace vantro
