// The functions with which a test scripts and inspects the library.
#include "devkit/published/script.h"

#include <algorithm>

namespace vantro::published {
namespace {

using Lock = std::lock_guard<std::mutex>;

bool IsCallOf(const RecordedCall& call, const std::string& function) { return call.text.starts_with(function + "("); }

template <typename T>
int CountLive(const std::vector<std::unique_ptr<T>>& objects) {
  return static_cast<int>(
      std::count_if(objects.begin(), objects.end(), [](const auto& o) { return o->references > 0; }));
}

struct Work {
  DWORD delay;
  std::function<void()> action;
};

HANDLE StartThread(unsigned milliseconds, std::function<void()> action) {
  const auto run = [](void* argument) -> DWORD {
    const std::unique_ptr<Work> work(static_cast<Work*>(argument));
    if (work->delay > 0) Sleep(work->delay);
    work->action();
    return 0;
  };
  return CreateThread(nullptr, 0, run, new Work{milliseconds, std::move(action)}, 0, nullptr);
}

void Join(HANDLE thread) {
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
}

}  // namespace

Script& TheScript() {
  static Script* const script = new Script;  // never destroyed: the adapters outlive the statics
  return *script;
}

bool IsLive(const void* object) {
  const auto isIt = [&](const auto& candidate) {
    return static_cast<const void*>(candidate.get()) == object && candidate->references > 0;
  };
  const Script& script = TheScript();
  return std::any_of(script.instances.begin(), script.instances.end(), isIt) ||
         std::any_of(script.media.begin(), script.media.end(), isIt) ||
         std::any_of(script.players.begin(), script.players.end(), isIt);
}

PlayerObject* AsPlayer(const void* handle) { return static_cast<PlayerObject*>(const_cast<void*>(handle)); }

void Reset() {
  JoinThreads();
  Script& script = TheScript();
  const Lock lock(script.mutex);
  script.calls.clear();
  script.violations.clear();
  script.actions.clear();
  script.results.clear();
  script.texts.clear();
  script.outputs.clear();
  script.instances.clear();
  script.media.clear();
  for (auto& player : script.players) script.playersBefore.push_back(std::move(player));
  script.players.clear();
  script.trackLists.clear();
  script.outputLists.clear();
}

std::vector<std::string> Calls() {
  const Lock lock(TheScript().mutex);
  std::vector<std::string> texts;
  for (const RecordedCall& call : TheScript().calls) texts.push_back(call.text);
  return texts;
}

std::vector<std::string> CallsOf(const std::string& function) {
  const Lock lock(TheScript().mutex);
  std::vector<std::string> texts;
  for (const RecordedCall& call : TheScript().calls) {
    if (IsCallOf(call, function)) texts.push_back(call.text);
  }
  return texts;
}

std::vector<uint32_t> ThreadsOf(const std::string& function) {
  const Lock lock(TheScript().mutex);
  std::vector<uint32_t> threads;
  for (const RecordedCall& call : TheScript().calls) {
    if (IsCallOf(call, function)) threads.push_back(call.threadId);
  }
  return threads;
}

void ClearCalls() {
  const Lock lock(TheScript().mutex);
  TheScript().calls.clear();
}

void OnCall(const std::string& function, std::function<void()> action) {
  const Lock lock(TheScript().mutex);
  TheScript().actions[function] = std::move(action);
}

void SetResult(const std::string& function, int64_t result) {
  const Lock lock(TheScript().mutex);
  TheScript().results[function] = result;
}

void SetText(const std::string& function, const std::string& text) {
  const Lock lock(TheScript().mutex);
  TheScript().texts[function] = text;
}

void* Player(int number) {
  const Lock lock(TheScript().mutex);
  const auto& players = TheScript().players;
  return number >= 1 && static_cast<size_t>(number) <= players.size() ? players[static_cast<size_t>(number - 1)].get()
                                                                      : nullptr;
}

void* MediaOf(const void* player) {
  const Lock lock(TheScript().mutex);
  return AsPlayer(player)->media;
}

LiveObjects Live() {
  const Lock lock(TheScript().mutex);
  const Script& script = TheScript();
  return {CountLive(script.instances), CountLive(script.players), CountLive(script.media),
          static_cast<int>(script.trackLists.size()), static_cast<int>(script.outputLists.size())};
}

std::vector<std::string> Violations() {
  const Lock lock(TheScript().mutex);
  return TheScript().violations;
}

void SetState(void* player, State state) {
  const Lock lock(TheScript().mutex);
  AsPlayer(player)->state = state;
}

void SetSize(void* player, unsigned width, unsigned height) {
  const Lock lock(TheScript().mutex);
  AsPlayer(player)->width = width;
  AsPlayer(player)->height = height;
}

void SetTracks(void* player, TrackType type, std::vector<Track> tracks) {
  const Lock lock(TheScript().mutex);
  AsPlayer(player)->tracks[type] = std::move(tracks);
}

void SetOutputs(std::vector<std::string> names) {
  const Lock lock(TheScript().mutex);
  TheScript().outputs = std::move(names);
}

int Volume(const void* player) {
  const Lock lock(TheScript().mutex);
  return AsPlayer(player)->volume;
}

int Mute(const void* player) {
  const Lock lock(TheScript().mutex);
  return AsPlayer(player)->mute;
}

void Later(unsigned milliseconds, std::function<void()> action) {
  const HANDLE thread = StartThread(milliseconds, std::move(action));
  const Lock lock(TheScript().mutex);
  TheScript().threads.push_back(thread);
}

void OnLibraryThread(const std::function<void()>& action) { Join(StartThread(0, action)); }

void JoinThreads() {
  for (;;) {
    std::vector<HANDLE> threads;
    {
      const Lock lock(TheScript().mutex);
      threads.swap(TheScript().threads);
    }
    if (threads.empty()) return;
    for (const HANDLE thread : threads) Join(thread);
  }
}

void WithLock(void* player, const std::function<void()>& action) {
  const std::lock_guard lock(AsPlayer(player)->lock);
  action();
}

int Raise(void* player, int32_t type, uint64_t payload) {
  PlayerObject* const sender = AsPlayer(player);
  const Event event{type, 0, player, {payload, 0, 0, 0}};
  const std::lock_guard delivering(sender->lock);
  int called = 0;
  const std::vector<Listener> listeners = sender->listeners;
  for (const Listener& listener : listeners) {
    if (listener.type != type) continue;
    listener.callback(&event, listener.userData);
    ++called;
  }
  return called;
}

std::vector<int32_t> AttachedTypes(const void* player) {
  const std::lock_guard lock(AsPlayer(player)->lock);
  std::vector<int32_t> types;
  for (const Listener& listener : AsPlayer(player)->listeners) types.push_back(listener.type);
  return types;
}

void WithCallbacks(void* player, const std::function<void(const Callbacks&, void*)>& action) {
  PlayerObject* const sender = AsPlayer(player);
  const std::lock_guard delivering(sender->lock);
  if (sender->callbacks) action(*sender->callbacks, sender->opaque);
}

}  // namespace vantro::published
