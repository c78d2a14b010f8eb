// The path of the session marker.
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <string>

#include "channel/method_channel_handler.h"
#include "tests/support/import_hook.h"
#include "tests/support/scratch_folder.h"

namespace vantro::test {
namespace {

constexpr char kName[] = "vantro_windows_fullscreen_native_marker.txt";

// Replaces GetTempPath2W by the given function. With null the function is missing.
class NewerTempPath {
 public:
  using Function = DWORD WINAPI(DWORD, LPWSTR);
  explicit NewerTempPath(Function* function) : function_(function) { current = this; }
  ~NewerTempPath() { current = nullptr; }
  NewerTempPath(const NewerTempPath&) = delete;
  NewerTempPath& operator=(const NewerTempPath&) = delete;

 private:
  static FARPROC WINAPI Find(HMODULE module, LPCSTR name) {
    if (std::strcmp(name, "GetTempPath2W") == 0) return reinterpret_cast<FARPROC>(current->function_);
    return reinterpret_cast<decltype(&GetProcAddress)>(current->hook_.Original())(module, name);
  }

  static NewerTempPath* current;
  Function* function_;
  ImportHook hook_{"kernel32.dll", "GetProcAddress", reinterpret_cast<void*>(&Find)};
};

NewerTempPath* NewerTempPath::current = nullptr;

DWORD WINAPI FolderWithoutASeparator(DWORD, LPWSTR folder) {
  lstrcpyW(folder, L"C:\\windows");
  return 10;
}

DWORD WINAPI FileInPlaceOfAFolder(DWORD room, LPWSTR folder) { return GetModuleFileNameW(nullptr, folder, room); }

// Returns a length that is too large for the buffer, although the buffer contains a valid folder.
DWORD WINAPI FolderThatIsTooLong(DWORD room, LPWSTR folder) {
  lstrcpyW(folder, L"C:\\windows\\");
  return room;
}

TEST(SessionMarkerPath, IsTheFileInTheTemporaryFolder) {
  const ScratchFolder folder;
  const TemporaryFolderAt temporary(folder.path());
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), (folder / kName).string());
}

TEST(SessionMarkerPath, IsTheBareNameWithoutATemporaryFolder) {
  const TemporaryFolderAt temporary(L"C:\\no\\such\\folder");
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName);
}

TEST(SessionMarkerPath, IsTheBareNameWhenTheFolderCannotBeExpressed) {
  if (GetACP() == CP_UTF8) GTEST_SKIP() << "every name can be expressed in this code page";
  const ScratchFolder folder;
  const std::filesystem::path odd = folder / L"\x65E5\x672C";
  std::filesystem::create_directory(odd);
  const TemporaryFolderAt temporary(odd);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName);
}

TEST(SessionMarkerPath, IsTheBareNameWhenTheFolderIsAFile) {
  const NewerTempPath newer(&FileInPlaceOfAFolder);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName);
}

TEST(SessionMarkerPath, ComesFromTheNewerFunctionWithASeparatorAsNeeded) {
  const NewerTempPath newer(&FolderWithoutASeparator);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), std::string("C:\\windows\\") + kName);
}

TEST(SessionMarkerPath, ComesFromTheOlderFunctionWithoutTheNewer) {
  const ScratchFolder folder;
  const TemporaryFolderAt temporary(folder.path());
  const NewerTempPath newer(nullptr);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), (folder / kName).string());
}

TEST(SessionMarkerPath, IsTheBareNameWhenTheFoldersNameIsTooLong) {
  const NewerTempPath newer(&FolderThatIsTooLong);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName);
}

std::string Narrowed(const std::wstring& wide, UINT codePage) {
  char text[MAX_PATH] = "";
  WideCharToMultiByte(codePage, 0, wide.c_str(), -1, text, MAX_PATH, nullptr, nullptr);
  return text;
}

TEST(SessionMarkerPath, IsInTheCodePageOfTheFileFunctions) {
  const ScratchFolder folder;
  const std::filesystem::path accented = folder / L"\x00E9";  // a character with different codes in the two code pages
  std::filesystem::create_directory(accented);
  const TemporaryFolderAt temporary(accented);
  const std::wstring path = (accented / kName).wstring();
  ASSERT_NE(Narrowed(path, GetACP()), Narrowed(path, GetOEMCP()));
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), Narrowed(path, GetACP()));
  SetFileApisToOEM();
  const std::string inOem = MethodChannelHandler::ResolveNativeMarkerPath();
  SetFileApisToANSI();
  EXPECT_EQ(inOem, Narrowed(path, GetOEMCP()));
}

}  // namespace
}  // namespace vantro::test
