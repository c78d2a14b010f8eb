// Turning the single view into the grid and back, the list of tiles, and the active tile.
#include "player/multi_view_grid.h"

#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "common/log.h"
#include "common/win32_geometry.h"
#include "player/video_scale.h"

namespace vantro {

void MultiViewGrid::Enable(WatchedPlayerHandle& single, HWND window, const std::string& title, const std::string& url) {
  LOG_DEBUG("[EnableMultiView] *** CALLED *** isMultiViewMode=%d, existing players=%zu", IsOn(), players_.size());
  if (IsOn()) {
    LOG_WARNING("[EnableMultiView] Already in multiview mode - ignoring duplicate call");
    return;
  }
  LOG_DEBUG("[EnableMultiView] Enabling multiview - clearing %zu existing players", players_.size());
  isMultiViewMode_.store(true, std::memory_order_relaxed);
  ReleaseTiles();

  LOG_DEBUG("[EnableMultiView] Adding existing resizable player to multiview");
  MultiViewPlayer& original = players_.emplace_back();
  original.window = window;
  original.mediaPlayer.reset(single.get());
  original.name = title;
  original.url = url;
  original.isOriginal = true;
  // The list is published before the single view gives up the handle, so that an event between the two still finds a
  // player.
  PublishTiles();
  single.release();
  activeIndex_ = 0;
  UpdateActiveAudio();
}

bool MultiViewGrid::Disable(WatchedPlayerHandle& single) {
  LOG_DEBUG("[DisableMultiView] *** CALLED *** isMultiViewMode_=%d, player count=%zu", IsOn(), players_.size());
  if (!IsOn()) {
    LOG_WARNING("[DisableMultiView] Already disabled, returning");
    return false;
  }
  // The first tile keeps its window, whether it is the original one or not.
  for (size_t index = 1; index < players_.size(); ++index) TileMaker::DestroyPlayerWindow(players_[index]);
  if (!players_.empty() && players_[0].isOriginal) RestoreOriginalTile(players_[0], single);
  ReleaseTiles();
  isMultiViewMode_.store(false, std::memory_order_relaxed);
  activeIndex_ = 0;
  return true;
}

void MultiViewGrid::RestoreOriginalTile(MultiViewPlayer& tile, WatchedPlayerHandle& single) {
  LOG_DEBUG("[DisableMultiView] Keeping original player in child window: %p", static_cast<void*>(tile.window));
  ReleasePlayer(VlcMediaPlayerPtr(single.release()));
  single = std::move(tile.mediaPlayer);

  const auto [width, height] = ClientSize(ParentWindow());
  MoveWindow(tile.window, 0, 0, width, height, TRUE);
  if (!single) return;

  const float scale = FitVideoScale(single.get(), width, height);
  if (scale > 0) {
    SetVideoScale(single.get(), scale);
    const LibVlcFunctions vlc = GetLibVlcFunctions();
    if (vlc.loaded) {
      LOG_DEBUG("[DisableMultiView] Reset VLC scale to %f for full window %dx%d (video %ux%u)",
                static_cast<double>(scale), width, height, vlc.libvlc_video_get_width(single.get()),
                vlc.libvlc_video_get_height(single.get()));
    }
  } else {
    SetVideoScale(single.get(), 0.0f);
    LOG_DEBUG("[DisableMultiView] Reset VLC scale to auto (0.0)");
  }
}

bool MultiViewGrid::AddStream(const std::string& url, const std::string& name) {
  if (url.empty()) {
    LOG_ERROR("[VLCPlayer::MvAddStream] ERROR: URL is empty.");
    return false;
  }
  LOG_DEBUG("[MvAddStream] *** CALLED *** url=%s, name=%s, isMultiViewMode=%d, current player count=%zu", url.c_str(),
            name.c_str(), IsOn(), players_.size());
  const HWND window = maker_.CreateTileWindow();
  if (!window) {
    LOG_ERROR("[MvAddStream] FAILED to create player window");
    return false;
  }
  LOG_DEBUG("[MvAddStream] Created window: %p", static_cast<void*>(window));

  VlcMediaPlayerPtr player = maker_.CreateTilePlayer(window, url);
  if (!player) {
    DestroyWindow(window);
    return false;
  }
  MultiViewPlayer& tile = players_.emplace_back();
  tile.window = window;
  tile.mediaPlayer = std::move(player);
  tile.name = name;
  tile.url = url;
  PublishTiles();
  maker_.AttachEventsToPlayer(tile.mediaPlayer.get());
  LOG_DEBUG("[MvAddStream] Attached events to new player");
  LOG_DEBUG("[MvAddStream] Added player, total count now: %zu", players_.size());

  UpdateGridLayout();
  UpdateActiveAudio();
  UpdateMultiViewScaling();
  LOG_INFO("[MvAddStream] *** SUCCESS *** Final player count: %zu", players_.size());
  return true;
}

bool MultiViewGrid::ReplaceActive(const std::string& url, const std::string& name) {
  if (url.empty()) {
    LOG_ERROR("[VLCPlayer::MvReplaceActive] ERROR: URL is empty.");
    return false;
  }
  if (!IsOn() || !IsTileIndex(activeIndex_)) return false;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return false;
  if (!vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media || !vlc.libvlc_media_player_play) {
    LOG_ERROR("[MvReplaceActive] Missing libvlc functions (stop=%d, set_media=%d, play=%d)",
              vlc.libvlc_media_player_stop != nullptr, vlc.libvlc_media_player_set_media != nullptr,
              vlc.libvlc_media_player_play != nullptr);
    return false;
  }
  maker_.ReplaceTileStream(vlc, players_[static_cast<size_t>(activeIndex_)], url, name);
  UpdateActiveAudio();
  return true;
}

bool MultiViewGrid::RemoveActive() {
  LOG_DEBUG("[MvRemoveActive] *** CALLED *** isMultiViewMode=%d, player count=%zu, activeIndex=%d", IsOn(),
            players_.size(), activeIndex_);
  if (!IsOn() || players_.size() < 2 || activeIndex_ == 0) {
    LOG_WARNING("[MvRemoveActive] Cannot remove - conditions not met");
    return false;
  }
  if (!IsTileIndex(activeIndex_)) return false;
  const auto active = players_.begin() + activeIndex_;
  TileMaker::DestroyPlayerWindow(*active);
  VlcMediaPlayerPtr player = std::move(active->mediaPlayer);
  players_.erase(active);
  PublishTiles();
  ReleasePlayer(std::move(player));

  const int index = std::max(activeIndex_ - 1, 0);
  LOG_DEBUG("[MvRemoveActive] Need to adjust active index from %d to %d", activeIndex_, index);
  SetActiveIndexSafe(index);
  UpdateGridLayout();
  UpdateActiveAudio();
  return true;
}

bool MultiViewGrid::SwapTiles(int from, int to) {
  if (!IsOn() || !IsTileIndex(from) || !IsTileIndex(to) || from == to) return false;
  std::swap(players_[static_cast<size_t>(from)], players_[static_cast<size_t>(to)]);
  PublishTiles();
  int index = activeIndex_;
  if (activeIndex_ == from) {
    index = to;
  } else if (activeIndex_ == to) {
    index = from;
  }
  LOG_DEBUG("[MvSwapTiles] Swapped %d <-> %d, activeIndex needs to change from %d to %d", from, to, activeIndex_,
            index);
  SetActiveIndexSafe(index);
  UpdateGridLayout();
  UpdateActiveAudio();
  return true;
}

bool MultiViewGrid::OpenActiveInOriginal() {
  if (!IsOn() || !IsTileIndex(activeIndex_)) return false;
  if (activeIndex_ == 0) return true;
  const MultiViewPlayer& active = players_[static_cast<size_t>(activeIndex_)];
  if (active.url.empty()) {
    LOG_ERROR("[VLCPlayer::MvPromoteActiveAndExit] ERROR: URL is empty.");
    return false;
  }
  if (!players_[0].isOriginal) return true;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return false;
  if (!vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media) {
    LOG_ERROR("[MvPromoteActiveAndExit] Missing VLC functions (stop=%d, set_media=%d)",
              vlc.libvlc_media_player_stop != nullptr, vlc.libvlc_media_player_set_media != nullptr);
    return false;
  }
  maker_.ReplaceTileStream(vlc, players_[0], active.url, active.name);
  return true;
}

void MultiViewGrid::SetActiveIndexSafe(int index) {
  if (!IsOn()) {
    LOG_WARNING("[SetActiveIndexSafe] Ignoring - not in multiview mode");
    return;
  }
  if (!IsTileIndex(index)) {
    LOG_ERROR(
        "[SetActiveIndexSafe] ERROR: Invalid index %d (valid range: 0-%zu), keeping current %d - CURRENT PLAYER COUNT: "
        "%zu",
        index, players_.size() - 1, activeIndex_, players_.size());
    for (size_t i = 0; i < players_.size(); ++i) {
      LOG_DEBUG("[SetActiveIndexSafe] Player %zu: window=%p player=%p name=%s", i,
                static_cast<void*>(players_[i].window), static_cast<void*>(players_[i].mediaPlayer.get()),
                players_[i].name.c_str());
    }
    return;
  }
  if (index == activeIndex_) {
    LOG_DEBUG("[SetActiveIndexSafe] activeIndex already %d (no change)", activeIndex_);
    return;
  }
  LOG_DEBUG("[SetActiveIndexSafe] Changing activeIndex from %d to %d", activeIndex_, index);
  activeIndex_ = index;
}

void MultiViewGrid::PublishTiles() {
  auto handles = std::make_unique<TileHandles>();
  handles->reserve(players_.size());
  for (const MultiViewPlayer& tile : players_) handles->push_back(tile.mediaPlayer.get());
  tileHandles_.Replace(std::move(handles));
}

void MultiViewGrid::ReleasePlayer(VlcMediaPlayerPtr player) {
  if (player) resumes_.Forget(player.get());
}

void MultiViewGrid::ReleaseTiles() {
  std::vector<MultiViewPlayer> tiles = std::exchange(players_, {});
  PublishTiles();
  for (MultiViewPlayer& tile : tiles) ReleasePlayer(std::move(tile.mediaPlayer));
}

bool MultiViewGrid::HasTiles() {
  const ReaderEpochs::Reader reader(readers_);
  const TileHandles* const tiles = tileHandles_.Load();
  return tiles && !tiles->empty();
}

}  // namespace vantro
