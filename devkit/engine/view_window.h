// The window of a view: a child window of its own class, first parented to the message-only window. Nothing is drawn in
// it, except a small badge when the replacement for the glass is on.
//
// Where no compositor makes the overlay's glass (VANTRO_LOOPBACK_GLASS=1), the window that carries the view is cut to
// the badge's shape, so that the video under it is visible. Its rectangle does not change.
#pragma once

#include <cstdint>

struct FlutterDesktopView;

namespace vantro::loopback {

// Call on the engine's thread. On failure the view has no window.
void CreateViewWindow(int32_t engine, int width, int height, FlutterDesktopView* view);
// Does nothing when the window was already destroyed with its parent.
void DestroyViewWindow(FlutterDesktopView* view);

}  // namespace vantro::loopback
