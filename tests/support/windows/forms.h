#pragma once

#include <gtest/gtest.h>
#include <wx/window.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "support/not_copied.h"
#include "support/windows/system_objects.h"

class wxDialog;

/// Driving real forms: by the names of their controls and by messages as a mouse and a keyboard cause them.
namespace glimmer::test {

/// Dispatches messages, timers and idle work until the condition holds. Fails the test, and answers false, when it
/// does not within the limit, which only bounds a test that hangs.
bool pumpUntil(const std::function<bool()>& condition, const char* what = "the awaited condition",
               unsigned limitMilliseconds = 20000);
/// Dispatches what is waiting now, with one round of idle work.
void pump();

/// The child, at any depth, of that name; a failed test and null when there is none.
wxWindow* findControl(wxWindow& form, const std::string& name);
template <class Control>
Control* find(wxWindow& form, const std::string& name) {
    wxWindow* window = findControl(form, name);
    auto* control = dynamic_cast<Control*>(window);
    if (window != nullptr && control == nullptr) ADD_FAILURE() << name << " is of another class";
    return control;
}

/// A click as the system makes it: BM_CLICK for a native button, mouse messages in the middle of anything else.
void click(wxWindow& control);
/// Mouse messages at a point of the window's client area, pixels. A drag is a press, moves and a release.
enum class MouseButton : uint8_t { Left, Right, Middle };
void mousePress(wxWindow& window, int x, int y, MouseButton button = MouseButton::Left);
void mouseMove(wxWindow& window, int x, int y);
void mouseRelease(wxWindow& window, int x, int y, MouseButton button = MouseButton::Left);
void mouseDrag(wxWindow& window, int fromX, int fromY, int toX, int toY, MouseButton button = MouseButton::Left);

/// Real keyboard input to the window that has the focus; held keys as for hot_key.h (Shift 0x2000, Ctrl 0x4000, Alt
/// 0x8000). Returns when the input was dispatched.
void pressKey(uint8_t virtualKey, int32_t held = 0);
void typeText(const std::string& utf8);
/// Shows the form, brings it to the foreground and gives it (or one of its controls) the keyboard.
bool bringForward(wxWindow& form, wxWindow* focus = nullptr);

/// Has `action` called once the next modal dialog is up; it must end the dialog. Fails the test when none came.
class NextModal : NotCopied {
public:
    explicit NextModal(std::function<void(wxDialog&)> action);
    ~NextModal();
    [[nodiscard]] bool came() const;

private:
    class Hook;
    std::unique_ptr<Hook> hook_;
};

}  // namespace glimmer::test
