#include "main_window/capture_list.h"

#include <wx/dcclient.h>
#include <wx/image.h>
#include <wx/msw/wrapcctl.h>
#include <wx/settings.h>
#include <wx/textctrl.h>

#include <algorithm>
#include <utility>

#include "common/boundary.h"
#include "common/contrast.h"
#include "common/wx_bitmap.h"

namespace glimmer {

namespace {

constexpr int thumbnailWidth = 132;
constexpr int thumbnailHeight = 99;
constexpr int spaceBeside = 20;
constexpr int spaceBelow = 42;
constexpr int frameWidth = 3;  ///< of a selected thumbnail

bool isSelected(const wxListCtrl& list, long item) { return list.GetItemState(item, wxLIST_STATE_SELECTED) != 0; }

/// Grey while something else has the focus.
int selectionColour(HWND list) { return ::GetFocus() == list ? COLOR_HIGHLIGHT : COLOR_BTNSHADOW; }

}  // namespace

CaptureList::CaptureList(wxWindow* parent, Events events) : events_(std::move(events)) {
    Hide();
    Create(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize,
           wxLC_ICON | wxLC_AUTOARRANGE | wxLC_EDIT_LABELS | wxBORDER_NONE, wxDefaultValidator, "lvAnnotations");
    SetLabel("Captures");
    makeImages();
    bindEvents();
}

CaptureList::~CaptureList() {
    if (HasCapture()) ReleaseMouse();
}

Size CaptureList::thumbnailSize() const { return {FromDIP(thumbnailWidth), FromDIP(thumbnailHeight)}; }

/// For the scale and the colours of this moment: as many as there are, all of them blank.
void CaptureList::makeImages() {
    const Size size = thumbnailSize();
    const int count = ilstThumbnails_ ? ilstThumbnails_->GetImageCount() : 0;
    auto images = std::make_unique<wxImageList>(size.width, size.height, false, 8);
    for (int i = 0; i < count; ++i) images->Add(blankImage());
    SetImageList(images.get(), wxIMAGE_LIST_NORMAL);
    ilstThumbnails_ = std::move(images);
    // One column in the panel's usual width, with room for two lines of a name.
    SendMessageW(GetHWND(), LVM_SETICONSPACING, 0,
                 MAKELPARAM(size.width + FromDIP(spaceBeside), size.height + FromDIP(spaceBelow)));
}

/// An empty page, until there is a thumbnail.
wxBitmap CaptureList::blankImage() const {
    const Size size = thumbnailSize();
    wxImage blank(size.width, size.height, false);
    const wxColour paper = wxSystemSettings::GetColour(wxSYS_COLOUR_BTNFACE);
    blank.SetRGB(wxRect(), paper.Red(), paper.Green(), paper.Blue());
    return {blank, 24};
}

int CaptureList::imageOf(size_t place) const {
    wxListItem item;
    item.SetId(static_cast<long>(place));
    item.SetMask(wxLIST_MASK_IMAGE);
    GetItem(item);
    return item.GetImage();
}

void CaptureList::bindEvents() {
    Bind(wxEVT_DPI_CHANGED, [this](wxDPIChangedEvent& event) {
        makeImages();
        Arrange();
        event.Skip();
    });
    Bind(wxEVT_SYS_COLOUR_CHANGED, [this](wxSysColourChangedEvent& event) {
        SetBackgroundColour(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW));
        makeImages();
        event.Skip();
    });
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
    Bind(wxEVT_CONTEXT_MENU, [this](wxContextMenuEvent& event) {
        if (event.GetPosition() == wxDefaultPosition) menuByKey();  // Shift + F10
    });
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
            menuByKey();
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

/// Beside the item that it is about.
void CaptureList::menuByKey() {
    const long focused = GetNextItem(-1, wxLIST_NEXT_ALL, wxLIST_STATE_FOCUSED);
    wxRect area;
    if (focused < 0) return;
    EnsureVisible(focused);
    if (GetItemRect(focused, area, wxLIST_RECT_ICON))
        events_.menu(ClientToScreen(wxPoint(area.x + area.width / 2, area.y + area.height / 2)));
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

void CaptureList::append(const wxString& name) {
    int image = 0;
    if (freeImages_.empty()) {
        image = ilstThumbnails_->Add(blankImage());
    } else {
        image = freeImages_.back();
        freeImages_.pop_back();
    }
    wxListItem item;
    item.SetId(GetItemCount());
    item.SetText(name);
    item.SetImage(image);
    item.SetMask(wxLIST_MASK_TEXT | wxLIST_MASK_IMAGE);
    InsertItem(item);
    Arrange();
}

void CaptureList::erase(size_t place) {
    freeImages_.push_back(imageOf(place));
    quiet_ = true;
    DeleteItem(static_cast<long>(place));
    quiet_ = false;
    Arrange();
}

// What the items show moves, not the items: in a view by icons each has its place on the screen, and one that is
// inserted takes the first place that is free, whatever its index is.
void CaptureList::move(size_t from, size_t to) {
    const auto step = from < to ? 1 : -1;
    const wxString name = GetItemText(static_cast<long>(from));
    const int image = imageOf(from);
    const auto last = static_cast<long>(to);
    for (auto item = static_cast<long>(from); item != last; item += step) {
        const int next = imageOf(static_cast<size_t>(item + step));
        SetItemText(item, GetItemText(item + step));
        SetItemImage(item, next);
    }
    SetItemText(last, name);
    SetItemImage(last, image);
}

void CaptureList::setName(size_t place, const wxString& name) {
    if (GetItemText(static_cast<long>(place)) != name) SetItemText(static_cast<long>(place), name);
}

void CaptureList::setThumbnail(size_t place, const TBitmap& picture) {
    ilstThumbnails_->Replace(imageOf(place), wxBitmapOf(picture));
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

// --- painting -----------------------------------------------------------------------------------------------------

bool CaptureList::MSWOnNotify(int control, WXLPARAM parameter, WXLPARAM* result) {
    const auto* draw = reinterpret_cast<const NMLVCUSTOMDRAW*>(parameter);
    if (draw->nmcd.hdr.code != NM_CUSTOMDRAW || draw->nmcd.hdr.hwndFrom != GetHWND())
        return wxListCtrl::MSWOnNotify(control, parameter, result);
    *result = CDRF_DODEFAULT;
    if (draw->nmcd.dwDrawStage == CDDS_PREPAINT) *result = CDRF_NOTIFYITEMDRAW;
    if (draw->nmcd.dwDrawStage == CDDS_ITEMPREPAINT) {
        guarded([this, draw] {
            paintThumbnail(draw->nmcd.hdc, static_cast<long>(draw->nmcd.dwItemSpec));
            paintName(draw->nmcd.hdc, static_cast<long>(draw->nmcd.dwItemSpec));
        });
        *result = CDRF_SKIPDEFAULT;
    }
    return true;
}

void CaptureList::paintThumbnail(WXHDC dc, long item) const {
    const HWND window = GetHWND();
    const Size size = thumbnailSize();
    RECT area{};
    ListView_GetItemRect(window, item, &area, LVIR_ICON);
    const POINT at{(area.left + area.right - size.width) / 2, (area.top + area.bottom - size.height) / 2};
    ImageList_Draw(reinterpret_cast<HIMAGELIST>(ilstThumbnails_->GetHIMAGELIST()), imageOf(static_cast<size_t>(item)),
                   dc, at.x, at.y, ILD_NORMAL);
    RECT frame{at.x, at.y, at.x + size.width, at.y + size.height};
    for (int i = isSelected(*this, item) ? FromDIP(frameWidth) : 0; i > 0; --i) {
        FrameRect(dc, &frame, GetSysColorBrush(selectionColour(window)));
        InflateRect(&frame, -1, -1);
    }
}

void CaptureList::paintName(WXHDC dc, long item) const {
    const HWND window = GetHWND();
    const bool selected = isSelected(*this, item);
    const int ground = selected ? selectionColour(window) : COLOR_WINDOW;
    // Without the focus the ground is a grey on which the colour of selected text could hardly be read.
    const COLORREF ink = ground == COLOR_HIGHLIGHT ? GetSysColor(COLOR_HIGHLIGHTTEXT)
                         : selected ? readableOn(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW)).GetPixel()
                                    : GetSysColor(COLOR_WINDOWTEXT);
    RECT label{};
    ListView_GetItemRect(window, item, &label, LVIR_LABEL);
    const wxString name = GetItemText(item);
    const HGDIOBJ font = SelectObject(dc, reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0)));
    constexpr UINT way = DT_CENTER | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_END_ELLIPSIS;
    RECT words{0, 0, label.right - label.left, label.bottom - label.top};
    DrawTextW(dc, name.wc_str(), -1, &words, way | DT_CALCRECT);
    const int margin = FromDIP(3);
    const int middle = (label.left + label.right) / 2;
    RECT nameArea{middle - words.right / 2 - margin, label.top, middle - words.right / 2 + words.right + margin,
                  std::min(label.top + words.bottom, label.bottom)};
    FillRect(dc, &nameArea, GetSysColorBrush(ground));
    const COLORREF colourBefore = SetTextColor(dc, ink);
    const int modeBefore = SetBkMode(dc, TRANSPARENT);
    DrawTextW(dc, name.wc_str(), -1, &label, way);
    const bool focusShown = (SendMessageW(window, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS) == 0;
    const bool focused = ListView_GetItemState(window, item, LVIS_FOCUSED) != 0;
    if (focused && focusShown && ::GetFocus() == window) DrawFocusRect(dc, &nameArea);
    SetBkMode(dc, modeBefore);
    SetTextColor(dc, colourBefore);
    SelectObject(dc, font);
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
