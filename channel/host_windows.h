// What the channel asks of the process's windows. The shell provides these functions; nothing here includes it. Main
// thread.
#pragma once

#include <string>

#include "flutter_host/value_arena.h"

namespace vantro {

class MethodChannelHandler;
class VantroWindow;

// Enters fullscreen with the window, or leaves it.
void ToggleWindowFullscreen(VantroWindow& window);

// The handler of the first window, which stays the master also after the user has closed it. Null without a window, or
// when it has no handler. Borrowed; lives until the process ends.
MethodChannelHandler* MasterHandler();

// Invokes the method, with a copy of the value, on every window from position 1 on that has a handler. The copies share
// the value's memory, which never changes.
void BroadcastEncodableToClientWindows(const std::string& methodName, const OwnedValue& value);

}  // namespace vantro
