// Measures that several folders share, each stated once.
#pragma once

namespace vantro {

// Height in pixels of the self-drawn title bar. The video lies below it.
constexpr int TITLE_BAR_HEIGHT = 30;

// Percent, as libvlc counts them.
constexpr int kFullVolume = 100;

}  // namespace vantro
