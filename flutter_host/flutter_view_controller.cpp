#include "flutter_host/flutter_view_controller.h"

#include <vector>

#include "flutter_host/binary_messenger_impl.h"

namespace vantro {

namespace {

FlutterDesktopEngineRef CreateEngine(const DartProject& project) {
  std::vector<const char*> arguments;
  for (const std::string& argument : project.dartEntrypointArguments) arguments.push_back(argument.c_str());
  FlutterDesktopEngineProperties properties{};
  properties.assets_path = project.assetsPath.c_str();
  properties.icu_data_path = project.icuDataPath.c_str();
  properties.aot_library_path = project.aotLibraryPath.c_str();
  properties.dart_entrypoint_argc = static_cast<int>(arguments.size());
  properties.dart_entrypoint_argv = arguments.data();
  return FlutterDesktopEngineCreate(&properties);
}

}  // namespace

std::unique_ptr<FlutterViewController> FlutterViewController::Create(int width, int height,
                                                                     const DartProject& project) {
  const FlutterDesktopEngineRef engine = CreateEngine(project);
  if (!engine) return nullptr;
  // Takes ownership of the engine, also on failure.
  const FlutterDesktopViewControllerRef controller = FlutterDesktopViewControllerCreate(width, height, engine);
  if (!controller) return nullptr;
  return std::unique_ptr<FlutterViewController>(new FlutterViewController(controller));
}

FlutterViewController::FlutterViewController(FlutterDesktopViewControllerRef controller)
    : controller_(controller, FlutterDesktopViewControllerDestroy) {
  const FlutterDesktopEngineRef engine = FlutterDesktopViewControllerGetEngine(controller);
  const FlutterDesktopMessengerRef messenger = engine ? FlutterDesktopEngineGetMessenger(engine) : nullptr;
  if (messenger) messenger_ = std::make_shared<BinaryMessengerImpl>(messenger);
}

HWND FlutterViewController::ViewWindow() const {
  const FlutterDesktopViewRef view = FlutterDesktopViewControllerGetView(controller_.get());
  return view ? FlutterDesktopViewGetHWND(view) : nullptr;
}

std::optional<LRESULT> FlutterViewController::HandleTopLevelWindowProc(HWND hwnd, UINT message, WPARAM wParam,
                                                                       LPARAM lParam) {
  LRESULT result = 0;
  const bool isHandled =
      FlutterDesktopViewControllerHandleTopLevelWindowProc(controller_.get(), hwnd, message, wParam, lParam, &result);
  return isHandled ? std::optional<LRESULT>(result) : std::nullopt;
}

}  // namespace vantro
