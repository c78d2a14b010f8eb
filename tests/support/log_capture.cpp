#include "tests/support/log_capture.h"

#include <algorithm>
#include <cstdio>
#include <memory>

#include "common/log.h"

namespace vantro::test {

namespace {

constexpr char kLogFile[] = "vantro_debug.log";
constexpr size_t kTimeLength = sizeof("2026-01-01 00:00:00.000 ") - 1;

std::string ReadFrom(long offset, long* end) {
  const std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(kLogFile, "rb"), std::fclose);
  std::string text;
  if (file) {
    std::fseek(file.get(), offset, SEEK_SET);
    char block[65536];
    for (size_t read; (read = std::fread(block, 1, sizeof block, file.get())) > 0;) text.append(block, read);
  }
  if (end) *end = offset + static_cast<long>(text.size());
  return text;
}

}  // namespace

LogCapture::LogCapture() {
  debugLoggingEnabled = true;
  WriteLog(kLogDebug, "(capture)");  // opens and so truncates the file before its end is read
  ReadFrom(0, &start_);
}

LogCapture::~LogCapture() { debugLoggingEnabled = false; }

std::vector<std::string> LogCapture::Lines() const {
  const std::string text = ReadFrom(start_, nullptr);
  std::vector<std::string> lines;
  for (size_t at = 0; at < text.size();) {
    size_t end = text.find('\n', at);
    if (end == std::string::npos) end = text.size();
    std::string line = text.substr(at, end - at);
    at = end + 1;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    const size_t close = line.find("] ");
    if (line.empty() || line[0] != '[' || close == std::string::npos || line.size() < close + 2 + kTimeLength) {
      lines.push_back(line);  // the rest of a text that contains a newline
    } else {
      lines.push_back(line.substr(1, close - 1) + " " + line.substr(close + 2 + kTimeLength));
    }
  }
  return lines;
}

int LogCapture::Count(const std::string& levelAndText) const {
  const auto lines = Lines();
  return static_cast<int>(std::count(lines.begin(), lines.end(), levelAndText));
}

int LogCapture::CountContaining(const std::string& fragment) const {
  const auto lines = Lines();
  return static_cast<int>(std::count_if(
      lines.begin(), lines.end(), [&](const std::string& line) { return line.find(fragment) != std::string::npos; }));
}

}  // namespace vantro::test
