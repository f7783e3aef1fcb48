#include "output/capture_list.h"

#include <wx/dcclient.h>
#include <wx/msw/wrapcctl.h>
#include <wx/settings.h>
#include <wx/textctrl.h>

#include <utility>

#include "common/wx_bitmap.h"

namespace glimmer {

namespace {

constexpr int thumbnailWidth = 132;
constexpr int thumbnailHeight = 99;
constexpr int spaceBeside = 20;
constexpr int spaceBelow = 42;

}  // namespace

CaptureList::CaptureList(wxWindow* parent, Events events)
    : wxListCtrl(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
                 wxLC_ICON | wxLC_AUTOARRANGE | wxLC_EDIT_LABELS | wxBORDER_NONE, wxDefaultValidator, "lvAnnotations"),
      events_(std::move(events)) {
    SetLabel("Captures");
    const Size size = thumbnailSize();
    ilstThumbnails_ = std::make_unique<wxImageList>(size.width, size.height, false, 8);
    SetImageList(ilstThumbnails_.get(), wxIMAGE_LIST_NORMAL);
    // One column in the panel's usual width, with room for two lines of a name.
    SendMessageW(GetHWND(), LVM_SETICONSPACING, 0,
                 MAKELPARAM(size.width + FromDIP(spaceBeside), size.height + FromDIP(spaceBelow)));
    bindEvents();
}

CaptureList::~CaptureList() {
    if (HasCapture()) ReleaseMouse();
}

Size CaptureList::thumbnailSize() const { return {FromDIP(thumbnailWidth), FromDIP(thumbnailHeight)}; }

void CaptureList::bindEvents() {
    Bind(wxEVT_LIST_ITEM_SELECTED, [this](wxListEvent&) { announceSelection(); });
    Bind(wxEVT_LIST_ITEM_DESELECTED, [this](wxListEvent&) { announceSelection(); });
    Bind(wxEVT_LIST_ITEM_FOCUSED, [this](wxListEvent& event) {
        if (!quiet_ && event.GetIndex() >= 0) events_.shown(static_cast<size_t>(event.GetIndex()));
    });
    Bind(wxEVT_LIST_END_LABEL_EDIT, [this](wxListEvent& event) {
        // What the name becomes is not always what was typed: the owner shows it.
        event.Veto();
        if (!event.IsEditCancelled()) events_.renamed(static_cast<size_t>(event.GetIndex()), event.GetLabel());
    });
    Bind(wxEVT_LIST_ITEM_RIGHT_CLICK, [this](wxListEvent&) { events_.menu(wxGetMousePosition()); });
    Bind(wxEVT_LIST_BEGIN_DRAG, &CaptureList::startDrag, this);
    Bind(wxEVT_MOTION, &CaptureList::drag, this);
    Bind(wxEVT_LEFT_UP, [this](wxMouseEvent& event) {
        if (dragging_) {
            endDrag(true);
        } else {
            event.Skip();
        }
    });
    Bind(wxEVT_MOUSE_CAPTURE_LOST, [this](wxMouseCaptureLostEvent&) { endDrag(false); });
    Bind(wxEVT_KEY_DOWN, [this](wxKeyEvent& event) {
        const long focused = GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_FOCUSED);
        const int key = event.GetKeyCode();
        const bool up = key == WXK_UP || key == WXK_NUMPAD_UP;
        const bool down = key == WXK_DOWN || key == WXK_NUMPAD_DOWN;
        if (dragging_ && key == WXK_ESCAPE) {
            endDrag(false);
        } else if (key == WXK_F2 && focused >= 0) {
            EditLabel(focused);
        } else if ((key == WXK_DELETE || key == WXK_NUMPAD_DELETE) && events_.deletePressed) {
            events_.deletePressed();
        } else if (key == WXK_WINDOWS_MENU) {
            events_.menu(ClientToScreen(wxPoint(FromDIP(20), FromDIP(20))));
        } else if (event.AltDown() && focused >= 0 && (up || down)) {
            // The keyboard's way to reorder.
            const auto from = static_cast<size_t>(focused);
            if (up && from > 0) events_.moved(from, from - 1);
            if (down && focused + 1 < GetItemCount()) events_.moved(from, from + 1);
        } else {
            event.Skip();
        }
    });
}

// One announcement for a gesture that changes many items.
void CaptureList::announceSelection() {
    if (quiet_ || announced_) return;
    announced_ = true;
    CallAfter([this] {
        announced_ = false;
        events_.selectionChanged();
    });
}

void CaptureList::insert(size_t place, const wxString& name) {
    const Size size = thumbnailSize();
    int image = 0;
    if (freeImages_.empty()) {
        wxBitmap blank(size.width, size.height, 24);
        image = ilstThumbnails_->Add(blank);
    } else {
        image = freeImages_.back();
        freeImages_.pop_back();
    }
    wxListItem item;
    item.SetId(static_cast<long>(place));
    item.SetText(name);
    item.SetImage(image);
    item.SetMask(wxLIST_MASK_TEXT | wxLIST_MASK_IMAGE);
    InsertItem(item);
    Arrange();
}

void CaptureList::erase(size_t place) {
    wxListItem item;
    item.SetId(static_cast<long>(place));
    item.SetMask(wxLIST_MASK_IMAGE);
    GetItem(item);
    freeImages_.push_back(item.GetImage());
    quiet_ = true;
    DeleteItem(static_cast<long>(place));
    quiet_ = false;
    Arrange();
}

void CaptureList::setName(size_t place, const wxString& name) {
    if (GetItemText(static_cast<long>(place)) != name) SetItemText(static_cast<long>(place), name);
}

void CaptureList::setThumbnail(size_t place, const TBitmap& picture) {
    wxListItem item;
    item.SetId(static_cast<long>(place));
    item.SetMask(wxLIST_MASK_IMAGE);
    GetItem(item);
    ilstThumbnails_->Replace(item.GetImage(), wxBitmapOf(picture));
    RefreshItem(static_cast<long>(place));
}

void CaptureList::setCurrent(size_t place, bool alone) {
    quiet_ = true;
    if (alone) {
        for (long i = 0; i < GetItemCount(); ++i)
            SetItemState(i, i == static_cast<long>(place) ? wxLIST_STATE_SELECTED : 0, wxLIST_STATE_SELECTED);
    }
    SetItemState(static_cast<long>(place), wxLIST_STATE_FOCUSED, wxLIST_STATE_FOCUSED);
    EnsureVisible(static_cast<long>(place));
    quiet_ = false;
}

std::vector<size_t> CaptureList::selected() const {
    std::vector<size_t> places;
    for (long i = GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED); i >= 0;
         i = GetNextItem(i, wxLIST_NEXT_ALL, wxLIST_STATE_SELECTED))
        places.push_back(static_cast<size_t>(i));
    return places;
}

void CaptureList::select(const std::function<bool(size_t)>& wanted) {
    quiet_ = true;
    for (long i = 0; i < GetItemCount(); ++i)
        SetItemState(i, wanted(static_cast<size_t>(i)) ? wxLIST_STATE_SELECTED : 0, wxLIST_STATE_SELECTED);
    quiet_ = false;
    events_.selectionChanged();
}

void CaptureList::editName(size_t place) {
    SetFocus();
    EditLabel(static_cast<long>(place));
}

// --- reordering ---------------------------------------------------------------------------------------------------

void CaptureList::startDrag(wxListEvent& event) {
    if (event.GetIndex() < 0) return;
    dragging_ = true;
    dragged_ = target_ = static_cast<size_t>(event.GetIndex());
    SetCursor(wxCursor(wxCURSOR_SIZENS));
    CaptureMouse();
}

// The place in front of which a drop at that point puts the item; the number of items for the end.
size_t CaptureList::placeAt(const wxPoint& point) const {
    for (long i = 0; i < GetItemCount(); ++i) {
        wxRect area;
        if (!GetItemRect(i, area)) continue;
        const bool sameRow = point.y >= area.y && point.y < area.GetBottom();
        if (point.y < area.y + area.height / 2 && (!sameRow || point.x < area.GetRight()))
            return static_cast<size_t>(i);
    }
    return static_cast<size_t>(GetItemCount());
}

void CaptureList::drag(wxMouseEvent& event) {
    if (!dragging_) {
        event.Skip();
        return;
    }
    const int edge = FromDIP(16);
    if (event.GetY() < edge) ScrollList(0, -edge);
    if (event.GetY() > GetClientSize().y - edge) ScrollList(0, edge);
    const size_t place = placeAt(event.GetPosition());
    if (place == target_) return;
    paintMark(false);
    target_ = place;
    paintMark(true);
}

void CaptureList::paintMark(bool show) {
    const bool atEnd = target_ >= static_cast<size_t>(GetItemCount());
    wxRect area;
    if (!GetItemRect(static_cast<long>(atEnd ? target_ - 1 : target_), area)) return;
    const wxRect line(area.x, (atEnd ? area.GetBottom() : area.y) - FromDIP(1), area.width, FromDIP(2));
    if (!show) {
        RefreshRect(line);
        Update();
        return;
    }
    wxClientDC dc(this);
    dc.SetPen(*wxTRANSPARENT_PEN);
    dc.SetBrush(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_HIGHLIGHT)));
    dc.DrawRectangle(line);
}

void CaptureList::endDrag(bool drop) {
    if (!std::exchange(dragging_, false)) return;
    if (HasCapture()) ReleaseMouse();
    SetCursor(wxNullCursor);
    paintMark(false);
    if (!drop) return;
    const size_t to = target_ > dragged_ ? target_ - 1 : target_;
    if (to != dragged_) events_.moved(dragged_, to);
}

}  // namespace glimmer
