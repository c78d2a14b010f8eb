#include "player/video_scale.h"

#include "player/tile_layout.h"

namespace vantro {

VideoSize ReadVideoSize(const LibVlcFunctions& vlc, libvlc_media_player_t* player) {
  return {vlc.libvlc_video_get_width ? vlc.libvlc_video_get_width(player) : 0,
          vlc.libvlc_video_get_height ? vlc.libvlc_video_get_height(player) : 0};
}

float FitVideoScale(libvlc_media_player_t* player, int width, int height) {
  if (!player || width <= 0 || height <= 0) return 0.0f;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded || !vlc.libvlc_video_get_width || !vlc.libvlc_video_get_height) return 0.0f;
  const VideoSize video = ReadVideoSize(vlc, player);
  return FitScale(video.width, video.height, width, height);
}

void SetVideoScale(libvlc_media_player_t* player, float scale) {
  if (!player) return;
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (vlc.loaded && vlc.libvlc_video_set_scale) vlc.libvlc_video_set_scale(player, scale);
}

}  // namespace vantro
