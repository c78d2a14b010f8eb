// Keyboard and focus messages of the main window itself. The view normally has the focus. A key that reaches the main
// window instead is forwarded to the view, and the router itself does not move the focus.
//
// A main window creates one before its native window. Main thread. Each operation handles the message in its name and
// returns the window procedure's result.
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
  // All references are to members of the owner. They are read at each use. The handle and the engine are null until the
  // owner's start has set them.
  KeyboardRouter(const HWND& mainWindow, const TitleBar& titleBar, const FlutterOverlay& overlay,
                 Fullscreen& fullscreen, const std::unique_ptr<FlutterEngine>& engine);
  KeyboardRouter(const KeyboardRouter&) = delete;
  KeyboardRouter& operator=(const KeyboardRouter&) = delete;

  // Log the focus and pass the message to the system.
  LRESULT OnSetFocus(WPARAM wParam, LPARAM lParam) const;
  LRESULT OnKillFocus(WPARAM wParam, LPARAM lParam) const;
  // F11 enters and leaves fullscreen, Escape leaves it; other keys go to the view.
  LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
  // Key up, characters and system keys. They are forwarded to the view and never reach the system's default handling,
  // even if the view does not handle them. Alt therefore opens no menu.
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
