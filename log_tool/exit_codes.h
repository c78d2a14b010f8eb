// What vantro-log reports to its caller. Documented in docs/log-tool.md, and held to it by a test.
#pragma once

namespace vantro::log_tool {

enum ExitCode : int {
  kDone = 0,
  kNotStarted = 1,  // the system could not start the host, or its memory could not be written
  kWrongArguments = 2,
  kNoHost = 3,          // no vantro.exe beside this program
  kWrongHost = 4,       // vantro.exe is no program that exports the switch of the log
  kAlreadyRunning = 5,  // the log of a running host can't be switched on by a second start
  kNotWritable = 6,     // the file to write can't be written
  kNotReadable = 7,     // the log to redact is missing or can't be read
  kEmpty = 8,
  kTooLarge = 9,
  kNoLog = 10,  // the file is not a log of the host
};

}  // namespace vantro::log_tool
