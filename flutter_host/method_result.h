// The object through which one request is answered, exactly once.
#pragma once

#include <string>

#include "flutter_host/encodable_value.h"

namespace vantro {

class MethodResult {
 public:
  MethodResult() = default;
  virtual ~MethodResult() = default;
  MethodResult(const MethodResult&) = delete;
  MethodResult& operator=(const MethodResult&) = delete;

  void Success() { SuccessInternal(nullptr); }
  void Success(const EncodableValue& value) { SuccessInternal(&value); }
  void Error(const std::string& code, const std::string& message = "") { ErrorInternal(code, message, nullptr); }
  void Error(const std::string& code, const std::string& message, const EncodableValue& details) {
    ErrorInternal(code, message, &details);
  }
  void NotImplemented() { NotImplementedInternal(); }

 protected:
  // The value and the details may be null.
  virtual void SuccessInternal(const EncodableValue* value) = 0;
  virtual void ErrorInternal(const std::string& code, const std::string& message, const EncodableValue* details) = 0;
  virtual void NotImplementedInternal() = 0;
};

}  // namespace vantro
