// The wakelock, the database key, and other requests that concern the window or the whole program.
#include <windows.h>

#include "channel/argument_readers.h"
#include "channel/build_time.h"
#include "channel/host_windows.h"
#include "channel/request_handlers.h"
#include "services/database_key_store.h"

namespace vantro::requests {

bool GetBuildTime(MethodChannelHandler&, const MethodCall&, MethodResult& result) {
  result.Success(EncodableValue(BuildTime()));
  return true;
}

// The execution state belongs to the thread, which all windows share, but the flag belongs to the window. So a window
// can answer false while another holds the wakelock, and a release by one window releases it for all.
bool EnableNativeWakelock(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  SetThreadExecutionState(ES_CONTINUOUS | ES_SYSTEM_REQUIRED | ES_DISPLAY_REQUIRED);
  handler.wakelockEnabled_ = true;
  return Reply(result, true);
}

bool DisableNativeWakelock(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  SetThreadExecutionState(ES_CONTINUOUS);
  handler.wakelockEnabled_ = false;
  return Reply(result, true);
}

bool IsNativeWakelockEnabled(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  return Reply(result, handler.wakelockEnabled_);
}

// Accepted because interfaces send it. It switches nothing.
bool DebugInputLatency(MethodChannelHandler&, const MethodCall&, MethodResult& result) { return Reply(result, true); }

bool GetDatabaseEncryptionKey(MethodChannelHandler&, const MethodCall&, MethodResult& result) {
  std::vector<uint8_t> key = DatabaseKeyStore::GetOrCreateKey();
  if (key.empty()) {
    result.Error("DB_KEY_ERROR", "Failed to load database encryption key", EncodableValue(false));
  } else {
    result.Success(EncodableValue(key));
  }
  return true;
}

bool ToggleFullscreen(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  if (!handler.window_) {
    result.Error("WINDOW_ERROR", "Window reference not available");
    return false;
  }
  ToggleWindowFullscreen(*handler.window_);
  return Reply(result, true);
}

}  // namespace vantro::requests
