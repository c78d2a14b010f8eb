#include "tests/support/interface_end.h"

#include <memory>
#include <sstream>
#include <utility>

#include "flutter_host/method_call.h"
#include "flutter_host/method_result.h"
#include "flutter_host/standard_method_codec.h"

namespace vantro::test {

namespace {

// Turns what the codec reads into an answer.
class AnswerResult : public MethodResult {
 public:
  explicit AnswerResult(Answer& answer) : answer_(answer) {}

 protected:
  void SuccessInternal(const EncodableValue* value) override {
    answer_ = test::Success(value ? *value : EncodableValue());
  }
  void ErrorInternal(const std::string& code, const std::string& message, const EncodableValue* details) override {
    answer_ = Failure(code, message, details ? *details : EncodableValue());
  }
  void NotImplementedInternal() override { answer_ = test::NotImplemented(); }

 private:
  Answer& answer_;
};

void Write(std::ostream& out, const EncodableValue& value);

struct Writer {
  std::ostream& out;

  void operator()(std::monostate) const { out << "null"; }
  void operator()(bool flag) const { out << (flag ? "true" : "false"); }
  void operator()(const std::string& text) const { out << '"' << text << '"'; }
  void operator()(int32_t number) const { out << number; }
  void operator()(int64_t number) const { out << number << "L"; }
  void operator()(double number) const { out << number << "d"; }
  template <typename T>
  void operator()(const std::vector<T>& list) const {
    out << "[" << list.size() << " elements]";
  }
  void operator()(const EncodableList& list) const {
    out << "[";
    for (const EncodableValue& element : list) Write(out << " ", element);
    out << " ]";
  }
  void operator()(const EncodableMap& map) const {
    out << "{";
    for (const auto& [key, value] : map) {
      Write(out << " ", key);
      Write(out << ": ", value);
    }
    out << " }";
  }
  void operator()(const CustomEncodableValue&) const { out << "custom"; }
};

void Write(std::ostream& out, const EncodableValue& value) { std::visit(Writer{out}, value.variant()); }

}  // namespace

Answer Success(EncodableValue value) { return {Answer::Kind::kSuccess, std::move(value), "", ""}; }
Answer Failure(std::string code, std::string message, EncodableValue details) {
  return {Answer::Kind::kError, std::move(details), std::move(code), std::move(message)};
}
Answer NotImplemented() { return {Answer::Kind::kNotImplemented, EncodableValue(), "", ""}; }
Answer NoAnswer() { return {}; }

std::ostream& operator<<(std::ostream& out, const Answer& answer) {
  static constexpr const char* kKinds[] = {"success", "error", "not implemented", "no answer"};
  out << kKinds[static_cast<int>(answer.kind)] << " " << answer.code << " " << answer.message << " ";
  Write(out, answer.value);
  return out;
}

std::ostream& operator<<(std::ostream& out, const InterfaceCall& call) {
  Write(out << call.method << " ", call.argument);
  return out;
}

std::string Describe(const EncodableValue& value) {
  std::ostringstream text;
  Write(text, value);
  return text.str();
}

EncodableValue MapOf(std::initializer_list<Entry> entries) {
  EncodableMap map;
  for (const Entry& entry : entries) map[EncodableValue(entry.key)] = entry.value;
  return EncodableValue(std::move(map));
}

Answer InterfaceEnd::Ask(int engine, const char* channel, const std::string& method, const EncodableValue& arguments) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  const auto request = codec.EncodeMethodCall(MethodCall(method, std::make_unique<EncodableValue>(arguments)));
  const std::optional<Bytes> reply = loopback_.Deliver(engine, channel, *request);
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
    const auto call = StandardMethodCodec::GetInstance().DecodeMethodCall(message.bytes.data(), message.bytes.size());
    if (!call) continue;
    calls.push_back({call->method_name(), call->arguments() ? *call->arguments() : EncodableValue()});
  }
  return calls;
}

std::vector<std::string> InterfaceEnd::CallNames(int engine) const {
  std::vector<std::string> names;
  for (const InterfaceCall& call : Calls(engine)) names.push_back(call.method);
  return names;
}

}  // namespace vantro::test
