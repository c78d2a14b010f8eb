// The key store over the real Data Protection API and real files, in a separate local application data folder.
#include "services/database_key_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <dpapi.h>

#include <string>

#include "tests/support/import_hook.h"
#include "tests/unit/services/key_store_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// The variable that passes the folder of the key to a second process of this program.
constexpr wchar_t kWriterFolder[] = L"VANTRO_TEST_KEY_FOLDER";
constexpr DWORD kMachineFlags = 4;

// Returns the bytes as the Data Protection API encrypts them with the store's flags.
std::string Wrapped(std::vector<uint8_t> bytes) {
  DATA_BLOB input{static_cast<DWORD>(bytes.size()), bytes.data()};
  DATA_BLOB output{};
  EXPECT_TRUE(CryptProtectData(&input, L"other", nullptr, nullptr, nullptr, kMachineFlags, &output));
  std::string text(reinterpret_cast<char*>(output.pbData), output.cbData);
  LocalFree(output.pbData);
  return text;
}

class DatabaseKeyStoreTest : public KeyStoreTest {
 protected:
  // Writes a damaged file and expects the store to replace it with a new key.
  void ExpectReplaced(const std::string& damaged, const char* logLine) {
    LeaveFile(damaged);
    LogCapture log;
    EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
    EXPECT_EQ(log.Count(logLine), 1);
    const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
    EXPECT_EQ(key.size(), 32u);
    EXPECT_EQ(DatabaseKeyStore::LoadKey(), key);
  }
};

TEST_F(DatabaseKeyStoreTest, FirstStartSavesTheKeyThatLaterStartsReturn) {
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

TEST_F(DatabaseKeyStoreTest, ANewFileGetsANewKey) {
  const std::vector<uint8_t> first = DatabaseKeyStore::GetOrCreateKey();
  std::filesystem::remove(KeyFile());
  EXPECT_NE(DatabaseKeyStore::GetOrCreateKey(), first);
}

TEST_F(DatabaseKeyStoreTest, FileIsTheWholeBlobWithItsDescription) {
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

TEST_F(DatabaseKeyStoreTest, NeitherFileNorLogHoldsThePlainKey) {
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  const std::string text(key.begin(), key.end());
  EXPECT_EQ(ReadFileBytes(KeyFile()).find(text), std::string::npos);
  EXPECT_EQ(ReadFileBytes("vantro_debug.log").find(text), std::string::npos);
}

TEST_F(DatabaseKeyStoreTest, FileAbove64KiBIsReplacedUnread) {
  LeaveFile(std::string(64 * 1024, 'x'));
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_EQ(log_.Count("ERROR DatabaseKeyStore: CryptUnprotectData failed"), 1);
  LeaveFile(std::string(64 * 1024 + 1, 'x'));
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  EXPECT_EQ(log_.Count("ERROR DatabaseKeyStore: CryptUnprotectData failed"), 1);
  EXPECT_EQ(key.size(), 32u);
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), key);
}

TEST_F(DatabaseKeyStoreTest, LoadAloneMakesTheFolderButNoFile) {
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

TEST_F(DatabaseKeyStoreTest, DamagedFileIsReplacedByANewKey) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  const std::string whole = ReadFileBytes(KeyFile());
  std::string firstFlipped = whole, lastFlipped = whole;
  firstFlipped.front() = static_cast<char>(~firstFlipped.front());
  lastFlipped.back() = static_cast<char>(~lastFlipped.back());
  for (const std::string& damaged : {whole.substr(0, whole.size() / 2), firstFlipped, lastFlipped}) {
    ExpectReplaced(damaged, "ERROR DatabaseKeyStore: CryptUnprotectData failed");
  }
}

TEST_F(DatabaseKeyStoreTest, FileWithAKeyOfAnotherSizeIsReplaced) {
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

TEST_F(DatabaseKeyStoreTest, KeyOfAnotherLengthIsNotSaved) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  const std::string before = ReadFileBytes(KeyFile());
  for (size_t length : {0u, 31u, 33u}) EXPECT_FALSE(DatabaseKeyStore::SaveKey(SampleKey(length))) << length;
  EXPECT_EQ(ReadFileBytes(KeyFile()), before);
}

BOOL WINAPI RefuseProtection(DATA_BLOB*, LPCWSTR, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*, DWORD, DATA_BLOB*) {
  return FALSE;
}

TEST_F(DatabaseKeyStoreTest, KeyThatCannotBeWrappedIsNotReturned) {
  const ImportHook hook("crypt32.dll", "CryptProtectData", RefuseProtection);
  LogCapture log;

  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());

  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: CryptProtectData failed"));
  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to save key"));
  EXPECT_FALSE(std::filesystem::exists(KeyFile()));
}

TEST_F(DatabaseKeyStoreTest, PathIsInTheLocalAppDataFolder) {
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), appData_.path().wstring() + L"\\Vantro\\db.key");
}

// The test below starts this one in a separate process.
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
