// One player as the host sees it, over one player of the real library.
//
// The host's handle is the address of this object, found in a list of living players, so that a call with a handle that
// was released is ignored instead of reaching freed memory.
#pragma once

#include <atomic>
#include <memory>

#include "runtime/event_list.h"
#include "runtime/libvlc_abi.h"
#include "runtime/sound.h"
#include "runtime/tracks.h"

namespace vantro::runtime {

// Aligned as a whole, so that every compiler loads and stores the two in one instruction.
struct alignas(8) PictureSize {
  unsigned width = 0;  // pixels
  unsigned height = 0;
};

class Player : public std::enable_shared_from_this<Player> {
 public:
  // Null when the library makes none. Any thread but libvlc's.
  static PlayerHandle* New(Instance* instance);

  // The living player of a handle; null for null and for a released one. Any thread. The object lives as long as the
  // result, even when another thread releases the player.
  static std::shared_ptr<Player> Find(const void* handle);

  // Stops the player, closes its events and releases the real player. The library's release can wait longer than a stop
  // may: from inside an event, and for a player that doesn't stop. In these cases another thread calls it.
  static void Release(PlayerHandle* handle);

  Player();
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  RealPlayer* real() const { return real_.load(); }
  EventList& events() { return events_; }
  Sound& sound() { return sound_; }
  TrackNumbers& audioTracks() { return audioTracks_; }
  TrackNumbers& textTracks() { return textTracks_; }

  // An event of the real player, on the thread that raised it: one of libvlc's, or the one that calls set_media.
  void Deliver(Event event);

  // The size of the first video, 0 by 0 when there is none. Any thread. Inside an event of another player it is the
  // size that was known at this player's last event, because a call of the library could deadlock (InEventOfAnother).
  // The host asks all tiles for their sizes inside the event of one.
  PictureSize VideoSize();

  // Any thread. Without a window the library would open one itself. The media then gets an option to show nothing.
  void SetWindow(void* window);
  void SetMedia(Media* media);
  int Play();

  // Stops and waits until the player is at rest, for kLongestStop at most (stop.h). From inside an event it doesn't
  // wait.
  //
  // The host gets one Stopped for each stop that comes to rest. The library sends none when there was nothing to stop.
  // Then it is delivered here, on the calling thread. The reason: the host hides the Stopped of each stop that it makes
  // for itself, and if none came, it would hide the end of the next stream.
  void Stop();

 private:
  // The stop and its wait. Returns whether the player is at rest.
  bool ComeToRest(unsigned stopsBefore);
  void ReleaseReal();
  void ShowNothing(Media* media);
  bool AtRest(unsigned stopsBefore, unsigned long long waited) const;

  std::atomic<RealPlayer*> real_{nullptr};  // null until the library has returned it; events may come before
  EventList events_;
  Sound sound_;
  TrackNumbers audioTracks_;
  TrackNumbers textTracks_;

  std::atomic<void*> window_{nullptr};
  std::atomic<bool> showsNothing_{false};  // the current media has the option to show nothing

  std::atomic<PictureSize> lastSize_{PictureSize{}};
  std::atomic<bool> released_{false};
  std::atomic<unsigned> stops_{0};           // Stopped events delivered
  std::atomic<bool> startIsPending_{false};  // play was called, and no event has followed yet
  void* changed_;                            // event object: set with each Stopped
};

}  // namespace vantro::runtime
