// The overlay: a borderless popup, owned by the main window, that carries the Flutter view above the video. This class
// makes it, keeps it over the client area, and turns it from click-through to capturing. No other code places the
// overlay or the view.
//
// A window makes one before its native window. Main thread. Moving a window makes the system send messages that lead
// back here; the one operation that such a message calls guards itself.
#pragma once

#include <windows.h>

#include <memory>
#include <optional>

#include "common/geometry.h"
#include "flutter_host/flutter_engine.h"

namespace vantro {

class FlutterOverlay {
 public:
  // Both are the owner's own and read anew at each use: null until its start has made them.
  FlutterOverlay(const HWND& mainWindow, const std::unique_ptr<FlutterEngine>& engine);
  FlutterOverlay(const FlutterOverlay&) = delete;
  FlutterOverlay& operator=(const FlutterOverlay&) = delete;

  // Null before the creation. It goes with the main window, so later uses test it with IsWindow.
  HWND Window() const { return flutterHostWindow_; }

  // Makes the overlay over the client area below the title bar, click-through. False when the main window or the system
  // cannot serve; the reason is logged.
  bool CreateFlutterOverlay(HINSTANCE instance);
  // From here on the overlay takes the mouse, and the view has the focus. It then covers the title bar as well.
  void EnableOverlayMouseInput();
  // Moves overlay and view over the client area, in fullscreen without leaving the title bar free, and gives the view
  // the focus. Does nothing while it runs already.
  void SyncFlutterOverlayPosition(bool isFullscreen);
  // Moves overlay and view over the client area below its first topOffset pixels, without activation and focus. Returns
  // where the overlay went, nothing without an overlay.
  std::optional<Rect> MoveBelow(int topOffset);
  // Raises the overlay within its owner's group, without activation: never into the topmost band.
  void SetFlutterOverlayTopmost();
  // Puts main window and overlay into the topmost band or takes them out of it.
  void ApplyTopmost(bool topmost);
  // Destroys the overlay if it still lives.
  void Destroy();

  // The hook by which the newest window's overlay follows its main window. A failure is logged and accepted.
  void InstallWindowHook();
  void RemoveWindowHook();
  // WH_CALLWNDPROC: sees every message that is sent to a window of the thread, before its procedure does.
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
