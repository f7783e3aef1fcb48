#pragma once

#include <cstdint>

#include "common/geometry.h"

namespace glimmer {

/// A rectangle on paper, in inches from the sheet's upper left corner.
struct InchRect {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    [[nodiscard]] double width() const { return right - left; }
    [[nodiscard]] double height() const { return bottom - top; }
};

/// What a printer's device context says of itself, in dots: the numbers as they come, which some drivers leave at 0.
struct PrinterMetrics {
    int32_t logPixelsX = 0;
    int32_t logPixelsY = 0;
    int32_t physicalWidth = 0;
    int32_t physicalHeight = 0;
    int32_t physicalOffsetX = 0;
    int32_t physicalOffsetY = 0;
    int32_t horzRes = 0;
    int32_t vertRes = 0;
};

/// A sheet of paper in a printer.
struct PrintPaper {
    double dotsPerInchX = 600;
    double dotsPerInchY = 600;
    double width = 0;  ///< inches, the whole sheet
    double height = 0;
    InchRect printable;  ///< where the printer reaches
};

/// The sheet behind those numbers. A resolution of 0 is 600 dots per inch; a sheet without a size is what the printer
/// reaches, or A4 when it says nothing at all.
PrintPaper paperOf(const PrinterMetrics& metrics);

/// A place on the sheet in the printer's dots, whose origin is the corner of what it can reach. Corner and size are
/// rounded, so that at its natural size each pixel of a picture is one dot wherever it lies.
Rect dotsOf(const PrintPaper& paper, const InchRect& place);

}  // namespace glimmer
