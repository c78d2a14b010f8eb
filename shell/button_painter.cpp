#include "shell/button_painter.h"

#include <optional>
#include <span>

#include "shell/scoped_handles.h"
#include "shell/shell_ids.h"

namespace vantro {

namespace {

// One move of the pen, relative to the item's centre. begin moves without drawing; every other stroke draws a line to
// its point. LineTo does not draw the end point itself, so the close and minimize glyphs end their lines one pixel
// further out.
struct GlyphStroke {
  bool begin;
  int dx;
  int dy;
};

constexpr GlyphStroke kCloseGlyph[] = {{true, -5, -5}, {false, 6, 6}, {true, 5, -5}, {false, -6, 6}};

constexpr GlyphStroke kMaximizeGlyph[] = {
    {true, -5, -5}, {false, 5, -5}, {false, 5, 5}, {false, -5, 5}, {false, -5, -5}};

constexpr GlyphStroke kLeaveFullscreenGlyph[] = {
    {true, -3, -5}, {false, 5, -5}, {false, 5, 3}, {false, 3, 3},  {false, 3, -3},
    {true, -5, -3}, {false, 3, -3}, {false, 3, 5}, {false, -5, 5}, {false, -5, -3},
};

constexpr GlyphStroke kMinimizeGlyph[] = {{true, -5, 0}, {false, 6, 0}};

std::span<const GlyphStroke> GlyphOf(UINT id, bool isFullscreen) {
  switch (id) {
    case kCloseButtonId:
      return kCloseGlyph;
    case kMaximizeButtonId:
      return isFullscreen ? std::span<const GlyphStroke>(kLeaveFullscreenGlyph) : kMaximizeGlyph;
    case kMinimizeButtonId:
      return kMinimizeGlyph;
    default:
      return {};
  }
}

const wchar_t* TextOf(UINT id) {
  switch (id) {
    case kFileButtonId:
      return L"File";
    case kHelpButtonId:
      return L"Help";
    default:
      return nullptr;
  }
}

// The colour of the item's state, painted over the title bar's colour. Pressed takes precedence over hot, also for the
// close button.
std::optional<COLORREF> StateColor(const DRAWITEMSTRUCT& item) {
  if (item.itemState & ODS_SELECTED) return kButtonPressedColor;
  if (item.itemState & ODS_HOTLIGHT) return item.CtlID == kCloseButtonId ? kCloseButtonHotColor : kButtonHotColor;
  return std::nullopt;
}

void DrawGlyph(const DRAWITEMSTRUCT& item, bool isFullscreen) {
  const int centreX = (item.rcItem.left + item.rcItem.right) / 2;
  const int centreY = (item.rcItem.top + item.rcItem.bottom) / 2;
  const ScopedPen pen(CreatePen(PS_SOLID, 1, kGlyphColor));
  const ScopedSelection selection(item.hDC, pen.Get());
  for (const GlyphStroke& stroke : GlyphOf(item.CtlID, isFullscreen)) {
    if (stroke.begin) {
      MoveToEx(item.hDC, centreX + stroke.dx, centreY + stroke.dy, nullptr);
    } else {
      LineTo(item.hDC, centreX + stroke.dx, centreY + stroke.dy);
    }
  }
}

}  // namespace

void PaintTitleBarButton(const DRAWITEMSTRUCT& item, bool isFullscreen, HBRUSH titleBarBrush) {
  FillRect(item.hDC, &item.rcItem, titleBarBrush);
  if (const std::optional<COLORREF> color = StateColor(item)) {
    const ScopedBrush brush(CreateSolidBrush(*color));
    FillRect(item.hDC, &item.rcItem, brush.Get());
  }
  DrawGlyph(item, isFullscreen);
  if (const wchar_t* text = TextOf(item.CtlID)) {
    RECT area = item.rcItem;
    SetTextColor(item.hDC, kGlyphColor);
    SetBkMode(item.hDC, TRANSPARENT);
    DrawTextW(item.hDC, text, -1, &area, DT_CENTER | DT_VCENTER | DT_SINGLELINE);
  }
}

}  // namespace vantro
