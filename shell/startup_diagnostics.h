// Log lines that help to explain a failed start: which files and functions were present. They return nothing and have
// no lasting effect. Main thread.
#pragma once

#include <windows.h>

namespace vantro {

// Logs where libvlc is searched for and whether its two libraries are there. A path that cannot be queried counts as
// absent; only GetVlcPath may throw (player/vlc_runtime.h).
void LogVlcRuntime();
// Called after the player's initialization failed. Logs whether the library can be loaded and has its first function.
void LogLibVlcLoad();
// Logs which files of the interface's bundle are beside the executable. Throws if a file system query fails.
void LogFlutterBundle();
// Called after the creation of the main window failed. Logs the error, and whether any window can be created.
void LogWindowCreationFailure(HINSTANCE instance, DWORD error);

}  // namespace vantro
