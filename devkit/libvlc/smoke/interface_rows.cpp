// Rows about exported functions, and about calls, callbacks and the player's lock.
#include <algorithm>

#include "rows.h"

namespace smoke {
namespace {

constexpr char kNoWindow[] = ":vout=vdummy";

// Functions that no libvlc 4 with stop_async exports.
constexpr const char* kNever[] = {"libvlc_media_player_stop",
                                  "libvlc_media_new_uri",
                                  "libvlc_audio_get_track_description",
                                  "libvlc_audio_set_track",
                                  "libvlc_video_get_width",
                                  "libvlc_video_get_height",
                                  "libvlc_video_set_viewport",
                                  "libvlc_video_get_spu_description",
                                  "libvlc_video_set_spu",
                                  "libvlc_track_description_list_release"};
constexpr const char* kWithEvents[] = {"libvlc_media_player_event_manager", "libvlc_event_attach",
                                       "libvlc_event_detach", "libvlc_media_track_hold"};
constexpr const char* kWithCallbacks[] = {"libvlc_media_player_new_from_media", "libvlc_media_player_set_next_media",
                                          "libvlc_media_track_retain"};

void ExportSet(Trial& trial) {
  for (const char* name : kNever) trial.Expect(!Exports(name), std::string(name) + " is exported");
  for (const char* name : kWithEvents) trial.Expect(Exports(name) == trial.vlc.events, name);
  for (const char* name : kWithCallbacks) trial.Expect(Exports(name) != trial.vlc.events, name);
}

void Version(Trial& trial) {
  trial.Expect(trial.vlc.AbiVersion() == 0x040C0000, "the ABI word is libvlc 4's");
  std::string text = trial.vlc.Version();
  trial.Expect(text.compare(0, 5, "4.0.0") == 0 && text.find("development library over libvlc 3") != std::string::npos,
               "the text is " + text);
}

void UnknownOption(Trial& trial) {
  const char* arguments[] = {"--intf=dummy", "--no-such-option-in-libvlc-3"};
  void* instance = trial.vlc.New(2, arguments);
  trial.Expect(instance != nullptr, "an unknown option does not fail libvlc_new");
  trial.vlc.Release(instance);
}

// In every event, calls the functions that a program calls, on its own player and on another one.
void CallsInCallbacks(Trial& trial) {
  Session other(trial.vlc, trial.instance);
  std::atomic<int> calls{0};
  std::atomic<DWORD> longest{0};
  bool sought = false;
  Session session(trial.vlc, trial.instance);
  const Vlc& vlc = trial.vlc;
  session.Inside([&](int type) {
    DWORD start = GetTickCount();
    for (void* player : {session.player, other.player}) {
      Stats stats;
      unsigned width, height;
      if (void* media = vlc.GetMedia(player)) {
        vlc.GetStats(media, &stats);
        vlc.MediaRelease(media);
      }
      vlc.GetTime(player);
      vlc.GetLength(player);
      vlc.GetState(player);
      vlc.IsPlaying(player);
      vlc.SetVolume(player, 100);
      vlc.GetVolume(player);
      vlc.GetMute(player);
      vlc.GetSize(player, 0, &width, &height);
      vlc.DeleteTracks(vlc.Tracks(player, 0, false));
      vlc.SetScale(player, 0.0f);
      calls += 12;
    }
    if (type == kTime && !sought) {
      sought = true;
      vlc.SetTime(session.player, 20000 * vlc.ticks, false);
      vlc.Pause(session.player);
      vlc.Pause(session.player);
      vlc.Play(session.player);
    }
    longest = std::max<DWORD>(longest, GetTickCount() - start);
  });
  other.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  session.Play(trial.Url("tracks.mp4"), kNoWindow);
  trial.Expect(PumpUntil([&] { return session.Last(kTime) > 20000; }), "a seek inside a callback takes effect");
  session.Inside([&](int type) {
    if (type == kTime) vlc.StopAsync(session.player);
  });
  trial.Expect(session.WaitFor(kStopped), "a stop inside a callback takes effect");
  session.Inside(nullptr);
  trial.Expect(calls > 100 && longest < 500, "calls return, the longest round took " + std::to_string(longest));
}

// A callback runs with the player's lock held: another thread's call into the player waits for it.
void LockInCallbacks(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  session.PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  std::atomic<bool> inside{false};
  session.Inside([&](int) {
    inside = true;
    Sleep(400);
    inside = false;
  });
  PumpUntil([&] { return inside.load(); });
  Sleep(50);
  DWORD start = GetTickCount();
  trial.vlc.GetState(session.player);
  trial.Expect(GetTickCount() - start > 200, "get_state waits for the callback");
  PumpUntil([&] { return inside.load(); });
  Sleep(50);
  start = GetTickCount();
  trial.vlc.SetVolume(session.player, 100);
  trial.vlc.SetHwnd(session.player, nullptr);
  trial.Expect(GetTickCount() - start < 200, "volume and window do not");
  session.Inside(nullptr);
}

void DetachWaits(Trial& trial) {
  Session session(trial.vlc, trial.instance);
  static std::atomic<bool> inside;
  inside = false;
  auto slow = [](const Event*, void*) {
    inside = true;
    Sleep(400);
    inside = false;
  };
  trial.vlc.Attach(trial.vlc.Manager(session.player), kTime, slow, nullptr);
  session.Play(trial.Url("red.ts"), kNoWindow);
  PumpUntil([&] { return inside.load(); });
  trial.vlc.Detach(trial.vlc.Manager(session.player), kTime, slow, nullptr);
  trial.Expect(!inside, "detach waits for a running callback");
  session.Clear();
  trial.Expect(session.WaitFor(kTime, 3) && !inside, "it is not called any more, others are");
}

void NoEventAfterRelease(Trial& trial) {
  static std::atomic<int> count;
  auto* session = new Session(trial.vlc, trial.instance);
  session->Inside([](int) { ++count; });
  session->PlayUntilTimes(trial.Url("red.ts"), kNoWindow);
  trial.vlc.PlayerRelease(session->player);
  count = 0;
  Pump(1000);
  trial.Expect(count == 0, "no event comes after a release");
  session->player = nullptr;
  delete session;
}

}  // namespace

std::vector<Row> InterfaceRows() {
  return {{"exports", ExportSet},
          {"version", Version},
          {"unknown_option", UnknownOption},
          {"calls_in_callbacks", CallsInCallbacks},
          {"lock_in_callbacks", LockInCallbacks},
          {"detach_waits", DetachWaits, true, false},
          {"no_event_after_release", NoEventAfterRelease}};
}

}  // namespace smoke
