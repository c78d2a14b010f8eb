#include "channel/method_channel_handler.h"

#include <utility>

#include "channel/method_table.h"
#include "common/log.h"
#include "flutter_host/flutter_engine.h"
#include "flutter_host/standard_method_codec.h"
#include "player/vlc_player.h"

namespace vantro {

MethodChannelHandler::MethodChannelHandler(FlutterEngine* engine, VLCPlayer* player, bool isMasterWindow,
                                           VantroWindow* window)
    : flutterEngine_(engine),
      vlcPlayer_(player),
      window_(window),
      isMasterWindow_(isMasterWindow),
      channelName_("org.vantro.player/communicate") {
  if (!engine || !player) {
    LOG_ERROR("MethodChannelHandler: Invalid engine or player");
    return;
  }
  BinaryMessenger* const messenger = engine->GetMessenger();
  if (!messenger) {
    LOG_ERROR("MethodChannelHandler: Binary messenger not available");
    return;
  }
  methodChannel_ = std::make_unique<MethodChannel>(messenger, channelName_, &StandardMethodCodec::GetInstance());
  markerPath_ = ResolveNativeMarkerPath();
  // Before the channel can receive a call, because the first call overwrites the marker of the last session.
  HandleStartupMarker();
  methodChannel_->SetMethodCallHandler([this](const MethodCall& call, std::unique_ptr<MethodResult> result) {
    HandleMethodCall(call, std::move(result));
  });
  player->SetEventCallback(
      [this](const char* name, const char* payload) { SendChannelEvent(name ? name : "", payload ? payload : ""); });
}

MethodChannelHandler::~MethodChannelHandler() {
  if (!markerPath_.empty()) WriteNativeMarker(false, "shutdown", CurrentUnixTimeMs());
  if (methodChannel_) methodChannel_->SetMethodCallHandler(nullptr);
  if (vlcPlayer_) vlcPlayer_->SetEventCallback([](const char*, const char*) {});
}

void MethodChannelHandler::HandleMethodCall(const MethodCall& call, std::unique_ptr<MethodResult> result) {
  // Written first, so that a crash in a handler leaves the name of that method in the marker, known or not.
  if (!markerPath_.empty()) WriteNativeMarker(true, call.method_name(), CurrentUnixTimeMs());
  const ChannelMethod* const method = FindChannelMethod(call.method_name());
  if (!method || !method->handler(*this, call, *result)) result->NotImplemented();
}

void MethodChannelHandler::SendChannelEvent(std::string_view method, std::string_view payload) {
  if (!methodChannel_) return;
  methodChannel_->InvokeMethod(method, payload.empty() ? EncodableValue() : EncodableValue(payload));
}

void MethodChannelHandler::ShowToast(const std::string& message, bool isShort) {
  if (!methodChannel_) return;
  // The flag is sent as text, because the interface compares text.
  const LocalMap toast({
      {EncodableValue("message"), EncodableValue(message)},
      {EncodableValue("short"), EncodableValue(isShort ? "true" : "false")},
  });
  methodChannel_->InvokeMethod("showToast", toast.value());
}

}  // namespace vantro
