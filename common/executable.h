// The path of the running executable. Any thread.
#pragma once

#include <string>

namespace vantro {

// Returns the executable's full path in the ANSI code page, truncated if it does not fit into MAX_PATH characters. The
// search for libvlc and the calls around it use this form. Returns an empty string if the system call fails.
std::string NarrowExecutablePath();

// Returns the executable's folder, never truncated, without a trailing backslash.
std::wstring ExecutableFolder();

}  // namespace vantro
