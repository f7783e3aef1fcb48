#include "common/section_memory.h"

#include <windows.h>

namespace glimmer {

namespace {

/// Below this a picture is not worth a kernel object.
constexpr size_t leastSection = size_t{1} << 20U;

class SectionMemory final : public PixelMemory {
public:
    explicit SectionMemory(size_t count)
        : section_(CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0, static_cast<DWORD>(count),
                                      nullptr)) {
        if (section_ != nullptr) map();
    }
    ~SectionMemory() override {
        if (view_ != nullptr) UnmapViewOfFile(view_);
        if (section_ != nullptr) CloseHandle(section_);
    }
    SectionMemory(const SectionMemory&) = delete;
    SectionMemory& operator=(const SectionMemory&) = delete;
    SectionMemory(SectionMemory&&) = delete;
    SectionMemory& operator=(SectionMemory&&) = delete;

    [[nodiscard]] uint8_t* data() const override { return view_; }
    bool park() override {
        if (view_ != nullptr) UnmapViewOfFile(view_);
        view_ = nullptr;
        return true;
    }
    uint8_t* wake() override {
        if (view_ == nullptr) map();
        return view_;
    }

private:
    void map() { view_ = static_cast<uint8_t*>(MapViewOfFile(section_, FILE_MAP_ALL_ACCESS, 0, 0, 0)); }

    HANDLE section_;
    uint8_t* view_ = nullptr;
};

}  // namespace

std::unique_ptr<PixelMemory> sectionPixelMemory(size_t count) {
    if (count < leastSection) return heapPixelMemory(count);
    auto memory = std::make_unique<SectionMemory>(count);
    if (memory->data() == nullptr) return nullptr;
    return memory;
}

}  // namespace glimmer
