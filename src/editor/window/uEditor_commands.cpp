// Menus, pickers and the list dialog, and the commands that are not the controller's.

#include <wx/menu.h>
#include <wx/weakref.h>

#include "editor/window/colour_picker.h"
#include "editor/window/list_pickers.h"
#include "editor/window/shape_menu.h"
#include "editor/window/uEditor.h"

namespace glimmer {

std::function<bool()> TEditForm::stillShown() {
    return [form = wxWeakRef<TEditForm>(this), shown = document_] { return form && form->document_ == shown; };
}

void TEditForm::pickColour(Colour initial, std::function<void(Colour)> picked) {
    wxWindow* owner = FindWindow("pnlSelectionIcons");
    pickColourAt(owner != nullptr && owner->IsShownOnScreen() ? *owner : *pbScreen_, initial, std::move(picked));
}

void TEditForm::pickColourAt(wxWindow& owner, Colour initial, std::function<void(Colour)> picked) {
    // Beside a small control; in the corner of a large one.
    wxRect at = owner.GetScreenRect();
    if (at.height > FromDIP(60)) at = wxRect(at.GetTopLeft(), wxSize(at.width, FromDIP(24)));
    openColourPicker(this, at, initial, [shown = stillShown(), picked = std::move(picked)](Colour colour) {
        if (shown()) picked(colour);
    });
}

void TEditForm::mnuNumberSetClick() {
    if (document_->annotations().empty()) return;
    finishEditing();
    const Waiting here(*this);
    const auto numbers = askForNumbers(wxGetTopLevelParent(this), document_->annotations(), document_->selectedId());
    if (!numbers.empty()) controller_->setNumbers(numbers);
    pbScreen_->SetFocus();
}

std::unique_ptr<wxMenu> TEditForm::makeShapeMenu() { return glimmer::makeShapeMenu(*this); }

bool TEditForm::executeCommand(EditCommand command) {
    switch (command) {
        case EditCommand::Copy:
            return copyOrCut(false);
        case EditCommand::Cut:
            return copyOrCut(true);
        case EditCommand::Paste:
            return paste();
        default:
            return controller_->execute(command);
    }
}

}  // namespace glimmer
