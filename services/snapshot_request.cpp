#include "services/snapshot_request.h"

#include "common/saturated_cast.h"

namespace vod_thumbnail {

std::string SnapshotFileName(std::string_view mediaId, double timeSeconds) {
  std::string name = "vantro_thumb_";
  name.append(mediaId).append("_");
  name.append(std::to_string(vantro::SaturatedCast<int32_t>(timeSeconds))).append(".jpg");
  return name;
}

int64_t SeekTargetMs(double timeSeconds) { return vantro::SaturatedCast<int64_t>(timeSeconds * 1000.0); }

}  // namespace vod_thumbnail
