// A bundle of the interface beside the test program, made and removed by each test.
#pragma once

#include <filesystem>
#include <string>

namespace vantro::test {

class BundleFixture {
 public:
  // Begins without a data directory.
  BundleFixture();
  ~BundleFixture();
  BundleFixture(const BundleFixture&) = delete;
  BundleFixture& operator=(const BundleFixture&) = delete;

  // A file of so many bytes at a path below the data directory; its folders are made.
  void AddFile(const std::filesystem::path& name, size_t size);
  void AddFolder(const std::filesystem::path& name);
  // As the log writes it.
  std::string NarrowPath(const std::filesystem::path& name) const;
  const std::filesystem::path& data() const { return data_; }

 private:
  std::filesystem::path data_;
};

}  // namespace vantro::test
