#pragma once

#include <cstdint>
#include <memory>
#include <span>

#include "common/bitmap.h"

namespace glimmer {

/// A bitmap that the system can draw into: 32 bits, top-down, with a device context of its own.
class DrawingSurface {
public:
    /// A black surface. Fails, with a sentence, on the sizes that TBitmap refuses and when the system has no room.
    static Result<DrawingSurface> create(int32_t width, int32_t height);
    ~DrawingSurface();
    DrawingSurface(DrawingSurface&& other) noexcept;
    DrawingSurface& operator=(DrawingSurface&& other) noexcept;
    DrawingSurface(const DrawingSurface&) = delete;
    DrawingSurface& operator=(const DrawingSurface&) = delete;

    /// The device context (HDC); valid as long as this object.
    [[nodiscard]] void* deviceContext() const;
    [[nodiscard]] Size size() const;
    /// The pixels, 0x00RRGGBB, row after row from the top; what was drawn before is in them.
    [[nodiscard]] std::span<uint32_t> pixels() const;

    /// The picture drawn so far, opaque, on the same memory. The device context ends.
    TBitmap takeBitmap() &&;

private:
    class Section;
    explicit DrawingSurface(std::unique_ptr<Section> section);
    std::unique_ptr<Section> section_;
};

}  // namespace glimmer
