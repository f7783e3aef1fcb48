// The canvas by real mouse messages: tools, handles, drags that leave the window or are cut off, the panels.

#include <wx/checkbox.h>
#include <wx/slider.h>
// clang-format off
#include <wx/msw/wrapwin.h>
#include <commctrl.h>
#include <tpcshrd.h>
// clang-format on

#include "editor/annotations/shape_geometry.h"
#include "editor/canvas_fixture.h"
#include "settings/options.h"

namespace glimmer {
namespace {

using test::find;
using test::findControl;
using test::mouseMove;
using test::mousePress;
using test::mouseRelease;
using test::pump;
using test::pumpUntil;

class CanvasMouse : public test::CanvasForm {};

TEST_F(CanvasMouse, anAreaShowsItsToolbarAndTheButtonsWork) {
    wxWindow* panel = findControl(*form, "pnlSelectionIcons");
    EXPECT_FALSE(panel->IsShown());
    drag({299, 259}, {100, 120});
    EXPECT_EQ(form->selectedArea(), (Rect{100, 120, 300, 260})) << "dragged upwards and to the left";
    ASSERT_TRUE(panel->IsShown());
    const TBitmap before = background();
    for (const char* name : {"tbtnBlur", "tbtnBW", "tbtnInvertColors", "tbtnInterlace"}) {
        test::click(*findControl(*form, name));
        EXPECT_FALSE(samePixels(before, document->background())) << name;
        form->undo();
        ASSERT_TRUE(samePixels(before, document->background())) << name;
    }
    // The strip on top moves the panel, which then stays.
    wxWindow* strip = findControl(*form, "imgDragHandle");
    const wxPoint was = panel->GetPosition();
    mousePress(*strip, 5, 5);
    mouseMove(*strip, 35, 25);
    mouseRelease(*strip, 35, 25);
    EXPECT_EQ(panel->GetPosition(), was + wxPoint(30, 20));
    test::click(*findControl(*form, "tbtnDelete"));
    EXPECT_TRUE(form->selectedArea().empty());
    EXPECT_FALSE(panel->IsShown());
}

TEST_F(CanvasMouse, aTouchPadScrollsAndPinchesAndAFingerDraws) {
    const auto turn = [this](UINT message, int keys, int rotation) {
        const wxPoint at = canvas()->ClientToScreen(wxPoint(300, 200));
        SendMessageW(canvas()->GetHWND(), message, MAKEWPARAM(keys, rotation), MAKELPARAM(at.x, at.y));
    };
    const auto scrolled = [this] { return Point{-form->inView({0, 0, 1, 1}).left, -form->inView({0, 0, 1, 1}).top}; };
    for (int i = 0; i < 4; ++i) turn(WM_MOUSEWHEEL, 0, -20);  // of three lines a notch
    EXPECT_EQ(scrolled(), (Point{0, 40}));
    turn(WM_MOUSEWHEEL, 0, 12);
    EXPECT_EQ(scrolled(), (Point{0, 34}));
    turn(WM_MOUSEHWHEEL, 0, 40);
    EXPECT_EQ(scrolled(), (Point{20, 34}));
    for (int i = 0; i < 11; ++i) turn(WM_MOUSEWHEEL, MK_CONTROL, 30);
    EXPECT_EQ(form->zoom(), 150) << "two notches and something";
    form->zoomTo(100);
    const Point before = scrolled();
    wxPanGestureEvent pan(canvas()->GetId());
    pan.SetDelta({-7, -9});
    canvas()->ProcessWindowEvent(pan);
    EXPECT_EQ(scrolled(), (Point{before.x + 7, before.y + 9}));
    // Whether the system waits for a long press: only where there is a menu to be had and nothing to be drawn.
    draw({200, 200, 320, 260});
    const auto waits = [this](Point at) {
        const wxPoint screen = canvas()->ClientToScreen(wxPoint(at.x, at.y));
        const LRESULT off =
            SendMessageW(canvas()->GetHWND(), WM_TABLET_QUERYSYSTEMGESTURESTATUS, 0, MAKELPARAM(screen.x, screen.y));
        EXPECT_EQ(off & ~LRESULT{1}, 0x10018) << "no flicks, no rings around taps";
        return (off & 1) == 0;
    };
    EXPECT_TRUE(waits({250, 230}));
    EXPECT_FALSE(waits({500, 500}));
    form->setTool(EditTool::Line);
    EXPECT_FALSE(waits({250, 230}));
}

TEST_F(CanvasMouse, eachToolMakesWhatItsNameSays) {
    const struct {
        EditTool tool;
        bool shape, text, line;
    } cases[] = {{EditTool::TextShapeRectangle, true, true, true},
                 {EditTool::TextLine, false, true, true},
                 {EditTool::Text, false, true, false},
                 {EditTool::RectHighlight, true, false, false},
                 {EditTool::Line, false, false, true}};
    for (const auto& expected : cases) {
        SCOPED_TRACE(static_cast<int>(expected.tool));
        draw({200, 200, 320, 260}, "words", expected.tool);
        ASSERT_EQ(shapes().size(), 1U);
        EXPECT_EQ(shapes()[0].shape.isVisible(), expected.shape);
        EXPECT_EQ(shapes()[0].text.isVisible(), expected.text);
        EXPECT_EQ(shapes()[0].line.isVisible(), expected.line);
        EXPECT_EQ(shapes()[0].text.text, expected.text ? "words" : "");
        EXPECT_EQ(shapes()[0].number.number, 1);
        const TBBShape made = shapes()[0];
        form->undo();
        ASSERT_TRUE(shapes().empty()) << "drawing and its text are one step";
        form->redo();
        EXPECT_EQ(shapes()[0], made);
        test::pressKey(VK_ESCAPE);
        form->setTool(expected.tool);
        clickAt({60, 500});
        form->finishEditing();
        ASSERT_EQ(shapes().size(), 1U) << "a click makes nothing that stays";
        while (document->history().canUndo()) form->undo();
    }
    form->setTool(EditTool::TextPen);
    drag({200, 200}, {300, 240});
    form->finishEditing();
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.settings.kind, ShapeKind::Drawing);
    form->undo();
    for (const EditTool tool : {EditTool::WindowSelector, EditTool::TextShapeEllipse}) {
        form->setTool(tool);
        drag({820, 150}, {900, 250});
        EXPECT_FALSE(form->selectedArea().empty());
        test::pressKey(VK_DELETE);
    }
    form->setTool(EditTool::TextShapePolygon);
    for (const Point corner : {Point{200, 120}, {300, 120}, {300, 220}}) clickAt(corner);
    test::pressKey(VK_RETURN);
    EXPECT_EQ(document->selection().kind, Selection::Kind::Polygon);
}

TEST_F(CanvasMouse, everyHandleResizesAlsoBeyondTheOppositeSide) {
    const Rect start{300, 250, 400, 320};
    draw(start);
    for (int32_t handle = 0; handle < handleCount; ++handle) {
        for (const Point way : {Point{-20, -15}, Point{20, 15}, Point{160, 130}, Point{-160, -130}}) {
            SCOPED_TRACE(testing::Message() << handle << " by " << way.x << ", " << way.y);
            const Point at = handlePoint(start, handle);
            drag(at, {at.x + way.x, at.y + way.y});
            EXPECT_EQ(selected().shape.rectangle, resizedByHandle(start, handle, way.x, way.y).normalized());
            form->undo();
            ASSERT_EQ(selected().shape.rectangle, start) << "one drag, one step";
        }
    }
}

TEST_F(CanvasMouse, aDragOutOfTheViewScrollsOnAndOn) {
    const int32_t height = canvas()->GetClientSize().y;
    mousePress(*canvas(), 200, height - 60);
    // The pointer itself must be outside: the timer asks the system for it.
    const wxPoint outside = canvas()->ClientToScreen(wxPoint(300, height + 40));
    SetCursorPos(outside.x, outside.y);
    mouseMove(*canvas(), 300, height + 40);
    ASSERT_TRUE(pumpUntil([this] { return form->inView({0, 0, 1, 1}).top < -200; }, "scrolling"));
    const int32_t scrolled = -form->inView({0, 0, 1, 1}).top;
    mouseRelease(*canvas(), 300, height - 5);
    pump();
    const Rect area = form->selectedArea();
    EXPECT_EQ(area.top, height - 60);
    EXPECT_GT(area.bottom, height + scrolled - 100);
    const int32_t rest = -form->inView({0, 0, 1, 1}).top;
    for (int i = 0; i < 10; ++i) {
        Sleep(20);
        pump();
    }
    EXPECT_EQ(-form->inView({0, 0, 1, 1}).top, rest) << "the timer has ended with the drag";
}

TEST_F(CanvasMouse, whatIsTypedAtTheEdgeOfTheViewStaysInSight) {
    const wxSize seen = canvas()->GetClientSize();
    form->setTool(EditTool::TextLine);
    drag({seen.x - 300, seen.y - 100}, {seen.x - 40, seen.y - 6});
    ASSERT_TRUE(labelEdit().IsShown());
    test::typeText("a sentence that needs more than one line, and more than there was to see");
    const wxRect label = labelEdit().GetRect();
    EXPECT_TRUE(wxRect(canvas()->GetClientSize()).Contains(label)) << label.GetBottom() << " of " << seen.y;
    EXPECT_GT(form->place().scroll.y, 0);
}

TEST_F(CanvasMouse, escTakesADragBackAndNothingScrollsAnyMore) {
    draw({300, 250, 400, 320});
    const int32_t height = canvas()->GetClientSize().y;
    mousePress(*canvas(), 350, 285);
    const wxPoint outside = canvas()->ClientToScreen(wxPoint(350, height + 40));
    SetCursorPos(outside.x, outside.y);
    mouseMove(*canvas(), 350, height + 40);
    ASSERT_TRUE(pumpUntil([this] { return form->inView({0, 0, 1, 1}).top < 0; }, "scrolling"));
    test::pressKey(VK_ESCAPE);
    EXPECT_EQ(selected().shape.rectangle, (Rect{300, 250, 400, 320}));
    ASSERT_TRUE(pumpUntil([this] { return !canvas()->HasCapture(); }, "the end of the timer"));
    mouseRelease(*canvas(), 350, 100);
    EXPECT_EQ(selected().shape.rectangle, (Rect{300, 250, 400, 320}));
}

TEST_F(CanvasMouse, aDragThatLosesTheMouseKeepsWhatItDid) {
    draw({300, 250, 400, 320});
    mousePress(*canvas(), 350, 285);
    mouseMove(*canvas(), 380, 305);
    ReleaseCapture();  // as when another window comes up
    pump();
    EXPECT_FALSE(form->controller().dragging());
    EXPECT_EQ(selected().shape.rectangle, (Rect{330, 270, 430, 340}));
    mouseMove(*canvas(), 500, 500);
    mouseRelease(*canvas(), 500, 500);
    EXPECT_EQ(selected().shape.rectangle, (Rect{330, 270, 430, 340}));
    form->undo();
    EXPECT_EQ(selected().shape.rectangle, (Rect{300, 250, 400, 320}));
}

TEST_F(CanvasMouse, closingInTheMiddleKeepsWhatIsThere) {
    form->setTool(EditTool::TextShapeRectangle);
    drag({150, 150}, {260, 220});
    test::typeText("half");
    delete form;
    form = nullptr;
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].text.text, "half");

    form = new TEditForm(frame, *document);
    frame->Layout();
    pump();
    form->setTool(EditTool::Pointer);
    mousePress(*canvas(), 200, 180);
    mouseMove(*canvas(), 220, 190);
    delete form;
    EXPECT_EQ(shapes()[0].shape.rectangle, (Rect{170, 160, 281, 231}));

    form = new TEditForm(frame, *document);
    frame->Layout();
    pump();
    document->selectAnnotation(noAnnotation);
    form->controller().changeKind(ShapeKind::Drawing);
    mousePress(*canvas(), 300, 300);
    mouseMove(*canvas(), 400, 320);
    delete form;
    form = new TEditForm(frame, *document);
    ASSERT_EQ(shapes().size(), 2U);
    EXPECT_EQ(shapes()[1].shape.settings.kind, ShapeKind::Drawing);
}

TEST_F(CanvasMouse, panelsShowTheSelectedAnnotationAndChangeIt) {
    const AnnotationId first = draw({150, 150, 250, 200}, "one");
    auto* opacity = find<wxSlider>(*form, "spnShapeOpacity");
    auto* width = find<wxSlider>(*form, "spnLineWidth");
    EXPECT_EQ(opacity->GetMin(), 0);
    EXPECT_EQ(opacity->GetMax(), 100);
    EXPECT_EQ(opacity->GetPageSize(), 10);
    EXPECT_EQ(width->GetMin(), 1);
    EXPECT_EQ(width->GetMax(), 11);
    // As the control tells its parent: the thumb is pulled and let go, or stepped by a key.
    const auto tell = [](wxSlider& slider, int value, WORD what) {
        SendMessageW(slider.GetHWND(), TBM_SETPOS, TRUE, value);
        SendMessageW(GetParent(slider.GetHWND()), WM_HSCROLL, MAKEWPARAM(what, what == TB_THUMBTRACK ? value : 0),
                     reinterpret_cast<LPARAM>(slider.GetHWND()));
    };
    const size_t steps = document->history().depth();
    for (const int value : {80, 50, 30}) tell(*opacity, value, TB_THUMBTRACK);
    tell(*opacity, 30, TB_THUMBPOSITION);
    tell(*opacity, 30, TB_ENDTRACK);
    EXPECT_EQ(document->history().depth(), steps + 1) << "one pull";
    for (const int value : {6, 7}) {
        tell(*width, value, TB_LINEDOWN);
        tell(*width, value, TB_ENDTRACK);
    }
    EXPECT_EQ(document->history().depth(), steps + 3) << "two keys";
    EXPECT_EQ(selected().shape.settings.opacity, 30);
    EXPECT_EQ(selected().line.settings.width, 7);
    test::click(*findControl(*form, "tbtnShowEllipse"));
    test::click(*findControl(*form, "tbtnFontBold"));
    test::click(*findControl(*form, "tbtnAlignRight"));
    EXPECT_EQ(selected().shape.settings.kind, ShapeKind::Ellipse);
    EXPECT_TRUE(selected().text.settings.bold);
    EXPECT_EQ(selected().text.settings.alignment, TextAlignment::Right);
    test::click(*findControl(*form, "chkShowNumber"));
    EXPECT_TRUE(selected().number.isVisible());
    // The next one is like it.
    draw({350, 150, 450, 200}, "two");
    EXPECT_EQ(selected().shape.settings, shapes().find(first)->shape.settings);
    EXPECT_TRUE(selected().number.isVisible());
    EXPECT_TRUE(selected().text.settings.bold);
    tell(*opacity, 90, TB_LINEDOWN);
    tell(*opacity, 90, TB_ENDTRACK);
    document->selectAnnotation(first);
    pump();
    EXPECT_EQ(opacity->GetValue(), 30) << "the sliders show what is selected";
    // A box or slider that was clicked has the focus; the canvas's keys still work.
    find<wxCheckBox>(*form, "chkShowNumber")->SetFocus();
    test::pressKey('4');
    EXPECT_FALSE(selected().number.isVisible());
    test::pressKey(VK_DELETE);
    EXPECT_EQ(shapes().find(first), nullptr);
}

TEST_F(CanvasMouse, freeDrawingAndCapturingHaveTheirPanels) {
    form->controller().changeKind(ShapeKind::Drawing);
    pump();
    EXPECT_TRUE(findControl(*form, "pnlPens")->IsShown());
    EXPECT_FALSE(findControl(*form, "pnlRectShape")->IsShownOnScreen());
    EXPECT_EQ(findControl(*form, "lblPens")->GetLabel(),
              "Perform drawing using mouse.\nWhen you're finished, press \"Apply\" \n"
              "button or right-click the screen \nto return to  annotation mode.");
    drag({200, 200}, {400, 260});
    drag({220, 300}, {380, 220});
    test::click(*findControl(*form, "btnApply"));
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.settings.kind, ShapeKind::Drawing);
    EXPECT_FALSE(findControl(*form, "pnlPens")->IsShown());
    form->finishEditing();
    Rect captured;
    form->beginCapture([&](Rect area) { captured = area; });
    pump();
    EXPECT_TRUE(findControl(*form, "pnlCapturing")->IsShown());
    EXPECT_FALSE(findControl(*form, "pnlStyle")->IsShownOnScreen());
    drag({200, 150}, {499, 399});
    EXPECT_FALSE(findControl(*form, "pnlSelectionIcons")->IsShown());
    test::click(*findControl(*form, "tbtnCapture"));
    EXPECT_EQ(captured, (Rect{200, 150, 500, 400}));
    EXPECT_FALSE(findControl(*form, "pnlCapturing")->IsShown());
}

TEST_F(CanvasMouse, optionsHoldAtOnce) {
    Options& options = OptionsHolder();
    const Options before = options;
    options.setOn("chkDisplayNumbers", true);
    options.setNumber("cmbAnnotationPlacement", 10);
    options.setNumber("spnBlurIntensity", 40);
    options.setText("edtFontName", "Tahoma");
    options.setOn("chkFloatingToolbar", true);
    saveOptions();
    pump();
    EXPECT_EQ(form->controller().blurIntensity, 40);
    wxWindow* panel = floating("wndFloatingPanels");
    ASSERT_NE(panel, nullptr);
    EXPECT_NE(panel->FindWindow("pnlStyle"), nullptr);
    draw({350, 250, 450, 300}, "new");
    EXPECT_TRUE(selected().number.isVisible());
    EXPECT_EQ(selected().text.settings.position, 11);
    EXPECT_EQ(selected().text.settings.fontName, "Tahoma");
    options = before;
    saveOptions();
    pump();
    EXPECT_EQ(floating("wndFloatingPanels"), nullptr);
    EXPECT_TRUE(findControl(*form, "pnlStyle")->IsShownOnScreen());
    draw({350, 450, 450, 500}, "newer");
    EXPECT_FALSE(selected().number.isVisible());
    EXPECT_EQ(selected().text.settings.position, 2);
}

TEST_F(CanvasMouse, theLastUsedStyleIsTheNextCanvassFirst) {
    form->controller().changeSettings([](TShapeStyle& style) {
        style.shape.frameColour = rgb(1, 2, 3);
        style.text.fontSize = 20;
    });
    delete form;
    form = new TEditForm(frame, *document);
    EXPECT_EQ(form->controller().toolSettings().shape.frameColour, rgb(1, 2, 3));
    EXPECT_EQ(form->controller().toolSettings().text.fontSize, 20);
    // Options that were changed with no capture open hold for the next one, once: what is set on it later stays.
    Options& options = OptionsHolder();
    const Options before = options;
    delete form;
    options.setNumber("cmbAnnotationPlacement", 10);
    options.setText("edtFontName", "Tahoma");
    form = new TEditForm(frame, *document);
    EXPECT_EQ(form->controller().toolSettings().text.position, 11);
    EXPECT_EQ(form->controller().toolSettings().text.fontName, "Tahoma");
    form->controller().changeSettings([](TShapeStyle& style) { style.text.position = 3; });
    delete form;
    form = new TEditForm(frame, *document);
    EXPECT_EQ(form->controller().toolSettings().text.position, 3);
    options = before;
    form->controller().setToolSettings(*predefinedStyle("Default"));
}

TEST_F(CanvasMouse, tenThousandRandomEventsRaiseNoAssertion) {
    std::mt19937 random(1);
    const auto any = [&](int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    };
    HWND window = canvas()->GetHWND();
    constexpr uint8_t keys[] = {VK_ESCAPE, VK_TAB,    VK_INSERT, VK_DELETE, VK_LEFT, VK_RIGHT, VK_UP,
                                VK_DOWN,   VK_RETURN, '1',       '2',       '3',     '4'};
    // None that opens a window of its own.
    constexpr uint8_t controlKeys[] = {'A', 'B', 'C', 'G', 'I', 'N', 'R', 'T', 'V', 'X', 'Y', 'Z', VK_LEFT, VK_DOWN};
    for (int i = 0; i < 10000; ++i) {
        const LPARAM at = MAKELPARAM(any(-20, 800), any(-20, 700));
        switch (any(0, 9)) {
            case 0:
                SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, at);
                break;
            case 1:
            case 2:
                SendMessageW(window, WM_LBUTTONUP, 0, at);
                break;
            case 3:
                // A real key costs as much as a hundred messages.
                if (any(0, 3) != 0)
                    SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at);
                else if (any(0, 2) == 0)
                    test::pressKey(controlKeys[random() % std::size(controlKeys)], test::ctrlKey);
                else
                    test::pressKey(keys[random() % std::size(keys)], any(0, 3) == 0 ? test::shiftKey : 0);
                break;
            case 4:
                form->setTool(static_cast<EditTool>(any(0, 9)));
                break;
            case 5:
                SendMessageW(window, WM_MOUSEWHEEL,
                             MAKEWPARAM(any(0, 9) == 0 ? MK_CONTROL : 0, any(0, 1) == 0 ? 120 : -120), at);
                break;
            case 6:
                form->executeCommand(static_cast<EditCommand>(any(8, 25)));
                break;
            default:
                SendMessageW(window, WM_MOUSEMOVE, MK_LBUTTON, at);
        }
        if (i % 100 == 0) pump();
        if (i % 1000 == 0) ReleaseCapture();
    }
    form->finishEditing();
    EXPECT_TRUE(messages.messages.empty());
    while (document->history().canUndo()) ASSERT_TRUE(document->undo());
    EXPECT_TRUE(shapes().empty());
    EXPECT_TRUE(samePixels(document->background(), test::page(1000, 1400)));
}

}  // namespace
}  // namespace glimmer
