#include "common/text.h"

#include <windows.h>

namespace vantro {

// Both functions of the system return the length 0 for an empty input and for a failure.
std::string NarrowFromWide(std::wstring_view wide) {
  const int wideLength = static_cast<int>(wide.size());
  const int length = WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<size_t>(length), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideLength, narrow.data(), length, nullptr, nullptr);
  return narrow;
}

std::wstring WideFromNarrow(std::string_view utf8) {
  const int narrowLength = static_cast<int>(utf8.size());
  const int length = MultiByteToWideChar(CP_UTF8, 0, utf8.data(), narrowLength, nullptr, 0);
  std::wstring wide(static_cast<size_t>(length), L'\0');
  MultiByteToWideChar(CP_UTF8, 0, utf8.data(), narrowLength, wide.data(), length);
  return wide;
}

}  // namespace vantro
