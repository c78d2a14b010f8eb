#include "tests/unit/flutter_host/bundle_fixture.h"

#include <windows.h>

#include <fstream>

#include "common/text.h"

namespace vantro::test {

namespace fs = std::filesystem;

BundleFixture::BundleFixture() {
  wchar_t executable[MAX_PATH];
  GetModuleFileNameW(nullptr, executable, MAX_PATH);
  data_ = fs::path(executable).parent_path() / L"data";
  fs::remove_all(data_);
}

BundleFixture::~BundleFixture() { fs::remove_all(data_); }

void BundleFixture::AddFile(const fs::path& name, size_t size) {
  fs::create_directories((data_ / name).parent_path());
  std::ofstream(data_ / name, std::ios::binary) << std::string(size, 'x');
}

void BundleFixture::AddFolder(const fs::path& name) { fs::create_directories(data_ / name); }

std::string BundleFixture::NarrowPath(const fs::path& name) const { return NarrowFromWide((data_ / name).native()); }

}  // namespace vantro::test
