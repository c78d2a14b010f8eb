#include "tests/support/import_hook.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

namespace vantro::test {

namespace {

template <typename T>
T* At(HMODULE module, uint64_t offset) {
  return reinterpret_cast<T*>(reinterpret_cast<uint8_t*>(module) + offset);
}

// Returns the import slot through which the module calls the function, or null.
void** FindImport(HMODULE module, const char* library, const char* function) {
  const auto* dos = At<IMAGE_DOS_HEADER>(module, 0);
  const auto* headers = At<IMAGE_NT_HEADERS>(module, static_cast<uint64_t>(dos->e_lfanew));
  const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
  for (auto* imports = At<IMAGE_IMPORT_DESCRIPTOR>(module, directory.VirtualAddress); imports->Name; ++imports) {
    if (_stricmp(At<const char>(module, imports->Name), library) != 0) continue;
    const auto* name = At<IMAGE_THUNK_DATA>(module, imports->OriginalFirstThunk);
    auto* slot = At<IMAGE_THUNK_DATA>(module, imports->FirstThunk);
    for (; name->u1.AddressOfData; ++name, ++slot) {
      if (IMAGE_SNAP_BY_ORDINAL(name->u1.Ordinal)) continue;
      const auto* byName = At<IMAGE_IMPORT_BY_NAME>(module, name->u1.AddressOfData);
      if (std::strcmp(byName->Name, function) == 0) return reinterpret_cast<void**>(&slot->u1.Function);
    }
  }
  return nullptr;
}

void WriteSlot(void** slot, void* value) {
  DWORD protection = 0;
  VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
  *slot = value;
  VirtualProtect(slot, sizeof *slot, protection, &protection);
}

}  // namespace

ImportHook::ImportHook(const char* library, const char* function, HMODULE module, void* replacement)
    : slot_(FindImport(module, library, function)) {
  if (!slot_) {
    ADD_FAILURE() << "the module does not import " << function << " from " << library;
    return;
  }
  original_ = *slot_;
  WriteSlot(slot_, replacement);
}

ImportHook::~ImportHook() {
  if (slot_) WriteSlot(slot_, original_);
}

}  // namespace vantro::test
