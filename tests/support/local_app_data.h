// Redirects the user's local application data for this process only.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace vantro::test {

// While the object lives, HKEY_CURRENT_USER is another registry key, in which the given folder is the local application
// data folder. The folder need not exist.
class LocalAppDataAt {
 public:
  explicit LocalAppDataAt(const std::filesystem::path& folder);
  ~LocalAppDataAt();
  LocalAppDataAt(const LocalAppDataAt&) = delete;
  LocalAppDataAt& operator=(const LocalAppDataAt&) = delete;

 private:
  std::wstring name_;
  HKEY user_ = nullptr;
};

}  // namespace vantro::test
