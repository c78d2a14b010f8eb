// The host of the view against the loopback engine, with real bundles on disk.
#include "flutter_host/flutter_engine.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "flutter_host/embedding_api.h"
#include "flutter_host/flutter_view_controller.h"
#include "tests/support/import_hook.h"
#include "tests/support/log_capture.h"
#include "tests/support/loopback.h"
#include "tests/unit/flutter_host/bundle_fixture.h"

namespace vantro {
namespace {

using test::LogCapture;

std::string Pointer(const void* pointer) {
  char text[32];
  std::snprintf(text, sizeof text, "%p", pointer);
  return text;
}

// The next use of one of the embedding's functions fails.
LoopbackFaults Fault(int32_t LoopbackFaults::*fault) {
  LoopbackFaults faults{};
  faults.*fault = 1;
  return faults;
}

class FlutterEngineTest : public testing::Test {
 protected:
  FlutterEngineTest() {
    SetEnvironmentVariableA("FLUTTER_ENGINE", nullptr);
    SetEnvironmentVariableA("FLUTTER_ROOT", nullptr);
  }
  ~FlutterEngineTest() override { DestroyWindow(parent_); }

  // The bundle of a debug build.
  void AddDebugBundle() {
    bundle_.AddFile("icudtl.dat", 11);
    bundle_.AddFile("flutter_assets/kernel_blob.bin", 22);
  }
  // The lines from one to another, both included.
  static std::vector<std::string> Between(const std::vector<std::string>& lines, const std::string& first,
                                          const std::string& last) {
    const auto begin = std::find(lines.begin(), lines.end(), first);
    const auto end = std::find(begin, lines.end(), last);
    return {begin, end == lines.end() ? end : end + 1};
  }

  test::Loopback loopback_;
  test::BundleFixture bundle_;
  HWND parent_ = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 640, 480, nullptr, nullptr, nullptr, nullptr);
  FlutterEngine engine_;
};

TEST_F(FlutterEngineTest, StartsWithoutAController) {
  EXPECT_EQ(engine_.viewController_, nullptr);
  EXPECT_EQ(engine_.parentWindow_, nullptr);
  EXPECT_EQ(engine_.flutterWindow_, nullptr);
  EXPECT_TRUE(engine_.visible_);
  EXPECT_EQ(engine_.alpha_, 1.0);
}

TEST_F(FlutterEngineTest, DataDirectoryIsBesideTheExecutable) {
  EXPECT_EQ(FlutterEngine::DataDirectory(), bundle_.data());
}

TEST_F(FlutterEngineTest, DebugBundleStartsWithTheseLinesInThisOrder) {
  AddDebugBundle();
  SetEnvironmentVariableA("FLUTTER_ROOT", "C:\\flutter");
  SetEnvironmentVariableA("PATH", "C:\\windows");
  const LogCapture log;
  ASSERT_TRUE(engine_.Initialize(parent_));
  const std::string assets = bundle_.NarrowPath("flutter_assets");
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "INFO ==== Flutter Engine Initialization Started ====",
                             "DEBUG Parent window handle: " + Pointer(parent_),
                             "INFO ICU data path: " + bundle_.NarrowPath("icudtl.dat"),
                             "INFO Flutter assets path: " + assets,
                             "INFO ",
                             "Environment variables that might affect Flutter:",
                             "INFO FLUTTER_ENGINE not set",
                             "INFO FLUTTER_ROOT: C:\\flutter",
                             "INFO PATH: C:\\windows",
                             "INFO ICU data file found successfully",
                             "INFO ICU data file size: 11 bytes",
                             "INFO Flutter assets directory found successfully at " + assets,
                             "INFO Flutter assets directory contents:",
                             "INFO kernel_blob.bin (file, 22 bytes)",
                             "INFO kernel_blob.bin found (22 bytes)",
                             "INFO Creating DartProject with assets path: " + assets,
                             "INFO Attempting to configure Flutter for transparency...",
                             "INFO DartProject created with command line args:",
                             "INFO   vantro",
                             "INFO   --no-sound-null-safety",
                             "INFO   --enable-dart-profiling",
                             "INFO   --start-paused",
                             "INFO   --dart-flags=--observe",
                             "INFO Creating FlutterViewController (800x600)...",
                             "INFO FlutterViewController created successfully",
                             "INFO Successfully got Flutter window handle: " + Pointer(engine_.flutterWindow_),
                             "INFO Flutter child window configured for DWM composition",
                             "INFO Flutter window positioned and styled as child window",
                             "INFO Flutter view set to visible",
                             "INFO ==== Flutter Engine Initialization Completed Successfully ====",
                         }));
}

TEST_F(FlutterEngineTest, EachEnvironmentVariableIsLoggedOrMissing) {
  for (const char* name : {"FLUTTER_ENGINE", "FLUTTER_ROOT", "PATH"}) {
    SetEnvironmentVariableA(name, "C:\\somewhere");
    LogCapture log;
    FlutterEngine().Initialize(parent_);
    EXPECT_TRUE(log.Has("INFO " + std::string(name) + ": C:\\somewhere"));
    SetEnvironmentVariableA(name, nullptr);
    FlutterEngine().Initialize(parent_);
    EXPECT_TRUE(log.Has("INFO " + std::string(name) + " not set"));
  }
}

TEST_F(FlutterEngineTest, ContentsOfTheAssetsAreListedWithKindAndSize) {
  bundle_.AddFile("flutter_assets/fonts/a.ttf", 5);
  bundle_.AddFile(L"flutter_assets/\u00e9.json", 3);
  const LogCapture log;
  engine_.Initialize(parent_);
  EXPECT_TRUE(log.Has("INFO fonts (directory)"));
  EXPECT_TRUE(log.Has("INFO \xc3\xa9.json (file, 3 bytes)"));
  EXPECT_EQ(log.CountContaining("a.ttf"), 0);
}

TEST_F(FlutterEngineTest, ProjectNamesTheBundleAndTheArguments) {
  AddDebugBundle();
  ASSERT_TRUE(engine_.Initialize(parent_));
  const LoopbackEngineProperties properties = loopback_.NewestProperties();
  const std::wstring data = bundle_.data().native();
  EXPECT_EQ(properties.assets_path, data + L"\\flutter_assets");
  EXPECT_EQ(properties.icu_data_path, data + L"\\icudtl.dat");
  EXPECT_EQ(properties.aot_library_path, data + L"\\app.so");
  EXPECT_EQ(properties.has_entrypoint, 0);
  ASSERT_EQ(properties.argument_count, 5);
  const char* const expected[] = {"vantro", "--no-sound-null-safety", "--enable-dart-profiling", "--start-paused",
                                  "--dart-flags=--observe"};
  for (int at = 0; at < 5; ++at) EXPECT_STREQ(properties.arguments[at], expected[at]);
  EXPECT_EQ(properties.view_width, 800);
  EXPECT_EQ(properties.view_height, 600);
}

TEST_F(FlutterEngineTest, FirstArgumentIsVantroWhateverTheNameOfTheExecutable) {
  ASSERT_NE(bundle_.data().parent_path().filename(), L"vantro");
  ASSERT_TRUE(engine_.Initialize(parent_));
  EXPECT_STREQ(loopback_.NewestProperties().arguments[0], "vantro");
}

TEST_F(FlutterEngineTest, ViewBecomesAVisibleChildOfTheParent) {
  ShowWindow(parent_, SW_SHOW);
  ASSERT_TRUE(engine_.Initialize(parent_));
  const HWND view = engine_.flutterWindow_;
  EXPECT_EQ(view, engine_.viewController_->ViewWindow());
  EXPECT_EQ(GetParent(view), parent_);
  EXPECT_NE(GetWindowLongPtrA(view, GWL_STYLE) & WS_CHILD, 0);
  EXPECT_TRUE(IsWindowVisible(view));
  RECT area;
  GetWindowRect(view, &area);
  EXPECT_EQ(area.right - area.left, 800);
  EXPECT_EQ(area.bottom - area.top, 600);
  POINT corner{area.left, area.top};
  ScreenToClient(parent_, &corner);
  EXPECT_EQ(corner.x, 0);
  EXPECT_EQ(corner.y, 0);
  EXPECT_EQ(engine_.parentWindow_, parent_);
}

TEST_F(FlutterEngineTest, NullParentLeavesTheViewsParentAndSetsTheStyle) {
  const LogCapture log;
  ASSERT_TRUE(engine_.Initialize(nullptr));
  EXPECT_EQ(GetWindow(parent_, GW_CHILD), nullptr);
  EXPECT_NE(GetWindowLongPtrA(engine_.flutterWindow_, GWL_STYLE) & WS_CHILD, 0);
  EXPECT_TRUE(log.Has("INFO Flutter window positioned and styled as child window"));
}

TEST_F(FlutterEngineTest, InitializeSetsTheViewVisibleAgain) {
  engine_.visible_ = false;
  engine_.Initialize(parent_);
  EXPECT_TRUE(engine_.visible_);
}

TEST_F(FlutterEngineTest, DestructionTakesTheViewAndTheEngine) {
  const int before = loopback_.EngineCount();
  HWND view;
  {
    FlutterEngine engine;
    engine.Initialize(parent_);
    view = engine.flutterWindow_;
    EXPECT_EQ(loopback_.EngineCount(), before + 1);
  }
  EXPECT_FALSE(IsWindow(view));
  EXPECT_EQ(loopback_.EngineCount(), before);
}

// A fault that a start finds, and the result of the start.
struct Finding {
  const char* name;
  std::function<void(test::BundleFixture&)> makeBundle;
  LoopbackFaults faults;
  std::vector<std::string> lines;
  bool isStarted;
};
void PrintTo(const Finding& finding, std::ostream* out) { *out << finding.name; }

class FindingOfAStart : public FlutterEngineTest, public testing::WithParamInterface<Finding> {};

TEST_P(FindingOfAStart, IsLoggedAndDecidesTheResult) {
  GetParam().makeBundle(bundle_);
  loopback_.SetFaults(GetParam().faults);
  const LogCapture log;
  EXPECT_EQ(engine_.Initialize(parent_), GetParam().isStarted);
  for (const std::string& line : GetParam().lines) EXPECT_TRUE(log.Has(line)) << line;
}

void DebugBundle(test::BundleFixture& bundle) {
  bundle.AddFile("icudtl.dat", 1);
  bundle.AddFile("flutter_assets/kernel_blob.bin", 1);
}

const Finding kFindings[] = {
    {"IcuDataMissing",
     [](test::BundleFixture& bundle) { bundle.AddFile("flutter_assets/kernel_blob.bin", 1); },
     {},
     {"WARNING WARNING: ICU data file not found!"},
     true},
    {"NeitherKernelNorLibrary",
     [](test::BundleFixture& bundle) { bundle.AddFolder("flutter_assets"); },
     {},
     {"WARNING WARNING: kernel_blob.bin not found!",
      "ERROR CRITICAL ERROR: Neither kernel_blob.bin (JIT) nor app.so/app.elf (AOT) found!",
      "ERROR Flutter will not be able to run Dart code without these files.",
      "INFO Try rebuilding with 'flutter build bundle --debug' to generate kernel_blob.bin"},
     true},
    {"LibraryInsteadOfKernel",
     [](test::BundleFixture& bundle) {
       bundle.AddFile("flutter_assets/app.so", 7);
       bundle.AddFile("flutter_assets/app.elf", 8);
     },
     {},
     {"WARNING WARNING: kernel_blob.bin not found!", "INFO app.so found instead - running in AOT mode (7 bytes)"},
     true},
    {"ElfInsteadOfKernel",
     [](test::BundleFixture& bundle) { bundle.AddFile("flutter_assets/app.elf", 8); },
     {},
     {"WARNING WARNING: kernel_blob.bin not found!", "INFO app.elf found instead - running in AOT mode (8 bytes)"},
     true},
    {"EngineIsNull",
     DebugBundle,
     Fault(&LoopbackFaults::fail_engine_create),
     {"ERROR ERROR: Failed to create Flutter controller (nullptr returned)"},
     false},
    {"ControllerIsNull",
     DebugBundle,
     Fault(&LoopbackFaults::fail_view_controller_create),
     {"ERROR ERROR: Failed to create Flutter controller (nullptr returned)"},
     false},
    {"NoView",
     DebugBundle,
     Fault(&LoopbackFaults::no_view),
     {"WARNING WARNING: Could not get Flutter window handle",
      "INFO ==== Flutter Engine Initialization Completed Successfully ===="},
     true},
    {"NoViewWindow",
     DebugBundle,
     Fault(&LoopbackFaults::no_view_window),
     {"WARNING WARNING: Could not get Flutter window handle", "INFO Flutter view set to visible",
      "INFO ==== Flutter Engine Initialization Completed Successfully ===="},
     true},
};

INSTANTIATE_TEST_SUITE_P(FlutterEngine, FindingOfAStart, testing::ValuesIn(kFindings),
                         [](const auto& row) { return std::string(row.param.name); });

TEST_F(FlutterEngineTest, MissingAssetsSkipTheListingAndTheKernel) {
  bundle_.AddFile("icudtl.dat", 1);
  const LogCapture log;
  EXPECT_TRUE(engine_.Initialize(parent_));
  EXPECT_TRUE(
      log.Has("WARNING WARNING: Flutter assets directory not found at " + bundle_.NarrowPath("flutter_assets") + "!"));
  EXPECT_EQ(log.CountContaining("directory contents"), 0);
  EXPECT_EQ(log.CountContaining("kernel_blob.bin"), 0);
}

TEST_F(FlutterEngineTest, LibraryUnderDataAloneCountsAsMissing) {
  bundle_.AddFile("icudtl.dat", 1);
  bundle_.AddFile("app.so", 9);
  bundle_.AddFolder("flutter_assets");
  const LogCapture log;
  EXPECT_TRUE(engine_.Initialize(parent_));
  EXPECT_EQ(Between(log.Lines(), "WARNING WARNING: kernel_blob.bin not found!",
                    "INFO Try rebuilding with 'flutter build bundle --debug' to generate kernel_blob.bin"),
            (std::vector<std::string>{
                "WARNING WARNING: kernel_blob.bin not found!",
                "ERROR CRITICAL ERROR: Neither kernel_blob.bin (JIT) nor app.so/app.elf (AOT) found!",
                "ERROR Flutter will not be able to run Dart code without these files.",
                "INFO Try rebuilding with 'flutter build bundle --debug' to generate kernel_blob.bin"}));
  EXPECT_EQ(loopback_.NewestProperties().aot_library_path, bundle_.data().native() + L"\\app.so");
}

TEST_F(FlutterEngineTest, ViewWithoutAWindowIsNotParented) {
  loopback_.SetFaults(Fault(&LoopbackFaults::no_view_window));
  EXPECT_TRUE(engine_.Initialize(parent_));
  EXPECT_EQ(engine_.flutterWindow_, nullptr);
  EXPECT_EQ(GetWindow(parent_, GW_CHILD), nullptr);
}

// The name of the query that failed: the words between the first two colons of the error's text.
std::string QueryErrorOf(const std::function<void()>& start) {
  try {
    start();
  } catch (const std::filesystem::filesystem_error& error) {
    const std::string text = error.what();
    const size_t begin = text.find(": ") + 2;
    return text.substr(begin, text.find(": ", begin) - begin);
  }
  return "no error";
}

// Makes status queries fail for every path that ends in the name.
class RefusedStatus {
 public:
  explicit RefusedStatus(std::wstring name) {
    original = hook_.Original<decltype(original)>();
    refused = std::move(name);
  }
  ~RefusedStatus() { refused.clear(); }
  RefusedStatus(const RefusedStatus&) = delete;
  RefusedStatus& operator=(const RefusedStatus&) = delete;

 private:
  static int Status(const wchar_t* path, struct _stat64* status) {
    if (!refused.empty() && std::wstring_view(path).ends_with(refused)) {
      errno = EACCES;
      return -1;
    }
    return original(path, status);
  }
  static inline std::wstring refused;
  static inline int (*original)(const wchar_t*, struct _stat64*) = nullptr;
  test::ImportHook hook_{"msvcrt.dll", "_wstat64", &Status};
};

TEST_F(FlutterEngineTest, FailedTestOfExistencePassesOutWithItsName) {
  RefusedStatus status(L"icudtl.dat");
  EXPECT_EQ(QueryErrorOf([this] { engine_.Initialize(parent_); }), "exists");
}

TEST_F(FlutterEngineTest, FailedStatusOfAnEntryPassesOutWithItsName) {
  AddDebugBundle();
  RefusedStatus status(L"kernel_blob.bin");
  EXPECT_EQ(QueryErrorOf([this] { engine_.Initialize(parent_); }), "directory_entry::status");
}

TEST_F(FlutterEngineTest, FailedSizeQueryPassesOutWithItsName) {
  bundle_.AddFolder("icudtl.dat");
  EXPECT_EQ(QueryErrorOf([this] { engine_.Initialize(parent_); }), "file_size");
  EXPECT_EQ(engine_.viewController_, nullptr);
}

TEST_F(FlutterEngineTest, FailedListingPassesOutWithItsName) {
  bundle_.AddFile("flutter_assets", 1);
  EXPECT_EQ(QueryErrorOf([this] { engine_.Initialize(parent_); }), "directory_iterator::directory_iterator");
}

// Lets a listing fail after its first file. "." and ".." come before it.
struct ListingOfOneFile {
  static int Next(intptr_t listing, struct _wfinddata64_t* entry) {
    if (++steps <= 2) return original(listing, entry);
    errno = EACCES;
    return -1;
  }
  static inline decltype(&_wfindnext64) original = nullptr;
  static inline int steps = 0;
};

TEST_F(FlutterEngineTest, FailedStepOfAListingPassesOutWithItsName) {
  AddDebugBundle();
  const test::ImportHook hook("msvcrt.dll", "_wfindnext64", &ListingOfOneFile::Next);
  ListingOfOneFile::original = hook.Original<decltype(ListingOfOneFile::original)>();
  ListingOfOneFile::steps = 0;
  EXPECT_EQ(QueryErrorOf([this] { engine_.Initialize(parent_); }), "directory_iterator::operator++");
}

// The sizes with which the host asks for its environment and for its path, in order.
struct SystemQueries {
  static DWORD WINAPI Environment(LPCSTR name, LPSTR value, DWORD size) {
    sizes.push_back(std::string(name) + (value ? " reads " : " measures ") + std::to_string(size));
    return environment(name, value, size);
  }
  static DWORD WINAPI Path(HMODULE module, LPWSTR path, DWORD size) {
    EXPECT_EQ(module, nullptr);
    sizes.push_back("path " + std::to_string(size));
    return executable(module, path, size);
  }
  static inline std::vector<std::string> sizes;
  static inline decltype(&GetEnvironmentVariableA) environment = nullptr;
  static inline decltype(&GetModuleFileNameW) executable = nullptr;
};

TEST_F(FlutterEngineTest, EnvironmentIsMeasuredBeforeItIsRead) {
  SetEnvironmentVariableA("FLUTTER_ROOT", "C:\\flutter");
  SetEnvironmentVariableA("PATH", nullptr);
  SystemQueries::sizes.clear();
  const test::ImportHook environment("kernel32.dll", "GetEnvironmentVariableA", &SystemQueries::Environment);
  SystemQueries::environment = environment.Original<decltype(SystemQueries::environment)>();
  const LogCapture log;
  engine_.Initialize(parent_);
  EXPECT_EQ(SystemQueries::sizes, (std::vector<std::string>{"FLUTTER_ENGINE measures 0", "FLUTTER_ROOT measures 0",
                                                            "FLUTTER_ROOT reads 11", "PATH measures 0"}));
}

TEST_F(FlutterEngineTest, EmptyEnvironmentVariableIsLogged) {
  SetEnvironmentVariableA("FLUTTER_ROOT", "");
  const LogCapture log;
  engine_.Initialize(parent_);
  EXPECT_TRUE(log.Has("INFO FLUTTER_ROOT: "));
}

TEST_F(FlutterEngineTest, DataDirectoryIsReadIntoARoomOf260) {
  SystemQueries::sizes.clear();
  const test::ImportHook path("kernel32.dll", "GetModuleFileNameW", &SystemQueries::Path);
  SystemQueries::executable = path.Original<decltype(SystemQueries::executable)>();
  FlutterEngine::DataDirectory();
  EXPECT_EQ(SystemQueries::sizes, std::vector<std::string>{"path 260"});
}

// Takes a message and leaves its result alone.
bool TakeWithoutAResult(FlutterDesktopViewControllerRef, HWND, UINT, WPARAM, LPARAM, LRESULT*) { return true; }

TEST_F(FlutterEngineTest, MessageThatIsTakenWithoutAResultGivesZero) {
  engine_.Initialize(parent_);
  const test::ImportHook hook("flutter_windows.dll", "FlutterDesktopViewControllerHandleTopLevelWindowProc",
                              &TakeWithoutAResult);
  EXPECT_EQ(engine_.HandleWindowMessage(parent_, WM_SIZE, 1, 2), 0);
}

TEST_F(FlutterEngineTest, MessengerBeforeInitializeIsNullWithAWarning) {
  const LogCapture log;
  EXPECT_EQ(engine_.GetMessenger(), nullptr);
  EXPECT_EQ(log.Lines(), std::vector<std::string>{"WARNING WARNING: GetMessenger called but viewController_ is null"});
}

TEST_F(FlutterEngineTest, MessengerIsTheRunningEngines) {
  engine_.Initialize(parent_);
  test::SentMessages sent;
  ASSERT_NE(engine_.GetMessenger(), nullptr);
  engine_.GetMessenger()->Send("a/channel", nullptr, 0);
  EXPECT_EQ(sent.All().at(0).engine, loopback_.NewestEngine());
}

TEST_F(FlutterEngineTest, MessengerIsNullWhenTheEngineHasNone) {
  loopback_.SetFaults(Fault(&LoopbackFaults::no_messenger));
  engine_.Initialize(parent_);
  EXPECT_EQ(engine_.GetMessenger(), nullptr);
}

TEST_F(FlutterEngineTest, HandleWindowMessageBeforeInitializeReturnsNothingAndLogsNothing) {
  const LogCapture log;
  EXPECT_EQ(engine_.HandleWindowMessage(parent_, WM_KEYDOWN, 0, 0), std::nullopt);
  EXPECT_TRUE(log.Lines().empty());
}

struct LoggedMessage {
  const char* name;
  UINT message;
  bool isAnnounced;
  bool isOutcomeLogged;
};
void PrintTo(const LoggedMessage& message, std::ostream* out) { *out << message.name; }

class ForwardedMessage : public FlutterEngineTest, public testing::WithParamInterface<LoggedMessage> {
 protected:
  // The log lines of the message. `outcome` is the line for a handled or an unhandled message.
  std::vector<std::string> ExpectedLines(const std::string& outcome) const {
    std::vector<std::string> lines;
    const std::string number = std::to_string(GetParam().message);
    if (GetParam().isAnnounced) {
      lines.push_back("DEBUG FlutterEngine::HandleWindowMessage - Message: " + number + " on window " +
                      Pointer(parent_));
    }
    if (GetParam().isOutcomeLogged) lines.push_back(outcome);
    return lines;
  }
};

TEST_P(ForwardedMessage, ThatTheEngineTakesReturnsItsResult) {
  engine_.Initialize(parent_);
  loopback_.SetTopLevelResult(GetParam().message, true, -5);
  const LogCapture log;
  EXPECT_EQ(engine_.HandleWindowMessage(parent_, GetParam().message, 1, 2), -5);
  EXPECT_EQ(log.Lines(), ExpectedLines("DEBUG FlutterEngine: Handled message " + std::to_string(GetParam().message) +
                                       ", result: -5"));
}

TEST_P(ForwardedMessage, ThatTheEngineDoesNotTakeReturnsNothing) {
  engine_.Initialize(parent_);
  const LogCapture log;
  EXPECT_EQ(engine_.HandleWindowMessage(parent_, GetParam().message, 1, 2), std::nullopt);
  EXPECT_EQ(log.Lines(),
            ExpectedLines("DEBUG FlutterEngine: Did not handle message " + std::to_string(GetParam().message)));
}

INSTANTIATE_TEST_SUITE_P(
    FlutterEngine, ForwardedMessage,
    testing::Values(LoggedMessage{"InputBelowKeyDown", 0x0ff, false, false},
                    LoggedMessage{"KeyDown", 0x100, true, true}, LoggedMessage{"KeyUp", 0x101, true, true},
                    LoggedMessage{"Char", 0x102, true, true}, LoggedMessage{"DeadChar", 0x103, false, false},
                    LoggedMessage{"MouseMove", 0x200, true, false}, LoggedMessage{"LeftButtonDown", 0x201, true, false},
                    LoggedMessage{"LeftButtonUp", 0x202, false, false}, LoggedMessage{"Size", WM_SIZE, false, false}),
    [](const auto& row) { return std::string(row.param.name); });

TEST_F(FlutterEngineTest, MessageOutsideTheLoggedRangesIsForwardedWithoutALine) {
  engine_.Initialize(parent_);
  struct Seen {
    HWND hwnd;
    UINT message;
    WPARAM wParam;
    LPARAM lParam;
  } seen{};
  loopback_.SetTopLevelObserver(
      [](int32_t, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam, void* data) {
        *static_cast<Seen*>(data) = {hwnd, message, wParam, lParam};
      },
      &seen);
  const LogCapture log;
  engine_.HandleWindowMessage(parent_, WM_FONTCHANGE, 3, 4);
  EXPECT_EQ(seen.hwnd, parent_);
  EXPECT_EQ(seen.message, static_cast<UINT>(WM_FONTCHANGE));
  EXPECT_EQ(seen.wParam, 3u);
  EXPECT_EQ(seen.lParam, 4);
  EXPECT_TRUE(log.Lines().empty());
}

}  // namespace
}  // namespace vantro
