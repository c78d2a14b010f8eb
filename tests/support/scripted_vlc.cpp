#include "tests/support/scripted_vlc.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>

namespace vantro::test {

namespace {

// Returns a control function of the loaded library. Ends the program when the scripted library is not beside it.
template <typename Function>
Function* Resolve(const char* name) {
  const auto address = GetProcAddress(GetModuleHandleA("libvlc.dll"), name);
  if (!address) {
    std::fprintf(stderr, "libvlc.dll is not the scripted library: it has no %s\n", name);
    std::abort();
  }
  return reinterpret_cast<Function*>(address);
}

#define CONTROL(name) (*Resolve<decltype(name)>(#name))

// Reads a text through a control function that copies it and returns its length.
template <typename Copy>
std::string ReadText(const Copy& copy) {
  std::string text(copy(nullptr, 0), '\0');
  copy(text.data(), text.size() + 1);
  return text;
}

bool IsCallOf(const std::string& call, const std::string& function) {
  return call.compare(0, function.size() + 1, function + "(") == 0;
}

std::string CallAt(int index, uint32_t* threadId) {
  return ReadText([&](char* buffer, size_t size) { return CONTROL(ScriptedCall)(index, buffer, size, threadId); });
}

void* ObjectNamed(const char* kind, int number) {
  return CONTROL(ScriptedObject)((kind + std::to_string(number)).c_str());
}

}  // namespace

ScriptedVlc::ScriptedVlc() {
  CONTROL(ScriptedSetStrict)(1);
  Reset();
}

ScriptedVlc::~ScriptedVlc() {
  for (const std::string& violation : Violations()) ADD_FAILURE() << violation;
  const ScriptedObjects live = Live();
  if (!expectLeaks_ && (live.instances || live.players || live.media || live.track_lists)) {
    ADD_FAILURE() << "left alive: " << live.instances << " instances, " << live.players << " players, " << live.media
                  << " media, " << live.track_lists << " track lists";
  }
  Reset();
}

void ScriptedVlc::Reset() {
  CONTROL(ScriptedReset)();
  actions_.clear();
}

std::vector<std::string> ScriptedVlc::Calls() const {
  std::vector<std::string> calls;
  const int count = CONTROL(ScriptedCallCount)();
  for (int index = 0; index < count; ++index) calls.push_back(CallAt(index, nullptr));
  return calls;
}

std::vector<std::string> ScriptedVlc::CallsOf(const std::string& function) const {
  std::vector<std::string> calls = Calls();
  std::erase_if(calls, [&](const std::string& call) { return !IsCallOf(call, function); });
  return calls;
}

std::vector<uint32_t> ScriptedVlc::ThreadsOf(const std::string& function) const {
  std::vector<uint32_t> threads;
  const int count = CONTROL(ScriptedCallCount)();
  for (int index = 0; index < count; ++index) {
    uint32_t thread = 0;
    if (IsCallOf(CallAt(index, &thread), function)) threads.push_back(thread);
  }
  return threads;
}

void ScriptedVlc::ClearCalls() { CONTROL(ScriptedClearCalls)(); }

void ScriptedVlc::OnCall(const std::string& function, std::function<void()> action) {
  auto& kept = actions_[function];
  if (!action) {
    CONTROL(ScriptedOnCall)(function.c_str(), nullptr, nullptr);
    kept.reset();
    return;
  }
  kept = std::make_unique<std::function<void()>>(std::move(action));
  const auto run = [](void* userData) { (*static_cast<std::function<void()>*>(userData))(); };
  CONTROL(ScriptedOnCall)(function.c_str(), run, kept.get());
}

void ScriptedVlc::SetResults(const std::string& function, const std::vector<int64_t>& values) {
  CONTROL(ScriptedSetResults)(function.c_str(), values.data(), static_cast<int32_t>(values.size()));
}

void ScriptedVlc::SetText(const std::string& function, const char* text) {
  CONTROL(ScriptedSetText)(function.c_str(), text);
}

void ScriptedVlc::Fail(const std::string& function, int times) { CONTROL(ScriptedFail)(function.c_str(), times); }

void ScriptedVlc::SetSize(const void* player, int width, int height) {
  SetValue(player, "width", width);
  SetValue(player, "height", height);
}

void ScriptedVlc::SetAudioTracks(const void* player, const std::vector<ScriptedTrack>& tracks) {
  SetTracks(player, "libvlc_audio_get_track_description", tracks);
}

void ScriptedVlc::SetSpuTracks(const void* player, const std::vector<ScriptedTrack>& tracks) {
  SetTracks(player, "libvlc_video_get_spu_description", tracks);
}

void ScriptedVlc::SetTracks(const void* player, const char* function, const std::vector<ScriptedTrack>& tracks) {
  std::vector<int32_t> ids;
  std::vector<const char*> names;
  for (const ScriptedTrack& track : tracks) {
    ids.push_back(track.id);
    names.push_back(track.name.c_str());
  }
  CONTROL(ScriptedSetTracks)(player, function, ids.data(), names.data(), static_cast<int32_t>(tracks.size()));
}

void ScriptedVlc::SetValue(const void* player, const char* value, int64_t number) {
  CONTROL(ScriptedSetPlayerValue)(player, value, number);
}

int64_t ScriptedVlc::Value(const void* player, const char* value) const {
  return CONTROL(ScriptedPlayerValue)(player, value);
}

void ScriptedVlc::SetStats(const void* media, uint64_t displayedPictures, uint64_t playedAudioBuffers) {
  CONTROL(ScriptedSetStats)(media, displayedPictures, playedAudioBuffers);
}

void ScriptedVlc::SetSnapshot(const std::string& bytes) { CONTROL(ScriptedSetSnapshot)(bytes.data(), bytes.size()); }

libvlc_media_player_t* ScriptedVlc::Player(int number) const {
  return static_cast<libvlc_media_player_t*>(ObjectNamed("player", number));
}

libvlc_media_t* ScriptedVlc::Media(int number) const {
  return static_cast<libvlc_media_t*>(ObjectNamed("media", number));
}

libvlc_instance_t* ScriptedVlc::Instance(int number) const {
  return static_cast<libvlc_instance_t*>(ObjectNamed("instance", number));
}

libvlc_media_t* ScriptedVlc::MediaOf(const void* player) const {
  return static_cast<libvlc_media_t*>(CONTROL(ScriptedMediaOf)(player));
}

std::string ScriptedVlc::Name(const void* handle) const {
  return ReadText([&](char* buffer, size_t size) { return CONTROL(ScriptedObjectName)(handle, buffer, size); });
}

ScriptedObjects ScriptedVlc::Live() const {
  ScriptedObjects objects{};
  CONTROL(ScriptedLiveObjects)(&objects);
  return objects;
}

std::vector<std::string> ScriptedVlc::Violations() const {
  std::vector<std::string> violations;
  const int count = CONTROL(ScriptedViolationCount)();
  for (int index = 0; index < count; ++index) {
    violations.push_back(
        ReadText([&](char* buffer, size_t size) { return CONTROL(ScriptedViolation)(index, buffer, size); }));
  }
  return violations;
}

std::vector<ScriptedAttachment> ScriptedVlc::Attached(const void* player) const {
  std::vector<ScriptedAttachment> attachments;
  int32_t type = 0;
  ScriptedCallback callback = nullptr;
  void* userData = nullptr;
  for (int index = 0; CONTROL(ScriptedAttached)(player, index, &type, &callback, &userData); ++index)
    attachments.push_back({type, reinterpret_cast<void*>(callback), userData});
  return attachments;
}

std::vector<int> ScriptedVlc::AttachedTypes(const void* player) const {
  std::vector<int> types;
  for (const ScriptedAttachment& attachment : Attached(player)) types.push_back(attachment.type);
  return types;
}

int ScriptedVlc::Raise(const void* player, int type, double value) {
  constexpr int kBuffering = 0x103;
  constexpr int kPositionChanged = 0x10C;
  uint64_t payload = 0;
  if (type == kBuffering) {
    const float level = static_cast<float>(value);
    std::memcpy(&payload, &level, sizeof level);
  } else if (type == kPositionChanged) {
    std::memcpy(&payload, &value, sizeof value);
  } else {
    payload = static_cast<uint64_t>(static_cast<int64_t>(value));
  }
  return CONTROL(ScriptedRaise)(player, type, payload);
}

int ScriptedVlc::RaiseTime(const void* player, int64_t milliseconds) {
  constexpr int kTimeChanged = 0x10B;
  return CONTROL(ScriptedRaise)(player, kTimeChanged, static_cast<uint64_t>(milliseconds));
}

void ScriptedVlc::StartStorm(const void* player, int threads, const std::vector<int>& types) {
  const std::vector<int32_t> numbers(types.begin(), types.end());
  CONTROL(ScriptedStartStorm)(player, threads, numbers.data(), static_cast<int32_t>(numbers.size()));
}

int64_t ScriptedVlc::StopStorms() { return CONTROL(ScriptedStopStorms)(); }

}  // namespace vantro::test
