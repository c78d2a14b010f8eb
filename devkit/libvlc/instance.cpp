#include "instance.h"

#include <vlc/vlc.h>

#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <mutex>
#include <vector>

#include "report.h"

namespace vantro::devlib {
namespace {

// Added to the arguments of every instance: pictures stay in memory that the development library can read, a snapshot
// leaves no preview in the picture, and no sound card is opened (the program asks for an output of Windows).
constexpr const char* kOwnArguments[] = {"--avcodec-hw=none", "--no-snapshot-preview", "--aout=amem"};

// Passes libvlc's own messages on only as traces, because they would flood standard error.
void PassOn(void*, int level, const libvlc_log_t*, const char* format, va_list arguments) {
  if (level < LIBVLC_WARNING) return;
  char text[512];
  vsnprintf(text, sizeof text, format, arguments);
  Trace("libvlc %s: %s", level == LIBVLC_ERROR ? "error" : "warning", text);
}

// The program sets the path of Windows' plugins in the environment. This libvlc finds its own plugins without it.
void ForgetWindowsPluginPath() {
  const char* path = getenv("VLC_PLUGIN_PATH");
  if (path && strchr(path, '\\')) unsetenv("VLC_PLUGIN_PATH");
}

// When its last instance is released, libvlc unloads its plugins. A thread that has used a plugin may end only then and
// would run clean-up code that is no longer loaded. One reference to the first instance is therefore never released.
void KeepPluginsLoaded(libvlc_instance_t* native) {
  static std::once_flag once;
  std::call_once(once, [native] { libvlc_retain(native); });
}

// The last output named counts. An output that Windows does not have, such as directsound, becomes mmdevice.
bool AsksForWaveout(int count, const char* const* arguments) {
  bool waveout = false;
  for (int i = 0; i < count; ++i) {
    if (strncmp(arguments[i], "--aout=", 7) == 0) waveout = strcmp(arguments[i] + 7, "waveout") == 0;
  }
  return waveout;
}

libvlc_instance_t* Try(const std::vector<const char*>& arguments) {
  return libvlc_new(static_cast<int>(arguments.size()), arguments.data());
}

}  // namespace

Instance* Instance::Create(int count, const char* const* arguments) {
  ForgetWindowsPluginPath();
  std::vector<const char*> wanted(arguments, arguments + count);
  wanted.insert(wanted.end(), std::begin(kOwnArguments), std::end(kOwnArguments));
  libvlc_instance_t* native = Try(wanted);
  if (!native) {
    std::vector<const char*> known;
    for (const char* argument : wanted) {
      known.push_back(argument);
      if (libvlc_instance_t* tried = Try(known)) {
        libvlc_release(tried);
      } else {
        Warn("libvlc %s does not take %s, going on without", libvlc_get_version(), argument);
        known.pop_back();
      }
    }
    native = Try(known);
  }
  if (!native) return nullptr;
  libvlc_log_set(native, PassOn, nullptr);
  KeepPluginsLoaded(native);
  return new Instance(native, AsksForWaveout(count, arguments));
}

Instance::~Instance() { libvlc_release(native_); }

void Instance::Release() {
  if (references_.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

}  // namespace vantro::devlib
