// Reads and writes whole files, and formats paths for messages.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace vantro::log_tool {

constexpr uint64_t kLargestFile = 256ull << 20;  // bytes; a larger file is refused

enum class ReadResult { kRead, kNotReadable, kTooLarge };

// Reads a whole file. The content is set for kRead only.
ReadResult ReadWholeFile(const std::filesystem::path& path, std::string* content);

// Writes a whole file and replaces an existing one. Returns false unless all of it was written.
bool WriteWholeFile(const std::filesystem::path& path, const std::string& content);

// A path as UTF-8, for messages.
std::string Utf8(const std::filesystem::path& path);

}  // namespace vantro::log_tool
