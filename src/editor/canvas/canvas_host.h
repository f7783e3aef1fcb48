#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "editor/document/content.h"
#include "editor/painting/text_painter.h"

namespace glimmer {

enum class CanvasMode : uint8_t { Annotation, FreeDrawing, Capture };

/// What the controller has changed of its own. What has changed in the capture, and what is selected there, the
/// document's observers hear (DocumentChange).
struct ControllerChange {
    bool tool = false;
    bool mode = false;
    bool settings = false;  ///< the tools' or the pen's
    bool hover = false;     ///< what follows the pointer: a drag, a polygon's corners, the part with the handles

    [[nodiscard]] bool any() const { return tool || mode || settings || hover; }
};

/// What the controller asks of the window that shows the canvas.
class CanvasHost {
public:
    virtual ~CanvasHost() = default;
    virtual TextPainter& textPainter() = 0;
    /// Called once at the end of an input or a call that has changed something.
    virtual void controllerChanged(const ControllerChange& change) = 0;
    /// The label of this annotation is to be edited in place; endTextEdit() answers.
    virtual void beginTextEdit(AnnotationId id) = 0;
    /// The edit that is under way, if any, ends now; its text is kept.
    virtual void finishTextEdit() = 0;
    /// Ink inside `area` looks different.
    virtual void inkChanged(const Rect& area) = 0;
    /// Shows `area` of the picture, scrolling when needed.
    virtual void reveal(const Rect& area) = 0;
    /// Lets the user pick a colour; the answer may come at any later time, or never.
    virtual void pickColour(Colour initial, std::function<void(Colour)> picked) = 0;
    /// An operation could not be done; the sentence is for the user.
    virtual void failed(const std::string& message) = 0;
};

}  // namespace glimmer
