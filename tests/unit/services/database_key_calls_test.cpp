// The key store's calls of the system: their arguments, and that all memory is freed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <bcrypt.h>
#include <dpapi.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/unit/services/key_store_fixture.h"

namespace vantro::test {
namespace {

using testing::IsEmpty;

constexpr ULONG kSystemGenerator = 2;

// The memory that the Data Protection API returned, and the memory that was freed.
std::vector<void*> blobs, freed;
decltype(&CryptProtectData) originalProtect;
decltype(&CryptUnprotectData) originalUnprotect;
decltype(&LocalFree) originalFree;
int unwrappings;

BOOL WINAPI Protect(DATA_BLOB* input, LPCWSTR description, DATA_BLOB* entropy, PVOID reserved,
                    CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
  const BOOL done = originalProtect(input, description, entropy, reserved, prompt, flags, output);
  blobs.push_back(output->pbData);
  return done;
}

BOOL WINAPI Unprotect(DATA_BLOB* input, LPWSTR* description, DATA_BLOB* entropy, PVOID reserved,
                      CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
  ++unwrappings;
  const BOOL done = originalUnprotect(input, description, entropy, reserved, prompt, flags, output);
  if (done) blobs.push_back(output->pbData);
  return done;
}

HLOCAL WINAPI Free(HLOCAL memory) {
  freed.push_back(memory);
  return originalFree(memory);
}

struct RandomCall {
  BCRYPT_ALG_HANDLE algorithm;
  ULONG size, flags;
};
std::vector<RandomCall> randomCalls;

// Fills the bytes with 1, 2, 3 and so on.
NTSTATUS WINAPI CountUp(BCRYPT_ALG_HANDLE algorithm, PUCHAR bytes, ULONG size, ULONG flags) {
  randomCalls.push_back({algorithm, size, flags});
  for (ULONG at = 0; at < size; ++at) bytes[at] = static_cast<UCHAR>(at + 1);
  return 0;
}

std::vector<std::pair<std::wstring, SECURITY_ATTRIBUTES*>> foldersMade;

BOOL WINAPI MakeNoFolder(LPCWSTR path, SECURITY_ATTRIBUTES* attributes) {
  foldersMade.emplace_back(path, attributes);
  return FALSE;
}

class DatabaseKeyCalls : public KeyStoreTest {
 protected:
  DatabaseKeyCalls() {
    blobs.clear();
    freed.clear();
    randomCalls.clear();
    foldersMade.clear();
    unwrappings = 0;
    originalProtect = protect_.Original<decltype(originalProtect)>();
    originalUnprotect = unprotect_.Original<decltype(originalUnprotect)>();
    originalFree = free_.Original<decltype(originalFree)>();
  }

  static int TimesFreed(const void* memory) { return static_cast<int>(std::count(freed.begin(), freed.end(), memory)); }

  const std::vector<uint8_t> key_ = std::vector<uint8_t>(32, 7);
  ImportHook protect_{"crypt32.dll", "CryptProtectData", Protect};
  ImportHook unprotect_{"crypt32.dll", "CryptUnprotectData", Unprotect};
  ImportHook free_{"kernel32.dll", "LocalFree", Free};
};

TEST_F(DatabaseKeyCalls, EachBlobOfTheApiIsFreedOnce) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(key_));
  ASSERT_EQ(DatabaseKeyStore::LoadKey(), key_);
  ASSERT_EQ(blobs.size(), 2u);
  EXPECT_EQ(TimesFreed(blobs[0]), 1);
  EXPECT_EQ(TimesFreed(blobs[1]), 1);
}

TEST_F(DatabaseKeyCalls, BlobIsFreedAlsoWhenTheFileCannotBeWritten) {
  std::filesystem::create_directories(KeyFile());
  EXPECT_FALSE(DatabaseKeyStore::SaveKey(key_));
  ASSERT_EQ(blobs.size(), 1u);
  EXPECT_EQ(TimesFreed(blobs[0]), 1);
}

TEST_F(DatabaseKeyCalls, NothingIsFreedWhenNothingWasUnwrapped) {
  LeaveFile("garbage");
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_EQ(TimesFreed(nullptr), 0);
}

TEST_F(DatabaseKeyCalls, KeyIsThirtyTwoBytesOfTheSystemsPreferredGenerator) {
  const ImportHook random("bcrypt.dll", "BCryptGenRandom", CountUp);
  const std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  ASSERT_EQ(key.size(), 32u);
  for (size_t at = 0; at < key.size(); ++at) EXPECT_EQ(key[at], at + 1);
  ASSERT_EQ(randomCalls.size(), 1u);
  EXPECT_EQ(randomCalls[0].algorithm, nullptr);
  EXPECT_EQ(randomCalls[0].size, 32u);
  EXPECT_EQ(randomCalls[0].flags, kSystemGenerator);
}

TEST_F(DatabaseKeyCalls, FolderThatIsAbsentIsMadeWithoutAttributes) {
  const ImportHook make("kernel32.dll", "CreateDirectoryW", MakeNoFolder);
  DatabaseKeyStore::GetKeyFilePath();
  ASSERT_EQ(foldersMade.size(), 1u);
  EXPECT_EQ(foldersMade[0].first, appData_.path().wstring() + L"\\Vantro");
  EXPECT_EQ(foldersMade[0].second, nullptr);
}

TEST_F(DatabaseKeyCalls, FolderThatCannotBeMadeStillHasItsPath) {
  const ImportHook make("kernel32.dll", "CreateDirectoryW", MakeNoFolder);
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), appData_.path().wstring() + L"\\Vantro\\db.key");
}

// The attributes of the key file. Other files have the system's.
DWORD keyFileAttributes;
decltype(&GetFileAttributesW) originalAttributes;
DWORD WINAPI AttributesOf(LPCWSTR path) {
  if (std::wstring(path).ends_with(L"\\db.key")) return keyFileAttributes;
  return originalAttributes(path);
}

TEST_F(DatabaseKeyCalls, OnlyAFolderOrAFileWithoutAttributesIsLeftUnread) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(key_));
  const ImportHook attributes("kernel32.dll", "GetFileAttributesW", AttributesOf);
  originalAttributes = attributes.Original<decltype(originalAttributes)>();
  for (const DWORD unread : {INVALID_FILE_ATTRIBUTES, DWORD{FILE_ATTRIBUTE_DIRECTORY}}) {
    keyFileAttributes = unread;
    EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty()) << unread;
  }
  EXPECT_EQ(unwrappings, 0);
  for (const DWORD read : {DWORD{0}, DWORD{FILE_ATTRIBUTE_READONLY}, DWORD{FILE_ATTRIBUTE_ARCHIVE}}) {
    keyFileAttributes = read;
    EXPECT_EQ(DatabaseKeyStore::LoadKey(), key_) << read;
  }
}

TEST_F(DatabaseKeyCalls, FileThatAnotherProgramHasOpenedAloneIsNotUnwrapped) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(key_));
  const HANDLE alone =
      CreateFileW(KeyFile().c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  ASSERT_NE(alone, INVALID_HANDLE_VALUE);
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  CloseHandle(alone);
  EXPECT_EQ(unwrappings, 0);
}

int ReadNothing(int, void*, unsigned) { return -1; }

TEST_F(DatabaseKeyCalls, FileThatCannotBeReadIsNotUnwrapped) {
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(key_));
  const ImportHook read("msvcrt.dll", "_read", ReadNothing);
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_EQ(unwrappings, 0);
}

// Bytes that a file opened as text would change.
const std::string kTextLikeBytes("\r\n\n\x1A\0end", 8);
std::string bytesToUnwrap;

BOOL WINAPI ProtectAsText(DATA_BLOB*, LPCWSTR, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*, DWORD,
                          DATA_BLOB* output) {
  output->cbData = static_cast<DWORD>(kTextLikeBytes.size());
  output->pbData = static_cast<BYTE*>(LocalAlloc(LMEM_FIXED, kTextLikeBytes.size()));
  std::copy(kTextLikeBytes.begin(), kTextLikeBytes.end(), output->pbData);
  return TRUE;
}
BOOL WINAPI UnprotectNothing(DATA_BLOB* input, LPWSTR*, DATA_BLOB*, PVOID, CRYPTPROTECT_PROMPTSTRUCT*, DWORD,
                             DATA_BLOB*) {
  bytesToUnwrap.assign(reinterpret_cast<const char*>(input->pbData), input->cbData);
  return FALSE;
}

TEST_F(DatabaseKeyCalls, TheBlobsBytesAreWrittenAndReadUnchanged) {
  const ImportHook protect("crypt32.dll", "CryptProtectData", ProtectAsText);
  const ImportHook unprotect("crypt32.dll", "CryptUnprotectData", UnprotectNothing);
  LeaveFile("a longer file that is replaced");
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(key_));
  EXPECT_EQ(ReadFileBytes(KeyFile()), kTextLikeBytes);
  DatabaseKeyStore::LoadKey();
  EXPECT_EQ(bytesToUnwrap, kTextLikeBytes);
}

TEST_F(DatabaseKeyCalls, FolderWithTheFilesNameIsNotUnwrapped) {
  std::filesystem::create_directories(KeyFile());
  EXPECT_THAT(DatabaseKeyStore::LoadKey(), IsEmpty());
  EXPECT_EQ(unwrappings, 0);
}

}  // namespace
}  // namespace vantro::test
