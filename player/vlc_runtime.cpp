#include "player/vlc_runtime.h"

#include <shlobj.h>
#include <shlwapi.h>
#include <windows.h>

#include <filesystem>
#include <system_error>

#include "common/executable.h"
#include "common/log.h"

namespace vantro {

namespace {

bool MeansAbsent(DWORD error) {
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND || error == ERROR_INVALID_NAME ||
         error == ERROR_BAD_NETPATH || error == ERROR_DIRECTORY;
}

// Tests whether a path exists, and throws if the system cannot say. Calls Windows directly, because
// std::filesystem::exists with this C library takes every failure for absence.
bool Exists(const std::string& path) {
  if (GetFileAttributesA(path.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  const DWORD error = GetLastError();
  if (MeansAbsent(error)) return false;
  throw std::filesystem::filesystem_error("exists", std::error_code(static_cast<int>(error), std::system_category()));
}

bool FileExists(const std::string& path) { return PathFileExistsA(path.c_str()) != FALSE; }

}  // namespace

std::string GetExeDirectory() {
  const std::string path = NarrowExecutablePath();
  return path.substr(0, path.find_last_of('\\') + 1);
}

std::string FindVlcPath(const std::string& exeDirectory, const std::vector<std::string>& installDirectories) {
  for (const char* folder : {"vlc", "lib\\vlc"})
    if (Exists(exeDirectory + folder)) return exeDirectory + folder;
  if (Exists(exeDirectory + "libvlc.dll")) return exeDirectory;
  for (const std::string& folder : installDirectories)
    if (Exists(folder)) return folder;
  return exeDirectory;
}

std::string GetVlcPath() {
  return FindVlcPath(GetExeDirectory(), {"C:\\Program Files\\VideoLAN\\VLC", "C:\\Program Files (x86)\\VideoLAN\\VLC"});
}

bool SetupVlcEnvironmentIn(const std::string& programFiles, const std::string& localDirectory) {
  const std::string installDirectory = programFiles + "\\VideoLAN\\VLC";
  const std::string pluginDirectory = installDirectory + "\\plugins";
  if (!FileExists(installDirectory)) return false;
  LOG_DEBUG("Found VLC installation at: %s", installDirectory.c_str());
  if (!FileExists(pluginDirectory)) return false;
  LOG_DEBUG("Setting VLC_PLUGIN_PATH to: %s", pluginDirectory.c_str());
  SetEnvironmentVariableA("VLC_PLUGIN_PATH", pluginDirectory.c_str());

  const std::string localPlugins = localDirectory + "\\plugins";
  if (!FileExists(localPlugins)) {
    LOG_DEBUG("Creating local plugins directory: %s", localPlugins.c_str());
    CreateDirectoryA(localPlugins.c_str(), nullptr);
  }

  const std::string installedVlc = installDirectory + "\\libvlc.dll";
  const std::string localVlc = localDirectory + "\\libvlc.dll";
  if (!FileExists(localVlc) && FileExists(installedVlc)) {
    LOG_DEBUG("Copying libvlc.dll from: %s to: %s", installedVlc.c_str(), localVlc.c_str());
    CopyFileA(installedVlc.c_str(), localVlc.c_str(), FALSE);
  }
  const std::string installedCore = installDirectory + "\\libvlccore.dll";
  const std::string localCore = localDirectory + "\\libvlccore.dll";
  if (!FileExists(localCore) && FileExists(installedCore)) {
    LOG_DEBUG("Copying libvlccore.dll from: %s to: %s", installedCore.c_str(), localCore.c_str());
    CopyFileA(installedCore.c_str(), localCore.c_str(), FALSE);
  }
  return true;
}

bool SetupVlcEnvironment() {
  char programFiles[MAX_PATH];
  const std::string path = NarrowExecutablePath();
  const std::string localDirectory = path.substr(0, path.find_last_of('\\'));
  if (SUCCEEDED(SHGetFolderPathA(nullptr, CSIDL_PROGRAM_FILES, nullptr, SHGFP_TYPE_CURRENT, programFiles)) &&
      SetupVlcEnvironmentIn(programFiles, localDirectory)) {
    return true;
  }
  LOG_WARNING("Could not find VLC installation or set up environment");
  return false;
}

}  // namespace vantro
