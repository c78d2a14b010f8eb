// Fullscreen, and the title bar that comes and goes in it.
//
//                     ToggleFullscreen
//    +--------------+ ----------------> +------------------------+
//    | normal       |                   | fullscreen, bar hidden | <------------------+
//    | bar shown    | <---------------- | tracking timer         |                    |
//    | no timer     |   (from all       +------------------------+                    |
//    +--------------+    three)              | pointer enters                         |
//                                            v the top area                           | auto-hide
//                                       +------------------------+                    | timer ticks
//                                       | fullscreen, bar shown  |                    |
//                                       | pointer at the top     | <--------+         |
//                                       | tracking timer         |          | pointer |
//                                       +------------------------+          | enters  |
//                                            | pointer leaves               |         |
//                                            v                              |         |
//                                       +------------------------+          |         |
//                                       | fullscreen, bar shown  | ---------+         |
//                                       | counting down          | -------------------+
//                                       | tracking and auto-hide |
//                                       +------------------------+
//
// A window makes one before its native window. Main thread. Changing the window's style and place makes the system send
// messages that lead back into the window's procedure while an operation here still runs.
#pragma once

#include <windows.h>

#include "shell/flutter_overlay.h"
#include "shell/title_bar.h"
#include "shell/top_area.h"
#include "shell/window_metrics.h"

namespace vantro {

class Fullscreen {
 public:
  // All are the owner's own. The handle is null until the native window is there. The size becomes the saved outer size
  // on entering and on leaving, and the WM_SIZE that follows overwrites it.
  Fullscreen(const HWND& mainWindow, WindowSize& size, TitleBar& titleBar, FlutterOverlay& overlay);
  Fullscreen(const Fullscreen&) = delete;
  Fullscreen& operator=(const Fullscreen&) = delete;

  bool IsFullscreen() const { return isFullscreen_; }
  bool IsTitleBarVisible() const { return isTitleBarVisible_; }

  // Enters or leaves. Leaving also takes the window out of the topmost band.
  void ToggleFullscreen();

  // Show and hide the bar's controls, in fullscreen with overlay and view. Nothing if the bar is shown or hidden
  // already.
  void ShowTitleBarControls();
  void HideTitleBarControls();
  void StartTitleBarAutoHideTimer();
  void StopTitleBarAutoHideTimer();

  // The pointer is at y, in client coordinates of the main window. Only in fullscreen.
  void RunTopAreaStep(int y, TopAreaCaller caller);
  // Looks where the pointer is and runs the step; nothing outside fullscreen.
  void FollowPointer(TopAreaCaller caller);
  // The tick of the auto-hide timer; nothing outside fullscreen.
  void OnTitleBarAutoHideTimer();

 private:
  void EnterFullscreen();
  void LeaveFullscreen();

  const HWND& hwnd_;
  WindowSize& size_;
  TitleBar& titleBar_;
  FlutterOverlay& overlay_;
  bool isFullscreen_ = false;
  bool isTitleBarVisible_ = true;
  bool isMouseInTopArea_ = false;
  RECT savedWindowRect_{};  // outer rectangle, style and extended style from before fullscreen
  DWORD savedStyle_ = 0;
  DWORD savedExStyle_ = 0;
  UINT_PTR titleBarAutoHideTimer_ = 0;  // 0 while the timer does not run
  UINT_PTR mouseTrackingTimer_ = 0;

  friend struct RoomPeer;
};

}  // namespace vantro
