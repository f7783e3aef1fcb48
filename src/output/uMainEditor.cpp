#include "output/uMainEditor.h"

#include <wx/dcbuffer.h>
#include <wx/image.h>
#include <wx/scrolwin.h>
#include <wx/sizer.h>

#include <windows.h>

#include "editor/document.h"

namespace glimmer {

TMainEditor* pMainEditor = nullptr;

namespace {

wxBitmap bitmapOf(const TBitmap& picture) {
    wxImage image(picture.width(), picture.height(), false);
    uint8_t* to = image.GetData();
    for (int32_t y = 0; y < picture.height(); ++y) {
        const uint8_t* from = picture.row(y);
        for (int32_t x = 0; x < picture.width(); ++x, from += picture.bytesPerPixel(), to += 3) {
            to[0] = from[2];
            to[1] = from[1];
            to[2] = from[0];
        }
    }
    return wxBitmap(image);
}

/// Shows a picture, scrollable.
class PictureView : public wxScrolledCanvas {
public:
    explicit PictureView(wxWindow* parent) : wxScrolledCanvas(parent) {
        SetName("pnlPicture");
        SetBackgroundStyle(wxBG_STYLE_PAINT);
        SetScrollRate(16, 16);
        Bind(wxEVT_PAINT, [this](wxPaintEvent&) {
            wxAutoBufferedPaintDC dc(this);
            DoPrepareDC(dc);
            dc.SetBackground(wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE));
            dc.Clear();
            if (bitmap_.IsOk()) dc.DrawBitmap(bitmap_, 0, 0);
        });
    }
    void show(const TBitmap& picture) {
        bitmap_ = bitmapOf(picture);
        SetVirtualSize(bitmap_.GetSize());
        Refresh();
    }

private:
    wxBitmap bitmap_;
};

}  // namespace

TMainEditor::TMainEditor() : wxFrame(nullptr, wxID_ANY, "Vistrane", wxDefaultPosition, wxSize(1024, 720)) {
    SetName("MainEditor");
    auto* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(new PictureView(this), 1, wxEXPAND);
    SetSizer(sizer);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent& event) {
        if (event.CanVeto()) {
            event.Veto();
            displayState_ = DisplayState::Away;
            applyDisplayState();
            if (commands_.hidden) commands_.hidden();
        } else {
            Destroy();
        }
    });
}

TMainEditor::~TMainEditor() {
    if (pMainEditor == this) pMainEditor = nullptr;
}

CaptureDocument& TMainEditor::addEditor(std::unique_ptr<CaptureDocument> document) {
    documents_.push_back(std::move(document));
    current_ = documents_.back().get();
    const std::string& name = current_->info().name;
    SetTitle(wxString::FromUTF8(name.data(), name.size()));
    static_cast<PictureView*>(wxWindow::FindWindowByName("pnlPicture", this))->show(current_->background());
    return *current_;
}

size_t TMainEditor::editorCount() const { return documents_.size(); }
CaptureDocument* TMainEditor::currentEditor() const { return current_; }

TMainEditor::Documents TMainEditor::allEditors() const {
    Documents all;
    for (const auto& document : documents_) all.push_back(document.get());
    return all;
}

TMainEditor::Documents TMainEditor::selectedEditors() const {
    return current_ != nullptr ? Documents{current_} : Documents{};
}

void TMainEditor::applyDisplayState() {
    if (displayState_ == DisplayState::Away) {
        Hide();
    } else if (displayState_ == DisplayState::Shown) {
        showRoutine();
    }
}

void TMainEditor::showRoutine() {
    displayState_ = DisplayState::Shown;
    Show();
    bringForward();
}

void TMainEditor::hiddenRoutine() {}

void TMainEditor::bringForward() {
    if (!IsShown()) return;
    const auto window = static_cast<HWND>(GetHWND());
    if (IsIconized()) ShowWindow(window, SW_RESTORE);
    SetForegroundWindow(window);
    SetActiveWindow(window);
}

// The commands come with the tool bar.
void TMainEditor::btnUploadClick() {
    if (commands_.upload) commands_.upload(selectedEditors());
}
void TMainEditor::btnPublishClick() {}
void TMainEditor::btnCopyClick() {}
void TMainEditor::btnMailClick() {}
void TMainEditor::btnExternalViewerClick() {}
void TMainEditor::btnPrintClick() {}
void TMainEditor::btnLoadProjectClick() {}
void TMainEditor::btnSaveProjectClick() {}
void TMainEditor::btnSaveProjectAsClick() {}
bool TMainEditor::openFile(const std::string& path) { return path.empty(); }

}  // namespace glimmer
