// Tests the development library through GetProcAddress, as the host and the runtime adapter use it, in the variant that
// is beside it.
//
//   devlib_smoke rows SERVER_URL FAULT_URL STATS_FILE [NAME...]
//       runs the rows of rows.h, or the named ones, and prints one line each: "ok NAME", "FAILED NAME: REASON", or
//       "- NAME" for a row that does not apply to this variant
//   devlib_smoke play TEXT...
//       plays each TEXT, which is a path if it has no "://"
//   devlib_smoke rounds URL COUNT
//       makes a player, plays, stops every other time, releases it; prints private memory and handles each ten rounds
//   devlib_smoke detach | released
//       detaches what is not attached; plays with a released player
//
// The exit code is 0 if all checks passed.
#include <windows.h>
// After Windows' types.
#include <psapi.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "rows.h"

namespace {

using smoke::Row;
using smoke::Session;
using smoke::Vlc;

int failures = 0;

void Report(bool held, const std::string& line) {
  std::printf("%s %s\n", held ? "ok" : "FAILED", line.c_str());
  std::fflush(stdout);
  failures += !held;
}

void RunRow(const Row& row, smoke::Trial trial) {
  if (!(trial.vlc.events ? row.inEvents : row.inCallbacks)) {
    std::printf("- %s\n", row.name);
    return;
  }
  const char* arguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound", "--http-reconnect"};
  trial.instance = trial.vlc.New(4, arguments);
  row.run(trial);
  trial.vlc.Release(trial.instance);
  std::string line = row.name;
  for (const std::string& what : trial.broken) line += ": " + what;
  Report(trial.broken.empty(), line);
}

void RunRows(const Vlc& vlc, const std::vector<std::string>& arguments) {
  std::vector<Row> rows;
  for (auto list :
       {smoke::InterfaceRows, smoke::TransportRows, smoke::SoundRows, smoke::PictureRows, smoke::TrackRows}) {
    for (const Row& row : list()) rows.push_back(row);
  }
  for (const Row& row : rows) {
    bool named =
        arguments.size() == 3 || std::find(arguments.begin() + 3, arguments.end(), row.name) != arguments.end();
    if (named) RunRow(row, {vlc, nullptr, arguments[0], arguments[1], arguments[2]});
  }
}

void PlayEach(const Vlc& vlc, const std::vector<std::string>& texts) {
  void* instance = vlc.New(0, nullptr);
  {
    Session session(vlc, instance);
    for (const std::string& text : texts) Report(session.PlayUntilTimes(text, ":vout=vdummy"), text + " plays");
  }
  vlc.Release(instance);
}

void Rounds(const Vlc& vlc, const std::string& url, int rounds) {
  void* instance = vlc.New(0, nullptr);
  HWND window = smoke::MakeWindow();
  int played = 0;
  for (int i = 0; i < rounds; ++i) {
    Session session(vlc, instance);
    vlc.SetHwnd(session.player, window);
    session.Play(url);
    played += session.WaitFor(smoke::kPlaying);
    if (i % 2) session.StopAndWait();
    if (i % 10) continue;
    PROCESS_MEMORY_COUNTERS memory{};
    DWORD handles = 0;
    GetProcessMemoryInfo(GetCurrentProcess(), &memory, sizeof memory);
    GetProcessHandleCount(GetCurrentProcess(), &handles);
    std::printf("  round %d: %zu KiB, %lu handles\n", i, memory.WorkingSetSize / 1024, handles);
  }
  Report(played == rounds, std::to_string(played) + " of " + std::to_string(rounds) + " rounds played");
  vlc.Release(instance);
}

void Misuse(const Vlc& vlc, const std::string& what) {
  void* instance = vlc.New(0, nullptr);
  void* player = vlc.events ? vlc.PlayerNew(instance) : vlc.PlayerNewWith(instance, nullptr, nullptr);
  if (what == "detach")
    vlc.Detach(
        vlc.Manager(player), smoke::kPlaying, [](const smoke::Event*, void*) {}, nullptr);
  vlc.PlayerRelease(player);
  if (what == "released") vlc.Play(player);
  Report(true, "the process is alive after the call");
  vlc.Release(instance);
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 1 ? argv[1] : "";
  std::vector<std::string> arguments(argv + std::min(argc, 2), argv + argc);
  bool known = (mode == "rows" && arguments.size() >= 3) || (mode == "play" && !arguments.empty()) ||
               (mode == "rounds" && arguments.size() == 2) || mode == "detach" || mode == "released";
  if (!known) {
    std::printf(
        "usage: devlib_smoke rows SERVER FAULTS STATS [NAME...] | play TEXT... | rounds URL COUNT | detach | "
        "released\n");
    return 2;
  }
  smoke::library = LoadLibraryA("libvlc.dll");
  if (!smoke::library) {
    std::printf("FAILED no libvlc.dll, error %lu\n", GetLastError());
    return 1;
  }
  Vlc vlc;
  if (mode == "rows") RunRows(vlc, arguments);
  if (mode == "play") PlayEach(vlc, arguments);
  if (mode == "rounds") Rounds(vlc, arguments[0], std::atoi(arguments[1].c_str()));
  if (mode == "detach" || mode == "released") Misuse(vlc, mode);
  std::printf("%d failed\n", failures);
  return failures ? 1 : 0;
}
