#include "settings/hot_key_control.h"

#include <wx/menu.h>
#include <wx/msw/private.h>
#include <wx/utils.h>

#include "common/boundary.h"
#include "settings/hot_key.h"

namespace glimmer {

namespace {

bool held(int key) { return (GetKeyState(key) & 0x8000) != 0; }

int32_t heldModifiers() {
    return (held(VK_SHIFT) ? hotKeyShift : 0) | (held(VK_CONTROL) ? hotKeyCtrl : 0) | (held(VK_MENU) ? hotKeyAlt : 0);
}

bool isModifier(uint32_t key) {
    return key == VK_SHIFT || key == VK_CONTROL || key == VK_MENU || key == VK_LWIN || key == VK_RWIN ||
           (key >= VK_LSHIFT && key <= VK_RMENU);
}

}  // namespace

THotKey::THotKey(wxWindow* parent, wxWindowID id, int32_t hotKey)
    : wxTextCtrl(parent, id, wxString(), wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER) {
    setHotKey(hotKey);
}

void THotKey::setHotKey(int32_t hotKey) {
    hotKey_ = hotKeyCode(hotKey) == 0 ? 0 : hotKey & (0xFF | hotKeyShift | hotKeyCtrl | hotKeyAlt);
    ChangeValue(wxString::FromUTF8(hotKeyText(hotKey_)));
    SetInsertionPointEnd();
}

void THotKey::take(int32_t hotKey) {
    const bool changed = hotKey != hotKey_;
    setHotKey(hotKey);
    if (!changed) return;
    wxCommandEvent event(wxEVT_TEXT, GetId());
    event.SetEventObject(this);
    event.SetString(GetValue());
    ProcessWindowEvent(event);
}

void THotKey::showHeldModifiers() {
    const int32_t modifiers = heldModifiers();
    if (modifiers == 0) {
        setHotKey(hotKey_);
        return;
    }
    std::string text = hotKeyText(modifiers | 'A');
    text.pop_back();
    ChangeValue(wxString::FromUTF8(text));
    SetInsertionPointEnd();
}

bool THotKey::keyDown(uint32_t key) {
    const int32_t modifiers = heldModifiers();
    if (isModifier(key)) {
        showHeldModifiers();
        return true;
    }
    // Alone these keys work in the dialog as everywhere.
    if ((key == VK_TAB && (modifiers & ~hotKeyShift) == 0) ||
        (modifiers == 0 && (key == VK_ESCAPE || key == VK_RETURN)))
        return false;
    const bool clears = modifiers == 0 && (key == VK_BACK || key == VK_DELETE);
    const int32_t pressed = modifiers | static_cast<int32_t>(key & 0xFFU);
    if (clears || mayBeGlobal(pressed)) {
        take(clears ? 0 : pressed);
    } else {
        wxBell();
    }
    return true;
}

bool THotKey::keyUp(uint32_t key) {
    if (key == VK_SNAPSHOT) return keyDown(key);  // this key is only ever reported when it is released
    if (isModifier(key)) showHeldModifiers();
    return true;
}

void THotKey::offerPrintScreen() {
    constexpr int32_t keys[] = {VK_SNAPSHOT, hotKeyShift | VK_SNAPSHOT, hotKeyCtrl | VK_SNAPSHOT,
                                hotKeyCtrl | hotKeyShift | VK_SNAPSHOT, 0};
    wxMenu menu;
    for (const int32_t key : keys) {
        if (key == 0) menu.AppendSeparator();
        menu.Append(1 + key, wxString::FromUTF8(hotKeyText(key)));
    }
    const int chosen = GetPopupMenuSelectionFromUser(menu);
    if (chosen != wxID_NONE) take(chosen - 1);
}

bool THotKey::MSWShouldPreProcessMessage(WXMSG* message) {
    // No accelerator and no access key of the form takes a combination from this box, the dialog's own keys excepted.
    if (message->message == WM_SYSCHAR) return false;
    const auto key = static_cast<uint32_t>(message->wParam);
    const bool isKey = message->message == WM_KEYDOWN || message->message == WM_SYSKEYDOWN;
    const int32_t modifiers = heldModifiers();
    const bool dialogs = (key == VK_TAB && (modifiers & ~hotKeyShift) == 0) ||
                         (modifiers == 0 && (key == VK_ESCAPE || key == VK_RETURN));
    if (isKey && !dialogs) return false;
    return wxTextCtrl::MSWShouldPreProcessMessage(message);
}

WXLRESULT THotKey::MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
    const auto key = static_cast<uint32_t>(wParam);
    switch (message) {
        case WM_KEYDOWN:
        case WM_SYSKEYDOWN:
            if (guarded(true, [=, this] { return keyDown(key); })) return 0;
            break;
        case WM_KEYUP:
        case WM_SYSKEYUP:
            if (guarded(true, [=, this] { return keyUp(key); })) return 0;
            break;
        case WM_CHAR:
        case WM_SYSCHAR:
        case WM_PASTE:
        case WM_CUT:
        case WM_CLEAR:
            return 0;
        case WM_CONTEXTMENU:
            offerPrintScreen();
            return 0;
        default:
            break;
    }
    return wxTextCtrl::MSWWindowProc(message, wParam, lParam);
}

}  // namespace glimmer
