#include "devkit/scripted/script.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

namespace scripted {

namespace {

std::string Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value ? value : "";
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);)
    if (!part.empty()) parts.push_back(part);
  return parts;
}

// Splits "KEY<separator>REST" in two. Without a separator the rest is empty.
std::pair<std::string, std::string> Cut(const std::string& text, char separator) {
  const size_t at = text.find(separator);
  if (at == std::string::npos) return {text, ""};
  return {text.substr(0, at), text.substr(at + 1)};
}

}  // namespace

Script& TheScript() {
  // Never destroyed, because threads of the library may outlive the static objects.
  static Script* const script = new Script;
  return *script;
}

Script::Script() { ReadEnvironment(); }

void Script::ReadEnvironment() {
  callsFile_ = Environment("VANTRO_SCRIPTED_CALLS");
  for (const std::string& entry : Split(Environment("VANTRO_SCRIPTED_FAIL"), ',')) {
    const auto [function, times] = Cut(entry, ':');
    failures[function] = std::atoi(times.c_str());
  }
  for (const std::string& entry : Split(Environment("VANTRO_SCRIPTED_RESULTS"), ';')) {
    const auto [function, values] = Cut(entry, '=');
    for (const std::string& value : Split(values, ','))
      results[function].push_back(std::strtoll(value.c_str(), nullptr, 0));
  }
  for (const std::string& entry : Split(Environment("VANTRO_SCRIPTED_EVENTS"), ';')) {
    const auto [function, events] = Cut(entry, '=');
    for (const std::string& event : Split(events, ',')) {
      const auto [type, value] = Cut(event, ':');
      following[function].push_back(
          {static_cast<int32_t>(std::strtol(type.c_str(), nullptr, 0)), std::atof(value.c_str())});
    }
  }
}

void Script::Reset() {
  calls.clear();
  violations.clear();
  failures.clear();
  results.clear();
  texts.clear();
  hooks.clear();
  following.clear();
  stats.clear();
  snapshot.clear();
  hasSnapshot = false;
  instances.Reset();
  players.Reset();
  media.Reset();
  trackLists.clear();
}

void Script::Record(const std::string& text) {
  calls.push_back({text, GetCurrentThreadId()});
  if (callsFile_.empty()) return;
  if (FILE* const file = std::fopen(callsFile_.c_str(), "a")) {
    std::fprintf(file, "%s\n", text.c_str());
    std::fclose(file);
  }
}

bool Script::NextFails(const char* function) {
  const auto failure = failures.find(function);
  if (failure == failures.end() || failure->second <= 0) return false;
  --failure->second;
  return true;
}

int64_t Script::NextResult(const char* function, int64_t own, int64_t failure) {
  if (NextFails(function)) return failure;
  const auto scripted = results.find(function);
  if (scripted == results.end() || scripted->second.empty()) return own;
  const int64_t value = scripted->second.front();
  if (scripted->second.size() > 1) scripted->second.pop_front();
  return value;
}

std::string Script::NameOf(const void* object) const {
  if (!object) return "null";
  if (const auto* instance = instances.Find(object)) return "instance" + std::to_string(instance->number);
  if (const auto* player = players.Find(object)) return "player" + std::to_string(player->number);
  if (const auto* item = media.Find(object)) return "media" + std::to_string(item->number);
  char text[32];
  std::snprintf(text, sizeof text, "%p", object);
  return text;
}

uint64_t PayloadOf(int32_t type, double value) {
  constexpr int32_t kBuffering = 0x103;
  constexpr int32_t kPositionChanged = 0x10C;
  uint64_t payload = 0;
  if (type == kBuffering) {
    const float narrow = static_cast<float>(value);
    std::memcpy(&payload, &narrow, sizeof narrow);
  } else if (type == kPositionChanged) {
    std::memcpy(&payload, &value, sizeof value);
  } else {
    payload = static_cast<uint64_t>(static_cast<int64_t>(value));
  }
  return payload;
}

int Deliver(libvlc_media_player_t* player, int32_t type, uint64_t payload) {
  const libvlc_event_t event{type, player, {payload, 0, 0, 0}};
  auto& events = player->events;
  const std::lock_guard<DeliveryLock> playing(player->lock);
  const std::lock_guard<DeliveryLock> delivering(events.lock);
  const DeliveryScope here(player);
  int called = 0;
  const auto listeners = events.listeners;  // a callback may detach itself
  for (const auto& listener : listeners) {
    if (listener.type != type) continue;
    listener.callback(&event, listener.userData);
    ++called;
  }
  return called;
}

void RaiseLater(libvlc_media_player_t* player, std::vector<FollowingEvent> events) {
  struct Work {
    libvlc_media_player_t* player;
    std::vector<FollowingEvent> events;
  };
  const auto run = [](void* argument) -> DWORD {
    const std::unique_ptr<Work> work(static_cast<Work*>(argument));
    for (const FollowingEvent& event : work->events)
      Deliver(work->player, event.type, PayloadOf(event.type, event.value));
    return 0;
  };
  const HANDLE thread = CreateThread(nullptr, 0, run, new Work{player, std::move(events)}, 0, nullptr);
  if (thread) CloseHandle(thread);
}

}  // namespace scripted
