// libvlc's functions. Each records its call, runs the hook, and returns the scripted result.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "devkit/scripted/script.h"

namespace scripted {

namespace {

constexpr unsigned kAbiVersion = 0x040C0000;
constexpr char kVersionText[] = "4.0.0-scripted";
constexpr char kErrorText[] = "scripted error";
constexpr int kFullVolume = 100;

std::string Text(const void* handle) { return TheScript().NameOf(handle); }
std::string Text(const char* text) { return text ? "\"" + std::string(text) + "\"" : "null"; }
std::string Text(int64_t number) { return std::to_string(number); }
std::string Text(int number) { return std::to_string(number); }
std::string Text(unsigned number) { return std::to_string(number); }
std::string Text(bool flag) { return flag ? "1" : "0"; }
std::string Text(float number) {
  char text[32];
  std::snprintf(text, sizeof text, "%g", static_cast<double>(number));
  return text;
}
// The name that libvlc 4's header gives the event, without its prefix. A type that is not listed here appears as a
// number.
std::string EventText(int type) {
  static constexpr const char* kFromMediaChanged[] = {
      "MediaPlayerMediaChanged",    "MediaPlayerNothingSpecial",   "MediaPlayerOpening",
      "MediaPlayerBuffering",       "MediaPlayerPlaying",          "MediaPlayerPaused",
      "MediaPlayerStopped",         "MediaPlayerForward",          "MediaPlayerBackward",
      "MediaPlayerStopping",        "MediaPlayerEncounteredError", "MediaPlayerTimeChanged",
      "MediaPlayerPositionChanged", "MediaPlayerSeekableChanged"};
  constexpr int kMediaChanged = 0x100;
  const int row = type - kMediaChanged;
  if (row >= 0 && row < static_cast<int>(std::size(kFromMediaChanged))) return kFromMediaChanged[row];
  char text[32];
  std::snprintf(text, sizeof text, "0x%X", static_cast<unsigned>(type));
  return text;
}

// A handle that libvlc would dereference must be alive. Any other handle is a violation.
bool IsLive(const libvlc_instance_t* instance) { return TheScript().instances.IsLive(instance); }
bool IsLive(const libvlc_media_player_t* player) { return TheScript().players.IsLive(player); }
bool IsLive(const libvlc_media_t* media) { return TheScript().media.IsLive(media); }

// One call of one function. The constructor records the call. The object holds the script's lock.
class Call {
 public:
  template <typename... Arguments>
  explicit Call(const char* function, const Arguments&... arguments) : function_(function), lock_(TheScript().mutex) {
    Begin(Joined(arguments...));
  }

  // Returns whether the handle is alive, and records a violation if not.
  template <typename Handle>
  bool Uses(Handle* handle) {
    if (IsLive(handle)) return true;
    TheScript().violations.push_back(text_ + ": not a live handle");
    return false;
  }
  // The same for a player. Also holds the player's lock until the end of the call, if the function takes it in libvlc.
  bool Uses(libvlc_media_player_t* player) {
    if (IsLive(player) && TakesPlayerLock(function_, player)) LockPlayer(player);
    return Uses<libvlc_media_player_t>(player);
  }

  int64_t Result(int64_t own, int64_t failure = -1) { return TheScript().NextResult(function_, own, failure); }
  // For functions that create or return an object.
  bool Succeeds() { return Result(1, 0) != 0; }

  const char* TextResult(const char* own) {
    if (TheScript().NextFails(function_)) return nullptr;
    const auto text = TheScript().texts.find(function_);
    if (text == TheScript().texts.end()) return own;
    return text->second ? text->second->c_str() : nullptr;
  }

 private:
  template <typename... Arguments>
  static std::string Joined(const Arguments&... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + Shown(arguments)), ...);
    return text;
  }
  static std::string Shown(const std::string& shown) { return shown; }
  template <typename Argument>
  static std::string Shown(const Argument& argument) {
    return Text(argument);
  }

  // The hook runs without the lock, because it may call the library.
  void Begin(const std::string& arguments) {
    text_ = std::string(function_) + "(" + arguments + ")";
    TheScript().Record(text_);
    const auto hook = TheScript().hooks.find(function_);
    if (hook == TheScript().hooks.end()) return;
    const Hook called = hook->second;
    lock_.unlock();
    called.function(called.userData);
    lock_.lock();
  }

  void LockPlayer(libvlc_media_player_t* player) {
    lock_.unlock();
    CheckCallInEvent(function_, player, text_);
    player->lock.LockFor(text_);
    playerLock_ = std::unique_lock<DeliveryLock>(player->lock, std::adopt_lock);
    lock_.lock();
  }

  const char* function_;
  std::string text_;
  std::unique_lock<DeliveryLock> playerLock_;
  std::unique_lock<std::mutex> lock_;
};

// Waits for a running callback, unless the caller is that callback.
std::unique_lock<DeliveryLock> LockedEvents(libvlc_event_manager_t* events, const std::string& call) {
  events->lock.LockFor(call);
  return std::unique_lock<DeliveryLock>(events->lock, std::adopt_lock);
}

void ReleaseMedia(libvlc_media_t* media) {
  if (media) TheScript().media.Release(media);
}

void ReleaseInstance(libvlc_instance_t* instance) {
  if (instance) TheScript().instances.Release(instance);
}

// In libvlc 4 the media creators take only the string. In libvlc 3 they take the instance and the string.
libvlc_media_t* NewMedia(const char* function, const void* first, const char* second) {
  std::unique_lock<std::mutex> lock(TheScript().mutex);
  const bool withInstance = TheScript().instances.Find(first) != nullptr;
  const std::string arguments =
      withInstance ? Text(first) + ", " + Text(second) : Text(static_cast<const char*>(first));
  lock.unlock();
  Call call(function, arguments);
  if (withInstance && !call.Uses(static_cast<const libvlc_instance_t*>(first))) return nullptr;
  if (!first || !call.Succeeds()) return nullptr;
  return TheScript().media.Make();
}

int64_t PlayerValue(const char* function, libvlc_media_player_t* player, const char* value, int64_t failure) {
  Call call(function, player);
  if (!call.Uses(player)) return failure;
  return call.Result(player->values[value], failure);
}

// A call on a player whose result does not change the state of the library.
template <typename... Arguments>
int PlayerCall(const char* function, libvlc_media_player_t* player, const Arguments&... arguments) {
  std::vector<FollowingEvent> events;
  int result = -1;
  {
    Call call(function, player, arguments...);
    if (!call.Uses(player)) return -1;
    result = static_cast<int>(call.Result(0));
    const auto following = TheScript().following.find(function);
    if (following != TheScript().following.end()) events = following->second;
  }
  if (!events.empty()) RaiseLater(player, events);
  return result;
}

char* Copied(const std::string& text) {
  char* const copy = new char[text.size() + 1];
  std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

libvlc_track_description_t* TrackList(const char* function, libvlc_media_player_t* player) {
  Call call(function, player);
  if (!call.Uses(player) || !call.Succeeds()) return nullptr;
  libvlc_track_description_t* first = nullptr;
  libvlc_track_description_t** end = &first;
  for (const auto& track : player->tracks[function]) {
    *end = new libvlc_track_description_t{track.id, Copied(track.name), nullptr};
    end = &(*end)->next;
  }
  if (first) TheScript().trackLists.insert(first);
  return first;
}

}  // namespace

}  // namespace scripted

using scripted::Call;
using scripted::PlayerCall;
using scripted::PlayerValue;
using scripted::TheScript;

extern "C" {

// Instance.

libvlc_instance_t* libvlc_new(int argc, const char* const* argv) {
  std::string arguments = std::to_string(argc);
  if (!argv) arguments += ", null";
  for (int index = 0; index < argc; ++index) arguments += ", \"" + std::string(argv[index]) + "\"";
  Call call(__func__, arguments);
  return call.Succeeds() ? TheScript().instances.Make() : nullptr;
}

void libvlc_release(libvlc_instance_t* instance) {
  Call call(__func__, static_cast<const void*>(instance));
  if (call.Uses(instance)) scripted::ReleaseInstance(instance);
}

const char* libvlc_errmsg() { return Call(__func__).TextResult(scripted::kErrorText); }

const char* libvlc_get_version() { return Call(__func__).TextResult(scripted::kVersionText); }

unsigned libvlc_abi_version() { return static_cast<unsigned>(Call(__func__).Result(scripted::kAbiVersion, 0)); }

// Media.

libvlc_media_t* libvlc_media_new_path(const void* first, const char* second) {
  return scripted::NewMedia(__func__, first, second);
}

libvlc_media_t* libvlc_media_new_location(const void* first, const char* second) {
  return scripted::NewMedia(__func__, first, second);
}

libvlc_media_t* libvlc_media_new_uri(const void* first, const char* second) {
  return scripted::NewMedia(__func__, first, second);
}

void libvlc_media_add_option(libvlc_media_t* media, const char* option) {
  Call call(__func__, static_cast<const void*>(media), option);
  call.Uses(media);
}

void libvlc_media_release(libvlc_media_t* media) {
  Call call(__func__, static_cast<const void*>(media));
  if (call.Uses(media)) scripted::ReleaseMedia(media);
}

bool libvlc_media_get_stats(libvlc_media_t* media, libvlc_media_stats_t* stats) {
  Call call(__func__, static_cast<const void*>(media));
  if (!call.Uses(media) || call.Result(1, 0) == 0) return false;
  auto known = TheScript().stats.find(media);
  if (known == TheScript().stats.end()) known = TheScript().stats.find(nullptr);
  if (known != TheScript().stats.end()) *stats = known->second;
  return true;
}

// Player.

libvlc_media_player_t* libvlc_media_player_new(libvlc_instance_t* instance) {
  Call call(__func__, static_cast<const void*>(instance));
  if (!call.Uses(instance) || !call.Succeeds()) return nullptr;
  libvlc_media_player_t* const player = TheScript().players.Make();
  player->instance = instance;
  TheScript().instances.Retain(instance);
  player->events.player = player;
  player->values["volume"] = scripted::kFullVolume;
  return player;
}

void libvlc_media_player_release(libvlc_media_player_t* player) {
  Call call(__func__, static_cast<const void*>(player));
  if (!call.Uses(player) || !TheScript().players.Release(player)) return;
  {
    const std::lock_guard<scripted::DeliveryLock> events(player->events.lock);
    player->events.listeners.clear();
  }
  scripted::ReleaseMedia(player->media);
  player->media = nullptr;
  scripted::ReleaseInstance(player->instance);
}

void libvlc_media_player_set_hwnd(libvlc_media_player_t* player, void* hwnd) { PlayerCall(__func__, player, hwnd); }

libvlc_event_manager_t* libvlc_media_player_event_manager(libvlc_media_player_t* player) {
  Call call(__func__, static_cast<const void*>(player));
  return call.Uses(player) && call.Succeeds() ? &player->events : nullptr;
}

void libvlc_media_player_stop(libvlc_media_player_t* player) { PlayerCall(__func__, player); }
int libvlc_media_player_stop_async(libvlc_media_player_t* player) { return PlayerCall(__func__, player); }
int libvlc_media_player_play(libvlc_media_player_t* player) { return PlayerCall(__func__, player); }
void libvlc_media_player_pause(libvlc_media_player_t* player) { PlayerCall(__func__, player); }

bool libvlc_media_player_is_playing(libvlc_media_player_t* player) {
  return PlayerValue(__func__, player, "playing", 0) != 0;
}

int64_t libvlc_media_player_get_length(libvlc_media_player_t* player) {
  return PlayerValue(__func__, player, "length", -1);
}

int64_t libvlc_media_player_get_time(libvlc_media_player_t* player) {
  return PlayerValue(__func__, player, "time", -1);
}

int libvlc_media_player_set_time(libvlc_media_player_t* player, int64_t milliseconds, bool fast) {
  return PlayerCall(__func__, player, milliseconds, fast);
}

libvlc_media_t* libvlc_media_player_get_media(libvlc_media_player_t* player) {
  Call call(__func__, static_cast<const void*>(player));
  if (!call.Uses(player) || !call.Succeeds() || !player->media) return nullptr;
  TheScript().media.Retain(player->media);
  return player->media;
}

void libvlc_media_player_set_media(libvlc_media_player_t* player, libvlc_media_t* media) {
  Call call(__func__, static_cast<const void*>(player), static_cast<const void*>(media));
  if (!call.Uses(player) || (media && !call.Uses(media))) return;
  if (media) TheScript().media.Retain(media);
  scripted::ReleaseMedia(player->media);
  player->media = media;
}

void libvlc_set_fullscreen(libvlc_media_player_t* player, int fullscreen) { PlayerCall(__func__, player, fullscreen); }
int libvlc_get_fullscreen(libvlc_media_player_t* player) { return PlayerCall(__func__, player); }

// Audio.

int libvlc_audio_set_volume(libvlc_media_player_t* player, int percent) {
  const int result = PlayerCall(__func__, player, percent);
  const std::lock_guard<std::mutex> lock(TheScript().mutex);
  if (result == 0 && TheScript().players.IsLive(player)) player->values["volume"] = percent;
  return result;
}

int libvlc_audio_get_volume(libvlc_media_player_t* player) {
  return static_cast<int>(PlayerValue(__func__, player, "volume", -1));
}

void libvlc_audio_set_mute(libvlc_media_player_t* player, int mute) {
  PlayerCall(__func__, player, mute);
  const std::lock_guard<std::mutex> lock(TheScript().mutex);
  if (TheScript().players.IsLive(player)) player->values["mute"] = mute;
}

int libvlc_audio_get_mute(libvlc_media_player_t* player) {
  return static_cast<int>(PlayerValue(__func__, player, "mute", -1));
}

libvlc_track_description_t* libvlc_audio_get_track_description(libvlc_media_player_t* player) {
  return scripted::TrackList(__func__, player);
}

int libvlc_audio_set_track(libvlc_media_player_t* player, int id) { return PlayerCall(__func__, player, id); }

// Video.

void libvlc_video_set_scale(libvlc_media_player_t* player, float factor) { PlayerCall(__func__, player, factor); }

unsigned libvlc_video_get_width(libvlc_media_player_t* player) {
  return static_cast<unsigned>(PlayerValue(__func__, player, "width", 0));
}

unsigned libvlc_video_get_height(libvlc_media_player_t* player) {
  return static_cast<unsigned>(PlayerValue(__func__, player, "height", 0));
}

void libvlc_video_set_viewport(libvlc_media_player_t* player, int left, int top, int width, int height) {
  PlayerCall(__func__, player, left, top, width, height);
}

libvlc_track_description_t* libvlc_video_get_spu_description(libvlc_media_player_t* player) {
  return scripted::TrackList(__func__, player);
}

int libvlc_video_set_spu(libvlc_media_player_t* player, int id) { return PlayerCall(__func__, player, id); }

int libvlc_video_take_snapshot(libvlc_media_player_t* player, unsigned number, const char* path, unsigned width,
                               unsigned height) {
  const int result = PlayerCall(__func__, player, number, path, width, height);
  const std::lock_guard<std::mutex> lock(TheScript().mutex);
  if (result != 0 || !TheScript().hasSnapshot) return result;
  if (FILE* const file = std::fopen(path, "wb")) {
    std::fwrite(TheScript().snapshot.data(), 1, TheScript().snapshot.size(), file);
    std::fclose(file);
  }
  return result;
}

void libvlc_track_description_list_release(libvlc_track_description_t* list) {
  Call call(__func__, std::string(list ? "list" : "null"));
  if (list && TheScript().trackLists.erase(list) == 0) {
    TheScript().violations.push_back("libvlc_track_description_list_release: not a live list");
    return;
  }
  while (list) {
    libvlc_track_description_t* const next = list->next;
    delete[] list->name;
    delete list;
    list = next;
  }
}

// Events.

int libvlc_event_attach(libvlc_event_manager_t* events, int type, libvlc_callback_t callback, void* userData) {
  {
    Call call(__func__, static_cast<const void*>(events->player), scripted::EventText(type));
    if (!call.Uses(events->player) || call.Result(0) != 0) return -1;
  }
  const auto lock = scripted::LockedEvents(events, __func__);
  events->listeners.push_back({type, callback, userData});
  return 0;
}

void libvlc_event_detach(libvlc_event_manager_t* events, int type, libvlc_callback_t callback, void* userData) {
  {
    Call call(__func__, static_cast<const void*>(events->player), scripted::EventText(type));
    if (!call.Uses(events->player)) return;
  }
  const auto lock = scripted::LockedEvents(events, __func__);
  std::erase(events->listeners, libvlc_event_manager_t::Listener{type, callback, userData});
}

}  // extern "C"
