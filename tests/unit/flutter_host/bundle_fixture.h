// A bundle of the interface beside the test program. Each test creates and removes it.
#pragma once

#include <filesystem>
#include <string>

namespace vantro::test {

class BundleFixture {
 public:
  // Starts without a data directory.
  BundleFixture();
  ~BundleFixture();
  BundleFixture(const BundleFixture&) = delete;
  BundleFixture& operator=(const BundleFixture&) = delete;

  // Creates a file of this size in bytes at a path relative to the data directory. Creates its folders too.
  void AddFile(const std::filesystem::path& name, size_t size);
  void AddFolder(const std::filesystem::path& name);
  // The path in the form of the log.
  std::string NarrowPath(const std::filesystem::path& name) const;
  const std::filesystem::path& data() const { return data_; }

 private:
  std::filesystem::path data_;
};

}  // namespace vantro::test
