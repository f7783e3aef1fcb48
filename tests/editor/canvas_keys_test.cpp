// Each shortcut of the canvas by real keyboard input.

#include <wx/dialog.h>
#include <wx/menu.h>
#include <wx/msw/wrapwin.h>
#include <wx/vlbox.h>
// After what it needs.
#include <richedit.h>

#include "common/tool_button.h"
#include "editor/canvas_fixture.h"
#include "editor/labels/label_control.h"
#include "editor/window/clipboard_window.h"
#include "imaging/clipboard.h"
#include "support/windows/kept_clipboard.h"

namespace glimmer {
namespace {

using test::altKey;
using test::ctrlKey;
using test::pressKey;
using test::shiftKey;

class CanvasKeys : public test::CanvasForm {};

TEST_F(CanvasKeys, copyCutAndPasteTakeTheAnnotationBeforeTheArea) {
    const test::KeptClipboard kept;
    draw({150, 150, 250, 200}, "one");
    pressKey('C', ctrlKey);
    pressKey('V', ctrlKey);
    ASSERT_EQ(shapes().size(), 2U);
    EXPECT_EQ(shapes()[1].text.text, "one");
    EXPECT_NE(shapes()[1].shape.rectangle, shapes()[0].shape.rectangle) << "not hidden under the one that was copied";
    pressKey('X', ctrlKey);
    EXPECT_EQ(shapes().size(), 1U);
    pressKey('Z', ctrlKey);
    EXPECT_EQ(shapes().size(), 2U);
    pressKey('Y', ctrlKey);
    EXPECT_EQ(shapes().size(), 1U);
}

TEST_F(CanvasKeys, pixelsOfAnAreaAreCopiedCutAndPasted) {
    const test::KeptClipboard kept;
    const TBitmap before = background();
    drag({100, 110}, {199, 159});
    pressKey('C', ctrlKey);
    EXPECT_TRUE(samePixels(pictureFromClipboard().take(), before.cropped({100, 110, 200, 160}).take()));
    EXPECT_TRUE(samePixels(background(), before));
    pressKey('X', ctrlKey);
    for (int32_t y = 100; y < 170; ++y)
        for (int32_t x = 90; x < 210; ++x) {
            const bool inside = x >= 100 && x < 200 && y >= 110 && y < 160;
            ASSERT_EQ(document->background().pixel(x, y), inside ? rgb(255, 255, 255) : before.pixel(x, y));
        }
    pressKey('V', ctrlKey);
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.settings.kind, ShapeKind::Drawing);
    EXPECT_TRUE(samePixels(*shapes()[0].shape.drawing, before.cropped({100, 110, 200, 160}).take()));
}

TEST_F(CanvasKeys, aColourIsPickedWithTheKeyboard) {
    drag({400, 110}, {559, 299});
    const TBitmap before = background();
    pressKey('F', ctrlKey);
    ASSERT_NE(floating("ColorPicker"), nullptr);
    pressKey(VK_RETURN);  // the colour that has the focus
    EXPECT_FALSE(samePixels(before, document->background()));
    pressKey('Z', ctrlKey);
    EXPECT_TRUE(samePixels(before, document->background()));
}

TEST_F(CanvasKeys, areasAreConvertedInvertedCroppedAndDropped) {
    drag({400, 110}, {599, 209});
    pressKey('I', ctrlKey);
    EXPECT_EQ(document->selection().kind, Selection::Kind::Region);
    pressKey(VK_DELETE);
    EXPECT_TRUE(form->selectedArea().empty());
    drag({400, 110}, {599, 209});
    pressKey('A', ctrlKey);
    ASSERT_EQ(shapes().size(), 1U);
    EXPECT_EQ(shapes()[0].shape.rectangle, (Rect{400, 110, 600, 210}));
    EXPECT_TRUE(labelEdit().IsShown()) << "its text is asked for";
    pressKey(VK_ESCAPE);
    pressKey(VK_ESCAPE);
    EXPECT_EQ(document->selectedAnnotation(), nullptr);
    pressKey(VK_INSERT);
    ASSERT_EQ(shapes().size(), 2U);
    pressKey(VK_ESCAPE);
    pressKey(VK_DELETE);
    EXPECT_EQ(shapes().size(), 1U);
    drag({300, 100}, {699, 399});
    pressKey('R', ctrlKey);
    EXPECT_EQ(document->size(), (Size{400, 300}));
    EXPECT_EQ(shapes()[0].shape.rectangle, (Rect{100, 10, 300, 110}));
}

TEST_F(CanvasKeys, annotationsAreMovedResizedOrderedAndToggled) {
    const AnnotationId first = draw({150, 150, 250, 200}, "one");
    const AnnotationId second = draw({350, 150, 450, 200}, "two");
    pressKey(VK_TAB);
    EXPECT_EQ(document->selectedId(), first);
    pressKey(VK_TAB, shiftKey);
    EXPECT_EQ(document->selectedId(), second);
    const size_t steps = document->history().depth();
    for (int i = 0; i < 3; ++i) pressKey(VK_RIGHT);
    pressKey(VK_DOWN, shiftKey);
    EXPECT_EQ(selected().shape.rectangle, (Rect{353, 160, 453, 210}));
    EXPECT_EQ(document->history().depth(), steps + 1) << "moves in a row are one step";
    pressKey(VK_LEFT, ctrlKey);
    EXPECT_EQ(selected().shape.rectangle, (Rect{353, 160, 452, 210}));
    const Rect label = selected().text.rectangle;
    pressKey(VK_LEFT, altKey);
    EXPECT_EQ(selected().text.rectangle, label.moved(-1, 0)) << "the label alone";
    EXPECT_EQ(selected().shape.rectangle, (Rect{353, 160, 452, 210}));
    pressKey(VK_DOWN, ctrlKey | altKey);
    EXPECT_EQ(document->annotations().indexOf(second), 0U);
    pressKey(VK_UP, ctrlKey | altKey);
    EXPECT_EQ(document->annotations().indexOf(second), 1U);
    const auto shown = [this] {
        return std::array{selected().shape.isVisible(), selected().text.isVisible(), selected().line.isVisible(),
                          selected().number.isVisible()};
    };
    for (size_t part = 0; part < 4; ++part) {
        auto expected = shown();
        expected[part] = !expected[part];
        pressKey(static_cast<uint8_t>('1' + part));
        EXPECT_EQ(shown(), expected) << part;
        pressKey(static_cast<uint8_t>('1' + part));
    }
}

TEST_F(CanvasKeys, digitsInALabelAreTextAndToggleNothing) {
    const AnnotationId id = draw({150, 150, 250, 200}, "1234");
    EXPECT_EQ(shapes().find(id)->text.text, "1234");
    EXPECT_FALSE(shapes().find(id)->number.isVisible());
    pressKey(VK_RETURN);
    EXPECT_TRUE(labelEdit().IsShown());
    pressKey('A', ctrlKey);
    test::typeText("4");
    pressKey(VK_DELETE);
    EXPECT_EQ(shapes().size(), 1U);
    pressKey(VK_ESCAPE);
    EXPECT_FALSE(labelEdit().IsShown());
    EXPECT_EQ(shapes().find(id)->text.text, "4");
}

TEST_F(CanvasKeys, shiftEnterIsALineAndEscLeavesTheLabelToAnInputMethod) {
    const AnnotationId id = draw({150, 150, 250, 200}, "x");
    pressKey(VK_RETURN);
    ASSERT_TRUE(labelEdit().IsShown());
    const HWND edit = labelEdit().GetHWND();
    SendMessageW(edit, EM_SETSEL, 1, 1);
    SendMessageW(edit, EM_REPLACESEL, FALSE, reinterpret_cast<LPARAM>(L"\vy"));  // as Windows' control does it
    pressKey(VK_RETURN, shiftKey);
    test::typeText("z");
    EXPECT_EQ(shapes().find(id)->text.text, "x\ny\nz");

    SendMessageW(edit, EM_SETZOOM, 3, 2);  // as the toolkit does on a monitor with another scaling
    SendMessageW(edit, WM_IME_STARTCOMPOSITION, 0, 0);
    wxKeyEvent escape(wxEVT_CHAR_HOOK);  // as the toolkit's hook sees it, whatever the input method makes of the key
    escape.m_keyCode = WXK_ESCAPE;
    EXPECT_FALSE(form->FormKeyDown(escape));
    EXPECT_TRUE(labelEdit().IsShown()) << "the input method's";
    EXPECT_EQ(shapes().find(id)->text.text, "x\ny\nz");
    SendMessageW(edit, WM_IME_ENDCOMPOSITION, 0, 0);
    test::typeText("!");
    EXPECT_FALSE(labelControlIsZoomed(edit));
    pressKey(VK_ESCAPE);
    EXPECT_FALSE(labelEdit().IsShown());
    EXPECT_EQ(shapes().find(id)->text.text, "x\ny\nz!");
}

TEST_F(CanvasKeys, renumberingTakesAtLeastOneAnnotation) {
    pressKey(VK_BACK, altKey);
    EXPECT_TRUE(messages.messages.empty());
    draw({150, 150, 250, 200}, "one");
    draw({350, 150, 450, 200}, "two");
    {
        const test::NextModal list([](wxDialog& dialog) {
            auto* entries = test::find<wxVListBox>(dialog, "lstAnnotations");
            EXPECT_EQ(entries->GetItemCount(), 2U);
            entries->SetSelection(1);
            test::click(*test::findControl(dialog, "btnMoveUp"));
            dialog.EndModal(wxID_OK);
        });
        pressKey(VK_BACK, altKey);
    }
    EXPECT_EQ(shapes()[0].number.number, 2);
    EXPECT_EQ(shapes()[1].number.number, 1);
}

TEST_F(CanvasKeys, zoomHasItsKeys) {
    pressKey(VK_ADD, ctrlKey);
    EXPECT_EQ(form->zoom(), 125);
    pressKey(VK_SUBTRACT, ctrlKey);
    pressKey(VK_SUBTRACT, ctrlKey);
    EXPECT_EQ(form->zoom(), 75);
    pressKey('0', ctrlKey);
    EXPECT_EQ(form->zoom(), 100);
}

TEST_F(CanvasKeys, focusWalksToThePanelsAndBack) {
    wxWindow* panels = test::findControl(*form, "pnlProperties");
    pressKey(VK_F6);
    EXPECT_TRUE(panels->IsDescendant(wxWindow::FindFocus()));
    pressKey('A', ctrlKey | shiftKey);
    EXPECT_FALSE(form->selectedArea().empty()) << "commands work there too";
    pressKey(VK_F6, shiftKey);
    EXPECT_EQ(wxWindow::FindFocus(), canvas());
    pressKey(VK_TAB);
    EXPECT_NE(wxWindow::FindFocus(), canvas()) << "without an annotation to go to, Tab leaves the canvas";
}

TEST_F(CanvasKeys, theMenuHasItsItemsAndMarks) {
    draw({150, 150, 250, 200}, "one");
    const std::unique_ptr<wxMenu> menu = form->makeShapeMenu();
    wxString items;
    for (const wxMenuItem* item : menu->GetMenuItems())
        if (!item->IsSeparator()) items += item->GetItemLabel() + "|";
    EXPECT_EQ(items.utf8_string(),
              "Add annotation\tIns|Delete annotation\tDel|Renumber...\tAlt+Backspace|Copy\tCtrl+C|Cut\tCtrl+X|"
              "Paste\tCtrl+V|Bring to Front\tCtrl+Alt+Up|Send to Back\tCtrl+Alt+Down|Shape|Text|Line|Number|");
    // Each position of the text menu, by the tag that its place in the menu stands for.
    const wxMenu* text = menu->FindItem(menu->FindItem("Text"))->GetSubMenu();
    const wxMenu* position = text->FindItem(text->FindItem("Position"))->GetSubMenu();
    int32_t tag = 0;
    for (const wxMenuItem* side : position->GetMenuItems())
        for (const wxMenuItem* place : side->GetSubMenu()->GetMenuItems()) {
            wxCommandEvent event(wxEVT_MENU, place->GetId());
            side->GetSubMenu()->ProcessEvent(event);
            EXPECT_EQ(selected().text.settings.position, ++tag);
        }
    EXPECT_EQ(tag, 12);
    EXPECT_NE(menu->FindItem("Midlle"), wxNOT_FOUND);
}

}  // namespace
}  // namespace glimmer
