// Keys and focus on the main window itself. The view is the home of the focus; what reaches the window instead is
// carried to the view, and the focus stays where it is.
//
// A window makes one before its native window. Main thread. Each operation serves the message of its name and returns
// the window procedure's result.
#pragma once

#include <windows.h>

#include <memory>

#include "flutter_host/flutter_engine.h"
#include "shell/flutter_overlay.h"
#include "shell/fullscreen.h"
#include "shell/title_bar.h"

namespace vantro {

class KeyboardRouter {
 public:
  // All are the owner's own and read anew at each use; handle and engine are null until its start has made them.
  KeyboardRouter(const HWND& mainWindow, const TitleBar& titleBar, const FlutterOverlay& overlay,
                 Fullscreen& fullscreen, const std::unique_ptr<FlutterEngine>& engine);
  KeyboardRouter(const KeyboardRouter&) = delete;
  KeyboardRouter& operator=(const KeyboardRouter&) = delete;

  // Log who has the focus, and do nothing else.
  LRESULT OnSetFocus(WPARAM wParam, LPARAM lParam) const;
  LRESULT OnKillFocus(WPARAM wParam, LPARAM lParam) const;
  // F11 enters and leaves fullscreen, Escape leaves it; other keys go to the view.
  LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
  // Key up, characters and the system keys end here, whoever takes them: none reaches the system's own handling, so Alt
  // opens no menu.
  LRESULT OnOtherKey(UINT message, WPARAM wParam, LPARAM lParam) const;

 private:
  LRESULT SendUnhandledKeyDown(HWND child, WPARAM wParam, LPARAM lParam) const;

  const HWND& hwnd_;
  const TitleBar& titleBar_;
  const FlutterOverlay& overlay_;
  Fullscreen& fullscreen_;
  const std::unique_ptr<FlutterEngine>& flutterEngine_;
};

}  // namespace vantro
