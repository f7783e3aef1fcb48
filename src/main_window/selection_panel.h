#pragma once

#include <wx/panel.h>

#include <functional>
#include <string_view>

namespace glimmer {

/// The clickable texts below the capture list, in three rows: "Select:", "Delete:", "Then:". The window's first picture
/// need not wait for them: they are made by fill().
class SelectionPanel : public wxPanel {
public:
    /// `clicked` gets the control's name, for example "lblSelectAll". Hidden until it is filled.
    SelectionPanel(wxWindow* parent, std::function<void(std::string_view)> clicked);
    /// Makes the texts, the first time. False when they are there already.
    bool fill();
    void enableAll(bool enable);

private:
    void click(std::string_view control);
    void takeColours();

    std::function<void(std::string_view)> clicked_;
};

}  // namespace glimmer
