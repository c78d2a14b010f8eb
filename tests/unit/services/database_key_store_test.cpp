// The key store over the real Data Protection API and real files, in a local application data folder of the test's own.
#include "services/database_key_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <bcrypt.h>
#include <dpapi.h>
#include <shlobj.h>

#include <numeric>
#include <string>

#include "tests/support/local_app_data.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"
#include "tests/unit/shell/import_hook.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// Tells a second process of this program where to save its key.
constexpr wchar_t kWriterFolder[] = L"VANTRO_TEST_KEY_FOLDER";
constexpr DWORD kMachineFlags = 4;

std::vector<uint8_t> SampleKey(size_t length = 32) {
  std::vector<uint8_t> key(length);
  std::iota(key.begin(), key.end(), uint8_t{1});
  return key;
}

// What the Data Protection API makes of the bytes under the store's flags.
std::string Wrapped(std::vector<uint8_t> bytes) {
  DATA_BLOB input{static_cast<DWORD>(bytes.size()), bytes.data()};
  DATA_BLOB output{};
  EXPECT_TRUE(CryptProtectData(&input, L"other", nullptr, nullptr, nullptr, kMachineFlags, &output));
  std::string text(reinterpret_cast<char*>(output.pbData), output.cbData);
  LocalFree(output.pbData);
  return text;
}

class DatabaseKeyStoreTest : public testing::Test {
 protected:
  std::filesystem::path Folder() const { return appData_ / "Vantro"; }
  std::filesystem::path KeyFile() const { return Folder() / "db.key"; }
  void LeaveFile(const std::string& bytes) {
    std::filesystem::create_directories(Folder());
    WriteFileBytes(KeyFile(), bytes);
  }
  // Leaves a damaged file, and expects a new key in its place.
  void ExpectReplaced(const std::string& damaged, const char* logLine) {
    LeaveFile(damaged);
    LogCapture log;
    EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
    EXPECT_EQ(log.Count(logLine), 1);
    const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
    EXPECT_EQ(key.size(), 32u);
    EXPECT_EQ(DatabaseKeyStore::LoadKey(), key);
  }

  ScratchFolder appData_;
  LocalAppDataAt redirection_{appData_.path()};
  LogCapture log_;
};

TEST_F(DatabaseKeyStoreTest, FirstStartMakesFolderAndFileAndTheSameKeyComesBackOnEveryLaterCall) {
  ASSERT_FALSE(std::filesystem::exists(Folder()));
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  EXPECT_EQ(key.size(), 32u);
  EXPECT_TRUE(std::filesystem::is_regular_file(KeyFile()));
  EXPECT_EQ(DatabaseKeyStore::GetOrCreateKey(), key);
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), key);
  EXPECT_THAT(log_.Lines(), ElementsAre("INFO DatabaseKeyStore: Key saved successfully",
                                        "INFO DatabaseKeyStore: Key loaded successfully",
                                        "INFO DatabaseKeyStore: Key loaded successfully"));
}

TEST_F(DatabaseKeyStoreTest, TwoStoresGetTwoKeys) {
  const std::vector<uint8_t> first = DatabaseKeyStore::GetOrCreateKey();
  std::filesystem::remove(KeyFile());
  EXPECT_NE(DatabaseKeyStore::GetOrCreateKey(), first);
}

TEST_F(DatabaseKeyStoreTest, FileIsTheWholeBlobWithItsDescriptionAndUnwrapsToTheKey) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  std::string file = ReadFileBytes(KeyFile());
  DATA_BLOB input{static_cast<DWORD>(file.size()), reinterpret_cast<BYTE*>(file.data())};
  DATA_BLOB output{};
  wchar_t* description = nullptr;
  ASSERT_TRUE(CryptUnprotectData(&input, &description, nullptr, nullptr, nullptr, kMachineFlags, &output));
  EXPECT_STREQ(description, L"Vantro Database Key");
  EXPECT_EQ(std::vector<uint8_t>(output.pbData, output.pbData + output.cbData), SampleKey());
  LocalFree(description);
  LocalFree(output.pbData);
}

TEST_F(DatabaseKeyStoreTest, KeyNeverStandsInTheClear) {
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  const std::string text(key.begin(), key.end());
  EXPECT_EQ(ReadFileBytes(KeyFile()).find(text), std::string::npos);
  EXPECT_EQ(ReadFileBytes("vantro_debug.log").find(text), std::string::npos);
}

TEST_F(DatabaseKeyStoreTest, AFileAbove64KiBIsNeitherReadNorUnwrappedAndIsReplaced) {
  LeaveFile(std::string(64 * 1024, 'x'));
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_EQ(log_.Count("ERROR DatabaseKeyStore: CryptUnprotectData failed"), 1);
  LeaveFile(std::string(64 * 1024 + 1, 'x'));
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  EXPECT_EQ(log_.Count("ERROR DatabaseKeyStore: CryptUnprotectData failed"), 1);
  EXPECT_EQ(key.size(), 32u);
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), key);
}

TEST_F(DatabaseKeyStoreTest, MereLoadMakesTheFolderButNoFile) {
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_TRUE(std::filesystem::is_directory(Folder()));
  EXPECT_FALSE(std::filesystem::exists(KeyFile()));
  EXPECT_THAT(log_.Lines(), IsEmpty());
}

TEST_F(DatabaseKeyStoreTest, FileOfNoBytesIsReplacedByANewKey) {
  ExpectReplaced("", "ERROR DatabaseKeyStore: CryptUnprotectData failed");
}

TEST_F(DatabaseKeyStoreTest, FileOfGarbageIsReplacedByANewKey) {
  ExpectReplaced(std::string(200, 'x'), "ERROR DatabaseKeyStore: CryptUnprotectData failed");
}

TEST_F(DatabaseKeyStoreTest, FileCutShortOrFlippedAtItsEndsIsReplacedByANewKey) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  const std::string whole = ReadFileBytes(KeyFile());
  std::string firstFlipped = whole, lastFlipped = whole;
  firstFlipped.front() = static_cast<char>(~firstFlipped.front());
  lastFlipped.back() = static_cast<char>(~lastFlipped.back());
  for (const std::string& damaged : {whole.substr(0, whole.size() / 2), firstFlipped, lastFlipped}) {
    ExpectReplaced(damaged, "ERROR DatabaseKeyStore: CryptUnprotectData failed");
  }
}

TEST_F(DatabaseKeyStoreTest, FileThatUnwrapsToAnotherSizeIsReplacedByANewKey) {
  for (size_t length : {1u, 31u, 33u}) {
    ExpectReplaced(Wrapped(SampleKey(length)), "ERROR DatabaseKeyStore: Decrypted key has wrong size");
  }
}

TEST_F(DatabaseKeyStoreTest, DirectoryInPlaceOfTheFileGivesNoKey) {
  std::filesystem::create_directories(KeyFile());
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_THAT(log_.Lines(), IsEmpty());
  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());
  EXPECT_THAT(log_.Lines(), ElementsAre("ERROR DatabaseKeyStore: Failed to open key file for writing",
                                        "ERROR DatabaseKeyStore: Failed to save key"));
}

TEST_F(DatabaseKeyStoreTest, WithoutALocalAppDataFolderThereIsNoKey) {
  std::filesystem::remove_all(appData_.path());
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), L"");
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_FALSE(DatabaseKeyStore::SaveKey(SampleKey()));
  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());
  EXPECT_THAT(log_.Lines(), ElementsAre("ERROR DatabaseKeyStore: Failed to save key"));
}

TEST_F(DatabaseKeyStoreTest, KeyOfAnotherLengthIsRefusedAndLeavesTheFileAsItIs) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  const std::string before = ReadFileBytes(KeyFile());
  for (size_t length : {0u, 31u, 33u}) EXPECT_FALSE(DatabaseKeyStore::SaveKey(SampleKey(length))) << length;
  EXPECT_EQ(ReadFileBytes(KeyFile()), before);
}

NTSTATUS WINAPI RefuseRandom(BCRYPT_ALG_HANDLE, PUCHAR, ULONG, ULONG) { return static_cast<NTSTATUS>(0xC0000001); }

TEST_F(DatabaseKeyStoreTest, WithoutRandomBytesThereIsNoKeyAndNoFile) {
  const ImportHook hook("bcrypt.dll", "BCryptGenRandom", reinterpret_cast<void*>(RefuseRandom));
  LogCapture log;

  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());

  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to generate random key"));
  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to generate key"));
  EXPECT_FALSE(std::filesystem::exists(KeyFile()));
}

BOOL WINAPI RefuseProtection(DATA_BLOB*, LPCWSTR, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*, DWORD, DATA_BLOB*) {
  return FALSE;
}

TEST_F(DatabaseKeyStoreTest, KeyThatCannotBeWrappedIsNotHandedOutAndLeavesNoFile) {
  const ImportHook hook("crypt32.dll", "CryptProtectData", reinterpret_cast<void*>(RefuseProtection));
  LogCapture log;

  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());

  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: CryptProtectData failed"));
  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to save key"));
  EXPECT_FALSE(std::filesystem::exists(KeyFile()));
}

// What the store asks of the Data Protection API beside its input and output, as one line a call.
class ProtectionCalls {
 public:
  ProtectionCalls() { current = this; }
  ~ProtectionCalls() { current = nullptr; }
  ProtectionCalls(const ProtectionCalls&) = delete;
  ProtectionCalls& operator=(const ProtectionCalls&) = delete;
  const std::vector<std::string>& Lines() const { return lines_; }

 private:
  static BOOL WINAPI Protect(DATA_BLOB* input, LPCWSTR description, DATA_BLOB* entropy, PVOID reserved,
                             CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
    const std::wstring text = description ? description : L"(none)";
    current->Note("protect '" + std::string(text.begin(), text.end()) + "'", entropy, reserved, prompt, flags);
    return reinterpret_cast<decltype(&CryptProtectData)>(current->protect_.Original())(input, description, entropy,
                                                                                       reserved, prompt, flags, output);
  }
  static BOOL WINAPI Unprotect(DATA_BLOB* input, LPWSTR* description, DATA_BLOB* entropy, PVOID reserved,
                               CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
    current->Note(description ? "unprotect with description" : "unprotect", entropy, reserved, prompt, flags);
    return reinterpret_cast<decltype(&CryptUnprotectData)>(current->unprotect_.Original())(
        input, description, entropy, reserved, prompt, flags, output);
  }
  void Note(std::string line, const void* entropy, const void* reserved, const void* prompt, DWORD flags) {
    if (entropy) line += " entropy";
    if (reserved) line += " reserved";
    if (prompt) line += " prompt";
    lines_.push_back(line + " flags " + std::to_string(flags));
  }

  static ProtectionCalls* current;
  std::vector<std::string> lines_;
  ImportHook protect_{"crypt32.dll", "CryptProtectData", reinterpret_cast<void*>(&Protect)};
  ImportHook unprotect_{"crypt32.dll", "CryptUnprotectData", reinterpret_cast<void*>(&Unprotect)};
};

ProtectionCalls* ProtectionCalls::current = nullptr;

TEST_F(DatabaseKeyStoreTest, WrapsAndUnwrapsForTheMachineWithoutEntropyOrPrompt) {
  const ProtectionCalls calls;
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), SampleKey());
  EXPECT_THAT(calls.Lines(), ElementsAre("protect 'Vantro Database Key' flags 4", "unprotect flags 4"));
}

HRESULT WINAPI RefuseAllButLocalAppData(HWND owner, int folder, HANDLE token, DWORD flags, LPWSTR path) {
  if (owner || folder != CSIDL_LOCAL_APPDATA || token || flags != 0) return E_INVALIDARG;
  lstrcpyW(path, L"C:\\here");
  return S_OK;
}

TEST_F(DatabaseKeyStoreTest, AsksForTheLocalFolderAndNotTheRoamingOne) {
  const ImportHook hook("shell32.dll", "SHGetFolderPathW", reinterpret_cast<void*>(RefuseAllButLocalAppData));
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), L"C:\\here\\Vantro\\db.key");
}

TEST_F(DatabaseKeyStoreTest, PathIsTheKeyFileOfTheLocalAppDataFolder) {
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), appData_.path().wstring() + L"\\Vantro\\db.key");
}

// Runs in a process of its own, started by the test below.
TEST(DISABLED_KeyWriter, SavesAKey) {
  wchar_t folder[MAX_PATH] = L"";
  ASSERT_NE(GetEnvironmentVariableW(kWriterFolder, folder, MAX_PATH), 0u);
  const LocalAppDataAt redirection(folder);
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
}

TEST_F(DatabaseKeyStoreTest, FileThatAnotherProcessWroteUnwraps) {
  wchar_t program[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, program, MAX_PATH);
  std::wstring command =
      std::wstring(L"\"") + program + L"\" --gtest_also_run_disabled_tests --gtest_filter=DISABLED_KeyWriter.SavesAKey";
  SetEnvironmentVariableW(kWriterFolder, appData_.path().c_str());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(
      CreateProcessW(program, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD exitCode = 1;
  GetExitCodeProcess(process.hProcess, &exitCode);
  CloseHandle(process.hThread);
  CloseHandle(process.hProcess);
  SetEnvironmentVariableW(kWriterFolder, nullptr);

  EXPECT_EQ(exitCode, 0u);
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), SampleKey());
}

}  // namespace
}  // namespace vantro::test
