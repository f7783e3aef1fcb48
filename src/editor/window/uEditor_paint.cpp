// Painting: only what is invalid, in one pass, from the working picture.

#include <wx/dcclient.h>
#include <wx/msw/wrapwin.h>
#include <wx/region.h>

#include <new>

#include "editor/window/uEditor.h"

namespace glimmer {

namespace {

Rect fromWx(const wxRect& r) { return {r.x, r.y, r.x + r.width, r.y + r.height}; }
wxRect toWx(const Rect& r) { return {r.left, r.top, r.width(), r.height()}; }

}  // namespace

void TEditForm::paintCanvas() {
    wxPaintDC dc(pbScreen_);
    const wxSize size = pbScreen_->GetClientSize();
    if (size.x < 1 || size.y < 1 || !surface_.ensure({size.x, size.y})) return;
    for (wxRegionIterator piece(pbScreen_->GetUpdateRegion()); piece.HaveRects(); ++piece) {
        const Rect area = fromWx(piece.GetRect()).intersected({0, 0, size.x, size.y});
        if (area.empty()) continue;
        // Without memory the canvas stays as it is; commands will say what is wrong. A message from here would come
        // again with each part of the window that it uncovers.
        try {
            if (!working_->refresh(view_.toPicture(area))) return;
            paintView(surface_.bitmap(), area, view_, working_->bitmap(), shownOverlay_, look_);
        } catch (const std::bad_alloc&) {
            return;
        }
        surface_.copyTo(dc.GetHDC(), area);
    }
}

/// Moves what is on the canvas. The windows over it, which are placed by themselves, stay; what they hid and what comes
/// into view is painted.
void TEditForm::scrollPixels(int32_t dx, int32_t dy) {
    ScrollWindowEx(pbScreen_->GetHWND(), dx, dy, nullptr, nullptr, nullptr, nullptr, SW_INVALIDATE);
}

void TEditForm::invalidateView(const Rect& viewArea) {
    const Rect seen = viewArea.intersected({0, 0, view_.window().width, view_.window().height});
    if (!seen.empty()) pbScreen_->RefreshRect(toWx(seen), false);
}

// One pixel more, since a pixel of a reduced view shows its neighbours' edges too.
void TEditForm::invalidatePicture(const Rect& pictureArea) {
    if (!pictureArea.empty()) invalidateView(view_.toView(pictureArea).inflated(1));
}

}  // namespace glimmer
