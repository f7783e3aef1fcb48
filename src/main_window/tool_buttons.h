#pragma once

#include <wx/string.h>

#include "editor/canvas/edit_tool.h"

namespace glimmer {

class CaptureDocument;
class TEditForm;
class TMainToolbar;
struct MainCommand;

/// The buttons of the editing tools in the main tool bar: the one of the canvas's tool is the pressed one.
class ToolButtons {
public:
    /// `shapeTool`: what the shape button's menu chose last.
    ToolButtons(TMainToolbar& bar, EditTool& shapeTool);

    /// Gives the shape button its menu. The bar is filled.
    void addShapeMenu();
    /// Follows the canvas; without one no button is pressed.
    void follow(const TEditForm* canvas);
    /// The hint of the tool in hand, without its key.
    [[nodiscard]] wxString hint() const;

private:
    void markShapeTool(EditTool tool);

    TMainToolbar& bar_;
    EditTool& shapeTool_;
    const MainCommand* inHand_;
};

}  // namespace glimmer
