#include "editor/window/uEditor.h"

#include <wx/dcclient.h>
#include <wx/log.h>
#include <wx/msgdlg.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/textctrl.h>

#include "common/contrast.h"
#include "common/wx_bitmap.h"
#include "editor/annotations/style_store.h"
#include "editor/labels/rich_text_painter.h"
#include "editor/painting/badge_picture.h"
#include "editor/painting/display_options.h"
#include "editor/window/annotation_drag.h"
#include "editor/window/floating_panels.h"
#include "editor/window/label_editor.h"
#include "editor/window/picker_window.h"
#include "editor/window/property_panels.h"
#include "editor/window/selection_toolbar.h"
#include "settings/message_box.h"
#include "settings/options.h"

namespace glimmer {

namespace {

constexpr int scrollIncrement = 20;
constexpr int editingAnnotationInterval = 500;  // milliseconds

/// The rich edit that draws labels; it is never shown.
wxTextCtrl* makePaintingControl(wxWindow* parent) {
    auto* control = new wxTextCtrl;
    control->Hide();
    control->Create(parent, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                    wxTE_MULTILINE | wxTE_RICH2 | wxTE_NO_VSCROLL | wxBORDER_NONE, wxDefaultValidator,
                    "edtAnnotationForPainting");
    return control;
}

}  // namespace

TEditForm::TEditForm(wxWindow* parent, CaptureDocument& document)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxCLIP_CHILDREN, "EditForm"),
      text_(std::make_unique<RichTextPainter>([this] { return makePaintingControl(this)->GetHWND(); })),
      newAnnotations_(newAnnotationOptions(OptionsHolder())) {
    SetLabel("Edit Screenshot");
    SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    makeCanvas();
    selectionToolbar_ = new SelectionToolbar(*this, pbScreen_);
    labelEditor_ = new LabelEditor(*this, pbScreen_);
    panels_ = new PropertyPanels(*this);

    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(scrollBox_, 1, wxEXPAND);
    columns->Add(panels_, wxSizerFlags().Expand().ReserveSpaceEvenIfHidden());
    SetSizer(columns);

    attach(document);
    placePanels();
    optionsListener_ = std::make_unique<OptionsListener>([this] { optionsChanged(); });

    tmrScrolling_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrScrollingTimer(); });
    tmrCanvasCursor_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrCanvasCursorTimer(); });
    tmrEditingAnnotation_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { labelEditor_->timer(); });
    Bind(wxEVT_IDLE, &TEditForm::idle, this);
    Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& event) {
        if (!FormKeyDown(event)) event.Skip();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        applyDisplayOptions();
        event.Skip();
    });
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        applyDisplayOptions();
        placeFloating();
        event.Skip();
    });
    stateChanged();
}

void TEditForm::attach(CaptureDocument& document) {
    document_ = &document;
    CanvasHost& host = *this;
    controller_ = std::make_unique<CanvasController>(document, view_, host);
    working_ = std::make_unique<WorkingPicture>(document, *text_);
    TShapeStyle style = lastUsedStyle(newAnnotations_);
    keptSettings_ = style;
    rememberLastUsedStyle(style, newAnnotations_);
    showParts(style, newAnnotations_);
    controller_->setToolSettings(std::move(style));
    applyDisplayOptions();
    view_.setPictureSize(document.size());
    observer_ = document.observe([this](const DocumentChange& change) { documentChanged(change); });
}

void TEditForm::show(CaptureDocument& document, const CanvasPlace& place) {
    static_cast<void>(document.background());  // awake, or there is nothing to show
    if (pbScreen_->HasCapture()) pbScreen_->ReleaseMouse();
    finishEditing();
    keepSettings();
    closePickers();
    document_->forget(observer_);
    CanvasView view;
    view.setWindowSize(view_.window());
    view_ = view;
    pointerInside_ = false;
    pastedHere_ = 0;
    attach(document);
    controller_->setTool(place.tool);
    view_.setZoom(place.zoom, {});
    updateScrollBars();  // first, since the bars change the room
    view_.scrollTo(place.scroll);
    updateScrollBars();
    viewChanged();
    stateChanged();
}

std::vector<wxWindow*> TEditForm::pickers() const {
    std::vector<wxWindow*> open;
    for (wxWindow* child : GetChildren())
        if (dynamic_cast<PickerWindow*>(child) != nullptr && child->IsShown()) open.push_back(child);
    return open;
}

// What they would answer belongs to the capture that goes.
void TEditForm::closePickers() {
    for (wxWindow* picker : pickers()) picker->Destroy();
}

bool TEditForm::busy() const {
    return waits() || controller_->dragging() || pbScreen_->HasCapture() || !pickers().empty();
}

TEditForm::~TEditForm() {
    // Whatever is being typed or drawn is kept; no event of a dying child may reach a half-destroyed form.
    changed_ = pointerMoved_ = nullptr;
    optionsListener_.reset();
    if (pbScreen_->HasCapture()) pbScreen_->ReleaseMouse();
    finishEditing();
    keepSettings();
    document_->forget(observer_);
    tmrScrolling_.Stop();
    tmrCanvasCursor_.Stop();
    tmrEditingAnnotation_.Stop();
    DestroyChildren();
}

/// What the first picture need not wait for.
void TEditForm::complete() {
    complete_ = true;
    pbScreen_->takeFingers();
    panels_->fill();
    updateScrollBars();
    auto* imgCircle = new wxStaticBitmap;
    imgCircle->Hide();
    imgCircle->Create(this, wxID_ANY, wxBitmapOf(badgePicture()), wxDefaultPosition, wxDefaultSize, 0, "imgCircle");
    // A host may have made the thread one on which nothing can be dropped: then there is none of it.
    const wxLogNull quiet;
    pbScreen_->SetDropTarget(new AnnotationDropTarget(pbScreen_, [this](std::vector<TBBShape> shapes, wxPoint place) {
        return controller_->dropAnnotations(std::move(shapes), view_.toPicture(Point{place.x, place.y}));
    }));
}

void TEditForm::makeCanvas() {
    scrollBox_ =
        new FocusWindow(this, "scrollBox", wxCLIP_CHILDREN);  // its bars come when there is something to scroll
    pbScreen_ =
        new CanvasWindow(scrollBox_, "pbScreen", wxWANTS_CHARS | wxCLIP_CHILDREN | wxBORDER_NONE, [this](wxPoint at) {
            return menuAt({at.x, at.y});
        });
    pbScreen_->SetLabel("Canvas");
    scrollBox_->Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        windowResized();
        event.Skip();
    });
    scrollBox_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { wxPaintDC dc(scrollBox_); });
    for (const auto& type :
         {wxEVT_SCROLLWIN_TOP, wxEVT_SCROLLWIN_BOTTOM, wxEVT_SCROLLWIN_LINEUP, wxEVT_SCROLLWIN_LINEDOWN,
          wxEVT_SCROLLWIN_PAGEUP, wxEVT_SCROLLWIN_PAGEDOWN, wxEVT_SCROLLWIN_THUMBTRACK, wxEVT_SCROLLWIN_THUMBRELEASE})
        scrollBox_->Bind(type, &TEditForm::onScroll, this);
    scrollBox_->Bind(wxEVT_MOUSEWHEEL, &TEditForm::scrollBoxMouseWheel, this);
    pbScreen_->Bind(wxEVT_MOUSEWHEEL, &TEditForm::scrollBoxMouseWheel, this);
    pbScreen_->Bind(wxEVT_GESTURE_PAN, [this](wxPanGestureEvent& event) {
        scrollTo({view_.scroll().x - event.GetDelta().x, view_.scroll().y - event.GetDelta().y});
    });
    pbScreen_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { paintCanvas(); });
    pbScreen_->Bind(wxEVT_LEFT_DOWN, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_LEFT_DCLICK, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_RIGHT_DOWN, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_MOTION, &TEditForm::pbScreenMouseMove, this);
    pbScreen_->Bind(wxEVT_LEFT_UP, &TEditForm::pbScreenMouseUp, this);
    pbScreen_->Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent& event) {
        pointerInside_ = false;
        pointerDirty_ = true;
        event.Skip();
    });
    // While the mouse is captured the toolkit leaves all keys to the window that has it.
    pbScreen_->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
        if (!pbScreen_->HasCapture() || !FormKeyDown(event)) event.Skip();
    });
    pbScreen_->Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) {
        controller_->captureLost();
        captureEnded();
    });
}

// --- view

void TEditForm::windowResized() {
    const wxSize size = scrollBox_->GetClientSize();
    pbScreen_->SetSize(0, 0, size.x, size.y);
    view_.setWindowSize({size.x, size.y});
    updateScrollBars();
    viewChanged();
}

void TEditForm::updateScrollBars() {
    const Size all = view_.extent();
    const Size window = view_.window();
    // Nothing of the picture moves when both come later.
    if (!complete_ && all.width > window.width && all.height > window.height) return;
    scrollBox_->SetScrollbar(wxHORIZONTAL, view_.scroll().x, window.width, all.width);
    scrollBox_->SetScrollbar(wxVERTICAL, view_.scroll().y, window.height, all.height);
    // A bar that came or went has changed the room.
    const wxSize size = scrollBox_->GetClientSize();
    if (size.x == view_.window().width && size.y == view_.window().height) return;
    pbScreen_->SetSize(0, 0, size.x, size.y);
    view_.setWindowSize({size.x, size.y});
    scrollBox_->SetScrollbar(wxHORIZONTAL, view_.scroll().x, size.x, all.width);
    scrollBox_->SetScrollbar(wxVERTICAL, view_.scroll().y, size.y, all.height);
}

/// Everything on the canvas lies elsewhere now.
void TEditForm::viewChanged() {
    shownOverlay_ = controller_->overlay();
    pbScreen_->Refresh(false);
    placeFloating();
    stateDirty_ = true;
}

void TEditForm::placeFloating() {
    labelEditor_->place();
    selectionToolbar_->place();
}

void TEditForm::scrollTo(Point position) {
    const Point before = view_.scroll();
    view_.scrollTo(position);
    const Point after = view_.scroll();
    if (before == after) return;
    scrollBox_->SetScrollPos(wxHORIZONTAL, after.x);
    scrollBox_->SetScrollPos(wxVERTICAL, after.y);
    // Guides run across the view and stay where they are; all else moves with the picture.
    if (!shownOverlay_.guides.empty()) {
        viewChanged();
        return;
    }
    scrollPixels(before.x - after.x, before.y - after.y);
    placeFloating();
    stateDirty_ = true;
}

void TEditForm::onScroll(wxScrollWinEvent& event) {
    const bool across = event.GetOrientation() == wxHORIZONTAL;
    Point to = view_.scroll();
    int32_t& at = across ? to.x : to.y;
    const int32_t page = (across ? view_.window().width : view_.window().height) - scrollIncrement;
    const wxEventType type = event.GetEventType();
    if (type == wxEVT_SCROLLWIN_TOP) at = 0;
    if (type == wxEVT_SCROLLWIN_BOTTOM) at = across ? view_.maxScroll().x : view_.maxScroll().y;
    if (type == wxEVT_SCROLLWIN_LINEUP) at -= scrollIncrement;
    if (type == wxEVT_SCROLLWIN_LINEDOWN) at += scrollIncrement;
    if (type == wxEVT_SCROLLWIN_PAGEUP) at -= page;
    if (type == wxEVT_SCROLLWIN_PAGEDOWN) at += page;
    if (type == wxEVT_SCROLLWIN_THUMBTRACK || type == wxEVT_SCROLLWIN_THUMBRELEASE) at = event.GetPosition();
    scrollTo(to);
}

void TEditForm::setZoom(int32_t percent, Point anchor) {
    const int32_t before = view_.zoom();
    view_.setZoom(percent, anchor);
    if (view_.zoom() == before) return;
    updateScrollBars();
    viewChanged();
    stateChanged();
}

void TEditForm::zoomTo(int32_t percent) { setZoom(percent, viewCentre()); }

void TEditForm::zoomToFit(CanvasView::Fit fit) {
    const wxSize room = scrollBox_->GetSize();  // without any bars
    const int bar = wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, scrollBox_);
    setZoom(CanvasView::fittingZoom(fit, view_.picture(), {room.x, room.y}, bar), {});
}

void TEditForm::zoomIn() {
    CanvasView next = view_;
    next.zoomIn({});
    zoomTo(next.zoom());
}

void TEditForm::zoomOut() {
    CanvasView next = view_;
    next.zoomOut({});
    zoomTo(next.zoom());
}

void TEditForm::reveal(const Rect& area) {
    CanvasView next = view_;
    if (next.scrollIntoView(area)) scrollTo(next.scroll());
}

// --- what changed

void TEditForm::documentChanged(const DocumentChange& change) {
    if (change.size) {
        view_.setPictureSize(document_->size());
        working_->invalidateAll();
        updateScrollBars();
        viewChanged();
    } else if (change.pixels || change.annotations) {
        working_->invalidate(change.area);
        invalidatePicture(change.area);
    }
    if (change.selection || change.size || change.annotations) overlayChanged();
    stateDirty_ = true;
}

void TEditForm::overlayChanged() {
    CanvasOverlay now = controller_->overlay();
    if (now == shownOverlay_) return;
    invalidateView(overlayArea(shownOverlay_, view_, look_.dotsPerInch));
    shownOverlay_ = std::move(now);
    invalidateView(overlayArea(shownOverlay_, view_, look_.dotsPerInch));
    selectionToolbar_->place();
}

void TEditForm::stateChanged() {
    stateDirty_ = true;
    if (panels_ == nullptr) return;
    const bool drawing = controller_->mode() == CanvasMode::FreeDrawing;
    const TBitmap* ink = drawing ? &controller_->ink()->bitmap() : nullptr;
    if (working_->ink != ink || working_->inked != controller_->inkedId()) {
        working_->ink = ink;
        working_->inked = controller_->inkedId();
        working_->invalidateAll();
        pbScreen_->Refresh(false);
    }
    if (drawing) working_->inkAt = controller_->ink()->at();
    panels_->showState();
    selectionToolbar_->place();
}

void TEditForm::inkChanged(const Rect& area) {
    if (const InkLayer* ink = controller_->ink()) working_->inkAt = ink->at();
    working_->invalidate(area);
    invalidatePicture(area);
    stateDirty_ = true;
}

void TEditForm::idle(wxIdleEvent& event) {
    event.Skip();
    if (!complete_) complete();
    placeFloatingPanels();
    if (stateDirty_) {
        stateDirty_ = pointerDirty_ = false;
        panels_->showState();
        keepSettings();
        if (changed_) changed_();
    } else if (pointerDirty_) {
        pointerDirty_ = false;
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
    working_->options.editedId = id;
    if (const TBBShape* shape = document_->annotations().find(id)) {
        working_->invalidate(shape->bounds());
        invalidatePicture(shape->bounds());
    }
    tmrEditingAnnotation_.Start(editingAnnotationInterval);
}

void TEditForm::finishTextEdit() {
    const AnnotationId id = labelEditor_->annotation();
    if (id == noAnnotation) return;
    tmrEditingAnnotation_.Stop();
    labelEditor_->end();
    working_->options.editedId = 0;
    if (const TBBShape* shape = document_->annotations().find(id)) {
        working_->invalidate(shape->bounds());
        invalidatePicture(shape->bounds());
    }
    controller_->endTextEdit(id);
}

void TEditForm::applyDisplayOptions() {
    const Options& options = OptionsHolder();
    const AnnotationId edited = working_->options.editedId;
    working_->options = paintOptions(options);
    working_->options.editedId = edited;
    controller_->blurIntensity = options.number("spnBlurIntensity");
    controller_->inkColour = static_cast<Colour>(options.number("clrPenColor"));
    controller_->inkWidth = options.number("spnPenSize");
    look_.dotsPerInch = GetDPI().x;
    controller_->dotsPerInch = look_.dotsPerInch;
    look_.desk = CanvasLook().desk;
    look_.border = CanvasLook().border;
    if (usesContrastTheme()) {
        const auto colour = [](const wxColour& of) { return rgb(of.Red(), of.Green(), of.Blue()); };
        const wxColour desk = wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE);
        look_.desk = colour(desk);
        look_.border = colour(readableOn(desk));
    }
    working_->invalidateAll();
    pbScreen_->Refresh(false);
}

/// The options dialog was closed: what it changed holds at once.
void TEditForm::optionsChanged() {
    const NewAnnotationOptions now = newAnnotationOptions(OptionsHolder());
    if (now != newAnnotations_) {
        TShapeStyle style = controller_->toolSettings();
        followChange(style, newAnnotations_, now);
        controller_->setToolSettings(std::move(style));
        newAnnotations_ = now;
        keepSettings();
    }
    applyDisplayOptions();
    placePanels();
    stateChanged();
}

/// The next canvas, and the next start, begin with the settings of this one.
void TEditForm::keepSettings() {
    if (controller_->toolSettings() == keptSettings_) return;
    keptSettings_ = controller_->toolSettings();
    rememberLastUsedStyle(keptSettings_, newAnnotations_);
}

}  // namespace glimmer
