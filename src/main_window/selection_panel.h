#pragma once

#include <wx/panel.h>

#include <functional>
#include <variant>

#include "main_window/list_commands.h"

namespace glimmer {

/// The clickable texts below the capture list, in three rows: "Select:", "Delete:", "Then:". The window's first picture
/// need not wait for them: they are made by fill().
class SelectionPanel : public wxPanel {
public:
    /// What a text does: something with the list, or an output command with the captures that are selected in it.
    using Action = std::variant<ListAction, OutputCommand>;
    /// Hidden until it is filled.
    SelectionPanel(wxWindow* parent, std::function<void(const Action&)> clicked);
    /// Makes the texts, the first time. False when they are there already.
    bool fill();
    void enableAll(bool enable);

private:
    void click(const Action& action);
    void takeColours();

    std::function<void(const Action&)> clicked_;
};

}  // namespace glimmer
