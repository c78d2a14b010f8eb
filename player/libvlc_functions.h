// The table of libvlc entry points that are resolved at run time.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "player/libvlc_api.h"

namespace vantro {

// One slot a function, null if the library in use does not export it. An empty slot makes the step that needs it do
// nothing, except for the five that VLCPlayer::Initialize requires.
struct LibVlcFunctions {
  libvlc_instance_t* (*libvlc_new)(int argc, const char* const* argv);
  void (*libvlc_release)(libvlc_instance_t*);
  const char* (*libvlc_errmsg)();
  const char* (*libvlc_get_version)();
  unsigned (*libvlc_abi_version)();
  libvlc_media_player_t* (*libvlc_media_player_new)(libvlc_instance_t*);
  void (*libvlc_media_player_release)(libvlc_media_player_t*);
  void (*libvlc_media_player_set_hwnd)(libvlc_media_player_t*, void* hwnd);
  libvlc_event_manager_t* (*libvlc_media_player_event_manager)(libvlc_media_player_t*);
  void (*libvlc_media_player_stop)(libvlc_media_player_t*);
  int (*libvlc_media_player_play)(libvlc_media_player_t*);
  void (*libvlc_media_player_pause)(libvlc_media_player_t*);
  bool (*libvlc_media_player_is_playing)(libvlc_media_player_t*);
  libvlc_time_t (*libvlc_media_player_get_length)(libvlc_media_player_t*);
  libvlc_time_t (*libvlc_media_player_get_time)(libvlc_media_player_t*);
  int (*libvlc_media_player_set_time)(libvlc_media_player_t*, libvlc_time_t milliseconds, bool fast);
  libvlc_media_t* (*libvlc_media_player_get_media)(libvlc_media_player_t*);
  void (*libvlc_set_fullscreen)(libvlc_media_player_t*, int);
  int (*libvlc_get_fullscreen)(libvlc_media_player_t*);
  // The three media creators take the string alone, or the instance before it where legacyMediaCreation says so:
  // untyped here, called through the one helper that knows both forms.
  void* libvlc_media_new_path;
  void* libvlc_media_new_location;
  void* libvlc_media_new_uri;
  void (*libvlc_media_add_option)(libvlc_media_t*, const char* option);
  void (*libvlc_media_player_set_media)(libvlc_media_player_t*, libvlc_media_t*);
  void (*libvlc_media_release)(libvlc_media_t*);
  int (*libvlc_audio_set_volume)(libvlc_media_player_t*, int percent);
  int (*libvlc_audio_get_volume)(libvlc_media_player_t*);
  void (*libvlc_audio_set_mute)(libvlc_media_player_t*, int mute);
  int (*libvlc_audio_get_mute)(libvlc_media_player_t*);
  libvlc_track_description_t* (*libvlc_audio_get_track_description)(libvlc_media_player_t*);
  int (*libvlc_audio_set_track)(libvlc_media_player_t*, int id);
  void (*libvlc_video_set_scale)(libvlc_media_player_t*, float factor);
  unsigned (*libvlc_video_get_width)(libvlc_media_player_t*);
  unsigned (*libvlc_video_get_height)(libvlc_media_player_t*);
  void (*libvlc_video_set_viewport)(libvlc_media_player_t*, int left, int top, int width, int height);
  libvlc_track_description_t* (*libvlc_video_get_spu_description)(libvlc_media_player_t*);
  int (*libvlc_video_set_spu)(libvlc_media_player_t*, int id);
  int (*libvlc_event_attach)(libvlc_event_manager_t*, int type, libvlc_callback_t, void* userData);
  void (*libvlc_event_detach)(libvlc_event_manager_t*, int type, libvlc_callback_t, void* userData);
  void (*libvlc_track_description_list_release)(libvlc_track_description_t*);

  uint32_t abiVersion;       // as libvlc_abi_version returned it, else 0
  bool legacyMediaCreation;  // media creators take the instance as their first argument
  bool loaded;               // the slots have been filled; never false again
};

// One slot of the table: the exported function's name, and where its pointer stands in LibVlcFunctions.
struct LibVlcSlot {
  const char* name;
  size_t offset;
};

// The forty slots in the order of resolution, which is the order of their fields.
std::span<const LibVlcSlot> LibVlcSlots();

// Fills the table from the module: the slots, the version that tells the form of the media creators, loaded.
void ResolveLibVlcFunctions(HMODULE module, LibVlcFunctions& functions);

// A copy of the process-wide table. Resolves it first while it is not loaded and the module is there. The first call
// that resolves belongs to the main thread; once loaded the table does not change and any thread may read it.
LibVlcFunctions GetLibVlcFunctions();

// The process-wide table itself, unresolved as it stands: for the resolver, and for tests that empty a slot.
LibVlcFunctions& LibVlcFunctionTable();

// The handles of libvlc.dll and libvlccore.dll, or null. Searched for once per process, a failure included; where null
// is returned, GetLastError gives the search's error. Any thread.
HMODULE GetLibVlcModule();
HMODULE GetLibVlcCoreModule();

// The search behind both: the loaded module of this name, then the path relative to the executable's directory, then
// the loader's search path. Null with the last error of the loader if none has it.
HMODULE FindVlcLibrary(const char* fileName, const char* bundledPath);

// The text of libvlc's last error; a fixed one when there is none or the library can't tell. Valid until the next call
// of libvlc on this thread.
const char* LibVlcErrorText(const LibVlcFunctions& functions);

// The class of the child windows that libvlc draws into. Registered once per process: the class's atom, 0 on failure.
// Any thread.
inline constexpr wchar_t kVlcHostWindowClass[] = L"VantroVlcHostWindow";
ATOM RegisterVlcHostWindowClass();

}  // namespace vantro
