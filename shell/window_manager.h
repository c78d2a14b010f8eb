// The windows of the process, in the order of their registration, and what the channel asks of them. Main thread.
#pragma once

#include <memory>
#include <vector>

#include "channel/host_windows.h"

namespace vantro {

class VantroWindow;

// Position 0 is the first window and the master. A closed window stays in the list until the process ends.
std::vector<std::unique_ptr<VantroWindow>>& GetWindowRegistry();

// True once ShutdownWindowManager has begun; never false again.
bool IsShuttingDown();

// Makes, places, shows and registers one more window beside the reference. A failure is logged and changes nothing
// else; no exception leaves.
void CreateNewWindow(VantroWindow& referenceWindow);

// The same for a second launch that has posted WM_VANTRO_NEW_WINDOW to the window.
void ServeNewWindowRequest(VantroWindow& referenceWindow);

// Takes the window. While shutting down it is destroyed instead.
void RegisterWindow(std::unique_ptr<VantroWindow> ownedWindow);
// Called by the destructor of VantroWindow only.
void UnregisterWindow(VantroWindow* window);

// Entries whose window is not closing.
size_t CountActiveWindows();

// Marks the window as closing, and posts the quit message when no window is left that is not.
void BeginClosing(VantroWindow& window);

// After the message loop: raises the flag, destroys every window in order, empties the list.
void ShutdownWindowManager();

}  // namespace vantro
