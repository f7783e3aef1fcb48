#include "editor/window/canvas_painting.h"

#include <wx/dcclient.h>
#include <wx/msw/wrapwin.h>
#include <wx/region.h>
#include <wx/settings.h>
#include <wx/window.h>

#include <new>
#include <utility>

#include "common/contrast.h"
#include "editor/painting/display_options.h"
#include "settings/options.h"

namespace glimmer {

namespace {

Rect fromWx(const wxRect& r) { return {r.x, r.y, r.x + r.width, r.y + r.height}; }
wxRect toWx(const Rect& r) { return {r.left, r.top, r.width(), r.height()}; }

}  // namespace

void CanvasPainting::attach(const CaptureDocument& document, TextPainter& text) {
    working_ = std::make_unique<WorkingPicture>(document, text);
}

void CanvasPainting::applyOptions() {
    const AnnotationId edited = working_->options.editedId;
    working_->options = paintOptions(OptionsHolder());
    working_->options.editedId = edited;
    look_ = CanvasLook();
    look_.dotsPerInch = window_.GetDPI().x;
    if (usesContrastTheme()) {
        const auto colour = [](const wxColour& of) { return rgb(of.Red(), of.Green(), of.Blue()); };
        const wxColour desk = wxSystemSettings::GetColour(wxSYS_COLOUR_APPWORKSPACE);
        look_.desk = colour(desk);
        look_.border = colour(readableOn(desk));
    }
    invalidateAll();
}

void CanvasPainting::invalidateView(const Rect& viewArea) {
    const Rect seen = viewArea.intersected({0, 0, view_.window().width, view_.window().height});
    if (!seen.empty()) window_.RefreshRect(toWx(seen), false);
}

void CanvasPainting::invalidatePicture(const Rect& pictureArea) {
    working_->invalidate(pictureArea);
    // One pixel more, since a pixel of a reduced view shows its neighbours' edges too.
    if (!pictureArea.empty()) invalidateView(view_.toView(pictureArea).inflated(1));
}

void CanvasPainting::invalidateAll() {
    working_->invalidateAll();
    window_.Refresh(false);
}

void CanvasPainting::viewChanged(CanvasOverlay overlay) {
    overlay_ = std::move(overlay);
    window_.Refresh(false);
}

void CanvasPainting::showOverlay(CanvasOverlay overlay) {
    if (overlay == overlay_) return;
    invalidateView(overlayArea(overlay_, view_, look_.dotsPerInch));
    overlay_ = std::move(overlay);
    invalidateView(overlayArea(overlay_, view_, look_.dotsPerInch));
}

/// The windows over the canvas, which are placed by themselves, stay; what they hid and what comes into view is
/// painted.
bool CanvasPainting::scroll(int32_t dx, int32_t dy) {
    if (!overlay_.guides.empty()) return false;  // they run across the view and stay where they are
    ScrollWindowEx(window_.GetHWND(), dx, dy, nullptr, nullptr, nullptr, nullptr, SW_INVALIDATE);
    return true;
}

void CanvasPainting::paint(const CanvasController& controller) {
    wxPaintDC dc(&window_);
    const wxSize size = window_.GetClientSize();
    if (size.x < 1 || size.y < 1 || !surface_.ensure({size.x, size.y})) return;
    LiveInk ink{nullptr, {}, controller.inkedId()};
    if (const InkLayer* layer = controller.ink()) {
        ink.bitmap = &layer->bitmap();
        ink.at = layer->at();
    }
    for (wxRegionIterator piece(window_.GetUpdateRegion()); piece.HaveRects(); ++piece) {
        const Rect area = fromWx(piece.GetRect()).intersected({0, 0, size.x, size.y});
        if (area.empty()) continue;
        // Without memory the canvas stays as it is; commands will say what is wrong. A message from here would come
        // again with each part of the window that it uncovers.
        try {
            if (!working_->refresh(view_.toPicture(area), ink)) return;
            paintView(surface_.bitmap(), area, view_, working_->bitmap(), overlay_, look_);
        } catch (const std::bad_alloc&) {
            return;
        }
        surface_.copyTo(dc.GetHDC(), area);
    }
}

}  // namespace glimmer
