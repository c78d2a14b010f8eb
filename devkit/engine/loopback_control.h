// Control functions that the loopback engine exports in addition to the embedding's interface. They are for tests that
// run in the engine's own process; the product never calls them. A test finds them with GetProcAddress.
//
// Threads: all functions run on the thread that made the engine, except the send observer, which runs on the sending
// thread. Engines are numbered from 1 in the order of creation, and a number is never reused.
#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

extern "C" {

// The failures that the next calls of the embedding's functions have. LoopbackReset clears them.
struct LoopbackFaults {
  int32_t fail_engine_create;           // this many FlutterDesktopEngineCreate return null
  int32_t fail_view_controller_create;  // this many FlutterDesktopViewControllerCreate destroy the engine, return null
  int32_t no_view;                      // this many controllers have no view
  int32_t no_view_window;               // this many views have no window
  int32_t no_messenger;                 // this many FlutterDesktopEngineGetMessenger return null
};
void LoopbackSetFaults(const LoopbackFaults* faults);

// Clears faults, observers, handled messages and counters. Live engines are kept.
void LoopbackReset(void);

// The number of live engines (neither destroyed nor owned by a destroyed controller), and the number of the newest.
int32_t LoopbackEngineCount(void);
int32_t LoopbackNewestEngine(void);
// The number of live messenger references over all engines. The engine's own reference counts as one.
int32_t LoopbackMessengerReferences(void);
// The number of broken rules: answers given twice or to an unknown handle, and messages unanswered when their engine
// ended.
int32_t LoopbackReplyViolations(void);
int32_t LoopbackPendingReplies(void);
// Returns 1 when a listener is registered on the engine's channel.
int32_t LoopbackHasListener(int32_t engine, const char* channel);

// Delivers the bytes as a message of the interface: calls the channel's callback before it returns. The reply function
// gets the reply with replied 1, or replied 0 when there was none (no listener, or not answered). An empty answer is
// replied 1 with size 0. Returns 1 if a listener was called. An answer that comes after the return completes the
// pending reply and is dropped.
typedef void (*LoopbackReply)(const uint8_t* data, size_t size, int32_t replied, void* userData);
int32_t LoopbackDeliver(int32_t engine, const char* channel, const uint8_t* bytes, size_t size, LoopbackReply reply,
                        void* userData);

// Called for every message that the host sends. There is one observer for each process; null removes it.
typedef void (*LoopbackSendObserver)(int32_t engine, const char* channel, const uint8_t* bytes, size_t size,
                                     void* userData);
// Returns when no call of the previous observer is running, except when it is called from an observer.
void LoopbackSetSendObserver(LoopbackSendObserver observer, void* userData);

// Sets the answer to messages sent with a reply function; it is given before the send returns. Until it is set, and
// after LoopbackReset, such a send returns false and the reply function is never called.
void LoopbackSetSendAnswer(const uint8_t* bytes, size_t size);

// Sets what FlutterDesktopViewControllerHandleTopLevelWindowProc does with this message: with handled 1 it returns true
// and the result. A message that was not set is not handled.
void LoopbackSetTopLevelResult(UINT message, int32_t handled, LRESULT result);
// Called for every message passed to FlutterDesktopViewControllerHandleTopLevelWindowProc.
typedef void (*LoopbackTopLevelObserver)(int32_t engine, HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam,
                                         void* userData);
void LoopbackSetTopLevelObserver(LoopbackTopLevelObserver observer, void* userData);

// Called for every message that reaches a view window's procedure, posted or sent. When the observer returns 1, its
// answer becomes the procedure's result.
typedef int32_t (*LoopbackViewObserver)(int32_t engine, HWND view, UINT message, WPARAM wParam, LPARAM lParam,
                                        LRESULT* result, void* userData);
void LoopbackSetViewObserver(LoopbackViewObserver observer, void* userData);

// A copy of the properties that the newest engine was created with; valid until the next create.
struct LoopbackEngineProperties {
  wchar_t assets_path[512];
  wchar_t icu_data_path[512];
  wchar_t aot_library_path[512];
  int32_t has_entrypoint;  // a name was given that is neither null nor empty
  int32_t argument_count;
  char arguments[16][128];
  int32_t view_width;
  int32_t view_height;
};
void LoopbackNewestProperties(LoopbackEngineProperties* properties);

}  // extern "C"
