// The fixed measures of a main window, in pixels. Each is defined only here.
#pragma once

namespace vantro {

constexpr int kInitialWindowWidth = 1280;
constexpr int kInitialWindowHeight = 720;
constexpr int kMinimumWindowWidth = 640;
constexpr int kMinimumWindowHeight = 360;

// The outer size until the first WM_SIZE, then the client size. Entering and leaving fullscreen set the saved outer
// size, until the WM_SIZE that follows.
struct WindowSize {
  int width_ = kInitialWindowWidth;
  int height_ = kInitialWindowHeight;
};

}  // namespace vantro
