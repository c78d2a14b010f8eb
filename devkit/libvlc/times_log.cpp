#include "times_log.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>

#include "report.h"

namespace vantro::devlib {
namespace {

FILE* Open() {
  const char* path = getenv("VANTRO_LIBVLC_TIMES");
  if (!path || !*path) return nullptr;
  FILE* file = fopen(path, "ae");
  if (!file) Warn("cannot write %s", path);
  return file;
}

}  // namespace

void LogTime(const char* what, const void* player) {
  static FILE* const file = Open();
  if (!file) return;
  timespec now;
  clock_gettime(CLOCK_MONOTONIC_RAW, &now);
  // One call a line: stdio locks the file for each, so lines of several threads stay whole.
  fprintf(file, "{\"at\":%" PRId64 ".%06ld,\"what\":\"%s\",\"player\":\"%016" PRIXPTR "\"}\n",
          static_cast<int64_t>(now.tv_sec), now.tv_nsec / 1000, what, reinterpret_cast<uintptr_t>(player));
  fflush(file);
}

}  // namespace vantro::devlib
