// Bytes from the interface go through a channel: each message is answered exactly once or by its handler, and a call
// that comes through survives being sent on.
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
