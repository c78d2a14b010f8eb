// Answers one request, exactly once.
#pragma once

#include <string_view>

#include "flutter_host/encodable_value.h"

namespace vantro {

// Values are borrowed for the call. The null value means that a value or details are absent.
class MethodResult {
 public:
  virtual ~MethodResult() = default;

  void Success(const EncodableValue& value = EncodableValue()) { SuccessInternal(value); }
  void Error(std::string_view code, std::string_view message = "", const EncodableValue& details = EncodableValue()) {
    ErrorInternal(code, message, details);
  }
  void NotImplemented() { NotImplementedInternal(); }

 protected:
  virtual void SuccessInternal(const EncodableValue& value) = 0;
  virtual void ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) = 0;
  virtual void NotImplementedInternal() = 0;
};

}  // namespace vantro
