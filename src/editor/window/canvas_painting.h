#pragma once

#include <memory>

#include "editor/canvas/canvas_controller.h"
#include "editor/canvas/canvas_view.h"
#include "editor/canvas/view_painter.h"
#include "editor/canvas/working_picture.h"
#include "editor/window/canvas_surface.h"

class wxWindow;

namespace glimmer {

/// What is on the canvas's window and what of it is out of date. Only what is invalid is painted, in one pass, from the
/// working picture.
class CanvasPainting {
public:
    CanvasPainting(wxWindow& window, const CanvasView& view) : window_(window), view_(view) {}

    /// Another capture is shown; then applyOptions() is due.
    void attach(const CaptureDocument& document, TextPainter& text);
    /// Takes over the options, the theme and the scale; everything is painted anew.
    void applyOptions();
    [[nodiscard]] int32_t dotsPerInch() const { return look_.dotsPerInch; }
    /// The label of this annotation is not painted while it is edited; noAnnotation: all are.
    void setEdited(AnnotationId id) { working_->options.editedId = id; }

    // What became invalid.
    void invalidatePicture(const Rect& pictureArea);
    void invalidateAll();
    /// Everything lies elsewhere in the window now.
    void viewChanged(CanvasOverlay overlay);
    /// What lies over the picture is this now.
    void showOverlay(CanvasOverlay overlay);
    /// The view was scrolled by that many pixels. False when that moves more than the picture: then all is to be
    /// painted anew.
    [[nodiscard]] bool scroll(int32_t dx, int32_t dy);

    /// In answer to the window's wish to be painted.
    void paint(const CanvasController& controller);

private:
    void invalidateView(const Rect& viewArea);

    wxWindow& window_;
    const CanvasView& view_;
    std::unique_ptr<WorkingPicture> working_;
    CanvasSurface surface_;
    CanvasOverlay overlay_;
    CanvasLook look_;
};

}  // namespace glimmer
