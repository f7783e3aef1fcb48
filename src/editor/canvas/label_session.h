#pragma once

#include <string>

#include "editor/canvas/canvas_context.h"

namespace glimmer {

/// The editing of a label in place. The window's control holds the text; each change of it goes to the capture at once,
/// and all of them are one step of the history.
class LabelSession {
public:
    explicit LabelSession(const CanvasContext& context) : context_(context) {}

    /// Asks the window to edit the label of an annotation, with the gesture that has just made the annotation if one
    /// has: then making it and typing are one step.
    void begin(AnnotationId id, const Gesture& making = {});
    /// The annotation whose label is edited, or noAnnotation.
    [[nodiscard]] AnnotationId id() const { return id_; }
    void edited(AnnotationId id, const std::string& text);
    /// A label without text says nothing: only the annotation's other parts stay, and without others it goes.
    void end(AnnotationId id);

private:
    const CanvasContext& context_;
    AnnotationId id_ = noAnnotation;
    Gesture gesture_;
    bool made_ = false;  ///< by this gesture, so that taking the gesture back removes the annotation
};

}  // namespace glimmer
