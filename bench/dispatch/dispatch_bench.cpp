// What the channels cost: a polled request, an event, the session marker, the relay and a preview frame, each beside
// the bare work that nothing could save. Runs over the loopback engine and the scripted libvlc beside it.
//
// A time is the best of several batches, since other work on the machine only ever adds to it.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/dispatch/allocation_count.h"
#include "bridge/method_channel_handler.h"
#include "devkit/scripted/scripted_control.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/engine_method_result.h"
#include "flutter_host/flutter_engine.h"
#include "flutter_host/standard_method_codec.h"
#include "player/vlc_player.h"
#include "services/vod_thumbnail_worker_plugin.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"

namespace vantro {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kBatches = 5;
constexpr int kFewBatches = 2;  // for work of a second
constexpr char kPlayerChannel[] = "org.vantro.player/communicate";

struct Cost {
  double nanoseconds;
  double allocations;
  double bytes;
};

template <typename Work>
Cost Measure(int rounds, Work work, int batches = kBatches) {
  work();
  Cost best{1e300, 0, 0};
  for (int batch = 0; batch < batches; ++batch) {
    const bench::AllocationCount before = bench::CountAllocations();
    const auto begin = Clock::now();
    for (int round = 0; round < rounds; ++round) work();
    const double elapsed = std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / rounds;
    if (elapsed < best.nanoseconds) {
      const bench::AllocationCount after = bench::CountAllocations();
      best = {elapsed, static_cast<double>(after.allocations - before.allocations) / rounds,
              static_cast<double>(after.bytes - before.bytes) / rounds};
    }
  }
  return best;
}

void Print(const char* name, const Cost& cost) {
  std::printf("%-58s %12.0f ns %8.1f allocations %12.0f bytes\n", name, cost.nanoseconds, cost.allocations, cost.bytes);
}

void PrintRatio(const char* name, const Cost& cost, const Cost& bare) {
  std::printf("%-58s %12.2f\n", name, cost.nanoseconds / bare.nanoseconds);
}

std::vector<uint8_t> RequestBytes(const char* method, EncodableValue arguments = EncodableValue()) {
  return *StandardMethodCodec::GetInstance().EncodeMethodCall(
      MethodCall(method, std::make_unique<EncodableValue>(std::move(arguments))));
}

// As a message arrives and is answered, without the engine's part of it.
void Serve(MethodChannelHandler& handler, const std::vector<uint8_t>& bytes) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  const auto call = codec.DecodeMethodCall(bytes.data(), bytes.size());
  handler.HandleMethodCall(*call, std::make_unique<EngineMethodResult>([](const uint8_t*, size_t) {}, &codec));
}

struct Window {
  explicit Window(HWND parent) {
    if (!player.Initialize(parent) || !engine.Initialize(parent)) std::abort();
    handler = std::make_unique<MethodChannelHandler>(&engine, &player, true, nullptr);
  }
  VLCPlayer player;
  FlutterEngine engine;
  std::unique_ptr<MethodChannelHandler> handler;
};

void BenchRequest(Window& window) {
  const std::string marker = std::exchange(window.handler->markerPath_, "");
  const auto request = RequestBytes("getPosition");
  Print("getPosition: decode, dispatch, reply; no marker", Measure(20000, [&] { Serve(*window.handler, request); }));
  window.handler->markerPath_ = marker;
}

void BenchEvent(Window& window) {
  FlutterDesktopEngineProperties properties{};
  const auto controller = FlutterDesktopViewControllerCreate(1, 1, FlutterDesktopEngineCreate(&properties));
  const auto messenger = FlutterDesktopEngineGetMessenger(FlutterDesktopViewControllerGetEngine(controller));
  const auto bytes = RequestBytes("onTimeChanged", EncodableValue("1234567"));
  const Cost bare =
      Measure(20000, [&] { FlutterDesktopMessengerSend(messenger, kPlayerChannel, bytes.data(), bytes.size()); });
  const Cost event = Measure(20000, [&] { window.player.eventCallback_("onTimeChanged", "1234567"); });
  Print("event: FlutterDesktopMessengerSend of ready bytes", bare);
  Print("event: the player's callback to the same send", event);
  PrintRatio("event: times the bare send", event, bare);
  FlutterDesktopViewControllerDestroy(controller);
}

void BenchMarker(Window& window) {
  const auto request = RequestBytes("isPlaying");
  const std::string path = window.handler->markerPath_;
  const std::string text = FormatNativeMarker(true, "isPlaying", 1770000000123);
  const Cost bare = Measure(200, [&] {
    FILE* const file = std::fopen(path.c_str(), "w");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  });
  const Cost whole = Measure(200, [&] { Serve(*window.handler, request); });
  Print("marker: bare open, truncate, write, close", bare);
  Print("marker: a whole call with its marker", whole);
  PrintRatio("marker: times the bare write", whole, bare);
}

// Records of some 100 bytes, as a list of channels has them.
EncodableValue Chunk(size_t size) {
  EncodableList records;
  for (size_t bytes = 0; bytes < size; bytes += 100) {
    records.push_back(EncodableValue(EncodableMap{
        {EncodableValue("name"), EncodableValue("A channel with a name of some length")},
        {EncodableValue("number"), EncodableValue(static_cast<int32_t>(bytes))},
        {EncodableValue("url"), EncodableValue("http://host/live/1234.ts")},
    }));
  }
  return EncodableValue(EncodableMap{
      {EncodableValue("chunkType"), EncodableValue("channels")},
      {EncodableValue("records"), EncodableValue(std::move(records))},
  });
}

void OpenClients(size_t count, HWND parent) {
  while (GetWindowRegistry().size() < count + 1) {
    auto window = std::make_unique<VantroWindow>(GetModuleHandleW(nullptr));
    window->flutterEngine_ = std::make_unique<FlutterEngine>();
    if (!window->flutterEngine_->Initialize(parent)) std::abort();
    window->vlcPlayer_ = std::make_unique<VLCPlayer>();
    window->methodChannelHandler_ = std::make_unique<MethodChannelHandler>(
        window->flutterEngine_.get(), window->vlcPlayer_.get(), GetWindowRegistry().empty(), window.get());
    RegisterWindow(std::move(window));
  }
}

void BenchRelay(HWND parent) {
  constexpr size_t kSizes[] = {1000, 100000, 1000000, 10000000};
  constexpr size_t kClients[] = {1, 2, 4, 8};
  std::printf("%-12s %-8s %14s %14s %14s %8s\n", "chunk", "clients", "relay MB/s", "codec MB/s", "codec+copy", "ratio");
  for (size_t clients : kClients) {
    OpenClients(clients, parent);
    MethodChannelHandler& master = *GetWindowRegistry()[0]->methodChannelHandler_;
    master.markerPath_.clear();
    for (size_t size : kSizes) {
      const EncodableValue chunk = Chunk(size);
      const MethodCall call("providerDataReceived", std::make_unique<EncodableValue>(chunk));
      const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
      const double megabytes = static_cast<double>(codec.EncodeMethodCall(call)->size() * clients) / 1e6;
      const int rounds = static_cast<int>(std::clamp<size_t>(1000000 / size / clients, 1, 300));
      const int batches = size * clients >= 4000000 ? kFewBatches : kBatches;
      const MethodCall request("sendProviderData", std::make_unique<EncodableValue>(chunk));
      const Cost relay = Measure(
          rounds,
          [&] {
            master.HandleMethodCall(request,
                                    std::make_unique<EngineMethodResult>([](const uint8_t*, size_t) {}, &codec));
          },
          batches);
      const Cost encode = Measure(
          rounds,
          [&] {
            for (size_t client = 0; client < clients; ++client) codec.EncodeMethodCall(call);
          },
          batches);
      const Cost encodeCopies = Measure(
          rounds,
          [&] {
            for (size_t client = 0; client < clients; ++client) {
              codec.EncodeMethodCall(MethodCall("providerDataReceived", std::make_unique<EncodableValue>(chunk)));
            }
          },
          batches);
      std::printf("%-12zu %-8zu %14.1f %14.1f %14.1f %8.2f\n", size, clients, megabytes / relay.nanoseconds * 1e9,
                  megabytes / encode.nanoseconds * 1e9, megabytes / encodeCopies.nanoseconds * 1e9,
                  encodeCopies.nanoseconds / relay.nanoseconds);
    }
  }
}

void BenchFrame(Window& window) {
  const auto setSnapshot =
      reinterpret_cast<decltype(&ScriptedSetSnapshot)>(GetProcAddress(GetLibVlcModule(), "ScriptedSetSnapshot"));
  const std::string picture(100000, 'x');
  setSnapshot(picture.data(), picture.size());
  vod_thumbnail::VodThumbnailWorkerPlugin plugin(window.engine.GetMessenger());
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  const auto ask = [&](const char* method, EncodableValue arguments) {
    const MethodCall call(method, std::make_unique<EncodableValue>(std::move(arguments)));
    plugin.HandleMethodCall(call, std::make_unique<EngineMethodResult>([](const uint8_t*, size_t) {}, &codec));
  };
  ask("initialize", EncodableValue());
  const Cost frame = Measure(
      1,
      [&] {
        ask("getFrame", EncodableValue(EncodableMap{
                            {EncodableValue("mediaId"), EncodableValue("1")},
                            {EncodableValue("proxyUrl"), EncodableValue("http://host/film.mp4")},
                            {EncodableValue("timeSeconds"), EncodableValue(1.0)},
                            {EncodableValue("width"), EncodableValue(320)},
                            {EncodableValue("height"), EncodableValue(180)},
                        }));
      },
      kFewBatches);
  std::printf("%-58s %12.2f ms\n", "getFrame: beyond its three waits of 800 ms", frame.nanoseconds / 1e6 - 800);
}

void Run() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // a line is there when it is measured
  const HWND parent = CreateWindowExW(0, L"STATIC", L"bench", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  Window window(parent);
  BenchRequest(window);
  BenchEvent(window);
  BenchMarker(window);
  BenchRelay(parent);
  BenchFrame(window);
}

}  // namespace
}  // namespace vantro

int main() {
  vantro::Run();
  // The windows stay in the registry: ending them is no part of what is measured.
  std::_Exit(0);
}
