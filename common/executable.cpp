#include "common/executable.h"

#include <windows.h>

namespace vantro {

std::string NarrowExecutablePath() {
  char path[MAX_PATH] = "";
  GetModuleFileNameA(nullptr, path, MAX_PATH);
  return path;
}

std::wstring ExecutableFolder() {
  std::wstring path(MAX_PATH, L'\0');
  DWORD length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  while (length == path.size()) {  // truncated: the path is longer
    path.resize(path.size() * 2);
    length = GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
  }
  path.resize(length);
  return path.substr(0, path.find_last_of(L'\\'));
}

}  // namespace vantro
