// The operations on one tile of the grid: makes its window and its player, opens streams in it, and ends it.
// MultiViewGrid keeps the list of tiles and the active tile.
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

// The callback that receives the events of a player, and its user data.
struct EventListener {
  libvlc_callback_t callback;
  void* userData;
};

class TileMaker {
 public:
  // Instance and parent window are borrowed and outlive this object. The parent window is the parent of the tiles.
  TileMaker(const VlcInstance& instance, const std::atomic<HWND>& parentWindow, EventListener listener)
      : instance_(instance), parentWindow_(parentWindow), listener_(listener) {}
  TileMaker(const TileMaker&) = delete;
  TileMaker& operator=(const TileMaker&) = delete;

  // Makes a window for a tile, at a temporary place. Returns null if the system cannot make it.
  HWND CreateTileWindow() const;
  // Makes a silent player that plays the URL in the window. Returns null and logs the reason if no player can be made.
  // A media that cannot be made is not a failure.
  VlcMediaPlayerPtr CreateTilePlayer(HWND window, const std::string& url) const;
  // Attaches the listener to a player's Playing and MediaChanged events, and to no others. They are never detached.
  void AttachEventsToPlayer(libvlc_media_player_t* player) const;
  // Plays another stream in the tile and stores its URL and name. The caller has checked that the library has the
  // functions that this needs.
  void ReplaceTileStream(const LibVlcFunctions& vlc, MultiViewPlayer& tile, const std::string& url,
                         const std::string& name) const;
  // Opens the URL again on a tile's wedged player. Does nothing if the library lacks a function that this needs.
  void RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) const;
  // Stops the player of a tile and destroys its window, unless it is the original tile. The record still owns the
  // player.
  static void DestroyPlayerWindow(MultiViewPlayer& record);

 private:
  // Sets the media for the URL on a tile's player. Neither stops nor plays it. If the media cannot be made, the player
  // keeps the old one.
  void OpenOnTile(const LibVlcFunctions& vlc, libvlc_media_player_t* player, const std::string& url) const;

  const VlcInstance& instance_;
  const std::atomic<HWND>& parentWindow_;
  const EventListener listener_;
};

}  // namespace vantro
