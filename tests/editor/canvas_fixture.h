#pragma once

#include <gtest/gtest.h>
#include <wx/frame.h>
#include <wx/msw/wrapwin.h>
#include <wx/textctrl.h>

#include <memory>
#include <random>
#include <string>

#include "editor/annotations/shapes_list.h"
#include "editor/annotations/style_store.h"
#include "editor/window/uEditor.h"
#include "settings/options.h"
#include "support/recorded_messages.h"
#include "support/windows/forms.h"

namespace glimmer::test {

constexpr int32_t shiftKey = 0x2000;
constexpr int32_t ctrlKey = 0x4000;
constexpr int32_t altKey = 0x8000;

/// A page: a heading, lines that stand for text, a picture; no two areas of it are alike.
inline TBitmap page(int32_t width, int32_t height) {
    TBitmap picture = TBitmap::create(width, height, PixelFormat::Bgra32).take();
    picture.fill(picture.bounds(), rgb(252, 252, 250));
    picture.fill({0, 0, width, 64}, rgb(34, 60, 96));
    std::mt19937 random(4);
    for (int32_t y = 100; y + 12 < height; y += 26)
        for (int32_t x = 40; x < width - 260;) {
            const auto word = 12 + static_cast<int32_t>(random() % 60);
            picture.fill({x, y, std::min(x + word, width - 260), y + 9}, rgb(90, 94, 100));
            x += word + 9;
        }
    for (int32_t y = 110; y < 300; ++y)
        for (int32_t x = width - 230; x < width - 30; ++x)
            picture.setPixel(x, y, rgb(static_cast<uint32_t>(x), static_cast<uint32_t>(y + x / 3), 160));
    return picture;
}

/// A canvas in a window of its own, driven by real mouse and key messages.
class CanvasForm : public testing::Test {
protected:
    void SetUp() override {
        OptionsHolder() = Options();
        rememberLastUsedStyle(*predefinedStyle("Default"), newAnnotationOptions(OptionsHolder()));
        document = CaptureDocument::create(page(1000, 1400), {"http://a.b/", "Title", "Name", "", 0}).take();
        frame = new wxFrame(nullptr, wxID_ANY, "Canvas", wxPoint(20, 20), wxSize(1000, 700));
        form = new TEditForm(frame, *document);
        frame->Show();
        frame->Layout();
        bringForward(*frame, canvas());
        pump();
    }
    void TearDown() override {
        frame->Destroy();
        pump();
    }
    [[nodiscard]] wxWindow* canvas() const { return findControl(*form, "pbScreen"); }
    [[nodiscard]] const TShapesList& shapes() const { return document->annotations(); }
    [[nodiscard]] const TBBShape& selected() const { return *document->selectedAnnotation(); }
    /// A window of the form's that floats; null when there is none.
    [[nodiscard]] wxWindow* floating(const char* name) const {
        for (wxWindow* child : form->GetChildren())
            if (child->GetName() == name && child->IsShown()) return child;
        return nullptr;
    }
    [[nodiscard]] wxTextCtrl& labelEdit() const { return *find<wxTextCtrl>(*form, "edtAnnotationEdit"); }
    [[nodiscard]] TBitmap background() const { return document->background().clone().take(); }
    void drag(Point from, Point to) const {
        mouseDrag(*canvas(), from.x, from.y, to.x, to.y);
        pump();
    }
    void clickAt(Point at) const {
        mousePress(*canvas(), at.x, at.y);
        mouseRelease(*canvas(), at.x, at.y);
        pump();
    }
    /// An annotation drawn and labelled by hand; it stays selected.
    AnnotationId draw(const Rect& rect, const std::string& text = "label",
                      EditTool tool = EditTool::TextShapeRectangle) const {
        form->setTool(tool);
        drag({rect.left, rect.top}, {rect.right - 1, rect.bottom - 1});
        const AnnotationId id = document->selectedId();
        if (labelEdit().IsShown()) typeText(text);
        form->finishEditing();
        form->setTool(EditTool::Pointer);
        pump();
        return id;
    }

    RecordedMessages messages;
    std::unique_ptr<CaptureDocument> document;
    wxFrame* frame = nullptr;
    TEditForm* form = nullptr;
};

}  // namespace glimmer::test
