// A scripted library with the exports of a published libvlc 4, for tests of the runtime adapter.
//
// published.dll holds the functions of both interfaces of libvlc 4, and the functions with which a test scripts and
// inspects them. Tests link it. Two libraries of forwarders, events/libvlc-real.dll and callbacks/libvlc-real.dll,
// export one interface each and forward to it, so that one place scripts the adapters for both interfaces.
//
// The functions record their calls and keep the values that are set. No event is raised by itself: the test decides
// what a call triggers. Each call on a player takes the player's recursive lock, and events are delivered with it held,
// as in libvlc 4.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#ifdef PUBLISHED_IMPLEMENTATION
#define PUBLISHED_API __declspec(dllexport)
#else
#define PUBLISHED_API __declspec(dllimport)
#endif

namespace vantro::published {

// libvlc's binary layouts, declared a second time so that the adapter's own are checked against them.

struct Event {
  int32_t type;
  int32_t padding;
  void* sender;
  uint64_t payload[4];  // the union
};

using EventCallback = void (*)(const Event*, void* userData);

// struct libvlc_media_player_cbs.
struct Callbacks {
  uint32_t version;
  void (*mediaChanged)(void*, void* media);
  void (*mediaStopping)(void*, void* media, int32_t reason);
  void (*stateChanged)(void*, int32_t state);
  void (*bufferingChanged)(void*, float share);
  void (*capabilitiesChanged)(void*, int32_t before, int32_t now);
  void (*positionChanged)(void*, int64_t microseconds, double position);
  void (*lengthChanged)(void*, int64_t microseconds);
  void (*trackListChanged)(void*, int32_t action, int32_t type, const char* id);
  void (*trackSelectionChanged)(void*, int32_t type, const char* unselected, const char* selected);
  void (*others[16])();
};

enum State : int32_t { kNothingSpecial, kOpening, kBuffering, kPlaying, kPaused, kStopped, kStopping, kError };
enum TrackType : int32_t { kAudio, kVideo, kText };

// Null means no text.
struct Track {
  const char* id = nullptr;
  const char* name = nullptr;
  const char* language = nullptr;
  const char* description = nullptr;
};

// Restores the state at process start: no calls, no results, no objects. Waits for the threads of Later.
PUBLISHED_API void Reset();

// Returns the calls in order, as text: libvlc_media_player_set_time(player1, 5000, 0). Texts are quoted, objects are
// named, a null pointer is null, and other pointers (windows) are printed with %p.
PUBLISHED_API std::vector<std::string> Calls();
PUBLISHED_API std::vector<std::string> CallsOf(const std::string& function);
PUBLISHED_API std::vector<uint32_t> ThreadsOf(const std::string& function);
PUBLISHED_API void ClearCalls();

// Runs the action inside each call of the function, on the calling thread, after the recording.
PUBLISHED_API void OnCall(const std::string& function, std::function<void()> action);
// Sets the function's result from now on. A function that makes an object returns null for 0, otherwise the object.
PUBLISHED_API void SetResult(const std::string& function, int64_t result);
// Sets the result of libvlc_get_version or libvlc_errmsg.
PUBLISHED_API void SetText(const std::string& function, const std::string& text);

// Returns an object by its number in the order of creation since the last reset, from 1.
PUBLISHED_API void* Player(int number);
PUBLISHED_API void* MediaOf(const void* player);
struct LiveObjects {
  int instances, players, media, trackLists, outputLists;
};
PUBLISHED_API LiveObjects Live();
// Returns the calls with a dead or foreign object, as text.
PUBLISHED_API std::vector<std::string> Violations();

PUBLISHED_API void SetState(void* player, State state);
PUBLISHED_API void SetSize(void* player, unsigned width, unsigned height);
PUBLISHED_API void SetTracks(void* player, TrackType type, std::vector<Track> tracks);
PUBLISHED_API void SetOutputs(std::vector<std::string> names);
// Returns the volume or mute that the library last accepted for the player; -1 before.
PUBLISHED_API int Volume(const void* player);
PUBLISHED_API int Mute(const void* player);

// Runs the action on a thread of the library after that many milliseconds. OnLibraryThread waits for it.
PUBLISHED_API void Later(unsigned milliseconds, std::function<void()> action);
PUBLISHED_API void OnLibraryThread(const std::function<void()>& action);
PUBLISHED_API void JoinThreads();

// The following run on the calling thread, with the player's lock held.
//
PUBLISHED_API void WithLock(void* player, const std::function<void()>& action);
// Raises an event of the interface with event managers. Returns the number of callbacks called.
PUBLISHED_API int Raise(void* player, int32_t type, uint64_t payload = 0);
PUBLISHED_API std::vector<int32_t> AttachedTypes(const void* player);
// Runs the action with the callbacks that the player was made with, and their opaque.
PUBLISHED_API void WithCallbacks(void* player, const std::function<void(const Callbacks&, void*)>& action);

}  // namespace vantro::published
