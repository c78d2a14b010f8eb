#include "player/libvlc_functions.h"

#include <shlwapi.h>
#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <iterator>

#include "common/executable.h"
#include "common/log.h"

namespace vantro {

namespace {

constexpr unsigned kMajorVersionShift = 24;
// The first major version whose media creators take only the string.
constexpr int kFirstMajorWithoutInstance = 4;

#define SLOT(name) \
  { #name, offsetof(LibVlcFunctions, name) }
constexpr LibVlcSlot kSlots[] = {
    SLOT(libvlc_new),
    SLOT(libvlc_release),
    SLOT(libvlc_errmsg),
    SLOT(libvlc_get_version),
    SLOT(libvlc_abi_version),
    SLOT(libvlc_media_player_new),
    SLOT(libvlc_media_player_release),
    SLOT(libvlc_media_player_set_hwnd),
    SLOT(libvlc_media_player_event_manager),
    SLOT(libvlc_media_player_stop),
    SLOT(libvlc_media_player_play),
    SLOT(libvlc_media_player_pause),
    SLOT(libvlc_media_player_is_playing),
    SLOT(libvlc_media_player_get_length),
    SLOT(libvlc_media_player_get_time),
    SLOT(libvlc_media_player_set_time),
    SLOT(libvlc_media_player_get_media),
    SLOT(libvlc_set_fullscreen),
    SLOT(libvlc_get_fullscreen),
    SLOT(libvlc_media_new_path),
    SLOT(libvlc_media_new_location),
    SLOT(libvlc_media_new_uri),
    SLOT(libvlc_media_add_option),
    SLOT(libvlc_media_player_set_media),
    SLOT(libvlc_media_release),
    SLOT(libvlc_audio_set_volume),
    SLOT(libvlc_audio_get_volume),
    SLOT(libvlc_audio_set_mute),
    SLOT(libvlc_audio_get_mute),
    SLOT(libvlc_audio_get_track_description),
    SLOT(libvlc_audio_set_track),
    SLOT(libvlc_video_set_scale),
    SLOT(libvlc_video_get_width),
    SLOT(libvlc_video_get_height),
    SLOT(libvlc_video_set_viewport),
    SLOT(libvlc_video_get_spu_description),
    SLOT(libvlc_video_set_spu),
    SLOT(libvlc_event_attach),
    SLOT(libvlc_event_detach),
    SLOT(libvlc_track_description_list_release),
};
#undef SLOT
static_assert(std::size(kSlots) * sizeof(void*) == offsetof(LibVlcFunctions, abiVersion));

void FillSlot(HMODULE module, const LibVlcSlot& slot, LibVlcFunctions& functions) {
  const FARPROC address = GetProcAddress(module, slot.name);
  std::memcpy(reinterpret_cast<char*>(&functions) + slot.offset, &address, sizeof address);
}

// Returns the major version at the start of a text such as "4.0.0-dev"; 0 if the text does not start with a digit.
int MajorOfVersionText(const char* text) {
  if (!text || *text < '0' || *text > '9') return 0;
  return static_cast<int>(std::strtol(text, nullptr, 10));
}

struct SearchResult {
  HMODULE module;
  DWORD error;
};

SearchResult Search(const char* fileName, const char* bundledPath) {
  const HMODULE module = FindVlcLibrary(fileName, bundledPath);
  return {module, module ? ERROR_SUCCESS : GetLastError()};
}

// The guard of a static's initialisation may change the last error. Callers log the error of the search, so it is set
// again.
HMODULE Report(const SearchResult& result) {
  if (!result.module) SetLastError(result.error);
  return result.module;
}

}  // namespace

std::span<const LibVlcSlot> LibVlcSlots() { return kSlots; }

HMODULE FindVlcLibrary(const char* fileName, const char* bundledPath) {
  if (const HMODULE loaded = GetModuleHandleA(fileName)) return loaded;
  std::string path = NarrowExecutablePath();
  path.resize(MAX_PATH);  // the two calls below need this much room
  PathRemoveFileSpecA(path.data());
  PathAppendA(path.data(), bundledPath);
  if (const HMODULE bundled = LoadLibraryA(path.c_str())) return bundled;
  return LoadLibraryA(fileName);
}

HMODULE GetLibVlcModule() {
  static const SearchResult result = Search("libvlc.dll", "vlc\\libvlc.dll");
  return Report(result);
}

HMODULE GetLibVlcCoreModule() {
  static const SearchResult result = Search("libvlccore.dll", "vlc\\libvlccore.dll");
  return Report(result);
}

void ResolveLibVlcFunctions(HMODULE module, LibVlcFunctions& functions) {
  for (const LibVlcSlot& slot : kSlots) FillSlot(module, slot, functions);

  int major = 0;
  functions.abiVersion = functions.libvlc_abi_version ? functions.libvlc_abi_version() : 0;
  if (functions.abiVersion != 0) {
    major = static_cast<int>(functions.abiVersion >> kMajorVersionShift);
  } else if (functions.libvlc_get_version) {
    major = MajorOfVersionText(functions.libvlc_get_version());
  }
  functions.legacyMediaCreation = major < kFirstMajorWithoutInstance;
  if (functions.abiVersion != 0) {
    LOG_INFO("[VLC] Detected libvlc ABI 0x%08X (major=%d, legacyMediaCreation=%d)", functions.abiVersion, major,
             functions.legacyMediaCreation);
  } else {
    LOG_INFO("[VLC] libvlc ABI symbol missing, inferred major=%d (legacyMediaCreation=%d)", major,
             functions.legacyMediaCreation);
  }
  functions.loaded = true;
}

LibVlcFunctions& LibVlcFunctionTable() {
  static LibVlcFunctions functions{};
  return functions;
}

LibVlcFunctions GetLibVlcFunctions() {
  LibVlcFunctions& functions = LibVlcFunctionTable();
  if (!functions.loaded) {
    if (const HMODULE module = GetLibVlcModule()) ResolveLibVlcFunctions(module, functions);
  }
  return functions;
}

const char* LibVlcErrorText(const LibVlcFunctions& functions) {
  const char* const text = functions.libvlc_errmsg ? functions.libvlc_errmsg() : nullptr;
  return text ? text : "No error message available";
}

ATOM RegisterVlcHostWindowClass() {
  static INIT_ONCE once = INIT_ONCE_STATIC_INIT;
  static ATOM atom = 0;
  BOOL pending = FALSE;
  if (!InitOnceBeginInitialize(&once, 0, &pending, nullptr)) return 0;
  if (pending) {
    WNDCLASSW windowClass{};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hCursor = LoadCursorA(nullptr, IDC_ARROW);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = kVlcHostWindowClass;
    atom = RegisterClassW(&windowClass);
    InitOnceComplete(&once, 0, nullptr);
  }
  return atom;
}

}  // namespace vantro
