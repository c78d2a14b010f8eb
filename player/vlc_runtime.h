// The search for a VLC runtime: libvlc.dll, libvlccore.dll and libvlc's plugins. Main thread.
//
// The operating system's loader has bound libvlc.dll before any of this runs. So the folder found here is only logged,
// and the setup prepares the plugins and the libraries beside the executable for the next start.
#pragma once

#include <string>
#include <vector>

namespace vantro {

// Returns the directory of the executable, with a trailing backslash.
std::string GetExeDirectory();

// Returns the directory that is logged as VLC's. The first of these that exists: the folder "vlc" or "lib\vlc" beside
// the executable, the executable's own directory if it contains libvlc.dll, an installed VLC (64-bit, then 32-bit). If
// none exists, the executable's own directory. Throws std::filesystem::filesystem_error if the system cannot
// say whether one of them exists.
std::string GetVlcPath();

// Prepares an installed VLC for use. Sets VLC_PLUGIN_PATH to its plugins, makes a folder "plugins" beside the
// executable, and copies each of the two libraries if it is missing there. The variable is set in the environment of
// the process, which getenv does not read. If no installed VLC with plugins is found, returns false, logs a warning and
// changes nothing.
bool SetupVlcEnvironment();

// The same with given folders. FindVlcPath takes the executable's directory with its trailing backslash, and the
// folders of an installed VLC in order of preference. SetupVlcEnvironmentIn takes the folder that programs are
// installed in, and the executable's directory without a trailing backslash.
std::string FindVlcPath(const std::string& exeDirectory, const std::vector<std::string>& installDirectories);
bool SetupVlcEnvironmentIn(const std::string& programFiles, const std::string& localDirectory);

}  // namespace vantro
