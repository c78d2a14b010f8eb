// The state of the scripted published library.
#pragma once

#include <windows.h>

#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <set>

#include "devkit/published/published.h"

namespace vantro::published {

// The first member of every object of the library. The memory of dead objects is kept, so that a stale handle is
// recognised.
struct Object {
  std::string name;
  int references = 1;
};

struct Instance : Object {};
struct Media : Object {};

struct Listener {
  int32_t type;
  EventCallback callback;
  void* userData;
  bool operator==(const Listener&) const = default;
};

struct PlayerObject : Object {
  std::recursive_mutex lock;
  Instance* instance = nullptr;
  Media* media = nullptr;
  State state = kNothingSpecial;
  unsigned width = 0;
  unsigned height = 0;
  int volume = -1;
  int mute = -1;
  std::map<int32_t, std::vector<Track>> tracks;
  std::vector<Listener> listeners;
  const Callbacks* callbacks = nullptr;
  void* opaque = nullptr;
};

struct RecordedCall {
  std::string text;
  uint32_t threadId;
};

// Used only with the mutex held, except the listeners, which the player's own lock guards.
struct Script {
  std::mutex mutex;
  std::vector<RecordedCall> calls;
  std::vector<std::string> violations;
  std::map<std::string, std::function<void()>> actions;
  std::map<std::string, int64_t> results;
  std::map<std::string, std::string> texts;
  std::vector<std::string> outputs;
  std::vector<std::unique_ptr<Instance>> instances;
  std::vector<std::unique_ptr<Media>> media;
  std::vector<std::unique_ptr<PlayerObject>> players;
  std::vector<std::unique_ptr<PlayerObject>> playersBefore;  // of earlier tests
  std::set<const void*> trackLists;
  std::set<const void*> outputLists;
  std::vector<HANDLE> threads;
};

Script& TheScript();
bool IsLive(const void* object);
PlayerObject* AsPlayer(const void* handle);

}  // namespace vantro::published
