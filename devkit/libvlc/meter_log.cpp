#include "meter_log.h"

#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <string>
#include <thread>

#include "player.h"
#include "player_registry.h"
#include "report.h"

namespace vantro::devlib {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kPeriod = std::chrono::seconds(1);

const char* NameOf(State state) {
  constexpr const char* kNames[] = {"idle",   "opening", "buffering", "playing",
                                    "paused", "stopped", "stopping",  "error"};
  return kNames[static_cast<int>(state)];
}

std::string Quoted(const std::string& text) {
  std::string quoted = "\"";
  for (char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    if (static_cast<unsigned char>(c) >= 0x20) quoted += c;
  }
  return quoted + '"';
}

void WriteLine(FILE* file, double at, Player& player) {
  MediaRef media = player.media();
  MediaStats stats{};
  if (media) media->GetStats(&stats);
  AudioMeter::Reading reading = player.audio().Take();
  fprintf(file,
          "{\"at\":%.3f,\"player\":\"%016" PRIXPTR "\",\"url\":%s,\"state\":\"%s\",\"time\":%" PRId64
          ",\"volume\":%d,\"mute\":%s,\"rms\":%.5f,\"frequency\":%.1f,\"displayed\":%" PRIu64 ",\"abuffers\":%" PRIu64
          "}\n",
          at, reinterpret_cast<uintptr_t>(&player), Quoted(media ? media->text() : "").c_str(), NameOf(player.state()),
          player.time(), player.audio().volume(), player.audio().mute() == 1 ? "true" : "false", reading.rms,
          reading.frequency, stats.displayedPictures, stats.playedAudioBuffers);
}

void Run(FILE* file) {
  const Clock::time_point start = Clock::now();
  for (Clock::time_point next = start + kPeriod;; next += kPeriod) {
    std::this_thread::sleep_until(next);
    double at = std::chrono::duration<double>(Clock::now() - start).count();
    for (const std::shared_ptr<Player>& player : PlayerRegistry::All()) WriteLine(file, at, *player);
    fflush(file);
  }
}

}  // namespace

void StartMeterLog() {
  static std::once_flag once;
  std::call_once(once, [] {
    const char* path = getenv("VANTRO_LIBVLC_STATS");
    if (!path || !*path) return;
    FILE* file = fopen(path, "ae");
    if (!file) {
      Warn("cannot write %s", path);
      return;
    }
    std::thread(Run, file).detach();
  });
}

}  // namespace vantro::devlib
