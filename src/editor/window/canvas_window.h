#pragma once

#include <wx/window.h>

#include <functional>

namespace glimmer {

/// wxPanel would steal the focus back from the canvas.
class FocusWindow : public wxWindow {
public:
    FocusWindow(wxWindow* parent, const wxString& name, long style);
};

/// The window that is drawn on (`pbScreen`), as fingers and pens find it. One finger, or the pen, is the mouse from the
/// first moment: nothing waits for a press that may become a long one, no short stroke is taken for a flick. Two
/// fingers move the picture (wxEVT_GESTURE_PAN), and a pinch zooms: the system makes turns of the wheel with Ctrl of
/// it.
class CanvasWindow final : public FocusWindow {
public:
    /// `menuAt`: whether a long press at that point of the window opens a menu, as the right button does; there the
    /// system waits for it.
    CanvasWindow(wxWindow* parent, const wxString& name, long style, std::function<bool(wxPoint)> menuAt);
    /// Tells the system. Costs time, so not before the picture is up.
    void takeFingers();

protected:
    WXLRESULT MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) override;

private:
    std::function<bool(wxPoint)> menuAt_;
};

}  // namespace glimmer
