// The places of the tiles, the sizes of their pictures, and their audio.
#include <windows.h>

#include "common/log.h"
#include "common/measures.h"
#include "common/win32_geometry.h"
#include "player/multi_view_grid.h"
#include "player/tile_layout.h"
#include "player/video_scale.h"

namespace vantro {

namespace {

// Sends the messages of a drag of the window's border. libvlc's video output follows a resize only if it gets all of
// them.
void SendResizeMessages(HWND window, const Rect& cell) {
  WINDOWPOS position{window, nullptr, cell.left, cell.top, cell.Width(), cell.Height(), SWP_NOZORDER | SWP_NOACTIVATE};
  SendMessageA(window, WM_ENTERSIZEMOVE, 0, 0);
  SendMessageA(window, WM_WINDOWPOSCHANGED, 0, reinterpret_cast<LPARAM>(&position));
  SendMessageA(window, WM_SIZE, SIZE_RESTORED, MAKELPARAM(cell.Width(), cell.Height()));
  SendMessageA(window, WM_EXITSIZEMOVE, 0, 0);
  InvalidateRect(window, nullptr, TRUE);
  UpdateWindow(window);
}

}  // namespace

void MultiViewGrid::UpdateGridLayout() {
  if (!IsOn() || !ParentWindow() || players_.empty()) return;
  const Size parent = ClientSize(ParentWindow());
  LOG_DEBUG("[UpdateGridLayout] Parent size: %dx%d, Player count: %zu", parent.width, parent.height, players_.size());
  for (size_t index = 0; index < players_.size(); ++index) {
    PlaceTile(index, GetTileRect(parent.width, parent.height, static_cast<int32_t>(players_.size()),
                                 static_cast<int32_t>(index)));
  }
}

void MultiViewGrid::PlaceTile(size_t index, const Rect& cell) {
  const HWND window = players_[index].window;
  if (!window) {
    LOG_WARNING("[UpdateGridLayout] Player %zu has no window!", index);
    return;
  }
  const bool isOriginal = players_[index].isOriginal;
  const bool isParent = window == ParentWindow();
  LOG_DEBUG("[UpdateGridLayout] Player %zu window=%p parentWindow=%p isOriginal=%d (equal=%d)", index,
            static_cast<void*>(window), static_cast<void*>(ParentWindow()), isOriginal, isParent);
  if (isParent) {
    LOG_DEBUG("[UpdateGridLayout] SKIPPING Player %zu - it's the parent window (original player)", index);
    return;
  }
  const int32_t width = cell.Width();
  const int32_t height = cell.Height();
  RECT current{};
  GetWindowRect(window, &current);
  LOG_DEBUG(
      "[UpdateGridLayout] Player %zu (original=%d) current size: %ldx%ld -> positioning to: %ld,%ld size: %ldx%ld "
      "window handle: %p",
      index, isOriginal, current.right - current.left, current.bottom - current.top, static_cast<long>(cell.left),
      static_cast<long>(cell.top), static_cast<long>(width), static_cast<long>(height), static_cast<void*>(window));
  const BOOL placed = SetWindowPos(window, HWND_TOP, cell.left, cell.top, width, height, SWP_SHOWWINDOW);
  LOG_DEBUG("[UpdateGridLayout] *** CORE FIX *** Player %zu - Positioned at client coords: %d,%d size: %dx%d", index,
            cell.left, cell.top, width, height);
  if (placed && players_[index].mediaPlayer) RefitTile(index, cell);
  LOG_DEBUG("[UpdateGridLayout] SetWindowPos result for player %zu: %d", index, placed);
}

void MultiViewGrid::RefitTile(size_t index, const Rect& cell) {
  const HWND window = players_[index].window;
  libvlc_media_player_t* const player = players_[index].mediaPlayer.get();
  LOG_DEBUG("[UpdateGridLayout] Sending resize message sequence to player %zu", index);
  SendResizeMessages(window, cell);

  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (vlc.loaded) {
    const VideoSize before = ReadVideoSize(vlc, player);
    LOG_DEBUG("[UpdateGridLayout] VLC thinks video size is: %ux%u", before.width, before.height);
    // After the window has moved and before the scale, because libvlc measures the window in this call.
    if (vlc.libvlc_media_player_set_hwnd) {
      vlc.libvlc_media_player_set_hwnd(player, window);
      LOG_DEBUG("[UpdateGridLayout] Re-set VLC window handle for player %zu", index);
    }
    FitTileVideo(vlc, index, cell);
  }

  RECT client{};
  if (GetClientRect(window, &client)) {
    LOG_DEBUG("[UpdateGridLayout] Player %zu - Requested: %dx%d, Actual window size: %dx%d", index, cell.Width(),
              cell.Height(), static_cast<int>(client.right), static_cast<int>(client.bottom));
  } else {
    LOG_WARNING("[UpdateGridLayout] Failed to get actual window size for player %zu", index);
  }
  LOG_DEBUG("[UpdateGridLayout] Sent resize notifications to player %zu (size: %dx%d)", index, cell.Width(),
            cell.Height());
}

void MultiViewGrid::FitTileVideo(const LibVlcFunctions& vlc, size_t index, const Rect& cell) {
  libvlc_media_player_t* const player = players_[index].mediaPlayer.get();
  const int32_t width = cell.Width();
  const int32_t height = cell.Height();
  const float scale = FitVideoScale(player, width, height);
  if (!(scale > 0)) {
    LOG_DEBUG("[UpdateGridLayout] Player %zu - No video size yet, will scale when video loads", index);
    return;
  }
  SetVideoScale(player, scale);
  if (vlc.libvlc_video_set_viewport) {
    vlc.libvlc_video_set_viewport(player, cell.left, cell.top, width, height);
    LOG_DEBUG("[UpdateGridLayout] Player %zu - Set viewport: %ld,%ld %dx%d", index, static_cast<long>(cell.left),
              static_cast<long>(cell.top), width, height);
  } else {
    LOG_WARNING("[UpdateGridLayout] Player %zu - libvlc_video_set_viewport not available", index);
  }
  const VideoSize video = ReadVideoSize(vlc, player);
  LOG_DEBUG("[UpdateGridLayout] Player %zu - Video %ux%u scaled to %f for window %dx%d", index, video.width,
            video.height, static_cast<double>(scale), width, height);
}

void MultiViewGrid::UpdateMultiViewScaling() {
  const ReaderEpochs::Reader reader(readers_);
  const TileHandles* const tiles = tileHandles_.Load();
  if (!IsOn() || !tiles || tiles->empty()) return;
  LOG_DEBUG("[UpdateMultiViewScaling] *** Event-driven scaling update ***");
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return;
  const Size parent = ClientSize(ParentWindow());
  for (size_t index = 0; index < tiles->size(); ++index) {
    libvlc_media_player_t* const player = (*tiles)[index];
    if (!player) continue;
    const Rect cell =
        GetTileRect(parent.width, parent.height, static_cast<int32_t>(tiles->size()), static_cast<int32_t>(index));
    const float scale = FitVideoScale(player, cell.Width(), cell.Height());
    if (!(scale > 0)) continue;
    SetVideoScale(player, scale);
    LOG_DEBUG("[UpdateMultiViewScaling] Player %zu - Video %ux%u scaled to %f for tile %dx%d", index,
              vlc.libvlc_video_get_width(player), vlc.libvlc_video_get_height(player), static_cast<double>(scale),
              cell.Width(), cell.Height());
  }
}

void MultiViewGrid::UpdateActiveAudio() {
  if (!IsOn()) return;
  static int32_t callCount = 0;
  LOG_DEBUG("[UpdateActiveAudio] *** CALLED *** with activeIndex_=%d, total players=%zu", activeIndex_,
            players_.size());
  ++callCount;
  LOG_DEBUG("[UpdateActiveAudio] Call count: %d", callCount);
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) return;
  if (!vlc.libvlc_audio_set_volume || !vlc.libvlc_audio_set_mute) {
    LOG_ERROR("[UpdateActiveAudio] ERROR: Could not get VLC audio function pointers");
    return;
  }
  if (!IsTileIndex(activeIndex_)) {
    LOG_ERROR("[UpdateActiveAudio] ERROR: Invalid activeIndex_ %d, resetting to 0", activeIndex_);
    activeIndex_ = 0;
  }
  for (size_t index = 0; index < players_.size(); ++index) {
    libvlc_media_player_t* const player = players_[index].mediaPlayer.get();
    if (!player) {
      LOG_WARNING("[UpdateActiveAudio] Player %zu has no VLC player handle!", index);
      continue;
    }
    const bool isActive = index == static_cast<size_t>(activeIndex_);
    const int volume = isActive ? kFullVolume : 0;
    const int mute = isActive ? 0 : 1;
    LOG_DEBUG("[UpdateActiveAudio] Player %zu handle=%p (activeIndex=%d, isActive=%s) setting volume=%d, mute=%d",
              index, static_cast<void*>(player), activeIndex_, YesOrNo(isActive), volume, mute);
    vlc.libvlc_audio_set_mute(player, mute);
    const int result = vlc.libvlc_audio_set_volume(player, volume);
    LOG_DEBUG("[UpdateActiveAudio] Player %zu volume result=%d (0=success, -1=error)", index, result);
  }
}

}  // namespace vantro
