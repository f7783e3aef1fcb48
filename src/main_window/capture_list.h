#pragma once

#include <wx/imaglist.h>
#include <wx/listctrl.h>

#include <functional>
#include <memory>
#include <vector>

#include "common/bitmap.h"

namespace glimmer {

/// The list of captures: one item for each, with its thumbnail and name. Several can be selected; names are edited in
/// place (a second click or F2); items are dragged to another place. A selected thumbnail has a frame and stays what it
/// is (the system would tint it). It holds no captures: the places of its items are the places in the main editor's
/// list.
class CaptureList : public wxListCtrl {
public:
    /// What the list asks of its owner. All places are counted from 0.
    struct Events {
        std::function<void(size_t)> shown;                     ///< the user went to this item
        std::function<void()> selectionChanged;                ///< other items are selected
        std::function<void(size_t, const wxString&)> renamed;  ///< a name was typed; it shows once setName() is called
        std::function<void(size_t from, size_t to)> moved;     ///< dragged behind or before others
        std::function<void(const wxPoint& screen)> menu;       ///< the menu was asked for
        std::function<void()> deletePressed;
    };

    /// Hidden until its owner shows it.
    CaptureList(wxWindow* parent, Events events);
    ~CaptureList() override;

    /// Size of the thumbnails in pixels of this screen.
    [[nodiscard]] Size thumbnailSize() const;

    void append(const wxString& name);
    void erase(size_t place);
    /// The item takes another place; those in between move up. The focus and the selection stay where they are.
    void move(size_t from, size_t to);
    void setName(size_t place, const wxString& name);
    void setThumbnail(size_t place, const TBitmap& picture);
    /// Makes it the one with the focus and, if `alone`, the only selected one.
    void setCurrent(size_t place, bool alone);
    [[nodiscard]] std::vector<size_t> selected() const;
    void select(const std::function<bool(size_t)>& wanted);
    void editName(size_t place);

    bool MSWOnNotify(int control, WXLPARAM parameter, WXLPARAM* result) override;

private:
    void bindEvents();
    void makeImages();
    [[nodiscard]] wxBitmap blankImage() const;
    [[nodiscard]] int imageOf(size_t place) const;
    void menuByKey();
    void paintThumbnail(WXHDC dc, long item) const;
    void paintName(WXHDC dc, long item) const;
    void startDrag(wxListEvent& event);
    void drag(wxMouseEvent& event);
    void endDrag(bool drop);
    void paintMark(bool show);
    [[nodiscard]] size_t placeAt(const wxPoint& point) const;
    void announceSelection();

    Events events_;
    std::unique_ptr<wxImageList> ilstThumbnails_;
    std::vector<int> freeImages_;
    bool quiet_ = false;      ///< the program, not the user, changes the selection
    bool announced_ = false;  ///< an announcement is on its way
    bool dragging_ = false;
    size_t dragged_ = 0;
    size_t target_ = 0;
};

}  // namespace glimmer
