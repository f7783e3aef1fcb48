#include "editor/window/property_panels.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/menu.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/stattext.h>

#include <span>

#include "common/accessible_name.h"
#include "common/link_colour.h"
#include "common/tool_button.h"
#include "editor/window/colour_swatch.h"
#include "editor/window/uEditor.h"
#include "settings/options.h"

namespace glimmer {

namespace {

constexpr int panelWidth = 216;  // at 96 dots per inch
constexpr int gap = 6;
constexpr int push = 0;
constexpr int check = 1;
constexpr int radio = 2;

struct Kind {
    const char* name;
    const char* icon;
    const char* hint;
};
constexpr Kind kinds[] = {
    {"tbtnShowRectFilled", "kind-rectangle-filled", "Filled rectangle"},
    {"tbtnShowRect", "kind-rectangle", "Rectangle"},
    {"tbtnShowEllipseFilled", "kind-ellipse-filled", "Filled ellipse"},
    {"tbtnShowEllipse", "kind-ellipse", "Ellipse"},
    {"tbtnShowDrawing", "pen", "Drawing"},
};

/// A slider with its caption before it; all sliders begin at the same place.
wxSizer* captioned(wxWindow* panel, const char* caption, wxSlider* slider) {
    auto* label = new wxStaticText(panel, wxID_ANY, caption);
    setAccessibleName(*slider, caption);
    label->SetMinSize({panel->GetTextExtent("Opacity").x + panel->FromDIP(2), -1});
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(label, 0, wxALIGN_CENTRE_VERTICAL);
    row->Add(slider, 1, wxALIGN_CENTRE_VERTICAL);
    return row;
}

constexpr const char* lineEnds[] = {"None", "Arrow", "Bullet"};
constexpr const char* lineEndIcons[] = {"line-end-none", "line-end-arrow", "line-end-bullet"};

/// All at once: a list that grows item by item is measured anew for each.
wxArrayString texts(std::span<const int32_t> numbers) {
    wxArrayString all;
    for (const int32_t number : numbers) all.Add(wxString::Format("%d", number));
    return all;
}

}  // namespace

PropertyPanels::PropertyPanels(TEditForm& form) : form_(form) {
    Hide();  // until it is filled
    Create(&form, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxTAB_TRAVERSAL, "pnlProperties");
    SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE));
    SetScrollRate(0, FromDIP(20));
    SetMinSize({FromDIP(panelWidth), -1});
}

void PropertyPanels::fill() {
    if (annotation_ != nullptr) return;
    annotation_ = new wxPanel(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "pnlAnnotation");
    auto* groups = new wxBoxSizer(wxVERTICAL);
    for (wxPanel* panel : {makeStyle(), makeShape(), makeText(), makeLine(), makeNumber(), makeDelete()})
        groups->Add(panel, 0, wxEXPAND | wxBOTTOM, FromDIP(gap + 4));
    annotation_->SetSizer(groups);
    pnlPens_ = makePens();
    pnlCapturing_ = makeCapturing();
    pnlPens_->Hide();
    pnlCapturing_->Hide();
    auto* all = new wxBoxSizer(wxVERTICAL);
    for (wxPanel* panel : {annotation_, pnlPens_, pnlCapturing_})
        all->Add(panel, 0, wxEXPAND | wxALL, FromDIP(gap + 2));
    // What a screen reader calls them; without that it would be the names of the controls.
    SetLabel("Properties");
    for (wxWindow* group : {static_cast<wxWindow*>(annotation_), FindWindow("tbQuickShapes"), FindWindow("tbAlignment"),
                            FindWindow("tbPens")})
        group->SetLabel("");
    SetSizer(all);
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        for (wxWindow* link : {static_cast<wxWindow*>(lblStyle_), static_cast<wxWindow*>(lblFontName_)})
            link->SetForegroundColour(linkColour());
        event.Skip();
    });
    Layout();
    FitInside();
    showState();
    Show();
}

wxPanel* PropertyPanels::makePanel(const char* name, const char* title, int tag) {
    wxWindow* parent = tag < 0 ? static_cast<wxWindow*>(this) : annotation_;
    auto* panel = new wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, name);
    // NOLINTNEXTLINE(performance-no-int-to-ptr): the panel's tag
    panel->SetClientData(reinterpret_cast<void*>(static_cast<intptr_t>(tag)));
    panel->SetLabel(title);  // a screen reader would say the control's name
    panel->SetSizer(new wxBoxSizer(wxVERTICAL));
    return panel;
}

wxCheckBox* PropertyPanels::showBox(wxWindow* parent, const char* name, const wxString& caption, int tag) {
    auto* box =
        new wxCheckBox(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator, name);
    box->SetFont(box->GetFont().Bold());
    box->SetToolTip(tipText(wxString::Format("Toggles %s Visibility\rHotkey: \"%d\"", caption, tag)));
    box->Bind(wxEVT_CHECKBOX, [this, tag](wxCommandEvent&) { chkShowObjectClick(tag); });
    shows_[tag] = box;
    return box;
}

ToolButton* PropertyPanels::button(wxWindow* parent, const char* name, const char* icon, const wxString& hint, int kind,
                                   int tag, std::function<void()> pressed) {
    ToolButton::Look look;
    look.icon = icon;
    look.hint = hint;
    look.kind = kind == radio   ? ToolButton::Kind::Radio
                : kind == check ? ToolButton::Kind::Check
                                : ToolButton::Kind::Push;
    auto* made = new ToolButton(parent, name, look, tag);
    made->Bind(wxEVT_BUTTON, [pressed = std::move(pressed)](wxCommandEvent&) { pressed(); });
    buttons_[name] = made;
    return made;
}

wxSizer* PropertyPanels::swatches(wxWindow* parent, std::initializer_list<std::pair<const char*, const char*>> named) {
    auto* grid = new wxFlexGridSizer(static_cast<int>(named.size()), FromDIP(2), FromDIP(8));
    for (const auto& [name, caption] : named) {
        auto* swatch = new ColourSwatch(parent, name, caption, [this, name = std::string(name)](ColourSwatch& field) {
            form_.imgShapeForegroundMouseDown(name, field);
        });
        setAccessibleName(
            *swatch, parent->GetLabel() + ": " + caption, PressedControl::Button,
            [this, swatch, name = std::string(name)] { form_.imgShapeForegroundMouseDown(name, *swatch); });
        swatches_[name] = swatch;
        auto* cell = new wxBoxSizer(wxVERTICAL);
        cell->Add(swatch, 0, wxALIGN_CENTRE);
        cell->Add(new wxStaticText(parent, wxID_ANY, caption), 0, wxALIGN_CENTRE | wxTOP, FromDIP(1));
        grid->Add(cell);
    }
    return grid;
}

wxSlider* PropertyPanels::slider(wxWindow* parent, const char* name, int low, int high, const wxString& hint,
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
        if (slide_ == 0) slide_ = form_.document().newGesture();
        event.Skip();
    });
    const auto ended = [this, apply](wxScrollEvent& event) {
        apply();
        slide_ = 0;
        event.Skip();
    };
    made->Bind(wxEVT_SCROLL_THUMBRELEASE, ended);
    made->Bind(wxEVT_SCROLL_CHANGED, ended);
    return made;
}

wxPanel* PropertyPanels::makeStyle() {
    wxPanel* panel = makePanel("pnlStyle", "Style", 0);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(panel, wxID_ANY, "Style:"), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(gap));
    lblStyle_ = new wxStaticText(panel, wxID_ANY, "No style", wxDefaultPosition, wxDefaultSize,
                                 wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE, "lblStyle");
    lblStyle_->SetForegroundColour(linkColour());
    lblStyle_->SetCursor(wxCursor(wxCURSOR_HAND));
    lblStyle_->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent&) { form_.lblStyleClick(); });
    row->Add(lblStyle_, 1, wxALIGN_CENTRE_VERTICAL);
    row->Add(button(panel, "tbtnStyle", "drop-down", "Choose Style", push, 0, [this] { form_.lblStyleClick(); }), 0,
             wxALIGN_CENTRE_VERTICAL);
    panel->GetSizer()->Add(row, 0, wxEXPAND);
    return panel;
}

wxPanel* PropertyPanels::makeShape() {
    wxPanel* panel = makePanel("pnlRectShape", "Shape", 1);
    panel->GetSizer()->Add(showBox(panel, "chkShowShape", "Shape", 1));
    auto* tbQuickShapes = new wxPanel(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbQuickShapes");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    int tag = 0;
    for (const Kind& kind : kinds) {
        ++tag;
        row->Add(button(tbQuickShapes, kind.name, kind.icon, kind.hint, radio, tag,
                        [this, tag] { form_.controller().changeKind(static_cast<ShapeKind>(tag)); }));
    }
    tbQuickShapes->SetSizer(row);
    panel->GetSizer()->Add(tbQuickShapes, 0, wxTOP, FromDIP(gap / 2));
    panel->GetSizer()->Add(swatches(panel, {{"imgShapeForeground", "Fill"}, {"imgShapeFrame", "Frame"}}), 0, wxTOP,
                           FromDIP(gap));
    spnShapeOpacity_ = slider(panel, "spnShapeOpacity", minOpacity, maxOpacity, "Shape opacity",
                              [](TShapeStyle& style, int value) { style.shape.opacity = value; });
    spnShapeOpacity_->SetPageSize(10);
    spnShapeOpacity_->SetLineSize(10);
    spnShapeOpacity_->SetTickFreq(10);
    panel->GetSizer()->Add(captioned(panel, "Opacity", spnShapeOpacity_), 0, wxEXPAND | wxTOP, FromDIP(gap / 2));
    return panel;
}

wxPanel* PropertyPanels::makeText() {
    wxPanel* panel = makePanel("pnlTextShape", "Text", 2);
    panel->GetSizer()->Add(showBox(panel, "chkShowText", "Text", 2));
    panel->GetSizer()->Add(
        swatches(panel, {{"imgFontColor", "Text"}, {"imgFontBackgroundColor", "Back"}, {"imgFontFrameColor", "Frame"}}),
        0, wxTOP, FromDIP(gap));
    auto* font = new wxBoxSizer(wxHORIZONTAL);
    lblFontName_ = new wxStaticText(panel, wxID_ANY, "Arial", wxDefaultPosition, wxDefaultSize,
                                    wxST_ELLIPSIZE_END | wxST_NO_AUTORESIZE, "lblFontName");
    lblFontName_->SetForegroundColour(linkColour());
    lblFontName_->SetCursor(wxCursor(wxCURSOR_HAND));
    lblFontName_->SetToolTip("Font name");
    lblFontName_->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent&) { form_.lblFontNameClick(); });
    font->Add(lblFontName_, 1, wxALIGN_CENTRE_VERTICAL);
    font->Add(button(panel, "tbtnFontName", "drop-down", "Choose Font", push, 0, [this] { form_.lblFontNameClick(); }),
              0, wxALIGN_CENTRE_VERTICAL);
    cmbFontSize_ = new wxChoice(panel, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(56, -1)), texts(fontSizes), 0,
                                wxDefaultValidator, "cmbFontSize");
    cmbFontSize_->SetToolTip("Font size");
    setAccessibleName(*cmbFontSize_, "Font size");
    cmbFontSize_->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
        const int32_t size = fontSizes.at(static_cast<size_t>(event.GetSelection()));
        form_.controller().changeSettings([size](TShapeStyle& style) { style.text.fontSize = size; });
    });
    font->Add(cmbFontSize_, 0, wxALIGN_CENTRE_VERTICAL);
    panel->GetSizer()->Add(font, 0, wxEXPAND | wxTOP, FromDIP(gap / 2));

    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto toggle = [&](const char* name, const char* icon, const char* hint, auto field) {
        row->Add(button(panel, name, icon, hint, check, 0, [this, name = std::string(name), field] {
            const bool down = buttons_[name]->down();
            form_.controller().changeSettings([&](TShapeStyle& style) { style.text.*field = down; });
        }));
    };
    toggle("tbtnFontFill", "text-fill", "Fill background", &TTextSettings::filled);
    toggle("tbtnFontBold", "bold", "Bold", &TTextSettings::bold);
    toggle("tbtnFontItalic", "italic", "Italic", &TTextSettings::italic);
    toggle("tbtnFontUnderline", "underline", "Underline", &TTextSettings::underlined);
    row->AddStretchSpacer();
    auto* align = new wxPanel(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbAlignment");
    auto* alignRow = new wxBoxSizer(wxHORIZONTAL);
    const auto aligned = [&](const char* name, const char* icon, const char* hint, TextAlignment to) {
        alignRow->Add(button(align, name, icon, hint, radio, 0, [this, to] {
            form_.controller().changeSettings([to](TShapeStyle& style) { style.text.alignment = to; });
        }));
    };
    aligned("tbtnAlignLeft", "align-left", "Align left", TextAlignment::Left);
    aligned("tbtnAlignCenter", "align-centre", "Align center", TextAlignment::Centre);
    aligned("tbtnAlignRight", "align-right", "Align right", TextAlignment::Right);
    align->SetSizer(alignRow);
    row->Add(align);
    panel->GetSizer()->Add(row, 0, wxEXPAND | wxTOP, FromDIP(gap / 2));
    return panel;
}

ToolButton* PropertyPanels::lineEndButton(wxWindow* parent, bool front) {
    const char* name = front ? "tbtnLineLeft" : "tbtnLineRight";
    ToolButton* made = button(parent, name, "line-end-none", front ? "Front shape" : "Back shape", push, 0,
                              [this, name = std::string(name)] { buttons_[name]->popUp(); });
    auto menu = std::make_unique<wxMenu>();
    for (int tag = 1; tag <= 3; ++tag) {
        const int id = menu->AppendRadioItem(wxID_ANY, lineEnds[tag - 1])->GetId();
        menu->Bind(
            wxEVT_MENU,
            [this, tag, front](wxCommandEvent&) {
                form_.controller().changeSettings([&](TShapeStyle& style) {
                    (front ? style.line.front : style.line.back) = static_cast<LineEnd>(tag);
                });
            },
            id);
    }
    made->setMenu(std::move(menu));
    return made;
}

wxPanel* PropertyPanels::makeLine() {
    wxPanel* panel = makePanel("pnlLineShape", "Line", 3);
    panel->GetSizer()->Add(showBox(panel, "chkShowLine", "Line", 3));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(swatches(panel, {{"imgLineColor", "Line"}, {"imgLineFrameColor", "Frame"}}), 0, wxALIGN_TOP);
    row->AddStretchSpacer();
    row->Add(lineEndButton(panel, true), 0, wxALIGN_TOP);
    row->Add(lineEndButton(panel, false), 0, wxALIGN_TOP);
    panel->GetSizer()->Add(row, 0, wxEXPAND | wxTOP, FromDIP(gap));
    // The hint is the opacity's on purpose.
    spnLineWidth_ = slider(panel, "spnLineWidth", minLineWidth, maxLineWidth, "Shape opacity",
                           [](TShapeStyle& style, int value) { style.line.width = style.shape.frameWidth = value; });
    spnLineWidth_->SetPageSize(1);
    panel->GetSizer()->Add(captioned(panel, "Width", spnLineWidth_), 0, wxEXPAND | wxTOP, FromDIP(gap / 2));
    return panel;
}

wxPanel* PropertyPanels::makeNumber() {
    wxPanel* panel = makePanel("pnlNumber", "Number", 4);
    panel->GetSizer()->Add(showBox(panel, "chkShowNumber", "Number", 4));
    return panel;
}

wxPanel* PropertyPanels::makeDelete() {
    wxPanel* panel = makePanel("pnlDeleteAnnotation", "Annotation", 0);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    const auto command = [&](const char* name, const char* icon, const char* hint, EditCommand what) {
        row->Add(button(panel, name, icon, hint, push, 0, [this, what] { form_.executeCommand(what); }));
    };
    command("tbtnDeleteAnnotation", "delete", "Delete annotation (Del)", EditCommand::DeleteAnnotation);
    command("tbtnCopyShape", "copy", "Copy (Ctrl+C)", EditCommand::Copy);
    command("tbtnCutShape", "cut", "Cut (Ctrl+X)", EditCommand::Cut);
    command("tbtnPasteShape", "paste", "Paste (Ctrl+V)", EditCommand::Paste);
    panel->GetSizer()->Add(row);
    return panel;
}

void PropertyPanels::chkShowObjectClick(int tag) {
    form_.controller().showPart(static_cast<Part>(tag - 1), shows_[tag]->GetValue());
}

// --- free drawing and capturing

wxPanel* PropertyPanels::makePens() {
    wxPanel* panel = makePanel("pnlPens", "Drawing", -1);
    // Two blanks before "annotation", as the text has always had them.
    auto* text = new wxStaticText(panel, wxID_ANY,
                                  "Perform drawing using mouse.\nWhen you're finished, press \"Apply\" \n"
                                  "button or right-click the screen \nto return to  annotation mode.",
                                  wxDefaultPosition, wxDefaultSize, 0, "lblPens");
    panel->GetSizer()->Add(text, 0, wxBOTTOM, FromDIP(2 * gap));
    auto* tools = new wxPanel(panel, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, "tbPens");
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(button(tools, "tbtnPen", "pen", "Pen tool", radio, 0, [this] { form_.controller().eraser = false; }));
    row->Add(
        button(tools, "tbtnEraser", "eraser", "Eraser tool", radio, 0, [this] { form_.controller().eraser = true; }));
    row->Add(button(tools, "tbtnNewDrawing", "clear-drawing", "Clear drawing", push, 0,
                    [this] { form_.controller().clearDrawing(); }));
    buttons_["tbtnPen"]->setDown(true);
    tools->SetSizer(row);
    panel->GetSizer()->Add(tools, 0, wxBOTTOM, FromDIP(gap));
    panel->GetSizer()->Add(swatches(panel, {{"imgInkColor", "Ink Color"}}), 0, wxBOTTOM, FromDIP(gap));
    auto* width = new wxBoxSizer(wxHORIZONTAL);
    width->Add(new wxStaticText(panel, wxID_ANY, "Pen width"), 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(gap));
    cmbInkWidth_ = new wxChoice(panel, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(56, -1)), texts(penWidths), 0,
                                wxDefaultValidator, "cmbInkWidth");
    cmbInkWidth_->SetToolTip("Pen width");
    cmbInkWidth_->SetStringSelection(wxString::Format("%d", initialPenWidth));
    cmbInkWidth_->Bind(wxEVT_CHOICE, [this](wxCommandEvent& event) {
        form_.controller().inkWidth = penWidths.at(static_cast<size_t>(event.GetSelection()));
        OptionsHolder().setNumber("spnPenSize", form_.controller().inkWidth);
    });
    width->Add(cmbInkWidth_, 0, wxALIGN_CENTRE_VERTICAL);
    panel->GetSizer()->Add(width, 0, wxBOTTOM, FromDIP(2 * gap));
    ToolButton::Look apply;
    apply.icon = "apply";
    apply.caption = "Apply";
    apply.hint = "Apply changes and back to annotation mode";
    auto* btnApply = new ToolButton(panel, "btnApply", apply);
    btnApply->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { form_.endPenDrawing(); });
    panel->GetSizer()->Add(btnApply);
    return panel;
}

wxPanel* PropertyPanels::makeCapturing() {
    wxPanel* panel = makePanel("pnlCapturing", "Capture", -1);
    const auto add = [&](const char* name, const char* icon, const char* caption, const char* hint, bool take) {
        ToolButton::Look look;
        look.icon = icon;
        look.caption = caption;
        look.hint = hint;
        auto* made = new ToolButton(panel, name, look);
        made->Bind(wxEVT_BUTTON, [this, take](wxCommandEvent&) { form_.controller().endCapture(take); });
        panel->GetSizer()->Add(made, 0, wxBOTTOM, FromDIP(gap));
    };
    add("tbtnCapture", "capture", "Capture  ", "Capture Selection", true);
    add("tbtnCancel", "cancel", "Cancel", "Cancel Capturing", false);
    return panel;
}

// --- state

void PropertyPanels::showState() {
    if (annotation_ == nullptr) return;
    const CanvasController& controller = form_.controller();
    const CanvasMode mode = controller.mode();
    const bool changed = annotation_->IsShown() != (mode == CanvasMode::Annotation) ||
                         pnlPens_->IsShown() != (mode == CanvasMode::FreeDrawing);
    if (changed) {
        annotation_->Show(mode == CanvasMode::Annotation);
        pnlPens_->Show(mode == CanvasMode::FreeDrawing);
        pnlCapturing_->Show(mode == CanvasMode::Capture);
        Layout();
        FitInside();
    }
    swatches_["imgInkColor"]->setColour(controller.inkColour);
    cmbInkWidth_->SetStringSelection(wxString::Format("%d", controller.inkWidth));
    buttons_[controller.eraser ? "tbtnEraser" : "tbtnPen"]->setDown(true);
    showSettings(controller.shownSettings());
    const bool selected = form_.document().selectedAnnotation() != nullptr;
    buttons_["tbtnDeleteAnnotation"]->Enable(selected);
    for (const char* name : {"tbtnCopyShape", "tbtnCutShape"})
        buttons_[name]->Enable(selected || !form_.selectedArea().empty());
}

void PropertyPanels::showSettings(const TShapeStyle& settings) {
    const auto setText = [](wxStaticText* label, const wxString& text) {
        if (label->GetLabelText() == text) return;
        label->SetLabelText(text);
        label->SetToolTip(text);
    };
    setText(lblStyle_, settings.name.empty() ? wxString("No style") : wxString::FromUTF8(settings.name));
    setText(lblFontName_, wxString::FromUTF8(settings.text.fontName));
    const bool shown[] = {settings.shape.visible, settings.text.visible, settings.line.visible,
                          settings.number.visible};
    for (int tag = 1; tag <= 4; ++tag) shows_[tag]->SetValue(shown[tag - 1]);
    swatches_["imgShapeForeground"]->setColour(settings.shape.shapeColour);
    swatches_["imgShapeFrame"]->setColour(settings.shape.frameColour);
    swatches_["imgFontColor"]->setColour(settings.text.textColour);
    swatches_["imgFontBackgroundColor"]->setColour(settings.text.backgroundColour);
    swatches_["imgFontFrameColor"]->setColour(settings.text.frameColour);
    swatches_["imgLineColor"]->setColour(settings.line.lineColour);
    swatches_["imgLineFrameColor"]->setColour(settings.line.frameColour);
    if (slide_ == 0) {
        spnShapeOpacity_->SetValue(settings.shape.opacity);
        spnLineWidth_->SetValue(settings.line.width);
    }
    buttons_[kinds[static_cast<size_t>(settings.shape.kind) - 1].name]->setDown(true);
    buttons_["tbtnFontFill"]->setDown(settings.text.filled);
    buttons_["tbtnFontBold"]->setDown(settings.text.bold);
    buttons_["tbtnFontItalic"]->setDown(settings.text.italic);
    buttons_["tbtnFontUnderline"]->setDown(settings.text.underlined);
    static constexpr const char* alignments[] = {"tbtnAlignLeft", "tbtnAlignCenter", "tbtnAlignRight"};
    buttons_[alignments[static_cast<size_t>(settings.text.alignment)]]->setDown(true);
    buttons_["tbtnLineLeft"]->setIcon(lineEndIcons[static_cast<size_t>(settings.line.front) - 1], 16);
    buttons_["tbtnLineRight"]->setIcon(lineEndIcons[static_cast<size_t>(settings.line.back) - 1], 16);
    const wxString size = wxString::Format("%d", settings.text.fontSize);
    if (cmbFontSize_->GetStringSelection() != size) cmbFontSize_->SetStringSelection(size);
}

}  // namespace glimmer
