// A media as the program holds it: a location or path with options, counted references, and libvlc 3's media once a
// player has taken it.
//
// libvlc 4 makes a media without an instance and libvlc 3 needs one, so the native media is made by the first player
// that is given this one, on that player's instance.
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
  unsigned width = 0;   // pixels to be shown
  unsigned height = 0;  // 0 while no video track is known
};

class Media {
 public:
  enum class Kind { kLocation, kPath };
  // The new object has one reference, the caller's. `text` is already in the machine's terms.
  Media(Kind kind, std::string text) : kind_(kind), text_(std::move(text)) {}
  Media(const Media&) = delete;
  Media& operator=(const Media&) = delete;

  void Retain() { references_.fetch_add(1, std::memory_order_relaxed); }
  void Release();

  // ":vout=" is no option for libvlc 3, whose pictures are always taken here: see windowless.
  void AddOption(const char* option);
  // True when the options ask for no window at all (":vout=vdummy").
  bool windowless() const { return windowless_.load(std::memory_order_relaxed); }
  const std::string& text() const { return text_; }

  // The native media, borrowed; made on the first call. Null when libvlc refuses it.
  libvlc_media_t* Native(libvlc_instance_t* instance);

  // False while no playback of this media has counted anything.
  bool GetStats(MediaStats* stats);

  // Size of the first video track.
  PictureSize VideoSize();

  // The same without making it: null before the first call.
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
