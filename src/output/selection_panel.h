#pragma once

#include <wx/panel.h>

#include <functional>
#include <string_view>

namespace glimmer {

/// The clickable texts below the capture list, in three rows: "Select:", "Delete:", "Then:".
class SelectionPanel : public wxPanel {
public:
    /// `clicked` gets the control's name, for example "lblSelectAll".
    SelectionPanel(wxWindow* parent, std::function<void(std::string_view)> clicked);
    void enableAll(bool enable);
};

}  // namespace glimmer
