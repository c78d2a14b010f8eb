// Start-up and clean-up of the player.
#include <windows.h>

#include <cstdlib>
#include <utility>

#include "common/log.h"
#include "common/measures.h"
#include "player/player_events.h"
#include "player/vlc_player.h"
#include "player/vlc_runtime.h"

namespace vantro {

namespace {

void LogStartEnvironment() {
  if (const char* pluginPath = std::getenv("VLC_PLUGIN_PATH")) {
    LOG_INFO("VLC_PLUGIN_PATH: %s", pluginPath);
  } else {
    LOG_INFO("VLC_PLUGIN_PATH not set");
  }
  char currentDirectory[MAX_PATH] = "";
  GetCurrentDirectoryA(sizeof currentDirectory, currentDirectory);
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

}  // namespace

VLCPlayer::~VLCPlayer() {
  Cleanup();
  // Events of the remaining tiles are still attached. Releasing the players ends them. The wait covers the events in
  // progress.
  grid_.ReleaseTiles();
  eventReaders_.WaitForReaders();
}

bool VLCPlayer::Initialize(HWND parentWindow) {
  parentWindow_.store(parentWindow, std::memory_order_relaxed);
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
  if (!HasRequiredSymbols(vlc) || !instance_.Create(vlc)) return false;
  LOG_INFO("VLC instance created successfully");
  if (version) LOG_INFO("VLC version: %s", version);

  if (!CreateMediaPlayer(vlc)) return false;
  AttachEvents(vlc);
  SetVolume(kFullVolume);
  LOG_INFO("VLC initial volume set to 100%%");
  LOG_INFO("VLCPlayer::Initialize completed successfully");
  return true;
}

bool VLCPlayer::CreateMediaPlayer(const LibVlcFunctions& vlc) {
  mediaPlayer_ = VlcMediaPlayerPtr(vlc.libvlc_media_player_new(instance_.get()));
  if (!mediaPlayer_) {
    LOG_ERROR("Failed to create VLC media player, VLC error: %s", LibVlcErrorText(vlc));
    Cleanup();
    return false;
  }
  LOG_INFO("VLC media player created successfully");
  LOG_INFO("Setting HWND for VLC player: %p (child window, not parent %p)", static_cast<void*>(vlcWindow_),
           static_cast<void*>(ParentWindow()));
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
    suppressStoppedEvent_.store(true, std::memory_order_relaxed);
    vlc.libvlc_media_player_stop(mediaPlayer_.get());
  }
  VlcMediaPlayerPtr player(mediaPlayer_.release());
  eventReaders_.WaitForReaders();
  if (player) resumes_.Forget(player.get());
  player.reset();
  media_.reset();
  instance_.Release();
  if (vlcWindow_ && vlcWindow_ != ParentWindow() && IsWindow(vlcWindow_)) DestroyWindow(vlcWindow_);
  vlcWindow_ = nullptr;
  parentWindow_.store(nullptr, std::memory_order_relaxed);
  overlayWindow_ = nullptr;
  eventManager_ = nullptr;
  eventCallback_ = nullptr;
}

}  // namespace vantro
