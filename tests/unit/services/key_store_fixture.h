// The key store in a separate local application data folder for each test.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <numeric>
#include <string>
#include <vector>

#include "services/database_key_store.h"
#include "tests/support/local_app_data.h"
#include "tests/support/log_capture.h"
#include "tests/support/scratch_folder.h"

namespace vantro::test {

inline std::vector<uint8_t> SampleKey(size_t length = 32) {
  std::vector<uint8_t> key(length);
  std::iota(key.begin(), key.end(), uint8_t{1});
  return key;
}

class KeyStoreTest : public testing::Test {
 protected:
  std::filesystem::path Folder() const { return appData_ / "Vantro"; }
  std::filesystem::path KeyFile() const { return Folder() / "db.key"; }
  void LeaveFile(const std::string& bytes) {
    std::filesystem::create_directories(Folder());
    WriteFileBytes(KeyFile(), bytes);
  }

  ScratchFolder appData_;
  LocalAppDataAt redirection_{appData_.path()};
  LogCapture log_;
};

}  // namespace vantro::test
