// The adapter's libvlc.dll as the host calls it, above the scripted published library.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <string>

#include "devkit/published/published.h"
#include "player/libvlc_functions.h"
#include "tests/support/scratch_folder.h"

namespace vantro::test {

// Event numbers of libvlc 4.
enum : int {
  kMediaChanged = 0x100,
  kNothingSpecial = 0x101,
  kOpening = 0x102,
  kBuffering = 0x103,
  kPlaying = 0x104,
  kPaused = 0x105,
  kStopped = 0x106,
  kStopping = 0x109,
  kEncounteredError = 0x10A,
  kTimeChanged = 0x10B,
  kPositionChanged = 0x10C,
  kSeekableChanged = 0x10D,
  kLengthChanged = 0x111,
  kEsSelected = 0x116,
};

// The functions of one loaded adapter, with the host's own signatures.
struct Adapter : LibVlcFunctions {
  explicit Adapter(HMODULE module);
  decltype(&::libvlc_media_player_stop_async) libvlc_media_player_stop_async;
  decltype(&::libvlc_media_get_stats) libvlc_media_get_stats;
  decltype(&::libvlc_video_take_snapshot) libvlc_video_take_snapshot;

  // The media creators, whose slots have no type.
  libvlc_media_t* NewPath(const char* path) const { return NewMedia(libvlc_media_new_path, path); }
  libvlc_media_t* NewLocation(const char* location) const { return NewMedia(libvlc_media_new_location, location); }

 private:
  static libvlc_media_t* NewMedia(void* creator, const char* text) {
    return reinterpret_cast<libvlc_media_t* (*)(const char*)>(creator)(text);
  }
};

enum class Variant { kEvents, kCallbacks };
std::string NameOf(Variant variant);
inline std::string NameOfParameter(const testing::TestParamInfo<Variant>& info) { return NameOf(info.param); }

// The file of the scripted library in the variant.
std::filesystem::path RealLibraryFile(Variant variant);

// The adapter above the variant, loaded once a process.
const Adapter& AdapterOver(Variant variant);

// A separate copy of the adapter in a separate folder, with the given bytes as libvlc-real.dll.
class FreshAdapter {
 public:
  // If there are no bytes, no libvlc-real.dll is written. `loaded` is the file whose functions are called. `prepare`
  // gets its module before the first call.
  explicit FreshAdapter(
      const std::string& realLibrary, const std::wstring& subfolder = L"runtime",
      const std::wstring& loaded = L"libvlc.dll", const std::function<void(HMODULE)>& prepare = [](HMODULE) {});
  ~FreshAdapter();
  FreshAdapter(const FreshAdapter&) = delete;
  FreshAdapter& operator=(const FreshAdapter&) = delete;

  const Adapter& functions() const { return adapter_; }
  std::filesystem::path folder() const { return folder_; }

 private:
  ScratchFolder scratch_;
  std::filesystem::path folder_;
  HMODULE module_;
  Adapter adapter_;
};

// The calls of a host's callback and their arguments.
struct Received {
  std::atomic<int> calls{0};
  std::atomic<DWORD> threadId{0};
  libvlc_event_t last{};
};
void Receive(const libvlc_event_t* event, void* received);

// A callback that runs a function.
using Action = std::function<void()>;
void RunAction(const libvlc_event_t* event, void* action);

// One player over the scripted library. The test fails if at its end objects are still alive, or if a released object
// has been used.
class AdapterTest : public testing::TestWithParam<Variant> {
 protected:
  void SetUp() override { Start(GetParam()); }
  void TearDown() override;
  void Start(Variant variant);

  const Adapter& vlc() const { return *vlc_; }
  int Attach(int type, libvlc_callback_t callback, void* userData) {
    return vlc().libvlc_event_attach(vlc().libvlc_media_player_event_manager(player_), type, callback, userData);
  }
  void Detach(int type, libvlc_callback_t callback, void* userData) {
    vlc().libvlc_event_detach(vlc().libvlc_media_player_event_manager(player_), type, callback, userData);
  }
  void Release() {
    vlc().libvlc_media_player_release(player_);
    player_ = nullptr;
  }

  // Lets the library report on the calling thread that the player has reached a state, with the event of that state.
  void Reach(int stateEvent) { Reach(real_, stateEvent); }
  void Reach(void* real, int stateEvent);
  // Let the library report other changes, in the form of the variant.
  void ReportTime(int64_t milliseconds);
  void ReportBuffering(float percent);
  void ReportMediaChanged();
  void ReportTrackSelected(published::TrackType type);

  // From now on a stop of the player completes on a thread of the library after that many milliseconds. That thread
  // runs `first` before.
  void StopsAfter(unsigned milliseconds, Action first = {});
  // The player plays. A stop reports success, but the player never stops.
  void NeverStops();

  Variant variant_{};
  const Adapter* vlc_ = nullptr;
  libvlc_instance_t* instance_ = nullptr;
  libvlc_media_player_t* player_ = nullptr;
  void* real_ = nullptr;  // the library's player for player_
};

// The fixture over only one variant.
class EventsVariantTest : public AdapterTest {
  void SetUp() override { Start(Variant::kEvents); }
};
class CallbacksVariantTest : public AdapterTest {
  void SetUp() override { Start(Variant::kCallbacks); }
};

// Returns the milliseconds that the action takes.
uint64_t Taken(const Action& action);

#define OVER_BOTH_VARIANTS(fixture) \
  INSTANTIATE_TEST_SUITE_P(Over, fixture, testing::Values(Variant::kEvents, Variant::kCallbacks), NameOfParameter)

}  // namespace vantro::test
