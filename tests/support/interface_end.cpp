#include "tests/support/interface_end.h"

#include <utility>

#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"
#include "flutter_host/standard_method_codec.h"

namespace vantro::test {

namespace {

// Converts a decoded reply to an answer.
class AnswerResult : public MethodResult {
 public:
  explicit AnswerResult(Answer& answer) : answer_(answer) {}

 protected:
  void SuccessInternal(const EncodableValue& value) override { answer_ = test::Success(Value(value)); }
  void ErrorInternal(std::string_view code, std::string_view message, const EncodableValue& details) override {
    answer_ = Failure(std::string(code), std::string(message), Value(details));
  }
  void NotImplementedInternal() override { answer_ = test::NotImplemented(); }

 private:
  Answer& answer_;
};

}  // namespace

Answer Success(Value value) { return {Answer::Kind::kSuccess, std::move(value), "", ""}; }
Answer Failure(std::string code, std::string message, Value details) {
  return {Answer::Kind::kError, std::move(details), std::move(code), std::move(message)};
}
Answer NotImplemented() { return {Answer::Kind::kNotImplemented, Value(), "", ""}; }
Answer NoAnswer() { return {}; }

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  static constexpr const char* kKinds[] = {"success", "error", "not implemented", "no answer"};
  out << kKinds[static_cast<int>(answer.kind)] << " " << answer.code << " " << answer.message << " ";
  return out << Describe(answer.value);
}

std::ostream& operator<<(std::ostream& out, const InterfaceCall& call) {
  return out << call.method << " " << Describe(call.argument);
}

Answer InterfaceEnd::Ask(int engine, const char* channel, const std::string& method, const Value& arguments) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  ByteVector request;
  codec.EncodeMethodCall(MethodCall(method, arguments), &request);
  const std::optional<Bytes> reply =
      loopback_.Deliver(engine, channel, {request.data(), request.data() + request.size()});
  if (!reply) return NoAnswer();
  if (reply->empty()) return NotImplemented();
  Answer answer;
  AnswerResult result(answer);
  codec.DecodeAndProcessResponseEnvelope(reply->data(), reply->size(), &result);
  return answer;
}

std::vector<InterfaceCall> InterfaceEnd::Calls(int engine) const {
  std::vector<InterfaceCall> calls;
  for (const SentMessages::Message& message : sent_.All()) {
    if (message.channel != kPlayerChannel || (engine != 0 && message.engine != engine)) continue;
    MethodCall call;
    if (!StandardMethodCodec::GetInstance().DecodeMethodCall(message.bytes.data(), message.bytes.size(), &call))
      continue;
    calls.push_back({std::string(call.method_name()), call.KeepArguments()});
  }
  return calls;
}

std::vector<std::string> InterfaceEnd::CallNames(int engine) const {
  std::vector<std::string> names;
  for (const InterfaceCall& call : Calls(engine)) names.push_back(call.method);
  return names;
}

}  // namespace vantro::test
