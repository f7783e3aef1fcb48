// Copy, cut and paste: annotations in the registered format, the selection's pixels as a picture.

#include "editor/annotation_clipboard.h"
#include "editor/clipboard_window.h"
#include "editor/uEditor.h"

namespace glimmer {

namespace {

/// A pasted annotation lies this much off the one that was copied, so that it is seen.
constexpr int32_t pasteShift = 16;

}  // namespace

/// One handler for Copy and Cut, in menus, toolbars and keys. With a selected annotation that is what is copied, not
/// the pixels below it.
bool TEditForm::copyOrCut(bool cut) {
    if (const TBBShape* shape = document_.selectedAnnotation()) {
        const TBBShape copy = *shape;
        if (!setClipboardBlock(annotationClipboardFormat, encodeAnnotations({copy}))) {
            failed("The clipboard is in use by another program.");
            return false;
        }
        pastedHere_ = 0;
        return !cut || controller_.execute(EditCommand::Cut);
    }
    const Rect area = selectedArea();
    if (cut || area.empty() || !pictureClipboard().copy) return false;
    Result<TBitmap> flat = document_.flattened(*text_, working_.options);
    Result<TBitmap> pixels = flat ? flat->cropped(area) : std::move(flat);
    if (pixels) {
        // What is not selected of the box around a free-form selection is transparent.
        const Region rest = document_.selection().pixels(document_.size()).invertedWithin(area);
        for (const Rect& part : rest.rects())
            for (int32_t y = part.top; y < part.bottom; ++y)
                std::fill_n(pixels->row(y - area.top) + static_cast<size_t>(part.left - area.left) * 4,
                            static_cast<size_t>(part.width()) * 4, uint8_t{0});
    }
    const Status copied = pixels ? pictureClipboard().copy(*pixels) : Status(pixels.failure());
    if (!copied) failed(copied.message());
    return copied.ok();
}

bool TEditForm::paste() {
    if (controller_.mode() != CanvasMode::Annotation) return false;
    finishEditing();
    if (const auto block = clipboardBlock(annotationClipboardFormat, maxClipboardBytes)) {
        std::vector<TBBShape> shapes = decodeAnnotations(*block);
        if (!shapes.empty()) {
            ++pastedHere_;
            return controller_.insertAnnotations(std::move(shapes),
                                                 {pasteShift * pastedHere_, pasteShift * pastedHere_});
        }
    }
    if (!pictureClipboard().paste) return false;
    Result<TBitmap> picture = pictureClipboard().paste();
    return picture && controller_.insertPicture(picture.take());
}

}  // namespace glimmer
