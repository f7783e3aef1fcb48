#include "editor/window/shape_menu.h"

#include <functional>

#include "editor/window/editing_form.h"
#include "editor/window/shape_captions.h"

namespace glimmer {

namespace {

/// Fills menus whose items act by a function each.
class Builder {
public:
    explicit Builder(EditingForm& form) : form_(form) {}

    wxMenuItem* item(wxMenu& menu, const wxString& text, std::function<void()> act, bool enabled = true) {
        wxMenuItem* made = menu.Append(wxID_ANY, text);
        made->Enable(enabled);
        menu.Bind(
            wxEVT_MENU, [act = std::move(act)](wxCommandEvent&) { act(); }, made->GetId());
        return made;
    }

    void command(wxMenu& menu, const wxString& text, EditCommand what) {
        EditingForm& form = form_;
        item(
            menu, text, [&form, what] { form.executeCommand(what); }, form.canExecute(what));
    }

    /// A marked or unmarked choice that changes a setting.
    void choice(wxMenu& menu, const wxString& text, bool marked, std::function<void(TShapeStyle&)> change) {
        EditingForm& form = form_;
        wxMenuItem* made = menu.AppendCheckItem(wxID_ANY, text);
        made->Check(marked);
        menu.Bind(
            wxEVT_MENU,
            [&form, change = std::move(change)](wxCommandEvent&) { form.controller().changeSettings(change); },
            made->GetId());
    }

private:
    EditingForm& form_;
};

wxMenu* lineEndMenu(Builder& builder, bool front, LineEnd now) {
    auto* menu = new wxMenu;
    int tag = 0;
    for (const LineEndCaption& each : lineEnds) {
        const auto end = static_cast<LineEnd>(++tag);
        builder.choice(*menu, each.caption, now == end,
                       [front, end](TShapeStyle& style) { (front ? style.line.front : style.line.back) = end; });
    }
    return menu;
}

wxMenu* shapeMenu(EditingForm& form, Builder& builder, const TShapeStyle& now) {
    auto* menu = new wxMenu;
    builder.choice(*menu, "Show", now.shape.visible,
                   [shown = now.shape.visible](TShapeStyle& style) { style.shape.visible = !shown; });
    auto* kind = new wxMenu;
    int tag = 0;
    for (const ShapeKindCaption& each : shapeKinds) {
        const auto value = static_cast<ShapeKind>(++tag);
        wxMenuItem* made = kind->AppendCheckItem(wxID_ANY, each.caption);
        made->Check(now.shape.kind == value);
        kind->Bind(
            wxEVT_MENU, [&form, value](wxCommandEvent&) { form.controller().changeKind(value); }, made->GetId());
    }
    menu->AppendSubMenu(kind, "Kind");
    return menu;
}

wxMenu* textMenu(Builder& builder, const TShapeStyle& now) {
    auto* menu = new wxMenu;
    builder.choice(*menu, "Show", now.text.visible,
                   [shown = now.text.visible](TShapeStyle& style) { style.text.visible = !shown; });
    struct Side {
        const char* caption;
        const char* places[3];
    };
    // "Midlle" is the text's own spelling.
    static constexpr Side sides[] = {{"Above", {"Left", "Middle", "Right"}},
                                     {"Below", {"Left", "Middle", "Right"}},
                                     {"Left", {"Top", "Midlle", "Bottom"}},
                                     {"Right", {"Top", "Middle", "Bottom"}}};
    auto* position = new wxMenu;
    int32_t tag = 0;
    for (const Side& side : sides) {
        auto* places = new wxMenu;
        for (const char* place : side.places) {
            ++tag;
            builder.choice(*places, place, now.text.position == tag,
                           [tag](TShapeStyle& style) { style.text.position = tag; });
        }
        position->AppendSubMenu(places, side.caption);
    }
    menu->AppendSubMenu(position, "Position");
    return menu;
}

wxMenu* lineMenu(Builder& builder, const TShapeStyle& now) {
    auto* menu = new wxMenu;
    builder.choice(*menu, "Show", now.line.visible,
                   [shown = now.line.visible](TShapeStyle& style) { style.line.visible = !shown; });
    menu->AppendSubMenu(lineEndMenu(builder, true, now.line.front), "Front shape");
    menu->AppendSubMenu(lineEndMenu(builder, false, now.line.back), "Back shape");
    return menu;
}

wxMenu* numberMenu(EditingForm& form, Builder& builder, const TShapeStyle& now) {
    auto* menu = new wxMenu;
    builder.choice(*menu, "Show", now.number.visible,
                   [shown = now.number.visible](TShapeStyle& style) { style.number.visible = !shown; });
    builder.item(
        *menu, "Reorder...", [&form] { form.mnuNumberSetClick(); }, !form.document().annotations().empty());
    const auto place = [&](wxMenu& to, const char* caption, int tag) {
        const auto value = static_cast<NumberPosition>(tag);
        builder.choice(to, caption, now.number.position == value,
                       [value](TShapeStyle& style) { style.number.position = value; });
    };
    auto* position = new wxMenu;
    auto* outside = new wxMenu;
    place(*outside, "Top Left", 1);
    position->AppendSubMenu(outside, "Outside");
    auto* inside = new wxMenu;
    place(*inside, "Top Left", 2);
    place(*inside, "Centre", 3);
    place(*inside, "Bottom Right", 4);
    position->AppendSubMenu(inside, "Inside");
    menu->AppendSubMenu(position, "Position");
    return menu;
}

}  // namespace

std::unique_ptr<wxMenu> makeShapeMenu(EditingForm& form) {
    auto menu = std::make_unique<wxMenu>();
    Builder builder(form);
    builder.command(*menu, "Add annotation\tIns", EditCommand::AddAnnotation);
    builder.command(*menu, "Delete annotation\tDel", EditCommand::DeleteAnnotation);
    builder.item(
        *menu, "Renumber...\tAlt+Backspace", [&form] { form.mnuNumberSetClick(); },
        form.controller().canExecute(EditCommand::Renumber));
    menu->AppendSeparator();
    builder.command(*menu, "Copy\tCtrl+C", EditCommand::Copy);
    builder.command(*menu, "Cut\tCtrl+X", EditCommand::Cut);
    builder.command(*menu, "Paste\tCtrl+V", EditCommand::Paste);
    menu->AppendSeparator();
    builder.command(*menu, "Bring to Front\tCtrl+Alt+Up", EditCommand::BringToFront);
    builder.command(*menu, "Send to Back\tCtrl+Alt+Down", EditCommand::SendToBack);
    menu->AppendSeparator();
    const TShapeStyle now = form.controller().shownSettings();
    menu->AppendSubMenu(shapeMenu(form, builder, now), "Shape");
    menu->AppendSubMenu(textMenu(builder, now), "Text");
    menu->AppendSubMenu(lineMenu(builder, now), "Line");
    menu->AppendSubMenu(numberMenu(form, builder, now), "Number");
    return menu;
}

}  // namespace glimmer
