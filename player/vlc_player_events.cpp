// Handling of libvlc's events. Everything here runs on libvlc's threads.
#include "common/log.h"
#include "player/player_events.h"
#include "player/vlc_player.h"

namespace vantro {

void VLCPlayer::VlcEventCallback(const libvlc_event_t* event, void* userData) {
  if (!userData) return;
  static_cast<VLCPlayer*>(userData)->ProcessVLCEvent(event);
}

void VLCPlayer::ProcessVLCEvent(const libvlc_event_t* event) {
  const PlayerEvent* const known = FindPlayerEvent(event->type);
  if (!known) return;
  const ReaderEpochs::Reader reader(eventReaders_);
  if (known->type == player_event::kStopped && suppressStoppedEvent_.exchange(false, std::memory_order_relaxed)) {
    StopStallWatchdog();
    return;
  }
  const EventArgumentText argument(known->argument, *event);
  eventCallback_(known->method, argument.c_str());
  Perform(known->effect);
}

void VLCPlayer::Perform(EventEffect effect) {
  switch (effect) {
    case EventEffect::kNone:
      break;
    case EventEffect::kPlaying:
      if (IsMultiViewMode()) {
        LOG_DEBUG("[ProcessVLCEvent] Playing event - calling UpdateMultiViewScaling");
        UpdateMultiViewScaling();
      }
      StartStallWatchdog();
      break;
    case EventEffect::kMediaChanged:
      if (IsMultiViewMode()) {
        LOG_DEBUG("[ProcessVLCEvent] MediaChanged event - calling UpdateMultiViewScaling");
        UpdateMultiViewScaling();
      }
      break;
    case EventEffect::kStopWatchdog:
      StopStallWatchdog();
      break;
  }
}

}  // namespace vantro
