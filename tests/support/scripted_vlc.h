// The scripted libvlc.dll of this process, for tests. devkit/scripted/scripted_control.h describes what it records and
// how calls are printed. A handle here is any pointer that the library returned.
//
// The constructor resets the library and switches it to strict mode. The destructor fails the current test if the test
// left an object alive or made a call with a dead handle. A fixture therefore declares it before the members under
// test, so that it is made first and destroyed last.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "devkit/scripted/scripted_control.h"
#include "player/libvlc_api.h"

namespace vantro::test {

struct ScriptedTrack {
  int id;
  std::string name;
};

struct ScriptedAttachment {
  int type;
  void* callback;
  void* userData;
};

class ScriptedVlc {
 public:
  ScriptedVlc();
  // Fails the test on violations and on objects left alive. ExpectLeaks() allows the latter.
  ~ScriptedVlc();
  ScriptedVlc(const ScriptedVlc&) = delete;
  ScriptedVlc& operator=(const ScriptedVlc&) = delete;

  void Reset();
  void ExpectLeaks() { expectLeaks_ = true; }

  // Returns the calls in order, as text.
  std::vector<std::string> Calls() const;
  // Returns the calls of one function.
  std::vector<std::string> CallsOf(const std::string& function) const;
  int CountOf(const std::string& function) const { return static_cast<int>(CallsOf(function).size()); }
  // Returns the threads that called one function.
  std::vector<uint32_t> ThreadsOf(const std::string& function) const;
  void ClearCalls();
  // Runs the action inside each call of the function, on the calling thread, before the call takes effect. An empty
  // action removes it.
  void OnCall(const std::string& function, std::function<void()> action);

  // Results. They are used call by call, and the last one is repeated. For a function that makes an object, 0 means
  // null.
  void SetResult(const std::string& function, int64_t value) { SetResults(function, {value}); }
  void SetResults(const std::string& function, const std::vector<int64_t>& values);
  void SetText(const std::string& function, const char* text);
  void Fail(const std::string& function, int times = 1);

  // The results of one player.
  void SetPlaying(const void* player, bool playing) { SetValue(player, "playing", playing); }
  void SetTime(const void* player, int64_t milliseconds) { SetValue(player, "time", milliseconds); }
  void SetLength(const void* player, int64_t milliseconds) { SetValue(player, "length", milliseconds); }
  void SetSize(const void* player, int width, int height);
  void SetVolume(const void* player, int percent) { SetValue(player, "volume", percent); }
  void SetMute(const void* player, int mute) { SetValue(player, "mute", mute); }
  void SetAudioTracks(const void* player, const std::vector<ScriptedTrack>& tracks);
  void SetSpuTracks(const void* player, const std::vector<ScriptedTrack>& tracks);
  int Volume(const void* player) const { return static_cast<int>(Value(player, "volume")); }
  int Mute(const void* player) const { return static_cast<int>(Value(player, "mute")); }
  // Statistics of one media, or with null of every media without its own.
  void SetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers);
  // Sets the content of the file that a snapshot writes.
  void SetSnapshot(const std::string& bytes);

  // Objects, by number in the order of creation, from 1. Null if there was no such object.
  libvlc_media_player_t* Player(int number = 1) const;
  libvlc_media_t* Media(int number = 1) const;
  libvlc_instance_t* Instance(int number = 1) const;
  libvlc_media_t* MediaOf(const void* player) const;
  // Returns the text of a handle, or of another pointer such as a window, in recorded calls.
  std::string Name(const void* handle) const;
  ScriptedObjects Live() const;
  int LivePlayers() const { return Live().players; }
  int LiveMedia() const { return Live().media; }
  int LiveInstances() const { return Live().instances; }
  std::vector<std::string> Violations() const;

  // Events. Attachments are in the order of attaching.
  std::vector<ScriptedAttachment> Attached(const void* player) const;
  std::vector<int> AttachedTypes(const void* player) const;
  // Raises one event on a thread of the library, waits until it is delivered, and returns the number of callbacks
  // called. The value is stored in the event's union with the type's member: a float for 0x103, a double for 0x10C,
  // otherwise an integer.
  int Raise(const void* player, int type, double value = 0);
  // A time event with any 64-bit time.
  int RaiseTime(const void* player, int64_t milliseconds);
  // Raises events continuously on threads of the library until StopStorms, which returns the number of callbacks
  // called.
  void StartStorm(const void* player, int threads, const std::vector<int>& types);
  int64_t StopStorms();

 private:
  void SetValue(const void* player, const char* value, int64_t number);
  int64_t Value(const void* player, const char* value) const;
  void SetTracks(const void* player, const char* function, const std::vector<ScriptedTrack>& tracks);

  bool expectLeaks_ = false;
  std::map<std::string, std::unique_ptr<std::function<void()>>> actions_;
};

}  // namespace vantro::test
