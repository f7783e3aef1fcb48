#include "common/tool_button.h"

#include <wx/access.h>
#include <wx/dcbuffer.h>
#include <wx/graphics.h>
#include <wx/settings.h>

#include <cstring>

#include "common/boundary.h"
#include "common/contrast.h"
#include "common/icons.h"

namespace glimmer {

namespace {

// Device-independent pixels.
const wxSize padding(5, 4);
constexpr int captionGap = 2;  // between the icon and the caption below it

#if wxUSE_ACCESSIBILITY
/// What a screen reader says: the caption, or the hint's first line where there is no caption.
class ButtonAccessible final : public wxAccessible {
public:
    explicit ButtonAccessible(ToolButton* button) : wxAccessible(button), button_(button) {}
    wxAccStatus GetName(int /*child*/, wxString* name) override {
        return guarded(wxACC_FAIL, [this, name] {
            *name = button_->caption().Strip(wxString::both);
            if (name->empty()) *name = button_->GetToolTipText().BeforeFirst('\r').BeforeFirst('\n');
            return wxACC_OK;
        });
    }
    wxAccStatus GetDescription(int /*child*/, wxString* description) override {
        return guarded(wxACC_FAIL, [this, description] {
            *description = button_->GetToolTipText();
            return wxACC_OK;
        });
    }
    wxAccStatus GetRole(int /*child*/, wxAccRole* role) override {
        *role = wxROLE_SYSTEM_PUSHBUTTON;
        return wxACC_OK;
    }
    wxAccStatus GetState(int /*child*/, long* state) override {
        *state = wxACC_STATE_SYSTEM_FOCUSABLE;
        if (button_->HasFocus()) *state |= wxACC_STATE_SYSTEM_FOCUSED;
        if (button_->down()) *state |= wxACC_STATE_SYSTEM_PRESSED;
        if (!button_->IsEnabled()) *state |= wxACC_STATE_SYSTEM_UNAVAILABLE;
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
            button_->CallAfter(&ToolButton::press);
            return wxACC_OK;
        });
    }

private:
    ToolButton* button_;
};
#endif

/// What a disabled icon fades to: nearly the background.
unsigned char paleness(const wxColour& background) { return background.GetLuminance() < 0.5 ? 50 : 230; }

wxColour mixed(const wxColour& a, const wxColour& b, double share) {
    const auto channel = [share](unsigned char x, unsigned char y) {
        return static_cast<unsigned char>(x + (y - x) * share);
    };
    return {channel(a.Red(), b.Red()), channel(a.Green(), b.Green()), channel(a.Blue(), b.Blue())};
}

}  // namespace

wxString tipText(wxString hint) {
    hint.Replace("\r\n", "\n");
    hint.Replace("\r", "\n");
    return hint;
}

ToolButton::ToolButton(wxWindow* parent, const char* name, Look look, int tag) : look_(std::move(look)), tag_(tag) {
    SetBackgroundStyle(wxBG_STYLE_PAINT);
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE | wxWANTS_CHARS, wxDefaultValidator,
           wxString::FromUTF8(name));
    SetLabel(look_.caption);
    if (!look_.hint.empty()) SetToolTip(tipText(look_.hint));
    if (look_.icon != nullptr) picture_ = icon(look_.icon, look_.iconDip);
#if wxUSE_ACCESSIBILITY
    SetAccessible(new ButtonAccessible(this));
#endif
    SetInitialSize();
    Bind(wxEVT_PAINT, [this](wxPaintEvent&) { paint(); });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        if (look_.icon != nullptr) picture_ = icon(look_.icon, look_.iconDip);
        Refresh();
        event.Skip();
    });
    for (const auto& type : {wxEVT_LEFT_DOWN, wxEVT_LEFT_UP, wxEVT_LEFT_DCLICK, wxEVT_ENTER_WINDOW, wxEVT_LEAVE_WINDOW})
        Bind(type, &ToolButton::mouse, this);
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) {
        pressed_ = false;
        Refresh();
    });
    Bind(wxEVT_KEY_DOWN, &ToolButton::key, this);
    const auto repaint = [this](wxFocusEvent& event) {
        Refresh();
        event.Skip();
    };
    Bind(wxEVT_SET_FOCUS, repaint);
    Bind(wxEVT_KILL_FOCUS, repaint);
}

void ToolButton::setDown(bool down) {
    if (down && look_.kind == Kind::Radio) {
        for (wxWindow* sibling : GetParent()->GetChildren()) {
            auto* other = dynamic_cast<ToolButton*>(sibling);
            if (other != nullptr && other != this && other->look_.kind == Kind::Radio && other->down_) {
                other->down_ = false;
                other->Refresh();
            }
        }
    }
    if (down_ == down) return;
    down_ = down;
    Refresh();
}

void ToolButton::setCaption(const wxString& caption) {
    look_.caption = caption;
    SetLabel(caption);
    InvalidateBestSize();
    Refresh();
}

void ToolButton::setIcon(const char* name, int dip) {
    if (look_.icon != nullptr && std::strcmp(look_.icon, name) == 0 && look_.iconDip == dip) return;
    look_.icon = name;
    look_.iconDip = dip;
    picture_ = icon(name, dip);
    InvalidateBestSize();
    Refresh();
}

void ToolButton::showCaption(bool show) {
    if (captionShown_ == show) return;
    captionShown_ = show;
    InvalidateBestSize();
    Refresh();
}

void ToolButton::setMenu(std::unique_ptr<wxMenu> menu) {
    menu_ = std::move(menu);
    InvalidateBestSize();
}

void ToolButton::choose(int id) {
    wxMenuItem* item = menu_ != nullptr ? menu_->FindItem(id) : nullptr;
    if (item == nullptr) return;
    if (item->IsRadio()) item->Check();
    wxCommandEvent event(wxEVT_MENU, id);
    menu_->ProcessEvent(event);
}

void ToolButton::popUp() {
    if (menu_ == nullptr) return;
    PopupMenu(menu_.get(), 0, GetClientSize().GetHeight());
    hot_ = false;
    Refresh();
}

void ToolButton::press() {
    if (!IsEnabled()) return;
    if (look_.kind == Kind::Check) setDown(!down_);
    if (look_.kind == Kind::Radio) setDown(true);
    wxCommandEvent event(wxEVT_BUTTON, GetId());
    event.SetEventObject(this);
    event.SetInt(tag_);
    ProcessWindowEvent(event);
}

bool ToolButton::Enable(bool enable) {
    const bool changed = wxControl::Enable(enable);
    if (changed) Refresh();
    return changed;
}

wxString ToolButton::shownCaption() const { return captionShown_ ? look_.caption.Strip(wxString::both) : wxString(); }

int ToolButton::arrowWidth() const { return menu_ != nullptr ? FromDIP(14) : 0; }

bool ToolButton::onArrow(int x) const { return menu_ != nullptr && x >= GetClientSize().GetWidth() - arrowWidth(); }

int ToolButton::heightWithCaptionBelow(const wxWindow& window, int iconDip, bool captionShown) {
    const int caption = captionShown ? window.FromDIP(captionGap) + window.GetCharHeight() : 0;
    return window.FromDIP(iconDip) + caption + 2 * window.FromDIP(padding).y;
}

wxSize ToolButton::DoGetBestClientSize() const {
    const wxSize pad = FromDIP(padding);
    wxSize size;
    if (look_.icon != nullptr) size = FromDIP(wxSize(look_.iconDip, look_.iconDip));
    const wxString caption = shownCaption();
    if (!caption.empty()) {
        const wxSize text = GetTextExtent(caption);
        if (size.x == 0) {
            size = text;
        } else if (look_.captionBelow) {
            size = wxSize(std::max(size.x, text.x), size.y + FromDIP(captionGap) + text.y);
        } else {
            size = wxSize(size.x + FromDIP(5) + text.x, std::max(size.y, text.y));
        }
    }
    return {size.x + 2 * pad.x + arrowWidth(), size.y + 2 * pad.y};
}

void ToolButton::paint() {
    wxAutoBufferedPaintDC dc(this);
    const wxColour base = GetParent()->GetBackgroundColour();
    const wxColour accent = wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT);
    dc.SetBackground(wxBrush(base));
    dc.Clear();
    const wxRect area = GetClientRect();
    const bool active = IsThisEnabled() && (hot_ || down_ || pressed_);
    if (active || HasFocus()) {
        const double strength = pressed_ ? 0.34 : down_ ? 0.24 : hot_ ? 0.12 : 0.0;
        const double edge = usesContrastTheme() ? 1.0 : HasFocus() ? 0.8 : pressed_ || down_ ? 0.55 : 0.3;
        dc.SetBrush(wxBrush(mixed(base, accent, active ? strength : 0.0)));
        dc.SetPen(wxPen(mixed(base, accent, edge), 1));
        dc.DrawRoundedRectangle(area, FromDIP(3));
    }

    const wxString caption = shownCaption();
    const wxSize text = caption.empty() ? wxSize() : GetTextExtent(caption);
    wxBitmap bitmap = look_.icon != nullptr ? picture_.GetBitmapFor(this) : wxNullBitmap;
    if (bitmap.IsOk() && !IsThisEnabled()) bitmap = bitmap.ConvertToDisabled(paleness(base));
    const wxSize image = bitmap.IsOk() ? bitmap.GetLogicalSize() : wxSize();
    const int width = area.width - arrowWidth();
    dc.SetFont(GetFont());
    dc.SetTextForeground(wxSystemSettings::GetColour(IsThisEnabled() ? wxSYS_COLOUR_BTNTEXT : wxSYS_COLOUR_GRAYTEXT));
    if (look_.captionBelow && !caption.empty()) {
        const int total = image.y + FromDIP(captionGap) + text.y;
        const int top = (area.height - total) / 2;
        if (bitmap.IsOk()) dc.DrawBitmap(bitmap, (width - image.x) / 2, top, true);
        dc.DrawText(caption, (width - text.x) / 2, top + image.y + FromDIP(captionGap));
    } else {
        const int gap = bitmap.IsOk() && !caption.empty() ? FromDIP(5) : 0;
        // A column of buttons lines up at the left; a lone icon or text sits in the middle.
        const int left = gap > 0 ? FromDIP(5) : (width - image.x - text.x) / 2;
        if (bitmap.IsOk()) dc.DrawBitmap(bitmap, left, (area.height - image.y) / 2, true);
        if (!caption.empty()) dc.DrawText(caption, left + image.x + gap, (area.height - text.y) / 2);
    }
    if (menu_ != nullptr) {
        const int x = area.width - arrowWidth() / 2 - FromDIP(2);
        const int y = area.height / 2;
        const int half = FromDIP(3);
        const wxPoint triangle[] = {{x - half, y - half / 2}, {x + half, y - half / 2}, {x, y + half}};
        dc.SetPen(*wxTRANSPARENT_PEN);
        dc.SetBrush(wxBrush(dc.GetTextForeground()));
        dc.DrawPolygon(3, triangle);
    }
}

void ToolButton::mouse(wxMouseEvent& event) {
    const bool inside = GetClientRect().Contains(event.GetPosition());
    if (event.LeftDown() || event.LeftDClick()) {
        if (onArrow(event.GetX())) {
            popUp();
            return;
        }
        pressed_ = true;
        if (!HasCapture()) CaptureMouse();
    } else if (event.LeftUp()) {
        if (HasCapture()) ReleaseMouse();
        const bool wasPressed = std::exchange(pressed_, false);
        hot_ = inside;
        Refresh();
        if (wasPressed && inside) press();
        return;
    } else if (event.Entering()) {
        hot_ = true;
    } else if (event.Leaving()) {
        hot_ = false;
    }
    Refresh();
}

void ToolButton::key(wxKeyEvent& event) {
    switch (event.GetKeyCode()) {
        case WXK_SPACE:
        case WXK_RETURN:
        case WXK_NUMPAD_ENTER:
            press();
            break;
        case WXK_DOWN:
            if (menu_ != nullptr) {
                popUp();
                break;
            }
            HandleAsNavigationKey(event);
            break;
        case WXK_TAB:
            HandleAsNavigationKey(event);
            break;
        case WXK_RIGHT:
            Navigate(wxNavigationKeyEvent::IsForward);
            break;
        case WXK_LEFT:
        case WXK_UP:
            Navigate(wxNavigationKeyEvent::IsBackward);
            break;
        default:
            event.Skip();
    }
}

}  // namespace glimmer
