// One player's pictures. libvlc's video thread fills them, and the painter shows the newest.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "media.h"

namespace vantro::devlib {

// A picture of 32-bit pixels (blue, green, red, unused), rows from top to bottom.
struct Frame {
  std::vector<uint8_t> pixels;
  unsigned width = 0;
  unsigned height = 0;
};

class Canvas {
 public:
  // libvlc's video callbacks, on its threads. Configure and Clear wait until the window of the pictures is made or
  // destroyed. The others block only while a pointer is copied. Pictures are dropped while the canvas has no window.
  unsigned Configure(char* chroma, unsigned* width, unsigned* height, unsigned* pitches, unsigned* lines);
  void* Lock(void** planes);
  void Display();
  void Clear();

  // Any thread. Sets the program's window, which is used when pictures begin.
  void SetWindow(void* window) { window_.store(window, std::memory_order_relaxed); }
  void* window() const { return window_.load(std::memory_order_relaxed); }
  // The window that pictures are drawn in; set by the thread of the windows.
  void SetTarget(void* target) { target_.store(target); }
  void* target() const { return target_.load(); }
  // Returns true when the media asks for no window.
  bool windowless();
  // Returns true when there is a picture for a snapshot.
  bool HasPicture();
  void SetScale(float scale);
  float scale() const { return scale_.load(std::memory_order_relaxed); }
  // The value is kept and has no effect: the program decides the window's size.
  void SetFullscreen(bool on) { fullscreen_.store(on, std::memory_order_relaxed); }
  bool fullscreen() const { return fullscreen_.load(std::memory_order_relaxed); }
  void SetMedia(MediaRef media);
  // The next picture is the first of a playback. The log of times (times_log.h) records it under this name.
  void ExpectFirstPicture(const void* player);
  // Called when the player is destroyed. The painter drops the canvas after it has restored the window's background.
  void Close() { closed_.store(true, std::memory_order_relaxed); }
  bool closed() const { return closed_.load(std::memory_order_relaxed); }

  // The painter's thread. Returns null while there is no picture. `changed` is set when the picture, the scale or the
  // window differs from the last call. The frame does not change while the caller holds it.
  std::shared_ptr<const Frame> Newest(bool* changed);
  // Returns the size of the visible part of a picture of that size, without the decoder's padding. The media has it
  // once libvlc has read the stream's header; until then each call asks for it.
  PictureSize VisibleSize(unsigned width, unsigned height);
  // Call after the frame that Newest returned last was drawn in the window.
  void OnDrawn();

 private:
  std::atomic<void*> window_{nullptr};
  std::atomic<void*> target_{nullptr};
  std::atomic<float> scale_{0.0f};
  std::atomic<bool> fullscreen_{false};
  std::atomic<bool> closed_{false};

  std::mutex lock_;
  std::vector<std::shared_ptr<Frame>> frames_;
  std::shared_ptr<Frame> filling_;
  std::shared_ptr<Frame> newest_;
  bool changed_ = false;
  MediaRef media_;
  bool windowless_ = false;
  const void* expecting_ = nullptr;  // the player whose first picture has not been delivered
  const void* undrawn_ = nullptr;    // the player whose first picture has not been drawn
  const void* offered_ = nullptr;    // the same, after Newest has returned that picture
  PictureSize visible_;
};

}  // namespace vantro::devlib
