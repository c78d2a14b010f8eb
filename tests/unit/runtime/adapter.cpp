#include "tests/unit/runtime/adapter.h"

#include <bit>

namespace vantro::test {
namespace {

std::filesystem::path ProgramFolder() {
  wchar_t path[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  return std::filesystem::path(path).parent_path();
}

HMODULE Load(const std::filesystem::path& library) {
  const HMODULE module = LoadLibraryExW(library.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  EXPECT_NE(module, nullptr) << library.string() << ": error " << GetLastError();
  return module;
}

template <typename Function>
void Find(HMODULE module, const char* name, Function& slot) {
  slot = reinterpret_cast<Function>(GetProcAddress(module, name));
}

}  // namespace

Adapter::Adapter(HMODULE module) : LibVlcFunctions{} {
  ResolveLibVlcFunctions(module, *this);
  Find(module, "libvlc_media_player_stop_async", libvlc_media_player_stop_async);
  Find(module, "libvlc_media_get_stats", libvlc_media_get_stats);
  Find(module, "libvlc_video_take_snapshot", libvlc_video_take_snapshot);
}

std::string NameOf(Variant variant) { return variant == Variant::kEvents ? "events" : "callbacks"; }

std::filesystem::path RealLibraryFile(Variant variant) { return ProgramFolder() / NameOf(variant) / "libvlc-real.dll"; }

const Adapter& AdapterOver(Variant variant) {
  static const Adapter events(Load(ProgramFolder() / "events" / "libvlc.dll"));
  static const Adapter callbacks(Load(ProgramFolder() / "callbacks" / "libvlc.dll"));
  return variant == Variant::kEvents ? events : callbacks;
}

FreshAdapter::FreshAdapter(const std::string& realLibrary, const std::wstring& subfolder, const std::wstring& loaded,
                           const std::function<void(HMODULE)>& prepare)
    : folder_(scratch_ / subfolder), module_(nullptr), adapter_([&] {
        std::filesystem::create_directories(folder_);
        std::filesystem::copy_file(ProgramFolder() / "events" / "libvlc.dll", folder_ / "libvlc.dll");
        if (!realLibrary.empty()) WriteFileBytes(folder_ / "libvlc-real.dll", realLibrary);
        module_ = Load(folder_ / loaded);
        prepare(module_);
        return Adapter(module_);
      }()) {}

FreshAdapter::~FreshAdapter() {
  const HMODULE real = GetModuleHandleW((folder_ / "libvlc-real.dll").c_str());
  FreeLibrary(module_);
  if (real) FreeLibrary(real);
}

void Receive(const libvlc_event_t* event, void* userData) {
  auto* const received = static_cast<Received*>(userData);
  received->last = *event;
  received->threadId = GetCurrentThreadId();
  ++received->calls;
}

void RunAction(const libvlc_event_t*, void* action) { (*static_cast<Action*>(action))(); }

void AdapterTest::Start(Variant variant) {
  variant_ = variant;
  vlc_ = &AdapterOver(variant);
  published::Reset();
  instance_ = vlc().libvlc_new(0, nullptr);
  player_ = vlc().libvlc_media_player_new(instance_);
  real_ = published::Player(1);
  published::ClearCalls();
}

void AdapterTest::TearDown() {
  published::JoinThreads();
  published::OnCall("libvlc_media_player_stop_async", {});
  for (int number = 1; void* const real = published::Player(number); ++number)
    published::SetState(real, published::kStopped);
  vlc().libvlc_media_player_release(player_);
  vlc().libvlc_release(instance_);
  EXPECT_THAT(published::Violations(), testing::IsEmpty());
  const published::LiveObjects live = published::Live();
  EXPECT_EQ(live.instances, 0);
  EXPECT_EQ(live.players, 0);
  EXPECT_EQ(live.media, 0);
  EXPECT_EQ(live.trackLists, 0);
  EXPECT_EQ(live.outputLists, 0);
}

void AdapterTest::Reach(void* real, int stateEvent) {
  struct Row {
    int event;
    published::State state;
  };
  constexpr Row kRows[] = {{kNothingSpecial, published::kNothingSpecial},
                           {kOpening, published::kOpening},
                           {kPlaying, published::kPlaying},
                           {kPaused, published::kPaused},
                           {kStopped, published::kStopped},
                           {kStopping, published::kStopping}};
  for (const Row& row : kRows) {
    if (row.event != stateEvent) continue;
    // Under one lock, as in libvlc: no thread sees the state before its event is delivered.
    published::WithLock(real, [&] {
      published::SetState(real, row.state);
      if (variant_ == Variant::kEvents) {
        published::Raise(real, row.event);
      } else {
        published::WithCallbacks(real, [&](const auto& cbs, void* opaque) { cbs.stateChanged(opaque, row.state); });
      }
    });
  }
}

void AdapterTest::ReportTime(int64_t milliseconds) {
  if (variant_ == Variant::kEvents) {
    published::Raise(real_, kTimeChanged, static_cast<uint64_t>(milliseconds));
  } else {
    published::WithCallbacks(
        real_, [&](const auto& cbs, void* opaque) { cbs.positionChanged(opaque, milliseconds * 1000, 0.5); });
  }
}

void AdapterTest::ReportBuffering(float percent) {
  if (variant_ == Variant::kEvents) {
    published::Raise(real_, kBuffering, std::bit_cast<uint32_t>(percent));
  } else {
    published::WithCallbacks(real_,
                             [&](const auto& cbs, void* opaque) { cbs.bufferingChanged(opaque, percent / 100.0f); });
  }
}

void AdapterTest::ReportMediaChanged() {
  void* const media = published::MediaOf(real_);
  if (variant_ == Variant::kEvents) {
    published::Raise(real_, kMediaChanged, reinterpret_cast<uint64_t>(media));
  } else {
    published::WithCallbacks(real_, [&](const auto& cbs, void* opaque) { cbs.mediaChanged(opaque, media); });
  }
}

void AdapterTest::ReportTrackSelected(published::TrackType type) {
  if (variant_ == Variant::kEvents) {
    published::Raise(real_, kEsSelected, static_cast<uint64_t>(type));
  } else {
    published::WithCallbacks(
        real_, [&](const auto& cbs, void* opaque) { cbs.trackSelectionChanged(opaque, type, nullptr, "id"); });
  }
}

void AdapterTest::StopsAfter(unsigned milliseconds, Action first) {
  published::OnCall("libvlc_media_player_stop_async", [=, this] {
    published::OnCall("libvlc_media_player_stop_async", {});
    published::SetState(real_, published::kStopping);
    published::Later(milliseconds, [=, this] {
      if (first) first();
      Reach(kStopped);
    });
  });
}

void AdapterTest::NeverStops() {
  published::SetState(real_, published::kPlaying);
  published::OnCall("libvlc_media_player_stop_async", {});
}

uint64_t Taken(const Action& action) {
  const ULONGLONG began = GetTickCount64();
  action();
  return GetTickCount64() - began;
}

}  // namespace vantro::test
