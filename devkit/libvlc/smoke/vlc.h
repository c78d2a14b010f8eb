// The functions of libvlc 4 that the smoke program calls, in both interfaces, and a player whose events are recorded in
// the form of the interface with event managers.
#pragma once

#include <windows.h>

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace smoke {

struct Event {
  int32_t type;
  void* sender;
  union {
    float cache;
    int32_t seekable;
    int64_t time;
    double position;
    void* media;
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

struct Track {
  uint32_t codec, originalFourcc;
  int32_t number, type, profile, level;
  unsigned* details;
  uint32_t bitrate;
  char* language;
  char* description;
  const char* id;
  bool idStable;
  char* name;
  bool selected;
};
static_assert(sizeof(Track) == 88);

struct AudioOutput {
  char* name;
  char* description;
  AudioOutput* next;
};

struct Callbacks {
  uint32_t version;
  void (*mediaChanged)(void*, void*);
  void (*mediaStopping)(void*, void*, int);
  void (*stateChanged)(void*, int);
  void (*buffering)(void*, float);
  void (*capabilities)(void*, int, int);
  void (*position)(void*, int64_t, double);
  void* others[19];
};
static_assert(sizeof(Callbacks) == 8 + 25 * 8);

enum Type {
  kMediaChanged = 0x100,
  kOpening = 0x102,
  kBuffering = 0x103,
  kPlaying = 0x104,
  kPaused = 0x105,
  kStopped = 0x106,
  kStopping = 0x109,
  kError = 0x10A,
  kTime = 0x10B,
  kPosition = 0x10C,
  kSeekable = 0x10D,
  kMediaStopping = 0x504,
};

extern HMODULE library;
bool Exports(const char* name);
template <typename Function>
Function Load(const char* name) {
  return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(library, name)));
}

using EventFunction = void (*)(const Event*, void*);

struct Vlc {
  bool events = Exports("libvlc_event_attach");
  // Units of time in a millisecond.
  int64_t ticks = events ? 1 : 1000;
  void* (*New)(int, const char* const*) = Load<decltype(New)>("libvlc_new");
  void (*Release)(void*) = Load<decltype(Release)>("libvlc_release");
  unsigned (*AbiVersion)() = Load<decltype(AbiVersion)>("libvlc_abi_version");
  const char* (*Version)() = Load<decltype(Version)>("libvlc_get_version");
  void* (*MediaNew)(const char*) = Load<decltype(MediaNew)>("libvlc_media_new_location");
  void* (*MediaNewPath)(const char*) = Load<decltype(MediaNewPath)>("libvlc_media_new_path");
  void (*MediaRelease)(void*) = Load<decltype(MediaRelease)>("libvlc_media_release");
  void (*AddOption)(void*, const char*) = Load<decltype(AddOption)>("libvlc_media_add_option");
  bool (*GetStats)(void*, Stats*) = Load<decltype(GetStats)>("libvlc_media_get_stats");
  void* (*PlayerNew)(void*) = Load<decltype(PlayerNew)>("libvlc_media_player_new");
  void* (*PlayerNewWith)(void*, const Callbacks*, void*) = Load<decltype(PlayerNewWith)>("libvlc_media_player_new");
  void (*PlayerRelease)(void*) = Load<decltype(PlayerRelease)>("libvlc_media_player_release");
  void (*SetHwnd)(void*, void*) = Load<decltype(SetHwnd)>("libvlc_media_player_set_hwnd");
  void* (*Manager)(void*) = Load<decltype(Manager)>("libvlc_media_player_event_manager");
  int (*Attach)(void*, int, EventFunction, void*) = Load<decltype(Attach)>("libvlc_event_attach");
  void (*Detach)(void*, int, EventFunction, void*) = Load<decltype(Detach)>("libvlc_event_detach");
  void (*SetMedia)(void*, void*) = Load<decltype(SetMedia)>("libvlc_media_player_set_media");
  void* (*GetMedia)(void*) = Load<decltype(GetMedia)>("libvlc_media_player_get_media");
  int (*Play)(void*) = Load<decltype(Play)>("libvlc_media_player_play");
  void (*Pause)(void*) = Load<decltype(Pause)>("libvlc_media_player_pause");
  int (*StopAsync)(void*) = Load<decltype(StopAsync)>("libvlc_media_player_stop_async");
  bool (*IsPlaying)(void*) = Load<decltype(IsPlaying)>("libvlc_media_player_is_playing");
  int (*GetState)(void*) = Load<decltype(GetState)>("libvlc_media_player_get_state");
  int64_t (*GetTime)(void*) = Load<decltype(GetTime)>("libvlc_media_player_get_time");
  int (*SetTime)(void*, int64_t, bool) = Load<decltype(SetTime)>("libvlc_media_player_set_time");
  int64_t (*GetLength)(void*) = Load<decltype(GetLength)>("libvlc_media_player_get_length");
  int (*SetVolume)(void*, int) = Load<decltype(SetVolume)>("libvlc_audio_set_volume");
  int (*GetVolume)(void*) = Load<decltype(GetVolume)>("libvlc_audio_get_volume");
  void (*SetMute)(void*, int) = Load<decltype(SetMute)>("libvlc_audio_set_mute");
  int (*GetMute)(void*) = Load<decltype(GetMute)>("libvlc_audio_get_mute");
  AudioOutput* (*Outputs)(void*) = Load<decltype(Outputs)>("libvlc_audio_output_list_get");
  void (*ReleaseOutputs)(AudioOutput*) = Load<decltype(ReleaseOutputs)>("libvlc_audio_output_list_release");
  void* (*Tracks)(void*, int, bool) = Load<decltype(Tracks)>("libvlc_media_player_get_tracklist");
  size_t (*TrackCount)(void*) = Load<decltype(TrackCount)>("libvlc_media_tracklist_count");
  Track* (*TrackAt)(void*, size_t) = Load<decltype(TrackAt)>("libvlc_media_tracklist_at");
  void (*DeleteTracks)(void*) = Load<decltype(DeleteTracks)>("libvlc_media_tracklist_delete");
  void* (*HoldTrack)(void*) = Load<decltype(HoldTrack)>(events ? "libvlc_media_track_hold"
                                                               : "libvlc_media_track_retain");
  void (*ReleaseTrack)(void*) = Load<decltype(ReleaseTrack)>("libvlc_media_track_release");
  void (*SelectTrack)(void*, void*) = Load<decltype(SelectTrack)>("libvlc_media_player_select_track");
  void (*Unselect)(void*, int) = Load<decltype(Unselect)>("libvlc_media_player_unselect_track_type");
  void (*SelectIds)(void*, int, const char*) = Load<decltype(SelectIds)>("libvlc_media_player_select_tracks_by_ids");
  void (*SetScale)(void*, float) = Load<decltype(SetScale)>("libvlc_video_set_scale");
  int (*GetSize)(void*, unsigned, unsigned*, unsigned*) = Load<decltype(GetSize)>("libvlc_video_get_size");
  int (*Snapshot)(void*, unsigned, const char*, unsigned,
                  unsigned) = Load<decltype(Snapshot)>("libvlc_video_take_snapshot");
};

struct RecordedEvent {
  int type;
  double value;     // of buffering in per cent, seekable, time in ms, position, or the reason of a stop
  DWORD thread;     // the thread that delivered it
  DWORD at;         // GetTickCount
  bool insideCall;  // whether `Session::calling` was set
};

struct Session {
  // The player gets the events of all types that Type lists.
  Session(const Vlc& vlc, void* instance);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  // Sets a media with little caching, and with `option` unless that is null.
  void Load(const std::string& text, const char* option = nullptr);
  void Play(const std::string& text, const char* option = nullptr);
  // Plays it and waits until its time rises. Returns false if that fails.
  bool PlayUntilTimes(const std::string& text, const char* option = nullptr);
  bool StopAndWait();
  int64_t Time() const { return vlc.GetTime(player) / vlc.ticks; }
  void Seek(int64_t milliseconds) { vlc.SetTime(player, milliseconds * vlc.ticks, false); }

  // Calls `call` in every event from now on; null for none.
  void Inside(std::function<void(int type)> call);

  void Record(int type, double value);
  // Returns the events since the last Clear.
  std::vector<RecordedEvent> All();
  int Count(int type);
  // Returns the index of the first event of `type`, -1 if there is none.
  int First(int type);
  double Last(int type);
  bool WaitFor(int type, int count = 1, DWORD milliseconds = 10000);
  void Clear();
  // Returns the types in order, with each run of times, positions and buffering once.
  std::vector<int> Order();

  const Vlc& vlc;
  void* player;
  std::atomic<bool> calling{false};
  std::mutex lock;
  std::vector<RecordedEvent> events;
  std::function<void(int type)> inside;
  Callbacks callbacks{};
};

// Dispatches messages until `condition` holds. Returns false after `milliseconds`.
bool PumpUntil(const std::function<bool()>& condition, DWORD milliseconds = 10000);
void Pump(DWORD milliseconds);

HWND MakeWindow(DWORD style = WS_OVERLAPPEDWINDOW | WS_VISIBLE);
// Returns how many points of a row in the window's client area do not have the black of its background.
int LitPoints(HWND window);
// Returns the library's own windows: top-level windows of this process that the program did not make.
std::vector<HWND> ForeignWindows();
HWND ChildOf(HWND window);

}  // namespace smoke
