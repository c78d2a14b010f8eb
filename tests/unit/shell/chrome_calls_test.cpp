// The title bar's system calls whose result is not visible on the window, and that painting releases its resources.
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h, because it needs its types.
#include <commctrl.h>

#include <string>
#include <vector>

#include "shell/button_painter.h"
#include "shell/shell_ids.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/support/process_resources.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/drawing_log.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::ImportHook;
using test::InOrder;
using test::Inside;
using test::Note;
using Lines = std::vector<std::string>;

struct SentText {
  HWND window;
  WPARAM wParam;
  std::wstring text;
};
std::vector<SentText> hints;
LRESULT WINAPI OnSendMessageW(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == EM_SETCUEBANNER) hints.push_back({window, wParam, reinterpret_cast<const wchar_t*>(lParam)});
  return TRUE;
}

struct IconRequest {
  ULONG_PTR resource;
  UINT type;
  int width;
  int height;
  UINT flags;

  bool operator==(const IconRequest&) const = default;
};
IconRequest iconRequest{};
HANDLE WINAPI OnLoadImage(HINSTANCE, const char* name, UINT type, int width, int height, UINT flags) {
  iconRequest = {reinterpret_cast<ULONG_PTR>(name), type, width, height, flags};
  return LoadIconA(nullptr, IDI_APPLICATION);
}

// The second arguments of the messages that give an icon.
std::vector<LPARAM> sentIcons;
LRESULT WINAPI OnSendMessageA(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
  if (message == STM_SETICON) sentIcons.push_back(lParam);
  return SendMessageW(window, message, wParam, lParam);
}

class TitleBarCalls : public test::ShellTest {
 protected:
  // Creates a second set of controls on the same window.
  void CreateControls() { Inside(Window()).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr)); }
};

TEST_F(TitleBarCalls, SearchBoxIsEnabledAndHasAHintUntilItIsFocused) {
  const ImportHook hook("user32.dll", "SendMessageW", OnSendMessageW);
  const CallLog calls(Window());
  hints.clear();
  CreateControls();
  ASSERT_EQ(hints.size(), 1u);
  EXPECT_EQ(hints[0].window, Inside(Window()).searchBox_);
  EXPECT_EQ(hints[0].wParam, WPARAM{FALSE});
  EXPECT_EQ(hints[0].text, L"Search");
  EXPECT_EQ(calls.Of("EnableWindow"), (Lines{"EnableWindow search 1"}));
}

TEST_F(TitleBarCalls, IconIsLoadedAt16By16AndGivenToItsStatic) {
  const ImportHook hook("user32.dll", "LoadImageA", OnLoadImage);
  const ImportHook send("user32.dll", "SendMessageA", OnSendMessageA);
  sentIcons.clear();
  CreateControls();
  EXPECT_EQ(sentIcons, (std::vector<LPARAM>{0}));
  EXPECT_EQ(iconRequest, (IconRequest{101, IMAGE_ICON, 16, 16, 0}));
  EXPECT_EQ(reinterpret_cast<HICON>(SendMessageA(Inside(Window()).appIconStatic_, STM_GETICON, 0, 0)),
            LoadIconA(nullptr, IDI_APPLICATION));
}

// The order of calls and log lines.

template <typename Function, typename... Arguments>
auto CallUser32(const char* name, Function*, Arguments... arguments) {
  return reinterpret_cast<Function*>(GetProcAddress(GetModuleHandleA("user32.dll"), name))(arguments...);
}
BOOL WINAPI NoteEnable(HWND window, BOOL enable) {
  Note("EnableWindow");
  return CallUser32("EnableWindow", ::EnableWindow, window, enable);
}
HWND WINAPI NoteFocus(HWND window) {
  Note("SetFocus");
  return CallUser32("SetFocus", ::SetFocus, window);
}
BOOL WINAPI NotePlace(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
  Note("SetWindowPos " + std::to_string(GetDlgCtrlID(window)));
  return CallUser32("SetWindowPos", ::SetWindowPos, window, after, x, y, width, height, flags);
}

TEST_F(TitleBarCalls, EachStepOfTheSearchBoxIsLoggedAfterItsCall) {
  const ImportHook enable("user32.dll", "EnableWindow", NoteEnable);
  const ImportHook focus("user32.dll", "SetFocus", NoteFocus);
  const test::LogCapture log;
  CreateControls();
  EXPECT_TRUE(InOrder(log, {"INFO Search box hint text set, result: ", "(call) EnableWindow",
                            "INFO Search box enabled: YES", "INFO Search box visible: ", "(call) SetFocus",
                            "INFO Focus test - Old: ", "INFO Search box styles - Style: ", "(call) SetFocus"}));
}

TEST_F(TitleBarCalls, ControlsArePlacedBeforeTheBarIsLoggedAsMade) {
  const ImportHook place("user32.dll", "SetWindowPos", NotePlace);
  const test::LogCapture log;
  CreateControls();
  const Lines lines = log.Lines();
  ASSERT_GE(lines.size(), 2u);
  EXPECT_EQ(lines[lines.size() - 2], "DEBUG (call) SetWindowPos 1001");
  EXPECT_EQ(lines.back(), "INFO Custom title bar controls created in DWM extended area");
}

TEST_F(TitleBarCalls, FrameIsChangedBeforeTheSystemsBarIsLoggedAsRemoved) {
  const ImportHook place("user32.dll", "SetWindowPos", NotePlace);
  const test::LogCapture log;
  Inside(Window()).titleBar_.RemoveStandardTitleBar();
  EXPECT_TRUE(InOrder(log, {"INFO RemoveStandardTitleBar: Removing Windows title bar", "(call) SetWindowPos",
                            "INFO Windows title bar removed, custom border color set"}));
}

// The drawing of the buttons.

class ButtonPainting : public testing::Test {
 protected:
  ~ButtonPainting() override { DeleteObject(brush_); }
  void Paint(UINT id, UINT state, bool isFullscreen = false) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_BUTTON;
    item.CtlID = id;
    item.itemState = state;
    item.hDC = canvas_.Dc();
    item.rcItem = kArea;
    PaintTitleBarButton(item, isFullscreen, brush_);
  }
  // The calls after the background and the pen of a button that is neither pressed nor hot.
  Lines StrokesOf(UINT id, bool isFullscreen = false) {
    const test::DrawingLog drawing;
    Paint(id, 0, isFullscreen);
    Lines calls = drawing.Calls();
    EXPECT_GE(calls.size(), 2u);
    EXPECT_EQ(Lines(calls.begin(), calls.begin() + 2), (Lines{"FillRect 3,4-38,24 5F4646", "CreatePen 0 1 FFFFFF"}));
    calls.erase(calls.begin(), calls.begin() + 2);
    return calls;
  }

  static constexpr RECT kArea{3, 4, 38, 24};
  test::Canvas canvas_{50, 30};
  HBRUSH brush_ = CreateSolidBrush(kTitleBarColor);
};

TEST_F(ButtonPainting, CentresItsTextInTheWholeItemOnOneLine) {
  EXPECT_EQ(StrokesOf(kFileButtonId),
            (Lines{"SetTextColor FFFFFF", "SetBkMode 1", "DrawTextW 'File' -1 3,4-38,24 flags=37"}));
  EXPECT_EQ(StrokesOf(kHelpButtonId),
            (Lines{"SetTextColor FFFFFF", "SetBkMode 1", "DrawTextW 'Help' -1 3,4-38,24 flags=37"}));
}

TEST_F(ButtonPainting, DrawsEachGlyphByItsStrokesFromTheCentre) {
  EXPECT_EQ(StrokesOf(kCloseButtonId), (Lines{"MoveToEx 15,9", "LineTo 26,20", "MoveToEx 25,9", "LineTo 14,20"}));
  EXPECT_EQ(StrokesOf(kMinimizeButtonId), (Lines{"MoveToEx 15,14", "LineTo 26,14"}));
  EXPECT_EQ(StrokesOf(kMaximizeButtonId),
            (Lines{"MoveToEx 15,9", "LineTo 25,9", "LineTo 25,19", "LineTo 15,19", "LineTo 15,9"}));
  EXPECT_EQ(StrokesOf(kMaximizeButtonId, true),
            (Lines{"MoveToEx 17,9", "LineTo 25,9", "LineTo 25,17", "LineTo 23,17", "LineTo 23,11", "MoveToEx 15,11",
                   "LineTo 23,11", "LineTo 23,19", "LineTo 15,19", "LineTo 15,11"}));
}

TEST_F(ButtonPainting, FillsTheColourOfTheStateOverTheBarsColour) {
  const test::DrawingLog drawing;
  Paint(kFileButtonId, ODS_SELECTED);
  Paint(kCloseButtonId, ODS_HOTLIGHT);
  EXPECT_EQ(drawing.Of("FillRect"), (Lines{"FillRect 3,4-38,24 5F4646", "FillRect 3,4-38,24 503737",
                                           "FillRect 3,4-38,24 5F4646", "FillRect 3,4-38,24 3232C8"}));
}

TEST_F(ButtonPainting, LeavesNoGdiObjectBehindInAnyState) {
  const auto paintAll = [this] {
    for (const WORD id : {kCloseButtonId, kMaximizeButtonId, kMinimizeButtonId, kFileButtonId, kHelpButtonId}) {
      for (const UINT state : {0, ODS_SELECTED, ODS_HOTLIGHT}) Paint(id, state);
    }
  };
  paintAll();
  const size_t before = test::GdiObjectCount();
  for (int i = 0; i < 3; ++i) paintAll();
  EXPECT_EQ(test::GdiObjectCount(), before);
}

}  // namespace
}  // namespace vantro
