#include "log_tool/files.h"

#include <fstream>
#include <iterator>
#include <system_error>

namespace vantro::log_tool {

ReadResult ReadWholeFile(const std::filesystem::path& path, std::string* content) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(path, error)) return ReadResult::kNotReadable;
  const uint64_t size = std::filesystem::file_size(path, error);
  if (error) return ReadResult::kNotReadable;
  if (size > kLargestFile) return ReadResult::kTooLarge;
  std::ifstream file(path, std::ios::binary);
  if (!file) return ReadResult::kNotReadable;
  content->assign(std::istreambuf_iterator<char>(file), {});
  return file.bad() ? ReadResult::kNotReadable : ReadResult::kRead;
}

bool WriteWholeFile(const std::filesystem::path& path, const std::string& content) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file.write(content.data(), static_cast<std::streamsize>(content.size()));
  file.close();
  return !file.fail();
}

std::string Utf8(const std::filesystem::path& path) {
  const std::u8string text = path.u8string();
  return {text.begin(), text.end()};
}

}  // namespace vantro::log_tool
