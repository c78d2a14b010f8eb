// The key of the interface's database: 32 random bytes, generated once and stored encrypted by the Data Protection API.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vantro {

// Has no state: each call reads or writes the file. Main thread.
class DatabaseKeyStore {
 public:
  // Returns the key from the file. If the file gives no valid key, generates and saves a new one. Empty on failure.
  static std::vector<uint8_t> GetOrCreateKey();
  // Returns the key from the file, or an empty vector if the file gives no valid key.
  static std::vector<uint8_t> LoadKey();
  // Returns false if the key is not 32 bytes long, or if it cannot be encrypted or the file cannot be opened.
  static bool SaveKey(const std::vector<uint8_t>& key);
  // Returns the path of the key file, and makes its folder if it is missing. Empty on failure.
  static std::wstring GetKeyFilePath();
};

}  // namespace vantro
