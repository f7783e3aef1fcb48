#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "capture/mouse_cursor.h"
#include "capture/stamps.h"
#include "common/bitmap.h"
#include "common/result.h"
#include "editor/document/document.h"

namespace glimmer {

/// Makes the document of a capture that was taken at this time (seconds since 1970-01-01 UTC): named after the page's
/// title, with the stamps and the mouse pointer (in the picture's pixels) as annotations. Of address and title only so
/// much stays with it that a project of many captures remains small enough.
Result<std::unique_ptr<CaptureDocument>> newDocument(TBitmap picture, const std::string& url, const std::string& title,
                                                     int64_t time, std::optional<MouseCursor> pointer,
                                                     const StampOptions& stamped, TextPainter& painter,
                                                     std::string notes = {});

}  // namespace glimmer
