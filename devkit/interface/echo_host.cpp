// A one-page host for the simulator's own tests. Its window carries the view. Its channel "echo" answers every message
// with the message's bytes, unless the first byte asks for something else:
//
//   0xF0  no answer        0xF1  two answers     0xF2  an empty answer
//   0xF3  the rest is sent on the channel "said" from another thread, then an empty answer
//   0xF4  the process ends with exit code 0x1234
#include <windows.h>

#include <cstdint>
#include <thread>

#include "flutter_host/embedding_api.h"

namespace {

void Echo(FlutterDesktopMessengerRef messenger, const FlutterDesktopMessage* message, void*) {
  const auto answer = [&](const uint8_t* bytes, size_t size) {
    FlutterDesktopMessengerSendResponse(messenger, message->response_handle, bytes, size);
  };
  const uint8_t* bytes = message->message;
  switch (message->message_size > 0 ? bytes[0] : 0) {
    case 0xF0:
      return;
    case 0xF1:
      answer(bytes, 1);
      return answer(bytes, 1);
    case 0xF3:
      std::thread([&] { FlutterDesktopMessengerSend(messenger, "said", bytes + 1, message->message_size - 1); }).join();
      [[fallthrough]];
    case 0xF2:
      return answer(nullptr, 0);
    case 0xF4:
      PostQuitMessage(0x1234);
      return answer(nullptr, 0);
    default:
      return answer(bytes, message->message_size);
  }
}

}  // namespace

int WINAPI WinMain(HINSTANCE instance, HINSTANCE, LPSTR, int) {
  WNDCLASSW windowClass{};
  windowClass.lpfnWndProc = DefWindowProcW;
  windowClass.hInstance = instance;
  windowClass.lpszClassName = L"EchoHost";
  RegisterClassW(&windowClass);
  const HWND window = CreateWindowExW(0, L"EchoHost", L"echo \"host\"", WS_POPUP | WS_VISIBLE, 10, 20, 300, 200,
                                      nullptr, nullptr, instance, nullptr);
  FlutterDesktopEngineProperties properties{};
  const auto engine = FlutterDesktopEngineCreate(&properties);
  const auto controller = FlutterDesktopViewControllerCreate(300, 200, engine);
  const HWND view = FlutterDesktopViewGetHWND(FlutterDesktopViewControllerGetView(controller));
  SetParent(view, window);
  FlutterDesktopMessengerSetCallback(FlutterDesktopEngineGetMessenger(engine), "echo", Echo, nullptr);
  // Sent before any interface can be connected, so the engine keeps it.
  FlutterDesktopMessengerSend(FlutterDesktopEngineGetMessenger(engine), "said", nullptr, 0);
  MSG message{};
  while (GetMessageW(&message, nullptr, 0, 0) > 0) {
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  FlutterDesktopViewControllerDestroy(controller);
  return static_cast<int>(message.wParam);
}
