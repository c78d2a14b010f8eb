// The volume slider and the speaker: clicks, drags, the calls of the player, and the drawing.
#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <string>
#include <vector>

#include "shell/shell_ids.h"
#include "tests/support/player_inspector.h"
#include "tests/support/process_resources.h"
#include "tests/unit/shell/call_log.h"
#include "tests/unit/shell/picture.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro {
namespace {

using test::CallLog;
using test::Canvas;
using test::Inside;
using test::LogCapture;
using Lines = std::vector<std::string>;

class VolumeControl : public test::ShellTest {
 protected:
  // Moves the pointer to a point of the slider.
  void PointAt(int x, int y) {
    POINT point{x, y};
    ClientToScreen(Inside(Window()).volumeControl_, &point);
    SetCursorPos(point.x, point.y);
  }
  void Send(UINT message) { SendMessageA(Window().hwnd_, message, 0, 0); }
};

TEST_F(VolumeControl, StartsAtFullVolume) { EXPECT_EQ(Inside(Window()).volume_, 100); }

TEST_F(VolumeControl, ClickSetsTheVolumeOfWindowAndPlayerAndRedraws) {
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).volumeSlider_.HandleVolumeClick(40, 7);
  EXPECT_EQ(Inside(Window()).volume_, 50);
  EXPECT_EQ(test::PlayerInspector(*Window().vlcPlayer_).volume_, 50);
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect volume all erase"}));
  EXPECT_EQ(log.CountContaining("HandleVolumeClick: x=40, y=7"), 1);
  EXPECT_EQ(log.CountContaining("VLC volume set to: 50"), 1);
  EXPECT_EQ(log.Lines().back(), "INFO Volume changed to: 50%");
}

TEST_F(VolumeControl, ClickReachesTheLibrary) {
  Inside(Window()).volumeSlider_.HandleVolumeClick(20, 0);
  EXPECT_EQ(vlc_.Volume(vlc_.Player()), 25);
}

TEST_F(VolumeControl, WithoutAPlayerTheVolumeIsKeptAndAWarningLogged) {
  Window().methodChannelHandler_.reset();
  Window().vlcPlayer_.reset();
  LogCapture log;
  Inside(Window()).volumeSlider_.HandleVolumeClick(8, 0);
  EXPECT_EQ(Inside(Window()).volume_, 10);
  EXPECT_TRUE(log.Has("WARNING VLC player not available for volume control"));
  EXPECT_EQ(log.CountContaining("VLC volume set to"), 0);
}

TEST_F(VolumeControl, InTheGridTheVolumeIsOnlyRemembered) {
  ASSERT_TRUE(Window().vlcPlayer_->EnableMultiView());
  vlc_.ClearCalls();
  Inside(Window()).volumeSlider_.HandleVolumeClick(40, 0);
  EXPECT_EQ(test::PlayerInspector(*Window().vlcPlayer_).volume_, 50);
  EXPECT_EQ(vlc_.CountOf("libvlc_audio_set_volume"), 0);
}

TEST_F(VolumeControl, PressOnTheSliderStartsADragWithCapture) {
  PointAt(40, 10);
  Send(WM_LBUTTONDOWN);
  EXPECT_TRUE(Inside(Window()).isVolumeDragging_);
  EXPECT_TRUE(Inside(Window()).showVolumePercent_);
  EXPECT_EQ(Inside(Window()).volume_, 50);
  EXPECT_EQ(GetCapture(), Window().hwnd_);
}

TEST_F(VolumeControl, DragFollowsThePointerAndClampsBeyondTheEnds) {
  PointAt(40, 10);
  Send(WM_LBUTTONDOWN);
  PointAt(20, 10);
  Send(WM_MOUSEMOVE);
  EXPECT_EQ(Inside(Window()).volume_, 25);
  PointAt(-30, 10);
  Send(WM_MOUSEMOVE);
  EXPECT_EQ(Inside(Window()).volume_, 0);
  PointAt(150, 10);
  Send(WM_MOUSEMOVE);
  EXPECT_EQ(Inside(Window()).volume_, 100);
}

TEST_F(VolumeControl, ReleaseEndsTheDragAndRedraws) {
  PointAt(40, 10);
  Send(WM_LBUTTONDOWN);
  CallLog calls(Window());
  Send(WM_LBUTTONUP);
  EXPECT_FALSE(Inside(Window()).isVolumeDragging_);
  EXPECT_FALSE(Inside(Window()).showVolumePercent_);
  EXPECT_EQ(GetCapture(), nullptr);
  EXPECT_EQ(calls.Of("InvalidateRect"), (Lines{"InvalidateRect volume all erase"}));
  PointAt(60, 10);
  Send(WM_MOUSEMOVE);
  EXPECT_EQ(Inside(Window()).volume_, 50);
}

TEST_F(VolumeControl, DragGoesOnWhenAnotherWindowTookTheCapture) {
  PointAt(40, 10);
  Send(WM_LBUTTONDOWN);
  ReleaseCapture();
  PointAt(20, 10);
  Send(WM_MOUSEMOVE);
  EXPECT_EQ(Inside(Window()).volume_, 25);
  EXPECT_TRUE(Inside(Window()).showVolumePercent_);
}

TEST_F(VolumeControl, CommandOfTheSliderStartsTheDragAtThePointer) {
  PointAt(60, 5);
  LogCapture log;
  CallLog calls(Window());
  Inside(Window()).commands_.HandleMenuCommand(kVolumeControlId);
  EXPECT_EQ(log.Lines()[1], "INFO HandleMenuCommand: Volume control clicked (ID 1001)");
  EXPECT_EQ(log.Lines()[2], "DEBUG Volume control WM_COMMAND: click at relative (60, 5)");
  EXPECT_TRUE(Inside(Window()).isVolumeDragging_);
  EXPECT_TRUE(Inside(Window()).showVolumePercent_);
  EXPECT_EQ(Inside(Window()).volume_, 75);
  EXPECT_EQ(calls.Of("SetCapture"), (Lines{"SetCapture main"}));
}

TEST_F(VolumeControl, CommandWithoutTheSliderEndsAfterItsLogLine) {
  Inside(Window()).volumeControl_ = nullptr;
  LogCapture log;
  Inside(Window()).commands_.HandleMenuCommand(kVolumeControlId);
  EXPECT_EQ(log.Lines().size(), 2u);
  EXPECT_FALSE(Inside(Window()).isVolumeDragging_);
}

// Drawing needs neither a native window nor a player.
class VolumeDrawing : public testing::Test {
 protected:
  VolumeDrawing() { std::filesystem::create_directories(folder_); }
  ~VolumeDrawing() override {
    std::filesystem::remove_all(folder_);
    std::filesystem::remove_all(ProgramFolder() / "img");
    std::filesystem::remove(ProgramFolder() / "speaker.ico");
  }

  static DRAWITEMSTRUCT Item(const Canvas& canvas, UINT id) {
    DRAWITEMSTRUCT item{};
    item.CtlType = ODT_STATIC;
    item.CtlID = id;
    item.hDC = canvas.Dc();
    item.rcItem = canvas.Area();
    return item;
  }
  // Draws with a working directory that contains only the test's files. The log stays in the usual directory.
  LRESULT Draw(const Canvas& canvas, UINT id) {
    DRAWITEMSTRUCT item = Item(canvas, id);
    std::filesystem::current_path(folder_);
    const LRESULT result = RoomPeer::DrawItem(window_, item);
    std::filesystem::current_path(home_);
    return result;
  }
  static std::filesystem::path ProgramFolder() {
    wchar_t path[MAX_PATH];
    GetModuleFileNameW(nullptr, path, MAX_PATH);
    return std::filesystem::path(path).parent_path();
  }
  static void CopyPicture(const char* name, const std::filesystem::path& to) {
    std::filesystem::create_directories(to.parent_path());
    std::filesystem::copy_file(std::filesystem::path(VANTRO_PICTURES) / name, to);
  }

  const std::filesystem::path home_ = std::filesystem::current_path();
  const std::filesystem::path folder_ = home_ / "working";
  VantroWindow window_{GetModuleHandleW(nullptr)};
};

struct SliderPicture {
  const char* picture;
  int volume;
};
class SliderPictures : public VolumeDrawing, public testing::WithParamInterface<SliderPicture> {};

TEST_P(SliderPictures, EqualTheirPicture) {
  const Canvas canvas(80, 20);
  Inside(window_).volume_ = GetParam().volume;
  EXPECT_EQ(Draw(canvas, kVolumeControlId), TRUE);
  EXPECT_EQ(canvas.Count(Canvas::kUntouched), 0);
  canvas.ExpectEqualsPicture(GetParam().picture);
}

INSTANTIATE_TEST_SUITE_P(Volume, SliderPictures,
                         testing::Values(SliderPicture{"volume_0", 0}, SliderPicture{"volume_50", 50},
                                         SliderPicture{"volume_100", 100}),
                         [](const auto& slider) { return std::string(slider.param.picture); });

TEST_F(VolumeDrawing, VolumeZeroDrawsOnlyTheOutline) {
  const Canvas empty(80, 20), full(80, 20);
  Inside(window_).volume_ = 0;
  Draw(empty, kVolumeControlId);
  Inside(window_).volume_ = 100;
  Draw(full, kVolumeControlId);
  EXPECT_EQ(empty.Count(RGB(0, 200, 0)), 0);
  EXPECT_GT(full.Count(RGB(0, 200, 0)), 300);
}

TEST_F(VolumeDrawing, PercentageIsDrawnOnlyWhileItIsAskedFor) {
  const Canvas plain(80, 20), withPercent(80, 20);
  Draw(plain, kVolumeControlId);
  Inside(window_).showVolumePercent_ = true;
  Draw(withPercent, kVolumeControlId);
  EXPECT_GT(withPercent.Count(RGB(255, 255, 255)), plain.Count(RGB(255, 255, 255)) + 10);
}

TEST_F(VolumeDrawing, AnotherStaticIsAnsweredAndNotDrawn) {
  const Canvas canvas(20, 20);
  EXPECT_EQ(Draw(canvas, 77), TRUE);
  EXPECT_EQ(canvas.Count(Canvas::kUntouched), 400);
}

TEST_F(VolumeDrawing, SpeakerWithoutAFileIsDrawnByHandAtEachPaint) {
  const Canvas canvas(20, 20);
  LogCapture log;
  Draw(canvas, kSpeakerIconId);
  Draw(canvas, kSpeakerIconId);
  canvas.ExpectEqualsPicture("speaker_by_hand");
  const Lines lines = log.Lines();
  ASSERT_EQ(lines.size(), 10u);
  EXPECT_TRUE(lines[0].starts_with("DEBUG Speaker icon: Looking for PNG in working directory: "));
  EXPECT_TRUE(lines[0].ends_with("\\working\\speaker.png"));
  EXPECT_TRUE(lines[1].starts_with("DEBUG Speaker icon: PNG not in working dir, trying exe directory: "));
  EXPECT_TRUE(lines[1].ends_with("\\img\\speaker.png"));
  EXPECT_EQ(lines[2], "DEBUG Speaker icon: PNG failed, trying ICO in working directory");
  EXPECT_EQ(lines[3], "DEBUG Speaker icon: ICO not in working dir, trying exe directory");
  EXPECT_EQ(lines[4], "DEBUG Speaker icon: Could not load PNG or ICO, using fallback drawing");
  EXPECT_EQ(Lines(lines.begin(), lines.begin() + 5), Lines(lines.begin() + 5, lines.end()));
}

// The picture files are plain orange. A drawn picture fills the 16 by 16 square in the middle.
constexpr COLORREF kOrange = RGB(255, 128, 0);

void ExpectOrangeSquare(const Canvas& canvas) {
  EXPECT_EQ(canvas.Pixel(2, 2), kOrange);
  EXPECT_EQ(canvas.Pixel(9, 9), kOrange);
  EXPECT_EQ(canvas.Pixel(16, 16), kOrange);
  EXPECT_EQ(canvas.Pixel(1, 1), kTitleBarColor);
  EXPECT_EQ(canvas.Pixel(18, 18), kTitleBarColor);
}

TEST_F(VolumeDrawing, SpeakerPngInTheWorkingDirectoryIsDrawn) {
  CopyPicture("speaker_file.png", folder_ / "speaker.png");
  const Canvas canvas(20, 20);
  LogCapture log;
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
  ASSERT_EQ(log.Lines().size(), 2u);
  EXPECT_EQ(log.Lines().back(), "DEBUG Speaker icon: Successfully loaded PNG");
}

TEST_F(VolumeDrawing, SpeakerPngInTheProgramsImgFolderIsDrawn) {
  CopyPicture("speaker_file.png", ProgramFolder() / "img" / "speaker.png");
  const Canvas canvas(20, 20);
  LogCapture log;
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
  EXPECT_EQ(log.Lines().size(), 3u);
}

decltype(&GetModuleFileNameW) realModuleFileName = nullptr;
DWORD WINAPI CutShort(HMODULE module, wchar_t* path, DWORD size) {
  return size <= MAX_PATH ? size : realModuleFileName(module, path, size);
}

TEST_F(VolumeDrawing, SpeakerBesideAProgramWithALongPathIsDrawn) {
  CopyPicture("speaker_file.png", ProgramFolder() / "img" / "speaker.png");
  const Canvas canvas(20, 20);
  const test::ImportHook hook("kernel32.dll", "GetModuleFileNameW", CutShort);
  realModuleFileName = hook.Original<decltype(realModuleFileName)>();
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
}

TEST_F(VolumeDrawing, SpeakerIcoInTheWorkingDirectoryIsDrawn) {
  CopyPicture("speaker_file.ico", folder_ / "speaker.ico");
  const Canvas canvas(20, 20);
  LogCapture log;
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
  EXPECT_EQ(log.Lines().back(), "DEBUG Speaker icon: PNG failed, trying ICO in working directory");
}

TEST_F(VolumeDrawing, SpeakerIcoBesideTheProgramIsDrawn) {
  CopyPicture("speaker_file.ico", ProgramFolder() / "speaker.ico");
  const Canvas canvas(20, 20);
  LogCapture log;
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
  EXPECT_EQ(log.Lines().back(), "DEBUG Speaker icon: ICO not in working dir, trying exe directory");
}

TEST_F(VolumeDrawing, DamagedSpeakerPngFallsThroughToTheNextPlace) {
  CopyPicture("speaker_file.ico", folder_ / "speaker.png");
  std::filesystem::resize_file(folder_ / "speaker.png", 10);
  CopyPicture("speaker_file.ico", ProgramFolder() / "speaker.ico");
  const Canvas canvas(20, 20);
  Draw(canvas, kSpeakerIconId);
  ExpectOrangeSquare(canvas);
}

TEST_F(VolumeDrawing, SpeakerPictureStaysSquareAndCentredInAWiderControl) {
  CopyPicture("speaker_file.png", folder_ / "speaker.png");
  const Canvas canvas(60, 20);
  Draw(canvas, kSpeakerIconId);
  EXPECT_EQ(canvas.Pixel(22, 10), kOrange);
  EXPECT_EQ(canvas.Pixel(37, 10), kOrange);
  EXPECT_EQ(canvas.Pixel(20, 10), kTitleBarColor);
  EXPECT_EQ(canvas.Pixel(39, 10), kTitleBarColor);
}

TEST_F(VolumeDrawing, PaintingLeavesNoGdiObjectBehind) {
  const Canvas canvas(80, 20);
  Inside(window_).showVolumePercent_ = true;
  const auto expectNoneLeft = [&](UINT id, const char* what) {
    Draw(canvas, id);
    const size_t before = test::GdiObjectCount();
    for (int i = 0; i < 5; ++i) Draw(canvas, id);
    EXPECT_EQ(test::GdiObjectCount(), before) << what;
  };
  expectNoneLeft(kVolumeControlId, "the slider");
  expectNoneLeft(kSpeakerIconId, "the speaker by hand");
  CopyPicture("speaker_file.ico", folder_ / "speaker.ico");
  expectNoneLeft(kSpeakerIconId, "the speaker from an icon file");
  CopyPicture("speaker_file.png", folder_ / "speaker.png");
  expectNoneLeft(kSpeakerIconId, "the speaker from a picture file");
}

}  // namespace
}  // namespace vantro
