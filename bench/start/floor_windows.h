// The windows of the floor program: their procedures, and the calls that the host makes whenever they are moved or
// painted.
#pragma once

#include <windows.h>

#include "flutter_host/embedding_api.h"

namespace floor_program {

constexpr int kTitleBarHeight = 30;

struct TitleBarControls {
  HWND icon, title, file, help, search, close, maximize, minimize, speaker, volume;
};

// All the handles that a window of the host keeps. There is one in the process.
struct Window {
  HWND main = nullptr;
  TitleBarControls controls{};
  HWND video = nullptr;
  HWND overlay = nullptr;
  FlutterDesktopViewControllerRef view = nullptr;
  HWND viewWindow = nullptr;
  bool listens = false;  // the channel is set up: from here on a change of size places the video
  bool isSyncing = false;
  bool isFullscreen = false;
  bool showsBar = true;
  bool draws = true;  // false: nothing is painted
  HHOOK hook = nullptr;
  HBRUSH titleBarBrush = nullptr;
  HBRUSH backgroundBrush = nullptr;
};

Window& TheWindow();

LRESULT CALLBACK MainProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK OverlayProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
LRESULT CALLBACK FollowMainWindow(int code, WPARAM wParam, LPARAM lParam);

// Places the controls that keep their distance from the right edge.
void LayoutControls();
// Places the overlay below the bar, or in fullscreen over the whole window, and gives its view the focus.
void SyncOverlay();
// Places the overlay and its view over the client area, so many pixels below its top.
void PlaceOverlay(int topOffset, UINT flags);

// Paints an owner-drawn control of the title bar.
void DrawControl(const DRAWITEMSTRUCT& item, HBRUSH background);

}  // namespace floor_program
