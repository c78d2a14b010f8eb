#include "shell/volume_control.h"

#include <algorithm>
#include <cstdio>

#include "common/log.h"
#include "common/win32_geometry.h"
#include "shell/gdiplus_drawing.h"
#include "shell/input_state.h"
#include "shell/volume_geometry.h"

namespace vantro {

namespace {

constexpr Gdiplus::ARGB kOutlineColor = 0xFFFFFFFF;
constexpr Gdiplus::ARGB kFillColor = 0xFF00C800;
constexpr COLORREF kPercentColor = 0xFFFFFF;

template <size_t N>
std::array<Gdiplus::GpPoint, N> DrawingPoints(const std::array<Point, N>& points) {
  std::array<Gdiplus::GpPoint, N> drawn;
  std::ranges::transform(points, drawn.begin(), [](const Point& point) { return Gdiplus::GpPoint(point.x, point.y); });
  return drawn;
}

void DrawWedge(HDC dc, const Rect& control, int volume) {
  namespace gdip = Gdiplus::DllExports;
  ScopedGraphics graphics;
  gdip::GdipCreateFromHDC(dc, graphics.Receive());
  gdip::GdipSetSmoothingMode(graphics.Get(), Gdiplus::SmoothingModeAntiAlias);
  ScopedGdiplusPen pen;
  gdip::GdipCreatePen1(kOutlineColor, 1.0f, Gdiplus::UnitWorld, pen.Receive());
  const auto outline = DrawingPoints(VolumeOutline(control));
  gdip::GdipDrawLinesI(graphics.Get(), pen.Get(), outline.data(), static_cast<INT>(outline.size()));

  if (VolumeFillWidth(control.Width(), volume) <= 0) return;
  ScopedGdiplusFill brush;
  gdip::GdipCreateSolidFill(kFillColor, brush.Receive());
  const auto fill = DrawingPoints(VolumeFill(control, volume));
  gdip::GdipFillPolygonI(graphics.Get(), brush.Get(), fill.data(), static_cast<INT>(fill.size()),
                         Gdiplus::FillModeAlternate);
}

void DrawPercent(HDC dc, RECT area, int volume) {
  SetTextColor(dc, kPercentColor);
  SetBkMode(dc, TRANSPARENT);
  wchar_t text[5];  // room for 100% and the terminator
  std::swprintf(text, std::size(text), L"%d%%", volume);
  DrawTextW(dc, text, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
}

}  // namespace

VolumeControl::VolumeControl(const HWND& mainWindow, const TitleBar& titleBar, const std::unique_ptr<VLCPlayer>& player)
    : hwnd_(mainWindow), titleBar_(titleBar), vlcPlayer_(player) {}

void VolumeControl::Redraw() {
  // A null handle would invalidate every window of the desktop.
  if (Window()) InvalidateRect(Window(), nullptr, TRUE);
}

bool VolumeControl::Covers(POINT point) const {
  if (!Window()) return false;
  RECT rect{};
  GetWindowRect(Window(), &rect);
  MapWindowPoints(HWND_DESKTOP, hwnd_, reinterpret_cast<POINT*>(&rect), 2);
  return rect.left <= point.x && point.x <= rect.right && rect.top <= point.y && point.y <= rect.bottom;
}

void VolumeControl::BeginDragAtPointer() {
  const auto [x, y] = FromWin32(PointerIn(Window()));
  LOG_DEBUG("WM_LBUTTONDOWN: Volume control clicked at relative position (%d, %d)", x, y);
  BeginVolumeDrag(x, y);
}

void VolumeControl::DragToPointer() {
  const auto [x, y] = FromWin32(PointerIn(Window()));
  HandleVolumeClick(x, y);
}

void VolumeControl::OnClickNotification() {
  POINT cursor{};
  GetCursorPos(&cursor);
  if (!Window()) return;
  RECT place{};
  GetWindowRect(Window(), &place);
  const int x = static_cast<int>(cursor.x - place.left);
  const int y = static_cast<int>(cursor.y - place.top);
  LOG_DEBUG("Volume control WM_COMMAND: click at relative (%d, %d)", x, y);
  BeginVolumeDrag(x, y);
}

void VolumeControl::EndVolumeDrag() {
  isVolumeDragging_ = false;
  showVolumePercent_ = false;
  ReleaseCapture();
  Redraw();
  LOG_DEBUG("WM_LBUTTONUP: Volume control mouse up - hiding percentage");
}

void VolumeControl::BeginVolumeDrag(int x, int y) {
  isVolumeDragging_ = true;
  showVolumePercent_ = true;
  HandleVolumeClick(x, y);
  SetCapture(hwnd_);
}

void VolumeControl::HandleVolumeClick(int x, int y) {
  LOG_DEBUG("HandleVolumeClick: x=%d, y=%d", x, y);
  volume_ = VolumeFromX(x);
  SetVlcVolume(volume_);
  Redraw();
  LOG_INFO("Volume changed to: %d%%", volume_);
}

void VolumeControl::SetVlcVolume(int volume) {
  if (!vlcPlayer_) {
    LOG_WARNING("VLC player not available for volume control");
    return;
  }
  vlcPlayer_->SetVolume(volume);
  LOG_INFO("VLC volume set to: %d", volume);
}

void VolumeControl::DrawVolumeControl(const DRAWITEMSTRUCT& item) const {
  FillRect(item.hDC, &item.rcItem, titleBar_.Brush());
  DrawWedge(item.hDC, FromWin32(item.rcItem), volume_);
  if (showVolumePercent_) DrawPercent(item.hDC, item.rcItem, volume_);
}

}  // namespace vantro
