#pragma once

#include <wx/string.h>

#include <cstddef>

class wxFrame;
class wxPoint;

namespace glimmer {

class CaptureSession;
class MainWindow;
class TEditForm;

/// The status bar of the main window: what is selected, where the pointer is, the capture's size and its zoom, which a
/// click offers to change.
class StatusLine {
public:
    explicit StatusLine(MainWindow& window) : window_(window) {}

    /// Puts the bar into the frame.
    void make();
    /// For the scale of this moment.
    void setWidths();
    /// `selected`: how many captures are. `toolHint` says what the tool in hand is for. Does nothing before make().
    void show(const CaptureSession& session, size_t selected, const wxString& toolHint);

private:
    void showZoomMenu(const wxPoint& at);

    MainWindow& window_;
};

}  // namespace glimmer
