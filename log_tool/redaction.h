// Removes private data from the text of a log. Works on plain text and may be called from any thread.
#pragma once

#include <string>
#include <string_view>

namespace vantro::log_tool {

// Returns whether the text begins like a line of the host's log: "[LEVEL] YYYY-MM-DD hh:mm:ss.mmm ".
bool BeginsLogLine(std::string_view text);

// Returns one line of the log, given without its line end, with these replacements:
//  - in each address "***" replaces all text between the scheme and the last "@", and an authority that could be part
//    of a user info;
//  - what follows the first "?", "#", "|", "&" or ";" of an address becomes "***". These marks and the "@" also count
//    when they are percent-encoded;
//  - the text of the search box becomes "***";
//  - the number of each "key=NUMBER" becomes "***", because the log contains the keys of a typed password.
// In a line that the host writes for an address, the address ends where the host's next field begins, at its last
// place. In any other text it begins with "://" and reaches to the end of the text, because it may contain blanks. If
// the line is continued in the next one, everything from its first address, title or name on becomes "***". Names and
// passwords in the path of an address stay.
std::string RedactedLine(std::string_view line, bool isContinued = false);

// Returns the whole log redacted. A line that does not begin like a log line continues the line before it and becomes
// "***". A last line without a line end is treated as a continued one. Line ends stay. The time is proportional to the
// size.
std::string RedactedLog(std::string_view log);

}  // namespace vantro::log_tool
