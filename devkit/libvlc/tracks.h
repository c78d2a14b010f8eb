// Lists of a media's tracks in libvlc 4's layout, made from libvlc 3's tracks of the playing media.
#pragma once

#include <atomic>
#include <string>
#include <vector>

#include "libvlc4_abi.h"

struct libvlc_media_player_t;
struct libvlc_media_t;

namespace vantro::devlib {

// A track with a reference count. The program's handle is the address of `face`. The creator has one reference.
class TrackObject {
 public:
  static TrackObject* Of(void* track) { return static_cast<TrackObject*>(track); }
  void Retain() { references_.fetch_add(1, std::memory_order_relaxed); }
  void Release();

  Track face{};  // must be the first member

 private:
  friend class TrackList;
  std::atomic<int> references_{1};
  std::string id_, language_, description_, name_;
  union {
    struct {
      unsigned channels, rate;
    } audio;
    struct {
      unsigned height, width, aspectNumber, aspectBase, rateNumber, rateBase;
      int orientation, projection;
      float pose[4];
      int multiview;
    } video;
    struct {
      const char* encoding;
    } text;
  } details_{};
};

class TrackList {
 public:
  // Returns the tracks of one kind of `media`, which `player` plays. Never null; may be empty.
  static TrackList* Make(libvlc_media_player_t* player, libvlc_media_t* media, TrackType type, bool selectedOnly);
  ~TrackList();

  size_t count() const { return tracks_.size(); }
  // Returns null beyond the end. The list owns the track.
  TrackObject* at(size_t index) const { return index < tracks_.size() ? tracks_[index] : nullptr; }

 private:
  std::vector<TrackObject*> tracks_;
};

// Returns libvlc 3's number of the selected track of a kind, -1 for none.
int SelectedTrack(libvlc_media_player_t* player, TrackType type);
// Selects the track with that number; -1 unselects.
void SelectTrack(libvlc_media_player_t* player, TrackType type, int number);
// Returns the number in the first text id of this kind in a list such as "audio/1,audio/2", -1 for none.
int NumberOfTrack(TrackType type, const char* ids);

}  // namespace vantro::devlib
