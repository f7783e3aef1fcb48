#include "support/windows/forms.h"

#include <wx/app.h>
#include <wx/dialog.h>
#include <wx/evtloop.h>
#include <wx/modalhook.h>
#include <wx/msw/wrapwin.h>
#include <wx/toplevel.h>

#include <chrono>

#include "common/text.h"
#include "settings/hot_key.h"
#include "support/windows/own_keys.h"

namespace glimmer::test {

namespace {

LPARAM pointParam(int x, int y) { return MAKELPARAM(x, y); }

struct ButtonMessages {
    UINT press;
    UINT release;
    WPARAM held;
};

ButtonMessages messagesOf(MouseButton button) {
    switch (button) {
        case MouseButton::Right:
            return {WM_RBUTTONDOWN, WM_RBUTTONUP, MK_RBUTTON};
        case MouseButton::Middle:
            return {WM_MBUTTONDOWN, WM_MBUTTONUP, MK_MBUTTON};
        default:
            return {WM_LBUTTONDOWN, WM_LBUTTONUP, MK_LBUTTON};
    }
}

WPARAM pressedButtons = 0;

INPUT keyInput(WORD key, WORD unicode, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = unicode;
    input.ki.dwFlags = flags;
    return input;
}

/// Sends the input and waits until it has come through the queue: a marker message follows it.
void send(std::vector<INPUT> inputs) {
    sendToOurWindows(std::move(inputs));
    // Input has a queue of its own that is read after posted messages, so an empty one of both is the sign.
    pumpUntil([] { return (GetQueueStatus(QS_INPUT) >> 16U) == 0; }, "the keyboard input");
    pump();
}

}  // namespace

void pump() {
    wxEventLoopBase* loop = wxEventLoopBase::GetActive();
    while (loop->Pending()) loop->Dispatch();
    loop->ProcessIdle();
    wxTheApp->ProcessPendingEvents();
}

bool pumpUntil(const std::function<bool()>& condition, const char* what, unsigned limitMilliseconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(limitMilliseconds);
    for (;;) {
        pump();
        if (condition()) return true;
        if (std::chrono::steady_clock::now() > end) {
            ADD_FAILURE() << what << " did not come";
            return false;
        }
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 5, QS_ALLINPUT);
    }
}

wxWindow* findControl(wxWindow& form, const std::string& name) {
    wxWindow* window = form.FindWindow(wxString::FromUTF8(name));
    if (window == nullptr) ADD_FAILURE() << "there is no " << name;
    return window;
}

void click(wxWindow& control) {
    wchar_t name[32] = {};
    GetClassNameW(control.GetHWND(), name, 32);
    if (lstrcmpiW(name, L"Button") == 0) {
        SendMessageW(control.GetHWND(), BM_CLICK, 0, 0);
    } else {
        const wxSize size = control.GetClientSize();
        mousePress(control, size.x / 2, size.y / 2);
        mouseRelease(control, size.x / 2, size.y / 2);
    }
    pump();
}

void mousePress(wxWindow& window, int x, int y, MouseButton button) {
    const ButtonMessages messages = messagesOf(button);
    pressedButtons |= messages.held;
    SendMessageW(window.GetHWND(), messages.press, pressedButtons, pointParam(x, y));
}

void mouseMove(wxWindow& window, int x, int y) {
    SendMessageW(window.GetHWND(), WM_MOUSEMOVE, pressedButtons, pointParam(x, y));
}

void mouseRelease(wxWindow& window, int x, int y, MouseButton button) {
    const ButtonMessages messages = messagesOf(button);
    pressedButtons &= ~messages.held;
    SendMessageW(window.GetHWND(), messages.release, pressedButtons, pointParam(x, y));
}

void mouseDrag(wxWindow& window, int fromX, int fromY, int toX, int toY, MouseButton button) {
    constexpr int steps = 8;
    mousePress(window, fromX, fromY, button);
    for (int i = 1; i <= steps; ++i)
        mouseMove(window, fromX + (toX - fromX) * i / steps, fromY + (toY - fromY) * i / steps);
    mouseRelease(window, toX, toY, button);
    pump();
}

void pressKey(uint8_t virtualKey, int32_t held) {
    std::vector<INPUT> inputs;
    const std::pair<int32_t, WORD> modifiers[] = {
        {hotKeyShift, VK_SHIFT}, {hotKeyCtrl, VK_CONTROL}, {hotKeyAlt, VK_MENU}};
    for (const auto& [flag, key] : modifiers)
        if ((held & flag) != 0) inputs.push_back(keyInput(key, 0, 0));
    inputs.push_back(keyInput(virtualKey, 0, 0));
    inputs.push_back(keyInput(virtualKey, 0, KEYEVENTF_KEYUP));
    for (const auto& [flag, key] : modifiers)
        if ((held & flag) != 0) inputs.push_back(keyInput(key, 0, KEYEVENTF_KEYUP));
    send(std::move(inputs));
}

void typeText(const std::string& utf8) {
    std::vector<INPUT> inputs;
    for (const char16_t unit : toUtf16(utf8)) {
        inputs.push_back(keyInput(0, unit, KEYEVENTF_UNICODE));
        inputs.push_back(keyInput(0, unit, KEYEVENTF_UNICODE | KEYEVENTF_KEYUP));
    }
    send(std::move(inputs));
}

bool bringForward(wxWindow& form, wxWindow* focus) {
    form.Show();
    form.Raise();
    SetForegroundWindow(form.GetHWND());
    if (focus == nullptr)
        return pumpUntil([&form] { return GetForegroundWindow() == form.GetHWND(); }, "the foreground");
    focus->SetFocus();
    return pumpUntil([&] { return GetForegroundWindow() == form.GetHWND() && wxWindow::FindFocus() == focus; },
                     "the focus");
}

class NextModal::Hook : public wxModalDialogHook {
public:
    explicit Hook(std::function<void(wxDialog&)> action) : action_(std::move(action)) { Register(); }
    ~Hook() override { Unregister(); }
    [[nodiscard]] bool came() const { return came_; }

protected:
    int Enter(wxDialog* dialog) override {
        if (!came_) {
            came_ = true;
            dialog->CallAfter([action = action_, dialog] { action(*dialog); });
        }
        return wxID_NONE;
    }

private:
    std::function<void(wxDialog&)> action_;
    bool came_ = false;
};

NextModal::NextModal(std::function<void(wxDialog&)> action) : hook_(std::make_unique<Hook>(std::move(action))) {}

NextModal::~NextModal() { EXPECT_TRUE(hook_->came()) << "no dialog came"; }

bool NextModal::came() const { return hook_->came(); }

}  // namespace glimmer::test
