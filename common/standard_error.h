// The channel layer's reports on the standard error stream.
#pragma once

#include <string_view>

namespace vantro {

// Writes text and more as one line and flushes it. Without the flush, a stream that goes to a file or a pipe keeps the
// line until the process ends, and loses it if the process is killed. Any thread.
void ReportLine(std::string_view text, std::string_view more = {});

}  // namespace vantro
