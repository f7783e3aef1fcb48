#pragma once

#include "editor/document/content.h"
#include "editor/document/undo.h"

namespace glimmer {

/// An annotation takes another place in the painting order.
class ChangeOrder final : public UndoCommand {
public:
    ChangeOrder(AnnotationId id, size_t index) : id_(id), index_(index) {}
    Status apply(CaptureContent& content) override;
    Status revert(CaptureContent& content) override { return apply(content); }

private:
    AnnotationId id_;
    size_t index_;  ///< where it goes next
};

}  // namespace glimmer
