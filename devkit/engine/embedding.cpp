// The functions exported by flutter_windows.dll.
#include "devkit/engine/registry.h"
#include "devkit/engine/view_window.h"
#include "flutter_host/embedding_api.h"

using vantro::loopback::Registry;

FlutterDesktopEngineRef FlutterDesktopEngineCreate(const FlutterDesktopEngineProperties* properties) {
  return Registry::Get().CreateEngine(*properties);
}

bool FlutterDesktopEngineDestroy(FlutterDesktopEngineRef engine) {
  Registry::Get().DestroyEngine(engine);
  return true;
}

FlutterDesktopMessengerRef FlutterDesktopEngineGetMessenger(FlutterDesktopEngineRef engine) {
  return Registry::Get().TakeFault(&LoopbackFaults::no_messenger) ? nullptr : engine->messenger;
}

FlutterDesktopViewControllerRef FlutterDesktopViewControllerCreate(int width, int height,
                                                                   FlutterDesktopEngineRef engine) {
  Registry& registry = Registry::Get();
  if (registry.TakeFault(&LoopbackFaults::fail_view_controller_create)) {
    registry.DestroyEngine(engine);
    return nullptr;
  }
  registry.NoteViewSize(width, height);
  auto* controller = new FlutterDesktopViewController;
  controller->engine = engine;
  engine->controller = controller;
  if (!registry.TakeFault(&LoopbackFaults::no_view)) {
    controller->view = std::make_unique<FlutterDesktopView>();
    if (!registry.TakeFault(&LoopbackFaults::no_view_window)) {
      vantro::loopback::CreateViewWindow(engine->number, width, height, controller->view.get());
    }
  }
  return controller;
}

void FlutterDesktopViewControllerDestroy(FlutterDesktopViewControllerRef controller) {
  if (controller->view) vantro::loopback::DestroyViewWindow(controller->view.get());
  Registry::Get().DestroyEngine(controller->engine);
  delete controller;
}

FlutterDesktopEngineRef FlutterDesktopViewControllerGetEngine(FlutterDesktopViewControllerRef controller) {
  return controller->engine;
}

FlutterDesktopViewRef FlutterDesktopViewControllerGetView(FlutterDesktopViewControllerRef controller) {
  return controller->view.get();
}

bool FlutterDesktopViewControllerHandleTopLevelWindowProc(FlutterDesktopViewControllerRef controller, HWND hwnd,
                                                          UINT message, WPARAM wParam, LPARAM lParam, LRESULT* result) {
  Registry& registry = Registry::Get();
  const int32_t engine = controller->engine->number;
  registry.top_level_observer.Notify(
      [&](LoopbackTopLevelObserver observer, void* data) { observer(engine, hwnd, message, wParam, lParam, data); });
  return registry.TopLevelResult(message, result);
}

HWND FlutterDesktopViewGetHWND(FlutterDesktopViewRef view) { return view->window; }

bool FlutterDesktopMessengerSend(FlutterDesktopMessengerRef messenger, const char* channel, const uint8_t* message,
                                 size_t size) {
  return Registry::Get().Send(messenger, channel, message, size, nullptr, nullptr);
}

bool FlutterDesktopMessengerSendWithReply(FlutterDesktopMessengerRef messenger, const char* channel,
                                          const uint8_t* message, size_t size, FlutterDesktopBinaryReply reply,
                                          void* userData) {
  return Registry::Get().Send(messenger, channel, message, size, reply, userData);
}

void FlutterDesktopMessengerSendResponse(FlutterDesktopMessengerRef messenger,
                                         const FlutterDesktopMessageResponseHandle* handle, const uint8_t* data,
                                         size_t size) {
  Registry::Get().TakeAnswer(messenger, handle, data, size);
}

void FlutterDesktopMessengerSetCallback(FlutterDesktopMessengerRef messenger, const char* channel,
                                        FlutterDesktopMessageCallback callback, void* userData) {
  Registry::Get().SetListener(messenger, channel, callback, userData);
}

FlutterDesktopMessengerRef FlutterDesktopMessengerAddRef(FlutterDesktopMessengerRef messenger) {
  Registry::Get().AddReference(messenger);
  return messenger;
}

void FlutterDesktopMessengerRelease(FlutterDesktopMessengerRef messenger) {
  Registry::Get().ReleaseReference(messenger);
}

bool FlutterDesktopMessengerIsAvailable(FlutterDesktopMessengerRef messenger) { return messenger->engine != 0; }

FlutterDesktopMessengerRef FlutterDesktopMessengerLock(FlutterDesktopMessengerRef messenger) {
  messenger->lock.lock();
  return messenger;
}

void FlutterDesktopMessengerUnlock(FlutterDesktopMessengerRef messenger) { messenger->lock.unlock(); }
