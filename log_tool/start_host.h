// Starts the host with its log switched on.
#pragma once

#include <filesystem>

#include "log_tool/exit_codes.h"

namespace vantro::log_tool {

// Starts the vantro.exe of the folder suspended, sets the byte that it exports as the switch of its log, lets it run
// and waits for its end. The host inherits the working directory, where it writes its log. Says on the standard output
// where the log is, and on the standard error stream why it can't be done.
ExitCode StartHostWithLog(const std::filesystem::path& folder);

}  // namespace vantro::log_tool
