// The volume slider and the speaker: the order of their steps, and the calls with which they draw.
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "shell/gdiplus_drawing.h"
#include "shell/shell_ids.h"
#include "tests/support/format.h"
#include "tests/support/import_hook.h"
#include "tests/support/line_order.h"
#include "tests/unit/shell/drawing_log.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::Canvas;
using test::DrawingLog;
using test::Format;
using test::ImportHook;
using test::InOrder;
using test::Inside;
using test::LogCapture;
using test::Note;
using Lines = std::vector<std::string>;

// The calls of a click and a drag, as notes in the log.

VantroWindow* noted = nullptr;
std::string DragFlags() {
  return Format(" dragging=%d percent=%d", Inside(*noted).isVolumeDragging_, Inside(*noted).showVolumePercent_);
}
BOOL WINAPI OnInvalidateRect(HWND, const RECT*, BOOL) {
  Note("InvalidateRect" + DragFlags());
  return TRUE;
}
BOOL WINAPI OnReleaseCapture() {
  Note("ReleaseCapture" + DragFlags());
  return TRUE;
}
HWND WINAPI OnSetCapture(HWND window) {
  Note("SetCapture" + DragFlags());
  return window;
}

class VolumeSteps : public test::ShellTest {
 protected:
  VolumeSteps() {
    noted = &Window();
    vlc_.OnCall("libvlc_audio_set_volume", [] { Note("libvlc_audio_set_volume"); });
  }
  ~VolumeSteps() override { vlc_.OnCall("libvlc_audio_set_volume", {}); }
  vantro::VolumeControl& Slider() { return Inside(Window()).volumeSlider_; }

  const ImportHook invalidate_{"user32.dll", "InvalidateRect", OnInvalidateRect};
  const ImportHook release_{"user32.dll", "ReleaseCapture", OnReleaseCapture};
  const ImportHook capture_{"user32.dll", "SetCapture", OnSetCapture};
};

TEST_F(VolumeSteps, AClickSetsThePlayersVolumeThenRedraws) {
  const LogCapture log;
  Slider().HandleVolumeClick(40, 7);
  EXPECT_TRUE(InOrder(log, {"DEBUG HandleVolumeClick: x=40, y=7", "(call) libvlc_audio_set_volume",
                            "INFO VLC volume set to: 50", "(call) InvalidateRect", "INFO Volume changed to: 50%"}));
}

TEST_F(VolumeSteps, ADragBeginsWithItsFlagsAndEndsWithTheCapture) {
  const LogCapture log;
  Slider().BeginVolumeDrag(40, 7);
  EXPECT_TRUE(InOrder(log, {"(call) InvalidateRect dragging=1 percent=1", "(call) SetCapture dragging=1 percent=1"}));
}

TEST_F(VolumeSteps, AReleaseClearsTheFlagsThenGivesTheCaptureBackThenRedraws) {
  Slider().BeginVolumeDrag(40, 7);
  const LogCapture log;
  Slider().EndVolumeDrag();
  EXPECT_TRUE(InOrder(log, {"(call) ReleaseCapture dragging=0 percent=0", "(call) InvalidateRect",
                            "DEBUG WM_LBUTTONUP: Volume control mouse up - hiding percentage"}));
}

TEST_F(VolumeSteps, APressIsLoggedWithItsPlaceBeforeTheVolumeChanges) {
  POINT point{40, 7};
  ClientToScreen(Inside(Window()).volumeControl_, &point);
  SetCursorPos(point.x, point.y);
  const LogCapture log;
  Slider().BeginDragAtPointer();
  EXPECT_TRUE(InOrder(log, {"DEBUG WM_LBUTTONDOWN: Volume control clicked at relative position (40, 7)",
                            "DEBUG HandleVolumeClick: x=40, y=7"}));
}

TEST_F(VolumeSteps, NoDragIsUnderWayAtFirst) {
  EXPECT_FALSE(Slider().IsDragging());
  EXPECT_FALSE(Inside(Window()).showVolumePercent_);
}

// The hit test.

class VolumeHitTest : public test::ShellTest {
 protected:
  bool Covers(LONG x, LONG y) { return Inside(Window()).volumeSlider_.Covers({x, y}); }
};

TEST_F(VolumeHitTest, CoversTheSliderWithItsFourEdges) {
  SetClientWidth(Window(), 1000);
  // The slider is at 615,5 and 80 by 20 pixels large.
  for (const LONG x : {615, 640, 695}) {
    for (const LONG y : {5, 15, 25}) EXPECT_TRUE(Covers(x, y)) << x << "," << y;
  }
  for (const LONG x : {614, 696}) EXPECT_FALSE(Covers(x, 15)) << x;
  for (const LONG y : {4, 26}) EXPECT_FALSE(Covers(640, y)) << y;
}

TEST_F(VolumeHitTest, CoversNothingWithoutASlider) {
  Inside(Window()).volumeControl_ = nullptr;
  POINT corner{0, 0};  // where a rectangle would be that was not read
  ScreenToClient(Window().hwnd_, &corner);
  EXPECT_FALSE(Covers(corner.x, corner.y));
}

UINT mappedPoints = 0;
int WINAPI OnMapWindowPoints(HWND from, HWND to, POINT* points, UINT count) {
  mappedPoints = count;
  return reinterpret_cast<decltype(&MapWindowPoints)>(
      GetProcAddress(GetModuleHandleA("user32.dll"), "MapWindowPoints"))(from, to, points, 2);
}

TEST_F(VolumeHitTest, MapsTheTwoCornersOfTheSlider) {
  const ImportHook hook("user32.dll", "MapWindowPoints", OnMapWindowPoints);
  mappedPoints = 0;
  Covers(0, 0);
  EXPECT_EQ(mappedPoints, 2u);
}

// Drawing needs neither a native window nor a player.

int polygons = 0;
Gdiplus::GpStatus WINAPI OnFillPolygon(Gdiplus::GpGraphics*, Gdiplus::GpBrush*, const Gdiplus::GpPoint*, INT,
                                       Gdiplus::GpFillMode) {
  ++polygons;
  return Gdiplus::Ok;
}

class VolumeDrawingCalls : public testing::Test {
 protected:
  void Draw(const Canvas& canvas, UINT id) { Draw(canvas, id, canvas.Area()); }
  void Draw(const Canvas& canvas, UINT id, const RECT& area) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_STATIC;
    item.CtlID = id;
    item.hDC = canvas.Dc();
    item.rcItem = area;
    EXPECT_EQ(RoomPeer::DrawItem(window_, item), TRUE);
  }

  VantroWindow window_{GetModuleHandleW(nullptr)};
};

TEST_F(VolumeDrawingCalls, TheSliderIsFilledFromAWidthOfOnePixelOn) {
  const ImportHook fill("gdiplus.dll", "GdipFillPolygonI", OnFillPolygon);
  const Canvas canvas(80, 20);
  for (const auto& [volume, expected] : {std::pair{0, 0}, {1, 0}, {2, 1}, {100, 1}}) {
    polygons = 0;
    Inside(window_).volume_ = volume;
    Draw(canvas, kVolumeControlId);
    EXPECT_EQ(polygons, expected) << volume;
  }
}

Lines smoothing;
Gdiplus::GpStatus WINAPI OnSetSmoothingMode(Gdiplus::GpGraphics* graphics, Gdiplus::SmoothingMode mode) {
  smoothing.push_back(Format("%d%s", mode, graphics ? "" : " without graphics"));
  return Gdiplus::Ok;
}

TEST_F(VolumeDrawingCalls, TheSliderIsDrawnWithSmoothEdges) {
  const ImportHook smooth("gdiplus.dll", "GdipSetSmoothingMode", OnSetSmoothingMode);
  smoothing.clear();
  Draw(Canvas(80, 20), kVolumeControlId);
  EXPECT_EQ(smoothing, (Lines{"4"}));
}

TEST_F(VolumeDrawingCalls, ThePercentageIsWhiteAndCentredOnOneLine) {
  const Canvas canvas(80, 20);
  const DrawingLog drawing;
  Inside(window_).showVolumePercent_ = true;
  Draw(canvas, kVolumeControlId);
  EXPECT_EQ(drawing.Calls(), (Lines{"FillRect 0,0-80,20 5F4646", "SetTextColor FFFFFF", "SetBkMode 1",
                                    "DrawTextW '100%' -1 0,0-80,20 flags=37"}));
}

// The speaker.

Gdiplus::GpStatus WINAPI LoadImageAndFail(const WCHAR*, Gdiplus::GpImage** image) {
  Gdiplus::GpBitmap* bitmap = nullptr;
  Gdiplus::DllExports::GdipCreateBitmapFromScan0(8, 8, 0, PixelFormat32bppRGB, nullptr, &bitmap);
  *image = bitmap;
  return Gdiplus::GenericError;
}

TEST_F(VolumeDrawingCalls, ASpeakerPictureThatFailsToLoadIsNotDrawn) {
  const ImportHook load("gdiplus.dll", "GdipLoadImageFromFile", LoadImageAndFail);
  const Canvas canvas(20, 20);
  const LogCapture log;
  Draw(canvas, kSpeakerIconId);
  EXPECT_EQ(log.CountContaining("Successfully loaded PNG"), 0);
  EXPECT_TRUE(log.Has("DEBUG Speaker icon: Could not load PNG or ICO, using fallback drawing"));
}

Lines iconRequests;
HANDLE WINAPI OnLoadImage(HINSTANCE instance, const wchar_t*, UINT type, int width, int height, UINT flags) {
  iconRequests.push_back(
      Format("%s type=%u %dx%d flags=%u", instance ? "of a module" : "of a file", type, width, height, flags));
  return CopyIcon(LoadIconA(nullptr, IDI_APPLICATION));
}

TEST_F(VolumeDrawingCalls, TheSpeakersIconIsLoadedAtItsDefaultSizeAndDrawnInTheMiddle) {
  const ImportHook load("user32.dll", "LoadImageW", OnLoadImage);
  const Canvas canvas(60, 20);
  const DrawingLog drawing;
  iconRequests.clear();
  Draw(canvas, kSpeakerIconId);
  EXPECT_EQ(iconRequests, (Lines{"of a file type=1 0x0 flags=80"}));
  EXPECT_EQ(drawing.Calls(), (Lines{"FillRect 0,0-60,20 5F4646", "DrawIconEx 22,2 16x16 step=0 no brush flags=3"}));
}

TEST_F(VolumeDrawingCalls, TheSpeakerByHandIsLoggedThenDrawn) {
  const Canvas canvas(20, 20);
  const LogCapture log;
  const DrawingLog drawing;
  Draw(canvas, kSpeakerIconId);
  EXPECT_EQ(drawing.Calls(),
            (Lines{"FillRect 0,0-20,20 5F4646", "CreatePen 0 2 FFFFFF", "FillRect 6,7-9,13 FFFFFF",
                   "Polyline 9,7 13,9 13,11 9,13", "MoveToEx 15,9", "LineTo 15,11", "MoveToEx 17,8", "LineTo 17,12"}));
  EXPECT_TRUE(InOrder(log, {"DEBUG Speaker icon: Could not load PNG or ICO, using fallback drawing", "(call) CreatePen",
                            "(call) LineTo"}));
}

TEST_F(VolumeDrawingCalls, TheSpeakerByHandFollowsItsPlace) {
  const Canvas canvas(60, 60);
  const DrawingLog drawing;
  Draw(canvas, kSpeakerIconId, {10, 30, 30, 50});
  EXPECT_EQ(drawing.Of("FillRect"), (Lines{"FillRect 10,30-30,50 5F4646", "FillRect 16,37-19,43 FFFFFF"}));
  EXPECT_EQ(drawing.Of("Polyline"), (Lines{"Polyline 19,37 23,39 23,41 19,43"}));
}

Lines folderRequests;
DWORD WINAPI OnGetCurrentDirectory(DWORD size, wchar_t* folder) {
  folderRequests.push_back(Format("%lu%s", size, folder ? " with a buffer" : ""));
  if (folder) std::copy_n(L"C:\\", 4, folder);
  return folder ? 3 : 4;
}

TEST_F(VolumeDrawingCalls, TheWorkingDirectorysLengthIsAskedForFirst) {
  const ImportHook current("kernel32.dll", "GetCurrentDirectoryW", OnGetCurrentDirectory);
  const Canvas canvas(20, 20);
  const LogCapture log;
  folderRequests.clear();
  Draw(canvas, kSpeakerIconId);
  ASSERT_GE(folderRequests.size(), 2u);
  EXPECT_EQ(Lines(folderRequests.begin(), folderRequests.begin() + 2), (Lines{"0", "4 with a buffer"}));
  EXPECT_TRUE(log.Has("DEBUG Speaker icon: Looking for PNG in working directory: C:\\speaker.png"));
}

}  // namespace
}  // namespace vantro
