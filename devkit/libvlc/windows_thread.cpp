#include "windows_thread.h"

#include <windows.h>

#include <memory>
#include <utility>

namespace vantro::devlib {
namespace {

struct Start {
  std::function<void()> body;
  HDESK desktop;
};

DWORD WINAPI Enter(void* parameter) {
  std::unique_ptr<Start> start(static_cast<Start*>(parameter));
  // A new thread starts on the process's desktop, but windows must be drawn from the desktop that they are on.
  SetThreadDesktop(start->desktop);
  start->body();
  return 0;
}

}  // namespace

bool StartWindowsThread(std::function<void()> body) {
  auto start = std::make_unique<Start>(Start{std::move(body), GetThreadDesktop(GetCurrentThreadId())});
  HANDLE thread = CreateThread(nullptr, 0, Enter, start.get(), 0, nullptr);
  if (!thread) return false;
  start.release();
  CloseHandle(thread);
  return true;
}

}  // namespace vantro::devlib
