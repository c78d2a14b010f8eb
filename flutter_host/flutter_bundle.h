// The bundle of the interface on disk: the paths of its parts, and the log of what is there.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro {

// The project that an engine runs.
struct DartProject {
  std::wstring assetsPath;
  std::wstring icuDataPath;
  std::wstring aotLibraryPath;  // used only by an engine built for ahead-of-time code
  // Passed to the entry point main. These are not switches of the engine.
  std::vector<std::string> dartEntrypointArguments;
};

// Logs which parts of the bundle are there. A missing part does not stop the start: the embedding reports the result. A
// failing file system query throws std::filesystem::filesystem_error with the name of the query.
void InspectFlutterBundle(const std::filesystem::path& icuData, const std::filesystem::path& assets);

// Returns the project of the bundle in a data directory, with the arguments for the interface's entry point.
DartProject MakeDartProject(const std::filesystem::path& dataDirectory);

}  // namespace vantro
