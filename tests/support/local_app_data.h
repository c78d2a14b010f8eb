// Redirects the user's local application data, for this process alone.
#pragma once

#include <windows.h>

#include <filesystem>
#include <string>

namespace vantro::test {

// While it lives, another registry key stands in the place of HKEY_CURRENT_USER and names the folder as the local
// application data. The folder need not exist.
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
