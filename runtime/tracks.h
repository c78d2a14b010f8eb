// Track lists as libvlc 3 had them, made from the track lists of libvlc 4.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

// The id of the entry that means "no track".
inline constexpr int kNoTrack = -1;

// The numbers of one player's tracks of one type. libvlc 4 identifies a track by a text, the host by a number. A new
// text gets the next number, from 0 on, and keeps it for the player's life, whatever media it plays. Thread-safe.
class TrackNumbers {
 public:
  int NumberOf(const char* id);

 private:
  std::mutex lock_;
  std::vector<std::string> ids_;
};

// The text that users see for a track: its name, else its language and description, else its place in the list, from
// 1 on.
std::string ReadableName(const Track& track, size_t place);

// The list of a player's tracks: the entry kNoTrack, then one entry a track in the library's order. Never null: a list
// without tracks has the first entry alone. The caller frees it with FreeTrackDescriptions. Any thread.
TrackDescription* DescribeTracks(RealPlayer* real, TrackType type, TrackNumbers* numbers);
void FreeTrackDescriptions(TrackDescription* list);

// Selects the track of the number, or none with kNoTrack. Returns 0, or -1 when the player has no such track now. It
// also works when no list was requested before.
int SelectTrack(RealPlayer* real, TrackType type, TrackNumbers* numbers, int number);

}  // namespace vantro::runtime
