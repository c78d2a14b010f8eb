// The exit codes of vantro-log. docs/log-tool.md documents them, and a test checks that it agrees.
#pragma once

namespace vantro::log_tool {

enum ExitCode : int {
  kDone = 0,
  kNotStarted = 1,  // the system could not start the host, or its memory could not be written
  kWrongArguments = 2,
  kNoHost = 3,          // no vantro.exe beside this program
  kWrongHost = 4,       // vantro.exe does not export the switch of the log
  kAlreadyRunning = 5,  // a second start can't switch on the log of a running host
  kNotWritable = 6,     // the output file can't be written
  kNotReadable = 7,     // the log to redact is missing or can't be read
  kEmpty = 8,
  kTooLarge = 9,
  kNoLog = 10,  // the file is not a log of the host
};

}  // namespace vantro::log_tool
