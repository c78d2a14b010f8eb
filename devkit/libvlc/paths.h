// Windows' names of files and folders, turned into those of the machine that libvlc 3 runs on.
#pragma once

#include <string>

namespace vantro::devlib {

// The machine's name of a Windows path (UTF-8 as libvlc takes it, or the ANSI code page where the text is no UTF-8).
// A path of which no folder exists comes back unchanged, with slashes. Windows threads only.
std::string UnixPath(const std::string& path);

// True for "file:///X:..." with a drive letter, whose path then goes to `path` with percent escapes resolved.
bool WindowsPathOfFileUrl(const std::string& location, std::string* path);

}  // namespace vantro::devlib
