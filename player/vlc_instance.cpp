#include "player/vlc_instance.h"

#include <windows.h>

#include <iterator>
#include <string_view>

#include "common/log.h"
#include "player/vlc_runtime.h"

namespace vantro {

namespace {

constexpr const char* kInstanceArguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound",
                                              "--http-reconnect"};

libvlc_instance_t* NewInstance(const LibVlcFunctions& vlc) {
  return vlc.libvlc_new(static_cast<int>(std::size(kInstanceArguments)), kInstanceArguments);
}

// When libvlc_new fails, it has nearly always found no plugins. So this logs the contents of their folder.
void LogPluginsFolder() {
  const std::string folder = GetExeDirectory() + "plugins";
  WIN32_FIND_DATAA found;
  HANDLE search = FindFirstFileA(folder.c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) {
    LOG_WARNING("Plugins directory does not exist at: %s", folder.c_str());
    return;
  }
  FindClose(search);
  LOG_INFO("Plugins directory exists at: %s", folder.c_str());
  LOG_INFO("Listing files in plugins directory:");
  search = FindFirstFileA((folder + "\\*").c_str(), &found);
  if (search == INVALID_HANDLE_VALUE) return;
  do {
    const std::string name = found.cFileName;
    if (name != "." && name != "..") LOG_INFO("  %s", name.c_str());
  } while (FindNextFileA(search, &found));
  FindClose(search);
}

bool IsNetworkUrl(std::string_view url) {
  return url.starts_with("http://") || url.starts_with("https://") || url.starts_with("rtsp://");
}

// Calls a media creator in the form of the library in use. Returns null if the creator is null.
libvlc_media_t* CallMediaCreator(void* creator, const LibVlcFunctions& vlc, libvlc_instance_t* instance,
                                 const std::string& text) {
  if (!creator) return nullptr;
  if (vlc.legacyMediaCreation) {
    using WithInstance = libvlc_media_t* (*)(libvlc_instance_t*, const char*);
    return reinterpret_cast<WithInstance>(creator)(instance, text.c_str());
  }
  using WithoutInstance = libvlc_media_t* (*)(const char*);
  return reinterpret_cast<WithoutInstance>(creator)(text.c_str());
}

}  // namespace

bool VlcInstance::Create(const LibVlcFunctions& vlc) {
  LOG_INFO("Attempting to create VLC instance with global arguments");
  vlcInstance_.reset(NewInstance(vlc));
  if (!vlcInstance_) {
    // The same call again. If it succeeds now, start-up goes on as if the first had succeeded.
    LOG_WARNING("Failed with global args, trying with plugin-path added");
    vlcInstance_.reset(NewInstance(vlc));
  }
  if (!vlcInstance_) {
    LOG_WARNING("Failed with plugin path, trying bare minimum (no args)");
    vlcInstance_.reset(vlc.libvlc_new(0, nullptr));
  }
  if (vlcInstance_) return true;
  const char* const error = LibVlcErrorText(vlc);
  LOG_ERROR("Failed to create VLC instance");
  LOG_ERROR("VLC error: %s", error);
  LogPluginsFolder();
  return false;
}

libvlc_media_t* VlcInstance::CreateMedia(const std::string& url) const {
  if (url.empty()) {
    LOG_ERROR("[VLCPlayer::CreateMedia] ERROR: URL is empty.");
    return nullptr;
  }
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for CreateMedia");
    return nullptr;
  }
  libvlc_media_t* media = nullptr;
  if (IsNetworkUrl(url)) {
    LOG_INFO("Creating media with new_uri for URL: %s", url.c_str());
    media = CallMediaCreator(vlc.libvlc_media_new_uri, vlc, vlcInstance_.get(), url);
    if (!media) media = CallMediaCreator(vlc.libvlc_media_new_location, vlc, vlcInstance_.get(), url);
  } else {
    LOG_INFO("Creating media with new_path for path: %s", url.c_str());
    media = CallMediaCreator(vlc.libvlc_media_new_path, vlc, vlcInstance_.get(), url);
  }
  if (media) return media;
  LOG_WARNING("Failed to create media with specific function, falling back to new_location for: %s", url.c_str());
  return CallMediaCreator(vlc.libvlc_media_new_location, vlc, vlcInstance_.get(), url);
}

}  // namespace vantro
