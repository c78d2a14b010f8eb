#include "services/database_key_store.h"

#include <windows.h>
// After windows.h.
#include <bcrypt.h>
#include <dpapi.h>
#include <shlobj.h>

#include <filesystem>
#include <fstream>
#include <optional>

#include "common/log.h"

namespace vantro {

namespace {

constexpr size_t kKeyLength = 32;
constexpr std::streamoff kLargestFile = std::streamoff{64} * 1024;  // an encrypted key takes about 300 bytes
constexpr wchar_t kFolderName[] = L"\\Vantro";
constexpr wchar_t kFileName[] = L"\\db.key";
constexpr wchar_t kBlobDescription[] = L"Vantro Database Key";
// Every account of this computer can decrypt the key: it belongs to the machine, like the database beside it.
constexpr DWORD kProtectionFlags = CRYPTPROTECT_LOCAL_MACHINE;

// A result of the Data Protection API. Owns its memory.
class ProtectedBlob {
 public:
  ProtectedBlob() = default;
  ~ProtectedBlob() {
    if (blob_.pbData) LocalFree(blob_.pbData);
  }
  ProtectedBlob(const ProtectedBlob&) = delete;
  ProtectedBlob& operator=(const ProtectedBlob&) = delete;

  DATA_BLOB* out() { return &blob_; }
  const BYTE* data() const { return blob_.pbData; }
  size_t size() const { return blob_.cbData; }

 private:
  DATA_BLOB blob_{};
};

// The API takes its input through a non-const pointer but only reads it.
DATA_BLOB InputBlob(const std::vector<uint8_t>& bytes) {
  return {static_cast<DWORD>(bytes.size()), const_cast<BYTE*>(bytes.data())};
}

// Returns no value if the file cannot be opened or read, or if it is larger than any key file; such a file is not read
// into memory. An empty file has a value, which then fails to decrypt.
std::optional<std::vector<uint8_t>> ReadWholeFile(const std::wstring& path) {
  std::ifstream file(std::filesystem::path(path), std::ios::binary | std::ios::ate);
  const std::streamoff size = file.tellg();  // -1 if the file could not be opened
  if (size < 0 || size > kLargestFile) return std::nullopt;
  std::vector<uint8_t> content(static_cast<size_t>(size));
  file.seekg(0);
  if (!file.read(reinterpret_cast<char*>(content.data()), size)) return std::nullopt;
  return content;
}

// Replaces the file. Returns false if it cannot be opened. A full disk still counts as written: the next start cannot
// decrypt the file and generates a new key.
bool WriteWholeFile(const std::wstring& path, const ProtectedBlob& content) {
  std::ofstream file(std::filesystem::path(path), std::ios::binary);
  if (!file) return false;
  file.write(reinterpret_cast<const char*>(content.data()), static_cast<std::streamsize>(content.size()));
  return true;
}

std::vector<uint8_t> GenerateKey() {
  std::vector<uint8_t> key(kKeyLength);
  const NTSTATUS status =
      BCryptGenRandom(nullptr, key.data(), static_cast<ULONG>(key.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG);
  if (status >= 0) return key;
  LOG_ERROR("DatabaseKeyStore: Failed to generate random key");
  return {};
}

}  // namespace

std::wstring DatabaseKeyStore::GetKeyFilePath() {
  wchar_t localAppData[MAX_PATH] = L"";
  if (FAILED(SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA, nullptr, 0, localAppData))) return {};
  std::wstring path = localAppData;
  path += kFolderName;
  if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) CreateDirectoryW(path.c_str(), nullptr);
  return path + kFileName;
}

std::vector<uint8_t> DatabaseKeyStore::LoadKey() {
  const std::wstring path = GetKeyFilePath();
  const DWORD attributes = GetFileAttributesW(path.c_str());  // invalid for an empty path too
  if (attributes == INVALID_FILE_ATTRIBUTES || (attributes & FILE_ATTRIBUTE_DIRECTORY)) return {};
  const auto wrapped = ReadWholeFile(path);
  if (!wrapped) return {};
  DATA_BLOB input = InputBlob(*wrapped);
  ProtectedBlob key;
  if (!CryptUnprotectData(&input, nullptr, nullptr, nullptr, nullptr, kProtectionFlags, key.out())) {
    LOG_ERROR("DatabaseKeyStore: CryptUnprotectData failed");
    return {};
  }
  if (key.size() != kKeyLength) {
    LOG_ERROR("DatabaseKeyStore: Decrypted key has wrong size");
    return {};
  }
  LOG_INFO("DatabaseKeyStore: Key loaded successfully");
  return {key.data(), key.data() + key.size()};
}

bool DatabaseKeyStore::SaveKey(const std::vector<uint8_t>& key) {
  if (key.size() != kKeyLength) return false;
  DATA_BLOB input = InputBlob(key);
  ProtectedBlob wrapped;
  if (!CryptProtectData(&input, kBlobDescription, nullptr, nullptr, nullptr, kProtectionFlags, wrapped.out())) {
    LOG_ERROR("DatabaseKeyStore: CryptProtectData failed");
    return false;
  }
  const std::wstring path = GetKeyFilePath();
  if (path.empty()) return false;
  if (!WriteWholeFile(path, wrapped)) {
    LOG_ERROR("DatabaseKeyStore: Failed to open key file for writing");
    return false;
  }
  LOG_INFO("DatabaseKeyStore: Key saved successfully");
  return true;
}

std::vector<uint8_t> DatabaseKeyStore::GetOrCreateKey() {
  std::vector<uint8_t> key = LoadKey();
  if (!key.empty()) return key;
  key = GenerateKey();
  if (key.empty()) {
    LOG_ERROR("DatabaseKeyStore: Failed to generate key");
    return {};
  }
  // A key that could not be saved is never returned, because data encrypted with it could not be read after a restart.
  if (!SaveKey(key)) {
    LOG_ERROR("DatabaseKeyStore: Failed to save key");
    return {};
  }
  return key;
}

}  // namespace vantro
