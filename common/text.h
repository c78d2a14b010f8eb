// Conversions between the host's narrow text and the wide text of the Win32 calls that need it.
#pragma once

#include <string>
#include <string_view>

namespace vantro {

// Convert UTF-16 to UTF-8 (code page 65001) and back. Ill-formed input becomes replacement characters. An empty input
// or a failed conversion returns an empty string. Any thread.
std::string NarrowFromWide(std::wstring_view wide);
std::wstring WideFromNarrow(std::string_view utf8);

}  // namespace vantro
