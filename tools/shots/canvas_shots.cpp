// The editing canvas in each of its states.

#include <wx/dialog.h>
#include <wx/frame.h>
#include <wx/menu.h>
#include <wx/msw/wrapwin.h>
#include <wx/timer.h>

#include "common/files.h"
#include "common/tool_button.h"
#include "editor/window/uEditor.h"
#include "imaging/picture_file.h"
#include "settings/options.h"
#include "shots.h"
#include "support/windows/forms.h"

namespace glimmer::shots {

namespace {

using test::mouseDrag;
using test::mouseMove;
using test::mousePress;
using test::mouseRelease;

/// A page on a canvas of its own, in a window of the size that the main window gives it.
class Scene {
public:
    explicit Scene(std::string prefix) : prefix_(std::move(prefix)) {
        TBitmap page = readPicture(readFile("samples/article-1280x1024.png", 1 << 26).take()).take();
        document_ = CaptureDocument::create(std::move(page), {"http://a.b/", "Article", "Article", "", 0}).take();
        frame_ = new wxFrame(nullptr, wxID_ANY, "Edit Screenshot", wxPoint(8, 8));
        frame_->SetClientSize(frame_->FromDIP(wxSize(980, 640)));
        form_ = new TEditForm(frame_, *document_);
        frame_->Show();
        frame_->Layout();
        test::bringForward(*frame_, &canvas());
        test::pump();
    }
    ~Scene() {
        frame_->Destroy();
        test::pump();
    }
    Scene(const Scene&) = delete;
    Scene& operator=(const Scene&) = delete;
    Scene(Scene&&) = delete;
    Scene& operator=(Scene&&) = delete;

    [[nodiscard]] wxWindow& canvas() const { return *form_->FindWindow("pbScreen"); }
    [[nodiscard]] wxFrame& frame() const { return *frame_; }
    [[nodiscard]] TEditForm& form() const { return *form_; }
    [[nodiscard]] CaptureDocument& document() const { return *document_; }
    [[nodiscard]] CanvasController& controller() const { return form_->controller(); }

    void shoot(const std::string& name) const { shots::shoot(*frame_, prefix_ + name); }
    /// With the windows that float beside it.
    void shootWide(const std::string& name) const { shootAround(*frame_, prefix_ + name, frame_->FromDIP(60)); }
    /// Where a picture's pixel is on the canvas.
    [[nodiscard]] Point at(Point picture) const {
        const Rect area = form_->inView({picture.x, picture.y, picture.x + 1, picture.y + 1});
        return {area.left, area.top};
    }
    void press(Point picture) const { mousePress(canvas(), at(picture).x, at(picture).y); }
    /// The pointer itself goes there too: while something is dragged the canvas asks where it is.
    void move(Point picture) const {
        const wxPoint screen = canvas().ClientToScreen(wxPoint(at(picture).x, at(picture).y));
        SetCursorPos(screen.x, screen.y);
        mouseMove(canvas(), at(picture).x, at(picture).y);
    }
    void release(Point picture) const { mouseRelease(canvas(), at(picture).x, at(picture).y); }
    void drag(Point from, Point to) const {
        mouseDrag(canvas(), at(from).x, at(from).y, at(to).x, at(to).y);
        test::pump();
    }
    AnnotationId draw(EditTool tool, const TShapeStyle& style, const Rect& rect, const char* text) const {
        controller().setToolSettings(style);
        form_->setTool(tool);
        drag({rect.left, rect.top}, {rect.right, rect.bottom});
        const AnnotationId id = document_->selectedId();
        if (form_->controller().editedId() != noAnnotation || form_->FindWindow("edtAnnotationEdit")->IsShown())
            test::typeText(text);
        form_->finishEditing();
        form_->setTool(EditTool::Pointer);
        test::pump();
        return id;
    }
    /// Closes a picker.
    void close(const char* name) const {
        for (wxWindow* child : form_->GetChildren())
            if (child->GetName() == name) child->Close();
        test::pump();
    }
    /// Opens something modal and takes its picture.
    void shootModal(const std::string& name, const std::function<void()>& open) const {
        const test::NextModal dialog([&](wxDialog& shown) {
            shootAround(*frame_, prefix_ + name, 0);
            shown.EndModal(wxID_CANCEL);
        });
        open();
    }
    void shootMenu(const std::string& name, wxMenu& menu, wxPoint at, int submenu) const {
        wxTimer timer;
        timer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
            shots::shoot(*frame_, prefix_ + name);
            EndMenu();
        });
        timer.StartOnce(300);
        // The keys wait in the queue and walk into the submenu.
        for (int i = 0; i <= submenu; ++i) PostMessageW(canvas().GetHWND(), WM_KEYDOWN, VK_UP, 0);
        if (submenu >= 0) PostMessageW(canvas().GetHWND(), WM_KEYDOWN, VK_RIGHT, 0);
        canvas().PopupMenu(&menu, at);
    }

private:
    std::string prefix_;
    std::unique_ptr<CaptureDocument> document_;
    wxFrame* frame_;
    TEditForm* form_;
};

TShapeStyle styleOf(const char* name, ShapeKind kind = ShapeKind::FilledRectangle, bool number = false) {
    TShapeStyle style = *predefinedStyle(name);
    style.shape.kind = kind;
    style.number.visible = number;
    return style;
}

void areas(const std::string& prefix) {
    const Scene scene(prefix);
    scene.shoot("empty");
    scene.drag({60, 150}, {330, 330});
    scene.shoot("selection");
    scene.controller().execute(EditCommand::InvertSelection);
    scene.shoot("selection-inverted");
    scene.controller().execute(EditCommand::NewSelection);
    scene.form().setTool(EditTool::TextShapeEllipse);
    scene.drag({60, 150}, {330, 330});
    scene.controller().execute(EditCommand::Fill);
    scene.shootWide("colour-picker");
    scene.close("ColorPicker");
    scene.controller().execute(EditCommand::Blur);
    scene.shoot("blurred-ellipse");
    scene.controller().execute(EditCommand::NewSelection);
    scene.form().setTool(EditTool::TextShapePolygon);
    for (const Point corner : {Point{420, 140}, {600, 180}, {560, 330}, {430, 300}}) {
        scene.press(corner);
        scene.release(corner);
    }
    scene.move({380, 220});
    scene.shoot("polygon");
    scene.controller().key(Key::Escape, {});
    scene.form().setTool(EditTool::Pointer);
    scene.form().beginCapture([](Rect) {});
    scene.drag({200, 150}, {520, 400});
    scene.shoot("capture-mode");
}

void annotations(const std::string& prefix) {
    const Scene scene(prefix);
    const AnnotationId first =
        scene.draw(EditTool::TextShapeRectangle, styleOf("Red Frame", ShapeKind::Rectangle, true), {120, 120, 300, 190},
                   "A rectangle with its number");
    scene.draw(EditTool::TextShapeRectangle, styleOf("Green Frame (big text)", ShapeKind::FilledEllipse, true),
               {420, 130, 590, 210}, "Ellipse, big text");
    scene.draw(EditTool::TextShapeRectangle, styleOf("Cold Glass", ShapeKind::FilledRectangle), {100, 300, 240, 370},
               "Cold glass");
    const AnnotationId pointer =
        scene.draw(EditTool::TextLine, styleOf("Yellow Rectangle"), {380, 400, 520, 330}, "Pointer: text and line");
    scene.draw(EditTool::Text, styleOf("Default"), {120, 440, 300, 470}, "Text alone");
    const AnnotationId highlight =
        scene.draw(EditTool::RectHighlight, styleOf("Yellow Rectangle"), {300, 480, 560, 510}, "");
    const AnnotationId line = scene.draw(EditTool::Line, styleOf("Red Frame"), {600, 520, 700, 420}, "");
    scene.document().selectAnnotation(noAnnotation);
    scene.shoot("annotations");
    for (const auto& [id, name] : {std::pair<AnnotationId, const char*>{first, "rectangle-selected"},
                                   {pointer, "pointer-selected"},
                                   {highlight, "highlight-selected"},
                                   {line, "line-selected"}}) {
        scene.document().selectAnnotation(id);
        scene.shoot(name);
    }
    scene.document().selectAnnotation(first);
    scene.controller().execute(EditCommand::EditText);
    scene.shoot("label-edited");
    test::typeText("What is typed here is in the capture at once");
    scene.shoot("label-typed");
    scene.form().finishEditing();

    // A label on its way: the guides of its place.
    const TBBShape& labelled = *scene.document().annotations().find(first);
    const Rect label = labelled.text.rectangle;
    const int to = label.left + 8 + labelled.shape.rectangle.left - label.left + 4;
    scene.press({label.left + 8, label.top + 8});
    scene.move({to - 20, label.top + 20});
    scene.move({to, label.top + 10});
    scene.shoot("label-dragged");
    scene.release({to, label.top + 10});

    scene.document().selectAnnotation(first);
    const std::unique_ptr<wxMenu> menu = scene.form().makeShapeMenu();
    scene.shootMenu("menu", *menu, {330, 90}, -1);
    scene.shootMenu("menu-number", *menu, {330, 90}, 0);
    scene.shootMenu("menu-text", *menu, {330, 90}, 2);
    test::find<ToolButton>(scene.form(), "tbtnStyle")->press();
    scene.shootWide("style-picker");
    scene.close("StylePicker");
    test::find<ToolButton>(scene.form(), "tbtnFontName")->press();
    scene.shootWide("font-picker");
    scene.close("FontPicker");
    scene.shootModal("renumber", [&] { scene.form().mnuNumberSetClick(); });
    scene.form().zoomTo(150);
    scene.shoot("zoom-150");
    scene.form().zoomTo(200);
    scene.shoot("zoom-200");
    scene.form().zoomTo(50);
    scene.shoot("zoom-50");
    scene.form().zoomTo(100);
    OptionsHolder().setOn("chkFloatingToolbar", true);
    saveOptions();
    scene.shootWide("floating-panels");
    OptionsHolder().setOn("chkFloatingToolbar", false);
    saveOptions();
    scene.shoot("docked-again");
}

void drawing(const std::string& prefix) {
    const Scene scene(prefix);
    scene.controller().changeKind(ShapeKind::Drawing);
    scene.controller().setPen({false, rgb(220, 30, 40), scene.controller().pen().width});
    for (int i = 0; i < 3; ++i) scene.drag({140 + 60 * i, 200}, {240 + 60 * i, 330});
    scene.shoot("free-drawing");
    scene.controller().endDrawing();
    test::typeText("Drawn by hand");
    scene.form().finishEditing();
    scene.shoot("drawing-selected");
}

}  // namespace

void canvas(const std::string& prefix) {
    areas(prefix);
    annotations(prefix);
    drawing(prefix);
}

}  // namespace glimmer::shots
