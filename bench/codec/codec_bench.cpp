// Compares the codec with msgpack-cxx (object tree) and nlohmann-json (DOM). Each encodes and decodes the same method
// call in its own format. JSON has no bytes, so nlohmann-json's CBOR is used for the byte list.
#include <benchmark/benchmark.h>

#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/codec/messages.h"
#include "bench/codec/peers.h"
#include "flutter_host/standard_method_codec.h"

namespace vantro::bench {
namespace {

constexpr size_t kByteListSize = 1 << 20;

void CountBytes(benchmark::State& state, size_t size) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * size));
  state.counters["size"] = static_cast<double>(size);
}

void Encode(benchmark::State& state, const Value& arguments) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  const MethodCall call("setMedia", arguments);
  size_t size = 0;
  for (auto step : state) {
    ByteVector message;
    codec.EncodeMethodCall(call, &message);
    benchmark::DoNotOptimize(message.data());
    size = message.size();
  }
  CountBytes(state, size);
}

void Decode(benchmark::State& state, const Value& arguments) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  ByteVector message;
  codec.EncodeMethodCall(MethodCall("setMedia", arguments), &message);
  for (auto step : state) {
    MethodCall call;
    codec.DecodeMethodCall(message.data(), message.size(), &call);
    benchmark::DoNotOptimize(call.arguments().elements());
  }
  CountBytes(state, message.size());
}

msgpack::sbuffer PackCall(const msgpack::object& arguments) {
  msgpack::sbuffer buffer;
  msgpack::packer<msgpack::sbuffer> packer(buffer);
  packer.pack_array(2);
  packer.pack("setMedia");
  packer.pack(arguments);
  return buffer;
}

void EncodeMsgpack(benchmark::State& state, const Value& arguments) {
  msgpack::zone zone;
  const msgpack::object object = ToMsgpack(arguments.value(), zone);
  size_t size = 0;
  for (auto step : state) {
    const msgpack::sbuffer buffer = PackCall(object);
    benchmark::DoNotOptimize(buffer.data());
    size = buffer.size();
  }
  CountBytes(state, size);
}

void DecodeMsgpack(benchmark::State& state, const Value& arguments) {
  msgpack::zone zone;
  const msgpack::sbuffer buffer = PackCall(ToMsgpack(arguments.value(), zone));
  for (auto step : state) {
    const msgpack::object_handle call = msgpack::unpack(buffer.data(), buffer.size());
    benchmark::DoNotOptimize(call.get().via.array.ptr);
  }
  CountBytes(state, buffer.size());
}

void EncodeJson(benchmark::State& state, const Value& arguments) {
  const nlohmann::json call = nlohmann::json::array({"setMedia", ToJson(arguments.value())});
  size_t size = 0;
  for (auto step : state) {
    const std::string text = call.dump();
    benchmark::DoNotOptimize(text.data());
    size = text.size();
  }
  CountBytes(state, size);
}

void DecodeJson(benchmark::State& state, const Value& arguments) {
  const std::string text = nlohmann::json::array({"setMedia", ToJson(arguments.value())}).dump();
  for (auto step : state) {
    const nlohmann::json call = nlohmann::json::parse(text);
    benchmark::DoNotOptimize(call.size());
  }
  CountBytes(state, text.size());
}

void EncodeCbor(benchmark::State& state, const Value& arguments) {
  const nlohmann::json call = nlohmann::json::array({"setMedia", ToJson(arguments.value())});
  size_t size = 0;
  for (auto step : state) {
    const std::vector<uint8_t> bytes = nlohmann::json::to_cbor(call);
    benchmark::DoNotOptimize(bytes.data());
    size = bytes.size();
  }
  CountBytes(state, size);
}

void DecodeCbor(benchmark::State& state, const Value& arguments) {
  const std::vector<uint8_t> bytes =
      nlohmann::json::to_cbor(nlohmann::json::array({"setMedia", ToJson(arguments.value())}));
  for (auto step : state) {
    const nlohmann::json call = nlohmann::json::from_cbor(bytes);
    benchmark::DoNotOptimize(call.size());
  }
  CountBytes(state, bytes.size());
}

// The floor of the byte list: copies the same bytes into a separate block.
void CopyOfTheBytes(benchmark::State& state) {
  const std::vector<uint8_t> source(kByteListSize, 7);
  for (auto step : state) {
    const std::unique_ptr<uint8_t[]> copy(new uint8_t[kByteListSize]);
    std::memcpy(copy.get(), source.data(), kByteListSize);
    benchmark::DoNotOptimize(copy.get());
  }
  CountBytes(state, kByteListSize);
}

void Register(const std::string& message, const Value& arguments, bool isText) {
  using Benchmark = void (*)(benchmark::State&, const Value&);
  const struct {
    std::string name;
    Benchmark benchmark;
  } rows[] = {
      {"encode/vantro", Encode},
      {"encode/msgpack-cxx", EncodeMsgpack},
      {isText ? "encode/nlohmann-json" : "encode/nlohmann-json CBOR", isText ? EncodeJson : EncodeCbor},
      {"decode/vantro", Decode},
      {"decode/msgpack-cxx", DecodeMsgpack},
      {isText ? "decode/nlohmann-json" : "decode/nlohmann-json CBOR", isText ? DecodeJson : DecodeCbor},
  };
  for (const auto& row : rows) {
    const Benchmark run = row.benchmark;
    benchmark::RegisterBenchmark((message + "/" + row.name).c_str(),
                                 [run, arguments](benchmark::State& state) { run(state, arguments); });
  }
}

}  // namespace
}  // namespace vantro::bench

int main(int argc, char** argv) {
  using namespace vantro::bench;
  Register("setMedia", SetMediaArguments(), true);
  Register("setMediaUnsorted", WithKeysUnsorted(SetMediaArguments()), true);
  Register("providerChunk1000", ProviderChunk(1000), true);
  Register("providerChunk1000Unsorted", WithKeysUnsorted(ProviderChunk(1000)), true);
  Register("byteList1MiB", ByteList(kByteListSize), false);
  benchmark::RegisterBenchmark("byteList1MiB/memcpy", CopyOfTheBytes);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
