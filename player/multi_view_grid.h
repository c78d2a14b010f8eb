// The grid: several streams side by side, each in a tile with a player and a window of its own, one of them heard.
//
// Main thread, but for IsOn, HasTiles and UpdateMultiViewScaling, which libvlc's threads call too. Those see the tiles'
// handles as an immutable list that the main thread publishes after every change. A player that leaves the grid is
// released before the operation returns: the main thread waits for the events that may be using it
// (player/reader_epochs.h).
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
  // All are borrowed and outlive the grid. The parent window holds the tiles.
  MultiViewGrid(const VlcInstance& instance, const std::atomic<HWND>& parentWindow, ReaderEpochs& readers,
                PendingResumes& resumes, EventListener listener)
      : maker_(instance, parentWindow, listener),
        parentWindow_(parentWindow),
        tileHandles_(readers),
        readers_(readers),
        resumes_(resumes) {}
  MultiViewGrid(const MultiViewGrid&) = delete;
  MultiViewGrid& operator=(const MultiViewGrid&) = delete;

  // Session (multi_view_grid.cpp). A false result has its reason in the log, unless the grid is off or the active index
  // is no tile's.
  //
  // The single view's player becomes the first tile, in its window, and plays on.
  void Enable(WatchedPlayerHandle& single, HWND window, const std::string& title, const std::string& url);
  // The first tile's player becomes the single view's again if the tile is the original one; all others end. If a swap
  // moved the original tile away from the first place, the single view is left without a player. False if it was off.
  bool Disable(WatchedPlayerHandle& single);
  // Adds a silent tile that plays the URL. The active tile stays. False when the tile can't be made; a media that can't
  // be made is no failure. Also adds while the grid is off: the tile is then neither placed nor heard.
  bool AddStream(const std::string& url, const std::string& name);
  // Plays another stream in the active tile.
  bool ReplaceActive(const std::string& url, const std::string& name);
  // Removes the active tile, unless it is the first; the tile before it becomes active.
  bool RemoveActive();
  // Exchanges two tiles; the active index follows its tile.
  bool SwapTiles(int from, int to);
  // Opens the active tile's URL anew in the original tile, if that is the first and not itself active. Returns whether
  // the grid may now be left for it.
  bool OpenActiveInOriginal();
  // Makes a tile the active one, without touching the audio. An index out of range, logged, changes nothing.
  void SetActiveIndexSafe(int index);
  // Opens the URL anew on a tile's wedged player.
  void RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) {
    maker_.RestartTile(mediaPlayer, url, restorePosition);
  }
  // Empties the grid, releasing each player and leaving the windows alone.
  void ReleaseTiles();

  // Layout and audio (multi_view_layout.cpp).
  //
  // Places every tile in its cell of the parent's client area, tells its window and libvlc, and fits the picture.
  void UpdateGridLayout();
  // Fits the pictures alone, for when a video's size becomes known. Any thread.
  void UpdateMultiViewScaling();
  // The active tile at volume 100, all others muted and at 0. Repairs an active index that is out of range.
  void UpdateActiveAudio();

  // Any thread.
  bool IsOn() const { return isMultiViewMode_.load(std::memory_order_relaxed); }
  bool HasTiles();

  // The tiles in grid order, whose stall records the watchdog keeps.
  std::vector<MultiViewPlayer>& Tiles() { return players_; }

 private:
  friend struct test::PlayerInspector;

  // The handles of players_ in their order, as events see them: empty where a tile has no player.
  using TileHandles = std::vector<libvlc_media_player_t*>;

  HWND ParentWindow() const { return parentWindow_.load(std::memory_order_relaxed); }
  bool IsTileIndex(int index) const { return index >= 0 && static_cast<size_t>(index) < players_.size(); }
  // Follows every change of players_, before a handle that left it is released: returns when no event is using the list
  // from before.
  void PublishTiles();
  // Releases a player that no event is using any more, and forgets its pending resume.
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
