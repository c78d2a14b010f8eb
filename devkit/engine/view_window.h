// The window of a view: a child of its own class, first parented to the message-only window, into which nothing is
// drawn but a small badge when the glass stand-in is on.
//
// Where no compositor makes the overlay's glass (VANTRO_LOOPBACK_GLASS=1), the window that carries the view is cut to
// the badge's shape, so that the video under it can be seen. Its rectangle stays what it was.
#pragma once

#include <cstdint>

struct FlutterDesktopView;

namespace vantro::loopback {

// Thread of the engine. On failure the view stays without a window.
void CreateViewWindow(int32_t engine, int width, int height, FlutterDesktopView* view);
// Does nothing when the window went with its parent.
void DestroyViewWindow(FlutterDesktopView* view);

}  // namespace vantro::loopback
