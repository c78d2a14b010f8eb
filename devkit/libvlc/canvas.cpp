#include "canvas.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "painter.h"
#include "picture_windows.h"
#include "times_log.h"

namespace vantro::devlib {
namespace {

// One is being filled, one is the newest, one is being drawn, one is spare.
constexpr unsigned kFrames = 4;
constexpr unsigned kBytesPerPixel = 4;

}  // namespace

unsigned Canvas::Configure(char* chroma, unsigned* width, unsigned* height, unsigned* pitches, unsigned* lines) {
  memcpy(chroma, "RV32", 4);
  pitches[0] = *width * kBytesPerPixel;
  lines[0] = *height;
  PictureSize visible = VisibleSize(*width, *height);
  PictureWindows::Open(this, visible.width, visible.height);
  std::lock_guard guard(lock_);
  frames_.clear();
  for (unsigned i = 0; i < kFrames; ++i) {
    auto frame = std::make_shared<Frame>();
    frame->pixels.resize(size_t{pitches[0]} * lines[0]);
    frame->width = *width;
    frame->height = *height;
    frames_.push_back(std::move(frame));
  }
  filling_ = nullptr;
  visible_ = {};
  return kFrames;
}

void* Canvas::Lock(void** planes) {
  std::lock_guard guard(lock_);
  filling_ = nullptr;
  for (const std::shared_ptr<Frame>& frame : frames_) {
    if (frame.use_count() > 1) continue;
    std::atomic_thread_fence(std::memory_order_acquire);
    filling_ = frame;
    break;
  }
  // With four frames and three users one is always free.
  planes[0] = filling_ ? filling_->pixels.data() : frames_.front()->pixels.data();
  return nullptr;
}

void Canvas::Display() {
  {
    std::lock_guard guard(lock_);
    if (!filling_) return;
    if (!target_.load() && !windowless_) {
      filling_ = nullptr;
      return;
    }
    newest_ = std::move(filling_);
    changed_ = true;
    if (expecting_) {
      undrawn_ = std::exchange(expecting_, nullptr);
      LogTime("displayed", undrawn_);
    }
  }
  Painter::Wake();
}

void Canvas::Clear() {
  {
    std::lock_guard guard(lock_);
    newest_ = nullptr;
    filling_ = nullptr;
    frames_.clear();
    changed_ = true;
  }
  PictureWindows::Close(this);
  Painter::Wake();
}

bool Canvas::windowless() {
  std::lock_guard guard(lock_);
  return windowless_;
}

bool Canvas::HasPicture() {
  std::lock_guard guard(lock_);
  return newest_ != nullptr;
}

void Canvas::SetScale(float scale) {
  scale_.store(scale, std::memory_order_relaxed);
  {
    std::lock_guard guard(lock_);
    changed_ = true;
  }
  Painter::Wake();
}

void Canvas::SetMedia(MediaRef media) {
  std::lock_guard guard(lock_);
  media_ = std::move(media);
  windowless_ = media_ && media_->windowless();
  visible_ = {};
}

void Canvas::ExpectFirstPicture(const void* player) {
  std::lock_guard guard(lock_);
  expecting_ = player;
  undrawn_ = nullptr;
}

void Canvas::OnDrawn() {
  std::lock_guard guard(lock_);
  if (!offered_ || offered_ != undrawn_) return;
  LogTime("first_picture", undrawn_);
  undrawn_ = nullptr;
}

std::shared_ptr<const Frame> Canvas::Newest(bool* changed) {
  std::lock_guard guard(lock_);
  *changed = std::exchange(changed_, false);
  offered_ = undrawn_;
  return newest_;
}

PictureSize Canvas::VisibleSize(unsigned width, unsigned height) {
  MediaRef media;
  {
    std::lock_guard guard(lock_);
    if (visible_.width) return visible_;
    media = media_;
  }
  PictureSize size = media ? media->VideoSize() : PictureSize{};
  if (!size.width || !size.height) return {width, height};
  size = {std::min(size.width, width), std::min(size.height, height)};
  std::lock_guard guard(lock_);
  if (media.get() == media_.get()) visible_ = size;
  return size;
}

}  // namespace vantro::devlib
