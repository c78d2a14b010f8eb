// Lines in the log that tell, after a start went wrong, what was there and what was not. They decide nothing: no
// result, no effect that outlives the call. Main thread.
#pragma once

#include <windows.h>

namespace vantro {

// Where libvlc is looked for, and whether its two libraries are there. What can't be looked at counts as absent; only
// GetVlcPath may throw (player/vlc_runtime.h).
void LogVlcRuntime();
// After the player refused: whether the library can be loaded and has its first function.
void LogLibVlcLoad();
// What of the interface's bundle lies beside the executable. A failing file system query throws.
void LogFlutterBundle();
// After the main window's creation failed: its error, and whether any window can be made.
void LogWindowCreationFailure(HINSTANCE instance, DWORD error);

}  // namespace vantro
