#pragma once

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// An annotation leaves the capture; undone, it comes back to its place in the painting order.
class DeleteAnnotation final : public UndoCommand {
public:
    explicit DeleteAnnotation(AnnotationId id) : id_(id) {}
    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override;

private:
    AnnotationId id_;
    size_t index_ = 0;
    TBBShape shape_;
};

}  // namespace glimmer
