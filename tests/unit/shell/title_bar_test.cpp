// The title bar's controls on a real window: their creation, their positions, and the calls of the system.
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, because it needs its types.
#include <commctrl.h>

#include <string>
#include <vector>

#include "shell/title_bar_layout.h"
#include "tests/support/format.h"
#include "tests/support/native_window.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Format;
using test::Inside;
using test::LogCapture;
using test::PlaceInParent;
using test::ShellTest;

struct Place {
  int x, y, width, height;

  bool operator==(const Place&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Place& place) {
  return out << place.x << "," << place.y << " " << place.width << "x" << place.height;
}

Place PlaceOf(HWND control) {
  const RECT place = PlaceInParent(control);
  return {static_cast<int>(place.left), static_cast<int>(place.top), static_cast<int>(place.right - place.left),
          static_cast<int>(place.bottom - place.top)};
}

std::wstring ClassOf(HWND window) {
  wchar_t name[64] = L"";
  GetClassNameW(window, name, 64);
  return name;
}

std::wstring TextOf(HWND window) {
  wchar_t text[64] = L"";
  GetWindowTextW(window, text, 64);
  return text;
}

struct ControlRow {
  const char* name;
  HWND TitleBarControls::*member;
  const wchar_t* className;
  const wchar_t* text;
  LONG exStyle;
  DWORD style;
  int id;
};

constexpr ControlRow kControls[] = {
    {"AppIcon", &TitleBarControls::appIconStatic_, L"Static", L"", 0, 0x50000203, 0},
    {"Title", &TitleBarControls::titleStatic_, L"Static", L"Vantro", 0, 0x50000200, 0},
    {"File", &TitleBarControls::fileButton_, L"Button", L"File", 0, 0x5000000B, 40010},
    {"Help", &TitleBarControls::helpButton_, L"Button", L"Help", 0, 0x5000000B, 40011},
    {"Search", &TitleBarControls::searchBox_, L"Edit", L"", 0x200, 0x50010080, 104},
    {"Close", &TitleBarControls::closeButton_, L"Button", L"", 0, 0x5000000B, 999},
    {"Maximize", &TitleBarControls::maximizeButton_, L"Button", L"", 0, 0x5000000B, 998},
    {"Minimize", &TitleBarControls::minimizeButton_, L"Button", L"", 0, 0x5000000B, 997},
    {"Speaker", &TitleBarControls::speakerIcon_, L"Static", L"", 0, 0x5000000D, 1002},
    {"Volume", &TitleBarControls::volumeControl_, L"Static", L"", 0, 0x5000010D, 1001},
};

using ControlsOfTheTitleBar = ShellTest;

TEST_F(ControlsOfTheTitleBar, HaveTheirClassTextStylesAndId) {
  for (const ControlRow& row : kControls) {
    SCOPED_TRACE(row.name);
    const HWND control = Inside(Window()).titleBar_.Controls().*row.member;
    ASSERT_TRUE(IsWindow(control));
    EXPECT_EQ(GetParent(control), Window().hwnd_);
    EXPECT_EQ(ClassOf(control), row.className);
    EXPECT_EQ(TextOf(control), row.text);
    EXPECT_EQ(GetWindowLongW(control, GWL_EXSTYLE) & ~WS_EX_NOPARENTNOTIFY, row.exStyle);
    EXPECT_EQ(static_cast<DWORD>(GetWindowLongW(control, GWL_STYLE)), row.style);
    EXPECT_EQ(GetDlgCtrlID(control), row.id);
  }
}

// Records the title bar's calls of CreateWindowExW.
std::vector<std::string>* created = nullptr;
HWND WINAPI RecordCreate(DWORD exStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                         int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
  const Place place{x, y, width, height};
  created->push_back(std::to_string(static_cast<unsigned>(reinterpret_cast<UINT_PTR>(menu))) + ": " +
                     testing::PrintToString(place));
  EXPECT_EQ(instance, GetModuleHandleW(nullptr));
  EXPECT_EQ(parameter, nullptr);
  const auto original =
      reinterpret_cast<decltype(&CreateWindowExW)>(GetProcAddress(GetModuleHandleA("user32.dll"), "CreateWindowExW"));
  return original(exStyle, className, text, style, x, y, width, height, parent, menu, instance, parameter);
}

class TitleBar : public ShellTest {
 protected:
  // Creates a second set of controls on the same window and returns only the calls of CreateCustomTitleBar.
  std::vector<std::string> RecordCreation() {
    std::vector<std::string> calls;
    created = &calls;
    const test::ImportHook hook("user32.dll", "CreateWindowExW", &RecordCreate);
    Inside(Window()).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr));
    return calls;
  }
};

TEST_F(TitleBar, CreatesItsControlsInOrderAtTheirFirstPlaces) {
  EXPECT_EQ(RecordCreation(),
            (std::vector<std::string>{"0: 8,7 16x16", "0: 32,6 50x18", "40010: 90,5 35x20", "40011: 135,5 35x20",
                                      "104: 200,5 150x20", "999: 0,0 45x30", "998: 0,0 45x30", "997: 0,0 45x30",
                                      "1002: 0,0 20x20", "1001: 0,0 80x20"}));
}

class TitleBarLayout : public ShellTest, public testing::WithParamInterface<int> {};

TEST_P(TitleBarLayout, KeepsEachControlAtItsPlace) {
  const int width = GetParam();
  SetClientWidth(Window(), width);
  VantroWindow& window = Window();
  EXPECT_EQ(PlaceOf(Inside(window).appIconStatic_), (Place{8, 7, 16, 16}));
  EXPECT_EQ(PlaceOf(Inside(window).titleStatic_), (Place{32, 6, 50, 18}));
  EXPECT_EQ(PlaceOf(Inside(window).fileButton_), (Place{90, 5, 35, 20}));
  EXPECT_EQ(PlaceOf(Inside(window).helpButton_), (Place{135, 5, 35, 20}));
  EXPECT_EQ(PlaceOf(Inside(window).closeButton_), (Place{width - 45, 3, 45, 27}));
  EXPECT_EQ(PlaceOf(Inside(window).maximizeButton_), (Place{width - 90, 3, 45, 27}));
  EXPECT_EQ(PlaceOf(Inside(window).minimizeButton_), (Place{width - 135, 3, 45, 27}));
  EXPECT_EQ(PlaceOf(Inside(window).searchBox_), (Place{width - 295, 5, 150, 20}));
  EXPECT_EQ(PlaceOf(Inside(window).speakerIcon_), (Place{width - 410, 5, 20, 20}));
  EXPECT_EQ(PlaceOf(Inside(window).volumeControl_), (Place{width - 385, 5, 80, 20}));
}

INSTANTIATE_TEST_SUITE_P(AtClientWidth, TitleBarLayout, testing::Values(640, 1280, 1920),
                         testing::PrintToStringParamName());

TEST_F(TitleBar, MovesItsControlsWithoutChangingTheirOrder) {
  SetClientWidth(Window(), 1280);
  CallLog calls(Window());
  Inside(Window()).titleBar_.LayoutTitleBarControls();
  EXPECT_EQ(calls.Calls(), (std::vector<std::string>{
                               "SetWindowPos close after=HWND_TOP 1235,3 45x27 SWP_NOZORDER",
                               "SetWindowPos maximize after=HWND_TOP 1190,3 45x27 SWP_NOZORDER",
                               "SetWindowPos minimize after=HWND_TOP 1145,3 45x27 SWP_NOZORDER",
                               "SetWindowPos search after=HWND_TOP 985,5 150x20 SWP_NOZORDER",
                               "SetWindowPos speaker after=HWND_TOP 870,5 20x20 SWP_NOZORDER",
                               "SetWindowPos volume after=HWND_TOP 895,5 80x20 SWP_NOZORDER",
                           }));
}

TEST_F(TitleBar, SkipsAControlThatIsMissing) {
  Inside(Window()).searchBox_ = nullptr;
  CallLog calls(Window());
  Inside(Window()).titleBar_.LayoutTitleBarControls();
  EXPECT_EQ(calls.Calls().size(), 5u);
}

TEST_F(TitleBar, MovesSpeakerAndVolumeOnlyIfBothExist) {
  Inside(Window()).speakerIcon_ = nullptr;
  CallLog calls(Window());
  Inside(Window()).titleBar_.LayoutTitleBarControls();
  EXPECT_EQ(calls.Calls().size(), 4u);
}

TEST_F(TitleBar, TakesTheSystemsBarAwayAndKeepsTheSizingFrame) {
  SetWindowLongA(Window().hwnd_, GWL_STYLE, WS_OVERLAPPEDWINDOW | WS_CLIPSIBLINGS);
  Inside(Window()).titleBar_.RemoveStandardTitleBar();
  EXPECT_EQ(GetWindowLongA(Window().hwnd_, GWL_STYLE), WS_THICKFRAME | WS_CLIPSIBLINGS);
}

TEST_F(TitleBar, GivesASizingFrameToAWindowWithoutOne) {
  SetWindowLongA(Window().hwnd_, GWL_STYLE, WS_CAPTION | WS_CLIPSIBLINGS);
  Inside(Window()).titleBar_.RemoveStandardTitleBar();
  EXPECT_EQ(GetWindowLongA(Window().hwnd_, GWL_STYLE), WS_THICKFRAME | WS_CLIPSIBLINGS);
}

TEST_F(TitleBar, ColoursBorderAndCaptionThenAppliesTheFrame) {
  SetWindowLongA(Window().hwnd_, GWL_STYLE, WS_OVERLAPPEDWINDOW);
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).titleBar_.RemoveStandardTitleBar();
  EXPECT_EQ(calls.Calls(), (std::vector<std::string>{
                               "SetWindowLongA main GWL_STYLE WS_CLIPSIBLINGS|WS_THICKFRAME",
                               "DwmSetWindowAttribute main 34 6243910 size=4",
                               "DwmSetWindowAttribute main 35 6243910 size=4",
                               "SetWindowPos main after=HWND_TOP 0,0 0x0 SWP_NOSIZE|SWP_NOMOVE|SWP_FRAMECHANGED",
                           }));
  EXPECT_EQ(log.Lines().front(), "INFO RemoveStandardTitleBar: Removing Windows title bar");
  EXPECT_EQ(log.Lines().back(), "INFO Windows title bar removed, custom border color set");
}

TEST_F(TitleBar, MissingIconResourceLeavesTheIconStaticEmpty) {
  // The test program has no icon resource.
  ASSERT_EQ(FindResourceA(GetModuleHandleA(nullptr), MAKEINTRESOURCEA(101), RT_GROUP_ICON), nullptr);
  EXPECT_EQ(SendMessageA(Inside(Window()).appIconStatic_, STM_GETICON, 0, 0), 0);
  EXPECT_EQ(PlaceOf(Inside(Window()).appIconStatic_), (Place{8, 7, 16, 16}));
}

// A window during its start: there is no engine yet, so nothing redirects the focus.
class TitleBarOfANewWindow : public ShellTest {
 protected:
  ~TitleBarOfANewWindow() override { DestroyWindow(fresh_.hwnd_); }

  VantroWindow fresh_{GetModuleHandleW(nullptr)};
};

TEST_F(TitleBarOfANewWindow, GivesTheFocusBackAfterTheFocusTest) {
  ASSERT_TRUE(RoomPeer::InitializeWindow(fresh_));
  const HWND file = Inside(Window()).fileButton_;
  SetFocus(file);
  LogCapture log;
  Inside(fresh_).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr));
  EXPECT_EQ(GetFocus(), file);
  EXPECT_TRUE(log.Has("INFO Search box can accept focus: YES"));
  EXPECT_TRUE(log.Has("INFO Search box enabled: YES"));
  EXPECT_TRUE(log.Has("INFO Search box styles - Style: 0x50010080, ExStyle: 0x00000200"));
  void* const box = Inside(fresh_).searchBox_;
  EXPECT_TRUE(log.Has(Format("INFO Focus test - Old: %p, New: %p, Expected: %p", static_cast<void*>(file), box, box)));
}

HWND WINAPI RefuseFocus(HWND) { return nullptr; }

TEST_F(TitleBarOfANewWindow, SearchBoxThatGetsNoFocusIsLogged) {
  ASSERT_TRUE(RoomPeer::InitializeWindow(fresh_));
  const HWND file = Inside(Window()).fileButton_;
  SetFocus(file);
  LogCapture log;
  const test::ImportHook hook("user32.dll", "SetFocus", RefuseFocus);
  Inside(fresh_).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr));
  EXPECT_TRUE(log.Has(Format("INFO Focus test - Old: %p, New: %p, Expected: %p", static_cast<void*>(file),
                             static_cast<void*>(file), static_cast<void*>(Inside(fresh_).searchBox_))));
  EXPECT_TRUE(log.Has("INFO Search box can accept focus: NO"));
}

TEST_F(TitleBarOfANewWindow, SearchBoxKeepsTheFocusThatNobodyHadBefore) {
  ASSERT_TRUE(RoomPeer::InitializeWindow(fresh_));
  SetFocus(nullptr);
  Inside(fresh_).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr));
  EXPECT_EQ(GetFocus(), Inside(fresh_).searchBox_);
}

TEST_F(TitleBarOfANewWindow, SearchBoxOfAHiddenWindowIsLoggedAsNotVisible) {
  LogCapture log;
  ASSERT_TRUE(RoomPeer::InitializeWindow(fresh_));
  EXPECT_TRUE(log.Has("INFO Search box visible: NO"));
}

TEST_F(TitleBar, LogsItsCreationInOrder) {
  LogCapture log;
  RecordCreation();
  const std::vector<std::string> lines = log.Lines();
  ASSERT_GE(lines.size(), 9u);
  EXPECT_EQ(lines.front(), "INFO CreateCustomTitleBar: Creating controls in DWM extended area");
  EXPECT_TRUE(lines[1].starts_with("INFO Speaker icon created successfully: "));
  EXPECT_TRUE(lines[2].starts_with("INFO Volume control created successfully: "));
  EXPECT_TRUE(lines[3].starts_with("INFO Search box created: "));
  EXPECT_TRUE(lines[4].starts_with("INFO Search box hint text set, result: "));
  EXPECT_EQ(lines.back(), "INFO Custom title bar controls created in DWM extended area");
}

// Refuses to create controls of one class, such as the search box.
const wchar_t* refusedClass = nullptr;
HWND WINAPI RefuseCreate(DWORD exStyle, LPCWSTR className, LPCWSTR text, DWORD style, int x, int y, int width,
                         int height, HWND parent, HMENU menu, HINSTANCE instance, LPVOID parameter) {
  if (_wcsicmp(className, refusedClass) == 0) return nullptr;
  return RecordCreate(exStyle, className, text, style, x, y, width, height, parent, menu, instance, parameter);
}

class RefusedControls : public TitleBar {
 protected:
  void CreateWithout(const wchar_t* className) {
    std::vector<std::string> calls;
    created = &calls;
    refusedClass = className;
    const test::ImportHook hook("user32.dll", "CreateWindowExW", &RefuseCreate);
    Inside(Window()).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr));
  }
};

TEST_F(RefusedControls, MissingSearchBoxIsLoggedAndTheBarGoesOn) {
  LogCapture log;
  CreateWithout(L"EDIT");
  EXPECT_EQ(Inside(Window()).searchBox_, nullptr);
  EXPECT_TRUE(log.Has("ERROR Failed to create search box window!"));
  EXPECT_EQ(log.CountContaining("Focus test"), 0);
  EXPECT_EQ(log.Lines().back(), "INFO Custom title bar controls created in DWM extended area");
}

TEST_F(RefusedControls, MissingVolumeControlsAreLoggedAndTheBarGoesOn) {
  LogCapture log;
  CreateWithout(L"STATIC");
  EXPECT_EQ(Inside(Window()).speakerIcon_, nullptr);
  EXPECT_EQ(Inside(Window()).volumeControl_, nullptr);
  EXPECT_TRUE(log.Has("ERROR Failed to create speaker icon"));
  EXPECT_TRUE(log.Has("ERROR Failed to create volume control"));
  EXPECT_TRUE(IsWindow(Inside(Window()).searchBox_));
}

TEST_F(TitleBar, PressingTheCloseButtonPaintsThePressedColourAndNotRed) {
  const HWND close = Inside(Window()).closeButton_;
  SendMessageA(close, BM_SETSTATE, TRUE, 0);
  UpdateWindow(close);
  const HDC dc = GetDC(close);
  EXPECT_EQ(GetPixel(dc, 1, 1), RGB(55, 55, 80));
  ReleaseDC(close, dc);
}

}  // namespace
}  // namespace vantro
