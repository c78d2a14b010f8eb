// The adapter's calls of the system, with their arguments.
#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <map>
#include <memory>
#include <utility>

#include "common/log.h"
#include "tests/support/import_hook.h"
#include "tests/unit/flutter_host/captured_stderr.h"
#include "tests/unit/runtime/adapter.h"

namespace vantro::test {
namespace {

using testing::Contains;
using testing::ElementsAre;

// Records the adapter's calls and passes them on. Only the wait is replaced.
class SystemCalls {
 public:
  SystemCalls() { current = this; }
  ~SystemCalls() { current = nullptr; }
  SystemCalls(const SystemCalls&) = delete;
  SystemCalls& operator=(const SystemCalls&) = delete;

  void Hook(HMODULE adapter) {
    adapter_ = adapter;
    Replace("kernel32.dll", "GetModuleFileNameW", &ModulePath);
    Replace("kernel32.dll", "SetThreadErrorMode", &ErrorMode);
    Replace("kernel32.dll", "LoadLibraryExW", &LoadTheLibrary);
    Replace("kernel32.dll", "CreateEventW", &MakeEvent);
    Replace("kernel32.dll", "CloseHandle", &Close);
    Replace("user32.dll", "MsgWaitForMultipleObjectsEx", &Wait);
    Replace("user32.dll", "PeekMessageW", &Peek);
  }

  std::vector<std::string> lines;
  HANDLE event = nullptr;           // the one that the adapter made last
  int closed = 0;                   // how often that event was closed
  std::function<DWORD()> waitsFor;  // the result of a wait
  std::wstring path;                // the adapter's path, if it is replaced
  bool pathFails = false;
  DWORD loadError = 0;  // the error of the load, if it is replaced
  std::wstring loaded;  // the path of the last load

 private:
  VANTRO_PRINTF_FORMAT(2, 3) void Note(const char* format, ...) {
    char text[200];
    va_list values;
    va_start(values, format);
    vsnprintf(text, sizeof text, format, values);
    va_end(values);
    lines.push_back(text);
  }
  template <typename Function>
  void Replace(const char* library, const char* name, Function* replacement) {
    hooks_[name] = std::make_unique<ImportHook>(library, name, reinterpret_cast<void*>(replacement), adapter_);
  }
  template <typename Function>
  static Function* Original(const char* name) {
    return reinterpret_cast<Function*>(current->hooks_.at(name)->Original());
  }

  static DWORD WINAPI ModulePath(HMODULE module, LPWSTR path, DWORD room) {
    current->Note("GetModuleFileNameW %s %lu", module == current->adapter_ ? "adapter" : "other", room);
    if (current->pathFails) return 0;
    if (!current->path.empty()) {
      const size_t length = std::min<size_t>(current->path.size(), room);
      std::copy_n(current->path.begin(), length, path);
      return static_cast<DWORD>(length);
    }
    return Original<decltype(GetModuleFileNameW)>("GetModuleFileNameW")(module, path, room);
  }
  static BOOL WINAPI ErrorMode(DWORD mode, LPDWORD former) {
    current->Note("SetThreadErrorMode %lu%s", mode, former ? " keeps the former" : "");
    return Original<decltype(SetThreadErrorMode)>("SetThreadErrorMode")(mode, former);
  }
  static HMODULE WINAPI LoadTheLibrary(LPCWSTR path, HANDLE file, DWORD flags) {
    current->Note("LoadLibraryExW %s %p %lu", std::filesystem::path(path).filename().string().c_str(), file, flags);
    current->loaded = path;
    if (current->loadError != 0) {
      SetLastError(current->loadError);
      return nullptr;
    }
    return Original<decltype(LoadLibraryExW)>("LoadLibraryExW")(path, file, flags);
  }
  static HANDLE WINAPI MakeEvent(LPSECURITY_ATTRIBUTES security, BOOL manual, BOOL set, LPCWSTR name) {
    current->Note("CreateEventW %d %d %d %d", security != nullptr, manual, set, name != nullptr);
    return current->event = Original<decltype(CreateEventW)>("CreateEventW")(security, manual, set, name);
  }
  static BOOL WINAPI Close(HANDLE handle) {
    if (handle == current->event) ++current->closed;
    return Original<decltype(CloseHandle)>("CloseHandle")(handle);
  }
  static DWORD WINAPI Wait(DWORD count, const HANDLE* handles, DWORD milliseconds, DWORD wake, DWORD flags) {
    current->Note("MsgWaitForMultipleObjectsEx %lu %s %lu %#lx %#lx", count,
                  *handles == current->event ? "event" : "other", milliseconds, wake, flags);
    return current->waitsFor();
  }
  static BOOL WINAPI Peek(LPMSG message, HWND window, UINT first, UINT last, UINT remove) {
    current->Note("PeekMessageW %d %u %u %#x", window != nullptr, first, last, remove);
    return Original<decltype(PeekMessageW)>("PeekMessageW")(message, window, first, last, remove);
  }

  static SystemCalls* current;
  HMODULE adapter_ = nullptr;
  std::map<std::string, std::unique_ptr<ImportHook>> hooks_;
};

SystemCalls* SystemCalls::current = nullptr;

class SystemCallsTest : public testing::Test {
 protected:
  SystemCallsTest() { published::Reset(); }
  ~SystemCallsTest() override {
    if (void* const real = published::Player(1)) published::SetState(real, published::kStopped);
    if (player_) vlc().libvlc_media_player_release(player_);
    if (instance_) vlc().libvlc_release(instance_);
  }
  const Adapter& vlc() const { return fresh_->functions(); }
  // Loads the adapter, which loads its library.
  void LoadAdapter() {
    fresh_ = std::make_unique<FreshAdapter>(ReadFileBytes(RealLibraryFile(Variant::kEvents)), L"calls", L"libvlc.dll",
                                            [this](HMODULE adapter) { calls_.Hook(adapter); });
  }
  void MakePlayer() {
    LoadAdapter();
    instance_ = vlc().libvlc_new(0, nullptr);
    player_ = vlc().libvlc_media_player_new(instance_);
    calls_.lines.clear();
  }

  std::unique_ptr<FreshAdapter> fresh_;
  SystemCalls calls_;
  libvlc_instance_t* instance_ = nullptr;
  libvlc_media_player_t* player_ = nullptr;
};

TEST_F(SystemCallsTest, LibraryIsLoadedFromTheAdaptersFolderWithoutABox) {
  DWORD former = 0;
  SetThreadErrorMode(SEM_NOGPFAULTERRORBOX, &former);
  LoadAdapter();
  EXPECT_EQ(GetThreadErrorMode(), static_cast<DWORD>(SEM_NOGPFAULTERRORBOX));
  SetThreadErrorMode(former, nullptr);
  // SEM_FAILCRITICALERRORS, LOAD_WITH_ALTERED_SEARCH_PATH, and the mode of before
  EXPECT_THAT(calls_.lines, ElementsAre("SetThreadErrorMode 1 keeps the former", "GetModuleFileNameW adapter 260",
                                        "LoadLibraryExW libvlc-real.dll 0000000000000000 8", "SetThreadErrorMode 2"));
}

TEST_F(SystemCallsTest, LongPathOfTheAdapterIsReadWithTwiceTheRoom) {
  const std::wstring folder =
      L"C:\\" + std::wstring(260 - 3 - 11, L'x') + L"\\";  // with the file's name 260 characters
  calls_.path = folder + L"libvlc.dll";
  calls_.loadError = ERROR_MOD_NOT_FOUND;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(calls_.loaded, folder + L"libvlc-real.dll");
  EXPECT_THAT(calls_.lines,
              testing::IsSupersetOf({"GetModuleFileNameW adapter 260", "GetModuleFileNameW adapter 520"}));
}

TEST_F(SystemCallsTest, UnknownPathOfTheAdapterLoadsNothingElse) {
  calls_.pathFails = true;
  calls_.loadError = ERROR_MOD_NOT_FOUND;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(calls_.loaded, L"");
}

struct LoadFailure {
  DWORD error;
  const char* sentence;
};

class FailedLoad : public SystemCallsTest, public testing::WithParamInterface<LoadFailure> {};

TEST_P(FailedLoad, IsReportedWithItsReasonAndNumber) {
  calls_.loadError = GetParam().error;
  CapturedStderr errors;
  LoadAdapter();
  EXPECT_EQ(vlc().libvlc_new(0, nullptr), nullptr);
  EXPECT_EQ(errors.Take(), "vantro runtime: " + std::string(GetParam().sentence) + "\n");
  EXPECT_STREQ(vlc().libvlc_errmsg(), GetParam().sentence);
}

INSTANTIATE_TEST_SUITE_P(
    Of, FailedLoad,
    testing::Values(
        LoadFailure{ERROR_FILE_NOT_FOUND,
                    "libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll (error 2)."},
        LoadFailure{ERROR_MOD_NOT_FOUND,
                    "libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll (error 126)."},
        LoadFailure{ERROR_BAD_EXE_FORMAT, "libvlc-real.dll is not a library for 64-bit Windows (error 193)."},
        LoadFailure{ERROR_ACCESS_DENIED, "libvlc-real.dll can't be loaded (error 5)."}),
    [](const auto& row) { return std::to_string(row.param.error); });

TEST_F(SystemCallsTest, PlayerMakesOneEventThatResetsItselfAndClosesIt) {
  LoadAdapter();
  instance_ = vlc().libvlc_new(0, nullptr);
  calls_.lines.clear();
  player_ = vlc().libvlc_media_player_new(instance_);
  EXPECT_THAT(calls_.lines, ElementsAre("CreateEventW 0 0 0 0"));
  EXPECT_EQ(calls_.closed, 0);
  vlc().libvlc_media_player_release(std::exchange(player_, nullptr));
  EXPECT_EQ(calls_.closed, 1);
}

TEST_F(SystemCallsTest, StopWaitsForItsEventAndServesSentMessagesAlone) {
  MakePlayer();
  published::SetState(published::Player(1), published::kPlaying);
  published::SetResult("libvlc_media_player_stop_async", 0);
  calls_.waitsFor = [] {
    published::SetState(published::Player(1), published::kStopped);
    return DWORD{WAIT_OBJECT_0 + 1};
  };
  vlc().libvlc_media_player_stop(player_);
  // QS_SENDMESSAGE, MWMO_INPUTAVAILABLE, PM_NOREMOVE with PM_QS_SENDMESSAGE
  EXPECT_THAT(calls_.lines,
              ElementsAre("MsgWaitForMultipleObjectsEx 1 event 10 0x40 0x4", "PeekMessageW 0 0 0 0x400000"));
}

TEST_F(SystemCallsTest, StopThatIsWokenByItsEventServesNoMessage) {
  MakePlayer();
  published::SetState(published::Player(1), published::kPlaying);
  published::SetResult("libvlc_media_player_stop_async", 0);
  int waits = 0;
  calls_.waitsFor = [&waits] {
    if (++waits == 2) published::SetState(published::Player(1), published::kStopped);
    return waits == 1 ? DWORD{WAIT_OBJECT_0} : DWORD{WAIT_TIMEOUT};
  };
  vlc().libvlc_media_player_stop(player_);
  EXPECT_EQ(waits, 2);
  EXPECT_THAT(calls_.lines, testing::Not(Contains(testing::StartsWith("PeekMessageW"))));
}

}  // namespace
}  // namespace vantro::test
