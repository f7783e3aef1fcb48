#pragma once

#include <wx/panel.h>

#include <functional>
#include <map>

#include "editor/canvas/canvas_place.h"
#include "editor/session/capture_session.h"

namespace glimmer {

class TEditForm;

/// The place of the canvas in the main window. One canvas serves all captures: it is made for the first one and goes
/// with the last. Each capture keeps where the user was on it. Without one the place says how to open something.
class CanvasStage : public wxPanel, public CaptureStage, public SessionListener {
public:
    struct Events {
        std::function<bool()> quiet;         ///< whether no command runs
        std::function<void()> changed;       ///< the tool, the zoom, the selection or what can be undone
        std::function<void()> pointerMoved;  ///< nothing but the pointer's place
    };
    CanvasStage(wxWindow* parent, Events events);

    [[nodiscard]] TEditForm* canvas() const { return canvas_; }
    /// The theme is another one.
    void takeColours();

    [[nodiscard]] bool free() const override;
    void show(CaptureDocument& capture) override;
    void clear() override;

private:
    void captureRemoved(size_t /*place*/, const CaptureDocument& capture) override { places_.erase(&capture); }
    void paint();

    Events events_;
    TEditForm* canvas_ = nullptr;
    std::map<const CaptureDocument*, CanvasPlace> places_;  ///< of those that were on the canvas
};

}  // namespace glimmer
