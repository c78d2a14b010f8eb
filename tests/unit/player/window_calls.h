// Records as text lines, in order, the calls with which the player makes, moves and repaints windows. Each call is
// passed on to the system.
#pragma once

#include <windows.h>

#include <string>
#include <utility>
#include <vector>

#include "tests/support/flag_names.h"
#include "tests/support/import_hook.h"

namespace vantro::test {

// Only one object may exist at a time.
class WindowCalls {
 public:
  // The names of windows in the lines, both for the moved window and for the window to insert after.
  using Names = std::vector<std::pair<HWND, std::string>>;

  // Without names every window appears as "window".
  explicit WindowCalls(Names names = {}) : names_(std::move(names)) { recorder_ = this; }
  ~WindowCalls() { recorder_ = nullptr; }
  WindowCalls(const WindowCalls&) = delete;
  WindowCalls& operator=(const WindowCalls&) = delete;

  // For example "SetWindowPos tile HWND_TOP 405,0 395x600 SWP_SHOWWINDOW". If there are names, neither calls on other
  // windows nor the creation of a window are recorded.
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  static HWND WINAPI Create(DWORD exStyle, LPCWSTR className, LPCWSTR title, DWORD style, int x, int y, int width,
                            int height, HWND parent, HMENU menu, HINSTANCE instance, void* data) {
    recorder_->Add("CreateWindowExW", nullptr,
                   std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
                       std::to_string(height) + " " + StyleNames(style) + " " + ExStyleNames(exStyle) +
                       (menu || data ? " with menu or data" : "") +
                       (instance == GetModuleHandleW(nullptr) ? " of this program" : ""));
    return recorder_->create_.Original<decltype(&CreateWindowExW)>()(exStyle, className, title, style, x, y, width,
                                                                     height, parent, menu, instance, data);
  }
  static BOOL WINAPI Place(HWND window, HWND after, int x, int y, int width, int height, UINT flags) {
    const std::string behind = recorder_->NameOf(after);
    recorder_->Add("SetWindowPos", window,
                   (behind.empty() ? InsertAfter(after) : behind) + " " + std::to_string(x) + "," + std::to_string(y) +
                       " " + std::to_string(width) + "x" + std::to_string(height) + " " + PlacementFlags(flags));
    return recorder_->place_.Original<decltype(&SetWindowPos)>()(window, after, x, y, width, height, flags);
  }
  static BOOL WINAPI Move(HWND window, int x, int y, int width, int height, BOOL repaint) {
    recorder_->Add("MoveWindow", window,
                   std::to_string(x) + "," + std::to_string(y) + " " + std::to_string(width) + "x" +
                       std::to_string(height) + (repaint ? " repaint" : ""));
    return recorder_->move_.Original<decltype(&MoveWindow)>()(window, x, y, width, height, repaint);
  }
  static BOOL WINAPI Invalidate(HWND window, const RECT* part, BOOL erase) {
    recorder_->Add("InvalidateRect", window, std::string(part ? "part" : "whole") + (erase ? " erase" : ""));
    return recorder_->invalidate_.Original<decltype(&InvalidateRect)>()(window, part, erase);
  }
  static BOOL WINAPI Update(HWND window) {
    recorder_->Add("UpdateWindow", window, "");
    return recorder_->update_.Original<decltype(&UpdateWindow)>()(window);
  }

  std::string NameOf(HWND window) const {
    for (const auto& [known, name] : names_)
      if (known && known == window) return name;
    return "";
  }
  void Add(const std::string& function, HWND window, const std::string& arguments) {
    const std::string name = names_.empty() ? "window" : NameOf(window);
    if (!name.empty()) lines_.push_back(function + " " + name + (arguments.empty() ? "" : " " + arguments));
  }

  static inline WindowCalls* recorder_ = nullptr;
  const Names names_;
  std::vector<std::string> lines_;
  const ImportHook create_{"user32.dll", "CreateWindowExW", Create};
  const ImportHook place_{"user32.dll", "SetWindowPos", Place};
  const ImportHook move_{"user32.dll", "MoveWindow", Move};
  const ImportHook invalidate_{"user32.dll", "InvalidateRect", Invalidate};
  const ImportHook update_{"user32.dll", "UpdateWindow", Update};
};

}  // namespace vantro::test
