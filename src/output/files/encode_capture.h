#pragma once

#include <cstdint>
#include <vector>

#include "common/progress.h"
#include "common/result.h"
#include "editor/document/document.h"
#include "editor/painting/text_painter.h"
#include "imaging/picture_file.h"

namespace glimmer {

/// A picture file as a capture is written into it.
struct CaptureFormat {
    PictureFormat format = PictureFormat::Png;
    bool editable = true;  ///< a PNG carries its annotations and the clean page below them
    int jpegQuality = EncodeOptions::defaultJpegQuality;
};

/// The capture's output picture as such a file in memory.
Result<std::vector<uint8_t>> encodeCapture(const CaptureDocument& document, const CaptureFormat& format,
                                           TextPainter& text, const Progress& progress = {});

}  // namespace glimmer
