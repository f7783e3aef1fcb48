#include "editor/window/selection_toolbar.h"

#include <wx/dcclient.h>
#include <wx/settings.h>
#include <wx/sizer.h>

#include <algorithm>

#include "common/assertion.h"
#include "common/contrast.h"
#include "common/tool_button.h"
#include "editor/window/editing_form.h"
#include "editor/window/placing.h"
#include "settings/options.h"

namespace glimmer {

namespace {

wxColour stripColour() {
    if (usesContrastTheme()) return wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
    return {173, 216, 240};  // light blue
}

wxColour gripColour() {
    if (usesContrastTheme()) return wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHTTEXT);
    return {96, 150, 186};
}

struct Row {
    const char* name;
    const char* icon;
    const char* caption;
    const char* hint;
    int tag;  ///< the operation, or 0 for a command of its own
    EditCommand command;
};

constexpr Row rows[] = {
    {"tbtnPasteShape1", "paste", "Paste", "Paste Annotation (Ctrl+V)", 0, EditCommand::Paste},
    {"tbtnCopyShape1", "copy", "Copy", "Copy selection to Clipboard (Ctrl+C)", 0, EditCommand::Copy},
    {"tbtnDelete", "new-selection", " New", "New Selection (Del)", 0, EditCommand::NewSelection},
    {"tbtnInvertSelection", "invert-selection", " Invert Sel.", "Invert Selection (Ctrl+I)", 0,
     EditCommand::InvertSelection},
    {"tbtnAnnotate", "shape", " Annotate", "Convert to Rectangle Shape (Ctrl+A)", 3, EditCommand::Annotate},
    {"tbtnCrop", "crop", " Crop", "Crop Selected Area (Ctrl+R)", 2, EditCommand::Crop},
    {"tbtnBlank", "fill", " Fill", "Fill Selected Area (Ctrl+F)", 1, EditCommand::Fill},
    {"tbtnBlur", "blur", " Blur", "Gaussian Blur Selected Area (Ctrl+B)", 4, EditCommand::Blur},
    {"tbtnBW", "grayscale", " Grayscale", "Convert Selected Area to Grayscale (Ctrl+G)", 5, EditCommand::Grayscale},
    {"tbtnInvertColors", "invert-colours", " Invert", "Invert Colors in Selected Area (Ctrl+N)", 6,
     EditCommand::Invert},
    {"tbtnGlow", "glow", " Glow", "Glow Edges (Ctrl+L)", 7, EditCommand::Glow},
    {"tbtnInterlace", "interlace", " Interlace", "Interlace Selected Area (Ctrl+T)", 8, EditCommand::Interlace},
};

}  // namespace

SelectionToolbar::SelectionToolbar(EditingForm& form, wxWindow* canvas) : form_(form) {
    Hide();
    Create(canvas, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_SIMPLE | wxTAB_TRAVERSAL, "pnlSelectionIcons");
}

void SelectionToolbar::makeButtons() {
    imgDragHandle_ = new wxWindow(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(-1, 10)), 0, "imgDragHandle");
    imgDragHandle_->SetMinSize(FromDIP(wxSize(20, 10)));
    imgDragHandle_->SetBackgroundColour(stripColour());
    imgDragHandle_->SetCursor(wxCursor(wxCURSOR_SIZING));
    imgDragHandle_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
        wxPaintDC dc(imgDragHandle_);
        const wxSize size = imgDragHandle_->GetClientSize();
        const int dot = std::max(2, FromDIP(2));
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(gripColour());
        for (int i = -2; i <= 2; ++i) dc.DrawRectangle(size.x / 2 + i * 3 * dot, (size.y - dot) / 2, dot, dot);
    });
    imgDragHandle_->Bind(wxEVT_LEFT_DOWN, &SelectionToolbar::imgDragHandleMouseDown, this);
    imgDragHandle_->Bind(wxEVT_MOTION, &SelectionToolbar::imgDragHandleMouseMove, this);
    imgDragHandle_->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent&) {
        if (imgDragHandle_->HasCapture()) imgDragHandle_->ReleaseMouse();
    });
    imgDragHandle_->Bind(wxEVT_MOUSE_CAPTURE_LOST, [](wxMouseCaptureLostEvent&) {});

    auto* tbShapes = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "tbShapes");
    auto* column = new wxBoxSizer(wxVERTICAL);
    for (const Row& row : rows) {
        ToolButton::Look look;
        look.icon = row.icon;
        look.caption = row.caption;
        look.hint = row.hint;
        auto* button = new ToolButton(tbShapes, row.name, look, row.tag);
        button->Bind(wxEVT_BUTTON, [this, button, command = row.command](wxCommandEvent&) {
            if (button->tag() != 0)
                onBmpOperation(button->tag());
            else
                form_.executeCommand(command);
        });
        column->Add(button, 0, wxEXPAND);
    }
    tbShapes->SetSizer(column);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(imgDragHandle_, 0, wxEXPAND);
    all->Add(tbShapes, 0, wxEXPAND | wxALL, FromDIP(2));
    SetSizerAndFit(all);
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        GetSizer()->SetSizeHints(this);
        event.Skip();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        imgDragHandle_->SetBackgroundColour(stripColour());
        event.Skip();
    });
}

/// One handler for all operations; the button's tag selects, and is the command's number.
void SelectionToolbar::onBmpOperation(int tag) {
    const bool known = tag >= static_cast<int>(EditCommand::Fill) && tag <= static_cast<int>(EditCommand::Interlace);
    GLIMMER_ASSERT(known, "1 == 2", "uEditor");
    form_.executeCommand(static_cast<EditCommand>(tag));
}

void SelectionToolbar::imgDragHandleMouseDown(wxMouseEvent& event) {
    grabbedAt_ = imgDragHandle_->ClientToScreen(event.GetPosition()) - GetPosition();
    imgDragHandle_->CaptureMouse();
}

void SelectionToolbar::imgDragHandleMouseMove(wxMouseEvent& event) {
    if (!imgDragHandle_->HasCapture()) return;
    moved_ = true;
    SetPosition(imgDragHandle_->ClientToScreen(event.GetPosition()) - grabbedAt_);
}

void SelectionToolbar::place() {
    const bool wanted = form_.controller().mode() == CanvasMode::Annotation && !form_.selectedArea().empty() &&
                        !form_.controller().dragging();
    if (!wanted) {
        if (form_.selectedArea().empty()) moved_ = false;
        Hide();
        return;
    }
    if (imgDragHandle_ == nullptr) makeButtons();
    if (!moved_ && (!IsShown() || OptionsHolder().on("chkRepositionToolbar"))) {
        const Rect area = form_.inView(form_.selectedArea());
        const wxSize room = GetParent()->GetClientSize();
        const wxSize size = GetSize();
        const int gap = FromDIP(8);
        // Right of the selection, else left of it, else inside its right edge.
        int x = placedBeside(area.left, area.right, size.x, room.x, gap);
        if (x < 0) x = std::min(area.right, room.x) - gap - size.x;
        SetPosition({placedWithin(x, size.x, 0, room.x), placedWithin(area.top, size.y, gap, room.y - gap)});
    }
    Show();
}

}  // namespace glimmer
