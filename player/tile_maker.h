// One tile of the grid: makes its window and its player, opens streams on it, ends it. Which tiles there are, and which
// of them is active, is the grid's business.
//
// Main thread.
#pragma once

#include <windows.h>

#include <atomic>
#include <string>

#include "player/libvlc_functions.h"
#include "player/multi_view_player.h"
#include "player/player_handle.h"
#include "player/vlc_instance.h"

namespace vantro {

// Who hears the events of a player.
struct EventListener {
  libvlc_callback_t callback;
  void* userData;
};

class TileMaker {
 public:
  // Both are borrowed and outlive this. The parent window holds the tiles.
  TileMaker(const VlcInstance& instance, const std::atomic<HWND>& parentWindow, EventListener listener)
      : instance_(instance), parentWindow_(parentWindow), listener_(listener) {}
  TileMaker(const TileMaker&) = delete;
  TileMaker& operator=(const TileMaker&) = delete;

  // A window for a tile, at a place of no meaning. Null when the system cannot serve.
  HWND CreateTileWindow() const;
  // A silent player that plays the URL in the window. Null, with the reason in the log, when none can be made; a media
  // that can't be made is no failure.
  VlcMediaPlayerPtr CreateTilePlayer(HWND window, const std::string& url) const;
  // Listens to a tile's Playing and MediaChanged, and to nothing else of it. Nothing detaches them.
  void AttachEventsToPlayer(libvlc_media_player_t* player) const;
  // Plays another stream in the tile and gives it the stream's names. The library must have the functions for it.
  void ReplaceTileStream(const LibVlcFunctions& vlc, MultiViewPlayer& tile, const std::string& url,
                         const std::string& name) const;
  // Opens the URL anew on a tile's wedged player. Does nothing when the library lacks a function for it.
  void RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) const;
  // Stops a tile's player and destroys its window, unless it is the original tile. The player is released with the
  // record.
  static void DestroyPlayerWindow(MultiViewPlayer& record);

 private:
  // Opens the URL on a tile's player, without stopping or playing it. A media that can't be made leaves the old one.
  void OpenOnTile(const LibVlcFunctions& vlc, libvlc_media_player_t* player, const std::string& url) const;

  const VlcInstance& instance_;
  const std::atomic<HWND>& parentWindow_;
  const EventListener listener_;
};

}  // namespace vantro
