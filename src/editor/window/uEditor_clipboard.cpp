// Copy, cut and paste: annotations in the registered format, the selection's pixels as a picture.

#include <algorithm>

#include "common/opened_clipboard.h"
#include "editor/annotations/annotation_clipboard.h"
#include "editor/painting/display_options.h"
#include "editor/window/clipboard_window.h"
#include "editor/window/uEditor.h"
#include "imaging/clipboard.h"
#include "settings/options.h"

namespace glimmer {

namespace {

/// A pasted annotation lies this much off the one that was copied, so that it is seen.
constexpr int32_t pasteShift = 16;

/// What the selected area looks like, annotations included. What is not selected of the box around a free-form
/// selection is transparent.
Result<TBitmap> selectedPixels(const CaptureDocument& document, TextPainter& text) {
    const Rect area = document.selection().bounds(document.size());
    Result<TBitmap> pixels = document.background().cropped(area);
    if (!pixels) return pixels;
    PaintOptions paint = paintOptions(OptionsHolder());
    paint.origin = {area.left, area.top};
    paintAnnotations(*pixels, pixels->bounds(), document.annotations(), text, paint);
    const Region rest = document.selection().pixels(document.size()).invertedWithin(area);
    for (const Rect& part : rest.rects())
        for (int32_t y = part.top; y < part.bottom; ++y)
            std::fill_n(pixels->row(y - area.top) + static_cast<size_t>(part.left - area.left) * 4,
                        static_cast<size_t>(part.width()) * 4, uint8_t{0});
    return pixels;
}

}  // namespace

/// One handler for Copy and Cut, in menus, toolbars and keys. With a selected annotation that is what is copied, not
/// the pixels below it.
bool TEditForm::copyOrCut(bool cut) {
    if (const TBBShape* shape = document_->selectedAnnotation()) {
        const TBBShape copy = *shape;
        if (!setClipboardBlock(annotationClipboardFormat, encodeAnnotations({copy}))) {
            failed(clipboardInUse);
            return false;
        }
        pastedHere_ = 0;
        return !cut || controller_->execute(EditCommand::Cut);
    }
    if (document_->selection().empty()) return false;
    Result<TBitmap> pixels = selectedPixels(*document_, *text_);
    const Status copied = pixels ? copyPictureToClipboard(*pixels) : Status(pixels.failure());
    if (!copied) failed(copied.message());
    pastedHere_ = 0;
    return copied.ok() && (!cut || controller_->execute(EditCommand::Cut));
}

bool TEditForm::canExecute(EditCommand command) const {
    if (command == EditCommand::Paste) return clipboardHasBlock(annotationClipboardFormat) || clipboardHasPicture();
    return controller_->canExecute(command);
}

bool TEditForm::paste() {
    if (controller_->mode() != CanvasMode::Annotation) return false;
    finishEditing();
    if (const auto block = clipboardBlock(annotationClipboardFormat, maxClipboardBytes)) {
        std::vector<TBBShape> shapes = decodeAnnotations(*block);
        if (!shapes.empty()) {
            ++pastedHere_;
            return controller_->insertAnnotations(std::move(shapes),
                                                  {pasteShift * pastedHere_, pasteShift * pastedHere_});
        }
    }
    Result<TBitmap> picture = pictureFromClipboard();
    return picture && controller_->insertPicture(picture.take());
}

}  // namespace glimmer
