#include "runtime/outputs.h"

#include <algorithm>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "runtime/log.h"
#include "runtime/real_library.h"

namespace vantro::runtime {
namespace {

constexpr std::string_view kOption = "--aout=";
constexpr char kWaveout[] = "waveout";
constexpr char kWaveoutOption[] = "--aout=waveout";

bool NamesOutput(const char* argument) { return argument && std::string_view(argument).starts_with(kOption); }

using Names = std::vector<std::string>;

// The outputs of the library, once an instance has reported them. They come from plugins, which a process loads once.
class KnownOutputs {
 public:
  std::optional<Names> Get() const {
    const std::lock_guard guard(lock_);
    return names_;
  }

  // An instance that reports none is not kept: the next instance is asked again.
  void AskFor(Instance* instance) {
    AudioOutput* const outputs = Real().functions.libvlc_audio_output_list_get(instance);
    if (!outputs) return;
    Names names;
    for (const AudioOutput* output = outputs; output; output = output->next) {
      if (output->name) names.emplace_back(output->name);
    }
    Real().functions.libvlc_audio_output_list_release(outputs);
    const std::lock_guard guard(lock_);
    names_ = std::move(names);
  }

 private:
  mutable std::mutex lock_;
  std::optional<Names> names_;
};

KnownOutputs& Known() {
  static auto* const known = new KnownOutputs;  // never destroyed: libvlc's threads may outlive the statics
  return *known;
}

bool Has(const Names& outputs, std::string_view name) {
  return std::find(outputs.begin(), outputs.end(), name) != outputs.end();
}

// True when an output that the arguments name is missing and waveout can replace it.
bool NeedsWaveout(const Names& outputs, const std::vector<const char*>& arguments) {
  const bool missing = std::any_of(arguments.begin(), arguments.end(), [&outputs](const char* argument) {
    return NamesOutput(argument) && !Has(outputs, argument + kOption.size());
  });
  return missing && Has(outputs, kWaveout);
}

Instance* New(const std::vector<const char*>& arguments) {
  return Real().functions.libvlc_new(static_cast<int>(arguments.size()), arguments.data());
}

}  // namespace

Instance* NewInstance(int count, const char* const* arguments) {
  if (count <= 0) return Real().functions.libvlc_new(count, arguments);
  const std::vector<const char*> wanted(arguments, arguments + count);
  if (std::none_of(wanted.begin(), wanted.end(), NamesOutput)) return New(wanted);
  Instance* asked = nullptr;
  if (!Known().Get()) {
    asked = New(wanted);
    if (!asked) return nullptr;
    Known().AskFor(asked);
  }
  if (NeedsWaveout(Known().Get().value_or(Names{}), wanted)) {
    std::vector<const char*> replaced = wanted;
    std::replace_if(replaced.begin(), replaced.end(), NamesOutput, kWaveoutOption);
    if (Instance* const instance = New(replaced)) {
      if (asked) Real().functions.libvlc_release(asked);
      RUNTIME_LOG("the sound output is %s: the one that was asked for is not in this library", kWaveout);
      return instance;
    }
  }
  return asked ? asked : New(wanted);
}

}  // namespace vantro::runtime
