// Replaces a function that this program imports from a library, so that a test sees each call and its arguments. Works
// on the program's own import table, so calls from inside libraries are not replaced.
#pragma once

#include <windows.h>

namespace vantro::test {

class ImportHook {
 public:
  // Fails the test if the program does not import the function.
  ImportHook(const char* library, const char* function, void* replacement);
  ~ImportHook();
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

  void* Original() const { return original_; }

 private:
  void** slot_ = nullptr;
  void* original_ = nullptr;
};

}  // namespace vantro::test
