// The fixed measures of a main window, each stated once. Pixels.
#pragma once

namespace vantro {

constexpr int kInitialWindowWidth = 1280;
constexpr int kInitialWindowHeight = 720;
constexpr int kMinimumWindowWidth = 640;
constexpr int kMinimumWindowHeight = 360;

// Outer size until the first WM_SIZE, client size afterwards, the saved outer size around fullscreen.
struct WindowSize {
  int width_ = kInitialWindowWidth;
  int height_ = kInitialWindowHeight;
};

}  // namespace vantro
