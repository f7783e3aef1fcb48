#include "settings/form_store.h"

#include <wx/checkbox.h>
#include <wx/choice.h>
#include <wx/clrpicker.h>
#include <wx/combobox.h>
#include <wx/msw/wrapwin.h>
#include <wx/radiobut.h>
#include <wx/slider.h>
#include <wx/spinctrl.h>
#include <wx/toplevel.h>

#include <set>
#include <vector>

#include "common/assertion.h"
#include "common/colour.h"
#include "common/monitors.h"
#include "settings/hot_key_control.h"
#include "settings/settings.h"

namespace glimmer {

namespace {

/// One of the toolkit's controls. How each class is read and set is one branch below, so that a new class is added in
/// one place.
template <class Control, ControlClass kind>
class ControlOf : public FormControl {
public:
    explicit ControlOf(Control& control) : control_(control) {}
    [[nodiscard]] std::string name() const override { return control_.GetName().utf8_string(); }
    [[nodiscard]] ControlClass controlClass() const override { return kind; }

    [[nodiscard]] int32_t value() const override {
        if constexpr (kind == ControlClass::UpDown) return control_.GetValue();
        if constexpr (kind == ControlClass::CheckBox || kind == ControlClass::RadioButton)
            return control_.GetValue() ? 1 : 0;
        if constexpr (kind == ControlClass::ComboBox) return control_.GetSelection();
        if constexpr (kind == ControlClass::ColorBox) {
            const wxColour colour = control_.GetColour();
            return static_cast<int32_t>(rgb(colour.Red(), colour.Green(), colour.Blue()));
        }
        if constexpr (kind == ControlClass::HotKey) return control_.hotKey();
        return 0;
    }

    void setValue(int32_t value) override {
        if constexpr (kind == ControlClass::UpDown) control_.SetValue(value);
        if constexpr (kind == ControlClass::CheckBox) control_.SetValue(value != 0);
        // Choosing one releases the others; releasing by itself would leave none.
        if constexpr (kind == ControlClass::RadioButton)
            if (value != 0) control_.SetValue(true);
        if constexpr (kind == ControlClass::ComboBox) control_.SetSelection(value);
        if constexpr (kind == ControlClass::ColorBox) {
            const auto colour = static_cast<Colour>(value);
            control_.SetColour(wxColour(redOf(colour), greenOf(colour), blueOf(colour)));
        }
        if constexpr (kind == ControlClass::HotKey) control_.setHotKey(value);
    }

    [[nodiscard]] int32_t least() const override {
        if constexpr (kind == ControlClass::UpDown) return control_.GetMin();
        if constexpr (kind == ControlClass::ComboBox) return -1;  // nothing selected
        return 0;
    }
    [[nodiscard]] int32_t most() const override {
        if constexpr (kind == ControlClass::UpDown) return control_.GetMax();
        if constexpr (kind == ControlClass::ComboBox) return static_cast<int32_t>(control_.GetCount()) - 1;
        if constexpr (kind == ControlClass::ColorBox) return 0xFFFFFF;
        if constexpr (kind == ControlClass::HotKey) return 0xFFFF;
        return 1;
    }

private:
    Control& control_;
};

template <class Control, ControlClass kind>
std::unique_ptr<FormControl> as(wxWindow* window) {
    auto* control = dynamic_cast<Control*>(window);
    return control == nullptr ? nullptr : std::make_unique<ControlOf<Control, kind>>(*control);
}

bool hasOwnName(const wxWindow& window) {
    static const std::set<wxString> toolkits{wxCheckBoxNameStr, wxChoiceNameStr,      wxColourPickerCtrlNameStr,
                                             wxComboBoxNameStr, wxRadioButtonNameStr, wxSliderNameStr,
                                             wxTextCtrlNameStr, "wxSpinCtrl",         wxString()};
    return toolkits.count(window.GetName()) == 0;
}

template <class Action>
void forEachControl(wxWindow& parent, const Action& action) {
    for (wxWindow* child : parent.GetChildren()) {
        if (child->IsTopLevel()) continue;
        const std::unique_ptr<FormControl> control = formControl(child);
        if (!control) {
            forEachControl(*child, action);
        } else if (hasOwnName(*child)) {
            action(*control);
        }
    }
}

/// Of all monitors, the primary one first. Asked for without the toolkit's display class: that makes a window of its
/// own to hear of changes, which a start need not wait for.
std::vector<WorkArea> workAreas() {
    std::vector<WorkArea> areas;
    for (const Monitor& monitor : monitors())
        areas.insert(monitor.primary ? areas.begin() : areas.end(), {monitor.work, monitor.dotsPerInch});
    return areas;
}

Rect rectOf(const wxRect& rect) { return {rect.x, rect.y, rect.x + rect.width, rect.y + rect.height}; }

/// Bounds and state as the system keeps them, also of a window that is minimised.
WindowGeometry geometryOf(const wxTopLevelWindow& form) {
    WINDOWPLACEMENT placement{};
    placement.length = sizeof placement;
    if (GetWindowPlacement(form.GetHWND(), &placement) == FALSE)
        return {rectOf(form.GetRect()), false, form.GetDPI().x};
    // The system counts a normal position from the work area's corner, not from the screen's.
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    GetMonitorInfoW(MonitorFromWindow(form.GetHWND(), MONITOR_DEFAULTTOPRIMARY), &monitor);
    const RECT& normal = placement.rcNormalPosition;
    const Rect bounds{normal.left, normal.top, normal.right, normal.bottom};
    const bool minimized = IsIconic(form.GetHWND()) != FALSE;
    const bool maximized = minimized ? (placement.flags & WPF_RESTORETOMAXIMIZED) != 0 : form.IsMaximized();
    return {bounds.moved(monitor.rcWork.left - monitor.rcMonitor.left, monitor.rcWork.top - monitor.rcMonitor.top),
            maximized, form.GetDPI().x};
}

void place(wxTopLevelWindow& form, const WindowGeometry& geometry) {
    if ((form.GetWindowStyleFlag() & wxRESIZE_BORDER) == 0) {
        form.Move(geometry.bounds.left, geometry.bounds.top);
        return;
    }
    // First to its monitor: where that has another scale, the system gives the window another size on the way.
    const wxSize size(geometry.bounds.width(), geometry.bounds.height());
    form.Move(geometry.bounds.left, geometry.bounds.top);
    form.SetSize(size);
    // A window that lies across a border may have changed monitors because of its size.
    if (form.GetSize() != size) form.SetSize(size);
    if (geometry.maximized) form.Maximize();
}

}  // namespace

std::unique_ptr<FormControl> formControl(wxWindow* window) {
    GLIMMER_ASSERT(window != nullptr, "pControl!=NULL", "uFormOptions");
    std::unique_ptr<FormControl> control = as<THotKey, ControlClass::HotKey>(window);
    if (!control) control = as<wxSpinCtrl, ControlClass::UpDown>(window);
    if (!control) control = as<wxSlider, ControlClass::UpDown>(window);
    if (!control) control = as<wxCheckBox, ControlClass::CheckBox>(window);
    if (!control) control = as<wxRadioButton, ControlClass::RadioButton>(window);
    if (!control) control = as<wxComboBox, ControlClass::ComboBox>(window);
    if (!control) control = as<wxChoice, ControlClass::ComboBox>(window);
    if (!control) control = as<wxColourPickerCtrl, ControlClass::ColorBox>(window);
    return control;
}

void saveControls(TCachedMemIniFile& store, std::string_view section, wxWindow& form) {
    forEachControl(form, [&](FormControl& control) { saveControl(store, section, &control); });
}

void restoreControls(const TCachedMemIniFile& store, std::string_view section, wxWindow& form) {
    forEachControl(form, [&](FormControl& control) { restoreControl(store, section, &control); });
}

void saveControl(TCachedMemIniFile& store, std::string_view section, wxWindow* control) {
    const std::unique_ptr<FormControl> state = formControl(control);
    if (state) saveControl(store, section, state.get());
}

void restoreControl(const TCachedMemIniFile& store, std::string_view section, wxWindow* control) {
    const std::unique_ptr<FormControl> state = formControl(control);
    if (state) restoreControl(store, section, state.get());
}

void saveGeometry(TCachedMemIniFile& store, std::string_view section, const wxWindow& window) {
    const auto* form = dynamic_cast<const wxTopLevelWindow*>(&window);
    const WindowGeometry geometry =
        form == nullptr ? WindowGeometry{rectOf(window.GetRect()), false} : geometryOf(*form);
    saveGeometry(store, section, geometry, form != nullptr);
}

void restoreGeometry(const TCachedMemIniFile& store, std::string_view section, wxTopLevelWindow& form) {
    place(form, restoreGeometry(store, section, {rectOf(form.GetRect()), false, form.GetDPI().x}, workAreas()));
}

void restoreGeometry(const TCachedMemIniFile& store, std::string_view section, wxTopLevelWindow& form,
                     wxSize standard) {
    const std::vector<WorkArea> areas = workAreas();
    const auto [area, dotsPerInch] =
        areas.empty() ? WorkArea{{0, 0, standard.x, standard.y}, form.GetDPI().x} : areas.front();
    standard = wxSize(standard.x * dotsPerInch / form.GetDPI().x, standard.y * dotsPerInch / form.GetDPI().y);
    standard.DecTo({area.width(), area.height()});
    const Point at{area.left + (area.width() - standard.x) / 2, area.top + (area.height() - standard.y) / 2};
    const Rect middle{at.x, at.y, at.x + standard.x, at.y + standard.y};
    place(form, restoreGeometry(store, section, {middle, false, dotsPerInch}, areas));
}

void saveForm(wxTopLevelWindow& form) {
    const std::string section = settingsSection(form.GetName().utf8_string());
    saveControls(settings(), section, form);
    saveGeometry(settings(), section, form);
    settings().save();
}

void restoreForm(wxTopLevelWindow& form) {
    const std::string section = settingsSection(form.GetName().utf8_string());
    restoreControls(settings(), section, form);
    // A form that was never placed stays where its owner puts it.
    if (settings().keyExists(section, "Left")) restoreGeometry(settings(), section, form);
}

}  // namespace glimmer
