// The methods of the player channel, as data.
#pragma once

#include <span>
#include <string_view>

#include "channel/request_handlers.h"

namespace vantro {

struct ChannelMethod {
  std::string_view name;
  requests::Handler* handler;
};

// In the order in which a name is compared. interface/channel.json lists them in the same order; a test compares the
// two.
std::span<const ChannelMethod> ChannelMethods();

// The first method whose name equals the given one byte for byte, or null.
const ChannelMethod* FindChannelMethod(std::string_view name);

}  // namespace vantro
