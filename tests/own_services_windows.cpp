// On Windows a DLL keeps to the DLL that it imports from, whatever a program defines. So that tests can have core
// services of their own all the same, those that they define replace the imported ones in the import table of the
// library.
#include <windows.h>

#include <cstddef>
#include <cstring>

#include "zimcore.h"

namespace {

struct Service {
  const char* name;
  void* own;
};
const Service kServices[] = {{"zimMalloc", reinterpret_cast<void*>(&zimMalloc)},
                             {"zimFree", reinterpret_cast<void*>(&zimFree)},
                             {"ownGetNumThreads", reinterpret_cast<void*>(&ownGetNumThreads)}};

// What lies so many bytes from the start of a DLL.
template <class T>
T* at(std::byte* library, std::size_t offset) {
  return reinterpret_cast<T*>(library + offset);
}

[[gnu::constructor]] void replaceImports() {
  auto* const library = reinterpret_cast<std::byte*>(GetModuleHandleA("zimccmx-7.0.dll"));
  const auto* const headers =
      at<IMAGE_NT_HEADERS>(library, static_cast<std::size_t>(at<IMAGE_DOS_HEADER>(library, 0)->e_lfanew));
  const DWORD imports = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
  for (auto* from = at<IMAGE_IMPORT_DESCRIPTOR>(library, imports); from->Name != 0; ++from) {
    if (std::strcmp(at<char>(library, from->Name), "zimcore-7.0.dll") != 0) continue;
    const auto* names = at<IMAGE_THUNK_DATA>(library, from->OriginalFirstThunk);
    void** slot = at<void*>(library, from->FirstThunk);
    for (; names->u1.AddressOfData != 0; ++names, ++slot) {
      const char* const name = at<IMAGE_IMPORT_BY_NAME>(library, names->u1.AddressOfData)->Name;
      for (const Service& service : kServices) {
        if (std::strcmp(name, service.name) != 0) continue;
        DWORD before;
        VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &before);
        *slot = service.own;
        VirtualProtect(slot, sizeof *slot, before, &before);
      }
    }
  }
}

}  // namespace
