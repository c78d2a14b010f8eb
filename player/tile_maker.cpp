#include "player/tile_maker.h"

#include "common/log.h"
#include "player/player_events.h"

namespace vantro {

namespace {

constexpr DWORD kTileWindowStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
// The place of a tile until the grid is laid out, in pixels.
constexpr int kNewTilePosition = 100;
constexpr int kNewTileSize = 100;

}  // namespace

HWND TileMaker::CreateTileWindow() const {
  if (!RegisterVlcHostWindowClass()) return nullptr;
  return CreateWindowExW(WS_EX_NOPARENTNOTIFY, kVlcHostWindowClass, L"VLC Player Window", kTileWindowStyle,
                         kNewTilePosition, kNewTilePosition, kNewTileSize, kNewTileSize,
                         parentWindow_.load(std::memory_order_relaxed), nullptr, GetModuleHandleW(nullptr), nullptr);
}

VlcMediaPlayerPtr TileMaker::CreateTilePlayer(HWND window, const std::string& url) const {
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
  VlcMediaPlayerPtr player(vlc.libvlc_media_player_new(instance_.get()));
  if (!player) {
    LOG_ERROR("[MvAddStream] FAILED to create VLC media player");
    return nullptr;
  }
  LOG_DEBUG("[MvAddStream] Created VLC player: %p", static_cast<void*>(player.get()));
  vlc.libvlc_media_player_set_hwnd(player.get(), window);
  OpenOnTile(vlc, player.get(), url);
  // Silent until UpdateActiveAudio sets the volume.
  if (vlc.libvlc_audio_set_volume) vlc.libvlc_audio_set_volume(player.get(), 0);
  vlc.libvlc_media_player_play(player.get());
  return player;
}

void TileMaker::OpenOnTile(const LibVlcFunctions& vlc, libvlc_media_player_t* player, const std::string& url) const {
  const VlcMediaPtr media(instance_.CreateMedia(url));
  if (media) vlc.libvlc_media_player_set_media(player, media.get());
}

void TileMaker::AttachEventsToPlayer(libvlc_media_player_t* player) const {
  if (!player) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_event_manager || !vlc.libvlc_event_attach) return;
  libvlc_event_manager_t* const events = vlc.libvlc_media_player_event_manager(player);
  if (!events) return;
  vlc.libvlc_event_attach(events, player_event::kPlaying, listener_.callback, listener_.userData);
  vlc.libvlc_event_attach(events, player_event::kMediaChanged, listener_.callback, listener_.userData);
  LOG_DEBUG("[AttachEventsToPlayer] Attached events to player %p", static_cast<void*>(player));
}

void TileMaker::ReplaceTileStream(const LibVlcFunctions& vlc, MultiViewPlayer& tile, const std::string& url,
                                  const std::string& name) const {
  // A tile that was a single view without a player has no player either. Only its name and URL change.
  libvlc_media_player_t* const player = tile.mediaPlayer.get();
  if (player) {
    vlc.libvlc_media_player_stop(player);
    OpenOnTile(vlc, player, url);
  }
  tile.name = name;
  tile.url = url;
  if (player && vlc.libvlc_media_player_play) vlc.libvlc_media_player_play(player);
}

void TileMaker::RestartTile(libvlc_media_player_t* mediaPlayer, const std::string& url, bool restorePosition) const {
  if (url.empty()) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_media_player_stop || !vlc.libvlc_media_player_set_media ||
      !vlc.libvlc_media_player_play) {
    return;
  }
  libvlc_time_t time = 0;
  if (restorePosition && vlc.libvlc_media_player_get_time) time = vlc.libvlc_media_player_get_time(mediaPlayer);
  vlc.libvlc_media_player_stop(mediaPlayer);
  OpenOnTile(vlc, mediaPlayer, url);
  vlc.libvlc_media_player_play(mediaPlayer);
  if (restorePosition && vlc.libvlc_media_player_set_time && time > 0) {
    vlc.libvlc_media_player_set_time(mediaPlayer, time, false);
  }
}

void TileMaker::DestroyPlayerWindow(MultiViewPlayer& record) {
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

}  // namespace vantro
