#pragma once

#include <memory>
#include <vector>

#include "common/bitmap.h"

namespace glimmer::test {

/// Pixels that can be parked, and then not be had again while `refused`. For setPixelAllocator().
class ShyMemory final : public PixelMemory {
public:
    static std::unique_ptr<PixelMemory> make(size_t count) { return std::make_unique<ShyMemory>(count); }
    explicit ShyMemory(size_t count) : bytes_(count) {}
    [[nodiscard]] uint8_t* data() const override { return parked_ ? nullptr : bytes_.data(); }
    bool park() override { return parked_ = true; }
    uint8_t* wake() override {
        parked_ = parked_ && refused;
        return data();
    }
    static inline bool refused = false;

private:
    mutable std::vector<uint8_t> bytes_;
    bool parked_ = false;
};

}  // namespace glimmer::test
