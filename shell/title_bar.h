// The self-drawn title bar. It removes the system's bar, creates the controls, keeps them in place and paints the strip
// behind them.
//
// A main window creates one before its native window. Main thread. A control that could not be created stays null, and
// the operations skip it.
#pragma once

#include <windows.h>

namespace vantro {

// Red 70, green 70, blue 95.
constexpr COLORREF kTitleBarColor = 0x5F4646;

// The controls' handles. The controls are children of the main window and are destroyed with it.
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
  // The reference is to the owner's handle. It is read at each use and is null until the native window exists.
  explicit TitleBar(const HWND& mainWindow);
  ~TitleBar();
  TitleBar(const TitleBar&) = delete;
  TitleBar& operator=(const TitleBar&) = delete;

  // Removes caption and system buttons from the main window and keeps its sizing frame.
  void RemoveStandardTitleBar();
  // Creates the controls and lays them out. Moves the focus into the search box, and back if a window had it before.
  void CreateCustomTitleBar(HINSTANCE instance);
  // Places the controls that have a fixed distance from the client area's right edge.
  void LayoutTitleBarControls();

  const TitleBarControls& Controls() const { return controls_; }
  // Owned by the title bar and valid until EndDrawing.
  HBRUSH Brush() const { return titleBarBrush_; }

  // Calls ShowWindow with this command for every control, in a fixed order.
  void ShowControls(int command);
  // Redraws the maximize button, whose glyph is different in fullscreen.
  void RedrawMaximizeButton();

  // Handles WM_PAINT: paints the strip unless it is hidden in fullscreen. Video and overlay cover the rest.
  void Paint(bool isFullscreen, bool isVisible);
  // Handles WM_NCPAINT: paints the frame's top edge in the bar's colour.
  void PaintFrameEdge();
  // Paints the strip without waiting for WM_PAINT. Returns false without a device context.
  bool PaintNow();
  // Invalidates the strip and repaints it before returning. If the client area cannot be read, the strip is width
  // pixels wide.
  void Repaint(bool erase, int width);
  // Handles WM_DRAWITEM of the buttons and of the speaker icon.
  void DrawItem(const DRAWITEMSTRUCT& item, bool isFullscreen) const;
  // Handles WM_CTLCOLOREDIT and the like: white text on the bar's colour. Returns the bar's brush.
  HBRUSH ColorControl(HDC dc) const;

  // Deletes the brush. Called before GDI+ shuts down. Nothing may be drawn afterwards.
  void EndDrawing();

 private:
  const HWND& hwnd_;
  TitleBarControls controls_;
  HBRUSH titleBarBrush_;

  friend struct RoomPeer;
};

}  // namespace vantro
