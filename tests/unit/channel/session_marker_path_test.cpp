// The path of the session marker.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

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
    if (std::strcmp(name, "GetTempPath2W") == 0) {
      EXPECT_EQ(module, GetModuleHandleW(L"kernel32.dll"));
      return reinterpret_cast<FARPROC>(current->function_);
    }
    return current->hook_.Original<decltype(&GetProcAddress)>()(module, name);
  }

  static NewerTempPath* current;
  Function* function_;
  ImportHook hook_{"kernel32.dll", "GetProcAddress", &Find};
};

NewerTempPath* NewerTempPath::current = nullptr;

DWORD WINAPI FolderWithoutASeparator(DWORD room, LPWSTR folder) {
  EXPECT_EQ(room, static_cast<DWORD>(MAX_PATH + 1));
  lstrcpyW(folder, L"C:\\windows");
  return 10;
}

std::wstring fileInPlaceOfAFolder;
DWORD WINAPI FileInPlaceOfAFolder(DWORD, LPWSTR folder) {
  lstrcpyW(folder, fileInPlaceOfAFolder.c_str());
  return static_cast<DWORD>(fileInPlaceOfAFolder.size());
}

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
  const ScratchFolder folder;
  fileInPlaceOfAFolder = (folder / "file").wstring();
  WriteFileBytes(folder / "file", "");
  const NewerTempPath newer(&FileInPlaceOfAFolder);
  for (DWORD attributes : {FILE_ATTRIBUTE_NORMAL, FILE_ATTRIBUTE_READONLY}) {
    SetFileAttributesW(fileInPlaceOfAFolder.c_str(), attributes);
    EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName) << attributes;
  }
  SetFileAttributesW(fileInPlaceOfAFolder.c_str(), FILE_ATTRIBUTE_NORMAL);
}

TEST(SessionMarkerPath, ComesFromTheNewerFunctionWithASeparatorAsNeeded) {
  const NewerTempPath newer(&FolderWithoutASeparator);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), std::string("C:\\windows\\") + kName);
}

DWORD WINAPI FolderWithASlash(DWORD, LPWSTR folder) {
  lstrcpyW(folder, L"C:/windows/");
  return 11;
}

TEST(SessionMarkerPath, GetsNoSeparatorAfterASlash) {
  const NewerTempPath newer(&FolderWithASlash);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), std::string("C:/windows/") + kName);
}

// Leaves a folder in the room, but reports a failure.
DWORD WINAPI FolderOfAFailedCall(DWORD, LPWSTR folder) {
  lstrcpyW(folder, L"C:\\windows\\");
  return 0;
}

TEST(SessionMarkerPath, IsTheBareNameWhenTheSystemReportsNoFolder) {
  const NewerTempPath newer(&FolderOfAFailedCall);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), kName);
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

// Lets the process have a code page, and records the conversions: code page, flags, length of the text, and which of
// the last two arguments are null.
class CodePage {
 public:
  explicit CodePage(UINT codePage) : codePage_(codePage) { current = this; }
  ~CodePage() { current = nullptr; }
  CodePage(const CodePage&) = delete;
  CodePage& operator=(const CodePage&) = delete;
  std::vector<std::string> lines;

 private:
  static UINT WINAPI Ansi() { return current->codePage_; }
  static int WINAPI Convert(UINT codePage, DWORD flags, LPCWCH wide, int length, LPSTR narrow, int room,
                            LPCCH replacement, LPBOOL replaced) {
    current->lines.push_back(std::to_string(codePage) + " flags " + std::to_string(flags) + " length " +
                             std::to_string(length) + (narrow ? " writes" : " measures") +
                             (replacement ? " replacement" : "") + (replaced ? " notices" : ""));
    return current->convert_.Original<decltype(&WideCharToMultiByte)>()(codePage, flags, wide, length, narrow, room,
                                                                        replacement, replaced);
  }

  static CodePage* current;
  UINT codePage_;
  ImportHook ansi_{"kernel32.dll", "GetACP", &Ansi};
  ImportHook convert_{"kernel32.dll", "WideCharToMultiByte", &Convert};
};

CodePage* CodePage::current = nullptr;

TEST(SessionMarkerPath, IsMeasuredWithoutSimilarCharactersAndThenWritten) {
  const NewerTempPath newer(&FolderWithASlash);
  const CodePage page(1252);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), std::string("C:/windows/") + kName);
  // WC_NO_BEST_FIT_CHARS
  EXPECT_THAT(page.lines,
              testing::ElementsAre("1252 flags 1024 length 54 measures notices", "1252 flags 1024 length 54 writes"));
}

// With UTF-8 Windows refuses other flags and an address for the replaced characters.
TEST(SessionMarkerPath, InUtf8IsRefusedForInvalidCharactersAlone) {
  const NewerTempPath newer(&FolderWithASlash);
  const CodePage page(CP_UTF8);
  EXPECT_EQ(MethodChannelHandler::ResolveNativeMarkerPath(), std::string("C:/windows/") + kName);
  // WC_ERR_INVALID_CHARS
  EXPECT_THAT(page.lines,
              testing::ElementsAre("65001 flags 128 length 54 measures", "65001 flags 128 length 54 writes"));
}

}  // namespace
}  // namespace vantro::test
