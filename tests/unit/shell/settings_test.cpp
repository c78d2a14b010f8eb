// The window's settings in a separate registry key for each test.
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>
#include <vector>

#include "tests/support/line_states.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Inside;
using test::LogCapture;

constexpr wchar_t kKey[] = L"Software\\Vantro\\WindowSettings";

struct StoredValue {
  DWORD type = 0;
  std::vector<BYTE> data;

  bool operator==(const StoredValue&) const = default;
};

std::optional<StoredValue> Stored(const wchar_t* name) {
  DWORD size = 0;
  if (RegGetValueW(HKEY_CURRENT_USER, kKey, name, RRF_RT_ANY, nullptr, nullptr, &size) != ERROR_SUCCESS) {
    return std::nullopt;
  }
  HKEY key = nullptr;
  RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key);
  StoredValue value;
  RegQueryValueExW(key, name, nullptr, &value.type, nullptr, &size);
  value.data.resize(size);
  RegQueryValueExW(key, name, nullptr, nullptr, value.data.data(), &size);
  RegCloseKey(key);
  return value;
}

StoredValue Dword(DWORD number) {
  const auto* bytes = reinterpret_cast<const BYTE*>(&number);
  return {REG_DWORD, {bytes, bytes + sizeof number}};
}

// A text in the form that the host writes: with its terminator and another zero.
StoredValue Text(const std::wstring& text) {
  const std::wstring terminated = text + std::wstring(2, L'\0');
  const auto* bytes = reinterpret_cast<const BYTE*>(terminated.data());
  return {REG_SZ, {bytes, bytes + terminated.size() * sizeof(wchar_t)}};
}

void Store(const wchar_t* name, const StoredValue& value) {
  ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kKey, name, value.type, value.data.data(),
                            static_cast<DWORD>(value.data.size())),
            ERROR_SUCCESS);
}

bool KeyExists() {
  HKEY key = nullptr;
  if (RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key) != ERROR_SUCCESS) return false;
  RegCloseKey(key);
  return true;
}

// These tests need no native window, because they do not apply always-on-top.
class Settings : public testing::Test {
 protected:
  void SetEveryMember() {
    Inside(window_).alwaysOnTop_ = true;
    Inside(window_).vlcHwAccel_ = "dxva2";
    Inside(window_).vlcAudioOutput_ = "wasapi";
    Inside(window_).vlcDeinterlace_ = "blend";
    Inside(window_).vlcEqualizerEnabled_ = true;
    Inside(window_).vlcCompressorEnabled_ = true;
  }

  test::ScratchRegistry registry_;
  VantroWindow window_{GetModuleHandleW(nullptr)};
};

TEST_F(Settings, AMissingKeyClearsAlwaysOnTopOnlyAfterItsLine) {
  SetEveryMember();
  const test::LineStates states([&] { return std::string(Inside(window_).alwaysOnTop_ ? "on" : "off"); });
  Inside(window_).commands_.LoadSettings();
  EXPECT_FALSE(Inside(window_).alwaysOnTop_);
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "dxva2");
  EXPECT_EQ(states.At("DEBUG LoadSettings: Registry key not found, using default settings"), "on");
}

TEST_F(Settings, AMissingAlwaysOnTopIsClearedBeforeItsLineAndAStoredFlagIsSetBeforeIts) {
  Store(L"VLCEqualizerEnabled", Dword(0));
  SetEveryMember();
  const test::LineStates states([&] {
    return std::string(Inside(window_).alwaysOnTop_ ? "on" : "off") +
           (Inside(window_).vlcEqualizerEnabled_ ? " with equalizer" : "");
  });
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(states.At("DEBUG LoadSettings: Always on top setting not found in registry"), "off with equalizer");
  EXPECT_EQ(states.At("INFO LoadSettings: VLC Equalizer enabled loaded: disabled"), "off");
}

TEST_F(Settings, FirstStartFindsNoKeyAndKeepsTheDefaults) {
  LogCapture log;
  Inside(window_).commands_.LoadSettings();
  EXPECT_FALSE(Inside(window_).alwaysOnTop_);
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "auto");
  EXPECT_EQ(Inside(window_).vlcAudioOutput_, "directsound");
  EXPECT_EQ(Inside(window_).vlcDeinterlace_, "off");
  EXPECT_FALSE(Inside(window_).vlcEqualizerEnabled_);
  EXPECT_FALSE(Inside(window_).vlcCompressorEnabled_);
  EXPECT_EQ(log.Lines(),
            (std::vector<std::string>{"INFO LoadSettings: Loading application settings from registry",
                                      "DEBUG LoadSettings: Registry key not found, using default settings"}));
}

TEST_F(Settings, LoadingCreatesNoKeyAndTheFirstSaveDoes) {
  Inside(window_).commands_.LoadSettings();
  EXPECT_FALSE(KeyExists());
  Inside(window_).commands_.SaveSettings();
  EXPECT_TRUE(KeyExists());
}

TEST_F(Settings, SaveWritesEachValueWithItsTypeAndSize) {
  SetEveryMember();
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(Stored(L"AlwaysOnTop"), Dword(1));
  EXPECT_EQ(Stored(L"VLCHwAccel"), Text(L"dxva2"));
  EXPECT_EQ(Stored(L"VLCAudioOutput"), Text(L"wasapi"));
  EXPECT_EQ(Stored(L"VLCDeinterlace"), Text(L"blend"));
  EXPECT_EQ(Stored(L"VLCEqualizerEnabled"), Dword(1));
  EXPECT_EQ(Stored(L"VLCCompressorEnabled"), Dword(1));
  // "dxva2" and its terminator are 12 bytes, and 2 follow.
  EXPECT_EQ(Stored(L"VLCHwAccel")->data.size(), 14u);
}

TEST_F(Settings, SaveWritesTheDefaults) {
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(Stored(L"AlwaysOnTop"), Dword(0));
  EXPECT_EQ(Stored(L"VLCHwAccel"), Text(L"auto"));
  EXPECT_EQ(Stored(L"VLCAudioOutput"), Text(L"directsound"));
  EXPECT_EQ(Stored(L"VLCDeinterlace"), Text(L"off"));
  EXPECT_EQ(Stored(L"VLCEqualizerEnabled"), Dword(0));
  EXPECT_EQ(Stored(L"VLCCompressorEnabled"), Dword(0));
}

TEST_F(Settings, SaveWritesAnEmptyTextAsTwoZeros) {
  Inside(window_).vlcHwAccel_ = "";
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(Stored(L"VLCHwAccel"), Text(L""));
}

TEST_F(Settings, SaveLogsEachValueInOrder) {
  SetEveryMember();
  Inside(window_).vlcCompressorEnabled_ = false;
  LogCapture log;
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "INFO SaveSettings: Saving application settings to registry",
                             "INFO SaveSettings: Always on top setting saved: enabled",
                             "INFO SaveSettings: VLC Hardware Acceleration saved: dxva2",
                             "INFO SaveSettings: VLC Audio Output saved: wasapi",
                             "INFO SaveSettings: VLC Deinterlacing saved: blend",
                             "INFO SaveSettings: VLC Equalizer enabled saved: enabled",
                             "INFO SaveSettings: VLC Compressor enabled saved: disabled",
                         }));
}

TEST_F(Settings, PerWindowAlwaysOnTopIsNotStored) {
  Inside(window_).alwaysOnTopThisWindow_ = true;
  Inside(window_).commands_.SaveSettings();
  HKEY key = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_CURRENT_USER, kKey, 0, KEY_READ, &key), ERROR_SUCCESS);
  DWORD values = 0;
  RegQueryInfoKeyW(key, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, &values, nullptr, nullptr, nullptr,
                   nullptr);
  RegCloseKey(key);
  EXPECT_EQ(values, 6u);
  EXPECT_EQ(Stored(L"AlwaysOnTop"), Dword(0));
}

TEST_F(Settings, LoadReadsWhatSaveWroteAndLogsIt) {
  SetEveryMember();
  Inside(window_).commands_.SaveSettings();
  VantroWindow next(GetModuleHandleW(nullptr));
  LogCapture log;
  Inside(next).commands_.LoadSettings();
  EXPECT_TRUE(Inside(next).alwaysOnTop_);
  EXPECT_EQ(Inside(next).vlcHwAccel_, "dxva2");
  EXPECT_EQ(Inside(next).vlcAudioOutput_, "wasapi");
  EXPECT_EQ(Inside(next).vlcDeinterlace_, "blend");
  EXPECT_TRUE(Inside(next).vlcEqualizerEnabled_);
  EXPECT_TRUE(Inside(next).vlcCompressorEnabled_);
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{
                             "INFO LoadSettings: Loading application settings from registry",
                             "INFO LoadSettings: Always on top setting loaded: enabled",
                             "INFO LoadSettings: VLC Hardware Acceleration loaded: dxva2",
                             "INFO LoadSettings: VLC Audio Output loaded: wasapi",
                             "INFO LoadSettings: VLC Deinterlacing loaded: blend",
                             "INFO LoadSettings: VLC Equalizer enabled loaded: enabled",
                             "INFO LoadSettings: VLC Compressor enabled loaded: enabled",
                             "INFO LoadSettings: Applying always on top setting",
                         }));
}

TEST_F(Settings, EmptyKeyClearsAlwaysOnTopAndLeavesTheOtherMembers) {
  Store(L"Foreign", Dword(1));
  SetEveryMember();
  LogCapture log;
  Inside(window_).commands_.LoadSettings();
  EXPECT_FALSE(Inside(window_).alwaysOnTop_);
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "dxva2");
  EXPECT_TRUE(Inside(window_).vlcEqualizerEnabled_);
  EXPECT_TRUE(log.Has("DEBUG LoadSettings: Always on top setting not found in registry, using default (disabled)"));
  EXPECT_EQ(log.Lines().size(), 2u);
}

TEST_F(Settings, AbsentValueLeavesItsMemberAndTheOthersAreLoaded) {
  Store(L"VLCDeinterlace", Text(L"mean"));
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "auto");
  EXPECT_EQ(Inside(window_).vlcDeinterlace_, "mean");
}

TEST_F(Settings, AnyNumberButZeroReadsAsTrue) {
  Store(L"VLCEqualizerEnabled", Dword(2));
  Store(L"VLCCompressorEnabled", Dword(0x80000000));
  Inside(window_).commands_.LoadSettings();
  EXPECT_TRUE(Inside(window_).vlcEqualizerEnabled_);
  EXPECT_TRUE(Inside(window_).vlcCompressorEnabled_);
}

TEST_F(Settings, UnknownHardwareAccelerationIsLoadedKeptAndWrittenBackUnchanged) {
  Store(L"VLCHwAccel", Text(L"vulkan"));
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "vulkan");
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(Stored(L"VLCHwAccel"), Text(L"vulkan"));
}

TEST_F(Settings, TextOutsideAsciiIsSavedAndLoaded) {
  Inside(window_).vlcAudioOutput_ = "g\xC3\xBCnstig \xF0\x9F\x8E\xAC";
  Inside(window_).commands_.SaveSettings();
  VantroWindow next(GetModuleHandleW(nullptr));
  Inside(next).commands_.LoadSettings();
  EXPECT_EQ(Inside(next).vlcAudioOutput_, Inside(window_).vlcAudioOutput_);
}

TEST_F(Settings, TextIsCutAtItsFirstZero) {
  Store(L"VLCHwAccel", Text(std::wstring(L"none\0dxva2", 10)));
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "none");
}

TEST_F(Settings, TextWithoutATerminatorEndsWithItsData) {
  StoredValue value = Text(L"none");
  value.type = REG_BINARY;  // the registry would add a terminator to a text
  value.data.resize(4 * sizeof(wchar_t));
  Store(L"VLCHwAccel", value);
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "none");
}

TEST_F(Settings, TextOf512BytesIsReadAndALongerOneIsAbsent) {
  Store(L"VLCHwAccel", Text(std::wstring(254, L'a')));
  Store(L"VLCAudioOutput", Text(std::wstring(255, L'b')));
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, std::string(254, 'a'));
  EXPECT_EQ(Inside(window_).vlcAudioOutput_, "directsound");
}

TEST_F(Settings, TextThatFillsTheBufferWithoutATerminatorIsReadWhole) {
  StoredValue value = Text(std::wstring(256, L'c'));
  value.type = REG_BINARY;
  value.data.resize(512);
  Store(L"VLCHwAccel", value);
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, std::string(256, 'c'));
}

TEST_F(Settings, AValueOf513BytesIsAbsent) {
  Store(L"VLCHwAccel", {REG_BINARY, std::vector<BYTE>(513, 'a')});
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "auto");
}

TEST_F(Settings, AFlagWithoutDataReadsAsOff) {
  Store(L"VLCEqualizerEnabled", {REG_BINARY, {}});
  LogCapture log;
  Inside(window_).commands_.LoadSettings();
  EXPECT_TRUE(log.Has("INFO LoadSettings: VLC Equalizer enabled loaded: disabled"));
}

TEST_F(Settings, AlwaysOnTopStoredAsALongTextReadsAsOff) {
  Store(L"AlwaysOnTop", Text(L"yes"));
  Inside(window_).alwaysOnTop_ = true;
  Inside(window_).commands_.LoadSettings();
  EXPECT_FALSE(Inside(window_).alwaysOnTop_);
}

TEST_F(Settings, AlwaysOnTopStoredAsAShortTextReadsAsOn) {
  StoredValue value = Text(L"0");
  value.data.resize(4);  // the character and one zero
  Store(L"AlwaysOnTop", value);
  Inside(window_).commands_.LoadSettings();
  EXPECT_TRUE(Inside(window_).alwaysOnTop_);
}

TEST_F(Settings, NumberStoredUnderATextIsTakenAsText) {
  Store(L"VLCHwAccel", Dword(0x00620061));  // "ab"
  Inside(window_).commands_.LoadSettings();
  EXPECT_EQ(Inside(window_).vlcHwAccel_, "ab");
}

TEST_F(Settings, WindowDestroyedLastDecidesWhatTheNextStartFinds) {
  VantroWindow other(GetModuleHandleW(nullptr));
  Inside(window_).commands_.LoadSettings();
  Inside(other).commands_.LoadSettings();
  Inside(window_).alwaysOnTop_ = true;
  Inside(window_).commands_.SaveSettings();
  EXPECT_FALSE(Inside(other).alwaysOnTop_);
  Inside(other).commands_.SaveSettings();
  EXPECT_EQ(Stored(L"AlwaysOnTop"), Dword(0));
}

// The registry functions with a failure.
LSTATUS WINAPI RefuseCreate(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES, PHKEY, LPDWORD) {
  return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI RefuseSet(HKEY, LPCWSTR, DWORD, DWORD, const BYTE*, DWORD) { return ERROR_WRITE_FAULT; }

TEST_F(Settings, KeyThatCannotBeCreatedIsLoggedAndNothingIsWritten) {
  LogCapture log;
  {
    const test::ImportHook hook("advapi32.dll", "RegCreateKeyExW", &RefuseCreate);
    Inside(window_).commands_.SaveSettings();
  }
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{"INFO SaveSettings: Saving application settings to registry",
                                                   "ERROR SaveSettings: Failed to create registry key: 5"}));
  EXPECT_FALSE(KeyExists());
}

TEST_F(Settings, OnlyAFailureOfTheFirstValueIsLogged) {
  LogCapture log;
  const test::ImportHook hook("advapi32.dll", "RegSetValueExW", &RefuseSet);
  Inside(window_).commands_.SaveSettings();
  EXPECT_EQ(log.Lines(), (std::vector<std::string>{"INFO SaveSettings: Saving application settings to registry",
                                                   "ERROR SaveSettings: Failed to save always on top setting: 29"}));
}

using SettingsOfAWindow = test::ShellTest;

TEST_F(SettingsOfAWindow, StoredAlwaysOnTopIsAppliedToWindowAndOverlay) {
  Store(L"AlwaysOnTop", Dword(1));
  CallLog calls(Window());
  const test::LineStates states([&] { return std::to_string(calls.Calls().size()); });
  Inside(Window()).commands_.LoadSettings();
  EXPECT_EQ(states.At("INFO LoadSettings: Applying always on top setting"), "0");
  EXPECT_EQ(calls.Calls(),
            (std::vector<std::string>{"SetWindowPos main after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE",
                                      "SetWindowPos overlay after=HWND_TOPMOST 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE"}));
  // Wine makes the popup of an owner topmost, but not the owner itself, so only the overlay's style can be checked.
  EXPECT_TRUE(GetWindowLongA(Inside(Window()).flutterHostWindow_, GWL_EXSTYLE) & WS_EX_TOPMOST);
}

TEST_F(SettingsOfAWindow, NothingIsAppliedWithoutAlwaysOnTop) {
  Store(L"AlwaysOnTop", Dword(0));
  CallLog calls(Window());
  LogCapture log;
  Inside(Window()).commands_.LoadSettings();
  EXPECT_TRUE(calls.Calls().empty());
  EXPECT_TRUE(log.Has("INFO LoadSettings: Always on top setting loaded: disabled"));
}

TEST_F(SettingsOfAWindow, DestroyingTheWindowSavesThem) {
  Inside(Window()).vlcDeinterlace_ = "linear";
  DestroyWindow(Window().hwnd_);
  EXPECT_EQ(Stored(L"VLCDeinterlace"), Text(L"linear"));
}

TEST_F(SettingsOfAWindow, NewWindowLoadsWhatIsStored) {
  Store(L"VLCHwAccel", Text(L"none"));
  EXPECT_EQ(Inside(AddWindow()).vlcHwAccel_, "none");
}

}  // namespace
}  // namespace vantro
