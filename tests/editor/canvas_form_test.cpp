#include <gtest/gtest.h>
#include <wx/checkbox.h>
#include <wx/frame.h>
#include <wx/image.h>
#include <wx/menu.h>
#include <wx/sizer.h>
#include <wx/textctrl.h>

#include <cstdlib>
#include <random>

#include "common/files.h"
#include "common/tool_button.h"
#include "editor/cairo_text_painter.h"
#include "editor/clipboard_window.h"
#include "editor/uEditor.h"
#include "imaging/png_codec.h"
#include "settings/settings_path.h"
#include "support/windows/forms.h"

namespace glimmer {
namespace {

using test::pump;

/// A page: a heading, lines that stand for text, a picture.
TBitmap page(int32_t width, int32_t height) {
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

class CanvasForm : public testing::Test {
protected:
    void SetUp() override {
        document = CaptureDocument::create(page(1000, 1400), {"http://a.b/", "Title", "Name", "", 0}).take();
        frame = new wxFrame(nullptr, wxID_ANY, "Canvas", wxPoint(20, 20), wxSize(1180, 820));
        form = new TEditForm(frame, *document);
        frame->Show();
        frame->Layout();
        test::bringForward(*frame, canvas());
        pump();
    }
    void TearDown() override {
        frame->Destroy();
        pump();
    }
    wxWindow* canvas() { return test::findControl(*form, "pbScreen"); }
    void drag(Point from, Point to) {
        test::mouseDrag(*canvas(), from.x, from.y, to.x, to.y);
        pump();
    }
    const TShapesList& shapes() { return document->annotations(); }
    AnnotationId draw(const TShapeStyle& style, const Rect& rect, const char* text) {
        form->controller().setToolSettings(style);
        form->setTool(EditTool::TextShapeRectangle);
        drag({rect.left, rect.top}, {rect.right - 1, rect.bottom - 1});
        const AnnotationId id = document->selectedId();
        auto* edit = test::find<wxTextCtrl>(*form, "edtAnnotationEdit");
        if (edit->IsShown()) test::typeText(text);
        pump();
        form->finishEditing();
        form->setTool(EditTool::Pointer);
        pump();
        return id;
    }

    /// With SHOTS set to a folder, keeps what the screen shows there; otherwise nothing.
    void shot(const char* name) {
        const char* folder = std::getenv("SHOTS");
        if (folder == nullptr) return;
        pump();
        HDC screen = GetDC(nullptr);
        const int width = GetSystemMetrics(SM_CXSCREEN);
        const int height = std::min(900, GetSystemMetrics(SM_CYSCREEN));
        CanvasSurface surface;
        ASSERT_TRUE(surface.ensure({width, height}));
        surface.copyFrom(screen, {0, 0, width, height});
        ReleaseDC(nullptr, screen);
        for (int32_t y = 0; y < height; ++y)
            for (int32_t x = 0; x < width; ++x) surface.bitmap().row(y)[static_cast<size_t>(x) * 4 + 3] = 255;
        const auto file = encodePng(surface.bitmap());
        ASSERT_TRUE(file);
        ASSERT_TRUE(writeFile(pathFromUtf8(std::string(folder) + "/" + name + ".png"), *file));
    }

    std::unique_ptr<CaptureDocument> document;
    wxFrame* frame = nullptr;
    TEditForm* form = nullptr;
};

TEST_F(CanvasForm, showsTheCaptureItsSelectionAndItsToolbar) {
    shot("empty");
    drag({100, 120}, {299, 259});
    EXPECT_EQ(form->selectedArea(), (Rect{100, 120, 300, 260}));
    wxWindow* panel = test::findControl(*form, "pnlSelectionIcons");
    ASSERT_NE(panel, nullptr);
    EXPECT_TRUE(panel->IsShown());
    shot("selection");
    const TBitmap before = document->background().clone().take();
    auto* blur = test::find<ToolButton>(*form, "tbtnBlur");
    EXPECT_EQ(blur->tag(), 4);
    EXPECT_EQ(blur->caption(), " Blur");
    test::click(*blur);
    pump();
    EXPECT_FALSE(samePixels(before, document->background()));
    form->undo();
    EXPECT_TRUE(samePixels(before, document->background()));
    test::pressKey('I', 0x4000);
    shot("inverted-selection");
    test::pressKey(VK_DELETE);
    EXPECT_TRUE(form->selectedArea().empty());
    EXPECT_FALSE(panel->IsShown());
}

TEST_F(CanvasForm, drawsAnnotationsOfEveryStyleAndEditsLabels) {
    int32_t y = 140;
    for (const TShapeStyle& style : predefinedStyles().first(3)) {
        draw(style, {120, y, 320, y + 70}, "Label 1");
        y += 180;
    }
    ASSERT_EQ(shapes().size(), 3U);
    EXPECT_EQ(shapes()[0].text.text, "Label 1");
    shot("annotations");
    const Rect label = shapes()[1].text.rectangle;
    document->selectAnnotation(shapes()[1].id());
    form->controller().execute(EditCommand::EditText);
    pump();
    shot("label-edited");
    EXPECT_TRUE(test::findControl(*form, "edtAnnotationEdit")->IsShown());
    test::typeText("More words in it");
    pump();
    EXPECT_EQ(shapes()[1].text.text, "More words in it");
    EXPECT_NE(shapes()[1].text.rectangle, label);
    test::pressKey(VK_ESCAPE);
    EXPECT_FALSE(test::findControl(*form, "edtAnnotationEdit")->IsShown());
    test::pressKey('4');
    EXPECT_TRUE(shapes()[1].number.isVisible());
    shot("number");
    form->zoomTo(150);
    shot("zoom-150");
    form->zoomTo(200);
    shot("zoom-200");
    form->zoomTo(50);
    shot("zoom-50");
}

TEST_F(CanvasForm, everyShortcutDoesWhatItsHintSays) {
    const AnnotationId id = draw(predefinedStyles()[0], {150, 150, 250, 200}, "one");
    test::pressKey('C', 0x4000);
    test::pressKey('V', 0x4000);
    pump();
    EXPECT_EQ(shapes().size(), 2U) << "Ctrl+C with an annotation selected copies the annotation";
    test::pressKey('X', 0x4000);
    EXPECT_EQ(shapes().size(), 1U);
    test::pressKey('Z', 0x4000);
    EXPECT_EQ(shapes().size(), 2U);
    test::pressKey('Y', 0x4000);
    EXPECT_EQ(shapes().size(), 1U);
    document->selectAnnotation(id);
    test::pressKey(VK_RIGHT);
    test::pressKey(VK_DOWN, 0x2000);
    EXPECT_EQ(document->selectedAnnotation()->shape.rectangle, (Rect{151, 160, 251, 210}));
    test::pressKey(VK_ADD, 0x4000);
    EXPECT_EQ(form->zoom(), 125);
    test::pressKey('0', 0x4000);
    EXPECT_EQ(form->zoom(), 100);
    test::pressKey(VK_DELETE);
    EXPECT_TRUE(shapes().empty());
    for (const char key : {'B', 'G', 'N', 'T'}) {
        SCOPED_TRACE(key);
        drag({400, 110}, {700, 300});
        const TBitmap before = document->background().clone().take();
        test::pressKey(static_cast<uint8_t>(key), 0x4000);
        EXPECT_FALSE(samePixels(before, document->background()));
        test::pressKey('Z', 0x4000);
        EXPECT_TRUE(samePixels(before, document->background()));
    }
    drag({400, 110}, {599, 209});
    test::pressKey('A', 0x4000);
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.rectangle, (Rect{400, 110, 600, 210}));
    test::pressKey(VK_ESCAPE);
    test::pressKey(VK_ESCAPE);
    drag({300, 100}, {699, 399});
    test::pressKey('R', 0x4000);
    EXPECT_EQ(document->size(), (Size{400, 300}));
}

TEST_F(CanvasForm, freeDrawingHasItsOwnPanel) {
    form->controller().changeKind(ShapeKind::Drawing);
    pump();
    EXPECT_TRUE(test::findControl(*form, "pnlPens")->IsShown());
    EXPECT_FALSE(test::findControl(*form, "pnlRectShape")->IsShownOnScreen());
    drag({200, 200}, {400, 260});
    drag({220, 300}, {380, 220});
    shot("free-drawing");
    test::click(*test::findControl(*form, "btnApply"));
    pump();
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.settings.kind, ShapeKind::Drawing);
    EXPECT_FALSE(test::findControl(*form, "pnlPens")->IsShown());
    form->finishEditing();
    form->beginCapture([](Rect) {});
    drag({200, 150}, {500, 400});
    shot("capturing");
    test::click(*test::findControl(*form, "tbtnCancel"));
}

TEST_F(CanvasForm, theMenuHasItsItemsAndMarks) {
    draw(predefinedStyles()[0], {150, 150, 250, 200}, "one");
    const std::unique_ptr<wxMenu> menu = form->makeShapeMenu();
    wxString items;
    for (const wxMenuItem* item : menu->GetMenuItems())
        if (!item->IsSeparator()) items += item->GetItemLabel() + "|";
    EXPECT_EQ(items,
              "Add annotation\tIns|Delete annotation\tDel|Renumber...\tAlt+Backspace|Copy\tCtrl+C|Cut\tCtrl+X|"
              "Paste\tCtrl+V|Bring to Front\tCtrl+Alt+Up|Send to Back\tCtrl+Alt+Down|Shape|Text|Line|Number|");
    EXPECT_NE(menu->FindItem("Midlle"), wxNOT_FOUND);
}

TEST_F(CanvasForm, closingInTheMiddleOfAnEditKeepsTheText) {
    form->setTool(EditTool::TextShapeRectangle);
    drag({150, 150}, {260, 220});
    test::typeText("half");
    form->Destroy();
    form = nullptr;
    pump();
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].text.text, "half");
}

TEST_F(CanvasForm, tenThousandRandomEventsRaiseNoAssertion) {
    std::mt19937 random(1);
    const auto any = [&](int low, int high) { return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1)); };
    HWND window = canvas()->GetHWND();
    constexpr WPARAM keys[] = {VK_ESCAPE, VK_TAB, VK_INSERT, VK_DELETE, VK_LEFT, VK_RIGHT, VK_UP, VK_DOWN, '1', '2', '3', '4'};
    for (int i = 0; i < 10000; ++i) {
        const LPARAM at = MAKELPARAM(any(-20, 800), any(-20, 700));
        switch (any(0, 7)) {
            case 0: SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at); break;
            case 1: SendMessageW(window, WM_LBUTTONUP, 0, at); break;
            case 2: SendMessageW(window, WM_KEYDOWN, keys[random() % std::size(keys)], 1); break;
            case 3: form->setTool(static_cast<EditTool>(any(0, 9))); break;
            case 4: SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(any(0, 9) == 0 ? MK_CONTROL : 0, any(0, 1) == 0 ? 120 : -120), at); break;
            default: SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at);
        }
        if (i % 500 == 0) pump();
    }
    form->finishEditing();
    while (document->history().canUndo()) ASSERT_TRUE(document->undo());
    EXPECT_TRUE(shapes().empty());
}

}  // namespace
}  // namespace glimmer
