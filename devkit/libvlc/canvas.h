// One player's pictures between libvlc's video thread, which fills them, and the painter, which shows the newest.
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
  // gone, the others block for no longer than a pointer's copy. Pictures of a canvas without a place are dropped.
  unsigned Configure(char* chroma, unsigned* width, unsigned* height, unsigned* pitches, unsigned* lines);
  void* Lock(void** planes);
  void Display();
  void Clear();

  // Any thread. The program's window; counts when pictures begin.
  void SetWindow(void* window) { window_.store(window, std::memory_order_relaxed); }
  void* window() const { return window_.load(std::memory_order_relaxed); }
  // The window that pictures are drawn in, set by the thread of the windows.
  void SetTarget(void* target) { target_.store(target); }
  void* target() const { return target_.load(); }
  // The media wants no window.
  bool windowless();
  // There is a picture that a snapshot could take.
  bool HasPicture();
  void SetScale(float scale);
  float scale() const { return scale_.load(std::memory_order_relaxed); }
  // Kept, and without effect: the window's size is the program's.
  void SetFullscreen(bool on) { fullscreen_.store(on, std::memory_order_relaxed); }
  bool fullscreen() const { return fullscreen_.load(std::memory_order_relaxed); }
  void SetMedia(MediaRef media);
  // The next picture is the first of a playback, which the log of times tells (times_log.h) under this name.
  void ExpectFirstPicture(const void* player);
  // The player is gone: the painter forgets the canvas once the window has its background back.
  void Close() { closed_.store(true, std::memory_order_relaxed); }
  bool closed() const { return closed_.load(std::memory_order_relaxed); }

  // The painter's thread. Newest is null while there is no picture; `changed` tells whether it, the scale or the window
  // differs from the last call. What is returned stays untouched as long as the caller holds it.
  std::shared_ptr<const Frame> Newest(bool* changed);
  // The part of a picture of that size that is picture and not the decoder's padding. Known from the media once libvlc
  // has seen the stream's header, and asked for until then.
  PictureSize VisibleSize(unsigned width, unsigned height);
  // To be called when what Newest returned last stands in the window.
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
  const void* expecting_ = nullptr;  // the player whose first picture has not been handed over
  const void* undrawn_ = nullptr;    // the player whose first picture has not been drawn
  const void* offered_ = nullptr;    // the same, once Newest has returned that picture
  PictureSize visible_;
};

}  // namespace vantro::devlib
