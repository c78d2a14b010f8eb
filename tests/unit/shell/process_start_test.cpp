// The process's own start, called as the system calls it. A program of its own: it installs the process's filters, and
// the mutex of the single instance stays until it ends.
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <objbase.h>

#include <string>
#include <vector>

#include "tests/support/log_capture.h"
#include "tests/unit/shell/import_hook.h"

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int showCommand);

namespace vantro {
namespace {

HRESULT WINAPI RefuseCom(void*, DWORD) { return E_OUTOFMEMORY; }

std::vector<std::string> boxes;
int WINAPI RecordBox(HWND, const char* text, const char* caption, UINT) {
  boxes.push_back(std::string(caption) + ": " + text);
  return IDOK;
}

TEST(ProcessStart, WithoutComSaysSoInABoxAndEndsWith1) {
  const test::ImportHook com("ole32.dll", "CoInitializeEx", reinterpret_cast<void*>(RefuseCom));
  const test::ImportHook box("user32.dll", "MessageBoxA", reinterpret_cast<void*>(RecordBox));
  const test::LogCapture log;

  EXPECT_EQ(WinMain(GetModuleHandleA(nullptr), nullptr, nullptr, SW_SHOWNORMAL), 1);

  EXPECT_EQ(boxes, std::vector<std::string>{"Error: Failed to initialize COM"});
  EXPECT_TRUE(log.Has("ERROR Failed to initialize COM: 0x8007000E"));
  EXPECT_EQ(log.CountContaining("Window instance created"), 0);
}

}  // namespace
}  // namespace vantro
