// Readers of a request's arguments. All follow one rule: the arguments must be a map, the key must be a string in it,
// and the value must be of a type that the reader accepts. Otherwise the reader returns the fallback. A wrong type
// counts as a missing key, and no reader reports an error. Standard library only; any thread.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "flutter_host/method_call.h"

namespace vantro {

// Accepts a 32-bit integer as it is, a 64-bit integer cut to its low 32 bits, and a double truncated toward zero. A
// double out of range becomes the nearest end of the range; a NaN becomes 0.
int32_t ReadIntArgument(const MethodCall& call, std::string_view key, int32_t fallback);
// Accepts only a Boolean, no integer.
bool ReadBoolArgument(const MethodCall& call, std::string_view key, bool fallback);
// Accepts only a string. The fallback is empty.
std::string ReadStringArgument(const MethodCall& call, std::string_view key);
// Accepts a double as it is, and an integer of either size converted to a double.
double ReadNumberArgument(const MethodCall& call, std::string_view key, double fallback);

}  // namespace vantro
