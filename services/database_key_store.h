// The interface's database key: 32 random bytes, made once, kept wrapped by the Data Protection API.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro {

// Holds no state: each call works from the file. Main thread.
class DatabaseKeyStore {
 public:
  // The key, made and saved first if the file gives none; empty on failure.
  static std::vector<uint8_t> GetOrCreateKey();
  // The key from the file, or empty.
  static std::vector<uint8_t> LoadKey();
  // False for a key that is not 32 bytes long and for one that could not be wrapped or written.
  static bool SaveKey(const std::vector<uint8_t>& key);
  // The key file's path, its folder made if it was missing; empty on failure.
  static std::wstring GetKeyFilePath();
};

}  // namespace vantro
