// What changed: in the capture, in the controller, in the options. Panels and main window follow when there is time.

#include <wx/event.h>

#include "editor/annotations/style_store.h"
#include "editor/window/canvas_painting.h"
#include "editor/window/label_editor.h"
#include "editor/window/property_panels.h"
#include "editor/window/selection_toolbar.h"
#include "editor/window/uEditor.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

void TEditForm::documentChanged(const DocumentChange& change) {
    if (change.size) {
        view_.setPictureSize(document_->size());
        painting_->invalidateAll();
        updateScrollBars();
        viewChanged();
    } else if (change.pixels || change.annotations) {
        painting_->invalidatePicture(change.area);
    }
    if (change.selection || change.size || change.annotations) {
        painting_->showOverlay(controller_->overlay());
        selectionToolbar_->place();
    }
    stateDirty_ = true;
}

void TEditForm::controllerChanged(const ControllerChange& change) {
    painting_->showOverlay(controller_->overlay());
    selectionToolbar_->place();
    stateDirty_ = stateDirty_ || change.tool || change.mode || change.settings;
}

void TEditForm::inkChanged(const Rect& area) {
    painting_->invalidatePicture(area);
    stateDirty_ = true;
}

void TEditForm::idle(wxIdleEvent& event) {
    event.Skip();
    if (!complete_) complete();
    placeFloatingPanels();
    if (stateDirty_) {
        stateDirty_ = pointer_.moved = false;
        panels_->showState();
        keepSettings();
        if (changed_) changed_();
    } else if (pointer_.moved) {
        pointer_.moved = false;
        if (pointerMoved_) pointerMoved_();
    }
    if (!controller_->dragging() && document_->compactSome()) event.RequestMore();
}

void TEditForm::setTool(EditTool tool) {
    controller_->setTool(tool);
    pbScreen_->SetFocus();
}

void TEditForm::finishEditing() {
    if (controller_->dragging()) controller_->captureLost();
    finishTextEdit();
    if (controller_->mode() == CanvasMode::FreeDrawing) controller_->endDrawing();
}

void TEditForm::failed(const std::string& message) {
    const Waiting here(*this);
    showError(message);
}

TextPainter& TEditForm::textPainter() { return *text_; }

void TEditForm::beginTextEdit(AnnotationId id) {
    labelEditor_->begin(id);
    painting_->setEdited(id);
    labelPlaceChanged(id);
}

void TEditForm::finishTextEdit() {
    const AnnotationId id = labelEditor_->annotation();
    if (id == noAnnotation) return;
    labelEditor_->end();
    painting_->setEdited(noAnnotation);
    labelPlaceChanged(id);
    controller_->endTextEdit(id);
}

void TEditForm::labelPlaceChanged(AnnotationId id) {
    if (const TBBShape* shape = document_->annotations().find(id)) painting_->invalidatePicture(shape->bounds());
}

void TEditForm::applyDisplayOptions() {
    const Options& options = OptionsHolder();
    controller_->blurIntensity = options.number("spnBlurIntensity");
    InkPen pen = controller_->pen();
    pen.colour = static_cast<Colour>(options.number("clrPenColor"));
    pen.width = options.number("spnPenSize");
    controller_->setPen(pen);
    painting_->applyOptions();
    controller_->setDotsPerInch(painting_->dotsPerInch());
}

/// The options dialog was closed: what it changed holds at once.
void TEditForm::optionsChanged() {
    const NewAnnotationOptions now = newAnnotationOptions(OptionsHolder());
    if (now != kept_.options) {
        TShapeStyle style = controller_->toolSettings();
        followChange(style, kept_.options, now);
        controller_->setToolSettings(std::move(style));
        kept_.options = now;
        keepSettings();
    }
    applyDisplayOptions();
    placePanels();
    stateDirty_ = true;
}

/// The next canvas, and the next start, begin with the settings of this one.
void TEditForm::keepSettings() {
    if (controller_->toolSettings() == kept_.settings) return;
    kept_.settings = controller_->toolSettings();
    rememberLastUsedStyle(kept_.settings, kept_.options);
}

}  // namespace glimmer
