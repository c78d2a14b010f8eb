// Measures the cost of the channels: a polled request, an event, the session marker, the relay and a preview frame.
// Each is compared with the bare work that cannot be avoided. Runs with the loopback engine and the scripted libvlc
// beside it.
//
// A time is the best of several batches, because other work on the machine only adds to it. Values that are compared
// are measured in turn. The output is Markdown.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "bench/dispatch/allocation_count.h"
#include "channel/method_channel_handler.h"
#include "devkit/engine/loopback_control.h"
#include "devkit/scripted/scripted_control.h"
#include "flutter_host/embedding_api.h"
#include "flutter_host/engine_method_result.h"
#include "flutter_host/flutter_engine.h"
#include "flutter_host/standard_method_codec.h"
#include "player/vlc_player.h"
#include "services/vod_thumbnail_worker_plugin.h"
#include "shell/vantro_window.h"
#include "shell/window_manager.h"
#include "tests/support/player_inspector.h"
#include "tests/support/values.h"

namespace vantro {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kBatches = 5;
constexpr int kManyBatches = 15;
constexpr int kFewBatches = 2;     // for work of a second
constexpr int kFileBatches = 150;  // short batches: opening a file varies by far more than a call adds to it
constexpr char kPlayerChannel[] = "org.vantro.player/communicate";

struct Cost {
  double nanoseconds;
  double allocations;
  double bytes;
};

constexpr Cost kNothingYet{1e300, 0, 0};

template <typename Work>
void MeasureBatch(int rounds, Work& work, Cost& best) {
  const bench::AllocationCount before = bench::CountAllocations();
  const auto begin = Clock::now();
  for (int round = 0; round < rounds; ++round) work();
  const double elapsed = std::chrono::duration<double, std::nano>(Clock::now() - begin).count() / rounds;
  if (elapsed >= best.nanoseconds) return;
  const bench::AllocationCount after = bench::CountAllocations();
  best = {elapsed, static_cast<double>(after.allocations - before.allocations) / rounds,
          static_cast<double>(after.bytes - before.bytes) / rounds};
}

template <typename Work>
Cost Measure(int rounds, Work work, int batches = kBatches) {
  work();
  Cost best = kNothingYet;
  for (int batch = 0; batch < batches; ++batch) MeasureBatch(rounds, work, best);
  return best;
}

// Measures both in turn, so that other work on the machine affects both. Google Benchmark would run the two seconds
// apart, which makes the ratio vary more.
template <typename Bare, typename Work>
std::pair<Cost, Cost> MeasureBeside(int rounds, Bare bare, Work work, int batches = kBatches) {
  bare();
  work();
  std::pair<Cost, Cost> best{kNothingYet, kNothingYet};
  for (int batch = 0; batch < batches; ++batch) {
    MeasureBatch(rounds, bare, best.first);
    MeasureBatch(rounds, work, best.second);
  }
  return best;
}

void PrintHead() {
  std::printf("| What | Time | Ratio to the row above | Allocations | Bytes |\n|---|---:|---:|---:|---:|\n");
}
void Print(const char* name, const Cost& cost, const Cost* bare = nullptr) {
  std::printf("| %s | %.0f ns | ", name, cost.nanoseconds);
  if (bare) std::printf("%.2f ", cost.nanoseconds / bare->nanoseconds);
  std::printf("| %.1f | %.0f |\n", cost.allocations, cost.bytes);
}
void PrintBeside(const char* bareName, const char* name, const std::pair<Cost, Cost>& costs) {
  Print(bareName, costs.first);
  Print(name, costs.second, &costs.first);
}

std::vector<uint8_t> RequestBytes(const char* method, const OwnedValue& arguments = OwnedValue()) {
  ByteVector message;
  StandardMethodCodec::GetInstance().EncodeMethodCall(MethodCall(method, arguments), &message);
  return {message.data(), message.data() + message.size()};
}

// Delivers a message and takes its answer, without the engine's part of it.
void Serve(MethodChannelHandler& handler, const std::vector<uint8_t>& bytes) {
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  MethodCall call;
  codec.DecodeMethodCall(bytes.data(), bytes.size(), &call);
  handler.HandleMethodCall(call, std::make_unique<EngineMethodResult>([](const uint8_t*, size_t) {}, &codec));
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
  Print("getPosition: decode, dispatch, reply, without the marker",
        Measure(20000, [&] { Serve(*window.handler, request); }));
  window.handler->markerPath_ = marker;
}

// The minimum that an engine does with a message before it returns: it copies the name and the bytes into a task for
// one of its threads.
class EngineTasks {
 public:
  EngineTasks() : setObserver_(Find()) { setObserver_(&EngineTasks::Take, this); }
  ~EngineTasks() { setObserver_(nullptr, nullptr); }
  EngineTasks(const EngineTasks&) = delete;
  EngineTasks& operator=(const EngineTasks&) = delete;

 private:
  struct Task {
    std::string channel;
    std::vector<uint8_t> bytes;
  };
  using SetObserver = decltype(&LoopbackSetSendObserver);
  static constexpr size_t kWaiting = 64;

  static SetObserver Find() {
    return reinterpret_cast<SetObserver>(
        GetProcAddress(GetModuleHandleW(L"flutter_windows.dll"), "LoopbackSetSendObserver"));
  }
  static void Take(int32_t, const char* channel, const uint8_t* bytes, size_t size, void* tasks) {
    EngineTasks& self = *static_cast<EngineTasks*>(tasks);
    auto task = std::make_unique<Task>(Task{channel, {bytes, bytes + size}});
    const std::lock_guard guard(self.mutex_);
    self.waiting_.push_back(std::move(task));
    if (self.waiting_.size() > kWaiting) self.waiting_.pop_front();
  }

  SetObserver setObserver_;
  std::mutex mutex_;
  std::deque<std::unique_ptr<Task>> waiting_;
};

void BenchEvent(Window& window) {
  FlutterDesktopEngineProperties properties{};
  const auto controller = FlutterDesktopViewControllerCreate(1, 1, FlutterDesktopEngineCreate(&properties));
  const auto messenger = FlutterDesktopEngineGetMessenger(FlutterDesktopViewControllerGetEngine(controller));
  const auto bytes = RequestBytes("onTimeChanged", OwnedValue("1234567"));
  const auto send = [&] { FlutterDesktopMessengerSend(messenger, kPlayerChannel, bytes.data(), bytes.size()); };
  const test::PlayerInspector state(window.player);
  const auto raise = [&] { state.eventCallback_("onTimeChanged", "1234567"); };
  PrintBeside("a send of ready bytes to an engine that drops them", "the player's callback to the same send",
              MeasureBeside(50000, send, raise, kManyBatches));
  const EngineTasks tasks;
  PrintBeside("a send of ready bytes to an engine that copies them", "the player's callback to the same send",
              MeasureBeside(50000, send, raise, kManyBatches));
  FlutterDesktopViewControllerDestroy(controller);
}

void BenchMarker(Window& window) {
  const auto request = RequestBytes("isPlaying");
  const std::string path = window.handler->markerPath_;
  const std::string text = FormatNativeMarker(true, "isPlaying", 1770000000123);
  const auto write = [&] {
    FILE* const file = std::fopen(path.c_str(), "w");
    std::fwrite(text.data(), 1, text.size(), file);
    std::fclose(file);
  };
  PrintBeside("open, truncate, write and close of the marker file", "a whole call with its marker",
              MeasureBeside(
                  10, write, [&] { Serve(*window.handler, request); }, kFileBatches));
}

// Makes records of some 100 bytes, like those of a list of channels.
OwnedValue Chunk(size_t size) {
  std::vector<test::Value> records;
  for (size_t bytes = 0; bytes < size; bytes += 100) {
    records.push_back(test::MapOf({
        {"name", "A channel with a name of some length"},
        {"number", test::Value(static_cast<int32_t>(bytes))},
        {"url", "http://host/live/1234.ts"},
    }));
  }
  return test::MapOf({{"chunkType", "channels"}, {"records", test::ListOf(records)}});
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
  std::printf(
      "\n| Chunk | Clients | Relay | Decoded once, encoded for each client | Ratio |\n"
      "|---:|---:|---:|---:|---:|\n");
  const StandardMethodCodec& codec = StandardMethodCodec::GetInstance();
  for (size_t clients : kClients) {
    OpenClients(clients, parent);
    MethodChannelHandler& master = *GetWindowRegistry()[0]->methodChannelHandler_;
    master.markerPath_.clear();
    for (size_t size : kSizes) {
      const std::vector<uint8_t> request = RequestBytes("sendProviderData", Chunk(size));
      const double megabytes = static_cast<double>(request.size() * clients) / 1e6;
      const int rounds = static_cast<int>(std::clamp<size_t>(1000000 / size / clients, 1, 300));
      const auto decodeAndEncode = [&] {
        MethodCall call;
        codec.DecodeMethodCall(request.data(), request.size(), &call);
        for (size_t client = 0; client < clients; ++client) {
          ByteVector message;
          codec.EncodeMethodCall(call, &message);
        }
      };
      const auto [codecAlone, relay] = MeasureBeside(
          rounds, decodeAndEncode, [&] { Serve(master, request); }, kManyBatches);
      std::printf("| %zu | %zu | %.1f MB/s | %.1f MB/s | %.2f |\n", size, clients, megabytes / relay.nanoseconds * 1e9,
                  megabytes / codecAlone.nanoseconds * 1e9, codecAlone.nanoseconds / relay.nanoseconds);
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
  const auto ask = [&](const char* method, const OwnedValue& arguments) {
    const MethodCall call(method, arguments);
    plugin.HandleMethodCall(call, std::make_unique<EngineMethodResult>([](const uint8_t*, size_t) {}, &codec));
  };
  ask("initialize", OwnedValue());
  const Cost frame = Measure(
      1,
      [&] {
        ask("getFrame", test::MapOf({
                            {"mediaId", "1"},
                            {"proxyUrl", "http://host/film.mp4"},
                            {"timeSeconds", test::Value(1.0)},
                            {"width", test::Value(320)},
                            {"height", test::Value(180)},
                        }));
      },
      kFewBatches);
  std::printf("\n`getFrame` without its waits, which are 800 ms: %.2f ms\n", frame.nanoseconds / 1e6 - 800);
}

void Run() {
  std::setvbuf(stdout, nullptr, _IONBF, 0);  // unbuffered, so that each line is printed as soon as it is measured
  const HWND parent = CreateWindowExW(0, L"STATIC", L"bench", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  Window window(parent);
  PrintHead();
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
  // Ends without destroying the windows in the registry, because that is not measured.
  std::_Exit(0);
}
