// The tiles: how the single view becomes one of several and back, and which of them is the active one.
#include <windows.h>

#include <algorithm>
#include <string>
#include <utility>

#include "common/log.h"
#include "player/player_events.h"
#include "player/vlc_player.h"

namespace vantro {

namespace {

constexpr int kFullVolume = 100;
constexpr DWORD kTileWindowStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
// Where a tile lies until the grid is laid out.
constexpr int kNewTilePosition = 100;
constexpr int kNewTileSize = 100;

}  // namespace

bool VLCPlayer::EnableMultiView() {
  LOG_DEBUG("[EnableMultiView] *** CALLED *** isMultiViewMode=%d, existing players=%zu",
            static_cast<int>(isMultiViewMode_), players_.size());
  if (isMultiViewMode_) {
    LOG_WARNING("[EnableMultiView] Already in multiview mode - ignoring duplicate call");
    return true;
  }
  LOG_DEBUG("[EnableMultiView] Enabling multiview - clearing %zu existing players", players_.size());
  isMultiViewMode_ = true;
  ReleaseTiles();

  LOG_DEBUG("[EnableMultiView] Adding existing resizable player to multiview");
  MultiViewPlayer& original = players_.emplace_back();
  original.window = vlcWindow_;
  original.mediaPlayer.reset(mediaPlayer_.get());
  original.name = current_.title;
  original.url = current_.url;
  original.isOriginal = true;
  // Published before the single view gives the handle up: an event between the two still finds a player to watch.
  PublishTiles();
  mediaPlayer_.release();
  activeIndex_ = 0;
  UpdateActiveAudio();
  return true;
}

bool VLCPlayer::DisableMultiView() {
  LOG_DEBUG("[DisableMultiView] *** CALLED *** isMultiViewMode_=%d, player count=%zu",
            static_cast<int>(isMultiViewMode_), players_.size());
  if (!isMultiViewMode_) {
    LOG_WARNING("[DisableMultiView] Already disabled, returning");
    return true;
  }
  // The first tile stays out of this, the original one or not.
  for (size_t index = 1; index < players_.size(); ++index) DestroyPlayerWindow(players_[index]);
  if (!players_.empty() && players_[0].isOriginal) RestoreOriginalTile(players_[0]);
  ReleaseTiles();
  isMultiViewMode_ = false;
  activeIndex_ = 0;
  SetVolume(kFullVolume);
  return true;
}

void VLCPlayer::RestoreOriginalTile(MultiViewPlayer& tile) {
  LOG_DEBUG("[DisableMultiView] Keeping original player in child window: %p", static_cast<void*>(tile.window));
  ReleasePlayer(VlcMediaPlayerPtr(mediaPlayer_.release()));
  mediaPlayer_ = std::move(tile.mediaPlayer);

  RECT client{};
  GetClientRect(parentWindow_, &client);
  const int width = client.right - client.left;
  const int height = client.bottom - client.top;
  MoveWindow(tile.window, 0, 0, width, height, TRUE);
  if (!mediaPlayer_) return;

  const float scale = FitVideoScale(mediaPlayer_.get(), width, height);
  if (scale > 0) {
    SetVideoScale(mediaPlayer_.get(), scale);
    const LibVlcFunctions vlc = GetLibVlcFunctions();
    if (vlc.loaded) {
      LOG_DEBUG("[DisableMultiView] Reset VLC scale to %f for full window %dx%d (video %ux%u)",
                static_cast<double>(scale), width, height, vlc.libvlc_video_get_width(mediaPlayer_.get()),
                vlc.libvlc_video_get_height(mediaPlayer_.get()));
    }
  } else {
    SetVideoScale(mediaPlayer_.get(), 0.0f);
    LOG_DEBUG("[DisableMultiView] Reset VLC scale to auto (0.0)");
  }
}

bool VLCPlayer::MvAddStream(const std::string& url, const std::string& name) {
  if (url.empty()) {
    LOG_ERROR("[VLCPlayer::MvAddStream] ERROR: URL is empty.");
    return false;
  }
  LOG_DEBUG("[MvAddStream] *** CALLED *** url=%s, name=%s, isMultiViewMode=%d, current player count=%zu", url.c_str(),
            name.c_str(), static_cast<int>(isMultiViewMode_), players_.size());
  const HWND window = CreateTileWindow();
  if (!window) {
    LOG_ERROR("[MvAddStream] FAILED to create player window");
    return false;
  }
  LOG_DEBUG("[MvAddStream] Created window: %p", static_cast<void*>(window));

  VlcMediaPlayerPtr player = CreateTilePlayer(window, url);
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
  AttachEventsToPlayer(tile.mediaPlayer.get());
  LOG_DEBUG("[MvAddStream] Attached events to new player");
  LOG_DEBUG("[MvAddStream] Added player, total count now: %zu", players_.size());

  UpdateGridLayout();
  UpdateActiveAudio();
  UpdateMultiViewScaling();
  LOG_INFO("[MvAddStream] *** SUCCESS *** Final player count: %zu", players_.size());
  return true;
}

HWND VLCPlayer::CreateTileWindow() {
  if (!RegisterVlcHostWindowClass()) return nullptr;
  return CreateWindowExW(WS_EX_NOPARENTNOTIFY, kVlcHostWindowClass, L"VLC Player Window", kTileWindowStyle,
                         kNewTilePosition, kNewTilePosition, kNewTileSize, kNewTileSize, parentWindow_, nullptr,
                         GetModuleHandleW(nullptr), nullptr);
}

VlcMediaPlayerPtr VLCPlayer::CreateTilePlayer(HWND window, const std::string& url) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for MvAddStream");
    return nullptr;
  }
  if (!vlc.libvlc_media_player_new || !vlc.libvlc_media_player_set_hwnd || !vlc.libvlc_media_player_set_media ||
      !vlc.libvlc_media_player_play) {
    LOG_ERROR("[MvAddStream] Missing required libvlc function pointers (new=%d, set_hwnd=%d, set_media=%d, play=%d)",
              vlc.libvlc_media_player_new != nullptr, vlc.libvlc_media_player_set_hwnd != nullptr,
              vlc.libvlc_media_player_set_media != nullptr, vlc.libvlc_media_player_play != nullptr);
    return nullptr;
  }
  VlcMediaPlayerPtr player(vlc.libvlc_media_player_new(vlcInstance_.get()));
  if (!player) {
    LOG_ERROR("[MvAddStream] FAILED to create VLC media player");
    return nullptr;
  }
  LOG_DEBUG("[MvAddStream] Created VLC player: %p", static_cast<void*>(player.get()));
  vlc.libvlc_media_player_set_hwnd(player.get(), window);
  OpenOnTile(vlc, player.get(), url);
  // Silent until UpdateActiveAudio has judged it.
  if (vlc.libvlc_audio_set_volume) vlc.libvlc_audio_set_volume(player.get(), 0);
  vlc.libvlc_media_player_play(player.get());
  return player;
}

void VLCPlayer::OpenOnTile(const LibVlcFunctions& vlc, libvlc_media_player_t* player, const std::string& url) {
  const VlcMediaPtr media(CreateMedia(url));
  if (media) vlc.libvlc_media_player_set_media(player, media.get());
}

void VLCPlayer::AttachEventsToPlayer(libvlc_media_player_t* player) {
  if (!player) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_event_manager || !vlc.libvlc_event_attach) return;
  libvlc_event_manager_t* const events = vlc.libvlc_media_player_event_manager(player);
  if (!events) return;
  vlc.libvlc_event_attach(events, player_event::kPlaying, VlcEventCallback, this);
  vlc.libvlc_event_attach(events, player_event::kMediaChanged, VlcEventCallback, this);
  LOG_DEBUG("[AttachEventsToPlayer] Attached events to player %p", static_cast<void*>(player));
}

bool VLCPlayer::MvReplaceActive(const std::string& url, const std::string& name) {
  if (url.empty()) {
    LOG_ERROR("[VLCPlayer::MvReplaceActive] ERROR: URL is empty.");
    return false;
  }
  if (!isMultiViewMode_ || !IsTileIndex(activeIndex_)) return false;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return false;
  if (!vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media || !vlc.libvlc_media_player_play) {
    LOG_ERROR("[MvReplaceActive] Missing libvlc functions (stop=%d, set_media=%d, play=%d)",
              vlc.libvlc_media_player_stop != nullptr, vlc.libvlc_media_player_set_media != nullptr,
              vlc.libvlc_media_player_play != nullptr);
    return false;
  }
  ReplaceTileStream(vlc, players_[static_cast<size_t>(activeIndex_)], url, name);
  UpdateActiveAudio();
  return true;
}

void VLCPlayer::ReplaceTileStream(const LibVlcFunctions& vlc, MultiViewPlayer& tile, const std::string& url,
                                  const std::string& name) {
  // A tile that came from a single view without a player has none either: it just takes the names.
  libvlc_media_player_t* const player = tile.mediaPlayer.get();
  if (player) {
    vlc.libvlc_media_player_stop(player);
    OpenOnTile(vlc, player, url);
  }
  tile.name = name;
  tile.url = url;
  if (player && vlc.libvlc_media_player_play) vlc.libvlc_media_player_play(player);
}

bool VLCPlayer::MvRemoveActive() {
  LOG_DEBUG("[MvRemoveActive] *** CALLED *** isMultiViewMode=%d, player count=%zu, activeIndex=%d",
            static_cast<int>(isMultiViewMode_), players_.size(), activeIndex_);
  if (!isMultiViewMode_ || players_.size() < 2 || activeIndex_ == 0) {
    LOG_WARNING("[MvRemoveActive] Cannot remove - conditions not met");
    return false;
  }
  if (!IsTileIndex(activeIndex_)) return false;
  const auto active = players_.begin() + activeIndex_;
  DestroyPlayerWindow(*active);
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

bool VLCPlayer::MvSwapTiles(int from, int to) {
  if (!isMultiViewMode_ || !IsTileIndex(from) || !IsTileIndex(to) || from == to) return false;
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

bool VLCPlayer::MvPromoteActiveAndExit() {
  if (!isMultiViewMode_ || !IsTileIndex(activeIndex_)) return false;
  if (activeIndex_ == 0) return DisableMultiView();
  const MultiViewPlayer& active = players_[static_cast<size_t>(activeIndex_)];
  if (active.url.empty()) {
    LOG_ERROR("[VLCPlayer::MvPromoteActiveAndExit] ERROR: URL is empty.");
    return false;
  }
  if (!players_[0].isOriginal) return DisableMultiView();
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return false;
  if (!vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media) {
    LOG_ERROR("[MvPromoteActiveAndExit] Missing VLC functions (stop=%d, set_media=%d)",
              vlc.libvlc_media_player_stop != nullptr, vlc.libvlc_media_player_set_media != nullptr);
    return false;
  }
  ReplaceTileStream(vlc, players_[0], active.url, active.name);
  return DisableMultiView();
}

void VLCPlayer::SetActiveIndexSafe(int index) {
  if (!isMultiViewMode_) {
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

void VLCPlayer::DestroyPlayerWindow(MultiViewPlayer& record) {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for DestroyPlayerWindow");
    return;
  }
  if (record.isOriginal) return;
  if (record.mediaPlayer && vlc.libvlc_media_player_stop) vlc.libvlc_media_player_stop(record.mediaPlayer.get());
  if (record.window) {
    DestroyWindow(record.window);
    record.window = nullptr;
  }
}

void VLCPlayer::PublishTiles() {
  auto handles = std::make_unique<TileHandles>();
  handles->reserve(players_.size());
  for (const MultiViewPlayer& tile : players_) handles->push_back(tile.mediaPlayer.get());
  tileHandles_.Replace(std::move(handles));
}

void VLCPlayer::ReleasePlayer(VlcMediaPlayerPtr player) {
  if (player) ForgetPendingResume(player.get());
}

void VLCPlayer::ReleaseTiles() {
  std::vector<MultiViewPlayer> tiles = std::move(players_);
  players_.clear();
  PublishTiles();
  for (MultiViewPlayer& tile : tiles) ReleasePlayer(std::move(tile.mediaPlayer));
}

}  // namespace vantro
