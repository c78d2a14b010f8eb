// Control functions that the loopback engine exports beside the embedding's interface. For tests that run in the
// engine's own process; the product never calls them. Reached with GetProcAddress or linked through loopback.def.
//
// Threads: all of them on the thread that made the engine, except the send observer, which runs on whichever thread
// sends. An engine number counts from 1 in the order of creation and is never used again.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

extern "C" {

// What the next calls of the embedding's functions do, for tests of failure. Reset by LoopbackReset.
struct LoopbackFaults {
  int32_t fail_engine_create;           // this many FlutterDesktopEngineCreate return null
  int32_t fail_view_controller_create;  // this many FlutterDesktopViewControllerCreate return null (the engine is gone)
  int32_t no_view;                      // this many controllers have no view
  int32_t no_view_window;               // this many views have no window
  int32_t no_messenger;                 // this many FlutterDesktopEngineGetMessenger return null
};
void LoopbackSetFaults(const LoopbackFaults* faults);

// Forgets faults, observers, handled messages and the counters; live engines stay.
void LoopbackReset(void);

// Engines alive (created and neither destroyed nor owned by a destroyed controller), and the number of the newest.
int32_t LoopbackEngineCount(void);
int32_t LoopbackNewestEngine(void);
// Messenger references alive over all engines; the engine's own counts as one.
int32_t LoopbackMessengerReferences(void);
// Answers given twice or to a handle that does not exist, and messages whose answer never came while the engine lived.
int32_t LoopbackReplyViolations(void);
int32_t LoopbackPendingReplies(void);
// Whether a listener is registered on the engine's channel.
int32_t LoopbackHasListener(int32_t engine, const char* channel);

// As if the interface had sent the bytes on the channel: calls the channel's callback before it returns. The reply, if
// one came, is handed to the function with replied 1; replied 0 means that none came (no listener, or not answered).
// An answer that is empty is 1 with size 0. The result is 1 if a listener was called. An answer that comes after the
// return is taken (it ends the pending reply) and dropped.
typedef void (*LoopbackReply)(const uint8_t* data, size_t size, int32_t replied, void* userData);
int32_t LoopbackDeliver(int32_t engine, const char* channel, const uint8_t* bytes, size_t size, LoopbackReply reply,
                        void* userData);

// Sees every message that the host sends. One observer a process; null takes it away.
typedef void (*LoopbackSendObserver)(int32_t engine, const char* channel, const uint8_t* bytes, size_t size,
                                     void* userData);
// Returns once no call of the former observer is running, except when called from an observer.
void LoopbackSetSendObserver(LoopbackSendObserver observer, void* userData);

// What a message sent with a reply function is answered with, before the send returns. Until it is set (and after
// LoopbackReset) such a send is refused: it returns false and the reply function is never called.
void LoopbackSetSendAnswer(const uint8_t* bytes, size_t size);

// What FlutterDesktopViewControllerHandleTopLevelWindowProc does with this message: handled 1 makes it return true with
// the result. Anything not set is not handled.
void LoopbackSetTopLevelResult(UINT message, int32_t handled, LRESULT result);
// Sees every message offered to FlutterDesktopViewControllerHandleTopLevelWindowProc.
typedef void (*LoopbackTopLevelObserver)(int32_t engine, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                         void* userData);
void LoopbackSetTopLevelObserver(LoopbackTopLevelObserver observer, void* userData);

// Sees every message that reaches a view window's procedure, posted or sent; a handled observer's answer (return 1)
// becomes the procedure's result.
typedef int32_t (*LoopbackViewObserver)(int32_t engine, HWND view, UINT message, WPARAM wParam, LPARAM lParam,
                                        LRESULT* result, void* userData);
void LoopbackSetViewObserver(LoopbackViewObserver observer, void* userData);

// The properties that the newest engine was created with, copied; valid until the next create.
struct LoopbackEngineProperties {
  wchar_t assets_path[512];
  wchar_t icu_data_path[512];
  wchar_t aot_library_path[512];
  int32_t has_entrypoint;  // a name that is neither null nor empty was given
  int32_t argument_count;
  char arguments[16][128];
  int32_t view_width;
  int32_t view_height;
};
void LoopbackNewestProperties(LoopbackEngineProperties* properties);

}  // extern "C"
