// Measures that several folders share. Each is defined only here.
#pragma once

namespace vantro {

// Height in pixels of the self-drawn title bar. The video is below it.
constexpr int TITLE_BAR_HEIGHT = 30;

// Percent, as in libvlc.
constexpr int kFullVolume = 100;

}  // namespace vantro
