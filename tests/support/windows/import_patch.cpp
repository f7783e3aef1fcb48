#include "support/windows/import_patch.h"

#include <gtest/gtest.h>

#include <cstring>

namespace glimmer::test {

namespace {

/// The place in a module's import address table where a function's address stands; null when it is not imported.
void** importSlot(HMODULE module, const char* library, const char* function) {
    auto* base = reinterpret_cast<uint8_t*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
    if (directory.VirtualAddress == 0) return nullptr;
    const auto* imports = reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
    for (; imports->Name != 0; ++imports) {
        if (_stricmp(reinterpret_cast<const char*>(base + imports->Name), library) != 0) continue;
        const auto* names = reinterpret_cast<const IMAGE_THUNK_DATA*>(base + imports->OriginalFirstThunk);
        auto* slots = reinterpret_cast<void**>(base + imports->FirstThunk);
        for (; names->u1.AddressOfData != 0; ++names, ++slots) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* name = reinterpret_cast<const IMAGE_IMPORT_BY_NAME*>(base + names->u1.AddressOfData);
            if (std::strcmp(reinterpret_cast<const char*>(name->Name), function) == 0) return slots;
        }
    }
    return nullptr;
}

}  // namespace

ImportPatch::ImportPatch(HMODULE module, const char* library, const char* function, void* replacement)
    : slot_(importSlot(module, library, function)) {
    if (slot_ == nullptr) {
        ADD_FAILURE() << function << " of " << library << " is not imported";
        return;
    }
    before_ = *slot_;
    put(slot_, replacement);
}

ImportPatch::~ImportPatch() {
    if (slot_ != nullptr) put(slot_, before_);
}

void ImportPatch::put(void** slot, void* function) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
}

}  // namespace glimmer::test
