// The calls with which the settings open their registry key and store their values.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <string>
#include <vector>

#include "common/text.h"
#include "tests/support/import_hook.h"
#include "tests/unit/shell/shell_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

// Records the calls with which the program opens or creates registry keys and stores values, one line for each. Each
// call is passed on.
class RegistryCalls {
 public:
  RegistryCalls() { current = this; }
  ~RegistryCalls() { current = nullptr; }
  RegistryCalls(const RegistryCalls&) = delete;
  RegistryCalls& operator=(const RegistryCalls&) = delete;
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  static LSTATUS WINAPI Open(HKEY root, LPCWSTR name, DWORD options, REGSAM access, PHKEY key) {
    current->Note("open", options, access, 0);
    return current->open_.Original<decltype(&RegOpenKeyExW)>()(root, name, options, access, key);
  }
  static LSTATUS WINAPI Create(HKEY root, LPCWSTR name, DWORD reserved, LPWSTR keyClass, DWORD options, REGSAM access,
                               const LPSECURITY_ATTRIBUTES security, PHKEY key, LPDWORD disposition) {
    current->Note("create", options, access, reserved);
    return current->create_.Original<decltype(&RegCreateKeyExW)>()(root, name, reserved, keyClass, options, access,
                                                                   security, key, disposition);
  }
  static LSTATUS WINAPI Set(HKEY key, LPCWSTR name, DWORD reserved, DWORD type, const BYTE* data, DWORD size) {
    current->lines_.push_back("set " + NarrowFromWide(name) + Reserved(reserved));
    return current->set_.Original<decltype(&RegSetValueExW)>()(key, name, reserved, type, data, size);
  }
  void Note(const char* call, DWORD options, REGSAM access, DWORD reserved) {
    const char* const accessName = access == KEY_READ ? "KEY_READ" : access == KEY_WRITE ? "KEY_WRITE" : "other access";
    lines_.push_back(std::string(call) + " options " + std::to_string(options) + " " + accessName + Reserved(reserved));
  }
  // The system requires 0, but Wine accepts any value.
  static std::string Reserved(DWORD value) { return value == 0 ? "" : " reserved " + std::to_string(value); }

  static RegistryCalls* current;
  std::vector<std::string> lines_;
  ImportHook open_{"advapi32.dll", "RegOpenKeyExW", &Open};
  ImportHook create_{"advapi32.dll", "RegCreateKeyExW", &Create};
  ImportHook set_{"advapi32.dll", "RegSetValueExW", &Set};
};

RegistryCalls* RegistryCalls::current = nullptr;

class SettingsAccess : public testing::Test {
 protected:
  ScratchRegistry registry_;
  VantroWindow window_{GetModuleHandleW(nullptr)};
};

TEST_F(SettingsAccess, LoadingOpensTheKeyForReading) {
  const RegistryCalls calls;
  Inside(window_).commands_.LoadSettings();
  EXPECT_THAT(calls.Lines(), ElementsAre("open options 0 KEY_READ"));
}

TEST_F(SettingsAccess, SavingMakesTheKeyForWritingWithoutOptionsAndStoresEachValue) {
  const RegistryCalls calls;
  Inside(window_).commands_.SaveSettings();
  EXPECT_THAT(calls.Lines(),
              ElementsAre("create options 0 KEY_WRITE", "set AlwaysOnTop", "set VLCHwAccel", "set VLCAudioOutput",
                          "set VLCDeinterlace", "set VLCEqualizerEnabled", "set VLCCompressorEnabled"));
}

}  // namespace
}  // namespace vantro::test
