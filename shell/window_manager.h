// The windows of the process, in the order of their registration, and the functions of channel/host_windows.h. Main
// thread.
#pragma once

#include <memory>
#include <vector>

#include "channel/host_windows.h"

namespace vantro {

class VantroWindow;

// Returns the list. Position 0 is the first window and the master. A closed window stays in the list until the process
// ends.
std::vector<std::unique_ptr<VantroWindow>>& GetWindowRegistry();

// True from the start of ShutdownWindowManager on.
bool IsShuttingDown();

// Creates, places, shows and registers one more window next to the reference. A failure is logged and has no other
// effect. Throws nothing.
void CreateNewWindow(VantroWindow& referenceWindow);

// The same, for WM_VANTRO_NEW_WINDOW that a second launch has posted to the window.
void ServeNewWindowRequest(VantroWindow& referenceWindow);

// Takes ownership of the window and adds it to the list. During shutdown the window is destroyed instead.
void RegisterWindow(std::unique_ptr<VantroWindow> ownedWindow);
// Removes the window from the list without deleting it. Only the destructor of VantroWindow calls this.
void UnregisterWindow(VantroWindow* window);

// Returns the number of registered windows that are not closing.
size_t CountActiveWindows();

// Marks the window as closing. Posts the quit message if every registered window is closing.
void BeginClosing(VantroWindow& window);

// Called after the message loop. Sets the shutdown flag, destroys all windows in order and empties the list.
void ShutdownWindowManager();

}  // namespace vantro
