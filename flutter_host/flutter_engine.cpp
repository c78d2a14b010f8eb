#include "flutter_host/flutter_engine.h"

#include <string>

#include "common/log.h"
#include "common/text.h"
#include "flutter_host/flutter_bundle.h"
#include "flutter_host/flutter_view_controller.h"

namespace vantro {

namespace {

// The first size of the view, in pixels. The overlay sets the real size later.
constexpr int kFirstWidth = 800;
constexpr int kFirstHeight = 600;

std::optional<std::string> EnvironmentVariable(const char* name) {
  const DWORD size = GetEnvironmentVariableA(name, nullptr, 0);  // with the final zero, so 1 for an empty value
  if (size == 0) return std::nullopt;
  std::string value(size, '\0');
  value.resize(GetEnvironmentVariableA(name, value.data(), size));
  return value;
}

void LogEnvironment() {
  LOG_INFO("\nEnvironment variables that might affect Flutter:");
  if (const auto value = EnvironmentVariable("FLUTTER_ENGINE")) {
    LOG_INFO("FLUTTER_ENGINE: %s", value->c_str());
  } else {
    LOG_INFO("FLUTTER_ENGINE not set");
  }
  if (const auto value = EnvironmentVariable("FLUTTER_ROOT")) {
    LOG_INFO("FLUTTER_ROOT: %s", value->c_str());
  } else {
    LOG_INFO("FLUTTER_ROOT not set");
  }
  if (const auto value = EnvironmentVariable("PATH")) {
    LOG_INFO("PATH: %s", value->c_str());
  } else {
    LOG_INFO("PATH not set");
  }
}

void LogProject(const DartProject& project) {
  LOG_INFO("Attempting to configure Flutter for transparency...");
  LOG_INFO("DartProject created with command line args:");
  for (const std::string& argument : project.dartEntrypointArguments) LOG_INFO("  %s", argument.c_str());
}

// Keys without Alt, and their characters.
bool IsPlainKeyMessage(UINT message) { return message >= WM_KEYDOWN && message <= WM_CHAR; }
bool IsLoggedMessage(UINT message) {
  return IsPlainKeyMessage(message) || (message >= WM_MOUSEMOVE && message <= WM_LBUTTONDOWN);
}

// Makes the view's window a child of the parent, at its first size and above its siblings.
void EmbedView(HWND view, HWND parent) {
  LOG_INFO("Successfully got Flutter window handle: %p", static_cast<void*>(view));
  if (parent) SetParent(view, parent);
  SetWindowLongPtrA(view, GWL_STYLE, GetWindowLongPtrA(view, GWL_STYLE) | WS_CHILD);
  LOG_INFO("Flutter child window configured for DWM composition");
  SetWindowPos(view, HWND_TOP, 0, 0, kFirstWidth, kFirstHeight, SWP_SHOWWINDOW);
  LOG_INFO("Flutter window positioned and styled as child window");
}

}  // namespace

FlutterEngine::FlutterEngine() = default;
FlutterEngine::~FlutterEngine() = default;

bool FlutterEngine::Initialize(HWND parentWindow) {
  parentWindow_ = parentWindow;
  LOG_INFO("==== Flutter Engine Initialization Started ====");
  LOG_DEBUG("Parent window handle: %p", static_cast<void*>(parentWindow));
  const std::filesystem::path data = DataDirectory();
  const std::filesystem::path icuData = data / L"icudtl.dat";
  const std::filesystem::path assets = data / L"flutter_assets";
  const std::string narrowAssets = NarrowFromWide(assets.native());
  LOG_INFO("ICU data path: %s", NarrowFromWide(icuData.native()).c_str());
  LOG_INFO("Flutter assets path: %s", narrowAssets.c_str());
  LogEnvironment();
  InspectFlutterBundle(icuData, assets);

  LOG_INFO("Creating DartProject with assets path: %s", narrowAssets.c_str());
  const DartProject project = MakeDartProject(data);
  LogProject(project);

  LOG_INFO("Creating FlutterViewController (800x600)...");
  viewController_ = FlutterViewController::Create(kFirstWidth, kFirstHeight, project);
  if (!viewController_) {
    LOG_ERROR("ERROR: Failed to create Flutter controller (nullptr returned)");
    return false;
  }
  LOG_INFO("FlutterViewController created successfully");
  flutterWindow_ = viewController_->ViewWindow();
  if (flutterWindow_) {
    EmbedView(flutterWindow_, parentWindow_);
  } else {
    LOG_WARNING("WARNING: Could not get Flutter window handle");
  }
  visible_ = true;
  if (flutterWindow_) ShowWindow(flutterWindow_, SW_SHOW);
  LOG_INFO("Flutter view set to visible");
  LOG_INFO("==== Flutter Engine Initialization Completed Successfully ====");
  return true;
}

BinaryMessenger* FlutterEngine::GetMessenger() {
  if (!viewController_) {
    LOG_WARNING("WARNING: GetMessenger called but viewController_ is null");
    return nullptr;
  }
  return viewController_->messenger();
}

std::optional<LRESULT> FlutterEngine::HandleWindowMessage(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam) {
  if (!viewController_) return std::nullopt;
  if (IsLoggedMessage(message)) {
    LOG_DEBUG("FlutterEngine::HandleWindowMessage - Message: %u on window %p", message, static_cast<void*>(hwnd));
  }
  const std::optional<LRESULT> result = viewController_->HandleTopLevelWindowProc(hwnd, message, wParam, lParam);
  if (IsPlainKeyMessage(message)) {
    if (result) {
      LOG_DEBUG("FlutterEngine: Handled message %u, result: %lld", message, static_cast<long long>(*result));
    } else {
      LOG_DEBUG("FlutterEngine: Did not handle message %u", message);
    }
  }
  return result;
}

// Uses the path of the executable cut at MAX_PATH, so a bundle at a longer path is not found.
std::filesystem::path FlutterEngine::DataDirectory() {
  wchar_t executable[MAX_PATH] = L"";
  GetModuleFileNameW(nullptr, executable, MAX_PATH);
  return std::filesystem::path(executable).parent_path() / L"data";
}

}  // namespace vantro
