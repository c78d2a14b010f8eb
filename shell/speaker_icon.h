// The speaker beside the volume slider.
#pragma once

#include <windows.h>

namespace vantro {

// Serves WM_DRAWITEM of the speaker: a picture file if one lies in a known place, a drawing by hand otherwise. The file
// is looked up anew on every paint, so that one put there shows at the next. Main thread, with GDI+ started.
void DrawSpeakerIcon(const DRAWITEMSTRUCT& item, HBRUSH background);

}  // namespace vantro
