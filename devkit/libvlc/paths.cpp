#include "paths.h"

#include <windows.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>

namespace vantro::devlib {
namespace {

using UnixFileNameFunction = char*(CDECL*)(const WCHAR*);

std::basic_string<WCHAR> Widen(const std::string& text) {
  UINT page = MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, text.c_str(), -1, nullptr, 0) ? CP_UTF8 : CP_ACP;
  int size = MultiByteToWideChar(page, 0, text.c_str(), -1, nullptr, 0);
  std::basic_string<WCHAR> wide(static_cast<size_t>(size), WCHAR{});
  MultiByteToWideChar(page, 0, text.c_str(), -1, wide.data(), size);
  return wide;
}

int HexDigit(char c) { return isdigit(c) ? c - '0' : isxdigit(c) ? tolower(c) - 'a' + 10 : -1; }

}  // namespace

std::string UnixPath(const std::string& path) {
  static const auto unixFileName = reinterpret_cast<UnixFileNameFunction>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleA("kernel32.dll"), "wine_get_unix_file_name")));
  if (unixFileName) {
    if (char* name = unixFileName(Widen(path).c_str())) {
      std::string result = name;
      HeapFree(GetProcessHeap(), 0, name);
      return result;
    }
  }
  std::string result = path;
  std::replace(result.begin(), result.end(), '\\', '/');
  return result;
}

bool WindowsPathOfFileUrl(const std::string& location, std::string* path) {
  constexpr char kScheme[] = "file:///";
  constexpr size_t kStart = sizeof kScheme - 1;
  if (location.compare(0, kStart, kScheme) != 0 || location.size() < kStart + 2) return false;
  if (!isalpha(location[kStart]) || location[kStart + 1] != ':') return false;
  path->clear();
  for (size_t i = kStart; i < location.size(); ++i) {
    bool escape = location[i] == '%' && i + 2 < location.size();
    int high = escape ? HexDigit(location[i + 1]) : -1;
    int low = escape ? HexDigit(location[i + 2]) : -1;
    if (high >= 0 && low >= 0) {
      path->push_back(static_cast<char>(high * 16 + low));
      i += 2;
    } else {
      path->push_back(location[i]);
    }
  }
  return true;
}

}  // namespace vantro::devlib
