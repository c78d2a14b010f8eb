// The self-drawn title bar: takes the system's bar away, makes the controls, keeps them in place, paints the strip that
// they stand on.
//
// A window makes one before its native window. Main thread. A control that could not be made stays null, and whatever
// is done to it is left out.
#pragma once

#include <windows.h>

namespace vantro {

// Red 70, green 70, blue 95.
constexpr COLORREF kTitleBarColor = 0x5F4646;

// The controls' handles. They go with the main window, whose children they are.
struct TitleBarControls {
  HWND searchBox_ = nullptr;
  HWND fileButton_ = nullptr;
  HWND helpButton_ = nullptr;
  HWND closeButton_ = nullptr;
  HWND maximizeButton_ = nullptr;
  HWND minimizeButton_ = nullptr;
  HWND volumeControl_ = nullptr;
  HWND speakerIcon_ = nullptr;
  HWND appIconStatic_ = nullptr;
  HWND titleStatic_ = nullptr;
};

class TitleBar {
 public:
  // The handle is the owner's own: null until its native window is there, and read anew at each use.
  explicit TitleBar(const HWND& mainWindow);
  ~TitleBar();
  TitleBar(const TitleBar&) = delete;
  TitleBar& operator=(const TitleBar&) = delete;

  // Takes caption and system buttons from the main window and leaves its sizing frame.
  void RemoveStandardTitleBar();
  // Makes the controls and lays them out. Moves the focus into the search box and back, if somebody had it.
  void CreateCustomTitleBar(HINSTANCE instance);
  // Places the controls that keep their distance from the client area's right edge.
  void LayoutTitleBarControls();

  const TitleBarControls& Controls() const { return controls_; }
  // Borrowed; lives until EndDrawing.
  HBRUSH Brush() const { return titleBarBrush_; }

  // ShowWindow with this command on every control, in a fixed order.
  void ShowControls(int command);
  // The maximize button's glyph tells fullscreen from the normal window.
  void RedrawMaximizeButton();

  // Serves WM_PAINT: paints the strip unless it is hidden in fullscreen. Video and overlay cover the rest.
  void Paint(bool isFullscreen, bool isVisible);
  // Serves WM_NCPAINT: the frame's top edge in the bar's colour.
  void PaintFrameEdge();
  // Paints the strip without waiting for WM_PAINT. False without a device context.
  bool PaintNow();
  // Makes the strip invalid and has it painted before it returns. Without a client area the strip is width pixels wide.
  void Repaint(bool erase, int width);
  // Serves WM_DRAWITEM of the buttons and of the speaker icon.
  void DrawItem(const DRAWITEMSTRUCT& item, bool isFullscreen) const;
  // Serves WM_CTLCOLOREDIT and its like: white on the bar's colour.
  HBRUSH ColorControl(HDC dc) const;

  // Gives the brush back, before the library that the window draws with goes. Nothing may be drawn afterwards.
  void EndDrawing();

 private:
  const HWND& hwnd_;
  TitleBarControls controls_;
  HBRUSH titleBarBrush_;

  friend struct RoomPeer;
};

}  // namespace vantro
