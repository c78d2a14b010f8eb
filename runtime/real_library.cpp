#include "runtime/real_library.h"

#include <windows.h>

#include <cstdio>
#include <string>

#include "runtime/interface.h"
#include "runtime/log.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace vantro::runtime {
namespace {

HMODULE module = nullptr;

void* Find(const char* name) { return reinterpret_cast<void*>(GetProcAddress(module, name)); }

// The path of the real library, in the adapter's folder. Empty when Windows doesn't report that folder.
std::wstring RealPath() {
  std::wstring path(MAX_PATH, L'\0');
  for (;;) {
    const DWORD length =
        GetModuleFileNameW(reinterpret_cast<HMODULE>(&__ImageBase), path.data(), static_cast<DWORD>(path.size()));
    if (length == 0) return {};
    if (length < path.size()) {
      path.resize(length);
      break;
    }
    path.resize(path.size() * 2);
  }
  return path.substr(0, path.find_last_of(L'\\') + 1) + kRealLibraryName;
}

bool Load(RealLibrary* library) {
  // The adapter reports; Windows shows no box of its own for a damaged file.
  DWORD mode = 0;
  SetThreadErrorMode(SEM_FAILCRITICALERRORS, &mode);
  // The altered search path finds libvlccore.dll beside the library.
  module = LoadLibraryExW(RealPath().c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
  const DWORD error = GetLastError();
  SetThreadErrorMode(mode, nullptr);
  if (module) return true;
  const std::string code = " (error " + std::to_string(error) + ").";
  if (error == ERROR_MOD_NOT_FOUND || error == ERROR_FILE_NOT_FOUND) {
    library->refusal = "libvlc-real.dll, or a library that it needs, was not found beside libvlc.dll" + code;
  } else if (error == ERROR_BAD_EXE_FORMAT) {
    library->refusal = "libvlc-real.dll is not a library for 64-bit Windows" + code;
  } else {
    library->refusal = "libvlc-real.dll can't be loaded" + code;
  }
  return false;
}

// The adapter as its own real library would call itself without end. So this is checked before any of its functions is
// called.
bool IsNotTheAdapter(RealLibrary* library) {
  if (!Find("vantro_runtime_adapter")) return true;
  library->refusal = "libvlc-real.dll is the runtime adapter itself, not the libvlc 4 that it needs.";
  return false;
}

std::string Lacks(const char* function) {
  return std::string("libvlc-real.dll lacks ") + function + ", which the runtime adapter needs.";
}

// Checked before the functions are looked up, so that the refusal of an older library names its version and not what it
// lacks.
bool HasNeededMajor(RealLibrary* library) {
  const auto abiVersion = reinterpret_cast<unsigned (*)()>(Find("libvlc_abi_version"));
  const auto version = reinterpret_cast<const char* (*)()>(Find("libvlc_get_version"));
  if (!abiVersion) return true;  // reported with the other functions that are needed
  if (abiVersion() >> 24 == kNeededMajor) return true;
  const char* const text = version ? version() : nullptr;
  library->refusal = std::string("libvlc-real.dll is version ") + (text ? text : "unknown") +
                     ", and the runtime adapter needs a libvlc " + std::to_string(kNeededMajor) + ".";
  return false;
}

// True when every needed function is there. Otherwise the refusal names the first missing one.
bool Resolve(RealLibrary* library) {
  RealFunctions& functions = library->functions;
  const char* missing = nullptr;
#define RUNTIME_FIND(name, result, parameters) functions.name = reinterpret_cast<result(*) parameters>(Find(#name));
#define RUNTIME_NEED(name, result, parameters) \
  RUNTIME_FIND(name, result, parameters)       \
  if (!functions.name && !missing) missing = #name;
  RUNTIME_NEEDED_FUNCTIONS(RUNTIME_NEED)
  RUNTIME_OPTIONAL_FUNCTIONS(RUNTIME_FIND)
#undef RUNTIME_NEED
#undef RUNTIME_FIND
  if (missing) library->refusal = Lacks(missing);
  return !missing;
}

void ChooseInterface(RealLibrary* library) {
  for (const Interface* candidate : {&EventsInterface(), &CallbacksInterface()}) {
    if (!Find(candidate->mark)) continue;
    const char* const missing = candidate->resolve(Find);
    if (missing) {
      library->refusal = Lacks(missing);
    } else {
      library->beneath = candidate;
    }
    return;
  }
  library->refusal =
      std::string("libvlc-real.dll has an interface of libvlc 4 that the runtime adapter doesn't know: ") +
      "it exports neither " + EventsInterface().mark + " nor " + CallbacksInterface().mark + ".";
}

RealLibrary* LoadOnce() {
  auto* const library = new RealLibrary;  // never destroyed: libvlc's threads may outlive the statics
  if (Load(library) && IsNotTheAdapter(library) && HasNeededMajor(library) && Resolve(library)) {
    ChooseInterface(library);
  }
  if (library->usable()) {
    RUNTIME_LOG("libvlc-real.dll %s, interface: %s", library->functions.libvlc_get_version(), library->beneath->name);
  } else {
    RUNTIME_LOG("refused: %s", library->refusal.c_str());
    fprintf(stderr, "vantro runtime: %s\n", library->refusal.c_str());
    fflush(stderr);
  }
  return library;
}

}  // namespace

const RealLibrary& Real() {
  static const RealLibrary* const library = LoadOnce();
  return *library;
}

}  // namespace vantro::runtime
