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
#include "tests/support/process_resources.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::ImportHook;
using test::Inside;
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

class TitleBarCalls : public test::ShellTest {
 protected:
  // Creates a second set of controls on the same window.
  void CreateControls() { Inside(Window()).titleBar_.CreateCustomTitleBar(GetModuleHandleW(nullptr)); }
};

TEST_F(TitleBarCalls, SearchBoxIsEnabledAndHasAHintUntilItIsFocused) {
  const ImportHook hook("user32.dll", "SendMessageW", reinterpret_cast<void*>(OnSendMessageW));
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
  const ImportHook hook("user32.dll", "LoadImageA", reinterpret_cast<void*>(OnLoadImage));
  CreateControls();
  EXPECT_EQ(iconRequest, (IconRequest{101, IMAGE_ICON, 16, 16, 0}));
  EXPECT_EQ(reinterpret_cast<HICON>(SendMessageA(Inside(Window()).appIconStatic_, STM_GETICON, 0, 0)),
            LoadIconA(nullptr, IDI_APPLICATION));
}

// The texts of the buttons.

struct DrawnText {
  std::wstring text;
  int length;
  RECT area;
  UINT flags;
};
DrawnText drawn{};
int WINAPI OnDrawText(HDC, const wchar_t* text, int length, RECT* area, UINT flags) {
  drawn = {text, length, *area, flags};
  return 0;
}

class ButtonPainting : public testing::Test {
 protected:
  ~ButtonPainting() override { DeleteObject(brush_); }
  void Paint(UINT id, UINT state) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_BUTTON;
    item.CtlID = id;
    item.itemState = state;
    item.hDC = canvas_.Dc();
    item.rcItem = kArea;
    PaintTitleBarButton(item, false, brush_);
  }

  static constexpr RECT kArea{3, 4, 38, 24};
  test::Canvas canvas_{50, 30};
  HBRUSH brush_ = CreateSolidBrush(kTitleBarColor);
};

TEST_F(ButtonPainting, CentresItsTextInTheWholeItemOnOneLine) {
  const ImportHook hook("user32.dll", "DrawTextW", reinterpret_cast<void*>(OnDrawText));
  for (const auto& [id, text] : {std::pair{kFileButtonId, L"File"}, std::pair{kHelpButtonId, L"Help"}}) {
    drawn = {};
    Paint(id, 0);
    EXPECT_EQ(drawn.text, text);
    EXPECT_EQ(drawn.length, -1);
    EXPECT_TRUE(EqualRect(&drawn.area, &kArea));
    EXPECT_EQ(drawn.flags, UINT{DT_CENTER | DT_VCENTER | DT_SINGLELINE});
  }
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
