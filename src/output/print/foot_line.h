#pragma once

#include <cstdint>
#include <string>

#include "common/bitmap.h"
#include "common/clock.h"
#include "editor/document/content.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

/// "2026-11-24   2 / 5": what stands at the right of a sheet's foot.
std::string footDate(const LocalTime& time, int32_t sheet, int32_t sheets);

/// The line at the foot of a sheet, black on white and of that size: title and address at the left, shortened where
/// there is no room, date and number of the sheet at the right. The letters are as high as the line allows.
Result<TBitmap> footLine(const CaptureInfo& info, const std::string& right, Size size, TextPainter& text);

}  // namespace glimmer
