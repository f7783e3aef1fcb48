#pragma once

#include <wx/bitmap.h>

#include "common/bitmap.h"

namespace glimmer {

/// The picture as the toolkit's bitmap, without its alpha. For small pictures: it copies.
wxBitmap wxBitmapOf(const TBitmap& picture);

}  // namespace glimmer
