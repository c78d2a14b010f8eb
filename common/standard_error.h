// What the channel layer reports, on the standard error stream.
#pragma once

#include <string_view>

namespace vantro {

// Writes the text and a second one behind it as one line. The line is out, whole, when the call returns: a stream that
// goes to a file or a pipe keeps it otherwise until the process ends, and loses it when the process is killed. Any
// thread.
void ReportLine(std::string_view text, std::string_view more = {});

}  // namespace vantro
