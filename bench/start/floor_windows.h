// The windows of the floor program: their procedures, and the calls that the host makes whenever they move or are
// painted.
#pragma once

#include <windows.h>

#include "flutter_host/embedding_api.h"

namespace floor_program {

constexpr int kTitleBarHeight = 30;

struct TitleBarControls {
  HWND icon, title, file, help, search, close, maximize, minimize, speaker, volume;
};

// Everything that a window of the host keeps handles of. One in the process.
struct Window {
  HWND main = nullptr;
  TitleBarControls controls{};
  HWND video = nullptr;
  HWND overlay = nullptr;
  FlutterDesktopViewControllerRef view = nullptr;
  HWND viewWindow = nullptr;
  bool listens = false;  // the channel stands: from here on a change of size places the video
  bool isSyncing = false;
  bool isFullscreen = false;
  bool showsBar = true;
  bool draws = true;  // false: what is painted stays empty
  HHOOK hook = nullptr;
  HBRUSH titleBarBrush = nullptr;
  HBRUSH backgroundBrush = nullptr;
};

Window& TheWindow();

LRESULT CALLBACK MainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK OverlayProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK FollowMainWindow(int code, WPARAM wParam, LPARAM lParam);

// Places what keeps its distance from the right edge.
void LayoutControls();
// Places the overlay below the bar, or in fullscreen over everything, and gives its view the focus.
void SyncOverlay();
// Places the overlay and its view over the client area, below so many pixels.
void PlaceOverlay(int topOffset, UINT flags);

// Paints an owner-drawn control of the title bar.
void DrawControl(const DRAWITEMSTRUCT& item, HBRUSH background);

}  // namespace floor_program
