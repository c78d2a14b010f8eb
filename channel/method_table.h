// The table of the player channel's methods.
#pragma once

#include <span>
#include <string_view>

#include "channel/request_handlers.h"

namespace vantro {

struct ChannelMethod {
  std::string_view name;
  requests::Handler* handler;
};

// Names are compared in this order. interface/channel.json lists the methods in the same order, which a test checks.
std::span<const ChannelMethod> ChannelMethods();

// Returns the first method whose name equals the given one byte for byte, or null.
const ChannelMethod* FindChannelMethod(std::string_view name);

}  // namespace vantro
