// The log lines about the files that a start needs, for each way in which they can be missing.
#include "shell/startup_diagnostics.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>
#include <vector>

#include "player/vlc_runtime.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_states.h"
#include "tests/support/log_capture.h"
#include "tests/unit/flutter_host/bundle_fixture.h"

namespace vantro {
namespace {

using test::ImportHook;
using test::LogCapture;
using Lines = std::vector<std::string>;

// Makes status queries fail for every path that ends in the given text. The default error is that of a missing path.
class HiddenPath {
 public:
  explicit HiddenPath(std::wstring end, int lookError = ENOENT) {
    original = hook_.Original<decltype(original)>();
    hidden = std::move(end);
    error = lookError;
  }
  HiddenPath(const HiddenPath&) = delete;
  HiddenPath& operator=(const HiddenPath&) = delete;

 private:
  static int Status(const wchar_t* path, struct _stat64* status) {
    if (!std::wstring_view(path).ends_with(hidden)) return original(path, status);
    errno = error;
    return -1;
  }
  static inline std::wstring hidden;
  static inline int error = ENOENT;
  static inline int (*original)(const wchar_t*, struct _stat64*) = nullptr;
  ImportHook hook_{"msvcrt.dll", "_wstat64", &Status};
};

// Returns the program's folder without a backslash at the end, in the form of the status query.
std::wstring ProgramFolder() {
  wchar_t path[MAX_PATH];
  GetModuleFileNameW(nullptr, path, MAX_PATH);
  const std::wstring full = path;
  return full.substr(0, full.rfind(L'\\'));
}

// Sets or removes an environment variable of the process, and restores it at the end.
class Variable {
 public:
  Variable(const char* name, const char* value) : name_(name) {
    before_.resize(GetEnvironmentVariableA(name, nullptr, 0));
    if (!before_.empty()) GetEnvironmentVariableA(name, before_.data(), static_cast<DWORD>(before_.size()));
    SetEnvironmentVariableA(name, value);
  }
  ~Variable() { SetEnvironmentVariableA(name_, before_.empty() ? nullptr : before_.c_str()); }
  Variable(const Variable&) = delete;
  Variable& operator=(const Variable&) = delete;

 private:
  const char* name_;
  std::string before_;
};

Lines MissingVlcDirectory(const std::string& pathLine) {
  return {"INFO VLC path: " + GetExeDirectory(), "WARNING WARNING: VLC directory not found at: " + GetExeDirectory(),
          pathLine};
}

TEST(VlcDiagnostics, NamesBothLibraries) {
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_EQ(log.Lines(), (Lines{"INFO VLC path: " + GetExeDirectory(), "INFO VLC directory exists",
                                "INFO libvlc.dll exists at: " + GetExeDirectory() + "\\libvlc.dll",
                                "INFO libvlccore.dll exists at: " + GetExeDirectory() + "\\libvlccore.dll"}));
}

TEST(VlcDiagnostics, MissingDirectoryNamesTheSearchPath) {
  const HiddenPath hidden(ProgramFolder());
  const Variable path("PATH", "C:\\one;C:\\two");
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_EQ(log.Lines(), MissingVlcDirectory("INFO PATH environment variable: C:\\one;C:\\two"));
}

TEST(VlcDiagnostics, MissingDirectoryWithoutASearchPathSaysSo) {
  const HiddenPath hidden(ProgramFolder());
  const Variable path("PATH", nullptr);
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_EQ(log.Lines(), MissingVlcDirectory("WARNING PATH environment variable not found or empty"));
}

DWORD WINAPI ReturnSizeOnly(const char*, char*, DWORD size) { return size == 0 ? 20 : 0; }

TEST(VlcDiagnostics, SearchPathThatCannotBeReadIsAFailure) {
  const HiddenPath hidden(ProgramFolder());
  const ImportHook hook("kernel32.dll", "GetEnvironmentVariableA", ReturnSizeOnly);
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_EQ(log.Lines(), MissingVlcDirectory("WARNING Failed to get PATH environment variable"));
}

DWORD WINAPI ReturnTheSizeItself(const char*, char*, DWORD) { return 20; }

TEST(VlcDiagnostics, SearchPathThatHasGrownMeanwhileIsAFailure) {
  const HiddenPath hidden(ProgramFolder());
  const ImportHook hook("kernel32.dll", "GetEnvironmentVariableA", ReturnTheSizeItself);
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_EQ(log.Lines(), MissingVlcDirectory("WARNING Failed to get PATH environment variable"));
}

// The conversions of narrow texts, each as "code page, flags".
Lines conversions;
decltype(&MultiByteToWideChar) realConversion = nullptr;
int WINAPI RecordConversion(UINT codePage, DWORD flags, const char* text, int length, wchar_t* wide, int capacity) {
  conversions.push_back(std::to_string(codePage) + ", " + std::to_string(flags));
  return realConversion(codePage, flags, text, length, wide, capacity);
}

TEST(VlcDiagnostics, ReadsPathsInTheCodePageOfTheSystem) {
  const ImportHook hook("kernel32.dll", "MultiByteToWideChar", RecordConversion);
  realConversion = hook.Original<decltype(realConversion)>();
  conversions.clear();
  LogVlcRuntime();
  const std::string plain = std::to_string(CP_ACP) + ", 0";
  EXPECT_EQ(conversions, Lines(6, plain));  // the length and the text of three paths
}

TEST(VlcDiagnostics, MissingLibrariesAreErrors) {
  const HiddenPath hidden(L".dll");
  const LogCapture log;
  LogVlcRuntime();
  EXPECT_TRUE(log.Has("ERROR ERROR: libvlc.dll not found at: " + GetVlcPath() + "\\libvlc.dll"));
  EXPECT_TRUE(log.Has("ERROR ERROR: libvlccore.dll not found at: " + GetVlcPath() + "\\libvlccore.dll"));
}

TEST(VlcDiagnostics, LibrariesThatCannotBeLookedAtCountAsMissing) {
  const HiddenPath hidden(L".dll", EACCES);
  const LogCapture log;
  EXPECT_NO_THROW(LogVlcRuntime());
  EXPECT_TRUE(log.Has("ERROR ERROR: libvlc.dll not found at: " + GetVlcPath() + "\\libvlc.dll"));
  EXPECT_TRUE(log.Has("ERROR ERROR: libvlccore.dll not found at: " + GetVlcPath() + "\\libvlccore.dll"));
}

DWORD loadError = 0;
HMODULE WINAPI RefuseLoad(const char*) {
  SetLastError(loadError);
  return nullptr;
}

TEST(LibVlcLoad, FailureIsLoggedWithItsErrorAndAMissingDependencyByName) {
  const ImportHook hook("kernel32.dll", "LoadLibraryA", RefuseLoad);
  const LogCapture log;
  loadError = ERROR_BAD_EXE_FORMAT;
  LogLibVlcLoad();
  loadError = ERROR_MOD_NOT_FOUND;
  LogLibVlcLoad();
  EXPECT_EQ(log.Lines(), (Lines{"ERROR Manually loading libvlc.dll failed with error: 193",
                                "ERROR Manually loading libvlc.dll failed with error: 126",
                                "ERROR ERROR: A required dependency DLL was not found"}));
}

int freed = 0;
BOOL WINAPI CountFree(HMODULE library) {
  EXPECT_EQ(library, GetModuleHandleA("libvlc.dll"));
  ++freed;
  return TRUE;
}

TEST(LibVlcLoad, FreesTheLibraryAgain) {
  const ImportHook hook("kernel32.dll", "FreeLibrary", CountFree);
  freed = 0;
  LogLibVlcLoad();
  EXPECT_EQ(freed, 1);
}

FARPROC WINAPI RefuseFunction(HMODULE, const char*) {
  SetLastError(ERROR_PROC_NOT_FOUND);
  return nullptr;
}

TEST(LibVlcLoad, LibraryWithoutItsFirstFunctionIsAnError) {
  const ImportHook hook("kernel32.dll", "GetProcAddress", RefuseFunction);
  const LogCapture log;
  LogLibVlcLoad();
  EXPECT_EQ(log.Lines(), (Lines{"INFO Manually loading libvlc.dll succeeded",
                                "ERROR Failed to find libvlc_new function, error: 127"}));
}

TEST(BundleDiagnostics, CompleteBundleIsLoggedWithItsSizes) {
  test::BundleFixture bundle;
  bundle.AddFile("flutter_assets/kernel_blob.bin", 5);
  bundle.AddFile("flutter_assets/app.so", 7);
  bundle.AddFile("icudtl.dat", 11);
  const LogCapture log;
  LogFlutterBundle();
  EXPECT_EQ(log.Lines(), (Lines{"INFO Flutter assets directory found at: " + bundle.NarrowPath("flutter_assets"),
                                "INFO kernel_blob.bin found (5 bytes)", "INFO app.so found (7 bytes)",
                                "INFO ICU data file found at: " + bundle.NarrowPath("icudtl.dat") + " (11 bytes)"}));
}

TEST(BundleDiagnostics, MissingKernelIsAWarningAndAMissingLibraryANote) {
  test::BundleFixture bundle;
  bundle.AddFolder("flutter_assets");
  const LogCapture log;
  LogFlutterBundle();
  EXPECT_TRUE(log.Has("WARNING WARNING: kernel_blob.bin not found!"));
  EXPECT_TRUE(log.Has("INFO Note: app.so not found (JIT mode)"));
}

TEST(WindowCreationDiagnostics, WindowOfASystemClassShowsWhetherTheClassIsToBlame) {
  const LogCapture log;
  LogWindowCreationFailure(GetModuleHandleW(nullptr), ERROR_NOT_ENOUGH_MEMORY);
  EXPECT_EQ(log.Lines(), (Lines{"ERROR CreateWindowW failed with error: 8",
                                "WARNING Test window creation succeeded, issue is specific to application window"}));
}

// The arguments of the window that a test of the window creation makes.
struct TestWindow {
  DWORD exStyle, style;
  std::wstring className, title;
  int x, y, width, height;
  HWND parent;
  HMENU menu;
  HINSTANCE instance;
  void* parameter;

  bool operator==(const TestWindow&) const = default;
};
std::vector<TestWindow> testWindows;
HWND WINAPI RefuseWindow(DWORD exStyle, const wchar_t* className, const wchar_t* title, DWORD style, int x, int y,
                         int width, int height, HWND parent, HMENU menu, HINSTANCE instance, void* parameter) {
  testWindows.push_back({exStyle, style, className, title, x, y, width, height, parent, menu, instance, parameter});
  SetLastError(ERROR_NOT_ENOUGH_MEMORY);
  return nullptr;
}

TEST(WindowCreationDiagnostics, ATestWindowThatSucceedsIsDestroyedAfterItsLine) {
  const test::LineStates states(
      [] { return std::string(FindWindowW(L"STATIC", L"Test Window") ? "there" : "not there"); });
  const LogCapture log;
  LogWindowCreationFailure(GetModuleHandleW(nullptr), ERROR_ACCESS_DENIED);
  EXPECT_EQ(log.Lines(), (Lines{"ERROR CreateWindowW failed with error: 5",
                                "WARNING Test window creation succeeded, issue is specific to application window"}));
  EXPECT_EQ(states.At("WARNING Test window creation succeeded"), "there");
  EXPECT_EQ(FindWindowW(L"STATIC", L"Test Window"), nullptr);
}

TEST(WindowCreationDiagnostics, ASecondFailureIsLoggedWithItsErrorAndTheInvalidHandleWithItsReason) {
  const ImportHook creation("user32.dll", "CreateWindowExW", RefuseWindow);
  testWindows.clear();
  const LogCapture log;
  LogWindowCreationFailure(GetModuleHandleW(nullptr), ERROR_INVALID_WINDOW_HANDLE);
  EXPECT_EQ(log.Lines(),
            (Lines{"ERROR CreateWindowW failed with error: 1400",
                   "ERROR Invalid window handle - this may be due to an issue with the window class registration",
                   "ERROR Test window creation also failed with error: 8"}));
  EXPECT_EQ(testWindows,
            (std::vector<TestWindow>{{0, WS_OVERLAPPEDWINDOW, L"STATIC", L"Test Window", CW_USEDEFAULT, CW_USEDEFAULT,
                                      100, 100, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr}}));
}

}  // namespace
}  // namespace vantro
