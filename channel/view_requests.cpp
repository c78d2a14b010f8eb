// The requests for the Flutter view and for the video's window.
#include <windows.h>

#include "channel/argument_readers.h"
#include "channel/request_handlers.h"
#include "common/measures.h"
#include "common/saturated_cast.h"
#include "common/win32_geometry.h"
#include "flutter_host/flutter_engine.h"
#include "player/vlc_player.h"

namespace vantro::requests {

namespace {

constexpr double kOpaque = 1.0;

bool ReplyNoEngine(MethodResult& result) {
  result.Error("ENGINE_ERROR", "Flutter engine not available");
  return true;
}

bool SetFlutterViewVisible(MethodChannelHandler& handler, MethodResult& result, bool visible) {
  FlutterEngine* const engine = handler.flutterEngine_;
  if (!engine) return ReplyNoEngine(result);
  engine->visible_ = visible;
  if (engine->flutterWindow_) ShowWindow(engine->flutterWindow_, visible ? SW_SHOW : SW_HIDE);
  return Reply(result, true);
}

// The level is not clamped: a value below 0 wraps around in the byte.
BYTE AlphaByte(double level) { return static_cast<BYTE>(SaturatedCast<int64_t>(level * 255.0)); }

void ApplyAlpha(HWND view, double level) {
  const LONG style = GetWindowLongA(view, GWL_EXSTYLE);
  const bool isLayered = (style & WS_EX_LAYERED) != 0;
  if (level < kOpaque) {
    if (!isLayered) SetWindowLongA(view, GWL_EXSTYLE, style | WS_EX_LAYERED);
    SetLayeredWindowAttributes(view, 0, AlphaByte(level), LWA_ALPHA);
  } else if (isLayered) {
    SetWindowLongA(view, GWL_EXSTYLE, style & ~WS_EX_LAYERED);
  }
}

}  // namespace

bool SetAlphaFlutterView(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  const double level = ReadNumberArgument(call, "level", kOpaque);
  FlutterEngine* const engine = handler.flutterEngine_;
  if (!engine) return ReplyNoEngine(result);
  engine->alpha_ = level;
  if (engine->flutterWindow_) ApplyAlpha(engine->flutterWindow_, level);
  return Reply(result, true);
}

// The overlay window that contains the view does not change.
bool ShowFlutterView(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  return SetFlutterViewVisible(handler, result, true);
}

bool HideFlutterView(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  return SetFlutterViewVisible(handler, result, false);
}

bool ResizeVlc(MethodChannelHandler& handler, const MethodCall& call, MethodResult& result) {
  handler.vlcPlayer_->Resize(ReadIntArgument(call, "x", 0), ReadIntArgument(call, "y", 0),
                             ReadIntArgument(call, "width", 0), ReadIntArgument(call, "height", 0));
  return Reply(result, true);
}

bool ResizeVlcFull(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  const auto [width, height] = ClientSize(handler.vlcPlayer_->ParentWindow());
  handler.vlcPlayer_->Resize(0, TITLE_BAR_HEIGHT, width, height - TITLE_BAR_HEIGHT);
  return Reply(result, true);
}

// Front and back do the same: the order of video and view is fixed, and can only be restored.
bool RestoreStacking(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  handler.vlcPlayer_->EnsureZOrder();
  return Reply(result, true);
}

}  // namespace vantro::requests
