#include "tests/support/process_resources.h"

#include <cstdint>
#include <vector>

namespace vantro::test {

size_t HandleCount() {
  DWORD count = 0;
  if (GetProcessHandleCount(GetCurrentProcess(), &count) && count != 0) return count;
  const HANDLE probe = CreateEventA(nullptr, FALSE, FALSE, nullptr);
  const auto place = reinterpret_cast<uintptr_t>(probe);
  CloseHandle(probe);
  return place / 4;
}

size_t GdiObjectCount() {
  constexpr size_t kPlaces = 0x10000;  // more than any system has for a process
  if (const DWORD count = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)) return count;
  std::vector<HBRUSH> made;
  while (made.size() < kPlaces) {
    const HBRUSH brush = CreateSolidBrush(0);
    if (!brush) break;
    made.push_back(brush);
  }
  for (const HBRUSH brush : made) DeleteObject(brush);
  return kPlaces - made.size();
}

}  // namespace vantro::test
