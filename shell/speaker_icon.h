// The speaker icon beside the volume slider.
#pragma once

#include <windows.h>

namespace vantro {

// Handles WM_DRAWITEM of the speaker. Draws a picture file if one is in a known place, otherwise lines and shapes. The
// file is searched for on every paint, so a file that is added later appears at the next paint. Main thread, with GDI+
// started.
void DrawSpeakerIcon(const DRAWITEMSTRUCT& item, HBRUSH background);

}  // namespace vantro
