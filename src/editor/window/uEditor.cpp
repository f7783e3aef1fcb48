#include "editor/window/uEditor.h"

#include <wx/dcclient.h>
#include <wx/log.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/statbmp.h>
#include <wx/textctrl.h>

#include "common/wx_bitmap.h"
#include "editor/annotations/style_store.h"
#include "editor/labels/rich_text_painter.h"
#include "editor/painting/badge_picture.h"
#include "editor/window/annotation_drag.h"
#include "editor/window/canvas_painting.h"
#include "editor/window/label_editor.h"
#include "editor/window/picker_window.h"
#include "editor/window/property_panels.h"
#include "editor/window/selection_toolbar.h"
#include "settings/options.h"

namespace glimmer {

namespace {

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
      kept_{newAnnotationOptions(OptionsHolder()), {}} {
    SetLabel("Edit Screenshot");
    SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    makeCanvas();
    painting_ = std::make_unique<CanvasPainting>(*pbScreen_, view_);
    selectionToolbar_ = new SelectionToolbar(*this, pbScreen_);
    labelEditor_ = std::make_unique<LabelEditor>(*this, pbScreen_);
    panels_ = new PropertyPanels(*this, this);

    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(scrollBox_, 1, wxEXPAND);
    columns->Add(panels_, wxSizerFlags().Expand().ReserveSpaceEvenIfHidden());
    SetSizer(columns);

    attach(document);
    placePanels();
    optionsListener_ = std::make_unique<OptionsListener>([this] { optionsChanged(); });
    bindForm();
}

void TEditForm::bindForm() {
    tmrScrolling_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrScrollingTimer(); });
    tmrCanvasCursor_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { tmrCanvasCursorTimer(); });
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
}

void TEditForm::attach(CaptureDocument& document) {
    document_ = &document;
    CanvasHost& host = *this;
    controller_ = std::make_unique<CanvasController>(document, view_, host);
    painting_->attach(document, *text_);
    TShapeStyle style = lastUsedStyle(kept_.options);
    kept_.settings = style;
    rememberLastUsedStyle(style, kept_.options);
    showParts(style, kept_.options);
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
    pointer_.inside = false;
    pastedHere_ = 0;
    attach(document);
    controller_->setTool(place.tool);
    view_.setZoom(place.zoom, {});
    updateScrollBars();  // first, since the bars change the room
    view_.scrollTo(place.scroll);
    updateScrollBars();
    viewChanged();
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
    labelEditor_->stop();
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
    bindCanvas();
}

void TEditForm::bindCanvas() {
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
    pbScreen_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { painting_->paint(*controller_); });
    pbScreen_->Bind(wxEVT_LEFT_DOWN, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_LEFT_DCLICK, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_RIGHT_DOWN, &TEditForm::pbScreenMouseDown, this);
    pbScreen_->Bind(wxEVT_MOTION, &TEditForm::pbScreenMouseMove, this);
    pbScreen_->Bind(wxEVT_LEFT_UP, &TEditForm::pbScreenMouseUp, this);
    pbScreen_->Bind(wxEVT_LEAVE_WINDOW, [this](wxMouseEvent& event) {
        pointer_.inside = false;
        pointer_.moved = true;
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

}  // namespace glimmer
