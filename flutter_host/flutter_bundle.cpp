#include "flutter_host/flutter_bundle.h"

#include <cstdint>
#include <string>
#include <system_error>

#include "common/log.h"
#include "common/text.h"

namespace vantro {

namespace {

namespace fs = std::filesystem;

[[noreturn]] void ThrowQueryError(const char* query, const fs::path& path, const std::error_code& error) {
  throw fs::filesystem_error(query, path, error);
}

// The file system queries. Their errors name the query, in words that are the same with every C++ library. They run
// even if the log is off, because an error here ends the start of a window.
bool Exists(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (!fs::status_known(status)) ThrowQueryError("exists", path, error);
  return fs::exists(status);
}

unsigned long long FileSize(const fs::path& path) {
  std::error_code error;
  const uintmax_t size = fs::file_size(path, error);
  if (error) ThrowQueryError("file_size", path, error);
  return size;
}

bool IsDirectory(const fs::directory_entry& entry) {
  std::error_code error;
  const fs::file_status status = entry.status(error);
  if (!fs::status_known(status)) ThrowQueryError("directory_entry::status", entry.path(), error);
  return fs::is_directory(status);
}

std::string Narrow(const fs::path& path) { return NarrowFromWide(path.native()); }

void LogIcuData(const fs::path& icuData) {
  if (!Exists(icuData)) {
    LOG_WARNING("WARNING: ICU data file not found!");
    return;
  }
  LOG_INFO("ICU data file found successfully");
  const unsigned long long size = FileSize(icuData);
  LOG_INFO("ICU data file size: %llu bytes", size);
}

void LogContents(const fs::path& assets) {
  LOG_INFO("Flutter assets directory contents:");
  std::error_code error;
  fs::directory_iterator entries(assets, error);
  if (error) ThrowQueryError("directory_iterator::directory_iterator", assets, error);
  while (entries != fs::directory_iterator()) {
    const std::string name = Narrow(entries->path().filename());
    if (IsDirectory(*entries)) {
      LOG_INFO("%s (directory)", name.c_str());
    } else {
      const unsigned long long size = FileSize(entries->path());
      LOG_INFO("%s (file, %llu bytes)", name.c_str(), size);
    }
    entries.increment(error);
    if (error) ThrowQueryError("directory_iterator::operator++", assets, error);
  }
}

// Logs which kind of code the bundle contains. The project always names "app.so" beside the assets, whatever is found
// here.
void LogDartCode(const fs::path& assets) {
  const fs::path kernel = assets / L"kernel_blob.bin";
  if (Exists(kernel)) {
    const unsigned long long size = FileSize(kernel);
    LOG_INFO("kernel_blob.bin found (%llu bytes)", size);
    return;
  }
  LOG_WARNING("WARNING: kernel_blob.bin not found!");
  const fs::path library = assets / L"app.so";
  const fs::path elf = assets / L"app.elf";
  if (Exists(library)) {
    const unsigned long long size = FileSize(library);
    LOG_INFO("app.so found instead - running in AOT mode (%llu bytes)", size);
  } else if (Exists(elf)) {
    const unsigned long long size = FileSize(elf);
    LOG_INFO("app.elf found instead - running in AOT mode (%llu bytes)", size);
  } else {
    LOG_ERROR("CRITICAL ERROR: Neither kernel_blob.bin (JIT) nor app.so/app.elf (AOT) found!");
    LOG_ERROR("Flutter will not be able to run Dart code without these files.");
    LOG_INFO("Try rebuilding with 'flutter build bundle --debug' to generate kernel_blob.bin");
  }
}

}  // namespace

void InspectFlutterBundle(const fs::path& icuData, const fs::path& assets) {
  LogIcuData(icuData);
  const std::string narrowAssets = Narrow(assets);
  if (!Exists(assets)) {
    LOG_WARNING("WARNING: Flutter assets directory not found at %s!", narrowAssets.c_str());
    return;
  }
  LOG_INFO("Flutter assets directory found successfully at %s", narrowAssets.c_str());
  LogContents(assets);
  LogDartCode(assets);
}

DartProject MakeDartProject(const fs::path& dataDirectory) {
  const std::wstring& data = dataDirectory.native();
  return {data + L"\\flutter_assets",
          data + L"\\icudtl.dat",
          data + L"\\app.so",
          {"vantro", "--no-sound-null-safety", "--enable-dart-profiling", "--start-paused", "--dart-flags=--observe"}};
}

}  // namespace vantro
