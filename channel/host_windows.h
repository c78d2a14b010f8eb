// The functions that the channel calls on the process's windows. The shell implements them; the channel includes
// nothing of the shell. Main thread.
#pragma once

#include <string>

#include "flutter_host/value_arena.h"

namespace vantro {

class MethodChannelHandler;
class VantroWindow;

// Toggles the fullscreen mode of the window.
void ToggleWindowFullscreen(VantroWindow& window);

// Returns the handler of the first window, which stays the master even after the user has closed it. Null if there is
// no window or it has no handler. Borrowed; valid until the process ends.
MethodChannelHandler* MasterHandler();

// Invokes the method, with a copy of the value, on every window from position 1 on that has a handler. The copies share
// the memory of the value, which is immutable.
void BroadcastEncodableToClientWindows(const std::string& methodName, const OwnedValue& value);

}  // namespace vantro
