// Control functions that the scripted libvlc.dll exports in addition to libvlc's own. With them a test sets the results
// of the library and reads the recorded calls. tests/support/scripted_vlc.h wraps them for C++. The product never calls
// them.
//
// All functions are thread-safe. Objects have the names "instance1", "player1", "media1" and so on, counted from 1
// since the last reset. A process never reuses a handle, so a call with a stale handle is always reported.
//
// Environment variables script a program that a test drives from outside. They are read at the first call:
//   VANTRO_SCRIPTED_CALLS=FILE            append each recorded call to the file
//   VANTRO_SCRIPTED_FAIL=FN:N,...         the first N calls of FN fail
//   VANTRO_SCRIPTED_RESULTS=FN=V,V;...    what FN returns, call by call; later calls return the last value
//   VANTRO_SCRIPTED_EVENTS=FN=T,T:V;...   events (number, value) raised in order after each call of FN on a player
//   VANTRO_SCRIPTED_STRICT=1              strict mode from the start
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

// Restores the state of the process start: no calls, no results, no objects. Ends all storms. Older handles are no
// longer alive.
void ScriptedReset(void);

// A thread that delivers an event holds the player's lock, as in libvlc. A call that can never get a lock hangs. In
// strict mode the process aborts instead and prints the call and the reason on standard error. A reset does not change
// the mode.
void ScriptedSetStrict(int32_t strict);

// The calls, in order, as text: libvlc_media_player_set_time(player1, 5000, 0). Strings are quoted, objects appear by
// name, null as null, other pointers (windows) as %p, and event types by
// libvlc's names, MediaPlayerPlaying. Each function with a buffer writes at
// most size bytes including a terminating zero, and returns the length of the whole text.
int32_t ScriptedCallCount(void);
size_t ScriptedCall(int32_t index, char* buffer, size_t size, uint32_t* threadId);
void ScriptedClearCalls(void);

// Sets a hook that runs inside each call of the function, after the call is recorded and before it takes effect. Null
// removes the hook.
typedef void (*ScriptedHook)(void* userData);
void ScriptedOnCall(const char* function, ScriptedHook hook, void* userData);

// Sets what the function returns, call by call; later calls return the last value. A function that creates an object
// returns null for 0 and the object for any other value. A count of 0 restores the function's own result.
void ScriptedSetResults(const char* function, const int64_t* values, int32_t count);
// Sets what libvlc_get_version or libvlc_errmsg returns, null included.
void ScriptedSetText(const char* function, const char* text);
// Lets the next calls fail: they return null, false or -1.
void ScriptedFail(const char* function, int32_t times);

// Values of one player: "time", "length", "playing", "width", "height", "volume", "mute". The library's set_volume and
// set_mute change the last two. Its set_time, play, pause and stop change no value.
void ScriptedSetPlayerValue(const void* player, const char* value, int64_t number);
int64_t ScriptedPlayerValue(const void* player, const char* value);
// Sets the list that libvlc_audio_get_track_description or libvlc_video_get_spu_description creates. An empty list is
// returned as null.
void ScriptedSetTracks(const void* player, const char* function, const int32_t* ids, const char* const* names,
                       int32_t count);
// Sets what libvlc_media_get_stats writes for the media. A null media sets it for each media without its own values.
void ScriptedSetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers);
// Sets the content of the file that libvlc_video_take_snapshot writes. Without a content it writes no file.
void ScriptedSetSnapshot(const void* bytes, size_t size);

// The number of live objects; and the calls with a handle that was not alive, as text.
struct ScriptedObjects {
  int32_t instances;
  int32_t players;
  int32_t media;
  int32_t track_lists;
  int32_t attached_events;
};
void ScriptedLiveObjects(ScriptedObjects* objects);
int32_t ScriptedViolationCount(void);
size_t ScriptedViolation(int32_t index, char* buffer, size_t size);
// Returns an object by its name, or null if there never was one; and the name of a handle, alive or not.
void* ScriptedObject(const char* name);
size_t ScriptedObjectName(const void* object, char* buffer, size_t size);
// Returns the media of the player, or null.
void* ScriptedMediaOf(const void* player);

// Reads the attachment with this index on the player, in the order of attaching. Returns 0 if there is none.
typedef void (*ScriptedCallback)(const void* event, void* userData);
int32_t ScriptedAttached(const void* player, int32_t index, int32_t* type, ScriptedCallback* callback, void** userData);
// Raises one event on a new thread and waits until it is delivered. The payload is the first eight bytes of the
// event's union. Returns the number of callbacks called.
int32_t ScriptedRaise(const void* player, int32_t type, uint64_t payload);
// Raises events of these types in turn at full speed, on this number of new threads, until ScriptedStopStorms. Events
// of one player are delivered one after the other, as in libvlc; events of several players are delivered at the same
// time.
void ScriptedStartStorm(const void* player, int32_t threads, const int32_t* types, int32_t count);
// Stops all storms. Returns the number of callbacks that they called.
int64_t ScriptedStopStorms(void);

}  // extern "C"
