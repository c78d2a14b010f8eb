// Draws the title bar's owner-drawn buttons.
#pragma once

#include <windows.h>

namespace vantro {

constexpr COLORREF kGlyphColor = 0xFFFFFF;
constexpr COLORREF kButtonPressedColor = 0x503737;
constexpr COLORREF kButtonHotColor = 0x5A4141;
constexpr COLORREF kCloseButtonHotColor = 0x3232C8;

// Draws the whole item: background by its state, then the glyph or the text of its id; an unknown id gets the background
// alone. The maximize button shows two squares in fullscreen and one otherwise. The device context's pen is restored;
// its text colour and background mode are left as the text needed them. Main thread.
void PaintTitleBarButton(const DRAWITEMSTRUCT& item, bool isFullscreen, HBRUSH titleBarBrush);

}  // namespace vantro
