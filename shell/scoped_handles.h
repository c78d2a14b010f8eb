// Owning types for the Win32 handles that the shell creates. Each closes its handle with the matching function; a null
// handle is not closed.
#pragma once

#include <windows.h>

#include <utility>

namespace vantro {

template <typename Handle, auto Close>
class ScopedHandle {
 public:
  ScopedHandle() = default;
  explicit ScopedHandle(Handle handle) : handle_(handle) {}
  ~ScopedHandle() {
    if (handle_) Close(handle_);
  }
  ScopedHandle(ScopedHandle&& other) noexcept : handle_(other.Release()) {}
  ScopedHandle(const ScopedHandle&) = delete;
  ScopedHandle& operator=(const ScopedHandle&) = delete;

  Handle Get() const { return handle_; }
  explicit operator bool() const { return handle_ != Handle{}; }
  // For functions that return a handle through a pointer. The owner must be empty.
  Handle* Receive() { return &handle_; }
  // Returns the handle and gives up its ownership.
  Handle Release() { return std::exchange(handle_, Handle{}); }

 private:
  Handle handle_{};
};

using ScopedBrush = ScopedHandle<HBRUSH, DeleteObject>;
using ScopedPen = ScopedHandle<HPEN, DeleteObject>;
using ScopedIcon = ScopedHandle<HICON, DestroyIcon>;
using ScopedMenu = ScopedHandle<HMENU, DestroyMenu>;
using ScopedRegistryKey = ScopedHandle<HKEY, RegCloseKey>;

// Selects an object into a device context and restores the previous one on destruction.
class ScopedSelection {
 public:
  ScopedSelection(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
  ~ScopedSelection() { SelectObject(dc_, previous_); }
  ScopedSelection(const ScopedSelection&) = delete;
  ScopedSelection& operator=(const ScopedSelection&) = delete;

 private:
  HDC dc_;
  HGDIOBJ previous_;
};

}  // namespace vantro
