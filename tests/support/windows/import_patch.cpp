#include "support/windows/import_patch.h"

#include <gtest/gtest.h>

#include <cstring>

namespace glimmer::test {

namespace {

/// A module as it lies in memory; everything in it is found by its distance from the start.
class Image {
public:
    explicit Image(HMODULE module) : base_(reinterpret_cast<uint8_t*>(module)) {}

    /// The place where a function's address stands; null when it is not imported.
    [[nodiscard]] void** importSlot(const char* library, const char* function) const {
        const auto* imports = at<IMAGE_IMPORT_DESCRIPTOR>(directory(IMAGE_DIRECTORY_ENTRY_IMPORT).VirtualAddress);
        for (; imports->Name != 0; ++imports)
            if (named(imports->Name, library))
                if (void** slot = slotOf(function, imports->OriginalFirstThunk, imports->FirstThunk)) return slot;
        return delayedSlot(library, function);
    }

private:
    template <class Type>
    [[nodiscard]] Type* at(DWORD distance) const {
        return reinterpret_cast<Type*>(base_ + distance);
    }
    [[nodiscard]] const IMAGE_NT_HEADERS& headers() const {
        return *at<IMAGE_NT_HEADERS>(static_cast<DWORD>(at<IMAGE_DOS_HEADER>(0)->e_lfanew));
    }
    [[nodiscard]] const IMAGE_DATA_DIRECTORY& directory(int which) const {
        return headers().OptionalHeader.DataDirectory[which];
    }
    [[nodiscard]] bool named(DWORD name, const char* library) const {
        return name < headers().OptionalHeader.SizeOfImage && _stricmp(at<char>(name), library) == 0;
    }

    [[nodiscard]] void** slotOf(const char* function, DWORD nameTable, DWORD slotTable) const {
        const auto* names = at<IMAGE_THUNK_DATA>(nameTable);
        for (auto** slot = at<void*>(slotTable); names->u1.AddressOfData != 0; ++names, ++slot) {
            if (IMAGE_SNAP_BY_ORDINAL(names->u1.Ordinal)) continue;
            const auto* name = at<IMAGE_IMPORT_BY_NAME>(static_cast<DWORD>(names->u1.AddressOfData));
            if (std::strcmp(name->Name, function) == 0) return slot;
        }
        return nullptr;
    }

    /// Of a library that is loaded at its first call. The linker does not say in the headers where these stand, so they
    /// are looked for.
    [[nodiscard]] void** delayedSlot(const char* library, const char* function) const {
        const DWORD end = headers().OptionalHeader.SizeOfImage - sizeof(IMAGE_DELAYLOAD_DESCRIPTOR);
        for (DWORD place = 0; place <= end; place += sizeof(DWORD)) {
            const auto* delayed = at<IMAGE_DELAYLOAD_DESCRIPTOR>(place);
            if (delayed->Attributes.AllAttributes == 1 && named(delayed->DllNameRVA, library))
                return slotOf(function, delayed->ImportNameTableRVA, delayed->ImportAddressTableRVA);
        }
        return nullptr;
    }

    uint8_t* base_;
};

}  // namespace

ImportPatch::ImportPatch(HMODULE module, const char* library, const char* function, void* replacement)
    : slot_(Image(module).importSlot(library, function)) {
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
