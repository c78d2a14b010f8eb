// Threads made by Windows, in contrast to libvlc's native threads.
#pragma once

#include <functional>

namespace vantro::devlib {

// Runs `body` on a new Windows thread on the desktop of the calling thread. Nothing joins the thread. Call on a Windows
// thread. Returns false if the thread could not be made; `body` is then dropped.
bool StartWindowsThread(std::function<void()> body);

}  // namespace vantro::devlib
