// A folder for one test, deleted with its content at the end.
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

// Makes a folder the process's temporary folder while the object exists. The folder need not exist.
class TemporaryFolderAt {
 public:
  explicit TemporaryFolderAt(const std::filesystem::path& folder);
  ~TemporaryFolderAt();
  TemporaryFolderAt(const TemporaryFolderAt&) = delete;
  TemporaryFolderAt& operator=(const TemporaryFolderAt&) = delete;

 private:
  std::wstring before_;
};

// Returns the file's bytes unchanged. A missing file gives an empty text.
std::string ReadFileBytes(const std::filesystem::path& path);
void WriteFileBytes(const std::filesystem::path& path, const std::string& bytes);

}  // namespace vantro::test
