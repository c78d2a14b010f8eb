// The path of the program, as the system reports it.
#include "common/executable.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/import_hook.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;

// Gives the program a path, and records the module and the room of each query. Both queries cut a path that is longer
// than their room, as the system does.
class ProgramPath {
 public:
  explicit ProgramPath(std::string path) : path_(std::move(path)) { current = this; }
  ~ProgramPath() { current = nullptr; }
  ProgramPath(const ProgramPath&) = delete;
  ProgramPath& operator=(const ProgramPath&) = delete;
  const std::vector<DWORD>& Rooms() const { return rooms_; }

 private:
  template <typename Character>
  DWORD Write(HMODULE module, Character* text, DWORD room) {
    EXPECT_EQ(module, nullptr);
    rooms_.push_back(room);
    const size_t length = std::min<size_t>(path_.size(), room);
    std::copy_n(path_.begin(), length, text);
    if (length < room) text[length] = 0;
    if (length == room && sizeof(Character) == 1) text[room - 1] = 0;
    return static_cast<DWORD>(length);
  }
  static DWORD WINAPI Narrow(HMODULE module, LPSTR text, DWORD room) { return current->Write(module, text, room); }
  static DWORD WINAPI Wide(HMODULE module, LPWSTR text, DWORD room) { return current->Write(module, text, room); }

  static ProgramPath* current;
  std::string path_;
  std::vector<DWORD> rooms_;
  ImportHook narrow_{"kernel32.dll", "GetModuleFileNameA", &Narrow};
  ImportHook wide_{"kernel32.dll", "GetModuleFileNameW", &Wide};
};

ProgramPath* ProgramPath::current = nullptr;

TEST(ExecutableFolder, IsThePathWithoutItsLastPart) {
  const ProgramPath path("C:\\some\\folder\\program.exe");
  EXPECT_EQ(ExecutableFolder(), L"C:\\some\\folder");
  EXPECT_THAT(path.Rooms(), ElementsAre(260));
}

TEST(ExecutableFolder, OfALongPathIsReadWithTwiceTheRoom) {
  const std::string folder = "C:\\" + std::string(600, 'x');
  const ProgramPath path(folder + "\\program.exe");
  EXPECT_EQ(ExecutableFolder(), std::wstring(folder.begin(), folder.end()));
  EXPECT_THAT(path.Rooms(), ElementsAre(260, 520, 1040));
}

TEST(ExecutableFolder, OfAPathThatFillsTheRoomIsReadAgain) {
  const std::string folder = "C:\\" + std::string(260 - 3 - 12, 'x');
  const ProgramPath path(folder + "\\program.exe");
  EXPECT_EQ(ExecutableFolder(), std::wstring(folder.begin(), folder.end()));
  EXPECT_THAT(path.Rooms(), ElementsAre(260, 520));
}

TEST(NarrowExecutablePath, IsWhatTheSystemReportsInARoomOf260) {
  const ProgramPath path("C:\\some\\folder\\program.exe");
  EXPECT_EQ(NarrowExecutablePath(), "C:\\some\\folder\\program.exe");
  EXPECT_THAT(path.Rooms(), ElementsAre(260));
}

}  // namespace
}  // namespace vantro::test
