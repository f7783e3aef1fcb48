#pragma once

#include "common/bitmap.h"
#include "common/geometry.h"

namespace glimmer {

/// The block of a page at a point of the picture (32 bits a pixel): the smallest rectangle around it that is framed by
/// lines of one colour each.
Rect blockAt(const TBitmap& picture, Point at);

}  // namespace glimmer
