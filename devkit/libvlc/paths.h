// Converts Windows' names of files and folders to those of the machine on which libvlc 3 runs.
#pragma once

#include <string>

namespace vantro::devlib {

// Returns the machine's name of a Windows path. The path is UTF-8 as in libvlc, or in the ANSI code page when it is not
// valid UTF-8. A path without an existing folder is returned unchanged except for slashes. Windows threads only.
std::string UnixPath(const std::string& path);

// Returns true for "file:///X:..." with a drive letter; `path` then gets its path with percent escapes decoded.
bool WindowsPathOfFileUrl(const std::string& location, std::string* path);

}  // namespace vantro::devlib
