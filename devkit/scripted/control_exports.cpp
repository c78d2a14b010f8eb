// The control functions of scripted_control.h.
#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "devkit/scripted/script.h"

using scripted::Script;
using scripted::TheScript;

namespace {

using Lock = std::lock_guard<std::mutex>;

size_t CopyText(const std::string& text, char* buffer, size_t size) {
  if (buffer && size > 0) {
    const size_t length = std::min(text.size(), size - 1);
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
  }
  return text.size();
}

libvlc_media_player_t* Player(const void* handle) {
  Script& script = TheScript();
  return script.players.IsLive(handle) ? const_cast<libvlc_media_player_t*>(script.players.Find(handle)) : nullptr;
}

struct Storm {
  libvlc_media_player_t* player;
  std::vector<int32_t> types;
};

std::mutex stormMutex;
std::vector<HANDLE> stormThreads;
std::atomic<bool> stormStops{false};
std::atomic<int64_t> stormDeliveries{0};

DWORD WINAPI RunStorm(void* argument) {
  const std::unique_ptr<Storm> storm(static_cast<Storm*>(argument));
  for (size_t turn = 0; !stormStops; ++turn) {
    const int32_t type = storm->types[turn % storm->types.size()];
    stormDeliveries += scripted::Deliver(storm->player, type, scripted::PayloadOf(type, static_cast<double>(turn)));
  }
  return 0;
}

struct SingleEvent {
  libvlc_media_player_t* player;
  int32_t type;
  uint64_t payload;
  int called;
};

DWORD WINAPI RaiseOne(void* argument) {
  SingleEvent* const event = static_cast<SingleEvent*>(argument);
  event->called = scripted::Deliver(event->player, event->type, event->payload);
  return 0;
}

}  // namespace

extern "C" {

void ScriptedReset() {
  ScriptedStopStorms();
  const Lock lock(TheScript().mutex);
  TheScript().Reset();
}

void ScriptedSetStrict(int32_t strict) { scripted::SetStrict(strict != 0); }

int32_t ScriptedCallCount() {
  const Lock lock(TheScript().mutex);
  return static_cast<int32_t>(TheScript().calls.size());
}

size_t ScriptedCall(int32_t index, char* buffer, size_t size, uint32_t* threadId) {
  const Lock lock(TheScript().mutex);
  const auto& calls = TheScript().calls;
  if (index < 0 || static_cast<size_t>(index) >= calls.size()) return CopyText("", buffer, size);
  const auto& call = calls[static_cast<size_t>(index)];
  if (threadId) *threadId = call.threadId;
  return CopyText(call.text, buffer, size);
}

void ScriptedClearCalls() {
  const Lock lock(TheScript().mutex);
  TheScript().calls.clear();
}

void ScriptedOnCall(const char* function, ScriptedHook hook, void* userData) {
  const Lock lock(TheScript().mutex);
  if (hook) {
    TheScript().hooks[function] = {hook, userData};
  } else {
    TheScript().hooks.erase(function);
  }
}

void ScriptedSetResults(const char* function, const int64_t* values, int32_t count) {
  const Lock lock(TheScript().mutex);
  TheScript().results[function].assign(values, values + count);
}

void ScriptedSetText(const char* function, const char* text) {
  const Lock lock(TheScript().mutex);
  TheScript().texts[function] = text ? std::make_unique<std::string>(text) : nullptr;
}

void ScriptedFail(const char* function, int32_t times) {
  const Lock lock(TheScript().mutex);
  TheScript().failures[function] = times;
}

void ScriptedSetPlayerValue(const void* player, const char* value, int64_t number) {
  const Lock lock(TheScript().mutex);
  if (auto* const known = Player(player)) known->values[value] = number;
}

int64_t ScriptedPlayerValue(const void* player, const char* value) {
  const Lock lock(TheScript().mutex);
  auto* const known = Player(player);
  return known ? known->values[value] : 0;
}

void ScriptedSetTracks(const void* player, const char* function, const int32_t* ids, const char* const* names,
                       int32_t count) {
  const Lock lock(TheScript().mutex);
  auto* const known = Player(player);
  if (!known) return;
  auto& tracks = known->tracks[function];
  tracks.clear();
  for (int32_t index = 0; index < count; ++index) tracks.push_back({ids[index], names[index]});
}

void ScriptedSetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers) {
  const Lock lock(TheScript().mutex);
  libvlc_media_stats_t stats{};
  stats.displayed_pictures = displayedPictures;
  stats.played_abuffers = playedAudioBuffers;
  TheScript().stats[media] = stats;
}

void ScriptedSetSnapshot(const void* bytes, size_t size) {
  const Lock lock(TheScript().mutex);
  const auto* const first = static_cast<const unsigned char*>(bytes);
  TheScript().snapshot.assign(first, first + size);
  TheScript().hasSnapshot = true;
}

void ScriptedLiveObjects(ScriptedObjects* objects) {
  const Lock lock(TheScript().mutex);
  Script& script = TheScript();
  *objects = {script.instances.LiveCount(), script.players.LiveCount(), script.media.LiveCount(),
              static_cast<int32_t>(script.trackLists.size()), 0};
  for (const libvlc_media_player_t* player : script.players.Live())
    objects->attached_events += static_cast<int32_t>(player->events.listeners.size());
}

int32_t ScriptedViolationCount() {
  const Lock lock(TheScript().mutex);
  return static_cast<int32_t>(TheScript().violations.size());
}

size_t ScriptedViolation(int32_t index, char* buffer, size_t size) {
  const Lock lock(TheScript().mutex);
  const auto& violations = TheScript().violations;
  const bool known = index >= 0 && static_cast<size_t>(index) < violations.size();
  return CopyText(known ? violations[static_cast<size_t>(index)] : "", buffer, size);
}

void* ScriptedObject(const char* name) {
  const Lock lock(TheScript().mutex);
  const std::string text = name;
  const size_t digits = text.find_first_of("0123456789");
  if (digits == std::string::npos) return nullptr;
  const std::string kind = text.substr(0, digits);
  const int number = std::atoi(text.c_str() + digits);
  if (kind == "instance") return TheScript().instances.Numbered(number);
  if (kind == "player") return TheScript().players.Numbered(number);
  if (kind == "media") return TheScript().media.Numbered(number);
  return nullptr;
}

size_t ScriptedObjectName(const void* object, char* buffer, size_t size) {
  const Lock lock(TheScript().mutex);
  return CopyText(TheScript().NameOf(object), buffer, size);
}

void* ScriptedMediaOf(const void* player) {
  const Lock lock(TheScript().mutex);
  auto* const known = Player(player);
  return known ? known->media : nullptr;
}

int32_t ScriptedAttached(const void* player, int32_t index, int32_t* type, ScriptedCallback* callback,
                         void** userData) {
  libvlc_media_player_t* known = nullptr;
  {
    const Lock lock(TheScript().mutex);
    known = Player(player);
  }
  if (!known) return 0;
  const std::lock_guard<scripted::DeliveryLock> lock(known->events.lock);
  const auto& listeners = known->events.listeners;
  if (index < 0 || static_cast<size_t>(index) >= listeners.size()) return 0;
  const auto& listener = listeners[static_cast<size_t>(index)];
  *type = listener.type;
  *callback = reinterpret_cast<ScriptedCallback>(listener.callback);
  *userData = listener.userData;
  return 1;
}

int32_t ScriptedRaise(const void* player, int32_t type, uint64_t payload) {
  SingleEvent event{nullptr, type, payload, 0};
  {
    const Lock lock(TheScript().mutex);
    event.player = Player(player);
  }
  if (!event.player) return 0;
  const HANDLE thread = CreateThread(nullptr, 0, RaiseOne, &event, 0, nullptr);
  if (!thread) return 0;
  WaitForSingleObject(thread, INFINITE);
  CloseHandle(thread);
  return event.called;
}

void ScriptedStartStorm(const void* player, int32_t threads, const int32_t* types, int32_t count) {
  libvlc_media_player_t* known = nullptr;
  {
    const Lock lock(TheScript().mutex);
    known = Player(player);
  }
  if (!known || count <= 0) return;
  const Lock lock(stormMutex);
  for (int32_t index = 0; index < threads; ++index) {
    auto storm = std::make_unique<Storm>(Storm{known, std::vector<int32_t>(types, types + count)});
    const HANDLE thread = CreateThread(nullptr, 0, RunStorm, storm.get(), 0, nullptr);
    if (!thread) continue;
    storm.release();
    stormThreads.push_back(thread);
  }
}

int64_t ScriptedStopStorms() {
  const Lock lock(stormMutex);
  stormStops = true;
  for (const HANDLE thread : stormThreads) {
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  }
  stormThreads.clear();
  stormStops = false;
  return stormDeliveries.exchange(0);
}

}  // extern "C"
