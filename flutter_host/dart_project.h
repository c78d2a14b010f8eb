// What an engine runs.
#pragma once

#include <string>
#include <vector>

namespace vantro {

struct DartProject {
  std::wstring assetsPath;
  std::wstring icuDataPath;
  std::wstring aotLibraryPath;  // used only by an engine built for ahead-of-time code
  // Handed to main, the entry point; no switches of the engine.
  std::vector<std::string> dartEntrypointArguments;
};

}  // namespace vantro
