// The fixed measures of a main window, each stated once. Pixels.
#pragma once

namespace vantro {

// Height of the self-drawn title bar.
constexpr int TITLE_BAR_HEIGHT = 30;

constexpr int kInitialWindowWidth = 1280;
constexpr int kInitialWindowHeight = 720;
constexpr int kMinimumWindowWidth = 640;
constexpr int kMinimumWindowHeight = 360;

}  // namespace vantro
