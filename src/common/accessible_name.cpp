#include "common/accessible_name.h"

#include <wx/access.h>
#include <wx/window.h>

#include <utility>

#include "common/boundary.h"

namespace glimmer {

#if wxUSE_ACCESSIBILITY

namespace {

/// Everything else is as the system says it.
class Named : public wxAccessible {
public:
    Named(wxWindow& window, const wxString& name) : wxAccessible(&window), name_(name) {}
    wxAccStatus GetName(int child, wxString* name) override {
        if (child != wxACC_SELF) return wxACC_NOT_IMPLEMENTED;
        return guarded(wxACC_FAIL, [&] {
            *name = name_;
            return wxACC_OK;
        });
    }

private:
    wxString name_;
};

class Pressed final : public Named {
public:
    Pressed(wxWindow& window, const wxString& name, PressedControl kind, std::function<void()> press)
        : Named(window, name), kind_(kind), press_(std::move(press)) {}
    wxAccStatus GetRole(int /*child*/, wxAccRole* role) override {
        *role = kind_ == PressedControl::Link ? wxROLE_SYSTEM_LINK : wxROLE_SYSTEM_PUSHBUTTON;
        return wxACC_OK;
    }
    wxAccStatus GetDefaultAction(int /*child*/, wxString* action) override {
        return guarded(wxACC_FAIL, [=] {
            *action = "Press";
            return wxACC_OK;
        });
    }
    wxAccStatus DoDefaultAction(int /*child*/) override {
        // A screen reader waits for the answer, and the command may ask something.
        return guarded(wxACC_FAIL, [this] {
            GetWindow()->CallAfter(press_);
            return wxACC_OK;
        });
    }

private:
    PressedControl kind_;
    std::function<void()> press_;
};

}  // namespace

// The windows own them.
void setAccessibleName(wxWindow& window, const wxString& name) { window.SetAccessible(new Named(window, name)); }
void setAccessibleName(wxWindow& window, const wxString& name, PressedControl kind, std::function<void()> press) {
    window.SetAccessible(new Pressed(window, name, kind, std::move(press)));
}

#else

void setAccessibleName(wxWindow& /*window*/, const wxString& /*name*/) {}
void setAccessibleName(wxWindow& /*window*/, const wxString& /*name*/, PressedControl /*kind*/,
                       std::function<void()> /*press*/) {}

#endif

}  // namespace glimmer
