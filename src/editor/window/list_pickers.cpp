#include "editor/window/list_pickers.h"

#include <wx/button.h>
#include <wx/dc.h>
#include <wx/fontenum.h>
#include <wx/listbox.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/spinctrl.h>
#include <wx/stattext.h>
#include <wx/textdlg.h>
#include <wx/vlbox.h>

#include <algorithm>

#include "common/accessible_name.h"
#include "common/modal_dialog.h"
#include "editor/annotations/style_store.h"
#include "settings/options.h"

namespace glimmer {

namespace {

/// A picker that is one list; a click, Enter or a double click takes the entry.
class ListPicker : public PickerWindow {
protected:
    ListPicker(wxWindow* parent, const wxString& title, const char* name) : PickerWindow(parent, title, name) {
        list_ = new wxListBox(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(220, 240)), 0, nullptr, wxLB_SINGLE,
                              wxDefaultValidator, "lstChoices");
        list_->Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
            event.Skip();
            if (list_->HitTest(event.GetPosition()) != wxNOT_FOUND) CallAfter([this] { takeSelected(); });
        });
        list_->Bind(wxEVT_LISTBOX_DCLICK, [this](wxCommandEvent&) { takeSelected(); });
        list_->Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
            if (event.GetKeyCode() == WXK_RETURN)
                takeSelected();
            else
                event.Skip();
        });
        all_ = new wxBoxSizer(wxVERTICAL);
        all_->Add(list_, 1, wxEXPAND);
        SetSizer(all_);
    }

    void takeSelected() {
        const int at = list_->GetSelection();
        if (at != wxNOT_FOUND) take(static_cast<size_t>(at));
    }
    virtual void take(size_t index) = 0;

    void select(const wxString& text) {
        const int at = list_->FindString(text, true);
        if (at != wxNOT_FOUND) list_->SetSelection(at);
        if (at != wxNOT_FOUND) list_->EnsureVisible(at);
        list_->SetFocus();
    }

    wxListBox* list_;
    wxBoxSizer* all_;
};

class FontPicker final : public ListPicker {
public:
    FontPicker(wxWindow* parent, const std::string& current, std::function<void(const std::string&)> picked)
        : ListPicker(parent, "Fonts", "FontPicker"), picked_(std::move(picked)) {
        wxArrayString faces = wxFontEnumerator::GetFacenames();
        faces.Sort();
        for (const wxString& face : faces)
            if (!face.StartsWith("@")) list_->Append(face);  // "@" marks a face for vertical text
        select(wxString::FromUTF8(current));
    }

private:
    void take(size_t index) override {
        const std::string face = list_->GetString(static_cast<unsigned>(index)).utf8_string();
        const auto picked = std::move(picked_);
        picked_ = nullptr;
        finish();
        if (picked) picked(face);
    }

    std::function<void(const std::string&)> picked_;
};

class StylePicker final : public ListPicker {
public:
    StylePicker(wxWindow* parent, const std::string& current, StyleActions actions)
        : ListPicker(parent, "Styles", "StylePicker"), actions_(std::move(actions)) {
        auto* row = new wxBoxSizer(wxHORIZONTAL);
        const auto add = [&](const char* name, const wxString& caption, auto act) {
            auto* made = new wxButton(this, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT,
                                      wxDefaultValidator, name);
            made->Bind(wxEVT_BUTTON, [act](wxCommandEvent&) { act(); });
            row->Add(made, 1, wxALL, FromDIP(3));
        };
        add("btnSaveStyle", "Save as...", [this] { saveAs(); });
        add("btnDeleteStyle", "Delete", [this] { remove(); });
        all_->Add(row, 0, wxEXPAND);
        fill(current);
    }

private:
    void fill(const std::string& current) {
        styles_ = allStyles();
        list_->Clear();
        for (const TShapeStyle& style : styles_) list_->Append(wxString::FromUTF8(style.name));
        select(wxString::FromUTF8(current));
    }

    void take(size_t index) override {
        const auto picked = std::move(actions_.picked);
        const TShapeStyle style = styles_.at(index);
        finish();
        if (picked) picked(style);
    }

    void saveAs() {
        TShapeStyle style = actions_.current();
        const auto picked = actions_.picked;
        wxWindow* parent = GetParent();
        finish();
        wxTextEntryDialog dialog(parent, "Name of the style:", "Save Style", wxString::FromUTF8(style.name));
        dialog.SetMaxLength(100);
        if (dialog.ShowModal() != wxID_OK) return;
        style.name = dialog.GetValue().Trim().Trim(false).utf8_string();
        if (style.name.empty()) return;
        storeStyle(style);
        picked(style);
    }

    void remove() {
        const int at = list_->GetSelection();
        if (at == wxNOT_FOUND) return;
        // A predefined style comes back as it was.
        deleteStyle(styles_.at(static_cast<size_t>(at)).name);
        fill("");
    }

    StyleActions actions_;
    std::vector<TShapeStyle> styles_;
};

/// The list of annotations, in the font and the colours of the options. Entries are dragged up and down.
class AnnotationList final : public wxVListBox {
public:
    AnnotationList(wxWindow* parent, std::function<wxString(size_t)> text, std::function<void(int)> shift)
        : text_(std::move(text)), shift_(std::move(shift)) {
        Create(parent, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(320, 240)), wxBORDER_THEME);
        SetName("lstAnnotations");
        const Options& options = OptionsHolder();
        wxFont font = GetFont();
        font.SetPointSize(options.number("spnAnnotationCtlFontSize"));
        const wxString face = wxString::FromUTF8(options.text("cmbAnnotationCtlFont"));
        if (!face.empty()) font.SetFaceName(face);
        SetFont(font);
        const auto colour = static_cast<Colour>(options.number("clrAnnotationCtlSelectionColor"));
        SetSelectionBackground(wxColour(redOf(colour), greenOf(colour), blueOf(colour)));
        const int lightness = 2 * redOf(colour) + 5 * greenOf(colour) + blueOf(colour);
        selectedText_ = lightness > 4 * 255 ? *wxBLACK : *wxWHITE;
        Bind(wxEVT_MOTION, [this](wxMouseEvent& event) {
            event.Skip();
            if (!event.LeftIsDown() || GetSelection() == wxNOT_FOUND) return;
            const int over = VirtualHitTest(event.GetY());
            if (over != wxNOT_FOUND && over != GetSelection()) shift_(over < GetSelection() ? -1 : 1);
        });
    }

private:
    void OnDrawItem(wxDC& dc, const wxRect& rect, size_t n) const override {
        dc.SetFont(GetFont());
        dc.SetTextForeground(IsSelected(n) ? selectedText_ : wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));
        dc.DrawLabel(wxControl::Ellipsize(text_(n), dc, wxELLIPSIZE_END, rect.width - FromDIP(12)),
                     rect.Deflate(FromDIP(6), 0), wxALIGN_LEFT | wxALIGN_CENTRE_VERTICAL);
    }
    wxCoord OnMeasureItem(size_t /*n*/) const override { return GetCharHeight() + FromDIP(4); }

    std::function<wxString(size_t)> text_;
    std::function<void(int)> shift_;
    wxColour selectedText_;
};

/// The annotations in the order of their numbers.
class NumbersDialog final : public ModalDialog {
public:
    NumbersDialog(wxWindow* parent, const TShapesList& annotations, AnnotationId selected)
        : ModalDialog(parent, wxID_ANY, "Renumber Annotations", wxDefaultPosition, wxDefaultSize,
                      wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "AnnotationList") {
        TShapesList copy = annotations;
        for (const TBBShape* shape : copy.byNumber()) {
            ids_.push_back(shape->id());
            std::string text = shape->text.text.substr(0, shape->text.text.find('\n'));
            texts_.push_back(text.empty() ? wxString("(no text)") : wxString::FromUTF8(text));
        }
        list_ = new AnnotationList(
            this,
            [this](size_t n) {
                return wxString::Format("%d   ", first_->GetValue() + static_cast<int>(n)) + texts_[n];
            },
            [this](int way) { shift(way); });
        setAccessibleName(*list_, "Annotations");
        // Before the box: its access key leads to what was made next.
        auto* caption = new wxStaticText(this, wxID_ANY, "&First number:");
        first_ = new wxSpinCtrl(this, wxID_ANY, "1", wxDefaultPosition, wxDefaultSize, wxSP_ARROW_KEYS, minStepNumber,
                                maxStepNumber - 10000, 1, "spnFirstNumber");
        first_->Bind(wxEVT_SPINCTRL, [this](wxSpinEvent&) { fill(list_->GetSelection()); });
        auto* column = new wxBoxSizer(wxVERTICAL);
        const auto add = [&](const char* name, const wxString& caption, int way) {
            auto* made =
                new wxButton(this, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, 0, wxDefaultValidator, name);
            made->Bind(wxEVT_BUTTON, [this, way](wxCommandEvent&) { shift(way); });
            column->Add(made, 0, wxEXPAND | wxBOTTOM, FromDIP(6));
        };
        add("btnMoveUp", "Move &Up", -1);
        add("btnMoveDown", "Move &Down", 1);
        auto* middleRow = new wxBoxSizer(wxHORIZONTAL);
        middleRow->Add(list_, 1, wxEXPAND | wxRIGHT, FromDIP(8));
        middleRow->Add(column);
        auto* firstRow = new wxBoxSizer(wxHORIZONTAL);
        firstRow->Add(caption, 0, wxALIGN_CENTRE_VERTICAL | wxRIGHT, FromDIP(6));
        firstRow->Add(first_);
        auto* all = new wxBoxSizer(wxVERTICAL);
        all->Add(middleRow, 1, wxEXPAND | wxALL, FromDIP(10));
        all->Add(firstRow, 0, wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(10));
        all->Add(newOkAndCancel(), 0, wxEXPAND | wxALL, FromDIP(10));
        SetSizerAndFit(all);
        const auto at = std::find(ids_.begin(), ids_.end(), selected);
        fill(at == ids_.end() ? 0 : static_cast<int>(at - ids_.begin()));
        list_->SetFocus();
        CentreOnParent();
    }

    [[nodiscard]] std::vector<std::pair<AnnotationId, int32_t>> numbers() const {
        std::vector<std::pair<AnnotationId, int32_t>> result;
        for (size_t i = 0; i < ids_.size(); ++i)
            result.emplace_back(ids_[i], clampStepNumber(first_->GetValue() + static_cast<int32_t>(i)));
        return result;
    }

private:
    void fill(int selected) {
        list_->SetItemCount(ids_.size());
        if (selected >= 0 && selected < static_cast<int>(ids_.size())) list_->SetSelection(selected);
        list_->Refresh();
    }

    void shift(int way) {
        const int at = list_->GetSelection();
        const int to = at + way;
        if (at == wxNOT_FOUND || to < 0 || to >= static_cast<int>(ids_.size())) return;
        std::swap(ids_[static_cast<size_t>(at)], ids_[static_cast<size_t>(to)]);
        std::swap(texts_[static_cast<size_t>(at)], texts_[static_cast<size_t>(to)]);
        fill(to);
    }

    std::vector<AnnotationId> ids_;
    std::vector<wxString> texts_;
    AnnotationList* list_;
    wxSpinCtrl* first_;
};

}  // namespace

void openFontPicker(wxWindow* parent, const wxRect& owner, const std::string& current,
                    std::function<void(const std::string&)> picked) {
    auto* picker = new FontPicker(parent, current, std::move(picked));  // goes when it is closed
    picker->openAt(owner);
}

void openStylePicker(wxWindow* parent, const wxRect& owner, const std::string& current, StyleActions actions) {
    auto* picker = new StylePicker(parent, current, std::move(actions));
    picker->openAt(owner);
}

std::vector<std::pair<AnnotationId, int32_t>> askForNumbers(wxWindow* parent, const TShapesList& annotations,
                                                            AnnotationId selected) {
    NumbersDialog dialog(parent, annotations, selected);
    if (dialog.ShowModal() != wxID_OK) return {};
    return dialog.numbers();
}

}  // namespace glimmer
