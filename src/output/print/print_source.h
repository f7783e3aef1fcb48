#pragma once

#include <memory>

#include "common/bitmap.h"
#include "common/clock.h"
#include "common/progress.h"
#include "editor/document/document.h"
#include "editor/painting/text_painter.h"
#include "output/print/print_sheets.h"

namespace glimmer {

/// A capture as printing sees it: rows of its output picture, without ever holding the whole of it.
class PrintSource {
public:
    /// Bytes of the rows that are painted at once.
    static constexpr int32_t bandBytes = 4 * 1024 * 1024;

    /// Both must outlive it.
    PrintSource(CaptureDocument& document, TextPainter& text);

    [[nodiscard]] Size size() const { return document_.size(); }
    [[nodiscard]] const CaptureInfo& info() const { return document_.info(); }
    [[nodiscard]] CaptureDocument& document() const { return document_; }
    /// When it was made: the time that a watermark and the foot line name.
    [[nodiscard]] LocalTime time() const { return time_; }
    /// Rows of a band at that size of a picture, at least 1.
    [[nodiscard]] int32_t bandRows() const;
    [[nodiscard]] Result<TBitmap> rows(int32_t from, int32_t to) const;

    /// Reads the picture once, band by band: where it can be cut, and a copy of it that is reduced to about that many
    /// pixels in all. Fails for want of memory and when `progress` says to stop (without a sentence).
    Status look(int64_t mostPixels, const Progress& progress);
    [[nodiscard]] const EmptyStripes& stripes() const { return stripes_; }
    /// The reduced copy; empty before look().
    [[nodiscard]] const TBitmap& reduced() const { return reduced_; }

private:
    CaptureDocument& document_;
    TextPainter& text_;
    LocalTime time_;
    EmptyStripes stripes_;
    TBitmap reduced_;
};

}  // namespace glimmer
