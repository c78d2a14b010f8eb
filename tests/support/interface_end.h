// The interface's end of a window's channels. It sends requests as bytes through the loopback engine, decodes the
// answers, and keeps the host's calls.
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "tests/support/loopback.h"
#include "tests/support/values.h"

namespace vantro::test {

constexpr char kPlayerChannel[] = "org.vantro.player/communicate";
constexpr char kThumbnailChannel[] = "org.vantro.thumbnail/worker";

// The answer to one request.
struct Answer {
  enum class Kind { kSuccess, kError, kNotImplemented, kNone };
  Kind kind = Kind::kNone;
  Value value;  // the result of a success, or the details of an error
  std::string code;
  std::string message;

  friend bool operator==(const Answer&, const Answer&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Answer& answer);
};

Answer Success(Value value = Value());
Answer Failure(std::string code, std::string message, Value details = Value());
Answer NotImplemented();
// Nobody listened, or nobody answered.
Answer NoAnswer();

// A call that the host made. A missing argument is null.
struct InterfaceCall {
  std::string method;
  Value argument;

  friend bool operator==(const InterfaceCall&, const InterfaceCall&) = default;
  friend std::ostream& operator<<(std::ostream& out, const InterfaceCall& call);
};

class InterfaceEnd {
 public:
  explicit InterfaceEnd(Loopback& loopback) : loopback_(loopback) {}

  Answer Ask(int engine, const char* channel, const std::string& method, const Value& arguments = Value());
  // Returns the host's calls on the player channel in order, of one engine, or of all engines for 0.
  std::vector<InterfaceCall> Calls(int engine = 0) const;
  std::vector<std::string> CallNames(int engine = 0) const;
  void ClearCalls() { sent_.Clear(); }

 private:
  Loopback& loopback_;
  SentMessages sent_;
};

}  // namespace vantro::test
