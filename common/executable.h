// Where the running executable lies. Any thread.
#pragma once

#include <string>

namespace vantro {

// The path in the ANSI code page, cut where it does not fit into MAX_PATH characters: the form that libvlc's search and
// the calls around it go by. Empty when the system does not tell.
std::string NarrowExecutablePath();

// The folder, whole, without a trailing backslash.
std::wstring ExecutableFolder();

}  // namespace vantro
