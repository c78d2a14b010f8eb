// The track lists of libvlc 3's manner over the track lists of libvlc 4.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "runtime/libvlc_abi.h"

namespace vantro::runtime {

// The id of the entry that stands for no track.
inline constexpr int kNoTrack = -1;

// The numbers of one player's tracks of one type. Libvlc 4 names a track by a text, the host by a number. A number is
// given at the first sight of the text, from 0 on, and holds for the player's life, whatever media it plays. Any
// thread.
class TrackNumbers {
 public:
  int NumberOf(const char* id);

 private:
  std::mutex lock_;
  std::vector<std::string> ids_;
};

// What a person reads for a track: its name, else its language and description, else its place in the list, from 1 on.
std::string ReadableName(const Track& track, size_t place);

// The list of a player's tracks: the entry kNoTrack, then one entry a track in the library's order. Never null: a list
// without tracks has the first entry alone. The caller frees it with FreeTrackDescriptions. Any thread.
TrackDescription* DescribeTracks(RealPlayer* real, TrackType type, TrackNumbers* numbers);
void FreeTrackDescriptions(TrackDescription* list);

// Selects the track of the number, or none with kNoTrack. Returns 0, or -1 when the player has no such track now. No
// list needs to have been asked for before.
int SelectTrack(RealPlayer* real, TrackType type, TrackNumbers* numbers, int number);

}  // namespace vantro::runtime
