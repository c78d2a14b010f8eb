// Fullscreen, and showing and hiding the title bar in it.
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
// A main window creates one before its native window. Main thread. Changing the window's style or place makes the
// system call the window's procedure while an operation here is still running.
#pragma once

#include <windows.h>

#include "shell/flutter_overlay.h"
#include "shell/title_bar.h"
#include "shell/top_area.h"
#include "shell/window_metrics.h"

namespace vantro {

class Fullscreen {
 public:
  // All references are to members of the owner. The handle is null until the native window exists. Entering and leaving
  // set the size to the saved outer size; the WM_SIZE that follows overwrites it.
  Fullscreen(const HWND& mainWindow, WindowSize& size, TitleBar& titleBar, FlutterOverlay& overlay);
  Fullscreen(const Fullscreen&) = delete;
  Fullscreen& operator=(const Fullscreen&) = delete;

  bool IsFullscreen() const { return isFullscreen_; }
  bool IsTitleBarVisible() const { return isTitleBarVisible_; }

  // Enters or leaves fullscreen. Leaving also ends always-on-top.
  void ToggleFullscreen();

  // Show and hide the bar's controls. In fullscreen they also move overlay and view. They do nothing if the bar is
  // already shown or hidden.
  void ShowTitleBarControls();
  void HideTitleBarControls();
  void StartTitleBarAutoHideTimer();
  void StopTitleBarAutoHideTimer();

  // Updates the bar for a pointer at y, in client coordinates of the main window. Called in fullscreen only.
  void RunTopAreaStep(int y, TopAreaCaller caller);
  // Reads the pointer's position and runs the step for it. Does nothing outside fullscreen.
  void FollowPointer(TopAreaCaller caller);
  // Handles a tick of the auto-hide timer. Does nothing outside fullscreen.
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
