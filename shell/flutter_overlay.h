// The overlay: a borderless popup, owned by the main window, that holds the Flutter view above the video. This class
// creates it, keeps it over the client area, and switches it from click-through to capturing input. No other code
// places the overlay or the view.
//
// A main window creates one before its native window. Main thread. Moving a window makes the system send messages that
// call into this class again; the operation that they call has a guard against this.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "common/geometry.h"
#include "flutter_host/flutter_engine.h"

namespace vantro {

class FlutterOverlay {
 public:
  // Both references are to members of the owner. They are read at each use and are null until the owner's start has set
  // them.
  FlutterOverlay(const HWND& mainWindow, const std::unique_ptr<FlutterEngine>& engine);
  FlutterOverlay(const FlutterOverlay&) = delete;
  FlutterOverlay& operator=(const FlutterOverlay&) = delete;

  // Null before the creation. The system destroys the overlay with the main window, so later uses test it with
  // IsWindow.
  HWND Window() const { return flutterHostWindow_; }

  // Creates the overlay over the client area below the title bar, click-through. Returns false if the main window is
  // not ready or the system cannot create the overlay; the reason is logged.
  bool CreateFlutterOverlay(HINSTANCE instance);
  // Makes the overlay capture the mouse, moves it over the title bar as well, and gives the view the focus.
  void EnableOverlayMouseInput();
  // Moves overlay and view over the client area and gives the view the focus. Outside fullscreen the title bar stays
  // free. Does nothing when called from within itself.
  void SyncFlutterOverlayPosition(bool isFullscreen);
  // Moves overlay and view over the client area without its first topOffset pixels. Does not change the activation or
  // the focus. Returns the overlay's new rectangle on the screen, or nothing without an overlay.
  std::optional<Rect> MoveBelow(int topOffset);
  // Raises the overlay within its owner's group. Does not activate it or make it topmost.
  void SetFlutterOverlayTopmost();
  // Makes main window and overlay topmost (true) or not topmost (false).
  void ApplyTopmost(bool topmost);
  // Destroys the overlay if it still exists.
  void Destroy();

  // Install and remove the hook that makes the newest window's overlay follow its main window. A failure is logged and
  // accepted.
  void InstallWindowHook();
  void RemoveWindowHook();
  // The hook's procedure (WH_CALLWNDPROC). The system calls it for every message that is sent to a window of this
  // thread, before that window's own procedure.
  static LRESULT CALLBACK WindowSyncHookProc(int nCode, WPARAM wParam, LPARAM lParam);

 private:
  bool IsAlive() const { return flutterHostWindow_ && IsWindow(flutterHostWindow_); }
  void MoveOverClientArea(bool isFullscreen);
  void Follow(UINT message, WPARAM wParam, bool isFullscreen);

  const HWND& hwnd_;
  const std::unique_ptr<FlutterEngine>& flutterEngine_;
  HWND flutterHostWindow_ = nullptr;
  HHOOK windowHook_ = nullptr;
  bool isSyncingOverlay_ = false;

  friend struct RoomPeer;
};

}  // namespace vantro
