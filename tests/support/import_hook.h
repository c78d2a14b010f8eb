// Replaces a function that a module imports from a library, so that a test sees each call and its arguments. Works on
// the import table of that module, so calls from inside other modules are not replaced.
#pragma once

#include <windows.h>

namespace vantro::test {

class ImportHook {
 public:
  // Fails the test if the module does not import the function. The default module is the program.
  template <typename Replacement>
  ImportHook(const char* library, const char* function, Replacement* replacement,
             HMODULE module = GetModuleHandleW(nullptr))
      : ImportHook(library, function, module, reinterpret_cast<void*>(replacement)) {}
  ~ImportHook();
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

  // The replaced function as a pointer of its type, for example Original<decltype(&ShowWindow)>().
  template <typename Pointer>
  Pointer Original() const {
    return reinterpret_cast<Pointer>(original_);
  }

 private:
  ImportHook(const char* library, const char* function, HMODULE module, void* replacement);

  void** slot_ = nullptr;
  void* original_ = nullptr;
};

}  // namespace vantro::test
