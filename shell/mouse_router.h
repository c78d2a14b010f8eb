// Mouse messages of the main window itself: on the title bar and on any area that video and overlay leave free.
//
// A main window creates one before its native window. Main thread. Each operation handles the message in its name and
// returns the window procedure's result. All operations use the pointer's current position, not the position when the
// message was posted.
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
  // All references are to members of the owner. They are read at each use. The handle and the engine are null until the
  // owner's start has set them.
  MouseRouter(const HWND& mainWindow, Fullscreen& fullscreen, VolumeControl& volumeControl, SearchBox& search,
              const std::unique_ptr<FlutterEngine>& engine);
  MouseRouter(const MouseRouter&) = delete;
  MouseRouter& operator=(const MouseRouter&) = delete;

  // Shows the title bar in fullscreen when the pointer is at the top, and sets the volume during a volume drag.
  LRESULT OnMouseMove(WPARAM wParam, LPARAM lParam);
  // Starts a volume drag if the press is on the slider.
  LRESULT OnLeftButtonDown(WPARAM wParam, LPARAM lParam);
  // Any button. The left one ends a volume drag. Gives the focus back to the view, unless the search box has it or the
  // button was released on the search box or the slider.
  LRESULT OnButtonUp(UINT message, WPARAM wParam, LPARAM lParam);

 private:
  const HWND& hwnd_;
  Fullscreen& fullscreen_;
  VolumeControl& volumeControl_;
  SearchBox& search_;
  const std::unique_ptr<FlutterEngine>& flutterEngine_;
};

}  // namespace vantro
