// Threads that Windows knows, as opposed to libvlc's native ones.
#pragma once

#include <functional>

namespace vantro::devlib {

// Runs `body` on a new Windows thread that is on the same desktop as the calling one and that nobody joins. To be
// called on a Windows thread. False if the thread could not be made; `body` is then dropped.
bool StartWindowsThread(std::function<void()> body);

}  // namespace vantro::devlib
