#include "log_tool/redaction.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace vantro::log_tool {

namespace {

constexpr std::string_view kHidden = "***";
constexpr std::string_view kSchemeEnd = "://";
constexpr std::string_view kQueryMarks = "?#|&;";
constexpr std::string_view kSearchText = "Search debounce complete, query: '";
constexpr std::string_view kKeyCode = "key=";
constexpr std::string_view kTime = " 0000-00-00 00:00:00.000 ";  // a 0 stands for any digit

// What the host writes around the texts of the interface in one of its lines: an address, and behind the middle a
// second text. Without a middle there is no second text. Without an end the texts reach to the end of the line.
struct Form {
  std::string_view begin;
  std::string_view middle;
  std::string_view end;
  bool secondIsAddress = false;  // otherwise it is a title or a name, in which an address begins with "://"
};

constexpr std::array<Form, 10> kForms = {{
    {"ms URL=", "", ""},
    {"URL=", "", " isLive="},
    {"Final URL after parsing: '", "", "'"},
    {"for URL: ", "", ""},
    {"from URL: ", "", ""},
    {"for path: ", "", ""},
    {"new_location for: ", "", ""},
    {"CALLED *** url=", ", name=", ", isMultiViewMode="},
    {"Called with url=", ", title=", ", networkCacheMs="},
    {"mediaId=", ", proxyUrl=", ", time=", true},
}};

bool IsDigit(char character) { return character >= '0' && character <= '9'; }

bool MayBeInScheme(char character) {
  const char lower = static_cast<char>(character | 0x20);
  return IsDigit(character) || (lower >= 'a' && lower <= 'z') || character == '+' || character == '-' ||
         character == '.';
}

struct Character {
  char value;
  size_t length;
};

// The character that begins at the position, decoded: "%40" is a "@", and so is "%2540".
Character CharacterAt(std::string_view text, size_t position) {
  if (text[position] != '%') return {text[position], 1};
  size_t digits = position + 1;
  while (text.substr(digits, 2) == "25") digits += 2;
  const std::string_view code = text.substr(digits, 2);
  unsigned char value = 0;
  const char* const end = std::from_chars(code.data(), code.data() + code.size(), value, 16).ptr;
  if (end != code.data() + 2) return {'%', 1};
  return {static_cast<char>(value), digits + 2 - position};
}

// An authority whose port is not a number may be a user info without its "@".
bool MayBeUserInfo(std::string_view authority) {
  if (authority.starts_with('[')) return false;  // an IPv6 address
  const size_t colon = authority.find(':');
  return colon != authority.npos && !std::ranges::all_of(authority.substr(colon + 1), IsDigit);
}

std::string RedactedAddress(std::string_view address) {
  const size_t schemeEnd = address.find(kSchemeEnd);
  const bool hasScheme = schemeEnd != address.npos && std::ranges::all_of(address.substr(0, schemeEnd), MayBeInScheme);
  std::string result;
  if (hasScheme) {
    result.append(address.substr(0, schemeEnd + kSchemeEnd.size()));
    address.remove_prefix(schemeEnd + kSchemeEnd.size());
  }

  size_t query = address.size();  // the first mark of a query
  size_t kept = 0;                // the last "@"
  for (size_t position = 0; position < address.size();) {
    const Character character = CharacterAt(address, position);
    if (character.value == '@') kept = position;
    if (query == address.size() && kQueryMarks.find(character.value) != kQueryMarks.npos) query = position;
    position += character.length;
  }
  if (kept > query) kept = query;
  if (kept == 0 && hasScheme) {
    const size_t authority = std::min(address.find_first_of("/?# '\""), query);
    if (MayBeUserInfo(address.substr(0, authority))) kept = authority;
  }

  if (kept > 0) result.append(kHidden);
  result.append(address.substr(kept, query - kept));
  if (query == address.size()) return result;
  return result.append(address.substr(query, CharacterAt(address, query).length)).append(kHidden);
}

std::string RedactedText(std::string_view text) {
  const size_t found = std::min(text.find(kSchemeEnd), text.size());
  return std::string(text.substr(0, found)).append(RedactedAddress(text.substr(found)));
}

// The texts between the begin and the end of a form.
std::string RedactedTexts(const Form& form, std::string_view texts) {
  const size_t middle = form.middle.empty() ? texts.npos : texts.find(form.middle);
  if (middle == texts.npos) return RedactedAddress(texts);
  if (texts.rfind(form.middle) != middle) return std::string(kHidden);  // it is also part of a text
  const std::string_view second = texts.substr(middle + form.middle.size());
  return RedactedAddress(texts.substr(0, middle))
      .append(form.middle)
      .append(form.secondIsAddress ? RedactedAddress(second) : RedactedText(second));
}

// The form that begins first, and the position of its texts.
struct FoundForm {
  const Form* form = nullptr;
  size_t texts = std::string_view::npos;
};

FoundForm FirstForm(std::string_view line) {
  FoundForm first;
  size_t firstBegin = line.npos;
  for (const Form& form : kForms) {
    const size_t begin = line.find(form.begin);
    if (begin >= firstBegin) continue;
    firstBegin = begin;
    first = {&form, begin + form.begin.size()};
  }
  return first;
}

std::string WithoutAddresses(std::string_view line, bool isContinued) {
  const auto [form, texts] = FirstForm(line);
  const size_t schemeEnd = line.find(kSchemeEnd);
  const bool hasForm = form && texts <= schemeEnd;
  if (isContinued) {
    const size_t from = hasForm ? texts : schemeEnd == line.npos ? line.npos : schemeEnd + kSchemeEnd.size();
    return std::string(line.substr(0, from)).append(from == line.npos ? "" : kHidden);
  }
  if (!hasForm) return RedactedText(line);
  const std::string_view rest = line.substr(texts);
  // Only numbers follow the end, so its last place is the right one.
  const size_t end = std::min(form->end.empty() ? rest.npos : rest.rfind(form->end), rest.size());
  return std::string(line.substr(0, texts)).append(RedactedTexts(*form, rest.substr(0, end))).append(rest.substr(end));
}

std::string WithoutSearchText(std::string_view line) {
  const size_t found = line.find(kSearchText);
  if (found == line.npos) return std::string(line);
  return std::string(line.substr(0, found + kSearchText.size())).append(kHidden).append("'");
}

std::string WithoutKeyCodes(std::string_view line) {
  std::string result;
  for (size_t found = line.find(kKeyCode); found != line.npos; found = line.find(kKeyCode)) {
    const size_t number = found + kKeyCode.size();
    const size_t end = std::min(line.find_first_not_of("0123456789", number), line.size());
    result.append(line.substr(0, number)).append(end == number ? "" : kHidden);
    line.remove_prefix(end);
  }
  return result.append(line);
}

// The first line of a text, without its line end.
std::string_view FirstLine(std::string_view text) {
  std::string_view line = text.substr(0, text.find('\n'));
  if (line.ends_with('\r')) line.remove_suffix(1);
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

std::string RedactedLine(std::string_view line, bool isContinued) {
  return WithoutAddresses(WithoutKeyCodes(WithoutSearchText(line)), isContinued);
}

std::string RedactedLog(std::string_view log) {
  std::string result;
  while (!log.empty()) {
    const std::string_view line = FirstLine(log);
    const size_t end = std::min(log.find('\n', line.size()), log.size() - 1) + 1;
    const std::string_view next = log.substr(end);
    const bool isContinued = next.empty() ? !log.ends_with('\n') : !BeginsLogLine(FirstLine(next));
    if (BeginsLogLine(line)) {
      result.append(RedactedLine(line, isContinued));
    } else if (!line.empty()) {
      result.append(kHidden);
    }
    result.append(log.substr(line.size(), end - line.size()));
    log = next;
  }
  return result;
}

}  // namespace vantro::log_tool
