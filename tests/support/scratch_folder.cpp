#include "tests/support/scratch_folder.h"

#include <windows.h>

#include <atomic>
#include <fstream>
#include <iterator>
#include <system_error>

namespace vantro::test {

namespace {

std::wstring NewName() {
  static std::atomic<int> number{0};
  return L"vantro_test_" + std::to_wstring(GetCurrentProcessId()) + L"_" + std::to_wstring(++number);
}

// A process that ended early may have had the same id and left its folders.
std::filesystem::path NewFolder() {
  for (;;) {
    const std::filesystem::path folder = std::filesystem::temp_directory_path() / NewName();
    if (std::filesystem::create_directory(folder)) return folder;
  }
}

}  // namespace

ScratchFolder::ScratchFolder() : path_(NewFolder()) {}

ScratchFolder::~ScratchFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

TemporaryFolderAt::TemporaryFolderAt(const std::filesystem::path& folder) {
  wchar_t before[MAX_PATH] = L"";
  before_.assign(before, GetEnvironmentVariableW(L"TMP", before, MAX_PATH));
  SetEnvironmentVariableW(L"TMP", folder.c_str());
}

TemporaryFolderAt::~TemporaryFolderAt() {
  SetEnvironmentVariableW(L"TMP", before_.empty() ? nullptr : before_.c_str());
}

std::string ReadFileBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary | std::ios::trunc)
      .write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace vantro::test
