// Relays provider data from the first window, which holds it, to all other windows. The host stores none of it: a chunk
// is sent on before the request returns.
#include "channel/argument_readers.h"
#include "channel/host_windows.h"
#include "channel/request_handlers.h"
#include "common/log.h"

namespace vantro::requests {

bool GetWindowInfo(MethodChannelHandler& handler, const MethodCall&, MethodResult& result) {
  LOG_DEBUG("GetWindowInfo: Returning window information");
  // The address is unique among the windows of this process. It has no other meaning.
  const auto windowId = static_cast<int64_t>(reinterpret_cast<intptr_t>(&handler));
  const LocalMap info({
      {EncodableValue("isMasterWindow"), EncodableValue(handler.isMasterWindow_)},
      {EncodableValue("windowId"), EncodableValue(windowId)},
  });
  result.Success(info.value());
  return true;
}

bool RequestProviderData(MethodChannelHandler&, const MethodCall&, MethodResult& result) {
  LOG_INFO("RequestProviderData: Client window requesting provider data from master");
  MethodChannelHandler* const master = MasterHandler();
  if (!master) {
    LOG_ERROR("RequestProviderData: No master window found");
    result.Error("NO_MASTER", "Master window not found", EncodableValue(false));
    return false;
  }
  LOG_INFO("RequestProviderData: Sending request to master window");
  master->SendChannelEvent("providerDataRequested", "");
  return Reply(result, true);
}

bool SendProviderData(MethodChannelHandler&, const MethodCall& call, MethodResult& result) {
  LOG_INFO("SendProviderDataDirect: Master window sending raw data to clients");
  const auto chunk = call.arguments().Get<EncodableMap>();
  if (!chunk) {
    LOG_ERROR("SendProviderDataDirect: Invalid arguments");
    result.Error("INVALID_ARGUMENTS", "Arguments must be a map", EncodableValue(false));
    return false;
  }
  const std::string chunkType = ReadStringArgument(call, "chunkType");
  if (chunkType.empty()) {
    LOG_ERROR("SendProviderDataDirect: Missing chunk type");
    result.Error("INVALID_CHUNK", "Chunk type is missing", EncodableValue(false));
    return false;
  }
  LOG_INFO("SendProviderDataDirect: Broadcasting %s chunk directly", chunkType.c_str());
  BroadcastEncodableToClientWindows("providerDataReceived", call.KeepArguments());
  return Reply(result, true);
}

}  // namespace vantro::requests
