// The names of Win32's flags, so that a recorded call reads "SWP_NOACTIVATE|SWP_SHOWWINDOW" and not "80". Bits without
// a name here are appended as a hexadecimal number. A value without bits reads "0".
#pragma once

#include <windows.h>

#include <string>

namespace vantro::test {

std::string PlacementFlags(UINT flags);   // of SetWindowPos
std::string InsertAfter(HWND after);      // of SetWindowPos: "HWND_TOP", "HWND_TOPMOST"..., otherwise the handle
std::string ShowCommand(int command);     // of ShowWindow
std::string RedrawFlags(UINT flags);      // of RedrawWindow
std::string StyleNames(DWORD style);      // GWL_STYLE
std::string ExStyleNames(DWORD exStyle);  // GWL_EXSTYLE
std::string MessageName(UINT message);    // "WM_CLOSE"...
std::string WindowLongName(int index);    // of SetWindowLong: "GWL_STYLE"...

}  // namespace vantro::test
