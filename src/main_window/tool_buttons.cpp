#include "main_window/tool_buttons.h"

#include <wx/menu.h>

#include <memory>
#include <utility>

#include "editor/window/uEditor.h"
#include "main_window/main_toolbar.h"
#include "main_window/tool_commands.h"

namespace glimmer {

ToolButtons::ToolButtons(TMainToolbar& bar, EditTool& shapeTool)
    : bar_(bar), shapeTool_(shapeTool), inHand_(&commandOf(EditTool::Pointer)) {}

void ToolButtons::addShapeMenu() {
    static constexpr std::pair<const char*, EditTool> shapes[] = {{"Rectangle", EditTool::TextShapeRectangle},
                                                                  {"Ellipse", EditTool::TextShapeEllipse},
                                                                  {"Polygon", EditTool::TextShapePolygon}};
    auto menu = std::make_unique<wxMenu>();
    ToolButton* button = bar_.button(commandOf(EditTool::TextShapeRectangle));
    for (const auto& [caption, tool] : shapes) {
        wxMenuItem* item = menu->AppendRadioItem(wxID_ANY, caption);
        menu->Bind(
            wxEVT_MENU,
            [this, button, tool = tool](wxCommandEvent&) {
                shapeTool_ = tool;
                button->press();
            },
            item->GetId());
    }
    button->setMenu(std::move(menu));
}

/// The shape button stands for that tool, and its menu says so.
void ToolButtons::markShapeTool(EditTool tool) {
    shapeTool_ = tool;
    const ToolButton* button = bar_.button(*inHand_);
    if (button == nullptr || button->menu() == nullptr) return;
    const int at = static_cast<int>(tool) - static_cast<int>(EditTool::TextShapeRectangle);
    wxMenuItem* item = button->menu()->FindItemByPosition(static_cast<size_t>(at));
    if (item != nullptr && !item->IsChecked()) item->Check();
}

void ToolButtons::follow(const TEditForm* canvas) {
    if (canvas != nullptr) {
        inHand_ = &commandOf(canvas->tool());
        if (isShapeTool(canvas->tool())) markShapeTool(canvas->tool());
    }
    if (ToolButton* button = bar_.button(*inHand_)) button->setDown(canvas != nullptr);
}

wxString ToolButtons::hint() const { return wxString::FromUTF8(inHand_->hint).BeforeFirst('\r'); }

}  // namespace glimmer
