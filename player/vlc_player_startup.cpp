// Start-up and end of the player.
#include <windows.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>
#include <utility>

#include "common/log.h"
#include "player/player_events.h"
#include "player/vlc_player.h"
#include "player/vlc_runtime.h"

namespace vantro {

namespace {

constexpr int kInitialVolume = 100;
constexpr DWORD kVideoWindowStyle = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_CLIPCHILDREN;
constexpr const char* kInstanceArguments[] = {"--intf=dummy", "--no-video-title-show", "--aout=directsound",
                                              "--http-reconnect"};

libvlc_instance_t* NewInstance(const LibVlcFunctions& vlc) {
  return vlc.libvlc_new(static_cast<int>(std::size(kInstanceArguments)), kInstanceArguments);
}

void LogStartEnvironment() {
  if (const char* pluginPath = std::getenv("VLC_PLUGIN_PATH")) {
    LOG_INFO("VLC_PLUGIN_PATH: %s", pluginPath);
  } else {
    LOG_INFO("VLC_PLUGIN_PATH not set");
  }
  char currentDirectory[MAX_PATH] = "";
  GetCurrentDirectoryA(MAX_PATH, currentDirectory);
  LOG_INFO("Current working directory: %s", currentDirectory);
}

void LogDataPath() {
  if (const char* dataPath = std::getenv("LIBVLC_DATA_PATH")) {
    LOG_INFO("LIBVLC_DATA_PATH: %s", dataPath);
  } else {
    LOG_INFO("LIBVLC_DATA_PATH not set");
  }
}

const char* VersionText(const LibVlcFunctions& vlc) {
  return vlc.libvlc_get_version ? vlc.libvlc_get_version() : nullptr;
}

bool HasRequiredSymbols(const LibVlcFunctions& vlc) {
  if (vlc.libvlc_new && vlc.libvlc_media_player_new && vlc.libvlc_media_player_set_hwnd &&
      vlc.libvlc_media_player_event_manager && vlc.libvlc_event_attach) {
    return true;
  }
  LOG_ERROR("Missing required libvlc symbols (new=%d, player_new=%d, set_hwnd=%d, event_manager=%d, event_attach=%d)",
            vlc.libvlc_new != nullptr, vlc.libvlc_media_player_new != nullptr,
            vlc.libvlc_media_player_set_hwnd != nullptr, vlc.libvlc_media_player_event_manager != nullptr,
            vlc.libvlc_event_attach != nullptr);
  return false;
}

// An instance that can't be made is nearly always one that finds no plugins: says what lies in their folder.
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

}  // namespace

VLCPlayer::~VLCPlayer() {
  Cleanup();
  // Tiles that are left are still attached. Releasing them ends their events; those that are being handled end here.
  ReleaseTiles();
  eventReaders_.WaitForReaders();
}

bool VLCPlayer::Initialize(HWND parentWindow) {
  parentWindow_ = parentWindow;
  vlcWindow_ = nullptr;
  LOG_INFO("VLCPlayer::Initialize started with parent window: %p", static_cast<void*>(parentWindow));
  LogStartEnvironment();
  if (!std::getenv("VLC_PLUGIN_PATH")) SetupVlcEnvironment();
  CreateVideoWindow();

  if (!GetLibVlcModule()) {
    LOG_ERROR("Failed to load libvlc.dll, error: %lu", GetLastError());
    return false;
  }
  if (!GetLibVlcCoreModule()) {
    LOG_ERROR("Failed to load libvlccore.dll, error: %lu", GetLastError());
    return false;
  }
  LOG_INFO("Successfully loaded libvlc.dll and libvlccore.dll");
  LogDataPath();

  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions.");
    return false;
  }
  LOG_INFO("Successfully got all required VLC function pointers");
  const char* const version = VersionText(vlc);
  LOG_INFO("VLC version (from function): %s", version ? version : "unknown");
  if (!HasRequiredSymbols(vlc) || !CreateInstance(vlc)) return false;
  LOG_INFO("VLC instance created successfully");
  if (version) LOG_INFO("VLC version: %s", version);

  if (!CreateMediaPlayer(vlc)) return false;
  AttachEvents(vlc);
  SetVolume(kInitialVolume);
  LOG_INFO("VLC initial volume set to 100%%");
  LOG_INFO("VLCPlayer::Initialize completed successfully");
  return true;
}

void VLCPlayer::CreateVideoWindow() {
  if (!RegisterVlcHostWindowClass()) return;
  RECT client{};
  GetClientRect(parentWindow_, &client);
  const int width = std::max(1, static_cast<int>(client.right - client.left));
  const int height = std::max(1, static_cast<int>(client.bottom - client.top));
  vlcWindow_ = CreateWindowExW(WS_EX_NOPARENTNOTIFY, kVlcHostWindowClass, L"", kVideoWindowStyle, 0, 0, width, height,
                               parentWindow_, nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!vlcWindow_) {
    vlcWindow_ = parentWindow_;
    LOG_WARNING("Failed to create VLC child window, using parent window");
    return;
  }
  SetWindowPos(vlcWindow_, HWND_BOTTOM, 0, 0, width, height, SWP_NOACTIVATE);
  LOG_INFO("*** CORE FIX *** Created VLC child window: %p (%dx%d) for original player", static_cast<void*>(vlcWindow_),
           width, height);
}

bool VLCPlayer::CreateInstance(const LibVlcFunctions& vlc) {
  LOG_INFO("Attempting to create VLC instance with global arguments");
  vlcInstance_.reset(NewInstance(vlc));
  if (!vlcInstance_) {
    // The same call once more: a library that succeeds now is taken as if it had at first.
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

bool VLCPlayer::CreateMediaPlayer(const LibVlcFunctions& vlc) {
  mediaPlayer_ = VlcMediaPlayerPtr(vlc.libvlc_media_player_new(vlcInstance_.get()));
  if (!mediaPlayer_) {
    LOG_ERROR("Failed to create VLC media player, VLC error: %s", LibVlcErrorText(vlc));
    Cleanup();
    return false;
  }
  LOG_INFO("VLC media player created successfully");
  LOG_INFO("Setting HWND for VLC player: %p (child window, not parent %p)", static_cast<void*>(vlcWindow_),
           static_cast<void*>(parentWindow_));
  vlc.libvlc_media_player_set_hwnd(mediaPlayer_.get(), vlcWindow_);
  LOG_INFO("HWND set successfully");

  eventManager_ = vlc.libvlc_media_player_event_manager(mediaPlayer_.get());
  if (!eventManager_) {
    LOG_ERROR("Failed to get VLC event manager");
    LOG_ERROR("VLC error: %s", LibVlcErrorText(vlc));
    Cleanup();
    return false;
  }
  LOG_INFO("VLC event manager obtained successfully");
  return true;
}

void VLCPlayer::AttachEvents(const LibVlcFunctions& vlc) {
  LOG_INFO("Attaching VLC event handlers");
  for (const PlayerEvent& event : kPlayerEvents)
    vlc.libvlc_event_attach(eventManager_, event.type, VlcEventCallback, this);
  LOG_INFO("VLC event handlers attached successfully");
}

void VLCPlayer::DetachEvents(const LibVlcFunctions& vlc) {
  if (!eventManager_ || !mediaPlayer_ || !vlc.libvlc_event_detach) return;
  for (const PlayerEvent& event : kPlayerEvents)
    vlc.libvlc_event_detach(eventManager_, event.type, VlcEventCallback, this);
}

void VLCPlayer::Cleanup() {
  const LibVlcFunctions vlc = GetLibVlcFunctions();
  if (!vlc.loaded) {
    LOG_ERROR("Failed to load VLC functions for cleanup");
    return;
  }
  DetachEvents(vlc);
  if (mediaPlayer_ && vlc.libvlc_media_player_stop) {
    suppressStoppedEvent_ = true;
    vlc.libvlc_media_player_stop(mediaPlayer_.get());
  }
  VlcMediaPlayerPtr player(mediaPlayer_.release());
  eventReaders_.WaitForReaders();
  ReleasePlayer(std::move(player));
  media_.reset();
  vlcInstance_.reset();
  if (vlcWindow_ && vlcWindow_ != parentWindow_ && IsWindow(vlcWindow_)) DestroyWindow(vlcWindow_);
  vlcWindow_ = nullptr;
  parentWindow_ = nullptr;
  overlayWindow_ = nullptr;
  eventManager_ = nullptr;
  eventCallback_ = nullptr;
}

}  // namespace vantro
