// Measures the player's own cost: a pass of the watchdog, a layout, a change of the active tile, one more tile, and a
// time event from libvlc's callback to the embedding's send. It runs with the scripted libvlc, which records every call
// as text. Most of a figure is that recording, so the number of libvlc calls is beside each figure and the cost of one
// bare call is above.
//
// A time is the best of several batches, because other work on the machine only adds to it.
#include <windows.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

#include "bench/dispatch/allocation_count.h"
#include "channel/method_channel_handler.h"
#include "devkit/scripted/scripted_control.h"
#include "flutter_host/flutter_engine.h"
#include "player/vlc_player.h"
#include "tests/support/player_inspector.h"

namespace vantro {
namespace {

using Clock = std::chrono::steady_clock;
constexpr int kBatches = 9;
constexpr int kTileCounts[] = {1, 2, 4, 8, 16};
constexpr int kTimeChanged = 0x10B;

struct Script {
  template <typename Function>
  static Function* Find(const char* name) {
    return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(GetLibVlcModule(), name)));
  }
  decltype(&ScriptedClearCalls) clearCalls = Find<decltype(ScriptedClearCalls)>("ScriptedClearCalls");
  decltype(&ScriptedCallCount) callCount = Find<decltype(ScriptedCallCount)>("ScriptedCallCount");
  decltype(&ScriptedSetStats) setStats = Find<decltype(ScriptedSetStats)>("ScriptedSetStats");
  decltype(&ScriptedSetPlayerValue) setValue = Find<decltype(ScriptedSetPlayerValue)>("ScriptedSetPlayerValue");
};

// Returns microseconds a round.
template <typename Work>
double Measure(const Script& script, int rounds, Work work) {
  double best = 1e300;
  for (int batch = 0; batch < kBatches; ++batch) {
    script.clearCalls();
    const auto begin = Clock::now();
    for (int round = 0; round < rounds; ++round) work();
    best = std::min(best, std::chrono::duration<double, std::micro>(Clock::now() - begin).count() / rounds);
  }
  script.clearCalls();
  return best;
}

template <typename Work>
int CountCalls(const Script& script, Work work) {
  script.clearCalls();
  work();
  return script.callCount();
}

struct Grid {
  explicit Grid(int tiles)
      : parent(CreateWindowExW(0, L"STATIC", L"bench", WS_POPUP | WS_VISIBLE, 0, 0, 800, 600, nullptr, nullptr,
                               GetModuleHandleW(nullptr), nullptr)) {
    if (!player.Initialize(parent) || !player.SetMedia({"http://host/0", "title", 300, 0, true, false, false})) {
      std::abort();
    }
    if (tiles > 1) player.EnableMultiView();
    for (int tile = 1; tile < tiles; ++tile) player.MvAddStream("http://host/" + std::to_string(tile), "tile");
  }
  ~Grid() {
    player.DisableMultiView();
    player.Cleanup();
    DestroyWindow(parent);
  }
  const HWND parent;
  VLCPlayer player;
};

void SetSize(const Script& script, libvlc_media_player_t* player) {
  if (!player) return;
  script.setValue(player, "playing", 1);
  script.setValue(player, "width", 640);
  script.setValue(player, "height", 360);
}

void BenchGrid(int tiles) {
  Grid grid(tiles);
  VLCPlayer& player = grid.player;
  const test::PlayerInspector state(player);
  const Script script;
  SetSize(script, state.mediaPlayer_.get());
  for (MultiViewPlayer& tile : state.players_) SetSize(script, tile.mediaPlayer.get());

  uint64_t shown = 0;
  const auto pass = [&] {
    ++shown;
    script.setStats(nullptr, shown, shown);  // healthy: both counters rise
    player.OnStallWatchdogTick();
  };
  const auto layout = [&] { player.UpdateGridLayout(); };
  const auto activate = [&] {
    player.SetActiveIndexSafe((state.activeIndex_ + 1) % std::max(1, static_cast<int>(state.players_.size())));
    player.UpdateActiveAudio();
  };
  const auto add = [&] {
    player.MvAddStream("http://host/x", "tile");
    player.SetActiveIndexSafe(static_cast<int>(state.players_.size()) - 1);
    player.MvRemoveActive();
  };
  std::printf("| %d | %.1f us | %d |", tiles, Measure(script, 320 / tiles, pass), CountCalls(script, pass));
  if (tiles > 1) {
    std::printf(" %.0f us | %d | %.1f us | %d | %.0f us | %d |", Measure(script, 32 / tiles, layout),
                CountCalls(script, layout), Measure(script, 320 / tiles, activate), CountCalls(script, activate),
                Measure(script, 5, add), CountCalls(script, add));
  }
  std::printf("\n");
  std::fflush(stdout);
}

void BenchEvent() {
  const HWND parent = CreateWindowExW(0, L"STATIC", L"bench", WS_POPUP, 0, 0, 800, 600, nullptr, nullptr,
                                      GetModuleHandleW(nullptr), nullptr);
  VLCPlayer player;
  FlutterEngine engine;
  if (!player.Initialize(parent) || !engine.Initialize(parent)) std::abort();
  MethodChannelHandler handler(&engine, &player, true, nullptr);
  libvlc_event_t event{};
  event.type = kTimeChanged;
  event.u.time = 1234567;
  const auto raise = [&] { VLCPlayer::VlcEventCallback(&event, &player); };
  constexpr int kRounds = 20000;
  raise();
  const bench::AllocationCount before = bench::CountAllocations();
  const double microseconds = Measure(Script(), kRounds, raise);
  const bench::AllocationCount after = bench::CountAllocations();
  constexpr double kEvents = double{kRounds} * kBatches;
  std::printf("Time event, libvlc's callback to the embedding's send: %.0f ns, %.1f allocations, %.0f bytes.\n",
              microseconds * 1000, static_cast<double>(after.allocations - before.allocations) / kEvents,
              static_cast<double>(after.bytes - before.bytes) / kEvents);
}

void Run() {
  BenchEvent();
  {
    Grid grid(1);
    const LibVlcFunctions vlc = GetLibVlcFunctions();
    std::printf("One bare call of the scripted libvlc: %.2f us.\n\n", Measure(Script(), 1000, [&] {
                  vlc.libvlc_media_player_is_playing(test::PlayerInspector(grid.player).mediaPlayer_.get());
                }));
  }
  std::printf(
      "| Tiles | Watchdog's pass | Calls | Layout | Calls | Active tile | Calls | Add and remove | Calls |\n"
      "|---|---:|---:|---:|---:|---:|---:|---:|---:|\n");
  for (int tiles : kTileCounts) BenchGrid(tiles);
}

}  // namespace
}  // namespace vantro

int main() {
  vantro::Run();
  std::fflush(stdout);
  // Ends without destroying the engine, because that is not measured.
  std::_Exit(0);
}
