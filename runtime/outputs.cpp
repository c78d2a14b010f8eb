#include "runtime/outputs.h"

#include <cstring>
#include <string_view>
#include <vector>

#include "runtime/log.h"
#include "runtime/real_library.h"

namespace vantro::runtime {
namespace {

constexpr std::string_view kOption = "--aout=";
constexpr char kWaveout[] = "waveout";
constexpr char kWaveoutOption[] = "--aout=waveout";

bool NamesOutput(const char* argument) { return argument && std::string_view(argument).starts_with(kOption); }

bool HasOutput(const AudioOutput* outputs, std::string_view name) {
  for (; outputs; outputs = outputs->next) {
    if (outputs->name && name == outputs->name) return true;
  }
  return false;
}

// True when an output that the arguments name is missing and waveout can replace it.
bool NeedsWaveout(Instance* instance, const std::vector<const char*>& arguments) {
  AudioOutput* const outputs = Real().functions.libvlc_audio_output_list_get(instance);
  bool missing = false;
  for (const char* argument : arguments) {
    missing |= NamesOutput(argument) && !HasOutput(outputs, argument + kOption.size());
  }
  const bool needed = missing && HasOutput(outputs, kWaveout);
  if (outputs) Real().functions.libvlc_audio_output_list_release(outputs);
  return needed;
}

}  // namespace

Instance* NewInstance(int count, const char* const* arguments) {
  const RealFunctions& functions = Real().functions;
  Instance* const asked = functions.libvlc_new(count, arguments);
  if (!asked || count <= 0) return asked;
  std::vector<const char*> replaced(arguments, arguments + count);
  if (!NeedsWaveout(asked, replaced)) return asked;
  for (const char*& argument : replaced) {
    if (NamesOutput(argument)) argument = kWaveoutOption;
  }
  Instance* const instance = functions.libvlc_new(count, replaced.data());
  if (!instance) return asked;
  functions.libvlc_release(asked);
  RUNTIME_LOG("the sound output is %s: the one that was asked for is not in this library", kWaveout);
  return instance;
}

}  // namespace vantro::runtime
