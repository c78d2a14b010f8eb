// Replaces a function that a module imports from a library, so that a test sees each call and its arguments. Works on
// the import table of that module, so calls from inside other modules are not replaced.
#pragma once

#include <windows.h>

namespace vantro::test {

class ImportHook {
 public:
  // Fails the test if the module does not import the function. The default module is the program.
  ImportHook(const char* library, const char* function, void* replacement, HMODULE module = GetModuleHandleW(nullptr));
  ~ImportHook();
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

  void* Original() const { return original_; }

 private:
  void** slot_ = nullptr;
  void* original_ = nullptr;
};

}  // namespace vantro::test
