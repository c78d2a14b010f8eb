// The state of the scripted libvlc: the recorded calls, the results that a test has set, and the objects.
#pragma once

#include <windows.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "devkit/scripted/player_lock.h"
#include "devkit/scripted/scripted_control.h"

// libvlc 4's layouts, declared independently of the product, so that tests can compare the product's declarations.
struct libvlc_event_t {
  int32_t type;
  void* object;
  uint64_t payload[4];
};

struct libvlc_media_stats_t {
  uint64_t read_bytes;
  float input_bitrate;
  uint64_t demux_read_bytes;
  float demux_bitrate;
  uint64_t demux_corrupted;
  uint64_t demux_discontinuity;
  uint64_t decoded_video;
  uint64_t decoded_audio;
  uint64_t displayed_pictures;
  uint64_t late_pictures;
  uint64_t lost_pictures;
  uint64_t played_abuffers;
  uint64_t lost_abuffers;
};

struct libvlc_track_description_t {
  int32_t id;
  char* name;
  libvlc_track_description_t* next;
};

using libvlc_callback_t = void (*)(const libvlc_event_t*, void*);

struct libvlc_instance_t {
  int number = 0;
  int references = 1;
};

struct libvlc_media_t {
  int number = 0;
  int references = 1;
};

struct libvlc_media_player_t;

struct libvlc_event_manager_t {
  struct Listener {
    int32_t type;
    libvlc_callback_t callback;
    void* userData;
    bool operator==(const Listener&) const = default;
  };
  libvlc_media_player_t* player = nullptr;
  // Held during delivery, as in libvlc. Attaching and detaching wait for a running callback, unless the callback itself
  // calls them.
  scripted::DeliveryLock lock;
  std::vector<Listener> listeners;
};

struct libvlc_media_player_t {
  struct Track {
    int32_t id;
    std::string name;
  };
  int number = 0;
  int references = 1;
  libvlc_instance_t* instance = nullptr;
  libvlc_media_t* media = nullptr;
  std::map<std::string, int64_t> values;
  std::map<std::string, std::vector<Track>> tracks;
  libvlc_event_manager_t events;
  // Held during delivery and by the calls of kLockedFunctions. Taken before the event manager's lock and before the
  // script's mutex, never after them.
  scripted::DeliveryLock lock;
};

namespace scripted {

// The objects of one kind. A released object keeps its memory, so that a stale handle is recognised.
template <typename T>
class Pool {
 public:
  T* Make() {
    T* const object = all_.emplace_back(std::make_unique<T>()).get();
    named_.push_back(object);
    object->number = static_cast<int>(named_.size());
    live_.insert(object);
    return object;
  }
  void Retain(T* object) { ++object->references; }
  // True when this was the last reference.
  bool Release(T* object) {
    if (--object->references > 0) return false;
    live_.erase(object);
    return true;
  }
  bool IsLive(const void* object) const { return live_.count(static_cast<const T*>(object)) > 0; }
  int LiveCount() const { return static_cast<int>(live_.size()); }
  const std::set<const T*>& Live() const { return live_; }
  const T* Find(const void* object) const {
    for (const auto& candidate : all_)
      if (candidate.get() == object) return candidate.get();
    return nullptr;
  }
  T* Numbered(int number) const {
    return number >= 1 && number <= static_cast<int>(named_.size()) ? named_[static_cast<size_t>(number - 1)] : nullptr;
  }
  void Reset() {
    live_.clear();
    named_.clear();
  }

 private:
  std::vector<std::unique_ptr<T>> all_;
  std::vector<T*> named_;
  std::set<const T*> live_;
};

struct RecordedCall {
  std::string text;
  DWORD threadId;
};

struct Hook {
  ScriptedHook function;
  void* userData;
};

// An event that the environment configures to follow a call.
struct FollowingEvent {
  int32_t type;
  double value;
};

// The single instance is TheScript(). Callers hold the mutex for everything except the constructor.
struct Script {
  Script();

  void Reset();
  void Record(const std::string& text);
  // Returns the next result of the function: its failure, the scripted value, or its own result.
  int64_t NextResult(const char* function, int64_t own, int64_t failure);
  bool NextFails(const char* function);
  std::string NameOf(const void* object) const;

  std::mutex mutex;
  std::vector<RecordedCall> calls;
  std::vector<std::string> violations;
  std::map<std::string, int32_t> failures;
  std::map<std::string, std::deque<int64_t>> results;
  std::map<std::string, std::unique_ptr<std::string>> texts;  // a null entry is a null text
  std::map<std::string, Hook> hooks;
  std::map<std::string, std::vector<FollowingEvent>> following;
  std::map<const void*, libvlc_media_stats_t> stats;  // by media; null for all others
  std::vector<unsigned char> snapshot;
  bool hasSnapshot = false;
  Pool<libvlc_instance_t> instances;
  Pool<libvlc_media_player_t> players;
  Pool<libvlc_media_t> media;
  std::set<libvlc_track_description_t*> trackLists;

 private:
  void ReadEnvironment();
  std::string callsFile_;
};

Script& TheScript();

// Delivers the event to the listeners of its type on the calling thread, under the player's lock. Returns the number of
// listeners called. The caller must not hold the script's mutex.
int Deliver(libvlc_media_player_t* player, int32_t type, uint64_t payload);
// Returns the first eight bytes of the union of an event with this type and value.
uint64_t PayloadOf(int32_t type, double value);
// Raises the events in order on a new thread and does not wait.
void RaiseLater(libvlc_media_player_t* player, std::vector<FollowingEvent> events);

}  // namespace scripted
