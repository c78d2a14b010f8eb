// The bundle of the interface on disk: where its parts lie and what the log says about them.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace vantro {

// What an engine runs.
struct DartProject {
  std::wstring assetsPath;
  std::wstring icuDataPath;
  std::wstring aotLibraryPath;  // used only by an engine built for ahead-of-time code
  // Handed to main, the entry point; no switches of the engine.
  std::vector<std::string> dartEntrypointArguments;
};

// Logs what of the bundle is there. Nothing that is missing stops a start: what comes of it is the embedding's to tell.
// A file system query that fails throws std::filesystem::filesystem_error with the name of the query.
void InspectFlutterBundle(const std::filesystem::path& icuData, const std::filesystem::path& assets);

// The project of the bundle in a data directory, with the arguments that the interface's entry point expects.
DartProject MakeDartProject(const std::filesystem::path& dataDirectory);

}  // namespace vantro
