// Starts the host with its log switched on.
#pragma once

#include <filesystem>

#include "log_tool/exit_codes.h"

namespace vantro::log_tool {

// Starts the vantro.exe of the folder suspended, sets the byte that it exports as the switch of its log, resumes it and
// waits for its end. The host inherits the working directory and writes its log there. Prints the path of the log on
// the standard output, and the reason for a failure on the standard error stream.
ExitCode StartHostWithLog(const std::filesystem::path& folder);

}  // namespace vantro::log_tool
