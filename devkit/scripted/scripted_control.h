// Control functions that the scripted libvlc.dll exports beside libvlc's own: a test says what the library answers, and
// asks what was called. tests/support/scripted_vlc.h wraps them for C++; the product never calls them.
//
// Any thread may call any of them. Objects have names, "instance1", "player1", "media1", counted from 1 since the last
// reset; handles are never used again in a process, so that a stale one is told and not mistaken.
//
// A program that a test drives from outside is scripted by the environment, read at the first call:
//   VANTRO_SCRIPTED_CALLS=FILE            append each recorded call to the file
//   VANTRO_SCRIPTED_FAIL=FN:N,...         the first N calls of FN fail
//   VANTRO_SCRIPTED_RESULTS=FN=V,V;...    what FN returns, call by call; the last value goes on
//   VANTRO_SCRIPTED_EVENTS=FN=T,T:V;...   events (number, value) raised in order after each call of FN on a player
//   VANTRO_SCRIPTED_STRICT=1              strict mode from the start
#pragma once

#include <cstddef>
#include <cstdint>

extern "C" {

// As at process start: no calls, no results, no objects. Ends a storm. Handles from before are dead.
void ScriptedReset(void);

// A thread that delivers an event holds the player's lock, as libvlc's do. A call that can never get a lock hangs. In
// strict mode the process aborts, with the call and the reason on standard error. A reset leaves the mode as it is.
void ScriptedSetStrict(int32_t strict);

// Calls, in order, as text: libvlc_media_player_set_time(player1, 5000, 0). Strings stand in quotes, objects by name,
// a null as null, other pointers (windows) as %p, event types as 0x104. A copying function writes at most size bytes
// with a terminating zero and returns the length of the whole text.
int32_t ScriptedCallCount(void);
size_t ScriptedCall(int32_t index, char* buffer, size_t size, uint32_t* threadId);
void ScriptedClearCalls(void);

// Called inside each call of the function, behind its recording and before it takes effect. Null takes it away.
typedef void (*ScriptedHook)(void* userData);
void ScriptedOnCall(const char* function, ScriptedHook hook, void* userData);

// What the function returns, call by call; the last value goes on. A function that makes an object returns null for 0
// and the object for any other value. No values: the function's own answer again.
void ScriptedSetResults(const char* function, const int64_t* values, int32_t count);
// What libvlc_get_version or libvlc_errmsg returns; null is a null text.
void ScriptedSetText(const char* function, const char* text);
// The next calls fail: null, false or -1.
void ScriptedFail(const char* function, int32_t times);

// Values of one player: "time", "length", "playing", "width", "height", "volume", "mute". set_volume and set_mute of
// the library write the last two; set_time, play, pause and stop write nothing.
void ScriptedSetPlayerValue(const void* player, const char* value, int64_t number);
int64_t ScriptedPlayerValue(const void* player, const char* value);
// The list that libvlc_audio_get_track_description or libvlc_video_get_spu_description makes; empty is a null list.
void ScriptedSetTracks(const void* player, const char* function, const int32_t* ids, const char* const* names,
                       int32_t count);
// What libvlc_media_get_stats writes for the media, or for every media without its own when it is null.
void ScriptedSetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers);
// The bytes of the file that libvlc_video_take_snapshot writes; without them it writes none.
void ScriptedSetSnapshot(const void* bytes, size_t size);

// Objects alive, and calls with a handle that was not alive, as text.
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
// An object by its name, null if it never was; and the name of a handle, dead ones included.
void* ScriptedObject(const char* name);
size_t ScriptedObjectName(const void* object, char* buffer, size_t size);
// The media that the player holds, or null.
void* ScriptedMediaOf(const void* player);

// The attachment of the index on the player in the order of attaching: 0 when there is none.
typedef void (*ScriptedCallback)(const void* event, void* userData);
int32_t ScriptedAttached(const void* player, int32_t index, int32_t* type, ScriptedCallback* callback, void** userData);
// Raises one event on a thread of its own and waits until it is delivered. The payload is the first eight bytes of the
// event's union. Returns the number of callbacks called.
int32_t ScriptedRaise(const void* player, int32_t type, uint64_t payload);
// Raises the events of these types in turn, at full speed, on that many threads of its own, until all storms are
// stopped. Events of one player are delivered one after the other, as libvlc does; those of several at once.
void ScriptedStartStorm(const void* player, int32_t threads, const int32_t* types, int32_t count);
// Returns the number of callbacks called by all storms.
int64_t ScriptedStopStorms(void);

}  // extern "C"
