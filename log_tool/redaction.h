// Takes what is private out of a log's text. Works on plain text and may be called from any thread.
#pragma once

#include <string>
#include <string_view>

namespace vantro::log_tool {

// Whether the text begins as each line of the host's log does: "[LEVEL] YYYY-MM-DD hh:mm:ss.mmm ".
bool BeginsLogLine(std::string_view text);

// One line of the log, without its line end, as it may be passed on:
//  - the user info of each address becomes "***", and so does an authority that could be a cut user info;
//  - a query or a fragment becomes "?***" or "#***", up to the next field that the host writes after an address, or to
//    the end of the line, because an address may contain blanks;
//  - the text of the search box becomes "***";
//  - the number of each "key=NUMBER" becomes "***", since the keys of a password are logged too.
// Names and passwords in the path of an address stay.
std::string RedactedLine(std::string_view line);

// The whole log. A line that does not begin as a log line continues the text before it, and becomes "***". Line ends
// stay.
std::string RedactedLog(std::string_view log);

}  // namespace vantro::log_tool
