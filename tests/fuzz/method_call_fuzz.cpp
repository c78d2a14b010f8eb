// Bytes from the interface pass through a channel. Each message is answered exactly once, by the channel or by its
// handler. A call that reaches the handler is unchanged when it is encoded again.
#include <memory>
#include <utility>

#include "flutter_host/method_channel.h"
#include "flutter_host/standard_method_codec.h"
#include "tests/fuzz/encoded.h"
#include "tests/fuzz/require.h"

namespace vantro {
namespace {

class FakeMessenger : public BinaryMessenger {
 public:
  void Send(const std::string& channel, const uint8_t* message, size_t size, BinaryReply reply) override {
    sent.assign(message, message + size);
  }
  void SetMessageHandler(const std::string& channel, BinaryMessageHandler newHandler) override {
    handler = std::move(newHandler);
  }
  BinaryMessageHandler handler;
  std::vector<uint8_t> sent;
};

}  // namespace
}  // namespace vantro

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  using namespace vantro;
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  FakeMessenger messenger;
  MethodChannel channel(&messenger, "fuzz", &codec);
  channel.SetMethodCallHandler([&](const MethodCall& call, std::unique_ptr<MethodResult> result) {
    channel.InvokeMethod(call.method_name(), call.KeepArguments());
    MethodCall relayed;
    REQUIRE(codec.DecodeMethodCall(messenger.sent.data(), messenger.sent.size(), &relayed));
    REQUIRE(relayed.method_name() == call.method_name());
    REQUIRE(Encoded(relayed.arguments()) == Encoded(call.arguments()));
    result->Success(call.arguments());
    result->NotImplemented();
  });
  int replies = 0;
  messenger.handler(data, size, [&replies](const uint8_t*, size_t) { ++replies; });
  REQUIRE(replies == 1);
  return 0;
}
