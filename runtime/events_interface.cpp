// libvlc 4 with event managers: the interface that the host is written for.
#include <iterator>

#include "runtime/interface.h"
#include "runtime/player.h"

namespace vantro::runtime {
namespace {

struct {
  RealPlayer* (*libvlc_media_player_new)(Instance*);
  EventManager* (*libvlc_media_player_event_manager)(RealPlayer*);
  int (*libvlc_event_attach)(EventManager*, int, EventCallback, void*);
  void (*libvlc_event_detach)(EventManager*, int, EventCallback, void*);
} functions;

constexpr EventType kWatched[] = {kMediaChanged,    kNothingSpecial,  kOpening,   kBuffering,        kPlaying,
                                  kPaused,          kStopped,         kStopping,  kEncounteredError, kTimeChanged,
                                  kPositionChanged, kSeekableChanged, kEsSelected};

template <typename Function>
const char* Fill(Lookup find, const char* name, Function* slot) {
  *slot = reinterpret_cast<Function>(find(name));
  return *slot ? nullptr : name;
}

const char* Resolve(Lookup find) {
  const char* missing = nullptr;
  const auto need = [&](const char* name, auto* slot) {
    const char* const absent = Fill(find, name, slot);
    if (absent && !missing) missing = absent;
  };
  need("libvlc_media_player_new", &functions.libvlc_media_player_new);
  need("libvlc_media_player_event_manager", &functions.libvlc_media_player_event_manager);
  need("libvlc_event_attach", &functions.libvlc_event_attach);
  need("libvlc_event_detach", &functions.libvlc_event_detach);
  return missing;
}

// One of libvlc's threads, or the thread that calls set_media on an idle player.
void OnEvent(const Event* event, void* player) { static_cast<Player*>(player)->Deliver(*event); }

void Detach(EventManager* manager, size_t count, Player* player) {
  for (size_t i = 0; i < count; ++i) functions.libvlc_event_detach(manager, kWatched[i], OnEvent, player);
}

// Every event is watched from the start: the adapter follows the state by them, and it calls the host's callbacks
// itself in both interfaces. A library that refuses one gives no player, since detaching what isn't attached aborts.
RealPlayer* NewPlayer(Instance* instance, Player* player) {
  RealPlayer* const real = functions.libvlc_media_player_new(instance);
  EventManager* const manager = real ? functions.libvlc_media_player_event_manager(real) : nullptr;
  for (size_t i = 0; manager && i < std::size(kWatched); ++i) {
    if (functions.libvlc_event_attach(manager, kWatched[i], OnEvent, player) == 0) continue;
    Detach(manager, i, player);
    Real().functions.libvlc_media_player_release(real);
    return nullptr;
  }
  if (real && !manager) Real().functions.libvlc_media_player_release(real);
  return manager ? real : nullptr;
}

void EndEvents(Player* player) {
  Detach(functions.libvlc_media_player_event_manager(player->real()), std::size(kWatched), player);
}

int64_t Same(int64_t milliseconds) { return milliseconds; }

}  // namespace

const Interface& EventsInterface() {
  static constexpr Interface table = {
      .name = "event managers, milliseconds",
      .mark = "libvlc_media_player_event_manager",
      .resolve = Resolve,
      .newPlayer = NewPlayer,
      .endEvents = EndEvents,
      .toReal = Same,
      .toHost = Same,
  };
  return table;
}

}  // namespace vantro::runtime
