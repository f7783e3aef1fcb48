#include "capture/new_document.h"

#include <utility>

#include "common/text.h"

namespace glimmer {

namespace {

/// UTF-16 units of an address or title that stay: a page may have put a whole picture into its address.
constexpr size_t longestPageText = 8192;

}  // namespace

Result<std::unique_ptr<CaptureDocument>> newDocument(TBitmap picture, const std::string& url, const std::string& title,
                                                     int64_t time, std::optional<MouseCursor> pointer,
                                                     const StampOptions& stamped, TextPainter& painter,
                                                     std::string notes) {
    CaptureInfo info;
    info.url = firstUnits(url, longestPageText);
    info.title = firstUnits(title, longestPageText);
    info.name = info.title.empty() ? "Untitled" : info.title;
    info.captured = time;
    info.notes = std::move(notes);
    TShapesList annotations = captureStamps(info.url, info.title, stamped, painter);
    if (pointer) {
        TBBShape shape = pictureAnnotation({}, std::move(pointer->picture), pointer->at);
        shape.number.number = annotations.nextNumber();
        if (!shape.bounds().intersected(picture.bounds()).empty()) annotations.add(std::move(shape));
    }
    return CaptureDocument::create(std::move(picture), std::move(info), std::move(annotations));
}

}  // namespace glimmer
