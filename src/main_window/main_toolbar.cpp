#include "main_window/main_toolbar.h"

#include <wx/dcbuffer.h>
#include <wx/menu.h>
#include <wx/msw/wrapwin.h>
#include <wx/settings.h>

#include <algorithm>

#include "common/accessible_name.h"
#include "common/contrast.h"

namespace glimmer {

namespace {

constexpr int timerPeriod = 100;  // milliseconds
/// Ticks after which a bar that came up for the pointer folds again.
constexpr int peekTicks = 7;
constexpr int brightest = 4;

int iconSide(ToolbarSize size) { return size == ToolbarSize::Small ? 16 : size == ToolbarSize::Medium ? 24 : 32; }

wxString plainText(const char* text) {
    wxString plain = wxString::FromUTF8(text);
    return plain.Strip(wxString::both);
}

}  // namespace

TMainToolbar::TMainToolbar(wxWindow* parent, Run run) : run_(std::move(run)), tmrDimHandle_(this) {
    Hide();  // until it is filled
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL | wxFULL_REPAINT_ON_RESIZE, "tbMain");
    handle_ = new wxWindow(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxBORDER_NONE, "imgHandle");
    handle_->SetBackgroundStyle(wxBG_STYLE_PAINT);
    handle_->Bind(wxEVT_PAINT, [this](wxPaintEvent&) { paintHandle(); });
    handle_->Bind(wxEVT_LEFT_DOWN, [this](wxMouseEvent&) { setFolded(open()); });
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        arrange();
        event.Skip();
    });
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        rearrange();
        event.Skip();
    });
    Bind(wxEVT_CONTEXT_MENU, [this](wxContextMenuEvent&) { showSizeMenu(); });
    Bind(wxEVT_TIMER, [this](wxTimerEvent&) {
        dimHandle();
        if (!wxGetTopLevelParent(this)->IsShown()) tmrDimHandle_.Stop();
    });
}

ToolButton* TMainToolbar::makeButton(const char* control, const char* caption, const char* hint, const char* icon,
                                     ToolButton::Kind kind) {
    ToolButton::Look look;
    look.icon = icon;
    look.caption = wxString::FromUTF8(caption);
    look.hint = wxString::FromUTF8(hint);
    look.kind = kind;
    look.captionBelow = true;
    look.iconDip = iconSide(size_);
    auto* made = new ToolButton(this, control, std::move(look));
    dress(*made, icon);
    return made;
}

void TMainToolbar::makeButton(const MainCommand& command) {
    ToolButton* button = makeButton(command.control, command.caption, command.hint, command.icon,
                                    command.isTool() ? ToolButton::Kind::Radio : ToolButton::Kind::Push);
    button->Bind(wxEVT_BUTTON, [this, &command](wxCommandEvent&) { run_(command); });
    items_.push_back({&command, button});
}

void TMainToolbar::fill() {
    if (filled()) return;
    for (const MainCommand& command : mainCommands()) makeButton(command);
    fix_ = makeButton("btnFix", "    Fix     ", "Always show Toolbar", "pin", ToolButton::Kind::Check);
    fix_->setDown(pinned_);
    fix_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { setPinned(fix_->down()); });
    more_ = makeButton("btnMoreCommands", "More", "More commands", "chevron", ToolButton::Kind::Push);
    more_->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { showHidden(); });
    // Tab goes from left to right.
    more_->MoveBeforeInTabOrder(button("btnFirefox"));
    fix_->MoveBeforeInTabOrder(button("btnExit"));
    handle_->MoveAfterInTabOrder(button("btnExit"));
    handle_->SetCursor(wxCursor(wxCURSOR_HAND));
    handle_->SetToolTip("Minimize/Maximize Main Toolbar");  // the first hint of a program takes time as well
    setAccessibleName(*handle_, handle_->GetToolTipText(), PressedControl::Button, [this] { setFolded(open()); });
    wake();
}

void TMainToolbar::wake() {
    if (!tmrDimHandle_.IsRunning()) tmrDimHandle_.Start(timerPeriod);
}

ToolButton* TMainToolbar::button(std::string_view control) const {
    for (const Item& item : items_)
        if (control == item.command->control) return item.button;
    return nullptr;
}

ToolButton* TMainToolbar::button(const MainCommand& command) const { return button(command.control); }

void TMainToolbar::update(const std::function<bool(CommandNeeds)>& available) {
    for (const Item& item : items_) item.button->Enable(available(item.command->needs));
}

void TMainToolbar::setButtonSize(ToolbarSize size) {
    if (size_ == size) return;
    size_ = size;
    for (const Item& item : items_) dress(*item.button, item.command->icon);
    if (more_ != nullptr) {
        dress(*fix_, "pin");
        dress(*more_, "chevron");
    }
    rearrange();
}

void TMainToolbar::dress(ToolButton& button, const char* icon) const {
    button.setIcon(icon, iconSide(size_));
    button.showCaption(size_ != ToolbarSize::Small);
}

void TMainToolbar::rearrange() {
    InvalidateBestSize();
    arrange();
    if (heightChanged_) heightChanged_();
}

void TMainToolbar::setPinned(bool pinned) {
    pinned_ = pinned;
    if (fix_ != nullptr) fix_->setDown(pinned);
    if (pinned) setFolded(false);
}

void TMainToolbar::setFolded(bool folded) {
    if (folded) {
        pinned_ = false;
        if (fix_ != nullptr) fix_->setDown(false);
    }
    if (folded_ == folded && !peeking_) return;
    folded_ = folded;
    peeking_ = false;
    rearrange();
}

void TMainToolbar::takeFocus() {
    if (!filled()) return;
    keyboard_ = true;
    if (!open()) {
        peeking_ = true;
        rearrange();
    }
    for (wxWindow* child : GetChildren()) {
        if (dynamic_cast<ToolButton*>(child) == nullptr || !child->IsShown() || !child->IsEnabled()) continue;
        child->SetFocus();
        return;
    }
}

int TMainToolbar::barHeight() const {
    return ToolButton::heightWithCaptionBelow(*this, iconSide(size_), size_ != ToolbarSize::Small) + FromDIP(6);
}

wxSize TMainToolbar::DoGetBestClientSize() const { return {FromDIP(300), handleHeight() + (open() ? barHeight() : 0)}; }

void TMainToolbar::arrange() {
    if (handle_ == nullptr) return;
    const wxSize size = GetClientSize();
    const int height = open() ? barHeight() : 0;
    handle_->SetSize(0, height, size.x, handleHeight());
    hidden_.clear();
    if (more_ == nullptr) return;
    const int gap = FromDIP(1);
    const int groupGap = FromDIP(9);
    const int rowHeight = height - FromDIP(6);
    const auto place = [&](ToolButton* button, int x) {
        button->SetSize(x, FromDIP(3), button->GetBestSize().x, rowHeight);
        button->Show(open());
    };

    // From the right edge: the window's own commands and the pin, which are always at hand.
    int right = size.x - FromDIP(4);
    std::vector<ToolButton*> fixed;
    for (const Item& item : items_)
        if (item.command->group == CommandGroup::Window) fixed.push_back(item.button);
    fixed.insert(fixed.end() - 1, fix_);
    for (auto button = fixed.rbegin(); button != fixed.rend(); ++button) {
        if (!(*button)->IsEnabled() && (*button)->GetName() == "btnFirefox") {
            (*button)->Hide();
            continue;
        }
        right -= (*button)->GetBestSize().x + gap;
        place(*button, right);
    }
    right -= groupGap;

    // From the left: everything else, as long as there is room beside the chevron.
    const auto walk = [&](int limit, bool apply) {
        int x = FromDIP(4);
        CommandGroup group = items_.front().command->group;
        bool full = false;
        for (const Item& item : items_) {
            if (item.command->group == CommandGroup::Window) continue;
            if (item.command->group != group) x += groupGap;
            group = item.command->group;
            const int width = item.button->GetBestSize().x;
            full = full || x + width > limit;
            if (full && !apply) return false;
            if (apply && full) {
                item.button->Hide();
                hidden_.push_back(&item);
            } else if (apply) {
                place(item.button, x);
            }
            x += width + gap;
        }
        return true;
    };
    const bool fits = walk(right, false);
    const int limit = fits ? right : right - more_->GetBestSize().x - gap;
    walk(limit, true);
    more_->Show(open() && !fits);
    if (!fits) place(more_, limit + gap);
    Refresh();
}

void TMainToolbar::appendHidden(wxMenu& menu, const Item& item) {
    const wxString caption = plainText(item.command->caption);
    ToolButton* const button = item.button;
    wxMenuItem* entry = nullptr;
    if (const wxMenu* own = button->menu()) {
        // The button's menu is offered here as well.
        auto* copy = new wxMenu;  // the menu's
        for (const wxMenuItem* choice : own->GetMenuItems()) {
            wxMenuItem* same = copy->AppendCheckItem(wxID_ANY, choice->GetItemLabel());
            same->Check(button->down() && choice->IsChecked());
            menu.Bind(
                wxEVT_MENU, [button, id = choice->GetId()](wxCommandEvent&) { button->choose(id); }, same->GetId());
        }
        entry = menu.AppendSubMenu(copy, caption);
    } else {
        entry = menu.Append(wxID_ANY, caption, "", item.command->isTool() ? wxITEM_CHECK : wxITEM_NORMAL);
        if (button->down()) entry->Check();
        menu.Bind(
            wxEVT_MENU, [button](wxCommandEvent&) { button->press(); }, entry->GetId());
    }
    entry->Enable(button->IsEnabled());
}

void TMainToolbar::showHidden() {
    wxMenu menu;
    CommandGroup group = hidden_.empty() ? CommandGroup::Project : hidden_.front()->command->group;
    for (const Item* item : hidden_) {
        if (item->command->group != group) menu.AppendSeparator();
        group = item->command->group;
        appendHidden(menu, *item);
    }
    more_->PopupMenu(&menu, 0, more_->GetSize().y);
}

void TMainToolbar::showSizeMenu() {
    static constexpr const char* names[] = {"Small buttons", "Medium buttons", "Large buttons"};
    wxMenu menu;
    for (int i = 0; i < 3; ++i) {
        wxMenuItem* entry = menu.AppendRadioItem(wxID_ANY, names[i]);
        entry->Check(i == static_cast<int>(size_));
        menu.Bind(
            wxEVT_MENU, [this, i](wxCommandEvent&) { setButtonSize(static_cast<ToolbarSize>(i)); }, entry->GetId());
    }
    PopupMenu(&menu);
}

void TMainToolbar::paintHandle() {
    wxAutoBufferedPaintDC dc(handle_);
    const wxColour base = GetBackgroundColour();
    dc.SetBackground(wxBrush(base));
    dc.Clear();
    const wxSize size = handle_->GetClientSize();
    const bool plain = usesContrastTheme();
    const auto darker = [&](int lightness) { return plain ? readableOn(base) : base.ChangeLightness(lightness); };
    dc.SetPen(wxPen(darker(86)));
    dc.DrawLine(0, size.y - 1, size.x, size.y - 1);
    // A grip that grows darker while the pointer is near.
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(darker(86 - brightness_ * 8)));
    const int width = FromDIP(48);
    const int thickness = FromDIP(3);
    dc.DrawRoundedRectangle((size.x - width) / 2, (size.y - thickness) / 2, width, thickness, thickness / 2.0);
}

bool TMainToolbar::pointerInside() const { return GetScreenRect().Contains(wxGetMousePosition()); }

void TMainToolbar::dimHandle() {
    if (!IsShownOnScreen()) return;
    // The menu of a button keeps its place.
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    if (GetGUIThreadInfo(GetCurrentThreadId(), &thread) != FALSE && (thread.flags & GUI_INMENUMODE) != 0) return;
    keyboard_ = keyboard_ && IsDescendant(FindFocus());
    const bool inside = pointerInside() || keyboard_;
    const int wanted = inside ? brightest : 0;
    if (brightness_ != wanted) {
        brightness_ += brightness_ < wanted ? 1 : -1;
        handle_->Refresh();
    }
    away_ = inside ? 0 : away_ + 1;
    const bool peek = folded_ && !pinned() && (inside || (peeking_ && away_ < peekTicks));
    if (peek == peeking_) return;
    peeking_ = peek;
    rearrange();
}

}  // namespace glimmer
