// Where a VLC runtime lies: libvlc.dll, libvlccore.dll and libvlc's plugins. Main thread.
//
// The loader of the operating system has bound libvlc.dll before any of this runs. What is found here names a folder
// for the log, and readies the plugins, and the libraries beside the executable, for the next start.
#pragma once

#include <string>
#include <vector>

namespace vantro {

// The directory of the executable, with its trailing backslash.
std::string GetExeDirectory();

// The directory that the log names as VLC's: the folder "vlc" or "lib\vlc" beside the executable, the executable's own
// directory where libvlc.dll lies in it, an installed VLC (64-bit, then 32-bit), else the executable's own directory.
// Throws std::filesystem::filesystem_error when it can't be told whether one of them exists.
std::string GetVlcPath();

// Readies an installed VLC for use: sets VLC_PLUGIN_PATH to its plugins, makes a folder "plugins" beside the
// executable, and copies each of the two libraries that is missing there. The variable is set in the process's own
// environment, which getenv does not see. False, with a logged warning and nothing changed, when no installed VLC with
// plugins is found.
bool SetupVlcEnvironment();

// The same over given folders. The first takes the executable's directory with its trailing backslash, and the folders
// of an installed VLC in the order of preference; the second takes the folder that programs are installed in, and the
// executable's directory without a trailing backslash.
std::string FindVlcPath(const std::string& exeDirectory, const std::vector<std::string>& installDirectories);
bool SetupVlcEnvironmentIn(const std::string& programFiles, const std::string& localDirectory);

}  // namespace vantro
