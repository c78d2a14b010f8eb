// libvlc's functions. Each records its call, runs the test's action, and returns the scripted result.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <sstream>

#include "devkit/published/script.h"

namespace vantro::published {
namespace {

constexpr int64_t kAbiVersion = 0x040C0000;
constexpr int64_t kNothingToStop = INT32_MIN;  // the result that libvlc_media_player_stop_async was observed to return

struct RealTrack {  // libvlc_media_track_t
  uint32_t codec, originalFourcc;
  int32_t number, type, profile, level;
  void* details;
  uint32_t bitrate, padding;
  const char* language;
  const char* description;
  const char* id;
  bool idStable;
  const char* name;
  bool selected;
};

struct TrackList {
  std::vector<RealTrack> tracks;
};

struct Output {  // libvlc_audio_output_t
  char* name;
  char* description;
  Output* next;
};

std::string Text(const char* text) { return text ? "\"" + std::string(text) + "\"" : "null"; }
std::string Text(const void* pointer) {
  if (!pointer) return "null";
  if (IsLive(pointer)) return static_cast<const Object*>(pointer)->name;
  char text[32];
  std::snprintf(text, sizeof text, "%p", pointer);
  return text;
}
template <typename Number>
std::enable_if_t<std::is_arithmetic_v<Number>, std::string> Text(Number number) {
  std::ostringstream text;
  text << number;
  return text.str();
}

// One call, recorded when it is made. The script's mutex is held from then on, except during the test's action.
class Call {
 public:
  template <typename... Arguments>
  explicit Call(const char* function, const Arguments&... arguments) : function_(function), lock_(TheScript().mutex) {
    std::string list;
    ((list += (list.empty() ? "" : ", ") + Text(arguments)), ...);
    text_ = std::string(function) + "(" + list + ")";
    TheScript().calls.push_back({text_, GetCurrentThreadId()});
    RunAction();
  }

  // Returns whether the object is alive; otherwise records a violation.
  bool Uses(const void* object) {
    if (IsLive(object)) return true;
    TheScript().violations.push_back(text_ + ": not a live object");
    return false;
  }
  int64_t Result(int64_t own) const {
    const auto scripted = TheScript().results.find(function_);
    return scripted == TheScript().results.end() ? own : scripted->second;
  }
  bool Succeeds() const { return Result(1) != 0; }
  const char* TextResult(const char* own) const {
    const auto scripted = TheScript().texts.find(function_);
    return scripted == TheScript().texts.end() ? own : scripted->second.c_str();
  }
  void Violation(const char* text) { TheScript().violations.push_back(text_ + ": " + text); }

 private:
  void RunAction() {
    const auto found = TheScript().actions.find(function_);
    if (found == TheScript().actions.end() || !found->second) return;
    const std::function<void()> action = found->second;
    lock_.unlock();
    action();
    lock_.lock();
  }

  const char* function_;
  std::string text_;
  std::unique_lock<std::mutex> lock_;
};

// A call on a player. It first takes the player's lock, as libvlc does. The memory of a dead player still exists, so
// its lock can be taken.
class PlayerCall {
 public:
  template <typename... Arguments>
  PlayerCall(const char* function, PlayerObject* player, const Arguments&... arguments)
      : lock_(player->lock), call(function, static_cast<const void*>(player), arguments...), alive(call.Uses(player)) {}

 private:
  std::unique_lock<std::recursive_mutex> lock_;

 public:
  Call call;
  bool alive;
};

template <typename T>
T* Make(std::vector<std::unique_ptr<T>>& objects, const char* kind) {
  T* const object = objects.emplace_back(std::make_unique<T>()).get();
  object->name = kind + std::to_string(objects.size());
  return object;
}

void Unreference(Object* object) {
  if (object) --object->references;
}

Media* NewMedia(const char* function, const char* text) {
  Call call(function, text);
  return call.Succeeds() ? Make(TheScript().media, "media") : nullptr;
}

PlayerObject* NewPlayer(Call& call, Instance* instance) {
  if (!call.Uses(instance) || !call.Succeeds()) return nullptr;
  PlayerObject* const player = Make(TheScript().players, "player");
  player->instance = instance;
  ++instance->references;
  return player;
}

}  // namespace
}  // namespace vantro::published

using namespace vantro::published;

// A function on a player whose result does not affect the library.
#define PLAYER_FUNCTION(result, name, own, parameters, ...)                       \
  PUBLISHED_API result name parameters {                                          \
    PlayerCall made(__func__, __VA_ARGS__);                                       \
    return static_cast<result>(made.alive ? made.call.Result(own) : int64_t{-1}); \
  }

extern "C" {

// Instance.

PUBLISHED_API unsigned libvlc_abi_version() { return static_cast<unsigned>(Call(__func__).Result(kAbiVersion)); }
PUBLISHED_API const char* libvlc_get_version() { return Call(__func__).TextResult("4.0.0-published"); }
PUBLISHED_API const char* libvlc_errmsg() { return Call(__func__).TextResult("published error"); }

PUBLISHED_API Instance* libvlc_new(int count, const char* const* arguments) {
  std::string list;
  for (int i = 0; i < count; ++i) {
    if (i > 0) list += " ";
    list += arguments[i] ? arguments[i] : "null";
  }
  Call call(__func__, arguments ? list.c_str() : nullptr);
  return call.Succeeds() ? Make(TheScript().instances, "instance") : nullptr;
}

PUBLISHED_API void libvlc_release(Instance* instance) {
  Call call(__func__, static_cast<const void*>(instance));
  if (call.Uses(instance)) Unreference(instance);
}

PUBLISHED_API Output* libvlc_audio_output_list_get(Instance* instance) {
  Call call(__func__, static_cast<const void*>(instance));
  if (!call.Uses(instance) || !call.Succeeds()) return nullptr;
  Output* first = nullptr;
  for (const std::string& name : TheScript().outputs) first = new Output{strdup(name.c_str()), strdup("text"), first};
  if (first) TheScript().outputLists.insert(first);
  return first;
}

PUBLISHED_API void libvlc_audio_output_list_release(Output* list) {
  Call call(__func__);
  if (TheScript().outputLists.erase(list) == 0) return call.Violation("not a live list");
  while (list) {
    Output* const next = list->next;
    free(list->name);
    free(list->description);
    delete list;
    list = next;
  }
}

// Media.

PUBLISHED_API Media* libvlc_media_new_path(const char* path) { return NewMedia(__func__, path); }
PUBLISHED_API Media* libvlc_media_new_location(const char* location) { return NewMedia(__func__, location); }

PUBLISHED_API void libvlc_media_add_option(Media* media, const char* option) {
  Call call(__func__, static_cast<const void*>(media), option);
  call.Uses(media);
}

PUBLISHED_API void libvlc_media_release(Media* media) {
  Call call(__func__, static_cast<const void*>(media));
  if (call.Uses(media)) Unreference(media);
}

PUBLISHED_API bool libvlc_media_get_stats(Media* media, uint64_t* stats) {
  Call call(__func__, static_cast<const void*>(media));
  if (!call.Uses(media) || !call.Succeeds()) return false;
  for (size_t i = 0; i < 13; ++i) stats[i] = i;
  return true;
}

// Player.

PUBLISHED_API PlayerObject* NewPlayerWithEvents(Instance* instance) {
  Call call("libvlc_media_player_new", static_cast<const void*>(instance));
  return NewPlayer(call, instance);
}

PUBLISHED_API PlayerObject* NewPlayerWithCallbacks(Instance* instance, const Callbacks* callbacks, void* opaque) {
  PlayerObject* player = nullptr;
  {
    Call call("libvlc_media_player_new", static_cast<const void*>(instance));
    player = NewPlayer(call, instance);
  }
  if (!player) return nullptr;
  player->callbacks = callbacks;
  player->opaque = opaque;
  // A library may deliver events before the creator has the player's handle.
  if (callbacks->stateChanged) callbacks->stateChanged(opaque, kNothingSpecial);
  return player;
}

PUBLISHED_API void libvlc_media_player_release(PlayerObject* player) {
  PlayerCall made(__func__, player);
  if (!made.alive) return;
  if (!player->listeners.empty()) made.call.Violation("callbacks are still attached");
  player->callbacks = nullptr;
  Unreference(player->media);
  Unreference(player->instance);
  Unreference(player);
}

PUBLISHED_API void libvlc_media_player_set_media(PlayerObject* player, Media* media) {
  PlayerCall made(__func__, player, static_cast<const void*>(media));
  if (!made.alive) return;
  if (media) ++media->references;
  Unreference(player->media);
  player->media = media;
}

PUBLISHED_API Media* libvlc_media_player_get_media(PlayerObject* player) {
  PlayerCall made(__func__, player);
  if (!made.alive || !player->media) return nullptr;
  ++player->media->references;
  return player->media;
}

PUBLISHED_API void libvlc_media_player_set_hwnd(PlayerObject* player, void* window) {
  PlayerCall made(__func__, player, static_cast<const void*>(window));
}
PUBLISHED_API void libvlc_media_player_pause(PlayerObject* player) { PlayerCall made(__func__, player); }
PUBLISHED_API void libvlc_set_fullscreen(PlayerObject* player, int on) { PlayerCall made(__func__, player, on); }
PUBLISHED_API void libvlc_video_set_scale(PlayerObject* player, float scale) {
  PlayerCall made(__func__, player, scale);
}

PLAYER_FUNCTION(int, libvlc_media_player_play, 0, (PlayerObject * player), player)
PLAYER_FUNCTION(int, libvlc_media_player_stop_async,
                player->state == kNothingSpecial || player->state == kStopped ? kNothingToStop : 0,
                (PlayerObject * player), player)
PLAYER_FUNCTION(bool, libvlc_media_player_is_playing, player->state == kPlaying, (PlayerObject * player), player)
PLAYER_FUNCTION(State, libvlc_media_player_get_state, player->state, (PlayerObject * player), player)
PLAYER_FUNCTION(int64_t, libvlc_media_player_get_length, -1, (PlayerObject * player), player)
PLAYER_FUNCTION(int64_t, libvlc_media_player_get_time, -1, (PlayerObject * player), player)
PLAYER_FUNCTION(int, libvlc_media_player_set_time, 0, (PlayerObject * player, int64_t time, bool fast), player, time,
                fast)
PLAYER_FUNCTION(int, libvlc_get_fullscreen, 0, (PlayerObject * player), player)
PLAYER_FUNCTION(int, libvlc_video_take_snapshot, 0,
                (PlayerObject * player, unsigned number, const char* path, unsigned width, unsigned height), player,
                number, path, width, height)

// Sound.

PUBLISHED_API int libvlc_audio_set_volume(PlayerObject* player, int volume) {
  PlayerCall made(__func__, player, volume);
  if (made.alive) player->volume = volume;
  return static_cast<int>(made.call.Result(0));
}

PUBLISHED_API void libvlc_audio_set_mute(PlayerObject* player, int mute) {
  PlayerCall made(__func__, player, mute);
  if (made.alive) player->mute = mute;
}

PLAYER_FUNCTION(int, libvlc_audio_get_volume, player->volume, (PlayerObject * player), player)
PLAYER_FUNCTION(int, libvlc_audio_get_mute, player->mute, (PlayerObject * player), player)

// Tracks and size.

PUBLISHED_API TrackList* libvlc_media_player_get_tracklist(PlayerObject* player, int32_t type, bool selected) {
  PlayerCall made(__func__, player, type, selected);
  if (!made.alive || player->tracks[type].empty()) return nullptr;
  auto* const list = new TrackList;
  for (const Track& track : player->tracks[type]) {
    RealTrack real{};
    real.number = 7;  // differs from the identity
    real.type = type;
    real.language = track.language;
    real.description = track.description;
    real.id = track.id;
    real.name = track.name;
    list->tracks.push_back(real);
  }
  TheScript().trackLists.insert(list);
  return list;
}

PUBLISHED_API size_t libvlc_media_tracklist_count(const TrackList* list) { return list->tracks.size(); }
PUBLISHED_API RealTrack* libvlc_media_tracklist_at(TrackList* list, size_t index) { return &list->tracks.at(index); }

PUBLISHED_API void libvlc_media_tracklist_delete(TrackList* list) {
  Call call(__func__);
  if (TheScript().trackLists.erase(list) == 0) return call.Violation("not a live list");
  delete list;
}

PUBLISHED_API void libvlc_media_player_select_tracks_by_ids(PlayerObject* player, int32_t type, const char* ids) {
  PlayerCall made(__func__, player, type, ids);
}

PUBLISHED_API void libvlc_media_player_unselect_track_type(PlayerObject* player, int32_t type) {
  PlayerCall made(__func__, player, type);
}

PUBLISHED_API int libvlc_video_get_size(PlayerObject* player, unsigned number, unsigned* width, unsigned* height) {
  PlayerCall made(__func__, player, number);
  if (!made.alive || player->width == 0) return -1;
  *width = player->width;
  *height = player->height;
  return 0;
}

// Events.

PUBLISHED_API PlayerObject* libvlc_media_player_event_manager(PlayerObject* player) {
  PlayerCall made(__func__, player);
  return made.alive && made.call.Succeeds() ? player : nullptr;
}

PUBLISHED_API int libvlc_event_attach(PlayerObject* player, int32_t type, EventCallback callback, void* userData) {
  PlayerCall made(__func__, player, type);
  if (!made.alive || made.call.Result(0) != 0) return -1;
  player->listeners.push_back({type, callback, userData});
  return 0;
}

PUBLISHED_API void libvlc_event_detach(PlayerObject* player, int32_t type, EventCallback callback, void* userData) {
  PlayerCall made(__func__, player, type);
  if (!made.alive || std::erase(player->listeners, Listener{type, callback, userData}) > 0) return;
  std::fprintf(stderr, "libvlc_event_detach: 0x%X is not attached\n", static_cast<unsigned>(type));
  std::fflush(stderr);
  std::abort();  // as libvlc 4 does
}

// Exported by one interface only and never called: the adapter checks for its name.
PUBLISHED_API void libvlc_media_player_set_next_media() {}

}  // extern "C"
