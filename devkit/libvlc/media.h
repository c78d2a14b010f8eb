// A media as the program holds it: a location or path with options, a reference count, and libvlc 3's media once a
// player has used it.
//
// libvlc 4 makes a media without an instance, but libvlc 3 needs one. The first player that gets this media makes the
// native media on its own instance.
#pragma once

#include <atomic>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

struct libvlc_instance_t;
struct libvlc_media_t;

namespace vantro::devlib {

struct MediaStats;

struct PictureSize {
  unsigned width = 0;   // visible pixels
  unsigned height = 0;  // 0 while no video track is known
};

class Media {
 public:
  enum class Kind { kLocation, kPath };
  // The new object has one reference, the caller's. `text` is already a path or address of the machine.
  Media(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}
  Media(const Media&) = delete;
  Media& operator=(const Media&) = delete;

  void Retain() { references_.fetch_add(1, std::memory_order_relaxed); }
  void Release();

  // ":vout=" is not passed to libvlc 3, whose pictures always go to this library: see windowless.
  void AddOption(const char* option);
  // Returns true when the options ask for no window (":vout=vdummy").
  bool windowless() const { return windowless_.load(std::memory_order_relaxed); }
  const std::string& text() const { return text_; }

  // Returns the native media, borrowed; the first call makes it. Returns null when libvlc refuses it.
  libvlc_media_t* Native(libvlc_instance_t* instance);

  // Returns false until a playback of this media has counted something.
  bool GetStats(MediaStats* stats);

  // Returns the size of the first video track.
  PictureSize VideoSize();

  // Returns the native media without making it: null before the first call of Native.
  libvlc_media_t* native();

 private:
  ~Media();

  const Kind kind_;
  const std::string text_;
  std::atomic<int> references_{1};
  std::atomic<bool> windowless_{false};
  std::mutex lock_;
  std::vector<std::string> options_;
  libvlc_media_t* native_ = nullptr;
};

// Owns one reference.
class MediaRef {
 public:
  MediaRef(std::nullptr_t = nullptr) {}
  explicit MediaRef(Media* media) : media_(media) {
    if (media_) media_->Retain();
  }
  MediaRef(const MediaRef& other) : MediaRef(other.media_) {}
  MediaRef(MediaRef&& other) noexcept : media_(std::exchange(other.media_, nullptr)) {}
  MediaRef& operator=(MediaRef other) noexcept {
    std::swap(media_, other.media_);
    return *this;
  }
  ~MediaRef() {
    if (media_) media_->Release();
  }
  Media* get() const { return media_; }
  Media* operator->() const { return media_; }
  explicit operator bool() const { return media_ != nullptr; }

 private:
  Media* media_ = nullptr;
};

}  // namespace vantro::devlib
