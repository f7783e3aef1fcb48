#pragma once

#include "common/bitmap.h"

namespace glimmer {

/// A 32-bit picture over memory that the system can copy to a window at once (a device-independent section). The
/// canvas paints one of the window's size and copies the invalid part from it.
class CanvasSurface {
public:
    CanvasSurface() = default;
    ~CanvasSurface();
    CanvasSurface(const CanvasSurface&) = delete;
    CanvasSurface& operator=(const CanvasSurface&) = delete;
    CanvasSurface(CanvasSurface&&) = delete;
    CanvasSurface& operator=(CanvasSurface&&) = delete;

    /// Makes sure of at least that size; what was painted is lost when it grows. False for want of memory.
    bool ensure(Size size);
    [[nodiscard]] TBitmap& bitmap() { return bitmap_; }
    /// Copies the part `area` to the same place of the device context (an HDC).
    void copyTo(void* deviceContext, const Rect& area) const;

private:
    void release();

    TBitmap bitmap_;
    void* memoryContext_ = nullptr;  ///< HDC that the section is selected into
    void* section_ = nullptr;        ///< HBITMAP
    void* formerBitmap_ = nullptr;   ///< what the context held before
};

}  // namespace glimmer
