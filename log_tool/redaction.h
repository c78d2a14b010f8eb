// Removes private data from the text of a log. Works on plain text and may be called from any thread.
#pragma once

#include <string>
#include <string_view>

namespace vantro::log_tool {

// Returns whether the text begins like a line of the host's log: "[LEVEL] YYYY-MM-DD hh:mm:ss.mmm ".
bool BeginsLogLine(std::string_view text);

// Returns one line of the log, given without its line end, with these replacements:
//  - the user info of each address becomes "***", and so does an authority that could be part of a user info;
//  - a query or a fragment becomes "?***" or "#***", up to the next field that the host writes after an address, or to
//    the end of the line, because an address may contain blanks;
//  - the text of the search box becomes "***";
//  - the number of each "key=NUMBER" becomes "***", because the log contains the keys of a typed password.
// Names and passwords in the path of an address stay.
std::string RedactedLine(std::string_view line);

// Returns the whole log redacted. A line that does not begin like a log line continues the text before it and becomes
// "***". Line ends stay.
std::string RedactedLog(std::string_view log);

}  // namespace vantro::log_tool
