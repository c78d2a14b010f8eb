#include "log_tool/redaction.h"

#include <algorithm>
#include <array>

namespace vantro::log_tool {

namespace {

constexpr std::string_view kHidden = "***";
constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kSearchText = "Search debounce complete, query: '";
constexpr std::string_view kKeyCode = "key=";
constexpr std::string_view kTime = " 0000-00-00 00:00:00.000 ";  // a 0 stands for any digit

// The fields that follow an address in the host's log lines.
constexpr std::array<std::string_view, 4> kFieldsBehindAddress = {" isLive=", ", name=", ", time=", ", proxyUrl="};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

// A user info that contains a "/", "?" or "#" ends the authority early. The rest then looks like a port that is not a
// number.
bool MayBeCutUserInfo(std::string_view authority) {
  if (authority.starts_with('[')) return false;  // an IPv6 address
  const size_t colon = authority.find(':');
  return colon != authority.npos && !std::ranges::all_of(authority.substr(colon + 1), IsDigit);
}

std::string RedactedAuthority(std::string_view authority) {
  if (const size_t at = authority.rfind('@'); at != authority.npos) {
    return std::string(kHidden).append(authority.substr(at));
  }
  return std::string(MayBeCutUserInfo(authority) ? kHidden : authority);
}

size_t EndOfQuery(std::string_view text, size_t from) {
  size_t end = text.size();
  for (const std::string_view field : kFieldsBehindAddress) end = std::min(end, text.find(field, from));
  return end;
}

std::string WithoutSearchText(std::string_view line) {
  const size_t found = line.find(kSearchText);
  if (found == line.npos) return std::string(line);
  return std::string(line.substr(0, found + kSearchText.size())).append(kHidden).append("'");
}

std::string WithoutKeyCodes(std::string line) {
  for (size_t at = line.find(kKeyCode); at != line.npos; at = line.find(kKeyCode, at)) {
    at += kKeyCode.size();
    const size_t end = std::min(line.find_first_not_of("0123456789", at), line.size());
    if (end != at) line.replace(at, end - at, kHidden);
  }
  return line;
}

}  // namespace

bool BeginsLogLine(std::string_view text) {
  if (!text.starts_with('[')) return false;
  const size_t close = text.find(']');
  if (close == text.npos || close < 2 || text.size() < close + 1 + kTime.size()) return false;
  const std::string_view level = text.substr(1, close - 1);
  const std::string_view time = text.substr(close + 1, kTime.size());
  return std::ranges::all_of(level, [](char letter) { return letter >= 'A' && letter <= 'Z'; }) &&
         std::ranges::equal(time, kTime,
                            [](char seen, char form) { return form == '0' ? IsDigit(seen) : seen == form; });
}

std::string RedactedLine(std::string_view line) {
  const std::string known = WithoutKeyCodes(WithoutSearchText(line));
  std::string_view rest = known;
  std::string result;
  while (true) {
    const size_t found = rest.find(kSchemeEnd);
    if (found == rest.npos) return result.append(rest);
    const size_t authority = found + kSchemeEnd.size();
    const size_t authorityEnd = std::min(rest.find_first_of("/?# '\"", authority), rest.size());
    const size_t pathEnd = std::min(rest.find_first_of("?# '\"", authorityEnd), rest.size());
    result.append(rest.substr(0, authority));
    result.append(RedactedAuthority(rest.substr(authority, authorityEnd - authority)));
    result.append(rest.substr(authorityEnd, pathEnd - authorityEnd));
    rest.remove_prefix(pathEnd);
    if (rest.starts_with('?') || rest.starts_with('#')) {
      result.append(rest.substr(0, 1)).append(kHidden);
      rest.remove_prefix(EndOfQuery(rest, 0));
    }
  }
}

std::string RedactedLog(std::string_view log) {
  std::string result;
  while (!log.empty()) {
    const size_t end = std::min(log.find('\n'), log.size());
    std::string_view line = log.substr(0, end);
    std::string_view lineEnd = log.substr(end, 1);
    if (line.ends_with('\r')) {
      lineEnd = log.substr(end - 1, lineEnd.size() + 1);
      line.remove_suffix(1);
    }
    result.append(BeginsLogLine(line) ? RedactedLine(line) : std::string(line.empty() ? "" : kHidden)).append(lineEnd);
    log.remove_prefix(std::min(end + 1, log.size()));
  }
  return result;
}

}  // namespace vantro::log_tool
