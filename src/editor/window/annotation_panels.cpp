#include "editor/window/annotation_panels.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/menu.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include <memory>

#include "common/accessible_name.h"
#include "editor/annotations/style_store.h"
#include "editor/window/editing_form.h"
#include "editor/window/list_pickers.h"
#include "editor/window/panel_controls.h"
#include "editor/window/shape_captions.h"
#include "settings/options.h"

namespace glimmer {

AnnotationPanels::AnnotationPanels(EditingForm& form, wxWindow* parent)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlAnnotation"), form_(form) {
    auto* groups = new wxBoxSizer(wxVERTICAL);
    for (wxPanel* panel : {makeStyle(), makeShape(), makeText(), makeLine(), makeNumber(), makeDelete()})
        groups->Add(panel, 0, wxEXPAND | wxBOTTOM, FromDIP(panelGap + 4));
    SetSizer(groups);
}

void AnnotationPanels::change(const std::function<void(TShapeStyle&)>& setting) {
    form_.controller().changeSettings(setting);
}

wxCheckBox* AnnotationPanels::showBox(wxWindow* parent, const char* name, const wxString& caption, Part part) {
    auto* box =
        new wxCheckBox(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator, name);
    box->SetFont(box->GetFont().Bold());
    const int tag = static_cast<int>(part) + 1;
    box->SetToolTip(tipText(wxString::Format("Toggles %s Visibility\rHotkey: \"%d\"", caption, tag)));
    box->Bind(wxEVT_CHECKBOX, [this, part](wxCommandEvent&) { chkShowObjectClick(part); });
    shows_[static_cast<size_t>(part)] = box;
    return box;
}

void AnnotationPanels::chkShowObjectClick(Part part) {
    form_.controller().showPart(part, shows_[static_cast<size_t>(part)]->GetValue());
}

wxSizer* AnnotationPanels::swatches(wxWindow* parent,
                                    std::initializer_list<std::tuple<const char*, const char*, ColourOf>> named) {
    auto* grid = new wxFlexGridSizer(static_cast<int>(named.size()), FromDIP(2), FromDIP(8));
    for (const auto& [name, caption, colourOf] : named) {
        const ColourOf field = colourOf;
        const auto now = [this, field] {
            TShapeStyle style = form_.controller().shownSettings();
            return field(style);
        };
        const auto apply = [this, field](Colour colour) { change([&](TShapeStyle& style) { field(style) = colour; }); };
        ColourSwatch* swatch = makeSwatch(form_, parent, name, caption, now, apply);
        swatches_.emplace_back(swatch, field);
        grid->Add(underCaption(swatch, caption));
    }
    return grid;
}

wxSlider* AnnotationPanels::slider(wxWindow* parent, const char* name, int low, int high, const wxString& hint,
                                   std::function<void(TShapeStyle&, int)> set) {
    auto* made = new wxSlider(parent, wxID_ANY, low, low, high, wxDefaultPosition, wxDefaultSize,
                              wxSL_HORIZONTAL | wxSL_AUTOTICKS, wxDefaultValidator, name);
    made->SetToolTip(hint);
    // One pull of the thumb is one step of the history, each other change (a key, the wheel, a click beside the thumb)
    // one of its own. The toolkit tells of a new value after it has told what was done with the thumb.
    const auto apply = [this, made, set = std::move(set)] {
        const int value = made->GetValue();
        form_.controller().changeSettings([&](TShapeStyle& style) { set(style, value); }, slide_);
    };
    made->Bind(wxEVT_SLIDER, [apply](wxCommandEvent&) { apply(); });
    made->Bind(wxEVT_SCROLL_THUMBTRACK, [this](wxScrollEvent& event) {
        if (!slide_.underWay()) slide_ = form_.document().beginGesture();
        event.Skip();
    });
    const auto ended = [this, apply](wxScrollEvent& event) {
        apply();
        slide_.end();
        event.Skip();
    };
    made->Bind(wxEVT_SCROLL_THUMBRELEASE, ended);
    made->Bind(wxEVT_SCROLL_CHANGED, ended);
    return made;
}

// --- style

wxPanel* AnnotationPanels::makeStyle() {
    wxPanel* panel = makePanel(this, "pnlStyle", "Style");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(panel, wxID_ANY, "Style:"), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(panelGap));
    lblStyle_ = makeLink(panel, "lblStyle", "No style", [this] { lblStyleClick(); });
    row->Add(lblStyle_, 1, wxALIGN_CENTRE_VERTICAL);
    row->Add(makeButton(panel, "tbtnStyle", "drop-down", "Choose Style", [this] { lblStyleClick(); }), 0,
             wxALIGN_CENTRE_VERTICAL);
    panel->GetSizer()->Add(row, 0, wxEXPAND);
    return panel;
}

void AnnotationPanels::lblStyleClick() {
    CanvasController& controller = form_.controller();
    StyleActions actions;
    actions.picked = [&controller, shown = form_.stillShown(),
                      withVisibility = OptionsHolder().on("chkRememberVisibility")](const TShapeStyle& style) {
        if (shown()) controller.applyStyle(style, withVisibility);
    };
    actions.current = [&controller] { return controller.shownSettings(); };
    openStylePicker(&form_.window(), lblStyle_->GetParent()->GetScreenRect(), controller.shownSettings().name,
                    std::move(actions));
}

// --- shape

wxPanel* AnnotationPanels::makeShape() {
    wxPanel* panel = makePanel(this, "pnlRectShape", "Shape", 1);
    panel->GetSizer()->Add(showBox(panel, "chkShowShape", "Shape", Part::Shape));
    auto* tbQuickShapes = new wxPanel(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbQuickShapes");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    int tag = 0;
    for (const ShapeKindCaption& kind : shapeKinds) {
        const auto value = static_cast<ShapeKind>(++tag);
        kinds_.push_back(makeButton(
            tbQuickShapes, kind.button, kind.icon, kind.caption,
            [this, value] { form_.controller().changeKind(value); }, ToolButton::Kind::Radio, tag));
        row->Add(kinds_.back());
    }
    tbQuickShapes->SetSizer(row);
    panel->GetSizer()->Add(tbQuickShapes, 0, wxTOP, FromDIP(panelGap / 2));
    panel->GetSizer()->Add(
        swatches(panel, {{"imgShapeForeground", "Fill", [](TShapeStyle& s) -> Colour& { return s.shape.shapeColour; }},
                         {"imgShapeFrame", "Frame", [](TShapeStyle& s) -> Colour& { return s.shape.frameColour; }}}),
        0, wxTOP, FromDIP(panelGap));
    spnShapeOpacity_ = slider(panel, "spnShapeOpacity", minOpacity, maxOpacity, "Shape opacity",
                              [](TShapeStyle& style, int value) { style.shape.opacity = value; });
    spnShapeOpacity_->SetPageSize(10);
    spnShapeOpacity_->SetLineSize(10);
    spnShapeOpacity_->SetTickFreq(10);
    panel->GetSizer()->Add(captioned(panel, "Opacity", spnShapeOpacity_), 0, wxEXPAND | wxTOP, FromDIP(panelGap / 2));
    return panel;
}

// --- text

wxPanel* AnnotationPanels::makeText() {
    wxPanel* panel = makePanel(this, "pnlTextShape", "Text", 2);
    wxSizer* all = panel->GetSizer();
    all->Add(showBox(panel, "chkShowText", "Text", Part::Text));
    all->Add(
        swatches(panel,
                 {{"imgFontColor", "Text", [](TShapeStyle& s) -> Colour& { return s.text.textColour; }},
                  {"imgFontBackgroundColor", "Back", [](TShapeStyle& s) -> Colour& { return s.text.backgroundColour; }},
                  {"imgFontFrameColor", "Frame", [](TShapeStyle& s) -> Colour& { return s.text.frameColour; }}}),
        0, wxTOP, FromDIP(panelGap));
    all->Add(makeFont(panel), 0, wxEXPAND | wxTOP, FromDIP(panelGap / 2));
    all->Add(makeLooks(panel), 0, wxEXPAND | wxTOP, FromDIP(panelGap / 2));
    return panel;
}

wxSizer* AnnotationPanels::makeFont(wxWindow* panel) {
    auto* font = new wxBoxSizer(wxHORIZONTAL);
    lblFontName_ = makeLink(panel, "lblFontName", "Arial", [this] { lblFontNameClick(); });
    lblFontName_->SetToolTip("Font name");
    font->Add(lblFontName_, 1, wxALIGN_CENTRE_VERTICAL);
    font->Add(makeButton(panel, "tbtnFontName", "drop-down", "Choose Font", [this] { lblFontNameClick(); }), 0,
              wxALIGN_CENTRE_VERTICAL);
    cmbFontSize_ = makeNumberChoice(panel, "cmbFontSize", "Font size", fontSizes, [this](int32_t size) {
        change([size](TShapeStyle& style) { style.text.fontSize = size; });
    });
    setAccessibleName(*cmbFontSize_, "Font size");
    font->Add(cmbFontSize_, 0, wxALIGN_CENTRE_VERTICAL);
    return font;
}

void AnnotationPanels::lblFontNameClick() {
    openFontPicker(&form_.window(), lblFontName_->GetScreenRect(), form_.controller().shownSettings().text.fontName,
                   [this, shown = form_.stillShown()](const std::string& face) {
                       if (shown()) change([&](TShapeStyle& style) { style.text.fontName = face; });
                   });
}

/// Fill, bold, italic, underline; the alignment.
wxSizer* AnnotationPanels::makeLooks(wxWindow* panel) {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto toggle = [&](const char* name, const char* icon, const char* hint, bool TTextSettings::*field) {
        const size_t at = looks_.size();
        const auto pressed = [this, at, field] {
            const bool down = looks_[at].first->down();
            change([&](TShapeStyle& style) { style.text.*field = down; });
        };
        looks_.emplace_back(makeButton(panel, name, icon, hint, pressed, ToolButton::Kind::Check), field);
        row->Add(looks_.back().first);
    };
    toggle("tbtnFontFill", "text-fill", "Fill background", &TTextSettings::filled);
    toggle("tbtnFontBold", "bold", "Bold", &TTextSettings::bold);
    toggle("tbtnFontItalic", "italic", "Italic", &TTextSettings::italic);
    toggle("tbtnFontUnderline", "underline", "Underline", &TTextSettings::underlined);
    row->AddStretchSpacer();
    auto* align = new wxPanel(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbAlignment");
    auto* alignRow = new wxBoxSizer(wxHORIZONTAL);
    const auto aligned = [&](const char* name, const char* icon, const char* hint, TextAlignment to) {
        const auto pressed = [this, to] { change([to](TShapeStyle& style) { style.text.alignment = to; }); };
        alignments_.push_back(makeButton(align, name, icon, hint, pressed, ToolButton::Kind::Radio));
        alignRow->Add(alignments_.back());
    };
    aligned("tbtnAlignLeft", "align-left", "Align left", TextAlignment::Left);
    aligned("tbtnAlignCenter", "align-centre", "Align center", TextAlignment::Centre);
    aligned("tbtnAlignRight", "align-right", "Align right", TextAlignment::Right);
    align->SetSizer(alignRow);
    row->Add(align);
    return row;
}

// --- line, number, annotation

ToolButton* AnnotationPanels::lineEndButton(wxWindow* parent, bool front) {
    ToolButton*& button = front ? lineFront_ : lineBack_;
    button = makeButton(parent, front ? "tbtnLineLeft" : "tbtnLineRight", "line-end-none",
                        front ? "Front shape" : "Back shape", [&button] { button->popUp(); });
    auto menu = std::make_unique<wxMenu>();
    int tag = 0;
    for (const LineEndCaption& each : lineEnds) {
        const auto end = static_cast<LineEnd>(++tag);
        const int id = menu->AppendRadioItem(wxID_ANY, each.caption)->GetId();
        const auto choose = [this, end, front](wxCommandEvent&) {
            change([&](TShapeStyle& style) { (front ? style.line.front : style.line.back) = end; });
        };
        menu->Bind(wxEVT_MENU, choose, id);
    }
    button->setMenu(std::move(menu));
    return button;
}

wxPanel* AnnotationPanels::makeLine() {
    wxPanel* panel = makePanel(this, "pnlLineShape", "Line", 3);
    panel->GetSizer()->Add(showBox(panel, "chkShowLine", "Line", Part::Line));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(
        swatches(panel, {{"imgLineColor", "Line", [](TShapeStyle& s) -> Colour& { return s.line.lineColour; }},
                         {"imgLineFrameColor", "Frame", [](TShapeStyle& s) -> Colour& { return s.line.frameColour; }}}),
        0, wxALIGN_TOP);
    row->AddStretchSpacer();
    row->Add(lineEndButton(panel, true), 0, wxALIGN_TOP);
    row->Add(lineEndButton(panel, false), 0, wxALIGN_TOP);
    panel->GetSizer()->Add(row, 0, wxEXPAND | wxTOP, FromDIP(panelGap));
    // The hint is the opacity's on purpose.
    spnLineWidth_ = slider(panel, "spnLineWidth", minLineWidth, maxLineWidth, "Shape opacity",
                           [](TShapeStyle& style, int value) { style.line.width = style.shape.frameWidth = value; });
    spnLineWidth_->SetPageSize(1);
    panel->GetSizer()->Add(captioned(panel, "Width", spnLineWidth_), 0, wxEXPAND | wxTOP, FromDIP(panelGap / 2));
    return panel;
}

wxPanel* AnnotationPanels::makeNumber() {
    wxPanel* panel = makePanel(this, "pnlNumber", "Number", 4);
    panel->GetSizer()->Add(showBox(panel, "chkShowNumber", "Number", Part::Number));
    return panel;
}

wxPanel* AnnotationPanels::makeDelete() {
    wxPanel* panel = makePanel(this, "pnlDeleteAnnotation", "Annotation");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto command = [&](const char* name, const char* icon, const char* hint, EditCommand what) {
        ToolButton* button = makeButton(panel, name, icon, hint, [this, what] { form_.executeCommand(what); });
        row->Add(button);
        return button;
    };
    delete_ = command("tbtnDeleteAnnotation", "delete", "Delete annotation (Del)", EditCommand::DeleteAnnotation);
    copies_.push_back(command("tbtnCopyShape", "copy", "Copy (Ctrl+C)", EditCommand::Copy));
    copies_.push_back(command("tbtnCutShape", "cut", "Cut (Ctrl+X)", EditCommand::Cut));
    command("tbtnPasteShape", "paste", "Paste (Ctrl+V)", EditCommand::Paste);
    panel->GetSizer()->Add(row);
    return panel;
}

// --- state

void AnnotationPanels::showState() {
    showSettings(form_.controller().shownSettings());
    const bool selected = form_.document().selectedAnnotation() != nullptr;
    delete_->Enable(selected);
    for (ToolButton* button : copies_) button->Enable(selected || !form_.selectedArea().empty());
}

void AnnotationPanels::showSettings(TShapeStyle settings) {
    const auto setText = [](wxStaticText* label, const wxString& text) {
        if (label->GetLabelText() == text) return;
        label->SetLabelText(text);
        label->SetToolTip(text);
    };
    setText(lblStyle_, settings.name.empty() ? wxString("No style") : wxString::FromUTF8(settings.name));
    setText(lblFontName_, wxString::FromUTF8(settings.text.fontName));
    const bool shown[] = {settings.shape.visible, settings.text.visible, settings.line.visible,
                          settings.number.visible};
    for (size_t part = 0; part < partCount; ++part) shows_[part]->SetValue(shown[part]);
    for (const auto& [swatch, colourOf] : swatches_) swatch->setColour(colourOf(settings));
    if (!slide_.underWay()) {
        spnShapeOpacity_->SetValue(settings.shape.opacity);
        spnLineWidth_->SetValue(settings.line.width);
    }
    kinds_[static_cast<size_t>(settings.shape.kind) - 1]->setDown(true);
    for (const auto& [button, field] : looks_) button->setDown(settings.text.*field);
    alignments_[static_cast<size_t>(settings.text.alignment)]->setDown(true);
    lineFront_->setIcon(lineEnds[static_cast<size_t>(settings.line.front) - 1].icon, 16);
    lineBack_->setIcon(lineEnds[static_cast<size_t>(settings.line.back) - 1].icon, 16);
    const wxString size = wxString::Format("%d", settings.text.fontSize);
    if (cmbFontSize_->GetStringSelection() != size) cmbFontSize_->SetStringSelection(size);
}

}  // namespace glimmer
