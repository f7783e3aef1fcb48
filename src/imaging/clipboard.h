#pragma once

#include "common/bitmap.h"
#include "imaging/png_codec.h"

namespace glimmer {

/// Puts a picture on the clipboard, in the forms that other programs like best: "PNG", CF_DIBV5 and CF_DIB. The
/// clipboard stays as it was when `progress` stops it.
Status copyPictureToClipboard(const TBitmap& picture, const Progress& progress = {});

/// The clipboard's picture in the best form that it has there. Fails with a sentence when there is none.
Result<TBitmap> pictureFromClipboard();
bool clipboardHasPicture();

}  // namespace glimmer
