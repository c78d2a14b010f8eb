// The C interface of the Flutter Windows embedding that flutter_windows.dll exports (Flutter's published
// flutter_windows.h and flutter_messenger.h). These are the host's own declarations of what it uses.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

extern "C" {

struct FlutterDesktopEngine;
struct FlutterDesktopViewController;
struct FlutterDesktopView;
struct FlutterDesktopMessenger;
struct FlutterDesktopMessageResponseHandle;
using FlutterDesktopEngineRef = FlutterDesktopEngine*;
using FlutterDesktopViewControllerRef = FlutterDesktopViewController*;
using FlutterDesktopViewRef = FlutterDesktopView*;
using FlutterDesktopMessengerRef = FlutterDesktopMessenger*;

struct FlutterDesktopEngineProperties {
  const wchar_t* assets_path;
  const wchar_t* icu_data_path;
  const wchar_t* aot_library_path;
  const char* dart_entrypoint;  // null or empty: main
  int dart_entrypoint_argc;
  const char** dart_entrypoint_argv;  // copied during the create call
  int32_t gpu_preference;             // 0: no preference
  int32_t ui_thread_policy;           // 0: the default
};

struct FlutterDesktopMessage {
  size_t struct_size;
  const char* channel;
  const uint8_t* message;
  size_t message_size;
  const FlutterDesktopMessageResponseHandle* response_handle;  // null if the sender expects no answer
};

using FlutterDesktopBinaryReply = void (*)(const uint8_t* data, size_t size, void* userData);
using FlutterDesktopMessageCallback = void (*)(FlutterDesktopMessengerRef, const FlutterDesktopMessage*,
                                               void* userData);

FlutterDesktopEngineRef FlutterDesktopEngineCreate(const FlutterDesktopEngineProperties* properties);
// Must not be called once a view controller owns the engine.
bool FlutterDesktopEngineDestroy(FlutterDesktopEngineRef engine);
FlutterDesktopMessengerRef FlutterDesktopEngineGetMessenger(FlutterDesktopEngineRef engine);

// Takes ownership of the engine and runs it if it is not running. On failure returns null and destroys the engine.
FlutterDesktopViewControllerRef FlutterDesktopViewControllerCreate(int width, int height,
                                                                   FlutterDesktopEngineRef engine);
// Shuts the engine down and destroys the view window.
void FlutterDesktopViewControllerDestroy(FlutterDesktopViewControllerRef controller);
FlutterDesktopEngineRef FlutterDesktopViewControllerGetEngine(FlutterDesktopViewControllerRef controller);
FlutterDesktopViewRef FlutterDesktopViewControllerGetView(FlutterDesktopViewControllerRef controller);
bool FlutterDesktopViewControllerHandleTopLevelWindowProc(FlutterDesktopViewControllerRef controller, HWND hwnd,
                                                          UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result);
// Returns a child window. Its first parent is the message-only window.
HWND FlutterDesktopViewGetHWND(FlutterDesktopViewRef view);

bool FlutterDesktopMessengerSend(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message,
                                 size_t size);
bool FlutterDesktopMessengerSendWithReply(FlutterDesktopMessengerRef messenger, const char* channel,
                                          const uint8_t* message, size_t size, FlutterDesktopBinaryReply reply,
                                          void* userData);
// The handle must not be used again.
void FlutterDesktopMessengerSendResponse(FlutterDesktopMessengerRef messenger,
                                         const FlutterDesktopMessageResponseHandle* handle, const uint8_t* data,
                                         size_t size);
// A null callback unregisters.
void FlutterDesktopMessengerSetCallback(FlutterDesktopMessengerRef messenger, const char* channel,
                                        FlutterDesktopMessageCallback callback, void* userData);
FlutterDesktopMessengerRef FlutterDesktopMessengerAddRef(FlutterDesktopMessengerRef messenger);
void FlutterDesktopMessengerRelease(FlutterDesktopMessengerRef messenger);
// Call it only under the lock.
bool FlutterDesktopMessengerIsAvailable(FlutterDesktopMessengerRef messenger);
FlutterDesktopMessengerRef FlutterDesktopMessengerLock(FlutterDesktopMessengerRef messenger);
void FlutterDesktopMessengerUnlock(FlutterDesktopMessengerRef messenger);

}  // extern "C"
