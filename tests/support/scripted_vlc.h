// The scripted libvlc.dll of this process, as tests use it. See devkit/scripted/scripted_control.h for what it records
// and how calls read; a handle here is any pointer that the library gave out.
//
// Making one resets the library and puts it into strict mode. It fails the current test if that left something alive or
// made a call with a dead handle: a fixture holds it as a member that is made before, and goes after, what it tests.
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
  // Fails the test on violations and on objects left alive; ExpectLeaks() takes the latter back.
  ~ScriptedVlc();
  ScriptedVlc(const ScriptedVlc&) = delete;
  ScriptedVlc& operator=(const ScriptedVlc&) = delete;

  void Reset();
  void ExpectLeaks() { expectLeaks_ = true; }

  // Calls, in order, as text.
  std::vector<std::string> Calls() const;
  // The calls of one function.
  std::vector<std::string> CallsOf(const std::string& function) const;
  int CountOf(const std::string& function) const { return static_cast<int>(CallsOf(function).size()); }
  // The threads that the calls of one function came from.
  std::vector<uint32_t> ThreadsOf(const std::string& function) const;
  void ClearCalls();
  // Runs the action inside each call of the function, on the calling thread, before the call takes effect. An empty
  // action takes it away.
  void OnCall(const std::string& function, std::function<void()> action);

  // Answers. Results follow call by call and the last goes on; for a function that makes an object, 0 is null.
  void SetResult(const std::string& function, int64_t value) { SetResults(function, {value}); }
  void SetResults(const std::string& function, const std::vector<int64_t>& values);
  void SetText(const std::string& function, const char* text);
  void Fail(const std::string& function, int times = 1);

  // What one player answers.
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
  // Statistics of one media, or of every media without its own when it is null.
  void SetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers);
  // The file that a snapshot writes.
  void SetSnapshot(const std::string& bytes);

  // Objects. By number in the order of making, from 1: null if there was no such object.
  libvlc_media_player_t* Player(int number = 1) const;
  libvlc_media_t* Media(int number = 1) const;
  libvlc_instance_t* Instance(int number = 1) const;
  libvlc_media_t* MediaOf(const void* player) const;
  // How a handle, or another pointer such as a window, reads in a recorded call.
  std::string Name(const void* handle) const;
  ScriptedObjects Live() const;
  int LivePlayers() const { return Live().players; }
  int LiveMedia() const { return Live().media; }
  int LiveInstances() const { return Live().instances; }
  std::vector<std::string> Violations() const;

  // Events. Attachments in the order of attaching.
  std::vector<ScriptedAttachment> Attached(const void* player) const;
  std::vector<int> AttachedTypes(const void* player) const;
  // Raises one event on a thread of the library, waits until it is delivered, and returns the number of callbacks
  // called. The value goes into the union as the type has it: 0x103 a float, 0x10C a double, else an integer.
  int Raise(const void* player, int type, double value = 0);
  // A time event with any 64-bit time.
  int RaiseTime(const void* player, int64_t milliseconds);
  // Raises events at full speed on threads of the library, until StopStorms, which returns the callbacks called.
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
