#pragma once

#include <cstddef>
#include <cstdint>

#include "common/bitmap.h"
#include "imaging/png_codec.h"

namespace glimmer {

// What may be in the files that hold captures. Writers refuse, with a sentence, what goes beyond; readers take all that
// keeps within. Both ask here, so what was saved can be opened again. A test gives smaller numbers to both.

/// One picture that can be edited again.
struct EditableLimits {
    /// Pixels of all pictures of annotations together, those that several annotations share counted once. They are as
    /// many as one picture may have, which is what a document can hold in a process of 32 bits.
    int64_t drawingPixels = static_cast<int64_t>(TBitmap::maxBytes / 4);
    PngBounds png;
};

/// A project. Its pictures are unpacked and decoded one after the other: no bound of all together is needed.
struct ProjectLimits {
    uint64_t fileBytes = 0xFFFFFFFFU;              ///< the archive; beyond it another kind of archive begins
    uint64_t pictureBytes = PngLimits::fileBytes;  ///< one picture's file
    size_t captures = 1000;
    size_t listBytes = size_t{64} << 20U;  ///< one list of names or pages
};

}  // namespace glimmer
