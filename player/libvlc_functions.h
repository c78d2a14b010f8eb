// The table of libvlc functions that are resolved at run time.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>
#include <span>

#include "player/libvlc_api.h"

namespace vantro {

// One slot per function; null if the library in use does not export it. With an empty slot, the step that needs the
// function does nothing. The five functions that VLCPlayer::Initialize requires are the exception.
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
  // The three media creators take only the string or, if legacyMediaCreation is set, the instance and the string. They
  // are untyped here. One helper calls them in the right form.
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

  uint32_t abiVersion;       // the result of libvlc_abi_version, or 0 without that function
  bool legacyMediaCreation;  // media creators take the instance as their first argument
  bool loaded;               // the slots are filled; stays true once set
};

// One slot of the table: the name of the exported function, and the offset of its pointer in LibVlcFunctions.
struct LibVlcSlot {
  const char* name;
  size_t offset;
};

// The forty slots, in the order of resolution and of their fields.
std::span<const LibVlcSlot> LibVlcSlots();

// Fills the table from the module: the slots, the version, the form of the media creators, and loaded.
void ResolveLibVlcFunctions(HMODULE module, LibVlcFunctions& functions);

// Returns a copy of the process-wide table. If the table is not loaded yet and the module is there, resolves it first.
// The call that resolves must be on the main thread. A loaded table does not change, and any thread may read it.
LibVlcFunctions GetLibVlcFunctions();

// Returns the process-wide table itself, without resolving it. For the resolver, and for tests that empty a slot.
LibVlcFunctions& LibVlcFunctionTable();

// Return the handle of libvlc.dll and of libvlccore.dll, or null. Each is searched for once per process, also if the
// search fails. With a null result, GetLastError returns the error of the search. Any thread.
HMODULE GetLibVlcModule();
HMODULE GetLibVlcCoreModule();

// The search that both use: the loaded module of this name, then the path relative to the executable's directory, then
// the loader's search path. If all three fail, returns null and leaves the loader's last error set.
HMODULE FindVlcLibrary(const char* fileName, const char* bundledPath);

// Returns the text of libvlc's last error, or a fixed text if libvlc has none or lacks the function. Valid until this
// thread calls libvlc again.
const char* LibVlcErrorText(const LibVlcFunctions& functions);

// The class of the child windows that libvlc draws into. Registered once per process. Returns the atom of the class, or
// 0 on failure. Any thread.
inline constexpr wchar_t kVlcHostWindowClass[] = L"VantroVlcHostWindow";
ATOM RegisterVlcHostWindowClass();

}  // namespace vantro
