#include "editor/window/canvas_window.h"

#include <wx/msw/wrapwin.h>
// After windows.h, which they need.
#include <tpcshrd.h>
#include <windowsx.h>

#include <utility>

namespace glimmer {

FocusWindow::FocusWindow(wxWindow* parent, const wxString& name, long style) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, style, name);
}

CanvasWindow::CanvasWindow(wxWindow* parent, const wxString& name, long style, std::function<bool(wxPoint)> menuAt)
    : FocusWindow(parent, name, style), menuAt_(std::move(menuAt)) {}

void CanvasWindow::takeFingers() {
    // Without these blocks one finger would move the picture wherever there are scroll bars.
    GESTURECONFIG pan{};
    pan.dwID = GID_PAN;
    pan.dwWant = GC_PAN | GC_PAN_WITH_INERTIA;
    pan.dwBlock = GC_PAN_WITH_SINGLE_FINGER_VERTICALLY | GC_PAN_WITH_SINGLE_FINGER_HORIZONTALLY | GC_PAN_WITH_GUTTER;
    SetGestureConfig(GetHWND(), 0, 1, &pan, sizeof pan);
}

WXLRESULT CanvasWindow::MSWWindowProc(WXUINT message, WXWPARAM wParam, WXLPARAM lParam) {
    if (message != WM_TABLET_QUERYSYSTEMGESTURESTATUS) return FocusWindow::MSWWindowProc(message, wParam, lParam);
    WXLRESULT without = TABLET_DISABLE_PENTAPFEEDBACK | TABLET_DISABLE_PENBARRELFEEDBACK | TABLET_DISABLE_FLICKS;
    if (!menuAt_(ScreenToClient(wxPoint(GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)))))
        without |= TABLET_DISABLE_PRESSANDHOLD;
    return without;
}

}  // namespace glimmer
