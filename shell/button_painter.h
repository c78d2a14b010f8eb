// Draws the title bar's owner-drawn buttons.
#pragma once

#include <windows.h>

namespace vantro {

constexpr COLORREF kGlyphColor = 0xFFFFFF;
constexpr COLORREF kButtonPressedColor = 0x503737;
constexpr COLORREF kButtonHotColor = 0x5A4141;
constexpr COLORREF kCloseButtonHotColor = 0x3232C8;

// Draws the whole item: the background for its state, then the glyph or text of its id. An unknown id has only the
// background. The maximize button shows two squares in fullscreen and one square otherwise. Restores the device
// context's pen, but not its text colour and background mode, which drawing text changes. Main thread.
void PaintTitleBarButton(const DRAWITEMSTRUCT& item, bool isFullscreen, HBRUSH titleBarBrush);

}  // namespace vantro
