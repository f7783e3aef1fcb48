// Pickers and menus: what swatches, labels and the menu's dialogs change.

#include <wx/menu.h>
#include <wx/weakref.h>

#include <map>

#include "common/assertion.h"
#include "editor/annotations/style_store.h"
#include "editor/window/colour_picker.h"
#include "editor/window/list_pickers.h"
#include "editor/window/property_panels.h"
#include "editor/window/shape_menu.h"
#include "editor/window/uEditor.h"
#include "settings/options.h"

namespace glimmer {

/// An answer that comes later is for the capture that it was asked for, or for nobody.
template <class Answer>
auto TEditForm::forThisCapture(Answer answer) {
    return [form = wxWeakRef<TEditForm>(this), document = document_, answer = std::move(answer)](const auto& given) {
        if (form && form->document_ == document) answer(given);
    };
}

void TEditForm::pickColour(Colour initial, std::function<void(Colour)> picked) {
    wxWindow* owner = FindWindow("pnlSelectionIcons");
    pickColourAt(owner != nullptr && owner->IsShownOnScreen() ? *owner : *pbScreen_, initial, std::move(picked));
}

void TEditForm::pickColourAt(wxWindow& owner, Colour initial, std::function<void(Colour)> picked) {
    // Beside a small control; in the corner of a large one.
    wxRect at = owner.GetScreenRect();
    if (at.height > FromDIP(60)) at = wxRect(at.GetTopLeft(), wxSize(at.width, FromDIP(24)));
    openColourPicker(this, at, initial, forThisCapture([this, picked = std::move(picked)](Colour colour) {
                         picked(colour);
                         stateChanged();
                         overlayChanged();
                     }));
}

void TEditForm::imgShapeForegroundMouseDown(const std::string& name, wxWindow& swatch) {
    if (name == "imgInkColor") {
        pickColourAt(swatch, controller_->inkColour, [this](Colour colour) {
            controller_->inkColour = colour;
            OptionsHolder().setNumber("clrPenColor", static_cast<int32_t>(colour));
        });
        return;
    }
    using Field = Colour& (*)(TShapeStyle&);
    static const std::map<std::string, Field> fields = {
        {"imgShapeForeground", [](TShapeStyle& s) -> Colour& { return s.shape.shapeColour; }},
        {"imgShapeFrame", [](TShapeStyle& s) -> Colour& { return s.shape.frameColour; }},
        {"imgFontColor", [](TShapeStyle& s) -> Colour& { return s.text.textColour; }},
        {"imgFontBackgroundColor", [](TShapeStyle& s) -> Colour& { return s.text.backgroundColour; }},
        {"imgFontFrameColor", [](TShapeStyle& s) -> Colour& { return s.text.frameColour; }},
        {"imgLineColor", [](TShapeStyle& s) -> Colour& { return s.line.lineColour; }},
        {"imgLineFrameColor", [](TShapeStyle& s) -> Colour& { return s.line.frameColour; }},
    };
    const auto found = fields.find(name);
    GLIMMER_ASSERT(found != fields.end(), "1 == 2", "uEditor");
    const Field field = found->second;
    TShapeStyle now = controller_->shownSettings();
    pickColourAt(swatch, field(now), [this, field](Colour colour) {
        controller_->changeSettings([&](TShapeStyle& style) { field(style) = colour; });
    });
}

void TEditForm::lblStyleClick() {
    panels_->fill();
    wxWindow* owner = panels_->FindWindow("pnlStyle");
    const bool withVisibility = OptionsHolder().on("chkRememberVisibility");
    StyleActions actions;
    actions.picked = forThisCapture(
        [this, withVisibility](const TShapeStyle& style) { controller_->applyStyle(style, withVisibility); });
    actions.current = [this] { return controller_->shownSettings(); };
    openStylePicker(this, owner->GetScreenRect(), controller_->shownSettings().name, std::move(actions));
}

void TEditForm::lblFontNameClick() {
    panels_->fill();
    openFontPicker(this, panels_->FindWindow("lblFontName")->GetScreenRect(),
                   controller_->shownSettings().text.fontName, forThisCapture([this](const std::string& face) {
                       controller_->changeSettings([&](TShapeStyle& style) { style.text.fontName = face; });
                   }));
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
