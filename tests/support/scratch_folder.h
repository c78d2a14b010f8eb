// A folder of a test's own, gone with all its content at the end.
#pragma once

#include <filesystem>
#include <string>

namespace vantro::test {

class ScratchFolder {
 public:
  ScratchFolder();
  ~ScratchFolder();
  ScratchFolder(const ScratchFolder&) = delete;
  ScratchFolder& operator=(const ScratchFolder&) = delete;

  const std::filesystem::path& path() const { return path_; }
  std::filesystem::path operator/(const std::filesystem::path& name) const { return path_ / name; }

 private:
  std::filesystem::path path_;
};

// Makes a folder the process's temporary one while it lives. The folder need not exist.
class TemporaryFolderAt {
 public:
  explicit TemporaryFolderAt(const std::filesystem::path& folder);
  ~TemporaryFolderAt();
  TemporaryFolderAt(const TemporaryFolderAt&) = delete;
  TemporaryFolderAt& operator=(const TemporaryFolderAt&) = delete;

 private:
  std::wstring before_;
};

// Binary, as they stand on disk. Reading a file that is not there gives an empty text.
std::string ReadFileBytes(const std::filesystem::path& path);
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);

}  // namespace vantro::test
