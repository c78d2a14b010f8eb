// Drives the development library as the host does, through GetProcAddress and a window of its own, and prints one line
// per check. Ends with 0 if all held.
//
//   devlib_smoke all URL OTHER_URL SEEKABLE_URL ROUNDS
//       everything; OTHER_URL shows red, SEEKABLE_URL is a media of 60 s with two audio tracks and a subtitle track
//       that libvlc 3 can seek in (it cannot in a transport stream over HTTP)
//   devlib_smoke play TEXT...
//       each TEXT, a path if it has no "://", comes to play
//   devlib_smoke misuse URL
//       seeks inside a callback

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace {

struct Event {
  int32_t type;
  void* sender;
  union {
    float cache;
    int32_t seekable;
    int64_t time;
    double position;
  } u;
};

struct Stats {
  uint64_t other[8];
  uint64_t displayed;
  uint64_t more[2];
  uint64_t playedBuffers;
  uint64_t lostBuffers;
};
static_assert(sizeof(Stats) == 104);

HMODULE library;
int failures = 0;

template <typename Function>
Function Load(const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

struct Track {
  int id;
  char* name;
  Track* next;
};

using EventFunction = void (*)(const Event*, void*);
struct Vlc {
  void* (*New)(int, const char* const*) = Load<decltype(New)>("libvlc_new");
  void (*Release)(void*) = Load<decltype(Release)>("libvlc_release");
  unsigned (*AbiVersion)() = Load<decltype(AbiVersion)>("libvlc_abi_version");
  const char* (*Version)() = Load<decltype(Version)>("libvlc_get_version");
  void* (*MediaNew)(const char*) = Load<decltype(MediaNew)>("libvlc_media_new_location");
  void (*MediaRelease)(void*) = Load<decltype(MediaRelease)>("libvlc_media_release");
  void* (*MediaNewPath)(const char*) = Load<decltype(MediaNewPath)>("libvlc_media_new_path");
  void (*AddOption)(void*, const char*) = Load<decltype(AddOption)>("libvlc_media_add_option");
  bool (*GetStats)(void*, Stats*) = Load<decltype(GetStats)>("libvlc_media_get_stats");
  void* (*PlayerNew)(void*) = Load<decltype(PlayerNew)>("libvlc_media_player_new");
  void (*PlayerRelease)(void*) = Load<decltype(PlayerRelease)>("libvlc_media_player_release");
  void (*SetHwnd)(void*, void*) = Load<decltype(SetHwnd)>("libvlc_media_player_set_hwnd");
  void* (*Manager)(void*) = Load<decltype(Manager)>("libvlc_media_player_event_manager");
  void (*SetMedia)(void*, void*) = Load<decltype(SetMedia)>("libvlc_media_player_set_media");
  int (*Play)(void*) = Load<decltype(Play)>("libvlc_media_player_play");
  void (*Pause)(void*) = Load<decltype(Pause)>("libvlc_media_player_pause");
  bool (*IsPlaying)(void*) = Load<decltype(IsPlaying)>("libvlc_media_player_is_playing");
  int64_t (*GetTime)(void*) = Load<decltype(GetTime)>("libvlc_media_player_get_time");
  int (*SetTime)(void*, int64_t, bool) = Load<decltype(SetTime)>("libvlc_media_player_set_time");
  int64_t (*GetLength)(void*) = Load<decltype(GetLength)>("libvlc_media_player_get_length");
  int (*SetVolume)(void*, int) = Load<decltype(SetVolume)>("libvlc_audio_set_volume");
  int (*GetVolume)(void*) = Load<decltype(GetVolume)>("libvlc_audio_get_volume");
  void (*SetMute)(void*, int) = Load<decltype(SetMute)>("libvlc_audio_set_mute");
  int (*GetMute)(void*) = Load<decltype(GetMute)>("libvlc_audio_get_mute");
  void (*SetScale)(void*, float) = Load<decltype(SetScale)>("libvlc_video_set_scale");
  // Null with a current libvlc 4.
  unsigned (*Width)(void*) = Load<decltype(Width)>("libvlc_video_get_width");
  unsigned (*Height)(void*) = Load<decltype(Height)>("libvlc_video_get_height");
  Track* (*AudioTracks)(void*) = Load<decltype(AudioTracks)>("libvlc_audio_get_track_description");
  Track* (*Subtitles)(void*) = Load<decltype(Subtitles)>("libvlc_video_get_spu_description");
  int (*SetAudioTrack)(void*, int) = Load<decltype(SetAudioTrack)>("libvlc_audio_set_track");
  int (*SetSubtitle)(void*, int) = Load<decltype(SetSubtitle)>("libvlc_video_set_spu");
  void (*ReleaseTracks)(Track*) = Load<decltype(ReleaseTracks)>("libvlc_track_description_list_release");
  void (*Stop)(void*) = Load<decltype(Stop)>("libvlc_media_player_stop");
  int (*StopAsync)(void*) = Load<decltype(StopAsync)>("libvlc_media_player_stop_async");
  int (*Snapshot)(void*, unsigned, const char*, unsigned,
                  unsigned) = Load<decltype(Snapshot)>("libvlc_video_take_snapshot");
  int (*Attach)(void*, int, EventFunction, void*) = Load<decltype(Attach)>("libvlc_event_attach");
  void (*Detach)(void*, int, EventFunction, void*) = Load<decltype(Detach)>("libvlc_event_detach");
};

struct Record {
  std::mutex lock;
  std::vector<int> types;
  std::atomic<int64_t> lastTime{-1};
  DWORD thread = 0;

  int Count(int type) {
    std::lock_guard guard(lock);
    int count = 0;
    for (int seen : types) count += seen == type;
    return count;
  }
  // Where `type` came first, -1 if it did not.
  int First(int type) {
    std::lock_guard guard(lock);
    for (size_t i = 0; i < types.size(); ++i) {
      if (types[i] == type) return static_cast<int>(i);
    }
    return -1;
  }
  void Clear() {
    std::lock_guard guard(lock);
    types.clear();
  }
};

void OnEvent(const Event* event, void* data) {
  auto* record = static_cast<Record*>(data);
  std::lock_guard guard(record->lock);
  record->types.push_back(event->type);
  record->thread = GetCurrentThreadId();
  if (event->type == 0x10B) record->lastTime = event->u.time;
}

void Check(bool held, const std::string& what) {
  std::printf("%s %s\n", held ? "ok    " : "FAILED", what.c_str());
  std::fflush(stdout);
  if (!held) ++failures;
}

bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 10000) {
  DWORD start = GetTickCount();
  while (!condition()) {
    if (GetTickCount() - start > milliseconds) return false;
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
    MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
  }
  return true;
}

HWND MakeWindow() {
  return CreateWindowW(L"DevlibSmoke", L"devlib smoke", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 700, 480, nullptr,
                       nullptr, GetModuleHandleW(nullptr), nullptr);
}

// How many of a row of points in the window's client area are not the black of its background.
int LitPoints(HWND window) {
  RECT area;
  GetClientRect(window, &area);
  HDC dc = GetDC(window);
  int lit = 0;
  for (int i = 1; i < 40; ++i) {
    COLORREF colour = GetPixel(dc, area.right * i / 40, area.bottom / 3);
    lit += colour != CLR_INVALID && colour != 0;
  }
  ReleaseDC(window, dc);
  return lit;
}

struct Session {
  explicit Session(const Vlc& functions, void* instance) : vlc(functions), player(functions.PlayerNew(instance)) {
    for (int type = 0x100; type <= 0x10D; ++type) vlc.Attach(vlc.Manager(player), type, OnEvent, &record);
  }
  void Load(const std::string& text) {
    bool path = text.find("://") == std::string::npos;
    void* media = path ? vlc.MediaNewPath(text.c_str()) : vlc.MediaNew(text.c_str());
    vlc.AddOption(media, ":network-caching=300");
    vlc.SetMedia(player, media);
    vlc.MediaRelease(media);
  }
  const Vlc& vlc;
  Record record;
  void* player;
};

void PlayAndSeek(Session& session, HWND window, const char* url) {
  const Vlc& vlc = session.vlc;
  vlc.SetHwnd(session.player, window);
  void* media = vlc.MediaNew(url);
  vlc.SetMedia(session.player, media);
  Check(vlc.StopAsync(session.player) == -1, "stop_async has nothing to stop before play");
  Check(vlc.Play(session.player) == 0, "play is accepted");
  Record& record = session.record;
  Check(PumpUntil([&] { return record.Count(0x104) > 0; }), "Playing comes");
  Check(record.First(0x100) < record.First(0x102) && record.First(0x102) < record.First(0x104),
        "MediaChanged, Opening and Playing come in this order");
  Check(record.thread != GetCurrentThreadId() && record.thread != 0, "events come on a thread that Windows knows");
  Check(PumpUntil([&] { return record.lastTime > 1000; }), "the time rises beyond 1 s");
  Check(vlc.IsPlaying(session.player), "is_playing holds");
  Stats first{}, second{};
  Check(vlc.GetStats(media, &first), "statistics are there");
  Check(PumpUntil([&] {
          vlc.GetStats(media, &second);
          return second.displayed >= first.displayed + 10 && second.playedBuffers >= first.playedBuffers + 10;
        }),
        "displayed pictures and played buffers rise");
  Check(PumpUntil([&] { return LitPoints(window) > 20; }), "the picture stands in the window");
  char folder[MAX_PATH];
  GetTempPathA(sizeof folder, folder);
  std::string path = std::string(folder) + "devlib_smoke.png";
  DeleteFileA(path.c_str());
  Check(vlc.Snapshot(session.player, 0, path.c_str(), 320, 180) == 0, "a snapshot is taken");
  Check(PumpUntil([&] { return GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES; }), "its file is there");
  vlc.Pause(session.player);
  Check(PumpUntil([&] { return record.Count(0x105) > 0; }), "Paused comes");
  InvalidateRect(window, nullptr, TRUE);
  UpdateWindow(window);
  Check(PumpUntil([&] { return LitPoints(window) > 20; }), "a paused picture is drawn again");
  vlc.Play(session.player);
  Check(PumpUntil([&] { return record.Count(0x104) > 1; }), "play resumes");
  vlc.MediaRelease(media);
}

void ReplaceAndStop(Session& session, HWND window, const char* other) {
  const Vlc& vlc = session.vlc;
  Record& record = session.record;
  record.Clear();
  session.Load(other);
  Check(PumpUntil([&] { return record.Count(0x104) > 0; }), "a new media goes on playing without play");
  Check(record.Count(0x106) == 0, "no Stopped comes between two media");
  record.lastTime = -1;
  Check(PumpUntil([&] { return record.lastTime > 500; }), "its time rises");
  record.Clear();
  Check(vlc.StopAsync(session.player) == 0, "stop_async is accepted");
  Check(PumpUntil([&] { return record.Count(0x106) > 0; }), "Stopped comes");
  Check(record.First(0x109) >= 0 && record.First(0x109) < record.First(0x106), "Stopping comes before Stopped");
  Check(vlc.StopAsync(session.player) == -1, "a second stop_async has nothing to stop");
  Check(PumpUntil([&] { return LitPoints(window) == 0; }), "the window has its background back");
}

void PlayToTheEnd(Session& session, const char* url) {
  const Vlc& vlc = session.vlc;
  Record& record = session.record;
  session.Load(url);
  record.Clear();
  record.lastTime = -1;
  vlc.SetTime(session.player, 57000, false);
  vlc.Play(session.player);
  Check(PumpUntil([&] { return record.lastTime >= 55000; }, 3000), "a seek before play is where play starts");
  Check(PumpUntil([&] { return record.Count(0x106) > 0; }, 15000), "Stopped comes at the end");
  record.Clear();
  record.lastTime = -1;
  vlc.Play(session.player);
  Check(PumpUntil([&] { return record.lastTime > 0; }) && record.lastTime < 5000, "play after the end begins anew");
  Check(record.Count(0x106) == 0, "Stopped is told once");
}

std::vector<int> TrackIds(const Vlc& vlc, Track* list) {
  std::vector<int> ids;
  for (Track* track = list; track; track = track->next) {
    if (track->id >= 0) ids.push_back(track->id);
  }
  vlc.ReleaseTracks(list);
  return ids;
}

void SeekRightAway(Session& session, const char* url) {
  const Vlc& vlc = session.vlc;
  session.Load(url);
  session.record.lastTime = -1;
  vlc.Play(session.player);
  vlc.SetTime(session.player, 30000, false);
  Check(PumpUntil([&] { return session.record.lastTime >= 29000; }, 3000), "a seek right behind play is obeyed");
  Check(vlc.GetLength(session.player) > 59000 && vlc.GetLength(session.player) < 61000, "the length is known");
  Check(vlc.SetVolume(session.player, -1) == -1 && vlc.SetVolume(session.player, 40) == 0 &&
            vlc.GetVolume(session.player) == 40,
        "the volume is kept, a negative one refused");
  vlc.SetMute(session.player, 1);
  Check(vlc.GetMute(session.player) == 1, "mute is kept");
}

// What only early versions of libvlc 4 have; `session` plays the media with the tracks.
void TracksAndStop(Session& session) {
  const Vlc& vlc = session.vlc;
  if (!vlc.Stop) {
    Check(!vlc.Width && !vlc.Height && !vlc.AudioTracks && !vlc.Subtitles && !vlc.ReleaseTracks,
          "what a current libvlc 4 lacks is lacking");
    return;
  }
  Check(PumpUntil([&] { return vlc.Width(session.player) == 640 && vlc.Height(session.player) == 360; }),
        "the picture's size is known");
  std::vector<int> audio = TrackIds(vlc, vlc.AudioTracks(session.player));
  std::vector<int> subtitles = TrackIds(vlc, vlc.Subtitles(session.player));
  Check(audio.size() == 2 && subtitles.size() == 1, "two audio tracks and a subtitle track are listed");
  Check(audio.size() == 2 && vlc.SetAudioTrack(session.player, audio[1]) == 0, "the other audio track is taken");
  Check(subtitles.size() == 1 && vlc.SetSubtitle(session.player, subtitles[0]) == 0, "the subtitle track is taken");
  session.record.Clear();
  vlc.Stop(session.player);
  Check(!vlc.IsPlaying(session.player), "nothing plays behind stop");
  Check(PumpUntil([&] { return session.record.Count(0x106) == 1; }), "stop tells Stopped");
}

void Scale(Session& session, HWND window, const char* url) {
  const Vlc& vlc = session.vlc;
  Record& record = session.record;
  vlc.SetHwnd(session.player, window);
  record.Clear();
  session.Load(url);
  vlc.Play(session.player);
  PumpUntil([&] { return record.Count(0x104) > 0 && record.Count(0x10B) > 0 && record.lastTime < 5000; });
  Check(PumpUntil([&] { return LitPoints(window) == 39; }), "a red picture fills the window's width");
  vlc.SetScale(session.player, 0.5f);
  Check(PumpUntil([&] { return LitPoints(window) > 10 && LitPoints(window) < 25; }), "at scale 0.5 it is smaller");
  vlc.SetScale(session.player, 0.0f);
  Check(PumpUntil([&] { return LitPoints(window) == 39; }), "at scale 0 it fits again");
}

void LoseWindow(Session& session) {
  HWND window = MakeWindow();
  session.vlc.SetHwnd(session.player, window);
  PumpUntil([&] { return LitPoints(window) > 20; });
  int64_t before = session.record.lastTime;
  DestroyWindow(window);
  Check(PumpUntil([&] { return session.record.lastTime > before + 500; }), "playing goes on without its window");
}

void Rounds(const Vlc& vlc, void* instance, HWND window, const char* url, int rounds) {
  int played = 0;
  for (int i = 0; i < rounds; ++i) {
    Session session(vlc, instance);
    vlc.SetHwnd(session.player, window);
    session.Load(url);
    vlc.Play(session.player);
    played += PumpUntil([&] { return session.record.Count(0x104) > 0; });
    if (i % 2) vlc.StopAsync(session.player);
    for (int type = 0x100; type <= 0x10D; ++type)
      vlc.Detach(vlc.Manager(session.player), type, OnEvent, &session.record);
    vlc.PlayerRelease(session.player);
  }
  Check(played == rounds,
        std::to_string(played) + " of " + std::to_string(rounds) + " rounds of new player, play, release");
}

void Everything(const Vlc& vlc, HWND window, const std::vector<const char*>& urls, int rounds) {
  Check(vlc.AbiVersion() == 0x040C0000, "the library says that it is libvlc 4");
  Check(vlc.Version()[0] == '4', std::string("its version is ") + vlc.Version());
  const char* arguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound", "--http-reconnect",
                             "--no-such-option-in-libvlc-3"};
  void* instance = vlc.New(5, arguments);
  Check(instance != nullptr, "an unknown option does not fail libvlc_new");
  Session session(vlc, instance);
  PlayAndSeek(session, window, urls[0]);
  ReplaceAndStop(session, window, urls[1]);
  PlayToTheEnd(session, urls[2]);
  SeekRightAway(session, urls[2]);
  TracksAndStop(session);
  Scale(session, window, urls[1]);
  LoseWindow(session);
  vlc.PlayerRelease(session.player);
  Rounds(vlc, instance, window, urls[1], rounds);
  vlc.Release(instance);
}

void PlayEach(const Vlc& vlc, const std::vector<const char*>& texts) {
  void* instance = vlc.New(0, nullptr);
  Session session(vlc, instance);
  for (const char* text : texts) {
    session.record.Clear();
    session.Load(text);
    vlc.Play(session.player);
    Check(PumpUntil([&] { return session.record.Count(0x104) > 0; }), std::string(text) + " plays");
  }
  vlc.PlayerRelease(session.player);
  vlc.Release(instance);
}

void SeekInsideCallback(const Vlc& vlc, const char* url) {
  void* instance = vlc.New(0, nullptr);
  Session session(vlc, instance);
  vlc.Attach(
      vlc.Manager(session.player), 0x10B,
      [](const Event* event, void* functions) { static_cast<const Vlc*>(functions)->SetTime(event->sender, 0, false); },
      const_cast<Vlc*>(&vlc));
  session.Load(url);
  vlc.Play(session.player);
  Check(PumpUntil([&] { return session.record.Count(0x10B) > 1; }), "the process is alive behind the call");
  vlc.PlayerRelease(session.player);
  vlc.Release(instance);
}

}  // namespace

int main(int argc, char** argv) {
  std::string mode = argc > 2 ? argv[1] : "";
  std::vector<const char*> arguments(argv + std::min(argc, 2), argv + argc);
  if ((mode != "all" || argc != 6) && mode != "play" && mode != "misuse") {
    std::printf("usage: devlib_smoke all URL OTHER_URL SEEKABLE_URL ROUNDS | play TEXT... | misuse URL\n");
    return 2;
  }
  library = LoadLibraryA("libvlc.dll");
  if (!library) {
    std::printf("FAILED no libvlc.dll, error %lu\n", GetLastError());
    return 1;
  }
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = GetModuleHandleW(nullptr);
  windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
  windowClass.lpszClassName = L"DevlibSmoke";
  RegisterClassW(&windowClass);
  Vlc vlc;
  if (mode == "all") Everything(vlc, MakeWindow(), arguments, std::atoi(argv[5]));
  if (mode == "play") PlayEach(vlc, arguments);
  if (mode == "misuse") SeekInsideCallback(vlc, arguments[0]);
  std::printf("%d failed\n", failures);
  return failures ? 1 : 0;
}
