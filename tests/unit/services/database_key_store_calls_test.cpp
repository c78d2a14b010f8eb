// The key store's calls of the system whose effect only the call itself shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <windows.h>
// After windows.h.
#include <bcrypt.h>
#include <dpapi.h>
#include <shlobj.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tests/support/import_hook.h"
#include "tests/unit/services/key_store_fixture.h"

namespace vantro::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class KeyStoreCalls : public KeyStoreTest {};

NTSTATUS WINAPI RefuseRandom(BCRYPT_ALG_HANDLE, PUCHAR, ULONG, ULONG) { return static_cast<NTSTATUS>(0xC0000001); }

TEST_F(KeyStoreCalls, WithoutRandomBytesThereIsNoKeyAndNoFile) {
  const ImportHook hook("bcrypt.dll", "BCryptGenRandom", RefuseRandom);
  LogCapture log;

  EXPECT_THAT(DatabaseKeyStore::GetOrCreateKey(), IsEmpty());

  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to generate random key"));
  EXPECT_TRUE(log.Has("ERROR DatabaseKeyStore: Failed to generate key"));
  EXPECT_FALSE(std::filesystem::exists(KeyFile()));
}

// Fills with bytes of a known value, and returns a status that is a success without being 0.
NTSTATUS WINAPI FillWithSevens(BCRYPT_ALG_HANDLE algorithm, PUCHAR bytes, ULONG size, ULONG flags) {
  EXPECT_EQ(algorithm, nullptr);
  EXPECT_EQ(flags, 2u);
  std::fill(bytes, bytes + size, UCHAR{7});
  return 1;
}

TEST_F(KeyStoreCalls, All32BytesAreTheSystemsRandomOnes) {
  const ImportHook hook("bcrypt.dll", "BCryptGenRandom", FillWithSevens);
  EXPECT_EQ(DatabaseKeyStore::GetOrCreateKey(), std::vector<uint8_t>(32, 7));
}

// Records the calls of the Data Protection API as lines, without their input and output.
class ProtectionCalls {
 public:
  ProtectionCalls() { current = this; }
  ~ProtectionCalls() { current = nullptr; }
  ProtectionCalls(const ProtectionCalls&) = delete;
  ProtectionCalls& operator=(const ProtectionCalls&) = delete;
  const std::vector<std::string>& Lines() const { return lines_; }
  // The results of the API that have not been freed yet.
  size_t LeftAlive() const { return alive_.size(); }

 private:
  static BOOL WINAPI Protect(DATA_BLOB* input, LPCWSTR description, DATA_BLOB* entropy, PVOID reserved,
                             CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
    const std::wstring text = description ? description : L"(none)";
    current->Note("protect '" + std::string(text.begin(), text.end()) + "'", entropy, reserved, prompt, flags);
    const BOOL done = current->protect_.Original<decltype(&CryptProtectData)>()(input, description, entropy, reserved,
                                                                                prompt, flags, output);
    if (done) current->alive_.insert(output->pbData);
    return done;
  }
  static BOOL WINAPI Unprotect(DATA_BLOB* input, LPWSTR* description, DATA_BLOB* entropy, PVOID reserved,
                               CRYPTPROTECT_PROMPTSTRUCT* prompt, DWORD flags, DATA_BLOB* output) {
    current->Note(description ? "unprotect with description" : "unprotect", entropy, reserved, prompt, flags);
    const BOOL done = current->unprotect_.Original<decltype(&CryptUnprotectData)>()(input, description, entropy,
                                                                                    reserved, prompt, flags, output);
    if (done) current->alive_.insert(output->pbData);
    return done;
  }
  static HLOCAL WINAPI Free(HLOCAL memory) {
    current->alive_.erase(memory);
    return current->free_.Original<decltype(&LocalFree)>()(memory);
  }
  void Note(std::string line, const void* entropy, const void* reserved, const void* prompt, DWORD flags) {
    if (entropy) line += " entropy";
    if (reserved) line += " reserved";
    if (prompt) line += " prompt";
    lines_.push_back(line + " flags " + std::to_string(flags));
  }

  static ProtectionCalls* current;
  std::vector<std::string> lines_;
  std::set<void*> alive_;
  ImportHook free_{"kernel32.dll", "LocalFree", &Free};
  ImportHook protect_{"crypt32.dll", "CryptProtectData", &Protect};
  ImportHook unprotect_{"crypt32.dll", "CryptUnprotectData", &Unprotect};
};

ProtectionCalls* ProtectionCalls::current = nullptr;

TEST_F(KeyStoreCalls, WrapsAndUnwrapsForTheMachineWithoutEntropyOrPrompt) {
  const ProtectionCalls calls;
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  EXPECT_EQ(DatabaseKeyStore::LoadKey(), SampleKey());
  EXPECT_THAT(calls.Lines(), ElementsAre("protect 'Vantro Database Key' flags 4", "unprotect flags 4"));
}

TEST_F(KeyStoreCalls, WhatTheDataProtectionApiReturnsIsFreed) {
  const ProtectionCalls calls;
  ASSERT_TRUE(DatabaseKeyStore::SaveKey(SampleKey()));
  EXPECT_EQ(calls.LeftAlive(), 0u);
  DatabaseKeyStore::LoadKey();
  EXPECT_EQ(calls.LeftAlive(), 0u);
  std::filesystem::remove(KeyFile());
  std::filesystem::create_directory(KeyFile());  // no file can be opened there
  ASSERT_FALSE(DatabaseKeyStore::SaveKey(SampleKey()));
  EXPECT_EQ(calls.LeftAlive(), 0u);
}

HRESULT WINAPI RefuseAllButLocalAppData(HWND owner, int folder, HANDLE token, DWORD flags, LPWSTR path) {
  if (owner || folder != CSIDL_LOCAL_APPDATA || token || flags != 0) return E_INVALIDARG;
  lstrcpyW(path, L"C:\\here");
  return S_OK;
}

TEST_F(KeyStoreCalls, AsksForTheLocalFolderAndNotTheRoamingOne) {
  const ImportHook hook("shell32.dll", "SHGetFolderPathW", RefuseAllButLocalAppData);
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), L"C:\\here\\Vantro\\db.key");
}

BOOL WINAPI RefuseDirectory(LPCWSTR, LPSECURITY_ATTRIBUTES) {
  ADD_FAILURE() << "a directory is created";
  return FALSE;
}

TEST_F(KeyStoreCalls, FolderThatIsThereIsNotCreatedAgain) {
  std::filesystem::create_directories(Folder());
  const ImportHook hook("kernel32.dll", "CreateDirectoryW", RefuseDirectory);
  EXPECT_EQ(DatabaseKeyStore::GetKeyFilePath(), KeyFile().wstring());
}

}  // namespace
}  // namespace vantro::test
