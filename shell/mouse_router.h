// The mouse on the main window itself: the title bar, and whatever video and overlay leave free.
//
// A window makes one before its native window. Main thread. Each operation serves the message of its name and returns
// the window procedure's result. All go by where the pointer is now, not by where it was when the message was posted.
#pragma once

#include <windows.h>

#include <memory>

#include "flutter_host/flutter_engine.h"
#include "shell/fullscreen.h"
#include "shell/search_box.h"
#include "shell/volume_control.h"

namespace vantro {

class MouseRouter {
 public:
  // All are the owner's own and read anew at each use; handle and engine are null until its start has made them.
  MouseRouter(const HWND& mainWindow, Fullscreen& fullscreen, VolumeControl& volumeControl, SearchBox& search,
              const std::unique_ptr<FlutterEngine>& engine);
  MouseRouter(const MouseRouter&) = delete;
  MouseRouter& operator=(const MouseRouter&) = delete;

  // Calls the title bar back in fullscreen, and drags the volume.
  LRESULT OnMouseMove(WPARAM wParam, LPARAM lParam);
  // Begins the volume's drag when the press is on the slider.
  LRESULT OnLeftButtonDown(WPARAM wParam, LPARAM lParam);
  // Any button: ends the volume's drag when it was the left one, and gives the focus back to the view.
  LRESULT OnButtonUp(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  const HWND& hwnd_;
  Fullscreen& fullscreen_;
  VolumeControl& volumeControl_;
  SearchBox& search_;
  const std::unique_ptr<FlutterEngine>& flutterEngine_;
};

}  // namespace vantro
