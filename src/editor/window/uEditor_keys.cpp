// The keyboard: the form sees every key before its children do.

#include <wx/ctrlsub.h>
#include <wx/textctrl.h>
#include <wx/window.h>

#include <optional>

#include "editor/window/label_editor.h"
#include "editor/window/property_panels.h"
#include "editor/window/uEditor.h"

namespace glimmer {

namespace {

std::optional<Key> keyOf(int code) {
    switch (code) {
        case WXK_ESCAPE:
            return Key::Escape;
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
        case WXK_F2:
            return Key::Enter;
        case WXK_TAB:
            return Key::Tab;
        case WXK_BACK:
            return Key::Backspace;
        case WXK_INSERT:
        case WXK_NUMPAD_INSERT:
            return Key::Insert;
        case WXK_DELETE:
        case WXK_NUMPAD_DELETE:
            return Key::Delete;
        case WXK_LEFT:
        case WXK_NUMPAD_LEFT:
            return Key::Left;
        case WXK_RIGHT:
        case WXK_NUMPAD_RIGHT:
            return Key::Right;
        case WXK_UP:
        case WXK_NUMPAD_UP:
            return Key::Up;
        case WXK_DOWN:
        case WXK_NUMPAD_DOWN:
            return Key::Down;
        default:
            break;
    }
    if (code >= WXK_NUMPAD1 && code <= WXK_NUMPAD4) return letter(static_cast<char>('1' + (code - WXK_NUMPAD1)));
    if ((code >= 'A' && code <= 'Z') || (code >= '0' && code <= '9')) return letter(static_cast<char>(code));
    return std::nullopt;
}

/// Whether a key may be the canvas's while that control has the focus. Plain keys belong to the control.
bool passes(Key key, Modifiers held, const wxWindow* focus) {
    const bool text = dynamic_cast<const wxTextEntry*>(focus) != nullptr;
    if (text && !held.alt && key != Key::Escape) return false;
    if (held.ctrl || held.alt || key == Key::Insert || key == Key::Escape) return true;
    // The digits and Del are of no use to a box, a button or a slider that was just clicked; a list looks for what
    // begins with a digit.
    const bool looksFor = text || dynamic_cast<const wxItemContainerImmutable*>(focus) != nullptr;
    const bool digit = key >= letter('1') && key <= letter('4');
    return !looksFor && !held.shift && (digit || key == Key::Delete);
}

}  // namespace

void TEditForm::takeFocus(bool fromBehind) {
    panels_->fill();
    if (fromBehind)
        panels_->SetFocus();
    else
        pbScreen_->SetFocus();
}

/// The keys that go over a long page, as in programs that show pictures and documents.
bool TEditForm::scrollByKey(int code, Modifiers held) {
    if (held.shift || held.alt) return false;
    using Jump = CanvasView::Jump;
    struct Way {
        int key;
        int onPad;
        Jump plain;
        std::optional<Jump> withCtrl;
    };
    static constexpr Way ways[] = {{WXK_PAGEUP, WXK_NUMPAD_PAGEUP, Jump::PageUp, {}},
                                   {WXK_PAGEDOWN, WXK_NUMPAD_PAGEDOWN, Jump::PageDown, {}},
                                   {WXK_HOME, WXK_NUMPAD_HOME, Jump::Top, Jump::TopLeft},
                                   {WXK_END, WXK_NUMPAD_END, Jump::Bottom, Jump::BottomRight}};
    for (const Way& way : ways) {
        if (code != way.key && code != way.onPad) continue;
        const std::optional<Jump> jump = held.ctrl ? way.withCtrl : way.plain;
        if (!jump) return false;
        constexpr int32_t kept = 2 * CanvasView::scrollIncrement;
        scrollTo(view_.jumped(*jump, kept));
        return true;
    }
    return false;
}

/// The label's own editor has the keys, but for the ones that end it.
bool TEditForm::keyInLabel(const wxKeyEvent& event) {
    // An input method has them all: Esc gives up what it composes, and not the label.
    if (labelEditor_->composing()) return false;
    const bool ends = event.GetKeyCode() == WXK_ESCAPE || (event.GetKeyCode() == WXK_RETURN && event.ControlDown());
    if (!ends) return false;
    finishTextEdit();
    pbScreen_->SetFocus();
    return true;
}

bool TEditForm::zoomByKey(int code, Modifiers held) {
    if (!held.ctrl || held.alt) return false;
    switch (code) {
        case '+':
        case '=':
        case WXK_NUMPAD_ADD:
            zoomIn();
            return true;
        case '-':
        case WXK_NUMPAD_SUBTRACT:
            zoomOut();
            return true;
        case '0':
        case WXK_NUMPAD0:
            zoomTo(100);
            return true;
        case '1':
        case WXK_NUMPAD1:
            zoomToFit(CanvasView::Fit::Page);
            return true;
        case '2':
        case WXK_NUMPAD2:
            zoomToFit(CanvasView::Fit::Width);
            return true;
        default:
            return false;
    }
}

/// From the canvas on to the panels, back from them; the other ways lead out of here.
bool TEditForm::focusByKey(int code, Modifiers held) {
    if (code != WXK_F6) return false;
    const bool fromPanels = panels_->IsDescendant(FindFocus());
    if (fromPanels != held.shift) return false;
    takeFocus(!fromPanels);
    return true;
}

bool TEditForm::menuByKey(int code, Modifiers held) {
    if (code != WXK_WINDOWS_MENU && (code != WXK_F10 || !held.shift)) return false;
    const TBBShape* shape = document_->selectedAnnotation();
    const Rect place = shape == nullptr ? Rect{} : view_.toView(shape->handleRect().normalized());
    popUpShapeMenu(shape == nullptr ? viewCentre() : Point{place.right, place.bottom});
    return true;
}

/// Copy, cut, paste, and the list of numbers: what is the window's to do.
bool TEditForm::clipboardByKey(Key key, Modifiers held) {
    if (key == Key::Backspace && held == Modifiers{false, false, true}) {
        if (!document_->annotations().empty()) mnuNumberSetClick();
        return true;
    }
    if (held != Modifiers{false, true, false}) return false;
    if (key == letter('C')) return executeCommand(EditCommand::Copy);
    if (key == letter('X')) return executeCommand(EditCommand::Cut);
    return key == letter('V') && executeCommand(EditCommand::Paste);
}

/// What the controller has no use for: Tab, with no annotation to go to, leaves the canvas; arrows scroll.
bool TEditForm::leaveOrScrollByKey(Key key, Modifiers held) {
    if (key == Key::Tab && !held.ctrl && !held.alt)
        return scrollBox_->Navigate(held.shift ? wxNavigationKeyEvent::IsBackward : wxNavigationKeyEvent::IsForward);
    const std::optional<Point> way = KeyMoves::way(key, {});
    if (!way) return false;
    const Point from = view_.scroll();
    scrollTo({from.x + way->x * CanvasView::scrollIncrement, from.y + way->y * CanvasView::scrollIncrement});
    return true;
}

bool TEditForm::FormKeyDown(wxKeyEvent& event) {
    const wxWindow* focus = FindFocus();
    if (labelEditor_->owns(focus)) return keyInLabel(event);
    const Modifiers held{event.ShiftDown(), event.ControlDown(), event.AltDown()};
    const int code = event.GetKeyCode();
    if (zoomByKey(code, held) || focusByKey(code, held) || menuByKey(code, held)) return true;
    const bool onCanvas = focus == nullptr || focus == pbScreen_ || focus == scrollBox_ || focus == this;
    if (onCanvas && scrollByKey(code, held)) return true;
    const std::optional<Key> key = keyOf(code);
    if (!key || (!onCanvas && !passes(*key, held, focus))) return false;
    if (clipboardByKey(*key, held) || controller_->key(*key, held)) return true;
    return onCanvas && leaveOrScrollByKey(*key, held);
}

}  // namespace glimmer
