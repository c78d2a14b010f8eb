// The grid shows several streams side by side. Each tile has its own player and its own window. Only one tile is heard.
//
// Main thread, except IsOn, HasTiles and UpdateMultiViewScaling, which libvlc's threads also call. Those threads read
// the tiles' handles from an immutable list, which the main thread publishes after every change. A player that leaves
// the grid is released before the operation returns. The main thread first waits for the events that may be using the
// player (player/reader_epochs.h).
#pragma once

#include <windows.h>

#include <atomic>
#include <string>
#include <vector>

#include "common/geometry.h"
#include "player/libvlc_functions.h"
#include "player/multi_view_player.h"
#include "player/pending_resumes.h"
#include "player/player_handle.h"
#include "player/reader_epochs.h"
#include "player/tile_maker.h"
#include "player/vlc_instance.h"

namespace vantro {

class MultiViewGrid {
 public:
  // All arguments are borrowed and outlive the grid. The parent window is the parent of the tiles.
  MultiViewGrid(const VlcInstance& instance, const std::atomic<HWND>& parentWindow, ReaderEpochs& readers,
                PendingResumes& resumes, EventListener listener)
      : maker_(instance, parentWindow, listener),
        parentWindow_(parentWindow),
        tileHandles_(readers),
        readers_(readers),
        resumes_(resumes) {}
  MultiViewGrid(const MultiViewGrid&) = delete;
  MultiViewGrid& operator=(const MultiViewGrid&) = delete;

  // Session (multi_view_grid.cpp). The log gives the reason for a false result, with these exceptions: the grid is off,
  // an index is out of range, a tile is swapped with itself, or libvlc is not loaded.
  //
  // The single view's player becomes the first tile and keeps its window. Playback is not interrupted.
  void Enable(WatchedPlayerHandle& single, HWND window, const std::string& title, const std::string& url);
  // If the first tile is the original one, its player becomes the single view's again. All other players end. If a swap
  // moved the original tile away from the first place, the single view has no player afterwards. Returns false if the
  // grid was off.
  bool Disable(WatchedPlayerHandle& single);
  // Adds a silent tile that plays the URL. The active tile does not change. Returns false if the tile cannot be made. A
  // media that cannot be made is not a failure. If the grid is off, the tile is still added, but it is neither placed
  // nor heard.
  bool AddStream(const std::string& url, const std::string& name);
  // Plays another stream in the active tile.
  bool ReplaceActive(const std::string& url, const std::string& name);
  // Removes the active tile, unless it is the first one. The tile before it becomes active.
  bool RemoveActive();
  // Swaps two tiles. The active tile stays the active one, at its new index.
  bool SwapTiles(int from, int to);
  // Opens the active tile's URL in the original tile, if that is the first tile and not the active one. Returns true if
  // the caller may now turn the grid off.
  bool OpenActiveInOriginal();
  // Makes a tile the active one and does not change the audio. While the grid is off, or with an index out of range, it
  // only logs.
  void SetActiveIndexSafe(int index);
  // Opens the URL again on a tile's wedged player.
  void RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) {
    maker_.RestartTile(mediaPlayer, url, restorePosition);
  }
  // Removes all tiles. Releases their players and does not destroy their windows.
  void ReleaseTiles();

  // Layout and audio (multi_view_layout.cpp).
  //
  // Places every tile in its cell of the parent's client area, notifies its window and libvlc of the new size, and fits
  // the picture.
  void UpdateGridLayout();
  // Fits only the pictures, when the size of a video becomes known. Any thread.
  void UpdateMultiViewScaling();
  // Sets the active tile to volume 100, and mutes all others at volume 0. An active index out of range is reset to 0.
  void UpdateActiveAudio();

  // Any thread.
  bool IsOn() const { return isMultiViewMode_.load(std::memory_order_relaxed); }
  bool HasTiles();

  // The tiles in grid order. The watchdog keeps its stall records in them.
  std::vector<MultiViewPlayer>& Tiles() { return players_; }

 private:
  friend struct test::PlayerInspector;

  // The handles of players_, in the same order, for the events. Null for a tile without a player.
  using TileHandles = std::vector<libvlc_media_player_t*>;

  HWND ParentWindow() const { return parentWindow_.load(std::memory_order_relaxed); }
  bool IsTileIndex(int index) const { return index >= 0 && static_cast<size_t>(index) < players_.size(); }
  // Must be called after every change of players_, before a handle that was removed is released. Returns when no event
  // uses the previous list any more.
  void PublishTiles();
  // Releases a player that no event uses any more, and cancels its pending resume.
  void ReleasePlayer(VlcMediaPlayerPtr player);

  void RestoreOriginalTile(MultiViewPlayer& tile, WatchedPlayerHandle& single);

  void PlaceTile(size_t index, const Rect& cell);
  void RefitTile(size_t index, const Rect& cell);
  void FitTileVideo(const LibVlcFunctions& vlc, size_t index, const Rect& cell);

  const TileMaker maker_;
  const std::atomic<HWND>& parentWindow_;
  std::atomic<bool> isMultiViewMode_{false};
  std::vector<MultiViewPlayer> players_;
  int activeIndex_ = 0;
  Published<TileHandles> tileHandles_;
  ReaderEpochs& readers_;
  PendingResumes& resumes_;
};

}  // namespace vantro
